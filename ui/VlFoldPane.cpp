#include "ui/VlFoldPane.h"

#include "ui/VlColors.h"
#include "ui/VlPushButton.h"

#include <QIcon>
#include <QLabel>

VlFoldPane::VlFoldPane(QWidget* dialog) : QObject(dialog), m_pDialog(dialog)
{
    m_pShow = new VlPushButton(dialog);
    m_pHide = new VlPushButton(dialog);
    m_pHide->hide();
    m_pPane = new QLabel(dialog);
    m_pPane->setFixedHeight(kPaneHeight);
    m_pPane->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_pPane->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_pPane->setStyleSheet(QStringLiteral("QLabel { background: rgb(252, 252, 255); border: 1px solid rgb(165, 165, "
                                          "175); border-radius: 3px; padding: 2px 4px; }"));
    VlColors::SetTextColor(m_pPane, VlColors::DialogText());
    m_pPane->hide();
    connect(m_pShow, &VlPushButton::clicked, this, &VlFoldPane::Open);
    connect(m_pHide, &VlPushButton::clicked, this, &VlFoldPane::Close);
}

void VlFoldPane::SetCaptions(const QString& showText, const QString& hideText)
{
    m_pShow->setText(showText);
    m_pHide->setText(hideText);
}

void VlFoldPane::SetIcons(const QString& showImage, const QString& hideImage)
{
    m_pShow->setIcon(QIcon(showImage));
    m_pHide->setIcon(QIcon(hideImage));
}

void VlFoldPane::SetMinimumButtonWidth(int width)
{
    m_pShow->setMinimumWidth(width);
    m_pHide->setMinimumWidth(width);
}

void VlFoldPane::SetEnabled(bool enabled)
{
    m_pShow->setEnabled(enabled);
}

void VlFoldPane::SetText(const QString& text)
{
    m_pPane->setText(text);
}

void VlFoldPane::Open()
{
    if (m_bOpen)
        return;
    m_bOpen = true;
    emit SignalOpening();
    m_pShow->hide();
    m_pHide->setEnabled(true);
    m_pHide->show();
    m_pPane->show();
    m_pDialog->resize(m_pDialog->width(), m_pDialog->height() + kPaneHeight + 2);
}

void VlFoldPane::Close()
{
    if (!m_bOpen)
        return;
    m_bOpen = false;
    m_pHide->hide();
    m_pShow->show();
    m_pPane->hide();
    m_pPane->clear();
    m_pDialog->resize(m_pDialog->width(), m_pDialog->height() - kPaneHeight);
}
