#include "ui/CDialogFactory.h"

#include "ui/DlgHelp.h"
#include "ui/DlgVLSettings.h"
#include "ui/dlgUpdateQMKVersion.h"

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
    case EDlgPurpose::UpdateQuillmark: {
        auto* dialog = new dlgUpdateQMKVersion(parent);
        dialog->Init(model, title);
        return dialog;
    }
    case EDlgPurpose::UpdateDatasets:
    case EDlgPurpose::ResetDatasets:
    case EDlgPurpose::RemoveBackups:
        break;
    }
    return nullptr;
}
