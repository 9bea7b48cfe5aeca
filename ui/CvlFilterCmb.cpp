#include "ui/CvlFilterCmb.h"

#include "model/CDataModel.h"
#include "model/CDataset.h"
#include "model/CDatasetList.h"

#include <QEvent>

CvlFilterCmb::CvlFilterCmb(QWidget* parent, CDataModel* dataModel) : VlComboBox(parent), m_pDataModel(dataModel) {}

void CvlFilterCmb::Init()
{
    clear();
    addItem(tr("All"));
    if (m_pDataModel) {
        CDatasetList* datasets = m_pDataModel->GetDatasetList();
        for (int i = 0; i < datasets->GetSize(); ++i)
            addItem(datasets->GetByIndex(i)->GetName());
    }
    setCurrentIndex(0);
    // Dataset names are short enough to show whole; the window finds room for the box.
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &CvlFilterCmb::currentIndexChangedSlot,
            Qt::UniqueConnection);
}

void CvlFilterCmb::currentIndexChangedSlot(int index)
{
    // The filter value stays "All" whatever the interface language shows.
    emit ChangeDataset(index == 0 ? QStringLiteral("All") : itemText(index));
}

void CvlFilterCmb::retranslate()
{
    if (count() > 0)
        setItemText(0, tr("All"));
}

void CvlFilterCmb::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    VlComboBox::changeEvent(event);
}
