#include "support/TestServer.h"
#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QElapsedTimer>
#include <QFile>
#include <QBuffer>
#include <cstdio>
static QByteArray hwm() { QFile s("/proc/self/status"); s.open(QIODevice::ReadOnly);
    for (auto l : s.readAll().split('\n')) if (l.startsWith("VmHWM")) return l; return {}; }
int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    TestServer server; server.start();
    server.addGenerated("/big.bin", qEnvironmentVariableIsSet("SMALL") ? 300000 : 128LL<<20); if (qEnvironmentVariableIsSet("CUT")) server.setFault("/big.bin", TestServer::Fault::CloseMidBody);
    QNetworkAccessManager m;
    QNetworkRequest r(QUrl(server.url("/big.bin")));
    r.setRawHeader("Authorization", "Basic " + QByteArray("webclient:Q7x2Lm9p").toBase64());
    if (qEnvironmentVariableIsSet("CL0")) r.setRawHeader("Content-Length", "0");
    r.setHeader(QNetworkRequest::ContentTypeHeader, "application/x-www-form-urlencoded");
    QFile f("/tmp/scratch_big.bin"); if (argc > 2) f.open(QIODevice::WriteOnly | (argv[2][0]=='u' ? QIODevice::Unbuffered : QIODevice::NotOpen));
    char mode = argc > 2 ? argv[2][0] : 0; QByteArray last; last.reserve(1<<20);
    qint64 rb = argc > 1 ? atoll(argv[1]) : 0;
    QElapsedTimer t; t.start();
    QBuffer body; body.setData("a=1&b=2"); body.open(QIODevice::ReadOnly);
    QNetworkReply* rep = qEnvironmentVariableIsSet("BUFDEV") ? m.post(r, &body) : qEnvironmentVariableIsSet("NULLDEV") ? m.post(r, (QIODevice*)nullptr) : m.post(r, QByteArray());
    if (rb && !qEnvironmentVariableIsSet("LATE")) rep->setReadBufferSize(rb);
    if (qEnvironmentVariableIsSet("CL0")) {}
    long reads = 0, prog = 0; qint64 total = 0, maxChunk = 0;
    QObject::connect(rep, &QNetworkReply::readyRead, [&]{ static bool first = true; if (first && rb && qEnvironmentVariableIsSet("LATE")) { rep->setReadBufferSize(rb); } first = false; QByteArray d; if (mode == 'r') { qint64 a = rep->bytesAvailable(); last.resize(int(a)); rep->read(last.data(), a); if (f.isOpen()) f.write(last); d = last; } else { d = rep->readAll(); if (f.isOpen()) f.write(d);} reads++; total += d.size(); maxChunk = qMax<qint64>(maxChunk, d.size()); });
    QObject::connect(rep, &QNetworkReply::downloadProgress, [&](qint64, qint64){ prog++; });
    QObject::connect(rep, &QNetworkReply::finished, [&]{ printf("error=%d ", rep->error()); app.quit(); });
    app.exec();
    auto rq = server.lastRequest(); printf("requests=%d ", server.requestCount()); printf("cl=%s body=%s ", rq.headers.value("content-length").constData(), rq.body.constData()); printf("rb=%lld reads=%ld prog=%ld total=%lld maxChunk=%lld ms=%lld %s\n", rb, reads, prog, total, maxChunk, t.elapsed(), hwm().constData());
}
