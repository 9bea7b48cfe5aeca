#include "app/Application.h"

#include <QDesktopWidget>
#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QLibraryInfo>
#include <QLocale>
#include <QMainWindow>
#include <QScreen>
#include <QStyleFactory>
#include <QTranslator>

// Q_INIT_RESOURCE must be used outside any namespace.
static void initQuillmarkResources()
{
    Q_INIT_RESOURCE(images);
    Q_INIT_RESOURCE(lang);
}

QString Application::st_strAppPath;
QString Application::st_strVersion;
QMainWindow* Application::mainWnd = nullptr;
QHash<QString, QTranslator*> Application::translators;
QTranslator* Application::current = nullptr;
QTranslator* Application::st_qtTranslator = nullptr;
QString Application::m_strLanguage;

Application::Application(int& argc, char** argv) : QApplication(argc, argv)
{
    // The name picks the user's data folder; a probe or a renamed executable must find the same one.
    QCoreApplication::setApplicationName(QStringLiteral("Quillmark"));
    QCoreApplication::setApplicationVersion(QStringLiteral("MPLET"));
    st_strVersion = QStringLiteral("MPLET");
    st_strAppPath = QCoreApplication::applicationDirPath();

    QFont font = QApplication::font();
    const int desktopPixels = QApplication::desktop()->font().pixelSize();
    if (desktopPixels > 0)
        font.setPixelSize(desktopPixels);
    font.setPointSize(10);
    QApplication::setFont(font);
}

Application::~Application()
{
    // The translators are children of this object and die with it; forget them so that the next
    // pass of the restart loop does not find dangling entries.
    translators.clear();
    current = nullptr;
    st_qtTranslator = nullptr;
}

void Application::setApplicationVersionEx(const QString& v)
{
    QCoreApplication::setApplicationVersion(v);
    st_strVersion = v;
}

void Application::loadTranslations(const QString& dir)
{
    loadTranslations(QDir(dir));
}

void Application::loadTranslations(const QDir& dir)
{
    loadTranslations(dir, QLocale::system().name());
}

void Application::loadTranslations(const QDir& dir, const QString& systemLocaleName)
{
    QString startLanguage = QStringLiteral("en_US");

    // The country of the system locale is matched against the language of each translation.
    // That is how the program has always chosen; de_DE starts in German, de_AT in English.
    const QStringList localeParts = systemLocaleName.split(QLatin1Char('_'));
    const QString matchKey = localeParts.size() >= 2 ? localeParts.last().toLower() : systemLocaleName;

    const QFileInfoList files =
        dir.entryInfoList(QStringList{QStringLiteral("*_*.qm")}, QDir::Files | QDir::Readable, QDir::Name);
    for (const QFileInfo& file : files) {
        const QStringList parts = file.baseName().split(QLatin1Char('_'));
        if (parts.size() < 2)
            continue;
        const QString language = parts.at(parts.size() - 2).toLower();
        const QString country = parts.last().toUpper();

        auto* translator = new QTranslator(QCoreApplication::instance());
        if (translator->load(file.absoluteFilePath())) {
            const QString key = language + QLatin1Char('_') + country;
            QTranslator* previous = translators.value(key);
            translators.insert(key, translator);
            if (previous && previous != current)
                previous->deleteLater();
        } else {
            delete translator;
        }
        if (language == matchKey)
            startLanguage = systemLocaleName;
    }
    setLanguage(startLanguage);
}

void Application::setLanguage(const QString& key)
{
    m_strLanguage = key;
    if (current)
        QCoreApplication::removeTranslator(current);
    current = translators.value(key, nullptr);
    if (current)
        QCoreApplication::installTranslator(current);

    // Qt's texts follow the program's: only for a language the program itself is translated to,
    // so that a dialog never mixes two languages.
    if (st_qtTranslator) {
        QCoreApplication::removeTranslator(st_qtTranslator);
        delete st_qtTranslator;
        st_qtTranslator = nullptr;
    }
    if (current && QCoreApplication::instance()) {
        auto* qt = new QTranslator(QCoreApplication::instance());
        if (qt->load(QLocale(key), QStringLiteral("qtbase"), QStringLiteral("_"),
                     QLibraryInfo::location(QLibraryInfo::TranslationsPath))) {
            st_qtTranslator = qt;
            QCoreApplication::installTranslator(qt);
        } else {
            delete qt;
        }
    }
}

QStringList Application::availableLanguages()
{
    return translators.keys();
}

QString Application::GetLanguage()
{
    return m_strLanguage;
}

QString Application::GetTwoLetterLanguage()
{
    const QStringList parts = m_strLanguage.split(QLatin1Char('_'));
    if (parts.size() < 2)
        return QString();
    return parts.at(parts.size() - 2).toLower();
}

QTranslator* Application::currentTranslator()
{
    return current;
}

QTranslator* Application::qtTranslator()
{
    return st_qtTranslator;
}

void Application::registerResources()
{
    static bool done = false;
    if (done)
        return;
    done = true;
    initQuillmarkResources();
}

int Application::run(int& argc, char** argv, const RunHooks& hooks)
{
    registerResources();
    int exitCode = 0;
    int pass = 0;
    do {
        auto* app = new Application(argc, argv);
        if (hooks.afterApplication)
            hooks.afterApplication(pass);
        exitCode = runPass(hooks, pass);
        delete app;
        ++pass;
    } while (exitCode == RestartExitCode);
    return exitCode;
}

int Application::runPass(const RunHooks& hooks, int pass)
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    loadTranslations(QStringLiteral(":/lang"));

    QMainWindow* window = hooks.makeWindow();
    mainWnd = window;

    // Centre on the available area of the default screen; the size stays as it is.
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    const int left = (area.left() + area.right()) / 2 - window->width() / 2;
    const int top = (area.top() + area.bottom()) / 2 - window->height() / 2;
    window->move(left, top);
    window->show();

    QObject::connect(qApp, &QGuiApplication::lastWindowClosed, qApp, &QCoreApplication::quit, Qt::UniqueConnection);
    if (hooks.afterShow)
        hooks.afterShow(pass);
    const int exitCode = QCoreApplication::exec();

    delete window;
    mainWnd = nullptr;
    return exitCode;
}
