#include "ui/DlgBase.h"

#include "ui/SystemButton.h"
#include "ui/VlColors.h"
#include "ui/VlFonts.h"
#include "ui/VlPushButton.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

DlgBase::DlgBase(QWidget* parent) : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
{
    setAttribute(Qt::WA_TranslucentBackground);
    resize(400, 280);

    m_pBackground = new QLabel(this);
    m_pBackground->lower();

    m_pTitleIcon = new QLabel(this);
    m_pTitleIcon->setPixmap(QPixmap(QStringLiteral(":/images/Quillmark32.png")));
    m_pTitleLabel = new QLabel(this);
    m_pTitleLabel->setFont(VlFonts::Relative(2, QFont::Bold));
    VlColors::SetTextColor(m_pTitleLabel, QColor(50, 50, 62));
    m_pCloseButton =
        new SystemButton(QStringLiteral(":/images/close_gr.png"), QStringLiteral(":/images/close_blue.png"), this);

    auto* titleRow = new QHBoxLayout;
    titleRow->setContentsMargins(8, 4, 8, 0);
    titleRow->setSpacing(8);
    titleRow->addWidget(m_pTitleIcon, 0, Qt::AlignVCenter);
    titleRow->addWidget(m_pTitleLabel, 1, Qt::AlignVCenter);
    titleRow->addWidget(m_pCloseButton, 0, Qt::AlignRight | Qt::AlignVCenter);

    auto* content = new QWidget(this);
    m_pContentLayout = new QGridLayout(content);
    m_pContentLayout->setContentsMargins(12, 8, 12, 8);

    m_pOkButton = new VlPushButton(this);
    m_pCancelButton = new VlPushButton(this);
    m_pOkButton->setMinimumWidth(90);
    m_pCancelButton->setMinimumWidth(90);
    m_pOkButton->setDefault(true);
    auto* buttonRow = new QHBoxLayout;
    buttonRow->setContentsMargins(9, 0, 9, 10);
    buttonRow->addStretch(1);
    buttonRow->addWidget(m_pOkButton);
    buttonRow->addWidget(m_pCancelButton);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    grid->setRowMinimumHeight(0, kDragBand);
    grid->addLayout(titleRow, 0, 0);
    grid->addWidget(content, 1, 0);
    grid->setRowStretch(1, 1);
    grid->addLayout(buttonRow, 2, 0);

    connect(m_pCancelButton, &VlPushButton::clicked, this, &DlgBase::cancelClicked);
    connect(m_pOkButton, &VlPushButton::clicked, this, &DlgBase::okClicked);
    connect(m_pCloseButton, &SystemButton::clicked, this, &DlgBase::CloseWindowSlot);
    connect(this, &DlgBase::SignalClose, this, &DlgBase::CloseSlot);
    retranslate();
}

void DlgBase::Init(CDataModel* model, QString title)
{
    m_pDataModel = model;
    m_strTitle = title;
    retranslate();
}

void DlgBase::retranslate()
{
    const QString title = QCoreApplication::translate("DlgBase", m_strTitle.toUtf8().constData());
    setWindowTitle(title);
    m_pTitleLabel->setText(title);
    m_pOkButton->setText(tr("Ok"));
    m_pCancelButton->setText(tr("Cancel"));
    m_pCloseButton->setAccessibleName(tr("Close"));
    m_pCloseButton->setAccessibleDescription(tr("Closes this dialog and stops what it is doing."));
    m_pCloseButton->setToolTip(tr("Close"));
}

void DlgBase::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QDialog::changeEvent(event);
}

void DlgBase::okClicked()
{
    emit SignalClose(true);
}

void DlgBase::cancelClicked()
{
    emit SignalClose(false);
}

void DlgBase::CloseWindowSlot()
{
    emit SignalClose(false);
}

void DlgBase::CloseSlot(bool ok)
{
    done(ok ? QDialog::Accepted : QDialog::Rejected);
}

void DlgBase::CloseDlg(bool) {}

void DlgBase::done(int result)
{
    // Escape and the window manager arrive here through reject(), the buttons through CloseSlot.
    if (!m_bClosed) {
        m_bClosed = true;
        CloseDlg(result == QDialog::Accepted);
    }
    QDialog::done(result);
}

void DlgBase::mousePressEvent(QMouseEvent* event)
{
    m_bDragging = event->button() == Qt::LeftButton && qRound(event->localPos().y()) < kDragBand;
    if (m_bDragging)
        m_dragPosition = event->globalPos() - frameGeometry().topLeft();
    event->accept();
}

void DlgBase::mouseMoveEvent(QMouseEvent* event)
{
    // Only the title band drags: a press on the controls below must not move the dialog.
    if ((event->buttons() & Qt::LeftButton) && m_bDragging)
        move(event->globalPos() - m_dragPosition);
    event->accept();
}

void DlgBase::showEvent(QShowEvent* event)
{
    m_bClosed = false;
    // Wrapped texts need their height for the final width; the grid's minimum does not know it.
    if (layout() && layout()->hasHeightForWidth()) {
        const int needed = layout()->totalHeightForWidth(width());
        if (needed > height())
            resize(width(), needed);
    }
    Paint();
    if (QWidget* parent = parentWidget()) {
        const QPoint centre = parent->mapToGlobal(parent->rect().center());
        move(centre.x() - width() / 2, centre.y() - height() / 2);
    }
    QDialog::showEvent(event);
}

void DlgBase::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    Paint();
}

void DlgBase::Paint()
{
    QImage image(size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QLinearGradient gradient(0, 0, 0, image.height());
    gradient.setColorAt(0.0, QColor(245, 245, 245));
    gradient.setColorAt(0.01, QColor(195, 195, 205));
    gradient.setColorAt(0.05, QColor(240, 240, 250));
    gradient.setColorAt(1.0, QColor(195, 195, 205));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(gradient);
    painter.setPen(QColor(140, 140, 150));
    painter.drawRoundedRect(QRectF(0.5, 0.5, image.width() - 1, image.height() - 1), 4, 4);
    painter.end();
    m_pBackground->setPixmap(QPixmap::fromImage(image));
    m_pBackground->setGeometry(rect());
}
