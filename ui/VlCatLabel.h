#pragma once

#include "app/VlAtom.h"

#include <QString>
#include <QWidget>

class CCategory;
class CDataModel;
class QGridLayout;
class QLabel;
class VlCategoryTitleLabel;

// Selectable category button of the left column: a large icon when selected, a small indented
// one otherwise.
class VlCatLabel : public QWidget, public VlAtom
{
    Q_OBJECT

public:
    VlCatLabel(QWidget* parent, CDataModel* dataModel);

    void Init(const QString& image32, const QString& image48, const QString& name);
    void SetSelect(bool selected);
    bool IsSelected() const { return m_bSelected; }
    CCategory* GetCategory() const { return m_pCategory; }
    QString GetName() const { return m_strName; }
    QString GetTitle() const;

    // Category names are shown translated; one context for all of them so they are translated once.
    static QString TranslatedName(const QString& name);
    // Separator lines are painted solid with a dark outline.
    static void PaintLineLabel(QLabel* label);

signals:
    void clicked();

public slots:
    void clickedSlot();
    void retranslate() override;

protected:
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    Qt::FocusReason m_focusReason = Qt::OtherFocusReason;
    void InitCtrls(const QString& image32, const QString& image48);
    void ShowEnabled();

    CDataModel* m_pDataModel = nullptr;
    QString m_strName;
    CCategory* m_pCategory = nullptr;
    QGridLayout* m_pGrid = nullptr;
    QLabel* m_pImage32 = nullptr;
    QLabel* m_pImage48 = nullptr;
    VlCategoryTitleLabel* m_pTitle = nullptr;
    QLabel* m_pLineTop = nullptr;
    QLabel* m_pLineBottom = nullptr;
    bool m_bSelected = false;
};
