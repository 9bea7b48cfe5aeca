#include "ui/DlgBackupRun.h"

#include "engine/CDSVersion.h"
#include "model/CDataModel.h"
#include "model/CInstallGroup.h"
#include "model/CProduct.h"
#include "ui/VlColors.h"
#include "ui/VlFoldPane.h"
#include "ui/VlPushButton.h"

#include <QLabel>
#include <QSet>

namespace {
// Beyond this many lines the product list names the rest.
constexpr int st_touchedLines = 8;
} // namespace

DlgBackupRun::DlgBackupRun(QWidget* parent) : DlgDatasetRun(parent) {}

void DlgBackupRun::Init(CDataModel* model, QString title)
{
    resize(420, InitialHeight());
    m_iState = 0;
    DlgBase::Init(model, title);
    InitRun();
    InitCtrls();
    connect(m_pAction, &VlPushButton::clicked, this, &DlgBackupRun::StartRun);
    ConnectEngine();
    if (m_pDSVersion)
        connect(m_pDSVersion, &CDSVersion::SignalWriteResult, this, &DlgBackupRun::WriteResultSlot);
    retranslate();
    FitHeight(InitialHeight());
}

void DlgBackupRun::InitCtrls()
{
    AddProductRow();
    AddSeparator();
    // Before anything is pressed the user sees which products the run touches and what comes back.
    m_pTouched = new QLabel(this);
    m_pTouched->setWordWrap(true);
    m_pTouched->setTextFormat(Qt::PlainText);
    VlColors::SetTextColor(m_pTouched, VlColors::DialogText());
    AddWarningBox(m_pTouched);
    AddSeparator();
    AddMessageRow();
    AddProgressRow();
    m_pAction = new VlPushButton(this);
    m_pAction->setMinimumWidth(180);
    m_pSecond = new VlPushButton(this);
    m_pSecond->setMinimumWidth(180);
    m_pSecond->setEnabled(false);
    m_pSecond->hide();
    AddButtonCell(m_pAction, m_pSecond);
    UpdateCtrls();
}

void DlgBackupRun::UpdateCtrls()
{
    if (m_iState == RunningState()) {
        ShowMessage(RunningText());
        ShowBusyBar();
        m_pAction->setEnabled(false);
    } else if (m_iState == ReadyState()) {
        // Once per opening: after the run only closing is left.
        m_pAction->hide();
        ShowReady(ReadyText());
    } else {
        ShowMessage(QString());
    }
}

void DlgBackupRun::StartRun()
{
    if (!m_pDSVersion || m_iState != 0)
        return;
    m_pDSVersion->ResetResult();
    m_iState = RunningState();
    UpdateCtrls();
    RunEngine(GetDataModel()->GetProductList());
}

void DlgBackupRun::ShowProduct(const QString& name)
{
    ShowMessage(VlPushButton::Plain(ActionText()) + QLatin1Char(' ') + name);
}

void DlgBackupRun::ShowReadyState()
{
    // The end of a run that this opening did not start belongs to nobody here.
    if (m_iState != RunningState())
        return;
    m_iState = ReadyState();
    UpdateCtrls();
}

QString DlgBackupRun::TouchedText() const
{
    QStringList lines;
    QSet<const CInstallGroup*> listed;
    int entries = 0;
    const QList<CProduct*> products = ProductsToRun();
    for (CProduct* product : products) {
        // Members of an install group share one folder: whatever happens to one happens to all.
        const CInstallGroup* group = product->GetInstallGroup();
        QStringList names{product->GetName()};
        if (group && group->GetProdNames().size() > 1) {
            if (listed.contains(group))
                continue;
            listed.insert(group);
            names = group->GetProdNames();
        }
        if (++entries > st_touchedLines)
            continue;
        const QString cycle = CDSVersion::cutDig(product->GetBackCycleVersion());
        const QString joined = names.join(QStringLiteral(", "));
        lines << (cycle.isEmpty() ? NoBackupLine(joined) : TouchLine(joined, cycle));
        if (names.size() > 1)
            lines << QStringLiteral("    ") + SharedFolderLine();
    }
    if (entries > st_touchedLines)
        lines << tr("and %1 more (see the product list)").arg(entries - st_touchedLines);
    return lines.join(QLatin1Char('\n'));
}

void DlgBackupRun::retranslate()
{
    DlgDatasetRun::retranslate();
    if (!m_pAction)
        return; // before Init
    m_pAction->setText(ActionText());
    m_pTouched->setText(TouchedText());
    m_pTouched->setVisible(!m_pTouched->text().isEmpty());
    if (m_iState == RunningState())
        ShowMessage(RunningText());
}
