#include "app/Application.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QImage>
#include <QPainter>
#include <QSet>
#include <QSvgRenderer>
#include <QTest>

#include <cmath>

namespace {

// Every picture the program asks for, in the sets that stand side by side, with the size range the
// set is laid out for; where a set has hover pictures, each is named by a change of suffix.
struct PictureSet
{
    const char* tag;
    int minSide;
    int maxSide;
    QStringList names;
    QString normal; // suffix replaced by `hover`; empty: `hover` is appended
    QString hover;  // empty: no hover pictures

    QString hoverOf(const QString& name) const { return name.chopped(normal.size()) + hover; }
    QStringList all() const
    {
        QStringList both = names;
        if (!hover.isEmpty())
            for (const QString& name : names)
                both << hoverOf(name);
        return both;
    }
};

// clang-format off
const PictureSet kSets[] = {
    {"window buttons", 16, 20, {"mini_gr", "maxi_gr", "close_gr", "norm_gr"}, "_gr", "_blue"},
    {"actions", 40, 48, {"Update", "Reset", "RemoveBackup", "Settings", "Help"}, "", "Move"},
    {"product commands", 28, 32, {"update_gr", "reset_gr", "remove_backup_gr"}, "_gr", "_bl"},
    {"categories 32", 32, 32, {"All32", "UpdateList32", "XPlane1032", "XPlane1132", "FSX32", "FS200432", "P3D232",
                               "P3D332", "P3D432"}, "", ""},
    {"categories 48", 48, 48, {"All48", "UpdateList48", "XPlane1048", "XPlane1148", "FSX48", "FS200448", "P3D248",
                               "P3D348", "P3D448"}, "", ""},
    {"install states", 48, 64, {"prod_install_run", "prod_reset_run", "prod_remove_backup_run", "prod_not_install",
                                "prod_install_ok", "prod_install_error", "prod_install_warning", "prod_update"},
     "", ""},
    {"fold arrows", 12, 16, {"links", "rechts", "unten", "oben"}, "", ""},
    {"dialog title", 32, 32, {"Quillmark32"}, "", ""},
};
// clang-format on

QImage load(const QString& name)
{
    const QString file = QFileInfo(name).suffix().isEmpty() ? name + QStringLiteral(".png") : name;
    return QImage(QStringLiteral(":/images/") + file).convertToFormat(QImage::Format_ARGB32);
}

// Mean difference per channel (0..255) over the pixels where either picture is not fully transparent.
double meanDifference(const QImage& a, const QImage& b)
{
    double sum = 0;
    int counted = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            if (qAlpha(p) == 0 && qAlpha(q) == 0)
                continue;
            sum += std::abs(qRed(p) - qRed(q)) + std::abs(qGreen(p) - qGreen(q)) + std::abs(qBlue(p) - qBlue(q)) +
                   std::abs(qAlpha(p) - qAlpha(q));
            ++counted;
        }
    }
    return counted == 0 ? 0 : sum / (4.0 * counted);
}

// The faces the captions are set in; without them a fresh render of a source with text differs
// from the committed one for a reason that is not a stale picture.
bool captionFontsInstalled()
{
    const QStringList styles = QFontDatabase().styles(QStringLiteral("DejaVu Sans"));
    return styles.contains(QStringLiteral("Condensed Bold")) && styles.contains(QStringLiteral("Bold Oblique"));
}

QString sourceDir()
{
    const QString root = qEnvironmentVariable("QMK_TEST_SOURCE_DIR");
    return root.isEmpty() ? QString() : root + QStringLiteral("/resources/images/src");
}

} // namespace

class TestImages : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { Application::registerResources(); }

    void isRealPicture_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("minSide");
        QTest::addColumn<int>("maxSide");
        QTest::addColumn<bool>("exactSquare");
        for (const PictureSet& s : kSets)
            for (const QString& name : s.all())
                QTest::newRow(qPrintable(name)) << name << s.minSide << s.maxSide << true;
        // The window's icon, read at the size the window asks for first.
        QTest::newRow("Quillmark.ico") << QStringLiteral("Quillmark.ico") << 16 << 256 << true;
        // The logo is a wide strip above the header line (170 px).
        QTest::newRow("Quillmark.png") << QStringLiteral("Quillmark.png") << 36 << 180 << false;
    }
    void isRealPicture()
    {
        QFETCH(QString, name);
        QFETCH(int, minSide);
        QFETCH(int, maxSide);
        QFETCH(bool, exactSquare);

        const QImage image = load(name);
        QVERIFY2(!image.isNull(), qPrintable(name + " does not load"));
        if (exactSquare) {
            QCOMPARE(image.width(), image.height());
            QVERIFY2(image.width() >= minSide && image.width() <= maxSide,
                     qPrintable(QStringLiteral("%1 is %2 px wide").arg(name).arg(image.width())));
        } else {
            QVERIFY(image.width() >= 150 && image.width() <= maxSide);
            QVERIFY(image.height() >= minSide && image.height() <= 44);
        }

        QSet<QRgb> colours;
        int transparent = 0, opaque = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QRgb p = image.pixel(x, y);
                colours.insert(p);
                if (qAlpha(p) == 0)
                    ++transparent;
                else if (qAlpha(p) == 255)
                    ++opaque;
            }
        }
        const int pixels = image.width() * image.height();
        // A drawing with gradients and soft edges has many colours; a flat or two-tone square does not.
        QVERIFY2(colours.size() >= qMin(40, pixels / 8),
                 qPrintable(QStringLiteral("%1 has only %2 colours").arg(name).arg(colours.size())));
        // Shapes sit on a transparent ground: the corners show through, and there is a solid figure.
        QVERIFY2(transparent > 0, qPrintable(name + " has no transparent pixel"));
        QVERIFY2(qAlpha(image.pixel(0, 0)) == 0, qPrintable(name + " has an opaque top-left corner"));
        QVERIFY2(opaque >= pixels / 10, qPrintable(name + " is mostly see-through"));
    }

    // Hover states must stand out from their normal state, and pictures that stand for different
    // things side by side must not be near copies of each other.
    void picturesDiffer_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<double>("minDiff");
        for (const PictureSet& s : kSets) {
            if (s.names.size() > 1)
                QTest::newRow(s.tag) << s.names << 8.0;
            if (!s.hover.isEmpty())
                for (const QString& name : s.names)
                    QTest::newRow(qPrintable(name)) << QStringList{name, s.hoverOf(name)} << 30.0;
        }
    }
    void picturesDiffer()
    {
        QFETCH(QStringList, names);
        QFETCH(double, minDiff);
        for (int i = 0; i < names.size(); ++i) {
            for (int j = i + 1; j < names.size(); ++j) {
                const QImage a = load(names.at(i)), b = load(names.at(j));
                QVERIFY(!a.isNull() && !b.isNull());
                // Both share one widget mask and one place in the layout.
                QCOMPARE(a.size(), b.size());
                const double diff = meanDifference(a, b);
                QVERIFY2(
                    diff > minDiff,
                    qPrintable(QStringLiteral("%1 and %2 differ by only %3").arg(names.at(i), names.at(j)).arg(diff)));
            }
        }
    }

    // The committed pictures must be what their sources draw: an edited source that was never
    // re-rendered shows up here.
    void rendersMatchSources()
    {
        const QDir src(sourceDir());
        if (sourceDir().isEmpty() || !src.exists())
            QSKIP("source folder unknown");
        const QStringList svgs = src.entryList({QStringLiteral("*.svg")}, QDir::Files, QDir::Name);
        QVERIFY(!svgs.isEmpty());
        const bool fonts = captionFontsInstalled();
        QStringList stale, orphaned, unchecked;
        for (const QString& svg : svgs) {
            const QString name = svg.chopped(4);
            const QImage committed = load(name);
            if (committed.isNull()) {
                orphaned << name;
                continue;
            }
            QFile file(src.filePath(svg));
            QVERIFY(file.open(QIODevice::ReadOnly));
            if (!fonts && file.readAll().contains("<text")) {
                unchecked << name;
                continue;
            }
            QSvgRenderer renderer(src.filePath(svg));
            QImage fresh(renderer.defaultSize(), QImage::Format_ARGB32_Premultiplied);
            fresh.fill(Qt::transparent);
            QPainter p(&fresh);
            p.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform | QPainter::TextAntialiasing);
            renderer.render(&p, QRectF(QPointF(0, 0), QSizeF(renderer.defaultSize())));
            p.end();
            fresh = fresh.convertToFormat(QImage::Format_ARGB32);
            if (fresh.size() != committed.size() || meanDifference(fresh, committed) > 2.0)
                stale << name;
        }
        QVERIFY2(orphaned.isEmpty(), qPrintable("sources without a resource: " + orphaned.join(", ")));
        QVERIFY2(stale.isEmpty(), qPrintable("re-run tools/render-images.sh for: " + stale.join(", ")));
        if (!unchecked.isEmpty())
            qWarning("DejaVu Sans faces missing, not compared: %s", qPrintable(unchecked.join(", ")));
        // And the reverse: every picture has a source.
        for (const PictureSet& s : kSets)
            for (const QString& name : s.all())
                QVERIFY2(src.exists(name + QStringLiteral(".svg")), qPrintable(name));
    }
};

QTEST_MAIN(TestImages)
#include "TestImages.moc"
