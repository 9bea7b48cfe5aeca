#pragma once

#include <QLabel>
#include <QString>

// Image button of the title bar and of the card commands: normal image, hover image while the
// mouse is over it or the keyboard is on it; only the opaque parts of the image react. Tab reaches
// it and Space or Return presses it, like any push button.
class SystemButton : public QLabel
{
    Q_OBJECT

public:
    SystemButton(const QString& normalImage, const QString& hoverImage, QWidget* parent = nullptr);

signals:
    void clicked();

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void SetImage(const QString& path);

    QString m_strNormal;
    QString m_strHover;
    QString m_strShown;
};
