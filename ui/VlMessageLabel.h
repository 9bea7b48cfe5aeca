#pragma once

#include <QLabel>

// The line in which a dialog tells the user where its run stands. An error shows in red, so a
// failed run cannot be mistaken for a finished one.
class VlMessageLabel : public QLabel
{
    Q_OBJECT

public:
    explicit VlMessageLabel(QWidget* parent = nullptr);

    void SetError(bool error);
    bool IsError() const { return m_bError; }

private:
    bool m_bError = false;
};
