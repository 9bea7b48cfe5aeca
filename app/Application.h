#pragma once

#include <QApplication>
#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>

class QDir;
class QMainWindow;
class QTranslator;

// The application object. Its state is class-wide so that every part of the program can read it
// without holding the instance; it is set again at each pass of the restart loop.
class Application : public QApplication
{
    Q_OBJECT

public:
    // An event loop that ends with this code builds application and main window again.
    static constexpr int RestartExitCode = 20;

    Application(int& argc, char** argv);
    ~Application() override;

    static QString st_strAppPath;
    static QString st_strVersion;
    static QMainWindow* mainWnd;

    static void setApplicationVersionEx(const QString& v);
    static void loadTranslations(const QString& dir);
    static void loadTranslations(const QDir& dir);
    // The same with the system locale given, so that the start-up choice can be exercised.
    static void loadTranslations(const QDir& dir, const QString& systemLocaleName);
    static void setLanguage(const QString& key);
    static QStringList availableLanguages();
    static QString GetLanguage();
    static QString GetTwoLetterLanguage();
    // The translator currently installed, or null.
    static QTranslator* currentTranslator();
    // The translator of Qt's own texts currently installed, or null.
    static QTranslator* qtTranslator();

    // Makes the images and translations compiled into the library available.
    static void registerResources();

    struct RunHooks
    {
        std::function<QMainWindow*()> makeWindow;
        std::function<void(int pass)> afterApplication; // called right after each Application is built
        std::function<void(int pass)> afterShow;        // called once the window is shown
    };
    // The program's start-up loop: exit code 20 starts a new pass in the same process.
    static int run(int& argc, char** argv, const RunHooks& hooks);
    // One pass of that loop on the application object that exists: translations, window, event
    // loop. The window is deleted when the loop ends; returns the loop's exit code.
    static int runPass(const RunHooks& hooks, int pass);

private:
    static QHash<QString, QTranslator*> translators;
    static QTranslator* current;
    // Qt's own texts (file dialogs, message-box buttons) in the current language, or null.
    static QTranslator* st_qtTranslator;
    static QString m_strLanguage;
};
