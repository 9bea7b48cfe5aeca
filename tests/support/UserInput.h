#pragma once

#include <QString>

class QCheckBox;
class QWidget;

// What the UI tests do as a user does it.
namespace UserInput {

// A left click in the middle of a widget that is shown and enabled; the test fails otherwise.
void click(QWidget* widget);
// A click on a check box's box, not somewhere in its stretched row.
void tick(QCheckBox* box);
// The caption under one of the main window's action buttons.
QString caption(QWidget* actionButton);

} // namespace UserInput
