#pragma once

#include "app/VlAtom.h"

#include <QHash>
#include <QLabel>
#include <QMap>
#include <QString>

class CCategory;
class CDataModel;
class CProduct;
class VlAppPushButton;
class VlDefaultEdit;
class VlDefaultLabel;
class VlCategoryTitleLabel;

// Panel under the product list: the selected category and, for a real simulator category, its
// folder with a chooser.
class VlCatPropsLabel : public QLabel, public VlAtom
{
    Q_OBJECT

public:
    VlCatPropsLabel(QWidget* parent, CCategory* category);

    void Init();
    void UpdateCategory(CCategory* category);
    // For "All" and "Selected" when the catalogue lists no such category: the name alone.
    void SetCategoryName(const QString& name);
    QString GetShownName() const;
    bool CheckStdCategory() const;
    bool CheckCategoryDir();
    CCategory* GetCategory() const { return m_pCategory; }

    // The products whose cycles "All" and "Selected" count.
    void SetDataModel(CDataModel* dataModel);
    // What "All" or "Selected" says about expired cycles; empty for a simulator category.
    QString GetExpiredText() const;

    // Simulator folders found for categories whose own folder fails their check, by category name.
    // Each is offered in its category's band until the user takes it or gives a working folder.
    void SetOffers(const QMap<QString, QString>& offers);
    QString GetOffer(const QString& categoryName) const { return m_offers.value(categoryName); }
    // The offer's button; visible while the selected category has an offer.
    VlAppPushButton* GetOfferButton() const { return m_pOfferButton; }

signals:
    void UpdatePath();

public slots:
    void ChangeSelectedCategorySlot(CCategory* category);
    void PathTextChangeSlot(const QString& text);
    void ClickedChangeButtonSlot();
    void ClickedOfferButtonSlot();
    // Counts the expired cycles again, once the events of the moment are through.
    void RecountExpiredSoon();
    void retranslate() override;

protected:
    void changeEvent(QEvent* event) override;

private:
    QLabel* m_pBand = nullptr;
    void InitCtrls();
    void ShowOffer();
    void ShowExpiredCount();

    CCategory* m_pCategory = nullptr;
    QString m_strName;
    bool m_bCtrlsBuilt = false;
    VlCategoryTitleLabel* m_pCaption = nullptr;
    VlCategoryTitleLabel* m_pHeaderName = nullptr;
    VlDefaultLabel* m_pNameCaption = nullptr;
    VlDefaultLabel* m_pName = nullptr;
    VlDefaultLabel* m_pPathCaption = nullptr;
    VlDefaultEdit* m_pPathEdit = nullptr;
    VlAppPushButton* m_pChangeButton = nullptr;
    VlAppPushButton* m_pOfferButton = nullptr;
    VlDefaultLabel* m_pExpired = nullptr;
    CDataModel* m_pDataModel = nullptr;
    QMap<QString, QString> m_offers;
    // Installed cycles as last read; reading means resolving folders, too slow for every click.
    QHash<const CProduct*, QString> m_cycles;
    bool m_bRecountPending = false;
};
