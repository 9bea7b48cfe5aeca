#pragma once

#include "model/CDialogRoute.h"

// Builds the dialog for each purpose the program asks for; installed on the dialog route when
// the main window is built.
class CDialogFactory
{
public:
    static void Install();
    static QDialog* Build(EDlgPurpose purpose, CDataModel* model, const QString& title, QWidget* parent);
};
