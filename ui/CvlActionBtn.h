#pragma once

#include "app/VlAtom.h"

#include <QKeySequence>
#include <QString>
#include <QWidget>

class CDataModel;
class QLabel;
class VlActionLabel;

// Image-with-caption button of the header; the subclasses say what it does.
class CvlActionBtn : public QWidget, public VlAtom
{
    Q_OBJECT

public:
    CvlActionBtn(QWidget* parent, CDataModel* dataModel);

    void Init(const QString& normalImage, const QString& hoverImage, const QString& caption);
    QString GetCaption() const;
    // The key that presses it from anywhere in the window; its tooltip names the key.
    void SetShortcut(const QKeySequence& keys);

signals:
    void clicked();

public slots:
    virtual void clickedSlot() {}
    void retranslate() override {}

protected:
    void SetCaption(const QString& caption);
    void ShowHover(bool hover);

    void changeEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

    CDataModel* m_pDataModel = nullptr;

private:
    Qt::FocusReason m_focusReason = Qt::OtherFocusReason;
    QLabel* m_pNormal = nullptr;
    QLabel* m_pHover = nullptr;
    QString m_strHoverImage; // until the hover picture is first shown
    VlActionLabel* m_pCaption = nullptr;
    QString m_strShortcut;
};
