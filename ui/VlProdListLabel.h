#pragma once

#include "app/VlAtom.h"

#include <QLabel>
#include <QList>
#include <QString>
#include <QVector>

class CCategory;
class CDataModel;
class CProduct;
class QScrollArea;
class VlProdLabel;

// The scrolling list of product cards, filtered by category and dataset.
//
// A catalogue may hold thousands of products and a card is some thirty widgets, so a card is built
// only when its place first scrolls into view (or when someone asks for all cards); the places of
// the cards not built yet are reserved with the height of those that are.
class VlProdListLabel : public QLabel, public VlAtom
{
    Q_OBJECT

public:
    VlProdListLabel(QWidget* parent, CDataModel* dataModel);

    void Init();
    void UpdateVisibleCtrls();
    void UpdateMainWnd();
    void UpdateProdSizes();

    // Every card, in catalogue order; builds the ones not built yet.
    QList<VlProdLabel*> GetCards();
    int GetBuiltCardCount() const;
    QScrollArea* GetScrollArea() const { return m_pScrollArea; }
    QString GetCategoryName() const { return m_strCategory; }
    QString GetDatasetFilter() const { return m_strDataset; }

public slots:
    void ChangeCategorySlot(CCategory* category);
    void ChangeCategoryNameSlot(const QString& name);
    void ChangeDatasetFilterSlot(const QString& dataset);
    void UpdatePathSlot();

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Entry
    {
        CProduct* product = nullptr;
        VlProdLabel* card = nullptr;
        bool passes = true; // passes the category and dataset filter
        int top = 0;
        int height = 0;
    };

    bool Passes(const CProduct* product) const;
    VlProdLabel* BuildCard(Entry& entry);
    int CardHeight(VlProdLabel* card) const;
    void PlaceCards();
    void BuildCardsInView();
    void RequestPlaceCards();

    CDataModel* m_pDataModel = nullptr;
    QLabel* m_pContent = nullptr;
    QScrollArea* m_pScrollArea = nullptr;
    QVector<Entry> m_entries;
    QString m_strCategory = QStringLiteral("All");
    QString m_strDataset = QStringLiteral("All");
    int m_iEstimate = 0; // height reserved for a card not built yet
    bool m_bPlacePending = false;
    bool m_bPlacing = false;
};
