#include "support/FuzzTargets.h"

#include <QtTest>

// Every seed and every input the fuzzers ever tripped over, fed through the same entry points
// as the harnesses, so that a fixed finding stays fixed in the normal test run.
class TestFuzzCorpus : public QObject
{
    Q_OBJECT

private slots:
    void replay_data();
    void replay();
};

void TestFuzzCorpus::replay_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("file"); // empty: the target has no corpus

    QString root = qEnvironmentVariable("QMK_TEST_SOURCE_DIR") + QStringLiteral("/tests/fuzz/corpus");
    if (!QDir(root).exists())
        root = QFINDTESTDATA("fuzz/corpus");
    QStringList onDisk = QDir(root).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& target : FuzzTargets::names()) {
        onDisk.removeAll(target);
        const QFileInfoList files = QDir(root + QLatin1Char('/') + target).entryInfoList(QDir::Files, QDir::Name);
        if (files.isEmpty())
            QTest::newRow(qPrintable(target + QStringLiteral(" has seeds"))) << target << QString();
        for (const QFileInfo& file : files)
            QTest::newRow(qPrintable(target + QLatin1Char('/') + file.fileName())) << target << file.filePath();
    }
    // A corpus folder without an entry point would build a harness that cannot start.
    for (const QString& stray : qAsConst(onDisk))
        QTest::newRow(qPrintable(stray + QStringLiteral(" has an entry point"))) << stray << QString();
}

void TestFuzzCorpus::replay()
{
    QFETCH(QString, target);
    QFETCH(QString, file);
    const FuzzTargets::Entry entry = FuzzTargets::entry(target);
    QVERIFY2(entry, qPrintable(QStringLiteral("no entry point for the corpus folder ") + target));
    QVERIFY2(!file.isEmpty(), qPrintable(QStringLiteral("no seeds for ") + target));
    QFile input(file);
    QVERIFY(input.open(QIODevice::ReadOnly));
    const QString problem = entry(input.readAll());
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

QTEST_MAIN(TestFuzzCorpus)
#include "TestFuzzCorpus.moc"
