#include "support/LayoutCheck.h"

#include <QAbstractButton>
#include <QLabel>

QStringList LayoutCheck::CutTexts(const QWidget* root)
{
    QStringList cut;
    const auto report = [&](const QWidget* w, const QString& text, const QSize& needed) {
        cut << QStringLiteral("%1 \"%2\" is %3x%4, needs %5x%6")
                   .arg(QString::fromLatin1(w->metaObject()->className()), text.left(40))
                   .arg(w->width())
                   .arg(w->height())
                   .arg(needed.width())
                   .arg(needed.height());
    };
    for (const QLabel* label : root->findChildren<QLabel*>()) {
        if (!label->isVisibleTo(root) || label->text().isEmpty() ||
            label->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored)
            continue;
        if (label->wordWrap()) {
            const int needed = label->heightForWidth(label->width());
            if (label->height() < needed)
                report(label, label->text(), QSize(label->width(), needed));
        } else if (label->width() < label->sizeHint().width() || label->height() < label->sizeHint().height()) {
            report(label, label->text(), label->sizeHint());
        }
    }
    for (const QAbstractButton* button : root->findChildren<QAbstractButton*>())
        if (button->isVisibleTo(root) && !button->text().isEmpty() && button->width() < button->sizeHint().width())
            report(button, button->text(), button->sizeHint());
    return cut;
}
