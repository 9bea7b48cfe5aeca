// Serves a demo folder the way the download server does: POST only, Basic authorization
// "webclient:Q7x2Lm9p", plain HTTP and TLS (self-signed) on one port.
//
//   demoserver --root DIR [--port N]
//
// Prints the URL it listens on, then runs until killed.

#include "support/TestServer.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("demoserver"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Quillmark demo download server on 127.0.0.1"));
    parser.addHelpOption();
    const QCommandLineOption rootOption(QStringLiteral("root"), QStringLiteral("Folder to serve."),
                                        QStringLiteral("DIR"));
    const QCommandLineOption portOption(QStringLiteral("port"), QStringLiteral("Port (0 picks a free one)."),
                                        QStringLiteral("N"), QStringLiteral("8470"));
    parser.addOption(rootOption);
    parser.addOption(portOption);
    parser.process(app);

    const QString root = parser.value(rootOption);
    if (root.isEmpty() || !QFileInfo(root).isDir()) {
        std::fprintf(stderr, "demoserver: --root must name an existing folder (got \"%s\")\n", qPrintable(root));
        return 2;
    }
    bool portOk = false;
    const uint port = parser.value(portOption).toUInt(&portOk);
    if (!portOk || port > 65535) {
        std::fprintf(stderr, "demoserver: --port must be a number from 0 to 65535 (got \"%s\")\n",
                     qPrintable(parser.value(portOption)));
        return 2;
    }

    TestServer server(QDir(root).absolutePath());
    if (!server.start(quint16(port))) {
        std::fprintf(stderr, "demoserver: cannot listen on 127.0.0.1:%u\n", port);
        return 1;
    }
    std::printf("Serving %s at %s (POST, Basic webclient:Q7x2Lm9p%s)\n", qPrintable(server.root()),
                qPrintable(server.url(QStringLiteral("/"))), server.tlsAvailable() ? ", TLS too" : "");
    std::fflush(stdout);
    return app.exec();
}
