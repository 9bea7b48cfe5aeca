#pragma once

#include <QColor>
#include <QObject>

class QWidget;

// A flat background colour painted under a widget's own drawing. Style sheets would give the
// same look, but a style sheet on a panel makes Qt style every widget below it through the much
// slower style-sheet style, and the product panel holds thousands of them.
class VlBackground : public QObject
{
    Q_OBJECT

public:
    // Paints `color` under `widget` from now on; a second call changes the colour.
    static void Fill(QWidget* widget, const QColor& color);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    VlBackground(QWidget* widget, const QColor& color);

    QColor m_color;
};
