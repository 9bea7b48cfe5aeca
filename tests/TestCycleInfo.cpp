#include "model/CProduct.h"
#include "support/TempAppDir.h"

#include <QtTest>

#include <unistd.h>

namespace {
const QByteArray kPlaceholder = "AIRAC cycle    : unknown\r\nRevision       : \r\n";

// Receives the state through a queued connection, as the product panel does.
class StateSink : public QObject
{
    Q_OBJECT
public:
    QList<int> states;
public slots:
    void take(EQMKProductInstallState state) { states << int(state); }
};
} // namespace

class TestCycleInfo : public QObject
{
    Q_OBJECT

private slots:
    void cycleCheck_data();
    void cycleCheck();
    void backupFileAndPlaceholder();
};

void TestCycleInfo::cycleCheck_data()
{
    QTest::addColumn<QString>("folder");     // "ok", "missing" or "unresolved"
    QTest::addColumn<QByteArray>("content"); // null: no file; "@unreadable@": a file nobody may read
    QTest::addColumn<QString>("newCycle");
    QTest::addColumn<QString>("newRevision");
    QTest::addColumn<QString>("cycle");
    QTest::addColumn<QString>("revision");
    QTest::addColumn<int>("state");

    QTest::newRow("padded keys, CR LF") << "ok" << QByteArray("AIRAC cycle    : 2101\r\nRevision       : 2\r\n")
                                        << "2101" << "2" << "2101" << "2" << 5;
    QTest::newRow("no final line feed") << "ok" << QByteArray("AIRAC cycle:2101\nRevision:1") << "2101" << "1"
                                        << "2101" << "1" << 5;
    QTest::newRow("text after a second colon") << "ok" << QByteArray("AIRAC cycle : 2101 : valid to 2021-02-25\n")
                                               << "2101" << "" << "2101" << "" << 5;
    QTest::newRow("lower-case key is ignored") << "ok" << QByteArray("airac cycle: 2101\nRevision: 1\n") << "2101"
                                               << "1" << "" << "1" << 7;
    QTest::newRow("later line wins") << "ok"
                                     << QByteArray("AIRAC cycle: 1801\nRevision: 1\nAIRAC cycle: 2101\nRevision: 3\n")
                                     << "2101" << "3" << "2101" << "3" << 5;
    QTest::newRow("extra keys and lines without colon")
        << "ok" << QByteArray("Name: Demo\nno colon here\n\nAIRAC cycle  :  2013 \nValid: 1:2\n") << "2013" << ""
        << "2013" << "" << 5;
    QTest::newRow("older cycle is due") << "ok" << QByteArray("AIRAC cycle: 2013\nRevision: 1\n") << "2101" << "1"
                                        << "2013" << "1" << 7;
    QTest::newRow("other revision is due") << "ok" << QByteArray("AIRAC cycle: 2101\nRevision: 1\n") << "2101"
                                           << "2" << "2101" << "1" << 7;
    QTest::newRow("cycle and revision run together") << "ok" << QByteArray("AIRAC cycle: 210\nRevision: 11\n")
                                                     << "2101" << "1" << "210" << "11" << 5;
    QTest::newRow("no target cycle") << "ok" << QByteArray("AIRAC cycle: 2101\nRevision: 1\n") << "" << "1" << ""
                                     << "" << 4;
    QTest::newRow("missing file") << "ok" << QByteArray() << "2101" << "1" << "" << "" << 7;
    QTest::newRow("empty file") << "ok" << QByteArray("") << "2101" << "1" << "" << "" << 7;
    QTest::newRow("reading stops at NUL")
        << "ok" << QByteArray("AIRAC cycle: 2101\n\0Revision: 9\n", 32) << "2101" << "" << "2101" << "" << 5;
    QByteArray binary(4096, '\x01');
    for (int i = 0; i < binary.size(); ++i)
        binary[i] = char(1 + (i * 61) % 255);
    QTest::newRow("binary") << "ok" << binary << "2101" << "1" << "" << "" << 7;
    QByteArray longFile;
    while (longFile.size() < 8 * 1024 * 1024)
        longFile += "Comment: padding line of a very long cycle file\r\n";
    longFile += "AIRAC cycle: 2101\r\nRevision: 1";
    QTest::newRow("very long") << "ok" << longFile << "2101" << "1" << "2101" << "1" << 5;
    QTest::newRow("placeholder reads as unknown") << "ok" << kPlaceholder << "2101" << "1" << "unknown" << "" << 7;
    QTest::newRow("folder missing") << "missing" << QByteArray() << "2101" << "1" << "" << "" << 7;
    QTest::newRow("folder not resolved") << "unresolved" << QByteArray() << "2101" << "1" << "" << "" << 7;
    QTest::newRow("unreadable") << "ok" << QByteArray("@unreadable@") << "2101" << "1" << "" << "" << 7;
}

void TestCycleInfo::cycleCheck()
{
    QFETCH(QString, folder);
    QFETCH(QByteArray, content);
    QFETCH(QString, newCycle);
    QFETCH(QString, newRevision);
    QFETCH(QString, cycle);
    QFETCH(QString, revision);
    QFETCH(int, state);

    const bool unreadable = content == "@unreadable@";
    if (unreadable && geteuid() == 0)
        QSKIP("permissions do not stop root");

    TempAppDir dir;
    const QString data = dir.filePath(QStringLiteral("addon/navdata"));
    if (folder == QLatin1String("ok"))
        QVERIFY(QDir().mkpath(data));
    if (unreadable) {
        QVERIFY(dir.writeFile(QStringLiteral("addon/navdata/cycle_info.txt"), "AIRAC cycle: 2101\nRevision: 1\n"));
        QVERIFY(QFile::setPermissions(data + QStringLiteral("/cycle_info.txt"), QFileDevice::WriteOwner));
    } else if (!content.isNull()) {
        QVERIFY(dir.writeFile(QStringLiteral("addon/navdata/cycle_info.txt"), content));
    }

    CProduct product;
    product.SetNewProductPath(dir.filePath(QStringLiteral("addon")));
    product.SetCycleInfoPath(folder == QLatin1String("unresolved") ? QStringLiteral("$UserDocuments/navdata")
                                                                   : QStringLiteral("$ProductPath\\navdata"));
    // Stale values from an earlier read must not survive.
    product.SetNewCycle(QStringLiteral("x"));

    StateSink sink;
    // By name: a queued connection then needs the state registered under its name.
    QVERIFY(connect(&product, SIGNAL(SignalChangeInstallState(EQMKProductInstallState)), &sink,
                    SLOT(take(EQMKProductInstallState)), Qt::QueuedConnection));

    const bool result = product.CheckCycleVersion(newCycle, newRevision);
    QCOMPARE(result, state == 5);
    QCOMPARE(int(product.GetInstallState()), state);
    QCOMPARE(product.GetNewCycle(), newCycle);
    if (state != 4) {
        QCOMPARE(product.GetCycleVersion(), cycle);
        QCOMPARE(product.GetRevision(), revision);
        QCOMPARE(product.CheckExistCycleInfoFile(), !content.isNull() && folder == QLatin1String("ok"));
    }
    QTRY_COMPARE(sink.states, QList<int>{state});

    // A second check with the same values reports again.
    product.UpdateCheckCycleVersion();
    QTRY_COMPARE(sink.states, (QList<int>{state, state}));
}

void TestCycleInfo::backupFileAndPlaceholder()
{
    TempAppDir dir;
    CProduct product;
    product.SetDataset(QStringLiteral("fmc procedures"));
    product.SetCycleInfoPath(QStringLiteral("$ProductPath"));
    product.SetNewProductPath(dir.filePath(QStringLiteral("addon")));

    // No folder yet: nothing is written.
    product.InitRealCycleInfoPath();
    QVERIFY(!product.WriteUnknownBackupCycleInfoFile());
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("addon"))));

    // The folder exists but its backup folder does not: the placeholder is due, but not created here.
    QVERIFY(QDir().mkpath(dir.filePath(QStringLiteral("addon"))));
    QVERIFY(product.WriteUnknownBackupCycleInfoFile());
    QVERIFY(!QFile::exists(product.GetBackCycleInfoFile()));

    const QString back = dir.filePath(QStringLiteral("addon/QMK_fmc procedures_back"));
    QCOMPARE(product.GetBackCycleInfoFile(), back + QStringLiteral("/cycle_info.txt"));
    QVERIFY(QDir().mkpath(back));
    QVERIFY(product.WriteUnknownBackupCycleInfoFile());
    QVERIFY(!product.WriteUnknownBackupCycleInfoFile());
    QCOMPARE(dir.readFile(QStringLiteral("addon/QMK_fmc procedures_back/cycle_info.txt")), kPlaceholder);
    QCOMPARE(product.GetBackCycleVersion(), QStringLiteral("unknown"));
    QCOMPARE(product.GetBackRevision(), QString());

    // An existing backup file is left alone.
    QVERIFY(dir.writeFile(QStringLiteral("addon/QMK_fmc procedures_back/cycle_info.txt"),
                          "AIRAC cycle: 2013\r\nRevision: 2\r\n"));
    QVERIFY(!product.WriteUnknownBackupCycleInfoFile());
    QCOMPARE(product.GetBackCycleVersion(), QStringLiteral("2013"));
    QCOMPARE(product.GetBackRevision(), QStringLiteral("2"));
    // The installed file is a different one.
    QCOMPARE(product.GetCycleVersion(), QString());

    // The folder moves away: the values read before are cleared.
    product.SetNewProductPath(dir.filePath(QStringLiteral("elsewhere")));
    QCOMPARE(product.GetBackCycleVersion(), QString());
    QCOMPARE(product.GetBackRevision(), QString());
}

QTEST_MAIN(TestCycleInfo)
#include "TestCycleInfo.moc"
