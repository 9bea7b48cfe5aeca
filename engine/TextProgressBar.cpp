#include "engine/TextProgressBar.h"

#include <algorithm>
#include <cstdio>

void TextProgressBar::setStatus(long long value, long long maximum)
{
    m_value = value;
    m_maximum = maximum;
}

void TextProgressBar::setMessage(const QString& message)
{
    if (message == m_message)
        return;
    m_message = message;
    m_messageBytes = message.toLocal8Bit();
}

QByteArray TextProgressBar::formatLine(long long iteration, long long value, long long maximum,
                                       const QByteArray& message, int* percentOut)
{
    QByteArray line;
    line.reserve(80 + message.size());
    if (maximum < 1) {
        // Unknown size: a marker that sweeps right. Both blank runs grow together so the field
        // widens and snaps back every 48 calls; users know the look, kept so.
        const int r = int(iteration % 48);
        line += "\r[";
        line += QByteArray(std::max(r - 1, 0), ' ');
        line += "###";
        line += QByteArray(std::min(r + 3, 50), ' ');
        line += "]      ";
        line += message;
        line += "      ";
        return line;
    }

    const int percent = int(value * 100 / maximum);
    if (percentOut)
        *percentOut = percent;
    QByteArray bar(percent / 2, '#');
    if (percent % 2)
        bar += '>';
    // The same as "\r[%-50s] %3d%% ": the bar padded to 50, the percent right-aligned in 3.
    line += "\r[";
    line += bar;
    if (bar.size() < 50)
        line += QByteArray(50 - bar.size(), ' ');
    line += "] ";
    const QByteArray number = QByteArray::number(percent);
    if (number.size() < 3)
        line += QByteArray(3 - number.size(), ' ');
    line += number;
    line += "% ";
    line += message;
    line += "     ";
    return line;
}

void TextProgressBar::update()
{
    ++m_iteration;
    const QByteArray line = formatLine(m_iteration, m_value, m_maximum, m_messageBytes, &m_percent);
    std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
}

void TextProgressBar::clear()
{
    // The literal words are printed; the console output has always read so.
    std::fputs("fflush(stdout)\n", stdout);
    std::fflush(stdout);
    m_iteration = 0;
    m_value = 0;
    m_maximum = -1;
}
