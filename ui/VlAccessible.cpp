#include "ui/VlAccessible.h"

#include "ui/CvlActionBtn.h"
#include "ui/SystemButton.h"
#include "ui/VlCatLabel.h"

#include <QAccessibleWidget>

namespace {
class ImageButtonInterface : public QAccessibleWidget
{
public:
    explicit ImageButtonInterface(QWidget* widget) : QAccessibleWidget(widget, QAccessible::Button) {}

    QStringList actionNames() const override
    {
        return QStringList{pressAction()} + QAccessibleWidget::actionNames();
    }

    void doAction(const QString& name) override
    {
        if (name == pressAction() && widget()->isEnabled())
            QMetaObject::invokeMethod(widget(), "clicked");
        else
            QAccessibleWidget::doAction(name);
    }

    QAccessible::State state() const override
    {
        QAccessible::State s = QAccessibleWidget::state();
        // A category button stays pressed while its category is shown.
        if (auto* category = qobject_cast<VlCatLabel*>(widget())) {
            s.checkable = true;
            s.checked = category->IsSelected();
        }
        return s;
    }
};

QAccessibleInterface* factory(const QString&, QObject* object)
{
    if (qobject_cast<SystemButton*>(object) || qobject_cast<CvlActionBtn*>(object) ||
        qobject_cast<VlCatLabel*>(object))
        return new ImageButtonInterface(static_cast<QWidget*>(object));
    return nullptr;
}
} // namespace

void VlAccessible::Install()
{
    static bool st_installed = false;
    if (st_installed)
        return;
    st_installed = true;
    QAccessible::installFactory(factory);
}
