// Renders the program's pictures from their SVG sources.
// Usage: render_images SOURCE_DIR OUTPUT_DIR [--sheet SHEET.png]
//        render_images --icon SOURCE.svg OUTPUT_DIR SIZE...
//
// Every SOURCE_DIR/NAME.svg becomes OUTPUT_DIR/NAME.png at the size the SVG declares. A source named
// NAME.EXT.svg is written as NAME.EXT in the format the extension names (Quillmark.ico.svg gives a
// Windows icon). With --sheet, all results are also laid out 2x enlarged on one canvas for review.
// With --icon, one square SVG becomes OUTPUT_DIR/SIZE.png for every size given (the desktop's and
// the macOS bundle's icon set).
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <cstdio>

namespace {

struct Rendered
{
    QString name;
    QImage image;
};

// At the size the SVG declares unless one is given.
QImage renderSvg(const QString& path, QString* error, QSize size = QSize())
{
    QSvgRenderer renderer(path);
    if (!renderer.isValid()) {
        *error = QStringLiteral("%1: not a valid SVG file").arg(path);
        return {};
    }
    if (size.isEmpty())
        size = renderer.defaultSize();
    if (size.isEmpty()) {
        *error = QStringLiteral("%1: the SVG declares no width and height").arg(path);
        return {};
    }
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform | QPainter::TextAntialiasing);
    renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(size)));
    painter.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

// A checkerboard shows where pictures are transparent; two backgrounds of the window sit beside it.
QImage contactSheet(const QList<Rendered>& images)
{
    const int scale = 2, pad = 12, labelH = 14, columns = 3;
    int cellW = 0, cellH = 0;
    for (const Rendered& r : images) {
        cellW = std::max(cellW, r.image.width() * scale);
        cellH = std::max(cellH, r.image.height() * scale);
    }
    cellW = std::max(cellW, 120);
    const int tileW = cellW * 3 + pad * 4;
    const int tileH = cellH + labelH + pad * 2;
    const int rows = (int(images.size()) + columns - 1) / columns;
    QImage sheet(columns * tileW, rows * tileH, QImage::Format_ARGB32);
    sheet.fill(QColor(255, 255, 255));
    QPainter p(&sheet);
    p.setRenderHint(QPainter::SmoothPixmapTransform, false);
    QFont font = p.font();
    font.setPixelSize(11);
    p.setFont(font);
    const QColor backgrounds[] = {QColor(0, 0, 0, 0), QColor(240, 240, 250), QColor(40, 40, 50)};
    for (int i = 0; i < images.size(); ++i) {
        const Rendered& r = images.at(i);
        const int x0 = (i % columns) * tileW, y0 = (i / columns) * tileH;
        for (int b = 0; b < 3; ++b) {
            const QRect cell(x0 + pad + b * (cellW + pad), y0 + pad, cellW, cellH);
            if (b == 0) {
                for (int cy = 0; cy < cell.height(); cy += 8)
                    for (int cx = 0; cx < cell.width(); cx += 8)
                        p.fillRect(QRect(cell.x() + cx, cell.y() + cy, 8, 8).intersected(cell),
                                   ((cx + cy) / 8) % 2 ? QColor(205, 205, 205) : QColor(250, 250, 250));
            } else {
                p.fillRect(cell, backgrounds[b]);
            }
            const QSize s = r.image.size() * scale;
            p.drawImage(
                QRect(cell.x() + (cellW - s.width()) / 2, cell.y() + (cellH - s.height()) / 2, s.width(), s.height()),
                r.image);
        }
        p.setPen(Qt::black);
        p.drawText(QRect(x0 + pad, y0 + pad + cellH + 1, tileW - 2 * pad, labelH), Qt::AlignLeft | Qt::AlignTop,
                   QStringLiteral("%1  %2x%3").arg(r.name).arg(r.image.width()).arg(r.image.height()));
    }
    return sheet;
}

int renderIcons(const QStringList& args)
{
    if (args.size() < 3) {
        std::fprintf(stderr, "usage: render_images --icon SOURCE.svg OUTPUT_DIR SIZE...\n");
        return 2;
    }
    const QDir output(args.at(1));
    if (!QDir().mkpath(output.path())) {
        std::fprintf(stderr, "cannot create output folder %s\n", qPrintable(output.path()));
        return 1;
    }
    for (const QString& sizeText : args.mid(2)) {
        const int side = sizeText.toInt();
        QString error;
        const QImage image = side > 0 ? renderSvg(args.at(0), &error, QSize(side, side)) : QImage();
        if (image.isNull()) {
            std::fprintf(stderr, "%s\n", qPrintable(side > 0 ? error : QStringLiteral("bad size ") + sizeText));
            return 1;
        }
        QImageWriter writer(output.filePath(sizeText + QStringLiteral(".png")), "png");
        writer.setCompression(9);
        if (!writer.write(image)) {
            std::fprintf(stderr, "%s: %s\n", qPrintable(writer.fileName()), qPrintable(writer.errorString()));
            return 1;
        }
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    // Offscreen unless a display is asked for: rendering needs fonts, never a window.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    if (args.value(0) == QLatin1String("--icon"))
        return renderIcons(args.mid(1));
    QString sheetPath;
    const int sheetAt = args.indexOf(QStringLiteral("--sheet"));
    if (sheetAt >= 0 && sheetAt + 1 < args.size()) {
        sheetPath = args.at(sheetAt + 1);
        args.erase(args.begin() + sheetAt, args.begin() + sheetAt + 2);
    }
    if (args.size() != 2) {
        std::fprintf(stderr, "usage: render_images SOURCE_DIR OUTPUT_DIR [--sheet SHEET.png]\n");
        return 2;
    }
    const QDir source(args.at(0));
    const QDir output(args.at(1));
    if (!source.exists()) {
        std::fprintf(stderr, "source folder %s does not exist\n", qPrintable(source.path()));
        return 1;
    }
    if (!output.exists() && !QDir().mkpath(output.path())) {
        std::fprintf(stderr, "cannot create output folder %s\n", qPrintable(output.path()));
        return 1;
    }

    const QStringList svgs = source.entryList({QStringLiteral("*.svg")}, QDir::Files, QDir::Name);
    if (svgs.isEmpty()) {
        std::fprintf(stderr, "no SVG files in %s\n", qPrintable(source.path()));
        return 1;
    }
    QList<Rendered> done;
    int failures = 0;
    for (const QString& svg : svgs) {
        QString target = svg.left(svg.size() - 4);
        if (QFileInfo(target).suffix().isEmpty())
            target += QStringLiteral(".png");
        const QByteArray format = QFileInfo(target).suffix().toLower().toLatin1();
        QString error;
        const QImage image = renderSvg(source.filePath(svg), &error);
        if (image.isNull()) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            ++failures;
            continue;
        }
        QImageWriter writer(output.filePath(target), format);
        if (format == "png")
            writer.setCompression(9);
        if (!writer.write(image)) {
            std::fprintf(stderr, "%s: %s\n", qPrintable(output.filePath(target)), qPrintable(writer.errorString()));
            ++failures;
            continue;
        }
        done.append({target, image});
        std::printf("%-28s %3dx%-3d\n", qPrintable(target), image.width(), image.height());
    }
    if (!sheetPath.isEmpty() && !done.isEmpty() && !contactSheet(done).save(sheetPath)) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(sheetPath));
        ++failures;
    }
    return failures == 0 ? 0 : 1;
}
