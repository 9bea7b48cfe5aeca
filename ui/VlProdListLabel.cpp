#include "ui/VlProdListLabel.h"

#include "model/CCategory.h"
#include "model/CDataModel.h"
#include "model/CProduct.h"
#include "ui/VlBackground.h"
#include "ui/VlProdLabel.h"

#include <QEvent>
#include <QGridLayout>
#include <QResizeEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>

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
    auto* grid = new QGridLayout;
    grid->setSpacing(0);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setColumnStretch(0, 1);

    // The scroll area takes the content before the cards exist: moving a content with hundreds of
    // cards into it afterwards would re-style every one of them.
    m_pScrollArea = new QScrollArea(this);
    m_pScrollArea->setWidgetResizable(true);
    // Cards always take the visible width, so there is nothing to scroll sideways.
    m_pScrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pContent = new QLabel;
    m_pScrollArea->setWidget(m_pContent);
    VlBackground::Fill(m_pContent, QColor(240, 240, 250));
    const int count = m_pDataModel ? m_pDataModel->GetProductListSize() : 0;
    for (int i = 0; i < count; ++i) {
        CProduct* product = m_pDataModel->GetProductByIndex(i);
        if (!product || product->GetName().isEmpty())
            continue;
        auto* card = new VlProdLabel(m_pContent, m_pDataModel, product);
        grid->setRowStretch(i, 0);
        grid->addWidget(card, i, 0, Qt::AlignLeft | Qt::AlignTop);
        m_cards.append(card);
        card->installEventFilter(this); // a card grows when its commands open
        // The cards appear with the list; shown one by one each would lay itself out twice.
    }
    grid->addWidget(new QWidget(m_pContent), grid->rowCount() + 1, 0);
    grid->setRowStretch(grid->rowCount() - 1, 1);
    m_pContent->setLayout(grid);
    m_pGrid = grid;

    // The vertical scroll bar comes and goes with the filter, changing the width the cards get.
    m_pScrollArea->viewport()->installEventFilter(this);
    auto* own = new QGridLayout(this);
    own->setSpacing(0);
    own->setContentsMargins(0, 0, 0, 0);
    own->addWidget(m_pScrollArea, 0, 0);
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
    for (VlProdLabel* card : qAsConst(m_cards))
        card->UpdatePath();
}

void VlProdListLabel::UpdateVisibleCtrls()
{
    // Each card shown would lay out the whole list again; one layout pass at the end is enough.
    if (m_pGrid)
        m_pGrid->setEnabled(false);
    for (VlProdLabel* card : qAsConst(m_cards)) {
        CProduct* product = card->GetProduct();
        if (!product)
            continue;
        bool category = false;
        if (m_strCategory == QLatin1String("All"))
            category = true;
        else if (m_strCategory == QLatin1String("Selected"))
            category = product->GetUpdate();
        else
            category = product->GetCategoryName() == m_strCategory;
        const bool dataset = m_strDataset == QLatin1String("All") || product->GetDataset() == m_strDataset;
        const bool visible = category && dataset;
        if (card->GetVisible() != visible || card->isHidden() == visible)
            card->setVisible(visible);
    }
    if (m_pGrid) {
        m_pGrid->setEnabled(true);
        m_pGrid->activate();
    }
    // Cards that were hidden missed the width changes meanwhile.
    UpdateProdSizes();
    UpdateMainWnd();
}

void VlProdListLabel::UpdateMainWnd()
{
    if (!m_pContent)
        return;
    int sum = 0;
    for (VlProdLabel* card : qAsConst(m_cards))
        if (card->GetVisible())
            sum += qMax(card->height(), card->sizeHint().height());
    m_pContent->setMinimumHeight(qMax(sum, 1));
    m_pContent->resize(m_pContent->width(), qMax(sum, 1));
    m_pContent->update();
}

void VlProdListLabel::UpdateProdSizes()
{
    if (!m_pScrollArea)
        return;
    // The viewport, not the content: the content cannot get narrower than the cards it holds.
    const int w = m_pScrollArea->viewport()->width();
    for (VlProdLabel* card : qAsConst(m_cards)) {
        if (!card->GetVisible())
            continue;
        card->setMinimumWidth(w);
        card->SetAssignedWidth(w);
        card->resize(w, card->height());
    }
}

bool VlProdListLabel::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize) {
        if (m_pScrollArea && watched == m_pScrollArea->viewport()) {
            UpdateProdSizes();
        } else if (watched->parent() == m_pContent) {
            auto* resize = static_cast<QResizeEvent*>(event);
            // Many cards resize at once; one sum afterwards is enough.
            if (resize->oldSize().height() != resize->size().height() && !m_bMainWndPending) {
                m_bMainWndPending = true;
                QTimer::singleShot(0, this, [this] {
                    m_bMainWndPending = false;
                    UpdateMainWnd();
                });
            }
        }
    }
    return QLabel::eventFilter(watched, event);
}

void VlProdListLabel::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    UpdateProdSizes();
}
