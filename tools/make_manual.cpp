// Sets the user manual from its Markdown source as a PDF, with Qt's own text document and PDF
// writer. Pictures are looked up beside the source and scaled down to the width of the page.
// Usage: make_manual SOURCE.md OUTPUT.pdf
#include <QFileInfo>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFragment>
#include <QTextImageFormat>
#include <QUrl>

#include <cstdio>

namespace {
// Document units are 1/96 inch: an A4 page less its margins leaves about 640.
constexpr qreal kMaxImageWidth = 560.0;

QString readText(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readAll());
}

// Loads every picture the text names, and fits the large ones to the page.
bool addPictures(QTextDocument& doc, const QString& folder)
{
    bool ok = true;
    for (QTextBlock block = doc.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (!fragment.charFormat().isImageFormat())
                continue;
            QTextImageFormat format = fragment.charFormat().toImageFormat();
            const QImage image(folder + QLatin1Char('/') + format.name());
            if (image.isNull()) {
                std::fprintf(stderr, "make_manual: picture %s/%s cannot be read\n", qPrintable(folder),
                             qPrintable(format.name()));
                ok = false;
                continue;
            }
            doc.addResource(QTextDocument::ImageResource, QUrl(format.name()), image);
            const qreal width = qMin<qreal>(kMaxImageWidth, image.width());
            format.setWidth(width);
            format.setHeight(width * image.height() / image.width());
            QTextCursor cursor(&doc);
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            cursor.setCharFormat(format);
        }
    }
    return ok;
}
} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (argc < 3) {
        std::fprintf(stderr, "usage: make_manual SOURCE.md OUTPUT.pdf\n");
        return 2;
    }
    const QString source = QString::fromLocal8Bit(argv[1]);
    const QString output = QString::fromLocal8Bit(argv[2]);
    const QString text = readText(source);
    if (text.isEmpty()) {
        std::fprintf(stderr, "make_manual: %s cannot be read or is empty\n", qPrintable(source));
        return 1;
    }

    QTextDocument doc;
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSize(10);
    doc.setDefaultFont(font);
    doc.setDefaultStyleSheet(QStringLiteral("h1 { color: #2d3e5c; } h2 { color: #2d3e5c; } code { color: #203050; }"));
    doc.setMarkdown(text, QTextDocument::MarkdownDialectGitHub);
    if (!addPictures(doc, QFileInfo(source).absolutePath()))
        return 1;

    // Written beside the target first, so a failed run never leaves half a manual behind.
    QSaveFile file(output);
    if (!file.open(QIODevice::WriteOnly)) {
        std::fprintf(stderr, "make_manual: %s cannot be written: %s\n", qPrintable(output),
                     qPrintable(file.errorString()));
        return 1;
    }
    {
        QPdfWriter writer(&file);
        writer.setTitle(QStringLiteral("Quillmark Manual"));
        writer.setCreator(QStringLiteral("Quillmark"));
        writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(18, 18, 18, 18),
                                         QPageLayout::Millimeter));
        writer.setResolution(300);
        doc.print(&writer);
    }
    if (!file.commit()) {
        std::fprintf(stderr, "make_manual: %s cannot be written: %s\n", qPrintable(output),
                     qPrintable(file.errorString()));
        return 1;
    }
    return 0;
}
