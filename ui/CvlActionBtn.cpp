#include "ui/CvlActionBtn.h"

#include "ui/VlActionLabel.h"
#include "ui/VlFocusFrame.h"

#include <QBitmap>
#include <QEvent>
#include <QFocusEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPixmap>

namespace {
void setImage(QLabel* label, const QString& path)
{
    const QPixmap pixmap(path);
    label->setPixmap(pixmap);
    if (!pixmap.isNull())
        label->setMask(pixmap.mask());
}

QLabel* imageLabel(const QString& path, QWidget* parent)
{
    auto* label = new QLabel(parent);
    setImage(label, path);
    return label;
}
} // namespace

CvlActionBtn::CvlActionBtn(QWidget* parent, CDataModel* dataModel) : QWidget(parent), m_pDataModel(dataModel) {}

void CvlActionBtn::Init(const QString& normalImage, const QString& hoverImage, const QString& caption)
{
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);

    m_pNormal = imageLabel(normalImage, this);
    m_pNormal->setMouseTracking(true);
    // The hover picture is decoded when the pointer first comes, not while the window is built.
    m_pHover = new QLabel(this);
    m_strHoverImage = hoverImage;
    m_pHover->hide();
    grid->addWidget(m_pNormal, 0, 0, Qt::AlignCenter);
    grid->addWidget(m_pHover, 0, 0, Qt::AlignCenter);

    m_pCaption = new VlActionLabel(caption, this);
    m_pCaption->setContentsMargins(2, 0, 2, 0);
    m_pCaption->setAlignment(Qt::AlignCenter);
    grid->addWidget(m_pCaption, 1, 0, Qt::AlignCenter);

    setMouseTracking(true);
    // Reachable with Tab and pressed with Space or Return, like any push button.
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QString(caption).replace(QLatin1Char('\n'), QLatin1Char(' ')));
    connect(this, &CvlActionBtn::clicked, this, &CvlActionBtn::clickedSlot);
}

QString CvlActionBtn::GetCaption() const
{
    return m_pCaption ? m_pCaption->text() : QString();
}

void CvlActionBtn::SetCaption(const QString& caption)
{
    if (m_pCaption)
        m_pCaption->setText(caption);
    // A translation may break a long caption into two lines; a screen reader reads one.
    const QString name = QString(caption).replace(QLatin1Char('\n'), QLatin1Char(' '));
    setAccessibleName(name);
    setToolTip(m_strShortcut.isEmpty() ? name : name + QStringLiteral(" (") + m_strShortcut + QLatin1Char(')'));
}

void CvlActionBtn::SetShortcut(const QKeySequence& keys)
{
    m_strShortcut = keys.toString(QKeySequence::NativeText);
    SetCaption(GetCaption());
}

void CvlActionBtn::ShowHover(bool hover)
{
    if (!m_pNormal)
        return;
    if (hover && !m_strHoverImage.isEmpty()) {
        setImage(m_pHover, m_strHoverImage);
        m_strHoverImage.clear();
    }
    m_pHover->setVisible(hover);
    m_pNormal->setVisible(!hover);
}

void CvlActionBtn::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void CvlActionBtn::mouseMoveEvent(QMouseEvent* event)
{
    ShowHover(true);
    setCursor(Qt::PointingHandCursor);
    event->accept();
}

void CvlActionBtn::leaveEvent(QEvent* event)
{
    ShowHover(false);
    QWidget::leaveEvent(event);
}

void CvlActionBtn::mousePressEvent(QMouseEvent* event)
{
    emit clicked();
    ShowHover(false);
    event->accept();
}

void CvlActionBtn::keyPressEvent(QKeyEvent* event)
{
    if (!VlFocusFrame::HandlePressKey(event, [this] { emit clicked(); }))
        QWidget::keyPressEvent(event);
}

void CvlActionBtn::paintEvent(QPaintEvent* event)
{
    QWidget::paintEvent(event);
    VlFocusFrame::Paint(this, m_focusReason);
}

void CvlActionBtn::focusInEvent(QFocusEvent* event)
{
    m_focusReason = event->reason();
    QWidget::focusInEvent(event);
}
