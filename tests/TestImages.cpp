#include "app/Application.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QSet>
#include <QSvgRenderer>
#include <QTest>

#include <cmath>

namespace {

// Every picture the program asks for, with the size range it is laid out for.
struct ImageSpec
{
    const char* name;
    int minSide;
    int maxSide;
};

// clang-format off
const ImageSpec kImages[] = {
    {"mini_gr.png", 16, 20},          {"mini_blue.png", 16, 20},        {"maxi_gr.png", 16, 20},
    {"maxi_blue.png", 16, 20},        {"close_gr.png", 16, 20},         {"close_blue.png", 16, 20},
    {"norm_gr.png", 16, 20},          {"norm_blue.png", 16, 20},        {"Update.png", 40, 48},
    {"UpdateMove.png", 40, 48},       {"Reset.png", 40, 48},            {"ResetMove.png", 40, 48},
    {"RemoveBackup.png", 40, 48},     {"RemoveBackupMove.png", 40, 48}, {"Settings.png", 40, 48},
    {"SettingsMove.png", 40, 48},     {"Help.png", 40, 48},             {"HelpMove.png", 40, 48},
    {"All32.png", 32, 32},            {"All48.png", 48, 48},            {"UpdateList32.png", 32, 32},
    {"UpdateList48.png", 48, 48},     {"XPlane1032.png", 32, 32},       {"XPlane1048.png", 48, 48},
    {"XPlane1132.png", 32, 32},       {"XPlane1148.png", 48, 48},       {"FSX32.png", 32, 32},
    {"FSX48.png", 48, 48},            {"FS200432.png", 32, 32},         {"FS200448.png", 48, 48},
    {"P3D232.png", 32, 32},           {"P3D248.png", 48, 48},           {"P3D332.png", 32, 32},
    {"P3D348.png", 48, 48},           {"P3D432.png", 32, 32},           {"P3D448.png", 48, 48},
    {"prod_install_run.png", 48, 64}, {"prod_reset_run.png", 48, 64},   {"prod_remove_backup_run.png", 48, 64},
    {"prod_not_install.png", 48, 64}, {"prod_install_ok.png", 48, 64},  {"prod_install_error.png", 48, 64},
    {"prod_install_warning.png", 48, 64}, {"prod_update.png", 48, 64},  {"update_gr.png", 28, 32},
    {"update_bl.png", 28, 32},        {"reset_gr.png", 28, 32},         {"reset_bl.png", 28, 32},
    {"remove_backup_gr.png", 28, 32}, {"remove_backup_bl.png", 28, 32}, {"links.png", 12, 16},
    {"rechts.png", 12, 16},           {"unten.png", 12, 16},            {"oben.png", 12, 16},
    {"Quillmark32.png", 32, 32},
};
// clang-format on

QImage load(const QString& name)
{
    return QImage(QStringLiteral(":/images/") + name).convertToFormat(QImage::Format_ARGB32);
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
        for (const ImageSpec& s : kImages)
            QTest::newRow(s.name) << QString::fromLatin1(s.name) << s.minSide << s.maxSide << true;
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
        for (const char* w : {"mini", "maxi", "close", "norm"})
            QTest::newRow(w) << QStringList{QString(w) + "_gr.png", QString(w) + "_blue.png"} << 30.0;
        for (const char* a : {"Update", "Reset", "RemoveBackup", "Settings", "Help"})
            QTest::newRow(a) << QStringList{QString(a) + ".png", QString(a) + "Move.png"} << 30.0;
        for (const char* c : {"update", "reset", "remove_backup"})
            QTest::newRow(c) << QStringList{QString(c) + "_gr.png", QString(c) + "_bl.png"} << 30.0;
        QTest::newRow("categories 48") << QStringList{"All48.png",      "UpdateList48.png", "XPlane1048.png",
                                                      "XPlane1148.png", "FSX48.png",        "FS200448.png",
                                                      "P3D248.png",     "P3D348.png",       "P3D448.png"}
                                       << 8.0;
        QTest::newRow("categories 32") << QStringList{"All32.png",      "UpdateList32.png", "XPlane1032.png",
                                                      "XPlane1132.png", "FSX32.png",        "FS200432.png",
                                                      "P3D232.png",     "P3D332.png",       "P3D432.png"}
                                       << 8.0;
        QTest::newRow("install states") << QStringList{"prod_install_run.png",       "prod_reset_run.png",
                                                       "prod_remove_backup_run.png", "prod_not_install.png",
                                                       "prod_install_ok.png",        "prod_install_error.png",
                                                       "prod_install_warning.png",   "prod_update.png"}
                                        << 8.0;
        QTest::newRow("actions") << QStringList{"Update.png", "Reset.png", "RemoveBackup.png", "Settings.png",
                                                "Help.png"}
                                 << 8.0;
        QTest::newRow("window buttons") << QStringList{"mini_gr.png", "maxi_gr.png", "close_gr.png", "norm_gr.png"}
                                        << 8.0;
        QTest::newRow("product commands")
            << QStringList{"update_gr.png", "reset_gr.png", "remove_backup_gr.png"} << 8.0;
        QTest::newRow("fold arrows") << QStringList{"links.png", "rechts.png", "unten.png", "oben.png"} << 8.0;
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

    void windowIconLoads()
    {
        const QIcon icon(QStringLiteral(":/images/Quillmark.ico"));
        QVERIFY(!icon.isNull());
        QVERIFY(!icon.availableSizes().isEmpty());
        const QImage image = icon.pixmap(32, 32).toImage().convertToFormat(QImage::Format_ARGB32);
        QVERIFY(!image.isNull());
        QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
        QVERIFY(qAlpha(image.pixel(16, 16)) > 200);
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
            QString name = svg.left(svg.size() - 4);
            if (QFileInfo(name).suffix().isEmpty())
                name += QStringLiteral(".png");
            const QImage committed = QImage(QStringLiteral(":/images/") + name).convertToFormat(QImage::Format_ARGB32);
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
        for (const ImageSpec& s : kImages) {
            const QString base = QString::fromLatin1(s.name).chopped(4);
            QVERIFY2(src.exists(base + QStringLiteral(".svg")), s.name);
        }
    }
};

QTEST_MAIN(TestImages)
#include "TestImages.moc"
