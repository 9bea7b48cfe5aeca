#include "app/Application.h"
#include "app/CAppPaths.h"
#include "app/CMyLog.h"
#include "support/TempAppDir.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>
#include <QXmlStreamReader>

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
} // namespace

// The program's start: its languages and their translations, its folders, its log and its restart loop.
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

    void recreatesRemovedLogFolder()
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

    void unwritableLogNeverStopsTheCaller()
    {
        // A plain file where the folder should be: neither the folder nor the log can be made.
        TempAppDir app;
        QVERIFY(QDir(app.filePath(QStringLiteral("log"))).removeRecursively());
        QVERIFY(app.writeFile(QStringLiteral("log"), "not a folder"));
        CMyLog log;
        log.SetFileName(QStringLiteral("x.txt"));
        log.WriteString(QStringLiteral("lost"), false);
        log.WriteString(QStringLiteral("lost"), true);
        QCOMPARE(app.readFile(QStringLiteral("log")), QByteArray("not a folder"));
    }
};

QTEST_MAIN(TestApplication)
#include "TestApplication.moc"
