// Saves a picture of the whole X screen once the named top-level window is up and the picture has
// stopped changing. Used by tools/demo.sh when the demo runs under Xvfb.
// Usage: screenshot_screen OUTPUT.png [TIMEOUT_SECONDS]
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QThread>

#include <cstdio>

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: screenshot_screen OUTPUT.png [TIMEOUT_SECONDS]\n");
        return 2;
    }
    const QString output = QString::fromLocal8Bit(argv[1]);
    const int timeoutMs = (argc > 2 ? QByteArray(argv[2]).toInt() : 30) * 1000;

    QScreen* screen = QGuiApplication::primaryScreen();
    QElapsedTimer clock;
    clock.start();
    QImage previous;
    int stableFor = 0;
    while (clock.elapsed() < timeoutMs) {
        const QImage shot = screen->grabWindow(0).toImage();
        // A picture counts once it shows more than the empty background and holds still for a second.
        const bool blank = shot.isNull() || shot.pixel(shot.width() / 2, shot.height() / 2) == shot.pixel(0, 0);
        if (!blank && shot == previous)
            stableFor += 250;
        else
            stableFor = 0;
        previous = shot;
        if (stableFor >= 1000)
            break;
        QThread::msleep(250);
    }
    if (previous.isNull() || !previous.save(output)) {
        std::fprintf(stderr, "could not save %s\n", qPrintable(output));
        return 1;
    }
    std::printf("%s\n", qPrintable(output));
    return 0;
}
