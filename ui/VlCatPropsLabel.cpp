#include "ui/VlCatPropsLabel.h"

#include "model/CAiracCycle.h"
#include "model/CCategory.h"
#include "model/CDataModel.h"
#include "model/CFolderCache.h"
#include "model/CProduct.h"
#include "ui/VlAppPushButton.h"
#include "ui/VlBackground.h"
#include "ui/VlCatLabel.h"
#include "ui/VlCategoryTitleLabel.h"
#include "ui/VlColors.h"
#include "ui/VlCycleDates.h"
#include "ui/VlDefaultEdit.h"
#include "ui/VlDefaultLabel.h"
#include "ui/VlDirChooser.h"

#include <QEvent>
#include <QFontMetrics>
#include <QGridLayout>
#include <QTimer>

namespace {
QLabel* line(const char* style, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setStyleSheet(QString::fromLatin1(style));
    label->setFixedHeight(1);
    label->setMinimumWidth(3000); // always spans the panel
    return label;
}
} // namespace

VlCatPropsLabel::VlCatPropsLabel(QWidget* parent, CCategory* category) : QLabel(parent)
{
    UpdateCategory(category);
}

void VlCatPropsLabel::Init()
{
    InitCtrls();
    connect(m_pChangeButton, &QPushButton::clicked, this, &VlCatPropsLabel::ClickedChangeButtonSlot);
    connect(m_pPathEdit, &QLineEdit::textChanged, this, &VlCatPropsLabel::PathTextChangeSlot);
    connect(m_pOfferButton, &QPushButton::clicked, this, &VlCatPropsLabel::ClickedOfferButtonSlot);
    m_bCtrlsBuilt = true;
    UpdateCategory(m_pCategory);
    retranslate();
}

void VlCatPropsLabel::InitCtrls()
{
    VlBackground::Fill(this, QColor(240, 240, 250));
    setMinimumHeight(110);

    auto* outer = new QGridLayout(this);
    outer->setSpacing(0);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(line("background-color: rgb(28, 28, 34)", this), 0, 0, Qt::AlignLeft | Qt::AlignTop);
    outer->addWidget(line("background-color: rgb(128, 128, 134)", this), 1, 0, Qt::AlignLeft | Qt::AlignTop);

    auto* band = new QLabel(this);
    m_pBand = band;
    VlBackground::Fill(band, QColor(195, 195, 205));
    auto* bandGrid = new QGridLayout(band);
    bandGrid->setSpacing(0);
    bandGrid->setContentsMargins(14, 2, 14, 2);
    bandGrid->setColumnStretch(2, 1);
    m_pCaption = new VlCategoryTitleLabel(band);
    m_pHeaderName = new VlCategoryTitleLabel(band);
    m_pHeaderName->setContentsMargins(12, 0, 0, 0);
    bandGrid->addWidget(m_pCaption, 0, 0, Qt::AlignLeft | Qt::AlignVCenter);
    bandGrid->addWidget(m_pHeaderName, 0, 1, Qt::AlignLeft | Qt::AlignVCenter);
    outer->addWidget(band, 2, 0);

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(6);
    grid->setContentsMargins(16, 8, 16, 10);
    grid->setColumnMinimumWidth(0, 64);
    grid->setColumnStretch(1, 1);
    m_pNameCaption = new VlDefaultLabel(this);
    m_pName = new VlDefaultLabel(this);
    m_pPathCaption = new VlDefaultLabel(this);
    m_pPathEdit = new VlDefaultEdit(this);
    m_pPathEdit->setEnabled(false); // changed only through the chooser
    m_pChangeButton = new VlAppPushButton(this);
    grid->addWidget(m_pNameCaption, 0, 0);
    grid->addWidget(m_pName, 0, 1, 1, 2);
    grid->addWidget(m_pPathCaption, 1, 0);
    grid->addWidget(m_pPathEdit, 1, 1);
    grid->addWidget(m_pChangeButton, 1, 2);
    // "All" and "Selected" have no folder; their second row counts the expired cycles instead.
    m_pExpired = new VlDefaultLabel(this);
    grid->addWidget(m_pExpired, 1, 1, 1, 2);
    m_pOfferButton = new VlAppPushButton(this);
    m_pOfferButton->hide();
    grid->addWidget(m_pOfferButton, 2, 1, Qt::AlignLeft);
    outer->addLayout(grid, 3, 0);
    outer->setRowStretch(4, 1);
}

void VlCatPropsLabel::ChangeSelectedCategorySlot(CCategory* category)
{
    UpdateCategory(category);
    retranslate();
}

void VlCatPropsLabel::UpdateCategory(CCategory* category)
{
    m_pCategory = category;
    m_strName = category ? category->GetName() : QString();
    if (!m_bCtrlsBuilt)
        return;
    const bool standard = CheckStdCategory();
    m_pPathCaption->setVisible(standard);
    m_pPathEdit->setVisible(standard);
    m_pChangeButton->setVisible(standard);
    m_pPathEdit->setText(category ? category->GetPath() : QString());
    CheckCategoryDir();
    m_pExpired->setVisible(!standard);
    ShowExpiredCount();
}

void VlCatPropsLabel::SetCategoryName(const QString& name)
{
    if (m_pCategory)
        return;
    m_strName = name;
    retranslate();
}

QString VlCatPropsLabel::GetShownName() const
{
    return m_pHeaderName ? m_pHeaderName->text() : QString();
}

bool VlCatPropsLabel::CheckStdCategory() const
{
    // Without a category there is no folder to show either.
    return m_pCategory && m_strName != QLatin1String("All") && m_strName != QLatin1String("Selected");
}

bool VlCatPropsLabel::CheckCategoryDir()
{
    const bool ok = m_pCategory && m_pCategory->CheckPath();
    if (m_pPathEdit)
        VlColors::SetTextColor(m_pPathEdit, ok ? VlColors::PathOk() : VlColors::PathBad());
    ShowOffer();
    return ok;
}

void VlCatPropsLabel::PathTextChangeSlot(const QString& text)
{
    if (m_pCategory)
        m_pCategory->SetPath(text);
    CheckCategoryDir();
}

void VlCatPropsLabel::ClickedChangeButtonSlot()
{
    if (!m_pCategory)
        return;
    QString start = m_pCategory->GetPath();
    if (start.isEmpty())
        start = QStringLiteral("/home");
    const QString dir = VlDirChooser::GetExistingDirectory(this, tr("Open Directory"), start);
    if (dir.isEmpty())
        return;
    m_pPathEdit->setText(dir);
    emit UpdatePath();
}

void VlCatPropsLabel::retranslate()
{
    if (!m_bCtrlsBuilt)
        return;
    m_pCaption->setText(tr("Category-Properties"));
    m_pHeaderName->setText(VlCatLabel::TranslatedName(m_strName));
    // A label with a layout keeps the size its own text asks for, not its layout's: the band is
    // made as high as its titles need in the language shown, and at least 26.
    const QMargins margins = m_pBand->layout()->contentsMargins();
    m_pBand->setMinimumHeight(qMax(26, qMax(m_pCaption->sizeHint().height(), m_pHeaderName->sizeHint().height()) +
                                           margins.top() + margins.bottom()));
    m_pNameCaption->setText(tr("Name:"));
    m_pName->setText(VlCatLabel::TranslatedName(m_strName));
    m_pPathCaption->setText(tr("Path:"));
    m_pPathCaption->setBuddy(m_pPathEdit);
    m_pChangeButton->setText(tr("Change"));
    m_pChangeButton->setAccessibleDescription(
        tr("Chooses the folder of %1.").arg(VlCatLabel::TranslatedName(m_strName)));
    ShowOffer();
    ShowExpiredCount();
}

void VlCatPropsLabel::SetOffers(const QMap<QString, QString>& offers)
{
    m_offers = offers;
    ShowOffer();
}

void VlCatPropsLabel::ShowOffer()
{
    if (!m_pOfferButton)
        return;
    const QString folder = m_offers.value(m_strName);
    // A folder the user gave meanwhile that works ends the offer.
    const bool show = CheckStdCategory() && !folder.isEmpty() && !m_pCategory->CheckPath();
    if (show) {
        // The whole folder in the tool tip; the caption keeps its start and end.
        const QString shown = m_pOfferButton->fontMetrics().elidedText(folder, Qt::ElideMiddle, 600);
        m_pOfferButton->setText(tr("Use %1").arg(shown));
        m_pOfferButton->setToolTip(folder);
    }
    if (show == m_pOfferButton->isVisibleTo(this))
        return;
    m_pOfferButton->setVisible(show);
    // The offer takes a row of its own; the panel grows by it rather than squeeze the rows.
    setMinimumHeight(show ? 110 + m_pOfferButton->sizeHint().height() + 6 : 110);
}

void VlCatPropsLabel::ClickedOfferButtonSlot()
{
    const QString folder = m_offers.value(m_strName);
    if (!CheckStdCategory() || folder.isEmpty())
        return;
    m_offers.remove(m_strName);
    // The same way as a folder chosen with "Change", so it is kept in the settings alike.
    m_pPathEdit->setText(folder);
    ShowOffer();
    emit UpdatePath();
}

void VlCatPropsLabel::SetDataModel(CDataModel* dataModel)
{
    m_pDataModel = dataModel;
    const int count = dataModel ? dataModel->GetProductListSize() : 0;
    for (int i = 0; i < count; ++i) {
        CProduct* product = dataModel->GetProductByIndex(i);
        // A run or a new folder changes the installed cycle, a tick what "Selected" holds.
        connect(product, &CProduct::SignalChangeInstallState, this, [this, product] {
            m_cycles.remove(product);
            RecountExpiredSoon();
        });
        connect(product, &CProduct::SignalUpdateChange, this, &VlCatPropsLabel::RecountExpiredSoon);
    }
    connect(this, &VlCatPropsLabel::UpdatePath, this, [this] {
        m_cycles.clear();
        RecountExpiredSoon();
    });
    // The first count reads every product's cycle; the window shows first.
    RecountExpiredSoon();
}

void VlCatPropsLabel::RecountExpiredSoon()
{
    if (m_bRecountPending)
        return;
    m_bRecountPending = true;
    // An install or a group's tick changes many products at once; one count afterwards is enough.
    QTimer::singleShot(0, this, [this] {
        m_bRecountPending = false;
        ShowExpiredCount();
    });
}

void VlCatPropsLabel::ShowExpiredCount()
{
    if (!m_pExpired || !m_pDataModel || CheckStdCategory())
        return;
    const bool selectedOnly = m_strName == QLatin1String("Selected");
    const QDate today = VlCycleDates::Today();
    CFolderCache::Scope folders;
    int expired = 0;
    for (int i = 0; i < m_pDataModel->GetProductListSize(); ++i) {
        CProduct* product = m_pDataModel->GetProductByIndex(i);
        if (!product || product->GetName().isEmpty() || (selectedOnly && !product->GetUpdate()))
            continue;
        auto known = m_cycles.find(product);
        if (known == m_cycles.end())
            known = m_cycles.insert(product, product->GetCycleVersion());
        if (CAiracCycle::DaysExpired(known.value(), today) >= 0)
            ++expired;
    }
    m_pExpired->setText(expired == 0 ? tr("No product runs an expired cycle.")
                                     : tr("%n product(s) run an expired cycle.", nullptr, expired));
    VlColors::SetTextColor(m_pExpired, expired == 0 ? QColor(60, 60, 70) : VlColors::Warning());
}

QString VlCatPropsLabel::GetExpiredText() const
{
    return m_pExpired && !m_pExpired->isHidden() ? m_pExpired->text() : QString();
}

void VlCatPropsLabel::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QLabel::changeEvent(event);
}
