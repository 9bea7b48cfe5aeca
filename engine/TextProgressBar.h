#pragma once

#include <QByteArray>
#include <QString>

// One console line that shows how far the current download is.
class TextProgressBar
{
public:
    TextProgressBar() = default;

    void setStatus(long long value, long long maximum);
    void setMessage(const QString& message);
    void update();
    void clear();

    int percent() const { return m_percent; }

    // The text update() prints for the given call number (1 for the first call after clear()).
    // percentOut receives the new percent when the size is known and is left alone otherwise.
    static QByteArray formatLine(long long iteration, long long value, long long maximum, const QByteArray& message,
                                 int* percentOut = nullptr);

private:
    long long m_iteration = 0;
    long long m_value = 0;
    long long m_maximum = -1;
    int m_percent = 0;
    QString m_message;
    // Kept encoded so that update(), called for every progress notice, does not convert each time.
    QByteArray m_messageBytes;
};
