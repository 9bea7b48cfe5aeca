#include "app/Application.h"
#include "engine/DownloadManager.h"
#include "support/DatasetFiles.h"
#include "support/NginxServer.h"

#include <QProcess>
#include <QSignalSpy>
#include <QSslConfiguration>
#include <QTest>

using namespace DatasetFiles;

namespace {
const QByteArray kVersionList = "Revision: 1\n1802\n";

// curl's status code for a POST, as an administrator checks the server.
int curlStatus(const QStringList& arguments, QByteArray* body = nullptr)
{
    QProcess curl;
    curl.start(QStringLiteral("curl"),
               QStringList{"-s", "-o", "-", "-w", "\n%{http_code}", "-X", "POST", "-d", "client=quillmark"} +
                   arguments);
    if (!curl.waitForFinished(20000))
        return -1;
    const QByteArray out = curl.readAllStandardOutput();
    const int split = out.lastIndexOf('\n');
    if (body)
        *body = out.left(split);
    return curl.exitCode() != 0 ? -curl.exitCode() : out.mid(split + 1).toInt();
}
} // namespace

// The whole program the way a user meets it, against the production web server of the README.
class TestJourney : public QObject
{
    Q_OBJECT

    NginxServer m_server;

private slots:
    void initTestCase()
    {
        Application::registerResources();
        QVERIFY2(!NginxServer::binary().isEmpty(), "nginx is not installed; tools/test.sh installs nginx-light");
        writeFile(m_server.root() + "/quillmark/versionList.txt", kVersionList);
        QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
    }

    // The README's block as an administrator checks it: POST answered with the file on both ports,
    // credentials required, and TLS only for clients that trust the certificate.
    void recipe_data()
    {
        QTest::addColumn<bool>("tls");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("status"); // negative: curl's exit code
        const QStringList user{"-u", "webclient:Q7x2Lm9p"};
        QTest::newRow("POST over HTTP") << false << user << "/quillmark/versionList.txt" << 200;
        QTest::newRow("POST over TLS, certificate trusted")
            << true << user + QStringList{"--cacert", m_server.certificatePath()} << "/quillmark/versionList.txt"
            << 200;
        QTest::newRow("TLS, certificate unknown") << true << user << "/quillmark/versionList.txt" << -60;
        QTest::newRow("wrong password") << false << QStringList{"-u", "webclient:wrong"} << "/quillmark/versionList.txt"
                                        << 401;
        QTest::newRow("no credentials") << false << QStringList() << "/quillmark/versionList.txt" << 401;
        QTest::newRow("missing file") << false << user << "/quillmark/1802/none.zip" << 404;
        QTest::newRow("outside the root") << false << user + QStringList{"--path-as-is"} << "/../nginx.conf" << 400;
    }

    void recipe()
    {
        QFETCH(bool, tls);
        QFETCH(QStringList, options);
        QFETCH(QString, path);
        QFETCH(int, status);
        const QString url = tls ? QString("https://127.0.0.1:%1").arg(m_server.tlsPort()) + path
                                : "http://" + m_server.hostAndPort() + path;
        QByteArray body;
        QCOMPARE(curlStatus(options + QStringList{url}, &body), status);
        if (status == 200)
            QCOMPARE(body, kVersionList);
    }

    // The program's own client on the TLS port: it refuses a certificate it cannot verify (and its
    // plain-HTTP repeat is refused by that port), and takes the file once the certificate is trusted.
    void programOverTls_data()
    {
        QTest::addColumn<bool>("trusted");
        QTest::newRow("unknown certificate") << false;
        QTest::newRow("trusted certificate") << true;
    }

    void programOverTls()
    {
        QFETCH(bool, trusted);
        const QSslConfiguration previous = QSslConfiguration::defaultConfiguration();
        if (trusted) {
            QSslConfiguration config = previous;
            config.addCaCertificates(m_server.certificatePath());
            QSslConfiguration::setDefaultConfiguration(config);
        }
        DownloadManager manager;
        QSignalSpy finished(&manager, &DownloadManager::SignalFinished);
        manager.credentials = "webclient:Q7x2Lm9p";
        manager.DownloadFile(QUrl(QString("https://127.0.0.1:%1/quillmark/versionList.txt").arg(m_server.tlsPort())),
                             false, QString());
        QVERIFY(finished.wait(20000));
        QSslConfiguration::setDefaultConfiguration(previous);
        const QStringList errors = finished.first().at(2).toStringList();
        QCOMPARE(errors.isEmpty(), trusted);
        if (trusted)
            QCOMPARE(finished.first().at(3).toByteArray(), kVersionList);
    }
};

QTEST_MAIN(TestJourney)
#include "TestJourney.moc"
