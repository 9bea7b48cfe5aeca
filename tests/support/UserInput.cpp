#include "support/UserInput.h"

#include "ui/CvlActionBtn.h"

#include <QCheckBox>
#include <QTest>

namespace UserInput {

void click(QWidget* widget)
{
    QVERIFY2(widget->isVisible() && widget->isEnabled(), widget->metaObject()->className());
    QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, widget->rect().center());
}

void tick(QCheckBox* box)
{
    QVERIFY(box->isEnabled());
    QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(8, box->height() / 2));
}

QString caption(QWidget* actionButton)
{
    return static_cast<CvlActionBtn*>(actionButton)->GetCaption();
}

} // namespace UserInput
