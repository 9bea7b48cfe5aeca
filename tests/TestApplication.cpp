#include "app/Application.h"
#include "app/CAppPaths.h"
#include "app/CMyLog.h"
#include "support/TempAppDir.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>
#include <QXmlStreamReader>

#include <cmath>

namespace {
struct Message
{
    QString context;
    QString source;
    QString translation;
    bool finished = false;
};

QList<Message> readTs(const QString& path)
{
    QList<Message> messages;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return messages;
    QXmlStreamReader xml(&file);
    QString context;
    Message current;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("name"))
            context = xml.readElementText();
        else if (xml.name() == QLatin1String("message"))
            current = Message{context, QString(), QString(), false};
        else if (xml.name() == QLatin1String("source"))
            current.source = xml.readElementText();
        else if (xml.name() == QLatin1String("translation")) {
            current.finished = xml.attributes().value(QLatin1String("type")).isEmpty();
            // Plural texts hold one numerusform element per form.
            current.translation = xml.readElementText(QXmlStreamReader::IncludeChildElements);
            messages << current;
        }
    }
    return messages;
}

const QString kSourceDir = qEnvironmentVariable("QMK_TEST_SOURCE_DIR");

// A list of the word list: the lines "- ..." under the heading that holds `heading`.
QStringList wordList(const QString& heading)
{
    QFile file(kSourceDir + QStringLiteral("/resources/lang/WORDS.md"));
    QStringList words;
    if (!file.open(QIODevice::ReadOnly))
        return words;
    bool inList = false;
    for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("## ")))
            inList = line.contains(heading);
        else if (inList && line.startsWith(QLatin1String("- ")))
            words << line.mid(2);
    }
    return words;
}

bool holds(const QString& text, const QString& word)
{
    // A plain word counts only as a whole word ("Ok" is not "OK" nor "Okay").
    if (QRegularExpression(QStringLiteral("^\\w+$")).match(word).hasMatch())
        return QRegularExpression(QStringLiteral("\\b") + word + QStringLiteral("\\b")).match(text).hasMatch();
    return text.contains(word);
}

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

} // namespace

// The program's start: its languages and their translations, its pictures, its folders, its log and its
// restart loop.
class TestApplication : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { Application::registerResources(); }

    // clang-format off
    void startupLanguage_data()
    {
        QTest::addColumn<QString>("systemLocale");
        QTest::addColumn<QString>("stored");              // language from the settings, empty for none
        QTest::addColumn<QString>("expectedLanguage");
        QTest::addColumn<QString>("expectedTranslator");  // language of the installed translator, empty for none
        QTest::addColumn<QString>("twoLetter");           // the manual's language suffix

        QTest::newRow("de_DE starts German") << "de_DE" << "" << "de_DE" << "de_DE" << "de";
        // The country of the system locale is what is matched, so Austria starts in English.
        QTest::newRow("de_AT starts English") << "de_AT" << "" << "en_US" << "en_US" << "en";
        QTest::newRow("fr_FR starts English") << "fr_FR" << "" << "en_US" << "en_US" << "en";
        QTest::newRow("en_GB starts English") << "en_GB" << "" << "en_US" << "en_US" << "en";
        QTest::newRow("en_US starts English") << "en_US" << "" << "en_US" << "en_US" << "en";
        // Country "de" matches the German file's language, but en_DE is no translation of its own.
        QTest::newRow("en_DE takes the full name, no translator") << "en_DE" << "" << "en_DE" << "" << "en";
        QTest::newRow("C is compared whole") << "C" << "" << "en_US" << "en_US" << "en";
        QTest::newRow("bare de is compared whole") << "de" << "" << "de" << "" << "";
        QTest::newRow("stored German wins") << "fr_FR" << "de_DE" << "de_DE" << "de_DE" << "de";
        QTest::newRow("stored English wins") << "de_DE" << "en_US" << "en_US" << "en_US" << "en";
        QTest::newRow("stored unknown key shows built-in texts") << "de_DE" << "xx_YY" << "xx_YY" << "" << "xx";
        QTest::newRow("stored lower-case key is not a key") << "de_DE" << "de_de" << "de_de" << "" << "de";
        QTest::newRow("stored garbage") << "en_US" << "__" << "__" << "" << "";
        QTest::newRow("stored three-part key") << "en_US" << "sr_Latn_RS" << "sr_Latn_RS" << "" << "latn";
    }
    // clang-format on

    void startupLanguage()
    {
        QFETCH(QString, systemLocale);
        QFETCH(QString, stored);
        QFETCH(QString, expectedLanguage);
        QFETCH(QString, expectedTranslator);
        QFETCH(QString, twoLetter);

        Application::loadTranslations(QDir(QStringLiteral(":/lang")), systemLocale);
        if (!stored.isEmpty())
            Application::setLanguage(stored);

        QCOMPARE(Application::GetLanguage(), expectedLanguage);
        QCOMPARE(Application::GetTwoLetterLanguage(), twoLetter);
        QTranslator* current = Application::currentTranslator();
        if (expectedTranslator.isEmpty())
            QVERIFY(!current);
        else {
            QVERIFY(current);
            QCOMPARE(current->language(), expectedTranslator);
        }
        // Qt's own texts (standard buttons) follow, and only for a language the program has.
        QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"),
                 QString(expectedTranslator == QLatin1String("de_DE") ? "Abbrechen" : "Cancel"));
        QStringList languages = Application::availableLanguages();
        languages.sort();
        QCOMPARE(languages, QStringList({QStringLiteral("de_DE"), QStringLiteral("en_US")}));
    }

    void emptyLanguageFolder()
    {
        TempAppDir app;
        Application::loadTranslations(QDir(app.path()), QStringLiteral("de_DE"));
        QCOMPARE(Application::GetLanguage(), QStringLiteral("en_US"));
    }

    // A macOS bundle reads the shipped files from its Resources and keeps nothing of the user's
    // beside them. A portable folder is TestDialogs::helpDialogLinksTheBuiltManual's (the paths
    // the help shows), an installed one TestPackage's.
    void macBundleFolders()
    {
        QTemporaryDir work;
        const QString folder = work.path() + "/Quillmark.app/Contents/MacOS";
        const QString catalogue = work.path() + "/Quillmark.app/Contents/Resources/bin/base_ini.xml";
        QVERIFY(QDir().mkpath(folder) && QDir().mkpath(QFileInfo(catalogue).absolutePath()));
        QFile made(catalogue);
        QVERIFY(made.open(QIODevice::WriteOnly));
        const QString previous = Application::st_strAppPath;
        Application::st_strAppPath = folder;
        const QString read = CAppPaths::CatalogueFile();
        const bool portable = CAppPaths::IsPortable();
        Application::st_strAppPath = previous;
        QCOMPARE(read, catalogue);
        QVERIFY(!portable);
    }

    void restartLoop_data()
    {
        QTest::addColumn<QStringList>("codes");
        QTest::addColumn<int>("passes");
        QTest::addColumn<int>("exitCode");
        QTest::newRow("0 ends at once") << QStringList{"0"} << 1 << 0;
        QTest::newRow("20 builds again, then 0") << QStringList{"20", "0"} << 2 << 0;
        QTest::newRow("two restarts") << QStringList{"20", "20", "0"} << 3 << 0;
        QTest::newRow("other codes end the process") << QStringList{"20", "7"} << 2 << 7;
        QTest::newRow("21 is no restart") << QStringList{"21", "0"} << 1 << 21;
    }

    void restartLoop()
    {
        QFETCH(QStringList, codes);
        QFETCH(int, passes);
        QFETCH(int, exitCode);

        TempAppDir app;
        // A quiet program folder: a tiny catalogue and no automatic network checks.
        QVERIFY(app.writeFile(QStringLiteral("bin/base_ini.xml"), "<data><App><Version>1.0.0</Version></App></data>"));
        QVERIFY(app.writeFile(QStringLiteral("bin/prop_ini.xml"),
                              "<data><App><DSAutoUpdate>0</DSAutoUpdate>"
                              "<QuillmarkAutoUpdate>0</QuillmarkAutoUpdate></App></data>"));

        QProcess probe;
        probe.start(QCoreApplication::applicationDirPath() + QStringLiteral("/probe_restart"),
                    QStringList{app.path()} + codes);
        QVERIFY(probe.waitForFinished(60000));
        const QString out = QString::fromLocal8Bit(probe.readAllStandardOutput());
        QCOMPARE(probe.exitStatus(), QProcess::NormalExit);
        QCOMPARE(probe.exitCode(), exitCode);

        const QStringList lines = out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QStringList passLines = lines.filter(QRegularExpression(QStringLiteral("^pass ")));
        QCOMPARE(passLines.size(), passes);
        QString pid;
        for (int i = 0; i < passes; ++i) {
            const QStringList words = passLines.at(i).split(QLatin1Char(' '));
            QCOMPARE(words.at(1).toInt(), i);
            if (i == 0)
                pid = words.at(3);
            QCOMPARE(words.at(3), pid);                 // same process
            QCOMPARE(words.at(5).toInt(), i + 1);       // a new window each pass
            QCOMPARE(words.at(7), QStringLiteral("1")); // shown
            QCOMPARE(words.at(9),
                     QStringLiteral("de_DE,en_US")); // translations loaded again
        }
        QVERIFY2(lines.last() == QStringLiteral("loop returned %1").arg(exitCode), qPrintable(out));
    }

    // Every text the sources hand to translation must have a finished translation in German and in
    // English, so that no user meets a caption that reads like code.
    // Every text the sources hand to translation has a finished translation in both languages,
    // and none copies a source text that reads like code.
    void everyTextTranslated_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("German") << "de_de.ts";
        QTest::newRow("English") << "en_us.ts";
    }

    void everyTextTranslated()
    {
        QFETCH(QString, file);
        const QString lupdate = QStringLiteral("/usr/lib/qt5/bin/lupdate");
        if (!QFile::exists(lupdate))
            QSKIP("lupdate is not installed");
        QTemporaryDir tmp;
        const QString extracted = tmp.filePath(QStringLiteral("extracted.ts"));
        QProcess process;
        process.setWorkingDirectory(kSourceDir);
        process.start(lupdate, {QStringLiteral("-silent"), QStringLiteral("-recursive"), QStringLiteral("app"),
                                QStringLiteral("model"), QStringLiteral("engine"), QStringLiteral("ui"),
                                QStringLiteral("-ts"), extracted});
        QVERIFY(process.waitForFinished(120000));
        QCOMPARE(process.exitCode(), 0);

        QHash<QString, Message> translated;
        for (const Message& m : readTs(kSourceDir + QStringLiteral("/resources/lang/") + file))
            translated.insert(m.context + QLatin1Char('|') + m.source, m);
        // The code-like words of the word list; the texts only the logs show keep their wording.
        const QStringList codeLike = wordList(QStringLiteral("Code-like"));
        const QStringList logOnly = wordList(QStringLiteral("Log texts"));
        QVERIFY(codeLike.contains(QStringLiteral("OverwriteAccept")));

        const QList<Message> used = readTs(extracted);
        QVERIFY(!used.isEmpty());
        QStringList missing, copied;
        for (const Message& m : used) {
            const Message t = translated.value(m.context + QLatin1Char('|') + m.source);
            if (!t.finished || t.translation.isEmpty())
                missing << m.context + QStringLiteral(": ") + m.source;
            else if (t.translation == m.source && !logOnly.contains(m.source))
                for (const QString& word : codeLike)
                    if (holds(m.source, word)) {
                        copied << m.context + QStringLiteral(": ") + m.source;
                        break;
                    }
        }
        QVERIFY2(missing.isEmpty(), qPrintable(QStringLiteral("Untranslated: ") + missing.join(QStringLiteral("; "))));
        QVERIFY2(copied.isEmpty(), qPrintable(QStringLiteral("Reads like code: ") + copied.join(QStringLiteral("; "))));
    }

    void writesEntries_data()
    {
        QTest::addColumn<QByteArray>("before"); // file content before, or "<none>"
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("bNew");
        QTest::addColumn<QByteArray>("expectedBefore"); // what stays of the old content
        QTest::addColumn<QByteArray>("expectedText");   // the entry's text as bytes

        QTest::newRow("new file") << QByteArray("<none>") << "Init" << true << QByteArray() << QByteArray("Init");
        QTest::newRow("append to missing file")
            << QByteArray("<none>") << "first" << false << QByteArray() << QByteArray("first");
        QTest::newRow("append keeps ascii") << QByteArray("\r\n10:00:00  --  old") << "next" << false
                                            << QByteArray("\r\n10:00:00  --  old") << QByteArray("next");
        QTest::newRow("bNew discards") << QByteArray("\r\n10:00:00  --  old") << "Init" << true << QByteArray()
                                       << QByteArray("Init");
        QTest::newRow("u umlaut is one latin-1 byte") << QByteArray("<none>") << QString::fromUtf8("Gr\xc3\xbc\xc3\x9f")
                                                      << true << QByteArray() << QByteArray("Gr\xfc\xdf");
        QTest::newRow("euro sign becomes ?")
            << QByteArray("<none>") << QString::fromUtf8("5 \xe2\x82\xac") << true << QByteArray() << QByteArray("5 ?");
        QTest::newRow("line breaks in text")
            << QByteArray("<none>") << "a\nb" << true << QByteArray() << QByteArray("a\nb");
    }

    void writesEntries()
    {
        QFETCH(QByteArray, before);
        QFETCH(QString, text);
        QFETCH(bool, bNew);
        QFETCH(QByteArray, expectedBefore);
        QFETCH(QByteArray, expectedText);

        TempAppDir app;
        QVERIFY(app.isValid());
        if (before != "<none>")
            QVERIFY(app.writeFile(QStringLiteral("log/test.txt"), before));

        CMyLog log;
        log.SetFileName(QStringLiteral("test.txt"));
        log.WriteString(text, bNew);

        const QByteArray content = app.readFile(QStringLiteral("log/test.txt"));
        QVERIFY2(content.startsWith(expectedBefore), content.constData());
        const QByteArray entry = content.mid(expectedBefore.size());
        QCOMPARE(entry.size(), 2 + 8 + 6 + expectedText.size());
        QVERIFY(QRegularExpression(QStringLiteral("^\r\n\\d\\d:\\d\\d:\\d\\d  --  $"))
                    .match(QString::fromLatin1(entry.left(16)))
                    .hasMatch());
        QCOMPARE(entry.mid(16), expectedText);
    }

    void longRunsKeepEveryEntryAndTheLatin1Rules()
    {
        // Many entries in a row, one of them non-ASCII: each later entry still turns it into "?".
        TempAppDir app;
        CMyLog log;
        log.SetFileName(QStringLiteral("run.txt"));
        log.WriteString(QStringLiteral("Init"), true);
        for (int i = 0; i < 200; ++i)
            log.WriteString(QStringLiteral("line %1").arg(i), false);
        log.WriteString(QString::fromUtf8("K\xc3\xb6ln"), false);
        log.WriteString(QStringLiteral("after"), false);
        // Another writer in between is noticed: its bytes go through the same read-as-UTF-8 rule.
        QFile other(app.filePath(QStringLiteral("log/run.txt")));
        QVERIFY(other.open(QIODevice::Append));
        other.write("\r\n10:00:00  --  Z\xfcrich");
        other.close();
        log.WriteString(QStringLiteral("last"), false);

        const QByteArray content = app.readFile(QStringLiteral("log/run.txt"));
        const QList<QByteArray> lines = content.split('\n');
        QCOMPARE(lines.size(), 1 + 1 + 200 + 4);
        QVERIFY(content.contains("  --  line 0\r\n"));
        QVERIFY(content.contains("  --  line 199\r\n"));
        QVERIFY(content.contains("  --  K?ln\r\n"));
        QVERIFY(content.contains("  --  Z?rich\r\n"));
        QVERIFY(content.endsWith("  --  last"));
        QVERIFY(!QRegularExpression(QStringLiteral("[^\\x00-\\x7f]")).match(QString::fromLatin1(content)).hasMatch());
    }

    void batchWritesWhatSingleWritesWould()
    {
        TempAppDir app;
        QVERIFY(app.writeFile(QStringLiteral("log/a.txt"), "\r\n10:00:00  --  M\xfcnchen"));
        CMyLog a;
        a.SetFileName(QStringLiteral("a.txt"));
        CMyLog b;
        b.SetFileName(QStringLiteral("b.txt"));
        {
            CMyLog::Batch batch;
            a.WriteString(QStringLiteral("one"), false);
            b.WriteString(QStringLiteral("dropped"), false);
            b.WriteString(QStringLiteral("Init"), true);
            {
                CMyLog::Batch inner;
                a.WriteString(QStringLiteral("two"), false);
            }
            b.WriteString(QStringLiteral("three"), false);
            QCOMPARE(app.readFile(QStringLiteral("log/a.txt")), QByteArray("\r\n10:00:00  --  M\xfcnchen"));
        }
        const QRegularExpression time(QStringLiteral("\\d\\d:\\d\\d:\\d\\d"));
        const auto read = [&](const char* name) {
            return QString::fromLatin1(app.readFile(QLatin1String(name))).replace(time, QStringLiteral("T"));
        };
        QCOMPARE(read("log/a.txt"), QStringLiteral("\r\nT  --  M?nchen\r\nT  --  one\r\nT  --  two"));
        QCOMPARE(read("log/b.txt"), QStringLiteral("\r\nT  --  Init\r\nT  --  three"));
    }

    // A removed log folder is made again; a plain file where it should be stops neither the folder
    // nor the log from being written, nor the caller.
    void logFolderTrouble()
    {
        TempAppDir app;
        CMyLog log;
        log.SetFileName(QStringLiteral("a.txt"));
        log.WriteString(QStringLiteral("one"), true);
        QVERIFY(QDir(app.filePath(QStringLiteral("log"))).removeRecursively());
        log.WriteString(QStringLiteral("two"), false);
        const QByteArray content = app.readFile(QStringLiteral("log/a.txt"));
        QVERIFY2(QRegularExpression(QStringLiteral("^\r\n\\d\\d:\\d\\d:\\d\\d  --  two$"))
                     .match(QString::fromLatin1(content))
                     .hasMatch(),
                 content.constData());

        QVERIFY(QDir(app.filePath(QStringLiteral("log"))).removeRecursively());
        QVERIFY(app.writeFile(QStringLiteral("log"), "not a folder"));
        log.WriteString(QStringLiteral("lost"), false);
        log.WriteString(QStringLiteral("lost"), true);
        QCOMPARE(app.readFile(QStringLiteral("log")), QByteArray("not a folder"));
    }

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
        const QDir src(kSourceDir + QStringLiteral("/resources/images/src"));
        if (kSourceDir.isEmpty() || !src.exists())
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

QTEST_MAIN(TestApplication)
#include "TestApplication.moc"
