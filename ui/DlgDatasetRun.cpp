#include "ui/DlgDatasetRun.h"

#include "engine/CDSVersion.h"
#include "model/CDataModel.h"
#include "model/CProduct.h"
#include "ui/VlColors.h"
#include "ui/VlFoldPane.h"
#include "ui/VlFonts.h"
#include "ui/VlLineCtrl.h"
#include "ui/VlMessageLabel.h"
#include "ui/VlProgressBar.h"
#include "ui/VlPushButton.h"

#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>

DlgDatasetRun::DlgDatasetRun(QWidget* parent) : DlgBase(parent) {}

void DlgDatasetRun::InitRun()
{
    if (CDataModel* model = GetDataModel())
        m_pDSVersion = model->GetDSVersion();
    if (m_pDSVersion)
        m_pDSVersion->ResetResult();
}

int DlgDatasetRun::NextRow() const
{
    return GetContentLayout()->rowCount();
}

void DlgDatasetRun::FitHeight(int preferred)
{
    int needed = preferred;
    if (QLayout* rows = layout()) {
        const int w = qMax(width(), rows->totalMinimumSize().width());
        needed = (rows->hasHeightForWidth() ? rows->totalHeightForWidth(w) : rows->totalMinimumSize().height()) + 20;
    }
    resize(width(), qMax(preferred, needed));
}

void DlgDatasetRun::AddProductRow()
{
    m_pProductsTitle = new QLabel(this);
    VlColors::SetTextColor(m_pProductsTitle, VlColors::DialogText());
    m_pProductsPane = new VlFoldPane(this);
    m_pProductsPane->SetIcons(QStringLiteral(":/images/unten.png"), QStringLiteral(":/images/oben.png"));
    m_pProductsPane->SetMinimumButtonWidth(115);
    connect(m_pProductsPane, &VlFoldPane::SignalOpening, this,
            [this] { m_pProductsPane->SetText(ProductSelectText()); });

    auto* row = new QGridLayout;
    row->setContentsMargins(0, 0, 4, 5);
    row->setColumnStretch(0, 1);
    row->addWidget(m_pProductsTitle, 0, 0);
    row->addWidget(m_pProductsPane->GetShowButton(), 0, 1);
    row->addWidget(m_pProductsPane->GetHideButton(), 0, 1);
    row->addWidget(m_pProductsPane->GetPane(), 1, 0, 1, 2);
    GetContentLayout()->addLayout(row, NextRow(), 0);
}

void DlgDatasetRun::AddSeparator()
{
    GetContentLayout()->addWidget(new VlLineCtrl(this), NextRow(), 0);
}

void DlgDatasetRun::AddWarningBox(QWidget* extra)
{
    m_pAttention = new QLabel(this);
    m_pAttention->setFont(VlFonts::Relative(0, QFont::Bold));
    VlColors::SetTextColor(m_pAttention, VlColors::ErrorText());
    m_pWarning = new QLabel(this);
    m_pWarning->setWordWrap(true);
    VlColors::SetTextColor(m_pWarning, VlColors::DialogText());

    auto* box = new QGridLayout;
    box->setContentsMargins(5, 0, 15, 0);
    box->addWidget(m_pAttention, 0, 0);
    box->addWidget(m_pWarning, 1, 0);
    if (extra) {
        auto* extraRow = new QGridLayout;
        extraRow->setContentsMargins(0, 10, 0, 10);
        extraRow->addWidget(extra, 0, 0);
        box->addLayout(extraRow, 2, 0);
    }
    GetContentLayout()->addLayout(box, NextRow(), 0);
}

void DlgDatasetRun::AddMessageRow()
{
    m_pMessage = new VlMessageLabel(this);
    m_pMessage->setWordWrap(true);
    m_pReason = new VlMessageLabel(this);
    m_pReason->setWordWrap(true);
    m_pReason->SetError(true);
    m_pReason->hide();
    auto* row = new QGridLayout;
    row->setContentsMargins(5, 10, 5, 0);
    row->addWidget(m_pMessage, 0, 0);
    row->addWidget(m_pReason, 1, 0);
    GetContentLayout()->addLayout(row, NextRow(), 0);
}

void DlgDatasetRun::AddProgressRow()
{
    m_pProgress = new VlProgressBar(this);
    m_pProgress->setEnabled(false);
    m_pProgress->setMinimumHeight(16);

    m_pResultPane = new VlFoldPane(this);
    m_pResultPane->SetMinimumButtonWidth(90);
    connect(m_pResultPane, &VlFoldPane::SignalOpening, this, [this] { m_pResultPane->SetText(m_strResult); });
    m_pResultPane->GetHideButton()->setEnabled(false);

    auto* row = new QGridLayout;
    row->setContentsMargins(0, 5, 4, 0);
    row->setRowMinimumHeight(0, 20);
    row->setColumnStretch(0, 1);
    row->addWidget(m_pProgress, 0, 0);
    row->addWidget(m_pResultPane->GetShowButton(), 0, 1);
    row->addWidget(m_pResultPane->GetHideButton(), 0, 1);
    GetContentLayout()->addLayout(row, NextRow(), 0);

    auto* pane = new QGridLayout;
    pane->setContentsMargins(5, 0, 5, 0);
    pane->addWidget(m_pResultPane->GetPane(), 0, 0);
    GetContentLayout()->addLayout(pane, NextRow(), 0);
}

void DlgDatasetRun::AddButtonCell(VlPushButton* first, VlPushButton* second, VlPushButton* third)
{
    auto* cell = new QGridLayout;
    cell->setColumnStretch(0, 1);
    cell->addWidget(first, 0, 1);
    if (second)
        cell->addWidget(second, 0, 1);
    if (third)
        cell->addWidget(third, 0, 1);
    GetContentLayout()->addLayout(cell, NextRow(), 0);
    // The panes grow the dialog; the rows above keep their place.
    GetContentLayout()->setRowStretch(NextRow(), 1);
}

void DlgDatasetRun::SetStepButton(VlPushButton* step, bool focus)
{
    if (!step)
        step = GetOkButton();
    for (VlPushButton* button : findChildren<VlPushButton*>()) {
        button->setAutoDefault(false);
        button->setDefault(button == step);
    }
    if (focus && step->isVisibleTo(this) && step->isEnabled())
        step->setFocus(Qt::OtherFocusReason);
}

void DlgDatasetRun::retranslate()
{
    DlgBase::retranslate();
    if (!m_pProductsPane)
        return; // before Init
    m_pProductsTitle->setText(tr("Products:"));
    m_pProductsPane->SetCaptions(tr("Show Product-Select-List"), tr("Hide Product-Select-List"));
    m_pResultPane->SetCaptions(tr("Result"), tr("Result"));
    if (m_pAttention) {
        m_pAttention->setText(tr("Attention:"));
        m_pWarning->setText(WarningText());
    }
}

QList<CProduct*> DlgDatasetRun::ProductsToRun() const
{
    // A run from one product's card serves that product only.
    if (m_pDSVersion && m_pDSVersion->GetSingleProduct())
        return {m_pDSVersion->GetSingleProduct()};
    QList<CProduct*> products;
    if (CDataModel* model = GetDataModel())
        for (int i = 0; i < model->GetProductListSize(); ++i)
            if (CProduct* product = model->GetProductByIndex(i); product && product->GetUpdate())
                products << product;
    return products;
}

QString DlgDatasetRun::ProductSelectText() const
{
    QString text;
    for (CProduct* product : ProductsToRun())
        text += QStringLiteral("  ") + product->GetName() + QStringLiteral("\r\n");
    return text;
}

bool DlgDatasetRun::HasProductsToRun() const
{
    return !ProductsToRun().isEmpty();
}

void DlgDatasetRun::ShowMessage(const QString& text, bool error)
{
    m_pMessage->setText(text);
    m_pMessage->SetError(error);
}

void DlgDatasetRun::ShowReason(const QString& text)
{
    m_pReason->setText(text);
    m_pReason->setVisible(!text.isEmpty());
}

void DlgDatasetRun::SetProgressText(const QString& text)
{
    m_pProgress->setFormat(text);
    m_pProgress->setTextVisible(!text.isEmpty());
}

void DlgDatasetRun::ShowReady(const QString& readyText)
{
    const int errors = m_pDSVersion ? m_pDSVersion->GetErrorCount() : 0;
    QString text = readyText;
    if (errors > 0)
        text += QLatin1Char(' ') + tr("Error") + QString::asprintf(" (%d) ", errors);
    ShowMessage(text, errors > 0);
    m_pProgress->setRange(0, 100);
    m_pProgress->setValue(100);
    GetOkButton()->show();
    GetOkButton()->setEnabled(true);
    GetCancelButton()->setEnabled(false);
}

void DlgDatasetRun::ShowBusyBar()
{
    m_pProgress->setValue(0);
    m_pProgress->setRange(0, 0);
}

void DlgDatasetRun::ClickedShowProductsSlot()
{
    m_pProductsPane->Open();
}

void DlgDatasetRun::ClickedHideProductsSlot()
{
    m_pProductsPane->Close();
}

void DlgDatasetRun::ClickedShowResultSlot()
{
    m_pResultPane->Open();
}

void DlgDatasetRun::ClickedHideResultSlot()
{
    m_pResultPane->Close();
}

void DlgDatasetRun::WriteResultSlot(QString text)
{
    m_strResult = text;
    if (m_pResultPane->IsOpen()) {
        m_pResultPane->SetText(text);
        m_pResultPane->GetPane()->repaint();
    }
}
