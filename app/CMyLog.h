#pragma once

#include <QObject>
#include <QString>

// One plain-text log file in the folder "log" (CAppPaths::LogFolder). Every entry rewrites the
// file, so nothing is held open between writes.
class CMyLog : public QObject
{
    Q_OBJECT

public:
    explicit CMyLog(QObject* parent = nullptr);

    void SetFileName(const QString& name) { m_strFileName = name; }
    QString GetFileName() const { return m_strFileName; }
    // Full path of the log file.
    QString GetFilePath() const;

    static QString CreateLogDirectory();
    void WriteString(QString text, bool bNew);

    // While one lives on a thread, the entries written there wait and go to their files when the
    // outermost one ends, each file written once: a pass over thousands of products logs thousands
    // of lines. The files end up exactly as with one write per entry.
    class Batch
    {
    public:
        Batch();
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;
    };

private:
    QString m_strFileName;
};
