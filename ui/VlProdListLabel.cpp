#include "ui/VlProdListLabel.h"

#include "model/CCategory.h"
#include "model/CDataModel.h"
#include "model/CFolderCache.h"
#include "model/CProduct.h"
#include "ui/VlBackground.h"
#include "ui/VlProdLabel.h"

#include <QEvent>
#include <QGridLayout>
#include <QResizeEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>

namespace {
const int st_minCardHeight = 120;
} // namespace

VlProdListLabel::VlProdListLabel(QWidget* parent, CDataModel* dataModel) : QLabel(parent), m_pDataModel(dataModel)
{
    Init();
    m_strCategory = QStringLiteral("All");
    m_strDataset = QStringLiteral("All");
    UpdateMainWnd();
}

void VlProdListLabel::Init()
{
    VlBackground::Fill(this, QColor(195, 195, 205));
    m_pScrollArea = new QScrollArea(this);
    m_pScrollArea->setWidgetResizable(true);
    // Cards always take the visible width, so there is nothing to scroll sideways.
    m_pScrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pContent = new QLabel;
    m_pScrollArea->setWidget(m_pContent);
    VlBackground::Fill(m_pContent, QColor(240, 240, 250));

    const int count = m_pDataModel ? m_pDataModel->GetProductListSize() : 0;
    m_entries.reserve(count);
    for (int i = 0; i < count; ++i) {
        CProduct* product = m_pDataModel->GetProductByIndex(i);
        if (!product || product->GetName().isEmpty())
            continue; // a product without a name gets no card
        Entry entry;
        entry.product = product;
        m_entries.append(entry);
    }

    // The vertical scroll bar comes and goes with the filter, changing the width the cards get.
    m_pScrollArea->viewport()->installEventFilter(this);
    connect(m_pScrollArea->verticalScrollBar(), &QScrollBar::valueChanged, this, &VlProdListLabel::BuildCardsInView);
    auto* own = new QGridLayout(this);
    own->setSpacing(0);
    own->setContentsMargins(0, 0, 0, 0);
    own->addWidget(m_pScrollArea, 0, 0);
}

QList<VlProdLabel*> VlProdListLabel::GetCards()
{
    // Each card reads its folders and cycle files; the simulator folders are looked at once.
    CFolderCache::Scope folders;
    QList<VlProdLabel*> cards;
    bool built = false;
    for (Entry& entry : m_entries) {
        if (!entry.card) {
            BuildCard(entry);
            built = true;
        }
        cards.append(entry.card);
    }
    if (built)
        PlaceCards();
    return cards;
}

int VlProdListLabel::GetBuiltCardCount() const
{
    int count = 0;
    for (const Entry& entry : m_entries)
        count += entry.card ? 1 : 0;
    return count;
}

VlProdLabel* VlProdListLabel::BuildCard(Entry& entry)
{
    const int w = m_pScrollArea->viewport()->width();
    auto* card = new VlProdLabel(m_pContent, m_pDataModel, entry.product, w);
    card->SetAssignedWidth(w);
    card->setMinimumWidth(w);
    card->resize(w, st_minCardHeight);
    card->ensurePolished();
    card->installEventFilter(this); // a card grows when its commands open
    card->setVisible(entry.passes);
    entry.card = card;
    entry.height = CardHeight(card);
    if (m_iEstimate == 0)
        m_iEstimate = entry.height;
    return card;
}

int VlProdListLabel::CardHeight(VlProdLabel* card) const
{
    return qMax(st_minCardHeight, card->sizeHint().height());
}

void VlProdListLabel::ChangeCategorySlot(CCategory* category)
{
    m_strCategory = category ? category->GetName() : QString();
    UpdateVisibleCtrls();
}

void VlProdListLabel::ChangeCategoryNameSlot(const QString& name)
{
    m_strCategory = name;
    UpdateVisibleCtrls();
}

void VlProdListLabel::ChangeDatasetFilterSlot(const QString& dataset)
{
    m_strDataset = dataset;
    UpdateVisibleCtrls();
}

void VlProdListLabel::UpdatePathSlot()
{
    // Cards not built yet read the path when they are.
    for (const Entry& entry : qAsConst(m_entries))
        if (entry.card)
            entry.card->UpdatePath();
}

bool VlProdListLabel::Passes(const CProduct* product) const
{
    bool category = false;
    if (m_strCategory == QLatin1String("All"))
        category = true;
    else if (m_strCategory == QLatin1String("Selected"))
        category = product->GetUpdate();
    else
        category = product->GetCategoryName() == m_strCategory;
    return category && (m_strDataset == QLatin1String("All") || product->GetDataset() == m_strDataset);
}

void VlProdListLabel::UpdateVisibleCtrls()
{
    for (Entry& entry : m_entries) {
        entry.passes = Passes(entry.product);
        VlProdLabel* card = entry.card;
        if (card && (card->GetVisible() != entry.passes || card->isHidden() == entry.passes))
            card->setVisible(entry.passes);
    }
    // Cards that were hidden missed the width changes meanwhile.
    UpdateProdSizes();
    UpdateMainWnd();
    // A new filter starts at the top of its list.
    m_pScrollArea->verticalScrollBar()->setValue(0);
}

void VlProdListLabel::UpdateMainWnd()
{
    PlaceCards();
}

void VlProdListLabel::PlaceCards()
{
    if (!m_pContent || m_bPlacing)
        return;
    m_bPlacing = true;
    const int w = m_pScrollArea->viewport()->width();
    const int estimate = m_iEstimate > 0 ? m_iEstimate : st_minCardHeight;
    int top = 0;
    for (Entry& entry : m_entries) {
        if (!entry.passes)
            continue;
        entry.top = top;
        if (entry.card)
            entry.height = CardHeight(entry.card);
        top += entry.card ? entry.height : estimate;
    }
    const int sum = qMax(top, 1);
    m_pContent->setMinimumHeight(sum);
    m_pContent->resize(m_pContent->width(), qMax(sum, m_pScrollArea->viewport()->height()));
    for (const Entry& entry : qAsConst(m_entries)) {
        if (!entry.card || !entry.passes)
            continue;
        const QRect place(0, entry.top, w, entry.height);
        if (entry.card->geometry() != place)
            entry.card->setGeometry(place);
    }
    m_bPlacing = false;
    BuildCardsInView();
}

void VlProdListLabel::BuildCardsInView()
{
    if (m_bPlacing || m_entries.isEmpty())
        return;
    // The visible part and one screen below it, so that scrolling down finds its cards ready.
    const int from = m_pScrollArea->verticalScrollBar()->value();
    const int to = from + 2 * qMax(m_pScrollArea->viewport()->height(), 1);
    const int estimate = m_iEstimate > 0 ? m_iEstimate : st_minCardHeight;
    CFolderCache::Scope folders;
    bool built = false;
    for (Entry& entry : m_entries) {
        if (!entry.passes)
            continue;
        const int height = entry.card ? entry.height : estimate;
        if (entry.top + height < from)
            continue;
        if (entry.top > to)
            break;
        if (!entry.card) {
            BuildCard(entry);
            built = true;
        }
    }
    if (built)
        PlaceCards();
}

void VlProdListLabel::RequestPlaceCards()
{
    if (m_bPlacePending)
        return;
    m_bPlacePending = true;
    // Many cards change at once; one placing afterwards is enough.
    QTimer::singleShot(0, this, [this] {
        m_bPlacePending = false;
        PlaceCards();
    });
}

void VlProdListLabel::UpdateProdSizes()
{
    if (!m_pScrollArea)
        return;
    // The viewport, not the content: the content cannot get narrower than the cards it holds.
    const int w = m_pScrollArea->viewport()->width();
    for (const Entry& entry : qAsConst(m_entries)) {
        VlProdLabel* card = entry.card;
        if (!card || !card->GetVisible())
            continue;
        card->setMinimumWidth(w);
        card->SetAssignedWidth(w);
        card->resize(w, card->height());
    }
    RequestPlaceCards();
}

bool VlProdListLabel::eventFilter(QObject* watched, QEvent* event)
{
    if (m_pScrollArea && watched == m_pScrollArea->viewport()) {
        if (event->type() == QEvent::Resize)
            UpdateProdSizes();
    } else if (watched->parent() == m_pContent) {
        // A card whose contents changed (commands opened, texts wrapped) may need another height.
        if (event->type() == QEvent::LayoutRequest)
            RequestPlaceCards();
        else if (event->type() == QEvent::Resize) {
            auto* resize = static_cast<QResizeEvent*>(event);
            if (resize->oldSize().height() != resize->size().height())
                RequestPlaceCards();
        }
    }
    return QLabel::eventFilter(watched, event);
}

void VlProdListLabel::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    UpdateProdSizes();
}
