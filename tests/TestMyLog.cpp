#include "app/CMyLog.h"
#include "support/TempAppDir.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

class TestMyLog : public QObject
{
    Q_OBJECT

private slots:
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

QTEST_MAIN(TestMyLog)
#include "TestMyLog.moc"
