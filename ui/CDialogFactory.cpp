#include "ui/CDialogFactory.h"

#include "ui/DlgHelp.h"
#include "ui/DlgVLSettings.h"
#include "ui/dlgUpdateDatasetVersion.h"

void CDialogFactory::Install()
{
    CDialogRoute::SetBuilder(&CDialogFactory::Build);
}

QDialog* CDialogFactory::Build(EDlgPurpose purpose, CDataModel* model, const QString& title, QWidget* parent)
{
    switch (purpose) {
    case EDlgPurpose::Settings: {
        auto* dialog = new DlgVLSettings(parent);
        dialog->Init(model, title);
        return dialog;
    }
    case EDlgPurpose::Help: {
        auto* dialog = new DlgHelp(parent);
        dialog->Init(model, title);
        return dialog;
    }
    case EDlgPurpose::UpdateDatasets: {
        auto* dialog = new dlgUpdateDatasetVersion(parent);
        dialog->Init(model, title);
        return dialog;
    }
    case EDlgPurpose::ResetDatasets:
    case EDlgPurpose::RemoveBackups:
    case EDlgPurpose::UpdateQuillmark:
        break;
    }
    return nullptr;
}
