#include "support/DatasetFiles.h"
#include "support/SigningKey.h"
#include "support/TestServer.h"

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>
#include <QVersionNumber>

using namespace DatasetFiles;

namespace {
const QString kAppId = QStringLiteral(QMK_APP_ID);
const QByteArray kCycle1801 = "AIRAC cycle    : 1801\r\nRevision       : 1\r\n";
const QByteArray kCycle1802 = "AIRAC cycle    : 1802\r\nRevision       : 1\r\n";

// Runs a tool to its end; its output, both channels, goes to `output`.
int run(const QString& program, const QStringList& arguments, QString* output = nullptr)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(300000))
        return -1;
    if (output)
        *output = QString::fromLocal8Bit(process.readAll());
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

// A user's settings for the shipped catalogue: the X-Plane 11 default navigation data selected in
// a simulator under home, the server given, the start-up dataset check as asked.
QByteArray userSettings(const QString& simulator, const QString& server, bool datasetCheck)
{
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<data><App><DSAutoUpdate>%1</DSAutoUpdate>"
                          "<QuillmarkAutoUpdate>0</QuillmarkAutoUpdate><NavDataOverwriteAccept>1"
                          "</NavDataOverwriteAccept><Server>%2</Server></App><products><name>X-Plane 11 Default "
                          "Navigation</name><update>true</update></products><categories><name>X-Plane 11</name>"
                          "<path>%3</path></categories></data>\n")
        .arg(int(datasetCheck))
        .arg(server, simulator)
        .toUtf8();
}

} // namespace

// The .deb a user installs: packed by CPack from this build, checked with Debian's own tools,
// unpacked into a temporary root and run from a program folder nobody writes to.
class TestPackage : public QObject
{
    Q_OBJECT

    QTemporaryDir m_work;
    QString m_deb;
    QString root() const { return m_work.path() + "/root"; }
    QString program() const { return root() + "/usr/lib/quillmark"; }

private slots:
    void initTestCase()
    {
        QVERIFY(m_work.isValid());
        QString output;
#ifdef QMK_SANITIZED
        // Packing takes long and is checked in the normal run; here the installed program runs under
        // the sanitizers, laid out by the install that CPack packs.
        QVERIFY2(run(QMK_CMAKE, {"--install", QMK_BINARY_DIR, "--prefix", root() + "/usr"}, &output) == 0,
                 qPrintable(output));
        return;
#endif
        const QString packages = m_work.path() + "/cpack";
        QVERIFY2(run(QMK_CPACK, {"-G", "DEB", "--config", QMK_BINARY_DIR "/CPackConfig.cmake", "-B", packages},
                     &output) == 0,
                 qPrintable(output));
        const QStringList debs = QDir(packages).entryList({"*.deb"}, QDir::Files);
        QCOMPARE(debs.size(), 1);
        m_deb = packages + "/" + debs.first();
        QVERIFY2(run("dpkg-deb", {"-x", m_deb, root()}, &output) == 0, qPrintable(output));
    }

    void linters_data()
    {
        QTest::addColumn<QString>("tool");
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("lintian") << "lintian" << QStringList{"--fail-on", "error", "--tag-display-limit", "0", m_deb};
        QTest::newRow("desktop-file-validate")
            << "desktop-file-validate" << QStringList{root() + "/usr/share/applications/" + kAppId + ".desktop"};
        QTest::newRow("appstreamcli") << "appstreamcli"
                                      << QStringList{"validate", "--no-net", "--pedantic",
                                                     root() + "/usr/share/metainfo/" + kAppId + ".metainfo.xml"};
    }
    void linters()
    {
        QFETCH(QString, tool);
        QFETCH(QStringList, arguments);
        if (m_deb.isEmpty())
            QSKIP("the package is made in the normal run");
        if (QStandardPaths::findExecutable(tool).isEmpty())
            QSKIP("not installed; tools/test.sh installs it");
        QString output;
        QVERIFY2(run(tool, arguments, &output) == 0, qPrintable(output));
    }

    void declaresWhatItNeeds()
    {
        if (m_deb.isEmpty())
            QSKIP("the package is made in the normal run");
        QString depends;
        QVERIFY(run("dpkg-deb", {"-f", m_deb, "Depends"}, &depends) == 0);
        for (const char* package : {"unzip", "zip", "libqt5widgets5", "libqt5network5"})
            QVERIFY2(QRegularExpression(QString("(^|, )%1( |,|$)").arg(package)).match(depends.trimmed()).hasMatch(),
                     qPrintable(depends));
        QVERIFY(readFile(program() + "/Manual.pdf").startsWith("%PDF-"));
        // The metainfo's screenshot is a picture of the gallery, published under the home page.
        const QString metainfo = readFile(root() + "/usr/share/metainfo/" + kAppId + ".metainfo.xml");
        const QString shot = QRegularExpression("<image>[^<]*/([^/<]+)</image>").match(metainfo).captured(1);
        QVERIFY2(QFileInfo(QMK_SOURCE_DIR "/resources/readme/" + shot).isFile(), qPrintable(shot));
    }

    // The desktop's icons, drawn from the SVG at every size; the bundle itself is made on a Mac, what
    // goes into it is generated here.
    void iconsAndMacBundle()
    {
        for (int size : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
            const QImage icon(root() + QString("/usr/share/icons/hicolor/%1x%1/apps/%2.png").arg(size).arg(kAppId));
            QCOMPARE(icon.size(), QSize(size, size));
            QVERIFY(icon.hasAlphaChannel() && qAlpha(icon.pixel(0, 0)) == 0);
            QCOMPARE(qAlpha(icon.pixel(size / 2, size / 2)), 255);
        }
        const QString plist = QString::fromUtf8(readFile(QMK_BINARY_DIR "/package/Info.plist"));
        const auto value = [&](const char* key) {
            return QRegularExpression(QString("<key>%1</key>\\s*<string>([^<]*)</string>").arg(key))
                .match(plist)
                .captured(1);
        };
        QCOMPARE(value("CFBundleIdentifier"), kAppId);
        QCOMPARE(value("CFBundleShortVersionString"), QStringLiteral(QUILLMARK_BUILD_VERSION));
        QCOMPARE(value("CFBundleExecutable"), QStringLiteral("Quillmark"));
        QVERIFY(QVersionNumber::fromString(value("LSMinimumSystemVersion")) >= QVersionNumber(10, 13));
        QCOMPARE(value("CFBundleIconFile"), QStringLiteral("Quillmark.icns"));

        if (QStandardPaths::findExecutable("icns2png").isEmpty())
            QSKIP("icns2png not installed; tools/test.sh installs icnsutils");
        const QString icons = m_work.path() + "/icns";
        QDir().mkpath(icons);
        QString output;
        QVERIFY2(run("icns2png", {"-x", "-o", icons, QMK_BINARY_DIR "/icons/Quillmark.icns"}, &output) == 0,
                 qPrintable(output));
        // Every size the bundle needs, each the drawing at that size (the same pixels as the
        // desktop's icons).
        for (int size : {16, 32, 48, 128, 256, 512, 1024}) {
            const QString name = QString("Quillmark_%1x%1x32.png").arg(size);
            const QImage packed(icons + "/" + name), drawn(QString(QMK_BINARY_DIR "/icons/%1.png").arg(size));
            QVERIFY2(packed.size() == QSize(size, size), qPrintable(name + "\n" + output));
            QCOMPARE(packed.convertToFormat(QImage::Format_ARGB32), drawn.convertToFormat(QImage::Format_ARGB32));
        }
    }

    // The program installed into a read-only folder keeps what the user's runs make in the user's
    // home, and updates add-ons from there.
    void updatesFromReadOnlyFolder()
    {
        const QString home = m_work.path() + "/home", data = home + "/.local/share/Quillmark";
        const QString simulator = home + "/X-Plane 11", addon = simulator + "/Custom Data";
        QVERIFY(QDir().mkpath(simulator + "/X-Plane.app"));
        QVERIFY(writeFile(addon + "/cycle_info.txt", kCycle1801) && writeFile(addon + "/earth_nav.dat", "old"));

        // The cycle as a publisher signs it; the publisher's build names that key in its catalogue.
        TestServer server(m_work.path() + "/server");
        SigningKey key;
        QVERIFY(key.isValid());
        QTemporaryDir cycle;
        QVERIFY(writeFile(cycle.path() + "/xplane_native/xp11/cycle_info.txt", kCycle1802) &&
                writeFile(cycle.path() + "/xplane_native/xp11/earth_nav.dat", "new"));
        const QString published = key.publish({"-c", "1802"}, cycle.path(), server.root());
        QVERIFY2(published.isEmpty(), qPrintable(published));
        const QString archive = server.root() + "/quillmark/1802/xplane_native.zip";
        QVERIFY(server.start());
        const QString catalogue = program() + "/bin/base_ini.xml";
        QString shipped = QString::fromUtf8(readFile(catalogue));
        shipped.replace(QRegularExpression("<PublicKey>[^<]*</PublicKey>"),
                        "<PublicKey>" + key.publicKey() + "</PublicKey>");
        QVERIFY(writeFile(catalogue, shipped.toUtf8()));

        // The probe starts as the program does; it sits in the program folder like the program.
        QVERIFY(QFile::copy(QCoreApplication::applicationDirPath() + "/probe_update", program() + "/probe_update"));
        QVERIFY(run("chmod", {"-R", "a-w", root() + "/usr"}) == 0);
        const QMap<QString, QByteArray> installed = checksums(root());

        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", home);
        environment.insert("XDG_DATA_HOME", home + "/.local/share");
        environment.insert("XDG_CONFIG_HOME", home + "/.config");
        environment.insert("XDG_CACHE_HOME", home + "/.cache");
        environment.insert("XDG_RUNTIME_DIR", m_work.path() + "/runtime");
        QVERIFY(QDir().mkpath(m_work.path() + "/runtime"));
        QVERIFY(QFile::setPermissions(m_work.path() + "/runtime",
                                      QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner));

        // The installed command itself starts from the read-only folder and logs into the home.
        QVERIFY(writeFile(data + "/prop_ini.xml", userSettings(simulator, server.hostAndPort(), false)));
        QProcess command;
        command.setProcessEnvironment(environment);
        command.start(root() + "/usr/bin/quillmark", QStringList());
        QVERIFY(command.waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(
            readFile(data + "/log/log_datamodel.txt").contains("User data folder: " + data.toUtf8()), 60000);
        command.kill();
        command.waitForFinished();

        // The start-up check offers the server's cycle; the probe downloads and installs it.
        QVERIFY(writeFile(data + "/prop_ini.xml", userSettings(simulator, server.hostAndPort(), true)));
        QProcess probe;
        probe.setProcessEnvironment(environment);
        probe.start(program() + "/probe_update", QStringList());
        QVERIFY(probe.waitForFinished(180000));
        const QString output = QString::fromLocal8Bit(probe.readAllStandardOutput() + probe.readAllStandardError());
        QVERIFY2(probe.exitCode() == 0 && output.contains("update 8: Installation complete.\n") &&
                     !output.contains("box "),
                 qPrintable(output));

        // What the install itself does is TestDSInstall's; here, that it ran from the read-only folder.
        QCOMPARE(readFile(addon + "/cycle_info.txt"), kCycle1802);
        QCOMPARE(readFile(data + "/downloads/QuillmarkCycle/xplane_native.zip"), readFile(archive));
        // Saved at the end of the run, where it was read.
        QVERIFY(readFile(data + "/prop_ini.xml").contains("<Language>"));
        const QByteArray log = readFile(data + "/log/log_dsupdate.txt");
        QVERIFY2(log.contains("unzip -o -P **** \"") && !log.contains("pralvek"), log.constData());
        QCOMPARE(checksums(root()), installed);
    }

    void cleanupTestCase()
    {
        // Writable again, so that the temporary folder can go.
        run("chmod", {"-R", "u+w", m_work.path()});
    }
};

QTEST_MAIN(TestPackage)
#include "TestPackage.moc"
