#pragma once

#include "app/VlAtom.h"

#include <QLabel>
#include <QString>

class CCategory;
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

signals:
    void UpdatePath();

public slots:
    void ChangeSelectedCategorySlot(CCategory* category);
    void PathTextChangeSlot(const QString& text);
    void ClickedChangeButtonSlot();
    void retranslate() override;

protected:
    void changeEvent(QEvent* event) override;

private:
    QLabel* m_pBand = nullptr;
    void InitCtrls();

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
};
