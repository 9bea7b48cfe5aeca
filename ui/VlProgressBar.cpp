#include "ui/VlProgressBar.h"

#include "ui/VlColors.h"

VlProgressBar::VlProgressBar(QWidget* parent) : QProgressBar(parent)
{
    // Disabled it would turn grey on grey; it keeps its colours and only the dialog's state says
    // whether it runs.
    setStyleSheet(QStringLiteral("QProgressBar, QProgressBar:disabled { border: 2px solid grey; border-radius: 5px; "
                                 "text-align: center; background: %1; color: %2; }"
                                 "QProgressBar::chunk, QProgressBar::chunk:disabled { background: %3; "
                                 "border-radius: 3px; }")
                      .arg(VlColors::PopupBackground().name(), VlColors::PopupText().name(),
                           VlColors::ProgressChunk().name()));
    setRange(0, 100);
    setValue(0);
    setTextVisible(false);
    setAccessibleName(tr("Progress"));
}
