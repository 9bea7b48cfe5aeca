#include "engine/CDSVersion.h"
#include "engine/CQMKVersion.h"
#include "model/CProduct.h"
#include "model/CProductList.h"
#include "support/DatasetFiles.h"
#include "support/MessageBoxSpy.h"
#include "support/SigningKey.h"
#include "support/TempAppDir.h"
#include "support/TestServer.h"

#include <QCryptographicHash>
#include <QSignalSpy>
#include <QTest>

using namespace DatasetFiles;

namespace {
const qint64 kSignedAt = 1767225600; // 2026-01-01 00:00:00 UTC
const QByteArray kNewData = "a of cycle 2104";

// Cycle 2104 (datasets NAVDS and OTHER) and release 124, published with tools/publish.sh onto a
// loopback server, and one product of NAVDS that holds cycle 2103.
struct Publication
{
    TempAppDir app;
    MessageBoxSpy boxes;
    QTemporaryDir work;
    TestServer http{work.filePath("server")};
    CProductList products;
    QMap<QString, QByteArray> before;

    QString served(const QString& path) const { return work.filePath("server") + path; }
    QString addon() const { return work.filePath("addon"); }
    QString prepare(const SigningKey& key)
    {
        for (const QString dataset : {"NAVDS", "OTHER"})
            writeFile(work.filePath("source/" + dataset + "/NavData/a.dat"), kNewData + " of " + dataset.toUtf8());
        writeFile(work.filePath("release/qmk_au.app/qmk_au"), "updater");
        const QString problem =
            key.publish({"-c", "2104", "-t", QString::number(kSignedAt), "-R", work.filePath("release"), "-v", "124"},
                        work.filePath("source"), work.filePath("server"));
        addNavDataProduct(products, "Alpha FMS", "NAVDS", addon());
        writeRandomTree(addon() + "/NavData", 8, 5);
        writeFile(addon() + "/NavData/cycle_info.txt", "AIRAC cycle    : 2103\r\nRevision       : 1\r\n");
        before = checksums(addon());
        if (!problem.isEmpty())
            return problem;
        return http.start() ? QString() : QStringLiteral("the test server does not start");
    }
};

bool waitFor(QSignalSpy& spy)
{
    return !spy.isEmpty() || spy.wait(20000);
}
} // namespace

// Every way a file can be slipped to the program, each refused with its own message before it is
// used, and nothing of the user's touched; and the signatures that must pass.
class TestSignedUpdates : public QObject
{
    Q_OBJECT

    SigningKey m_key, m_secondKey, m_strangerKey;
    QList<CMinisign::PublicKey> m_trusted;

private slots:
    void initTestCase()
    {
        QVERIFY2(m_key.isValid() && m_secondKey.isValid() && m_strangerKey.isValid(), "minisign is not installed");
        // A publisher moving to a new key names both.
        m_trusted = CMinisign::ParsePublicKeys(m_key.publicKey() + "  " + m_secondKey.publicKey(), nullptr);
        QCOMPARE(m_trusted.size(), 2);
    }

    void attacks_data()
    {
        QTest::addColumn<QString>("attack");
        QTest::addColumn<QString>("message"); // %1: the server; empty: the cycle is installed
        const QString mismatch = "The signature of NAVDS.zip from %1 did not match: the file was damaged or altered "
                                 "on its way and was not used. Try again later, or tell the publisher.";
        const QString madeFor = "The signature of NAVDS.zip from %1 did not match: it was made for %2, so the file "
                                "was not used. Try again later, or tell the publisher.";
        QTest::newRow("tampered archive") << "tampered archive" << mismatch;
        QTest::newRow("tampered trusted comment") << "tampered comment" << mismatch;
        QTest::newRow("truncated signature") << "truncated signature" << mismatch;
        QTest::newRow("plain HTTP repeat after a failed TLS handshake") << "tls" << mismatch;
        QTest::newRow("archive signed by another key")
            << "stranger"
            << "The signature of NAVDS.zip from %1 did not match: it was made with a key this program does not "
               "trust, so the file was not used. Update Quillmark, or tell the publisher.";
        QTest::newRow("signature of another dataset's archive")
            << "other dataset" << madeFor.arg("%1", "file:OTHER.zip cycle:2104 revision:1 dataset:OTHER");
        QTest::newRow("archive signed for another cycle")
            << "other cycle" << madeFor.arg("%1", "file:NAVDS.zip cycle:2103 revision:1 dataset:NAVDS");
        QTest::newRow("missing signature") << "missing signature"
                                           << "%1 has no signature for NAVDS.zip, so the file cannot be trusted and "
                                              "was not used. Try again later, or tell the publisher.";
        QTest::newRow("replayed older version list")
            << "older list"
            << "The version list from %1 was signed on 2026-01-01 00:00:00 UTC, before the one already accepted "
               "(2026-01-01 00:01:00 UTC): an old list is being replayed, or the server is out of date. It was not "
               "used. Try again later.";
        QTest::newRow("tampered release") << "tampered release"
                                          << "The signature of VL_QUILLMARK_V124_MAC.zip from %1 did not match: the "
                                             "file was damaged or altered on its way and was not used. Try again "
                                             "later, or tell the publisher.";
        QTest::newRow("legacy signature of the whole file") << "legacy" << QString();
        QTest::newRow("second key of the catalogue") << "second key" << QString();
    }

    void attacks()
    {
        QFETCH(QString, attack);
        QFETCH(QString, message);
        Publication p;
        const QString problem = p.prepare(m_key);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        const QString archive = p.served("/quillmark/2104/NAVDS.zip");
        const QString signature = archive + ".minisig";
        const QStringList fields{"timestamp:1767225600", "file:NAVDS.zip", "cycle:2104", "revision:1", "dataset:NAVDS"};
        if (attack == "tampered archive" || attack == "tls") {
            QVERIFY(writeFile(archive, readFile(archive) + "trailing bytes"));
        } else if (attack == "tampered comment") {
            // A comment that would pass every check, if it were the publisher's.
            QByteArray text = readFile(signature);
            QVERIFY(text.contains("timestamp:1767225600"));
            QVERIFY(writeFile(signature, text.replace("timestamp:1767225600", "timestamp:1767225601")));
        } else if (attack == "truncated signature") {
            QVERIFY(writeFile(signature, readFile(signature).left(120)));
        } else if (attack == "stranger" || attack == "legacy" || attack == "second key") {
            const SigningKey& key = attack == "stranger" ? m_strangerKey : attack == "legacy" ? m_key : m_secondKey;
            QVERIFY(key.sign(archive, fields, attack == "legacy"));
        } else if (attack == "other dataset") {
            QVERIFY(writeFile(archive, readFile(p.served("/quillmark/2104/OTHER.zip"))));
            QVERIFY(writeFile(signature, readFile(p.served("/quillmark/2104/OTHER.zip.minisig"))));
        } else if (attack == "other cycle") {
            QVERIFY(m_key.sign(archive, QStringList(fields).replaceInStrings("cycle:2104", "cycle:2103")));
        } else if (attack == "missing signature") {
            QVERIFY(QFile::remove(signature));
        } else if (attack == "tampered release") {
            const QString release = p.served("/downloads/quillmark/VL_QUILLMARK_V124_MAC.zip");
            QVERIFY(writeFile(release, readFile(release) + "trailing bytes"));
        }
        const QString server = p.http.hostAndPort();
        if (!message.isEmpty())
            message = message.arg(server);

        if (attack == "tampered release") {
            CQMKVersion engine;
            engine.SetServer(server);
            engine.SetTrustedKeys(m_trusted, true);
            engine.Init("1.2.3");
            QSignalSpy found(&engine, &CQMKVersion::SignalDownloadVersionTXTFinish);
            engine.SearchForNewVersion(false);
            QVERIFY(waitFor(found));
            QSignalSpy failed(&engine, &CQMKVersion::SignalDownloadError);
            engine.DownloadNewQMKVersion();
            QVERIFY(waitFor(failed));
            QCOMPARE(engine.GetLastFailure().UserText(), message);
            QCOMPARE(QDir(engine.GetDownloadDirectory()).entryList(QDir::Files), QStringList());
            return;
        }

        CDSVersion engine;
        engine.SetProductList(&p.products);
        engine.SetServer(attack == "tls" ? "https://" + server : server);
        engine.SetTrustedKeys(m_trusted, true);
        if (attack == "older list")
            engine.SetAcceptedListTime(kSignedAt + 60);
        engine.Init("1.0");
        QSignalSpy searched(&engine, &CDSVersion::SignalCheckHighVersionFinished);
        engine.SearchForNewVersion(false);
        QVERIFY(waitFor(searched));
        if (attack == "older list") {
            QCOMPARE(engine.GetNewVersion(), QString());
        } else {
            QCOMPARE(engine.GetAcceptedListTime(), kSignedAt);
            QSignalSpy ready(&engine, &CDSVersion::SignalDownloadDataSetReady);
            QSignalSpy error(&engine, &CDSVersion::SignalDownloadDataSetError);
            engine.DownloadNewDSVersion();
            QVERIFY(QTest::qWaitFor([&] { return !ready.isEmpty() || !error.isEmpty(); }, 20000));
            QCOMPARE(ready.count(), message.isEmpty() ? 1 : 0);
            if (!ready.isEmpty()) {
                QSignalSpy installed(&engine, &CDSVersion::SignalInstallReady);
                QVERIFY(engine.InstallProducts());
                QVERIFY(waitFor(installed));
            } else {
                QCOMPARE(engine.GetResult(), QString("Error: Download failed NAVDS.zip\r\n"));
            }
        }
        QCOMPARE(engine.GetLastFailure().UserText(), message);
        if (attack == "tls")
            QVERIFY(p.http.tlsConnectionCount() > 0);

        const QMap<QString, QByteArray> after = checksums(p.addon());
        if (message.isEmpty()) {
            QCOMPARE(readFile(p.addon() + "/NavData/a.dat"), kNewData + " of NAVDS");
        } else {
            QCOMPARE(after, p.before);
            // A refused file is gone, and nothing of its signature is left either.
            QCOMPARE(QDir(engine.GetCycleDirectory()).entryList(QDir::Files).filter("NAVDS"), QStringList());
        }
        QCOMPARE(p.boxes.count(), 0);
    }
};

QTEST_MAIN(TestSignedUpdates)
#include "TestSignedUpdates.moc"
