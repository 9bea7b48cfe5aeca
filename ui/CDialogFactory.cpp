#include "ui/CDialogFactory.h"

#include "ui/DlgHelp.h"
#include "ui/DlgRemoveBackup.h"
#include "ui/DlgResetDataset.h"
#include "ui/DlgVLSettings.h"
#include "ui/dlgUpdateDatasetVersion.h"
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
    case EDlgPurpose::UpdateDatasets: {
        auto* dialog = new dlgUpdateDatasetVersion(parent);
        dialog->Init(model, title);
        return dialog;
    }
    case EDlgPurpose::ResetDatasets: {
        auto* dialog = new DlgResetDataset(parent);
        dialog->Init(model, title);
        return dialog;
    }
    case EDlgPurpose::RemoveBackups: {
        auto* dialog = new DlgRemoveBackup(parent);
        dialog->Init(model, title);
        return dialog;
    }
    }
    return nullptr;
}
