#include "ui/VlBigComboBox.h"

#include "ui/VlComboBox.h"
#include "ui/VlFonts.h"

namespace {
const char* const kStyle = R"(
QComboBox {
    color: rgb(35, 35, 45);
    background: qlineargradient(x1: 0, y1: 0, x2: 0, y2: 1, stop: 0 rgb(255, 255, 255), stop: 1 rgb(228, 228, 238));
    border: 1px solid rgb(140, 140, 150);
    border-radius: 4px;
    padding: 3px 8px;
    min-height: 22px;
}
QComboBox:hover, QComboBox:focus { border-color: rgb(70, 110, 165); }
QComboBox:disabled { color: rgb(150, 150, 158); background: rgb(226, 226, 232); }
QComboBox::drop-down { border: none; width: 22px; }
)";
} // namespace

VlBigComboBox::VlBigComboBox(QWidget* parent) : QComboBox(parent)
{
    setFont(VlFonts::Relative(1));
    setStyleSheet(QLatin1String(kStyle));
    VlComboBox::StylePopup(this);
}
