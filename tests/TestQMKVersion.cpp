#include "engine/CQMKVersion.h"
#include "support/DatasetFiles.h"
#include "support/MessageBoxSpy.h"
#include "support/TempAppDir.h"
#include "support/TestServer.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace DatasetFiles;

namespace {
const QString ReleaseFolder = QStringLiteral("VL_QUILLMARK_V124_MAC");

// The release archive as the download server holds it, made with the real zip.
bool makeRelease(const QString& serverRoot)
{
    QTemporaryDir work;
    const QString base = work.filePath(ReleaseFolder);
    writeFile(base + "/readme.txt", "Quillmark 1.2.4\n");
    const QString updater = base + "/qmk_au.app/Contents/MacOS/qmk_au";
    writeFile(updater, "#!/bin/sh\n");
    QFile::setPermissions(updater, QFile::permissions(updater) | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther);
    writeFile(base + "/VL_QUILLMARK_V124.app/Contents/MacOS/Quillmark", "new program");
    // A framework as bundles hold them: its current version and its binary are links.
    const QString framework = base + "/VL_QUILLMARK_V124.app/Contents/Frameworks/Q.framework";
    writeFile(framework + "/Versions/A/Q", "framework code");
    QFile::link("A", framework + "/Versions/Current");
    QFile::link("Versions/Current/Q", framework + "/Q");
    // A link that leads out of the release must arrive as a link, never as what it points at.
    QFile::link("/etc", base + "/escape");
    QProcess zip;
    zip.setWorkingDirectory(work.path());
    zip.start(QStringLiteral("zip"), {"-qry", ReleaseFolder + ".zip", ReleaseFolder});
    if (!zip.waitForFinished(30000) || zip.exitCode() != 0)
        return false;
    const QString target = serverRoot + "/downloads/quillmark/" + ReleaseFolder + ".zip";
    QDir().mkpath(QFileInfo(target).absolutePath());
    return QFile::rename(work.filePath(ReleaseFolder + ".zip"), target);
}
} // namespace

class TestQMKVersion : public QObject
{
    Q_OBJECT

private slots:
    // clang-format off
    void versionFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("current");
        QTest::addColumn<QString>("dotted");
        QTest::addColumn<QString>("zipName");
        QTest::addColumn<QString>("appName");
        QTest::addColumn<bool>("available");

        QTest::newRow("124 over 1.2.3")
            << QByteArray("124") << "1.2.3" << "1.2.4" << "VL_QUILLMARK_V124_MAC.zip" << "VL_QUILLMARK_V124.app"
            << true;
        QTest::newRow("1210 over 1.2.1")
            << QByteArray("1210") << "1.2.1" << "1.2.1.0" << "VL_QUILLMARK_V1210_MAC.zip" << "VL_QUILLMARK_V1210.app"
            << true;
        QTest::newRow("1210 over 1.2.0.9 as text")
            << QByteArray("1210") << "1.2.0.9" << "1.2.1.0" << "VL_QUILLMARK_V1210_MAC.zip" << "VL_QUILLMARK_V1210.app"
            << true;
        QTest::newRow("blank lines around")
            << QByteArray("\r\n\n  124 \r\n\n") << "1.2.3" << "1.2.4" << "VL_QUILLMARK_V124_MAC.zip"
            << "VL_QUILLMARK_V124.app" << true;
        QTest::newRow("same version")
            << QByteArray("123\n") << "1.2.3" << "1.2.3" << "VL_QUILLMARK_V123_MAC.zip" << "VL_QUILLMARK_V123.app"
            << false;
        QTest::newRow("older")
            << QByteArray("122") << "1.2.3" << "1.2.2" << "VL_QUILLMARK_V122_MAC.zip" << "VL_QUILLMARK_V122.app"
            << false;
        QTest::newRow("unknown running version")
            << QByteArray("124") << "" << "1.2.4" << "VL_QUILLMARK_V124_MAC.zip" << "VL_QUILLMARK_V124.app" << false;
        QTest::newRow("empty") << QByteArray() << "1.2.3" << "" << "" << "" << false;
        QTest::newRow("blank") << QByteArray(" \r\n\t\n") << "1.2.3" << "" << "" << "" << false;
        QTest::newRow("binary")
            << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16) << "1.2.3" << "" << "" << "" << false;
        QTest::newRow("path in it") << QByteArray("9/../../x") << "1.2.3" << "" << "" << "" << false;
        QTest::newRow("huge") << QByteArray(3 * 1024 * 1024, '9') << "1.2.3" << "" << "" << "" << false;
        QTest::newRow("long line") << QByteArray(200, '9') << "1.2.3" << "" << "" << "" << false;
    }
    // clang-format on

    void versionFile()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, current);
        QFETCH(QString, dotted);
        QFETCH(QString, zipName);
        QFETCH(QString, appName);
        QFETCH(bool, available);

        TempAppDir app;
        TestServer server;
        QVERIFY(server.start());
        server.addContent("/downloads/quillmark/mac_version.txt", content);

        CQMKVersion engine;
        engine.SetServer(server.hostAndPort());
        engine.Init(current);
        QSignalSpy done(&engine, &CQMKVersion::SignalDownloadVersionTXTFinish);
        engine.SearchForNewVersion(true);
        QVERIFY(done.wait(20000));

        QCOMPARE(engine.GetNewVersion(), dotted);
        QCOMPARE(engine.GetZipName(), zipName);
        QCOMPARE(engine.GetAppName(), appName);
        QCOMPARE(engine.NewQMKVersionAvailable(), available);
        QCOMPARE(server.lastRequest().path, QStringLiteral("/downloads/quillmark/mac_version.txt"));
        QVERIFY(!QFile::exists(app.filePath("downloads/mac_version.txt")));
        if (dotted.isEmpty() && !content.trimmed().isEmpty())
            QVERIFY(app.readFile("log/log_qmkupdate.txt").contains("!!ERROR Unusable version file"));
    }

    void wholeUpdate()
    {
        TempAppDir app;
        QTemporaryDir serverRoot;
        QTemporaryDir outside; // a user's folder that a leftover link points at
        QVERIFY(writeFile(outside.filePath("keep.txt"), "mine"));
        QVERIFY(makeRelease(serverRoot.path()));
        QVERIFY(writeFile(serverRoot.filePath("downloads/quillmark/mac_version.txt"), "124\n"));

        // Left overs of an earlier run.
        QVERIFY(app.writeFile("downloads/old.zip", "old"));
        QVERIFY(app.writeFile("downloads/update/a/b.txt", "old"));
        QVERIFY(app.writeFile("downloads/qmk_au.app/Contents/x", "old"));
        QVERIFY(app.writeFile("downloads/temp/kept.txt", "not ours to clear"));
        QVERIFY(QFile::link(outside.path(), app.filePath("downloads/update2")));

        TestServer server(serverRoot.path());
        QVERIFY(server.start());
        CQMKVersion engine;
        engine.SetServer(server.hostAndPort());
        engine.Init(QStringLiteral("1.2.3"));

        const QString downloads = app.filePath("downloads");
        QVERIFY(!QFile::exists(downloads + "/old.zip"));
        QVERIFY(!QFile::exists(downloads + "/update"));
        QVERIFY(!QFile::exists(downloads + "/qmk_au.app"));
        QVERIFY(QFile::exists(downloads + "/temp/kept.txt"));
        QCOMPARE(app.readFile("downloads/update2/keep.txt"), QByteArray("mine"));

        QSignalSpy found(&engine, &CQMKVersion::SignalDownloadVersionTXTFinish);
        engine.SearchForNewVersion(true);
        QVERIFY(found.wait(20000));
        QVERIFY(engine.NewQMKVersionAvailable());

        QSignalSpy started(&engine, &CQMKVersion::SignalNewQMKVersionStarted);
        QSignalSpy downloaded(&engine, &CQMKVersion::SignalNewQMKVersionDownloaded);
        QSignalSpy percent(&engine, &CQMKVersion::SignalChangePercent);
        engine.DownloadNewQMKVersion();
        QCOMPARE(started.count(), 1);
        QVERIFY(downloaded.wait(20000));
        QCOMPARE(percent.last().at(0).toInt(), 100);

        // A link where the updater lands must not lead the move into the user's folder.
        QVERIFY(QFile::link(outside.path(), downloads + "/qmk_au.app"));

        MessageBoxSpy boxes;
        QSignalSpy unzipped(&engine, &CQMKVersion::SignalUnzipNewVersionFinished);
        QVERIFY(engine.InstallQuillmark());
        QVERIFY(unzipped.wait(20000));
        QCOMPARE(boxes.count(), 0);
        QVERIFY(QFileInfo(engine.GetNewQMKVersionInstFilePath()).isDir());
        QCOMPARE(app.readFile("downloads/VL_QUILLMARK_V124.app/Contents/MacOS/Quillmark"), QByteArray("new program"));
        QVERIFY(QFileInfo(downloads + "/qmk_au.app/Contents/MacOS/qmk_au").isExecutable());
        QVERIFY(!QFileInfo(downloads + "/qmk_au.app").isSymLink());
        QCOMPARE(QDir(outside.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList{"keep.txt"});
        QVERIFY(QFile::exists(downloads + "/readme.txt"));
        const QString framework = downloads + "/VL_QUILLMARK_V124.app/Contents/Frameworks/Q.framework";
        QCOMPARE(QFileInfo(framework + "/Versions/Current").symLinkTarget(), framework + "/Versions/A");
        QCOMPARE(QFileInfo(framework + "/Q").symLinkTarget(), framework + "/Versions/Current/Q");
        QCOMPARE(app.readFile("downloads/VL_QUILLMARK_V124.app/Contents/Frameworks/Q.framework/Q"),
                 QByteArray("framework code"));
        QCOMPARE(QFileInfo(downloads + "/escape").symLinkTarget(), QStringLiteral("/etc"));
        QVERIFY(!QFile::exists(downloads + "/" + ReleaseFolder));
        const QByteArray log = app.readFile("log/log_qmkupdate.txt");
        QVERIFY(log.contains("unzip \"" + engine.GetNewQMKVersionZipFilePath().toLocal8Bit() + "\" -d \"" +
                             downloads.toLocal8Bit() + "\""));
    }

    void faults_data()
    {
        QTest::addColumn<bool>("versionOnServer");
        QTest::addColumn<QString>("archive");    // on the server: "good", "corrupt"
        QTest::addColumn<QString>("unzip");      // "real", "crash", "absent"
        QTest::addColumn<bool>("removeLocally"); // the archive goes before the install
        QTest::addColumn<QString>("outcome");    // "downloadError", "box", "unzipFinished"
        QTest::addColumn<QString>("expected");   // in the error text, box text or log

        QTest::newRow("version file missing") << false << "good"
                                              << "real" << false << "downloadError"
                                              << "Failed download file";
        QTest::newRow("archive removed before install") << true << "good"
                                                        << "real" << true << "box"
                                                        << "Missing file ";
        QTest::newRow("unzip not on the search path") << true << "good"
                                                      << "absent" << false << "box"
                                                      << "Missing file unzip";
        QTest::newRow("corrupt archive") << true << "corrupt"
                                         << "real" << false << "unzipFinished"
                                         << "!!WARNING unzip ended with exit code";
        QTest::newRow("unzip crashes") << true << "good"
                                       << "crash" << false << "unzipFinished"
                                       << "!!Error UPDATE-RESULT == UNZIP FAILED ";
    }

    void faults()
    {
        QFETCH(bool, versionOnServer);
        QFETCH(QString, archive);
        QFETCH(QString, unzip);
        QFETCH(bool, removeLocally);
        QFETCH(QString, outcome);
        QFETCH(QString, expected);

        TempAppDir app;
        QTemporaryDir serverRoot;
        const QString zipOnServer = serverRoot.filePath("downloads/quillmark/" + ReleaseFolder + ".zip");
        if (archive == "good")
            QVERIFY(makeRelease(serverRoot.path()));
        if (archive == "corrupt")
            QVERIFY(writeFile(zipOnServer, "PK\x03\x04 this is no archive"));
        if (versionOnServer)
            QVERIFY(writeFile(serverRoot.filePath("downloads/quillmark/mac_version.txt"), "124"));

        ToolPath tools(unzip == "absent");
        if (unzip == "crash")
            QVERIFY(tools.addScript("unzip", "kill -SEGV $$"));
        TestServer server(serverRoot.path());
        QVERIFY(server.start());

        MessageBoxSpy boxes;
        CQMKVersion engine;
        engine.SetServer(server.hostAndPort());
        engine.Init(QStringLiteral("1.2.3"));
        QSignalSpy error(&engine, &CQMKVersion::SignalDownloadError);
        QSignalSpy found(&engine, &CQMKVersion::SignalDownloadVersionTXTFinish);
        QSignalSpy downloaded(&engine, &CQMKVersion::SignalNewQMKVersionDownloaded);
        QSignalSpy unzipped(&engine, &CQMKVersion::SignalUnzipNewVersionFinished);

        engine.SearchForNewVersion(true);
        QTRY_VERIFY_WITH_TIMEOUT(found.count() + error.count() == 1, 20000);
        if (found.count() == 1) {
            engine.DownloadNewQMKVersion();
            QTRY_VERIFY_WITH_TIMEOUT(downloaded.count() + error.count() == 1, 20000);
        }
        if (outcome == "downloadError") {
            QCOMPARE(error.count(), 1);
            QVERIFY2(engine.GetErrorText().contains(expected), qPrintable(engine.GetErrorText()));
            QCOMPARE(boxes.count(), 0);
            return;
        }
        QCOMPARE(downloaded.count(), 1);
        if (removeLocally)
            QVERIFY(QFile::remove(engine.GetNewQMKVersionZipFilePath()));

        const bool started = engine.InstallQuillmark();
        if (outcome == "box") {
            QVERIFY(!started);
            QCOMPARE(boxes.count(), 1);
            QCOMPARE(boxes.boxes().first().icon, QMessageBox::Critical);
            QCOMPARE(boxes.boxes().first().title, QStringLiteral("Error"));
            const QString text = boxes.boxes().first().text;
            QVERIFY2(text.startsWith(expected), qPrintable(text));
            if (removeLocally)
                QCOMPARE(text, "Missing file " + engine.GetNewQMKVersionZipFilePath());
            QVERIFY(!QFile::exists(engine.GetNewQMKVersionInstFilePath()));
            return;
        }
        QVERIFY(started);
        QVERIFY(unzipped.wait(20000));
        QCOMPARE(boxes.count(), 0);
        QVERIFY(!QFile::exists(engine.GetNewQMKVersionInstFilePath()));
        QVERIFY(!QFile::exists(app.filePath("downloads/qmk_au.app")));
        // The downloaded archive stays for another try.
        QVERIFY(QFile::exists(engine.GetNewQMKVersionZipFilePath()));
        QVERIFY(app.readFile("log/log_qmkupdate.txt").contains(expected.toLatin1()));
    }
};

QTEST_MAIN(TestQMKVersion)
#include "TestQMKVersion.moc"
