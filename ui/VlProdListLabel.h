#pragma once

#include "app/VlAtom.h"

#include <QLabel>
#include <QList>
#include <QString>

class CCategory;
class CDataModel;
class QGridLayout;
class QScrollArea;
class VlProdLabel;

// The scrolling list of product cards, filtered by category and dataset.
class VlProdListLabel : public QLabel, public VlAtom
{
    Q_OBJECT

public:
    VlProdListLabel(QWidget* parent, CDataModel* dataModel);

    void Init();
    void UpdateVisibleCtrls();
    void UpdateMainWnd();
    void UpdateProdSizes();

    const QList<VlProdLabel*>& GetCards() const { return m_cards; }
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
    CDataModel* m_pDataModel = nullptr;
    QGridLayout* m_pGrid = nullptr;
    QLabel* m_pContent = nullptr;
    QScrollArea* m_pScrollArea = nullptr;
    QList<VlProdLabel*> m_cards;
    QString m_strCategory = QStringLiteral("All");
    QString m_strDataset = QStringLiteral("All");
    bool m_bMainWndPending = false;
};
