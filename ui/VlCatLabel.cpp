#include "ui/VlCatLabel.h"

#include "model/CDataModel.h"
#include "ui/VlCategoryTitleLabel.h"
#include "ui/VlColors.h"
#include "ui/VlFocusFrame.h"

#include <QBitmap>
#include <QCoreApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QGridLayout>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>

namespace {
// Names that come from the catalogue at run time; listed here so that they reach the translators.
const char* const st_categoryNames[] = {
    QT_TRANSLATE_NOOP("VlCatLabel", "All"),         QT_TRANSLATE_NOOP("VlCatLabel", "Selected"),
    QT_TRANSLATE_NOOP("VlCatLabel", "X-Plane 10"),  QT_TRANSLATE_NOOP("VlCatLabel", "X-Plane 11"),
    QT_TRANSLATE_NOOP("VlCatLabel", "FSX"),         QT_TRANSLATE_NOOP("VlCatLabel", "FS2004"),
    QT_TRANSLATE_NOOP("VlCatLabel", "Prepar3D v2"), QT_TRANSLATE_NOOP("VlCatLabel", "Prepar3D v3"),
    QT_TRANSLATE_NOOP("VlCatLabel", "Prepar3D v4"),
};

QLabel* imageLabel(const QString& path, QWidget* parent)
{
    auto* label = new QLabel(parent);
    const QPixmap pixmap(path);
    label->setPixmap(pixmap);
    if (!pixmap.isNull())
        label->setMask(pixmap.mask());
    return label;
}

QLabel* separatorLine(QWidget* parent)
{
    auto* line = new QLabel(parent);
    line->setStyleSheet(QStringLiteral("background-color: rgb(145, 145, 150)"));
    line->setMaximumHeight(2);
    line->setMinimumHeight(2);
    line->setMinimumWidth(100);
    return line;
}
} // namespace

VlCatLabel::VlCatLabel(QWidget* parent, CDataModel* dataModel) : QWidget(parent), m_pDataModel(dataModel)
{
    Q_UNUSED(st_categoryNames);
}

QString VlCatLabel::TranslatedName(const QString& name)
{
    return QCoreApplication::translate("VlCatLabel", name.toUtf8().constData());
}

void VlCatLabel::PaintLineLabel(QLabel* label)
{
    const QSize size = label->size();
    if (size.width() <= 0 || size.height() <= 0)
        return;
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QLinearGradient gradient(0, 0, 0, size.height());
    gradient.setColorAt(0.0, QColor(151, 151, 160));
    gradient.setColorAt(1.0, QColor(151, 151, 160));
    painter.setBrush(gradient);
    painter.setPen(QColor(80, 80, 90));
    painter.drawRect(-1, -1, size.width() + 2, size.height());
    painter.end();
    label->setPixmap(QPixmap::fromImage(image));
}

void VlCatLabel::Init(const QString& image32, const QString& image48, const QString& name)
{
    m_strName = name;
    m_pCategory = m_pDataModel ? m_pDataModel->GetCategoryByName(name) : nullptr;
    InitCtrls(image32, image48);
    connect(this, &VlCatLabel::clicked, this, &VlCatLabel::clickedSlot);
}

void VlCatLabel::InitCtrls(const QString& image32, const QString& image48)
{
    m_pGrid = new QGridLayout(this);
    m_pGrid->setSpacing(0);
    m_pGrid->setContentsMargins(0, 5, 0, 5);

    m_pImage32 = imageLabel(image32, this);
    m_pImage32->setAttribute(Qt::WA_MouseTracking);
    m_pImage48 = imageLabel(image48, this);
    m_pImage32->hide();
    m_pGrid->addWidget(m_pImage32, 0, 0, Qt::AlignCenter);
    m_pGrid->addWidget(m_pImage48, 0, 0, Qt::AlignCenter);

    auto* right = new QGridLayout;
    right->setSpacing(0);
    right->setContentsMargins(0, 7, 0, 7);
    right->setRowStretch(1, 1);
    right->setColumnStretch(1, 1);
    m_pLineTop = separatorLine(this);
    m_pLineBottom = separatorLine(this);
    m_pTitle = new VlCategoryTitleLabel(TranslatedName(m_strName), this);
    auto* titleGrid = new QGridLayout;
    titleGrid->setContentsMargins(10, 0, 0, 0);
    titleGrid->addWidget(m_pTitle, 0, 0, Qt::AlignLeft | Qt::AlignVCenter);
    right->addWidget(m_pLineTop, 0, 1, Qt::AlignRight);
    right->addLayout(titleGrid, 1, 1);
    right->addWidget(m_pLineBottom, 2, 1, Qt::AlignRight);
    m_pGrid->addLayout(right, 0, 1);

    setAttribute(Qt::WA_MouseTracking);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(TranslatedName(m_strName));
    ShowEnabled();
}

void VlCatLabel::ShowEnabled()
{
    // A category without a simulator folder on this platform must not look clickable.
    VlColors::SetTextColor(m_pTitle, isEnabled() ? QColor(45, 45, 55) : QColor(170, 170, 178));
    setCursor(isEnabled() ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

QString VlCatLabel::GetTitle() const
{
    return m_pTitle ? m_pTitle->text() : QString();
}

void VlCatLabel::SetSelect(bool selected)
{
    m_bSelected = selected;
    if (!m_pGrid)
        return;
    m_pLineTop->hide();
    m_pLineBottom->hide();
    if (selected) {
        m_pImage32->hide();
        m_pImage48->show();
        m_pGrid->setContentsMargins(0, 5, 0, 5);
        emit clicked();
    } else {
        m_pImage48->hide();
        m_pImage32->show();
        m_pGrid->setContentsMargins(18, 5, 0, 5);
    }
    m_pLineTop->show();
    m_pLineBottom->show();
    PaintLineLabel(m_pLineTop);
    PaintLineLabel(m_pLineBottom);
    repaint();
}

void VlCatLabel::clickedSlot()
{
    update();
}

void VlCatLabel::retranslate()
{
    if (m_pTitle)
        m_pTitle->setText(TranslatedName(m_strName));
    setAccessibleName(TranslatedName(m_strName));
    setAccessibleDescription(isEnabled() ? tr("Shows the products of this category.")
                                         : tr("This simulator is not supported on this computer."));
}

void VlCatLabel::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    if (event->type() == QEvent::EnabledChange && m_pTitle)
        ShowEnabled();
    QWidget::changeEvent(event);
}

void VlCatLabel::mousePressEvent(QMouseEvent* event)
{
    SetSelect(true);
    event->accept();
}

void VlCatLabel::mouseMoveEvent(QMouseEvent* event)
{
    setCursor(Qt::PointingHandCursor);
    QWidget::mouseMoveEvent(event);
}

void VlCatLabel::keyPressEvent(QKeyEvent* event)
{
    if (!VlFocusFrame::HandlePressKey(event, [this] { SetSelect(true); }))
        QWidget::keyPressEvent(event);
}

void VlCatLabel::paintEvent(QPaintEvent* event)
{
    QWidget::paintEvent(event);
    VlFocusFrame::Paint(this, m_focusReason);
}

void VlCatLabel::focusInEvent(QFocusEvent* event)
{
    m_focusReason = event->reason();
    QWidget::focusInEvent(event);
}

void VlCatLabel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (m_pLineTop) {
        PaintLineLabel(m_pLineTop);
        PaintLineLabel(m_pLineBottom);
    }
}
