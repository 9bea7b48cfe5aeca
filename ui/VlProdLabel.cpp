#include "ui/VlProdLabel.h"

#include "model/CDataModel.h"
#include "model/CProduct.h"
#include "ui/SystemButton.h"
#include "ui/VlAppPushButton.h"
#include "ui/VlBackground.h"
#include "ui/VlCatLabel.h"
#include "ui/VlColors.h"
#include "ui/VlCycleDates.h"
#include "ui/VlDatasetTitleLabel.h"
#include "ui/VlDefaultEdit.h"
#include "ui/VlDefaultLabel.h"
#include "ui/VlDirChooser.h"
#include "ui/VlFonts.h"
#include "ui/VlImages.h"
#include "ui/VlProductTitleLabel.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QDir>
#include <QEvent>
#include <QFontMetrics>
#include <QFrame>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QResizeEvent>

namespace {
// Indexed by install state - 1.
const char* const st_stateIcons[8] = {
    ":/images/prod_install_run.png",     ":/images/prod_reset_run.png",  ":/images/prod_remove_backup_run.png",
    ":/images/prod_not_install.png",     ":/images/prod_install_ok.png", ":/images/prod_install_error.png",
    ":/images/prod_install_warning.png", ":/images/prod_update.png",
};

// Frames are plain frames rather than labels, so that they grow with what they hold.
QFrame* frameLabel(const QColor& background, QWidget* parent)
{
    auto* label = new QFrame(parent);
    VlBackground::Fill(label, background);
    return label;
}

QGridLayout* grid0(const QMargins& margins)
{
    auto* grid = new QGridLayout;
    grid->setSpacing(0);
    grid->setContentsMargins(margins);
    return grid;
}

const Qt::Alignment st_leftCentre = Qt::AlignLeft | Qt::AlignVCenter;

// Breaks text at spaces so that no line is wider than the width, preferring the breaks after the
// separators given; a single word wider than the width stays whole.
QString wrapToWidth(const QString& text, const QFontMetrics& metrics, int width, const QString& preferred = QString())
{
    if (metrics.horizontalAdvance(text) <= width)
        return text;
    if (!preferred.isEmpty() && text.contains(preferred)) {
        const int at = text.indexOf(preferred) + preferred.size();
        return wrapToWidth(text.left(at).trimmed(), metrics, width) + QLatin1Char('\n') +
               wrapToWidth(text.mid(at).trimmed(), metrics, width);
    }
    QStringList lines;
    QString line;
    for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QString longer = line.isEmpty() ? word : line + QLatin1Char(' ') + word;
        if (!line.isEmpty() && metrics.horizontalAdvance(longer) > width) {
            lines << line;
            line = word;
        } else {
            line = longer;
        }
    }
    lines << line;
    return lines.join(QLatin1Char('\n'));
}
} // namespace

VlProdLabel::VlProdLabel(QWidget* parent, CDataModel* dataModel, CProduct* product, int width)
    : QWidget(parent), m_pDataModel(dataModel), m_pProduct(product), m_iWidth(width)
{
    InitWidgets();
    InitSlots();
}

void VlProdLabel::Init()
{
    InitWidgets();
    InitSlots();
}

void VlProdLabel::setVisible(bool visible)
{
    QWidget::setVisible(visible);
    m_bVisible = visible;
}

void VlProdLabel::InitWidgets()
{
    if (m_bWidgetsBuilt)
        return;
    VlBackground::Fill(this, QColor(40, 40, 50));
    setMinimumHeight(120);
    if (!m_pProduct)
        return;

    // Upper frame: state, name, category, dataset, cycle and the command toggles.
    m_pUpperFrame = frameLabel(QColor(230, 230, 240), this);
    m_pUpperFrame->setMinimumHeight(75);
    // Each grid goes onto its frame only once it is complete: a grid that already has a widget asks
    // it for a new layout pass on every change, and with hundreds of cards those requests pile up.
    QGridLayout* upper = grid0(QMargins(8, 5, 10, 1));
    upper->setColumnStretch(0, 0);
    upper->setColumnStretch(1, 0);
    upper->setColumnStretch(2, 1);
    upper->setColumnStretch(3, 0);
    upper->setColumnMinimumWidth(0, 70);
    upper->setColumnMinimumWidth(3, 95);
    upper->setRowMinimumHeight(0, 25);
    upper->setRowStretch(1, 1);
    m_pUpperGrid = upper;

    // One picture at a time: the label takes the one of the state shown.
    m_pStateIcon = new QLabel(m_pUpperFrame);
    m_pStateIcon->hide();
    upper->addWidget(m_pStateIcon, 0, 0, st_leftCentre);
    m_pTitle = new VlProductTitleLabel(m_pProduct->GetName(), m_pUpperFrame);
    m_pTitle->setToolTip(m_pProduct->GetName());
    upper->addWidget(m_pTitle, 0, 1, st_leftCentre);
    m_pCategory = new VlDefaultLabel(m_pUpperFrame);
    m_pCategory->setContentsMargins(15, 0, 0, 0);
    upper->addWidget(m_pCategory, 0, 2, st_leftCentre);

    QGridLayout* toggles = grid0(QMargins());
    toggles->setColumnStretch(0, 1);
    toggles->setColumnStretch(2, 0);
    toggles->setColumnMinimumWidth(2, 90);
    toggles->setRowMinimumHeight(0, 32);
    m_pShowCommands = new QPushButton(VlImages::Icon(QStringLiteral(":/images/links.png")), QString(), m_pUpperFrame);
    m_pShowCommands->setMinimumWidth(90);
    m_pHideCommands = new QPushButton(VlImages::Icon(QStringLiteral(":/images/rechts.png")), QString(), m_pUpperFrame);
    m_pHideCommands->setMinimumWidth(90);
    m_pHideCommands->hide();
    toggles->addWidget(m_pShowCommands, 0, 2, Qt::AlignCenter);
    toggles->addWidget(m_pHideCommands, 0, 2, Qt::AlignCenter);
    upper->addLayout(toggles, 0, 3, st_leftCentre);

    m_pDatasetCaption = new VlDefaultLabel(m_pUpperFrame);
    m_pDatasetCaption->setContentsMargins(0, 0, 13, 0);
    upper->addWidget(m_pDatasetCaption, 1, 0, Qt::AlignRight | Qt::AlignVCenter);
    m_pDataset =
        new VlDatasetTitleLabel(QStringLiteral("- ") + m_pProduct->GetDataset() + QStringLiteral(" -"), m_pUpperFrame);
    // Dataset and cycle may use the empty middle column too; the cycle text is long.
    upper->addWidget(m_pDataset, 1, 1, 1, 2, st_leftCentre);

    QGridLayout* selectGrid = grid0(QMargins());
    selectGrid->setColumnStretch(0, 1);
    selectGrid->setColumnStretch(1, 0);
    selectGrid->setColumnMinimumWidth(1, 90);
    m_pSelect = new QCheckBox(m_pUpperFrame);
    m_pSelect->setChecked(m_pProduct->GetUpdate());
    selectGrid->addWidget(m_pSelect, 0, 1, Qt::AlignLeft | Qt::AlignBottom);
    upper->addLayout(selectGrid, 1, 3, st_leftCentre);

    m_pCycleCaption = new VlDefaultLabel(m_pUpperFrame);
    m_pCycleCaption->setContentsMargins(0, 0, 13, 0);
    upper->addWidget(m_pCycleCaption, 2, 0, st_leftCentre);
    m_pCycle = new VlDatasetTitleLabel(m_pUpperFrame);
    upper->addWidget(m_pCycle, 2, 1, 1, 2, st_leftCentre);

    // Under the cycle: when it is in force, and how long ago it expired.
    m_pCycleDates = new VlDefaultLabel(m_pUpperFrame);
    m_pCycleExpired = new VlDefaultLabel(m_pUpperFrame);
    m_pCycleExpired->setFont(VlFonts::Relative(0, QFont::DemiBold));
    VlColors::SetTextColor(m_pCycleExpired, VlColors::Warning());
    m_pCycleDates->hide();
    m_pCycleExpired->hide();
    m_pCycleDatesBox = new QBoxLayout(QBoxLayout::LeftToRight);
    m_pCycleDatesBox->setContentsMargins(0, 0, 0, 2);
    m_pCycleDatesBox->setSpacing(0);
    m_pCycleExpired->setContentsMargins(14, 0, 0, 0); // the gap to the dates beside it
    m_pCycleDatesBox->addWidget(m_pCycleDates, 0, st_leftCentre);
    m_pCycleDatesBox->addWidget(m_pCycleExpired, 0, st_leftCentre);
    m_pCycleDatesBox->addStretch(1);
    upper->addLayout(m_pCycleDatesBox, 3, 1, 1, 2);

    // The fold-out commands, under the update tick.
    m_pCommands = new QFrame(m_pUpperFrame);
    m_pCommands->setMinimumSize(108, 30);
    m_pCommands->hide();
    QGridLayout* commands = grid0(QMargins(0, 4, 0, 0));
    commands->setRowMinimumHeight(0, 30);
    commands->setColumnMinimumWidth(1, 6);
    commands->setColumnMinimumWidth(3, 6);
    m_pUpdateButton = new SystemButton(QStringLiteral(":/images/update_gr.png"),
                                       QStringLiteral(":/images/update_bl.png"), m_pCommands);
    m_pResetButton =
        new SystemButton(QStringLiteral(":/images/reset_gr.png"), QStringLiteral(":/images/reset_bl.png"), m_pCommands);
    m_pRemoveBackupButton = new SystemButton(QStringLiteral(":/images/remove_backup_gr.png"),
                                             QStringLiteral(":/images/remove_backup_bl.png"), m_pCommands);
    m_pUpdateButton->setCursor(Qt::PointingHandCursor);
    m_pResetButton->setCursor(Qt::PointingHandCursor);
    m_pRemoveBackupButton->setCursor(Qt::PointingHandCursor);
    commands->addWidget(m_pUpdateButton, 0, 0, Qt::AlignLeft | Qt::AlignTop);
    commands->addWidget(m_pResetButton, 0, 2, Qt::AlignLeft | Qt::AlignTop);
    commands->addWidget(m_pRemoveBackupButton, 0, 4, Qt::AlignLeft | Qt::AlignTop);
    m_pCommands->setLayout(commands);
    upper->addWidget(m_pCommands, 2, 3, Qt::AlignLeft | Qt::AlignVCenter);
    m_pUpperFrame->setLayout(upper);

    // Lower frame: the product folder.
    m_pLowerFrame = frameLabel(QColor(235, 235, 245), this);
    m_pLowerFrame->setMinimumHeight(40);
    QGridLayout* lower = grid0(QMargins(9, 0, 10, 0));
    lower->setColumnStretch(0, 0);
    lower->setColumnMinimumWidth(0, 64);
    lower->setColumnStretch(1, 1);
    lower->setColumnStretch(2, 0);
    m_pPathCaption = new VlDefaultLabel(m_pLowerFrame);
    lower->addWidget(m_pPathCaption, 0, 0, st_leftCentre);
    m_pPathEdit = new VlDefaultEdit(m_pLowerFrame);
    m_pPathEdit->setEnabled(false); // changed only through the chooser
    lower->addWidget(m_pPathEdit, 0, 1, st_leftCentre);
    m_pChangeButton = new VlAppPushButton(m_pLowerFrame);
    lower->addWidget(m_pChangeButton, 0, 2, Qt::AlignRight | Qt::AlignVCenter);
    m_pLowerFrame->setLayout(lower);

    InitProdProductPaths(m_pProduct->GetProductPath());
    const QString realPath = m_pProduct->InitRealPath(m_pProduct->GetProductPath());
    ShowPathText(realPath);
    SetPathColor(CheckExistDir(realPath));

    // Frames on a grey outline that fills the dark card.
    m_pOuterFrame = frameLabel(QColor(110, 110, 117), this);
    QGridLayout* frames = grid0(QMargins(1, 1, 1, 1));
    frames->addWidget(m_pUpperFrame, 0, 0);
    frames->addWidget(m_pLowerFrame, 1, 0);
    m_pOuterFrame->setLayout(frames);
    QGridLayout* card = grid0(QMargins(2, 2, 2, 2));
    card->addWidget(m_pOuterFrame, 0, 0);
    setLayout(card);

    retranslate();
    m_bWidgetsBuilt = true;
    // The cycle line was just filled in by retranslate().
    ShowStateIcon(m_pProduct->GetInstallState());
}

void VlProdLabel::InitSlots()
{
    if (!m_pProduct || !m_pPathEdit)
        return;
    const auto unique = Qt::UniqueConnection;
    connect(m_pChangeButton, &QPushButton::clicked, this, &VlProdLabel::ClickedChangeButtonSlot, unique);
    connect(m_pPathEdit, &QLineEdit::textChanged, this, &VlProdLabel::PathTextChangeSlot, unique);
    connect(m_pSelect, &QCheckBox::clicked, this, &VlProdLabel::ClickedCbUpdateSlot, unique);
    connect(m_pProduct, &CProduct::SignalChangeInstallState, this, &VlProdLabel::ChangeInstallStateSlot, unique);
    connect(m_pProduct, &CProduct::SignalUpdateChange, this, &VlProdLabel::ProductSetUpdateSlot, unique);
    connect(m_pShowCommands, &QPushButton::clicked, this, &VlProdLabel::ClickedShowCommandsButtonSlot, unique);
    connect(m_pHideCommands, &QPushButton::clicked, this, &VlProdLabel::ClickedHideCommandsButtonSlot, unique);
    connect(m_pUpdateButton, &SystemButton::clicked, this, &VlProdLabel::ClickedUpdateSlot, unique);
    connect(m_pResetButton, &SystemButton::clicked, this, &VlProdLabel::ClickedResetSlot, unique);
    connect(m_pRemoveBackupButton, &SystemButton::clicked, this, &VlProdLabel::ClickedRemoveBackupSlot, unique);
}

void VlProdLabel::ChangeInstallStateSlot(EQMKProductInstallState state)
{
    if (!m_bWidgetsBuilt)
        return;
    ShowStateIcon(state);
    UpdateVersionLabel();
}

void VlProdLabel::ShowStateIcon(EQMKProductInstallState state)
{
    const int index = static_cast<int>(state) - 1;
    if (index < 0 || index >= 8) {
        m_iShownState = 0;
        m_pStateIcon->hide();
        return;
    }
    if (m_iShownState != index + 1)
        m_pStateIcon->setPixmap(VlImages::Pixmap(QString::fromLatin1(st_stateIcons[index])));
    m_iShownState = index + 1;
    m_pStateIcon->show();
    ShowStateText(m_iShownState);
}

void VlProdLabel::ShowStateText(int state)
{
    // The icon's colour alone would not tell a screen reader, or a colour-blind pilot, the state.
    m_pStateIcon->setToolTip(StateToolTip(state));
    m_pStateIcon->setAccessibleName(tr("State"));
    m_pStateIcon->setAccessibleDescription(m_pStateIcon->toolTip());
}

int VlProdLabel::GetShownStateIcon() const
{
    return m_iShownState;
}

QString VlProdLabel::StateToolTip(int state) const
{
    switch (state) {
    case QMK_STATE_INSTALL_RUN:
        return tr("Installing: the newest cycle is being downloaded or installed.");
    case QMK_STATE_RESET_RUN:
        return tr("Resetting: the backed-up files are being restored.");
    case QMK_STATE_REMOVE_BACKUP_RUN:
        return tr("Removing the backup files.");
    case QMK_STATE_NOT_INSTALLED:
        // Seen beside an installed cycle when the version server could not be asked.
        if (m_pProduct && m_pProduct->GetNewCycle().isEmpty())
            return tr("Not checked: the newest cycle is not known yet (the version server was not reached), so the "
                      "installed cycle cannot be compared with it.");
        return tr("Not installed: this product does not hold the newest cycle.");
    case QMK_STATE_INSTALL_OK:
        return tr("Installed: this product holds the newest cycle.");
    case QMK_STATE_INSTALL_ERROR: {
        const QString error = m_pProduct ? m_pProduct->GetErrorText() : QString();
        return error.isEmpty() ? tr("Failed: the last run did not succeed for this product.")
                               : tr("Failed: %1").arg(error);
    }
    case QMK_STATE_INSTALL_WARNING:
        return tr("Update due: the installed cycle differs from the newest one, or the last run was stopped.");
    case QMK_STATE_UPDATE_AVAILABLE:
        return tr("Update available.");
    default:
        return QString();
    }
}

QString VlProdLabel::GetStateToolTip() const
{
    const int state = GetShownStateIcon();
    return state > 0 ? m_pStateIcon->toolTip() : QString();
}

void VlProdLabel::ProductSetUpdateSlot()
{
    if (m_pProduct && m_pSelect)
        m_pSelect->setChecked(m_pProduct->GetUpdate());
}

void VlProdLabel::ClickedCbUpdateSlot()
{
    if (m_pProduct)
        m_pProduct->SetUpdate(m_pSelect->isChecked());
}

void VlProdLabel::ClickedShowCommandsButtonSlot()
{
    m_pShowCommands->hide();
    m_pHideCommands->show();
    m_pCommands->show();
}

void VlProdLabel::ClickedHideCommandsButtonSlot()
{
    m_pShowCommands->show();
    m_pHideCommands->hide();
    m_pCommands->hide();
}

void VlProdLabel::ClickedUpdateSlot()
{
    if (m_pDataModel && m_pProduct)
        m_pDataModel->RunUpdateAddOnDatasets(m_pProduct);
}

void VlProdLabel::ClickedResetSlot()
{
    if (m_pDataModel && m_pProduct)
        m_pDataModel->RunReset(m_pProduct);
}

void VlProdLabel::ClickedRemoveBackupSlot()
{
    if (m_pDataModel && m_pProduct)
        m_pDataModel->RunRemoveBackup(m_pProduct);
}

void VlProdLabel::ClickedChangeButtonSlot()
{
    if (!m_pProduct)
        return;
    QString start = m_pProduct->GetProductPath();
    if (start.isEmpty())
        start = QStringLiteral("/");
    const QString dir = VlDirChooser::GetExistingDirectory(this, tr("Open Directory"), start);
    if (!dir.isEmpty())
        m_pPathEdit->setText(dir);
}

void VlProdLabel::ShowPathText(const QString& text)
{
    // Showing the stored folder is not an edit: reacting would store the displayed, resolved form
    // over the product's template.
    m_bShowingPath = true;
    m_pPathEdit->setText(text);
    m_bShowingPath = false;
    // The start of a long path says more than its end; the whole path is in the tool tip.
    m_pPathEdit->setCursorPosition(0);
    m_pPathEdit->setToolTip(text);
}

void VlProdLabel::PathTextChangeSlot(const QString& text)
{
    if (!m_pProduct || m_bShowingPath)
        return;
    QString path = text;
    if (path.size() >= 2 && path.startsWith(QLatin1Char('<')))
        path = m_pProduct->GetProductPath();
    InitProdProductPaths(path);
    SetPathColor(CheckExistDir(m_pProduct->InitRealPath(m_pProduct->GetProductPath())));
    m_pProduct->UpdateCheckCycleVersion();
}

void VlProdLabel::UpdatePath()
{
    if (!m_pProduct)
        return;
    InitProdProductPaths(m_pProduct->GetProductPath());
    SetPathColor(CheckExistDir(m_pProduct->InitRealPath(m_pProduct->GetProductPath())));
    TranslateSimPath();
}

QString VlProdLabel::GetProdPathLangUndep() const
{
    if (!m_pProduct)
        return m_pPathEdit ? m_pPathEdit->text() : QString();
    // The edit shows the stored template in its display form, or a folder just stored; either way
    // the stored template is the language-independent form.
    return m_pProduct->GetProductPath();
}

void VlProdLabel::InitProdProductPaths(const QString& text)
{
    if (m_pProduct)
        m_pProduct->InitNewProdPath(text);
}

bool VlProdLabel::CheckExistDir(const QString& path)
{
    if (!m_pProduct)
        return false;
    const bool exists = !path.isEmpty() && QDir(path).exists();
    ChangeInstallStateSlot(m_pProduct->GetInstallState());
    return exists;
}

void VlProdLabel::SetPathColor(bool exists)
{
    if (m_pPathEdit)
        VlColors::SetTextColor(m_pPathEdit, exists ? VlColors::PathOk() : VlColors::PathBad());
}

void VlProdLabel::TranslateSimPath()
{
    if (!m_pProduct || !m_pPathEdit)
        return;
    ShowPathText(m_pProduct->TranslateNewProdPath());
    UpdateVersionLabel();
}

void VlProdLabel::UpdateVersionLabel()
{
    if (!m_pProduct || !m_pCycle)
        return;
    const QString cycle = m_pProduct->GetCycleVersion();
    const QString installed =
        cycle.isEmpty() ? tr("not found") : tr("V. %1 R. %2").arg(cycle, m_pProduct->GetRevision());
    const QString backCycle = m_pProduct->GetBackCycleVersion();
    QString backup;
    if (backCycle.isEmpty())
        backup = tr("not found");
    else if (backCycle == QLatin1String("unknown"))
        backup = tr("unknown");
    else
        backup = tr("V. %1 R. %2").arg(backCycle, m_pProduct->GetBackRevision());
    ShowCycleDates(cycle);
    // One text for the whole line, so that a language can order it as it reads best.
    m_strCycle = tr("- installed ( %1 ), backup ( %2 ) -").arg(installed, backup);
    FitTexts();
}

void VlProdLabel::ShowCycleDates(const QString& cycle)
{
    m_strCycleDates = VlCycleDates::Validity(cycle);
    const QString expiry = VlCycleDates::Expiry(cycle, VlCycleDates::Today());
    if (m_pCycleExpired->text() != expiry)
        m_pCycleExpired->setText(expiry);
    m_pCycleDates->setVisible(!m_strCycleDates.isEmpty());
    m_pCycleExpired->setVisible(!expiry.isEmpty());
}

void VlProdLabel::FitTexts()
{
    if (!m_pTitle || !m_pCycle || !m_pOuterFrame)
        return;
    // Room of the two middle columns: the card less its frames, margins and the two outer columns.
    int first = 70;
    for (QWidget* w : {static_cast<QWidget*>(m_pDatasetCaption), static_cast<QWidget*>(m_pCycleCaption)})
        first = qMax(first, w->sizeHint().width());
    int last = qMax(95, qMax(90, qMax(m_pShowCommands->sizeHint().width(), m_pHideCommands->sizeHint().width())));
    last = qMax(last, qMax(m_pCommands->minimumWidth(), m_pCommands->sizeHint().width()));
    last = qMax(last, qMax(90, m_pSelect->sizeHint().width()));
    const QMargins upper = m_pUpperGrid->contentsMargins();
    const int room = m_iWidth - 4 - 2 - upper.left() - upper.right() - first - last;
    m_iFittedWidth = m_iWidth;

    // Long names and the cycle text wrap rather than run under their neighbours.
    const int titleRoom = room - m_pCategory->sizeHint().width();
    const QString title = wrapToWidth(m_pProduct->GetName(), m_pTitle->fontMetrics(),
                                      qMax(titleRoom - m_pTitle->contentsMargins().left(), 1));
    if (m_pTitle->text() != title)
        m_pTitle->setText(title);
    const QString dataset = wrapToWidth(QStringLiteral("- ") + m_pProduct->GetDataset() + QStringLiteral(" -"),
                                        m_pDataset->fontMetrics(), qMax(room, 1));
    if (m_pDataset->text() != dataset)
        m_pDataset->setText(dataset);
    const QString cycle = wrapToWidth(m_strCycle, m_pCycle->fontMetrics(), qMax(room, 1), QStringLiteral(", "));
    if (m_pCycle->text() != cycle)
        m_pCycle->setText(cycle);
    // The expiry goes under the dates when both do not fit on one line.
    const QString dates =
        wrapToWidth(m_strCycleDates, m_pCycleDates->fontMetrics(), qMax(room, 1), QStringLiteral("– "));
    if (m_pCycleDates->text() != dates)
        m_pCycleDates->setText(dates);
    const int gap = 14;
    const int datesWidth = m_pCycleDates->fontMetrics().horizontalAdvance(m_strCycleDates) + gap +
                           m_pCycleExpired->fontMetrics().horizontalAdvance(m_pCycleExpired->text());
    const auto direction = datesWidth > room ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight;
    if (m_pCycleDatesBox->direction() != direction) {
        m_pCycleDatesBox->setDirection(direction);
        m_pCycleExpired->setContentsMargins(direction == QBoxLayout::LeftToRight ? gap : 0, 0, 0, 0);
    }
    // The list reads the card's height from its size hint right away, before any layout pass.
    m_pUpperFrame->updateGeometry();
    m_pOuterFrame->updateGeometry();
    updateGeometry();
}

QString VlProdLabel::GetPathText() const
{
    return m_pPathEdit ? m_pPathEdit->text() : QString();
}

QString VlProdLabel::GetCycleText() const
{
    return m_strCycle;
}

QString VlProdLabel::GetCycleDatesText() const
{
    return m_strCycleDates;
}

QString VlProdLabel::GetCycleExpiredText() const
{
    return m_pCycleExpired ? m_pCycleExpired->text() : QString();
}

void VlProdLabel::retranslate()
{
    if (!m_pProduct || !m_pPathCaption)
        return;
    m_pPathCaption->setText(tr("Path:"));
    m_pChangeButton->setText(tr("Change"));
    m_pSelect->setText(tr("select"));
    m_pDatasetCaption->setText(tr("Dataset:"));
    m_pCycleCaption->setText(tr("Cycle:"));
    m_pCategory->setText(QStringLiteral("(") + VlCatLabel::TranslatedName(m_pProduct->GetCategoryName()) +
                         QStringLiteral(")"));
    const int state = GetShownStateIcon();
    if (state > 0)
        ShowStateText(state);
    // The commands are pictures: names and descriptions say what they do, and for which product.
    const QString name = m_pProduct->GetName();
    const struct
    {
        SystemButton* button;
        QString caption;
        QString description;
    } commands[] = {
        {m_pUpdateButton, tr("Update"), tr("Downloads and installs the newest cycle for %1 only.").arg(name)},
        {m_pResetButton, tr("Reset"), tr("Puts back the files that the last update of %1 replaced.").arg(name)},
        {m_pRemoveBackupButton, tr("remove backup files"), tr("Deletes the backup of %1.").arg(name)},
    };
    for (const auto& c : commands) {
        c.button->setToolTip(c.caption);
        c.button->setAccessibleName(c.caption);
        c.button->setAccessibleDescription(c.description);
    }
    m_pSelect->setAccessibleDescription(tr("Selects %1 for the next update.").arg(name));
    m_pPathCaption->setBuddy(m_pPathEdit);
    m_pChangeButton->setAccessibleDescription(tr("Chooses the folder of %1.").arg(name));
    m_pShowCommands->setText(tr("Commands"));
    m_pHideCommands->setText(tr("Commands"));
    TranslateSimPath();
}

void VlProdLabel::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void VlProdLabel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (!m_pUpperFrame)
        return;
    setMinimumWidth(m_iWidth);
    m_pUpperFrame->setMinimumWidth(qMax(m_iWidth - 6, 0));
    m_pLowerFrame->setMinimumWidth(qMax(m_iWidth - 6, 0));
    m_pOuterFrame->setMinimumWidth(qMax(m_iWidth - 4, 0));
    m_pPathEdit->setMinimumWidth(qMax(m_iWidth - 180, 0));
    // Texts are fitted to the assigned width; a resize to the width they already fit needs nothing.
    if (event->oldSize().width() != event->size().width() && m_iWidth != m_iFittedWidth)
        FitTexts();
}
