#include "ui/QuillmarkMainWindow.h"

#include "app/Application.h"
#include "app/CAppPaths.h"
#include "engine/CDSVersion.h"
#include "model/CInstallGroup.h"
#include "model/CProduct.h"
#include "model/CCategory.h"
#include "model/CSimulatorSearch.h"
#include "ui/CDialogFactory.h"
#include "ui/CvlFilterCmb.h"
#include "ui/CvlHelpButton.h"
#include "ui/CvlRemoveBackupButton.h"
#include "ui/CvlResetButton.h"
#include "ui/CvlSettingsButton.h"
#include "ui/CvlUpdateButton.h"
#include "ui/SystemButton.h"
#include "ui/VlAccessible.h"
#include "ui/VlActionLabel.h"
#include "ui/VlAppTitleLabel.h"
#include "ui/VlAppVersionLabel.h"
#include "ui/VlBackground.h"
#include "ui/VlCatLabel.h"
#include "ui/VlCatPropsLabel.h"
#include "ui/VlColors.h"
#include "ui/VlFonts.h"
#include "ui/VlProdListLabel.h"

#include <QApplication>
#include <QEvent>
#include <QFileInfo>
#include <QGridLayout>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QSet>
#include <QSizeGrip>
#include <QTimer>

namespace {
QGridLayout* grid0(const QMargins& margins)
{
    auto* grid = new QGridLayout;
    grid->setSpacing(0);
    grid->setContentsMargins(margins);
    return grid;
}

QRect availableArea()
{
    QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect(0, 0, 1000, 840);
}

// A label that carries a painted pixmap must not take the pixmap's size as its own minimum, or
// the window could never be made smaller again.
void ignorePixmapSize(QLabel* label)
{
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
}

QImage transparentImage(const QSize& size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}
} // namespace

QuillmarkMainWindow::QuillmarkMainWindow(QWidget* parent)
    : QMainWindow(parent, Qt::FramelessWindowHint | Qt::WindowSystemMenuHint)
{
    // The data model may ask for a dialog from its first step on.
    CDialogFactory::Install();
    VlAccessible::Install();
    m_bFirstStart = !QFileInfo::exists(CAppPaths::SettingsFile());
    m_dataModel.Init(Application::st_strVersion);
    m_normalGeometry = QRect();
    m_dragPosition = QPoint(0, 0);

    const QRect area = availableArea();
    resize(qMin(area.width(), 1000), qMin(area.height(), 766));
    // The minimum height is larger than the initial one on purpose; users rely on that size.
    setMinimumSize(qMin(area.width(), 930), qMin(area.height(), 840));

    CreateMainWidget();

    setWindowIcon(QIcon(QStringLiteral(":/images/Quillmark.ico")));
    retranslate();
    setUnifiedTitleAndToolBarOnMac(true);

    InitSlotSignal();
    InitShortcuts();
    OfferFoundSimulators();
    PlaceFilter();
}

QuillmarkMainWindow::~QuillmarkMainWindow()
{
    m_dataModel.Save();
    m_dataModel.Clear();
}

void QuillmarkMainWindow::CreateMainWidget()
{
    m_pMainLabel = new QLabel(this);
    ignorePixmapSize(m_pMainLabel);
    setAttribute(Qt::WA_TranslucentBackground);
    m_pMainLabel->setAttribute(Qt::WA_TranslucentBackground);
    CreateMainWidgetGrid();
}

void QuillmarkMainWindow::CreateMainWidgetGrid()
{
    QGridLayout* grid = grid0(QMargins(2, 1, 1, 1));
    grid->setColumnStretch(0, 1);
    grid->setColumnMinimumWidth(0, 100);
    grid->setRowStretch(0, 0);
    grid->setRowMinimumHeight(0, 50);
    grid->setRowStretch(1, 1);
    grid->setRowMinimumHeight(1, 100);
    grid->setRowStretch(2, 0);
    grid->setRowMinimumHeight(2, 20);

    // Only the vertical alignment: the header must span the window, whatever its painted size was.
    grid->addLayout(CreateHeaderLayout(), 0, 0, Qt::AlignTop);
    grid->addWidget(CreateMiddleLabel(), 1, 0);
    grid->addLayout(CreateStatusLeisteLayout(), 2, 0, Qt::AlignRight | Qt::AlignBottom);

    m_pMainLabel->setLayout(grid);
    setCentralWidget(m_pMainLabel);
    setAttribute(Qt::WA_MouseTracking);
}

QGridLayout* QuillmarkMainWindow::CreateHeaderLayout()
{
    QGridLayout* grid = grid0(QMargins());
    grid->setColumnStretch(0, 0);
    grid->setColumnMinimumWidth(0, 10);
    grid->setColumnStretch(1, 1);
    m_pLogoGrid = CreateToolIconHeaderLayout();
    grid->addLayout(m_pLogoGrid, 0, 0);
    grid->addLayout(CreateRightHeaderLayout(), 0, 1);
    return grid;
}

QGridLayout* QuillmarkMainWindow::CreateToolIconHeaderLayout()
{
    QGridLayout* grid = grid0(QMargins(1, 0, 0, 0));
    grid->setRowMinimumHeight(0, 32);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 0);

    QGridLayout* logoGrid = grid0(QMargins(10, 10, 0, 0));
    auto* logo = new QLabel(m_pMainLabel);
    logo->setPixmap(QPixmap(QStringLiteral(":/images/Quillmark.png")));
    logoGrid->addWidget(logo, 0, 0, Qt::AlignCenter);
    grid->addLayout(logoGrid, 0, 0);

    auto* line = new QLabel(m_pMainLabel);
    line->setMaximumHeight(1);
    line->setMinimumWidth(170);
    line->setStyleSheet(QStringLiteral("background-color: rgb(145, 145, 150)"));
    grid->addWidget(line, 1, 0, Qt::AlignLeft | Qt::AlignBottom);
    return grid;
}

QGridLayout* QuillmarkMainWindow::CreateRightHeaderLayout()
{
    QGridLayout* grid = grid0(QMargins());
    grid->setRowMinimumHeight(0, 10);
    grid->setRowMinimumHeight(1, 100);
    grid->setRowStretch(1, 1);
    grid->addLayout(CreateSystemButtonLayout(), 0, 0, Qt::AlignRight | Qt::AlignTop);
    CreateRightHeaderLabel();
    grid->addWidget(m_pRightHeader, 1, 0);
    return grid;
}

QGridLayout* QuillmarkMainWindow::CreateSystemButtonLayout()
{
    QGridLayout* grid = grid0(QMargins(0, 7, 7, 4));
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 0);
    grid->setColumnMinimumWidth(1, 2);
    grid->setColumnStretch(2, 0);
    grid->setColumnMinimumWidth(2, 20);
    grid->setColumnStretch(3, 0);
    grid->setColumnMinimumWidth(3, 20);

    m_pMiniButton = new SystemButton(QStringLiteral(":/images/mini_gr.png"), QStringLiteral(":/images/mini_blue.png"),
                                     m_pMainLabel);
    m_pMaxiButton = new SystemButton(QStringLiteral(":/images/maxi_gr.png"), QStringLiteral(":/images/maxi_blue.png"),
                                     m_pMainLabel);
    m_pCloseButton = new SystemButton(QStringLiteral(":/images/close_gr.png"),
                                      QStringLiteral(":/images/close_blue.png"), m_pMainLabel);
    m_pNormButton = new SystemButton(QStringLiteral(":/images/norm_gr.png"), QStringLiteral(":/images/norm_blue.png"),
                                     m_pMainLabel);
    m_pNormButton->hide();
    grid->addWidget(m_pMiniButton, 0, 1);
    grid->addWidget(m_pMaxiButton, 0, 2);
    grid->addWidget(m_pNormButton, 0, 2);
    grid->addWidget(m_pCloseButton, 0, 3);
    return grid;
}

void QuillmarkMainWindow::CreateRightHeaderLabel()
{
    m_pRightHeader = new QLabel(m_pMainLabel);
    // Ignored sideways only: its height follows its contents through the minimum set below.
    m_pRightHeader->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    QGridLayout* outer = grid0(QMargins());
    outer->setColumnStretch(0, 1);
    outer->setColumnStretch(1, 0);

    // The spaced-out title reaches over the action buttons' column: they sit low in the band, and
    // title, filter and buttons side by side would not fit the window's narrowest width.
    QGridLayout* title = grid0(QMargins(45, 0, 0, 0));
    title->setRowMinimumHeight(0, 18);
    title->addLayout(CreateTitleLayout(), 0, 0);
    outer->addLayout(title, 0, 0, 1, 2);
    m_pHeaderFilterGrid = grid0(QMargins(st_filterMargin, 0, 0, 0));
    m_pFilterBox = new QWidget(m_pRightHeader);
    m_pFilterBox->setLayout(CreateFilterLayout());
    m_pHeaderFilterGrid->addWidget(m_pFilterBox, 0, 0, Qt::AlignLeft);
    outer->addLayout(m_pHeaderFilterGrid, 1, 0, Qt::AlignBottom);
    m_pActionGrid = CreateActionButtonLayout();
    outer->addLayout(m_pActionGrid, 1, 1, Qt::AlignBottom);
    outer->setRowStretch(1, 1);

    m_pRightHeader->setLayout(outer);
    // Its painted pixmap says nothing about the room its contents need; the width is watched by
    // PlaceFilter instead, which moves the filter out when title row and buttons cannot share it.
    m_pRightHeader->setMinimumHeight(qMax(100, outer->sizeHint().height()));
    m_pRightHeader->setAttribute(Qt::WA_MouseTracking);
}

QGridLayout* QuillmarkMainWindow::CreateTitleLayout()
{
    QGridLayout* grid = grid0(QMargins());
    grid->setColumnStretch(0, 0);
    grid->setColumnStretch(1, 0);
    grid->setColumnStretch(2, 1);
    m_pTitle = new VlAppTitleLabel(QStringLiteral("Q u i l l m a r k"), m_pRightHeader);
    grid->addWidget(m_pTitle, 0, 0, Qt::AlignLeft | Qt::AlignBottom);
    auto* version = new VlAppVersionLabel(QStringLiteral("V. ") + Application::st_strVersion, m_pRightHeader);
    version->setContentsMargins(8, 0, 0, 6);
    grid->addWidget(version, 0, 1, Qt::AlignLeft | Qt::AlignBottom);
    return grid;
}

QGridLayout* QuillmarkMainWindow::CreateFilterLayout()
{
    QGridLayout* grid = grid0(QMargins(5, 10, 0, 8));
    grid->setColumnStretch(0, 0);
    grid->setColumnStretch(1, 0);
    grid->setColumnStretch(2, 1);
    grid->setColumnMinimumWidth(0, 100);
    grid->setColumnMinimumWidth(1, 115);
    m_pFilterCaption = new VlActionLabel(tr("Dataset-Filter"));
    m_pFilterCaption->setContentsMargins(0, 0, 8, 0);
    grid->addWidget(m_pFilterCaption, 0, 0);
    m_pFilter = new CvlFilterCmb(nullptr, &m_dataModel);
    // The caption names the box for a screen reader too.
    m_pFilterCaption->setBuddy(m_pFilter);
    m_pFilter->Init();
    grid->addWidget(m_pFilter, 0, 1);
    return grid;
}

QGridLayout* QuillmarkMainWindow::CreateActionButtonLayout()
{
    QGridLayout* grid = grid0(QMargins(0, 0, 20, 0));
    m_pUpdateButton = new CvlUpdateButton(m_pRightHeader, &m_dataModel);
    m_pResetButton = new CvlResetButton(m_pRightHeader, &m_dataModel);
    m_pRemoveBackupButton = new CvlRemoveBackupButton(m_pRightHeader, &m_dataModel);
    m_pSettingsButton = new CvlSettingsButton(m_pRightHeader, &m_dataModel);
    m_pHelpButton = new CvlHelpButton(m_pRightHeader, &m_dataModel);
    const QList<QWidget*> buttons = GetActionButtons();

    QFont separatorFont(QApplication::font().family());
    separatorFont.setPointSize(16);
    int column = 0;
    for (int i = 0; i < buttons.size(); ++i) {
        if (i > 0) {
            auto* separator = new QLabel(QStringLiteral("|"), m_pRightHeader);
            separator->setFont(separatorFont);
            VlColors::SetTextColor(separator, QColor(100, 100, 100));
            separator->setAlignment(Qt::AlignCenter);
            grid->addWidget(separator, 0, column++, Qt::AlignCenter);
        }
        grid->setColumnMinimumWidth(column, i == 0 ? 73 : 70);
        grid->addWidget(buttons.at(i), 0, column++, Qt::AlignBottom);
    }
    return grid;
}

QList<QWidget*> QuillmarkMainWindow::GetActionButtons() const
{
    return {m_pUpdateButton, m_pResetButton, m_pRemoveBackupButton, m_pSettingsButton, m_pHelpButton};
}

QLabel* QuillmarkMainWindow::CreateMiddleLabel()
{
    auto* middle = new QLabel(m_pMainLabel);
    VlBackground::Fill(middle, QColor(0x7D, 0x7D, 0x7D));
    QGridLayout* outer = grid0(QMargins());
    outer->setRowStretch(0, 1);
    outer->setRowStretch(1, 0);

    QGridLayout* top = grid0(QMargins(14, 20, 0, 0));
    top->setColumnStretch(0, 0);
    top->setColumnStretch(1, 1);
    // The column scrolls when the window is too low for all nine buttons.
    m_pCatScroll = new QScrollArea(middle);
    m_pCatScroll->setFrameShape(QFrame::NoFrame);
    m_pCatScroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pCatScroll->setWidgetResizable(true);
    m_pCatScroll->viewport()->setAutoFillBackground(false);
    m_pCatScroll->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    m_pCatScroll->setFocusPolicy(Qt::NoFocus); // its buttons take the focus, and it follows them
    auto* cats = new QWidget;
    cats->setAutoFillBackground(false);
    // The buttons keep their natural spacing at the top, however high the column is.
    QGridLayout* catsTop = grid0(QMargins());
    catsTop->addLayout(CreateCatsLayout(), 0, 0, Qt::AlignLeft | Qt::AlignTop);
    catsTop->setRowStretch(1, 1);
    cats->setLayout(catsTop);
    m_pCatScroll->setWidget(cats);
    cats->setAutoFillBackground(false); // the scroll area turned it on
    m_pCatScroll->setMinimumWidth(cats->sizeHint().width() + m_pCatScroll->verticalScrollBar()->sizeHint().width());
    top->addWidget(m_pCatScroll, 0, 0);

    m_pProductGrid = grid0(QMargins(0, 0, 13, 15));
    m_pProductGrid->setRowStretch(1, 1);
    m_pProdList = new VlProdListLabel(middle, &m_dataModel);
    m_pProductGrid->addWidget(m_pProdList, 1, 0);
    QGridLayout* products = m_pProductGrid;
    top->addLayout(products, 0, 1);
    // The product column takes all the height; the categories stay at the top on their own.
    outer->addLayout(top, 0, 0);

    QGridLayout* props = grid0(QMargins());
    m_pCatProps = new VlCatPropsLabel(middle, m_dataModel.GetCategoryByName(QStringLiteral("All")));
    m_pCatProps->Init();
    m_pCatProps->SetDataModel(&m_dataModel);
    props->addWidget(m_pCatProps, 0, 0);
    outer->addLayout(props, 1, 0);

    middle->setLayout(outer);
    return middle;
}

QGridLayout* QuillmarkMainWindow::CreateCatsLayout()
{
    QGridLayout* grid = grid0(QMargins(0, 0, 20, 0));
    grid->setColumnMinimumWidth(0, 120);
    for (int row = 0; row <= 8; ++row)
        grid->setRowStretch(row, 0);
    grid->setRowStretch(9, 1);
    grid->setRowStretch(10, 1);

    auto make = [this](const QString& image, const QString& name, bool enabled) {
        auto* button = new VlCatLabel(nullptr, &m_dataModel);
        button->Init(QStringLiteral(":/images/") + image + QStringLiteral("32.png"),
                     QStringLiteral(":/images/") + image + QStringLiteral("48.png"), name);
        button->setEnabled(enabled);
        return button;
    };
    m_pCatAll = make(QStringLiteral("All"), QStringLiteral("All"), true);
    m_pCatUpdateList = make(QStringLiteral("UpdateList"), QStringLiteral("Selected"), true);
    m_pCatXPlane10 = make(QStringLiteral("XPlane10"), QStringLiteral("X-Plane 10"), true);
    m_pCatXPlane11 = make(QStringLiteral("XPlane11"), QStringLiteral("X-Plane 11"), true);
    m_pCatFSX = make(QStringLiteral("FSX"), QStringLiteral("FSX"), false);
    m_pCatFS2004 = make(QStringLiteral("FS2004"), QStringLiteral("FS2004"), false);
    m_pCatP3DV2 = make(QStringLiteral("P3D2"), QStringLiteral("Prepar3D v2"), false);
    m_pCatP3DV3 = make(QStringLiteral("P3D3"), QStringLiteral("Prepar3D v3"), false);
    m_pCatP3DV4 = make(QStringLiteral("P3D4"), QStringLiteral("Prepar3D v4"), false);

    const Qt::Alignment align = Qt::AlignLeft | Qt::AlignVCenter;
    grid->addWidget(m_pCatAll, 0, 0, align);
    grid->addWidget(m_pCatUpdateList, 1, 0, align);

    QGridLayout* lineGrid = grid0(QMargins(25, 10, 0, 10));
    m_pCategoryLine = new QLabel;
    m_pCategoryLine->setStyleSheet(QStringLiteral("background-color: rgb(165, 165, 170)"));
    m_pCategoryLine->setMaximumHeight(2);
    m_pCategoryLine->setMinimumHeight(2);
    m_pCategoryLine->setMinimumWidth(143);
    lineGrid->addWidget(m_pCategoryLine, 0, 0, Qt::AlignRight);
    grid->addLayout(lineGrid, 2, 0, align);

    grid->addWidget(m_pCatXPlane10, 3, 0, align);
    grid->addWidget(m_pCatXPlane11, 4, 0, align);
    grid->addWidget(m_pCatFSX, 5, 0, align);
    grid->addWidget(m_pCatFS2004, 6, 0, align);
    grid->addWidget(m_pCatP3DV2, 7, 0, align);
    grid->addWidget(m_pCatP3DV3, 8, 0, align);
    grid->addWidget(m_pCatP3DV4, 9, 0, align);
    grid->addWidget(new QLabel, 10, 0, align);
    ClickedCatAllSlot();
    return grid;
}

QList<VlCatLabel*> QuillmarkMainWindow::GetCategoryButtons() const
{
    return {m_pCatAll,    m_pCatUpdateList, m_pCatXPlane10, m_pCatXPlane11, m_pCatFSX,
            m_pCatFS2004, m_pCatP3DV2,      m_pCatP3DV3,    m_pCatP3DV4};
}

VlCatLabel* QuillmarkMainWindow::GetCategoryButton(const QString& name) const
{
    for (VlCatLabel* button : GetCategoryButtons())
        if (button && button->GetName() == name)
            return button;
    return nullptr;
}

QGridLayout* QuillmarkMainWindow::CreateStatusLeisteLayout()
{
    QGridLayout* grid = grid0(QMargins(7, 7, 7, 7));
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 0);
    grid->setColumnMinimumWidth(1, 20);
    grid->setRowMinimumHeight(0, 20);

    m_pStatus = new QLabel(tr("Ready"), m_pMainLabel);
    m_pStatus->setFont(VlFonts::Font(9, QFont::Normal, true));
    VlColors::SetTextColor(m_pStatus, QColor(254, 254, 254));
    // A long report must not widen the window; the whole of it is in the tooltip.
    m_pStatus->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    grid->addWidget(m_pStatus, 0, 0);

    auto* grip = new QSizeGrip(this);
    grip->setCursor(Qt::SizeFDiagCursor);
    grid->addWidget(grip, 0, 1, Qt::AlignRight | Qt::AlignBottom);
    return grid;
}

void QuillmarkMainWindow::InitSlotSignal()
{
    connect(m_pCloseButton, &SystemButton::clicked, this, &QuillmarkMainWindow::CloseWindowSlot);
    connect(m_pMiniButton, &SystemButton::clicked, this, &QuillmarkMainWindow::MiniWindowSlot);
    connect(m_pMaxiButton, &SystemButton::clicked, this, &QuillmarkMainWindow::MaxiWindowSlot);
    connect(m_pNormButton, &SystemButton::clicked, this, &QuillmarkMainWindow::NormWindowSlot);

    connect(m_pCatXPlane10, &VlCatLabel::clicked, this, &QuillmarkMainWindow::ClickedCatXPlane10Slot);
    connect(m_pCatXPlane11, &VlCatLabel::clicked, this, &QuillmarkMainWindow::ClickedCatXPlane11Slot);
    connect(m_pCatP3DV2, &VlCatLabel::clicked, this, &QuillmarkMainWindow::ClickedCatP3DV2Slot);
    connect(m_pCatP3DV3, &VlCatLabel::clicked, this, &QuillmarkMainWindow::ClickedCatP3DV3Slot);
    connect(m_pCatP3DV4, &VlCatLabel::clicked, this, &QuillmarkMainWindow::ClickedCatP3DV4Slot);
    connect(m_pCatFSX, &VlCatLabel::clicked, this, &QuillmarkMainWindow::ClickedCatFSXSlot);
    connect(m_pCatFS2004, &VlCatLabel::clicked, this, &QuillmarkMainWindow::ClickedCatFS2004Slot);
    connect(m_pCatAll, &VlCatLabel::clicked, this, &QuillmarkMainWindow::ClickedCatAllSlot);
    connect(m_pCatUpdateList, &VlCatLabel::clicked, this, &QuillmarkMainWindow::ClickedCatUpdateListSlot);

    connect(this, &QuillmarkMainWindow::ChangeSelectedCategory, m_pProdList, &VlProdListLabel::ChangeCategorySlot);
    connect(this, &QuillmarkMainWindow::ChangeSelectedCategory, m_pCatProps,
            &VlCatPropsLabel::ChangeSelectedCategorySlot);
    connect(m_pCatProps, &VlCatPropsLabel::UpdatePath, m_pProdList, &VlProdListLabel::UpdatePathSlot);
    connect(m_pFilter, &CvlFilterCmb::ChangeDataset, this, &QuillmarkMainWindow::ChangeDatasetFilterSlot);
    connect(this, &QuillmarkMainWindow::SignalChangeDataset, m_pProdList, &VlProdListLabel::ChangeDatasetFilterSlot);
    connect(&m_dataModel, &CDataModel::SignalCloseApplication, this, &QuillmarkMainWindow::CloseWindowSlot);

    CDSVersion* engine = m_dataModel.GetDSVersion();
    connect(engine, &CDSVersion::SignalInstallReady, this, [this] { RunEndedSlot(ERunKind::Update); });
    connect(engine, &CDSVersion::SignalResetReady, this, [this] { RunEndedSlot(ERunKind::Reset); });
    connect(engine, &CDSVersion::SignalRemoveBackupReady, this, [this] { RunEndedSlot(ERunKind::RemoveBackup); });
    connect(engine, &CDSVersion::SignalDownloadDataSetError, this, &QuillmarkMainWindow::DownloadFailedSlot);
    connect(engine, &CDSVersion::SignalDownloadDataSetReady, this, [this] {
        m_eLastRun = ERunKind::Download;
        m_strRunCycle = CDSVersion::cutDig(m_dataModel.GetDSVersion()->GetNewVersion());
        UpdateStatus();
    });
    connect(m_pCatProps, &VlCatPropsLabel::UpdatePath, this, &QuillmarkMainWindow::UpdateStatus);
}

void QuillmarkMainWindow::InitShortcuts()
{
    // The platform's own keys where it has them (Cmd on macOS comes with Qt's Ctrl).
    const auto standard = [](QKeySequence::StandardKey key, const QKeySequence& fallback) {
        const QList<QKeySequence> bindings = QKeySequence::keyBindings(key);
        return bindings.isEmpty() ? fallback : bindings.first();
    };
    const struct
    {
        CvlActionBtn* button;
        QKeySequence keys;
    } actions[] = {
        {m_pUpdateButton, QKeySequence(Qt::CTRL | Qt::Key_U)},
        {m_pResetButton, QKeySequence(Qt::CTRL | Qt::Key_R)},
        {m_pSettingsButton, standard(QKeySequence::Preferences, QKeySequence(Qt::CTRL | Qt::Key_Comma))},
        {m_pHelpButton, standard(QKeySequence::HelpContents, QKeySequence(Qt::Key_F1))},
    };
    for (const auto& action : actions) {
        CvlActionBtn* button = action.button;
        action.button->SetShortcut(action.keys);
        connect(new QShortcut(action.keys, this), &QShortcut::activated, button,
                [button] { QMetaObject::invokeMethod(button, "clicked"); });
    }
    connect(new QShortcut(standard(QKeySequence::Quit, QKeySequence(Qt::CTRL | Qt::Key_Q)), this),
            &QShortcut::activated, this, &QuillmarkMainWindow::CloseWindowSlot);
}

void QuillmarkMainWindow::RunEndedSlot(ERunKind kind)
{
    // The products of the run: one card's product with its install group, else the selection.
    CDSVersion* engine = m_dataModel.GetDSVersion();
    QList<CProduct*> products;
    QSet<CProduct*> listed;
    if (CProduct* single = engine->GetSingleProduct())
        products = single->GetInstallGroup() ? single->GetInstallGroup()->GetProducts() : QList<CProduct*>{single};
    else
        for (int i = 0; i < m_dataModel.GetProductListSize(); ++i)
            if (CProduct* product = m_dataModel.GetProductByIndex(i); product && product->GetUpdate()) {
                // A selected product's install group shares its run, selected or not.
                const QList<CProduct*> members =
                    product->GetInstallGroup() ? product->GetInstallGroup()->GetProducts() : QList<CProduct*>{product};
                for (CProduct* member : members)
                    if (!listed.contains(member)) {
                        listed.insert(member);
                        products << member;
                    }
            }
    m_eLastRun = kind;
    m_iRunOk = m_iRunFailed = 0;
    m_strRunProblem.clear();
    for (CProduct* product : products) {
        if (product->GetInstallState() == QMK_STATE_INSTALL_OK) {
            ++m_iRunOk;
        } else if (product->GetInstallState() == QMK_STATE_INSTALL_ERROR) {
            ++m_iRunFailed;
            if (m_strRunProblem.isEmpty())
                m_strRunProblem = product->GetErrorText();
        }
    }
    m_strRunCycle = CDSVersion::cutDig(engine->GetTargetVersion());
    UpdateStatus();
}

void QuillmarkMainWindow::DownloadFailedSlot()
{
    m_eLastRun = ERunKind::Update;
    m_iRunOk = 0;
    m_iRunFailed = 1;
    m_strRunProblem = m_dataModel.GetDSVersion()->GetLastFailure().UserText();
    UpdateStatus();
}

QString QuillmarkMainWindow::StatusText() const
{
    QString failed;
    switch (m_eLastRun) {
    case ERunKind::None:
        return FirstStartText();
    case ERunKind::Download:
        return tr("Cycle %1 downloaded, not installed yet").arg(m_strRunCycle);
    case ERunKind::Update:
        if (m_iRunOk > 0 && m_iRunFailed == 0)
            return tr("Updated %n product(s) to cycle %1", "", m_iRunOk).arg(m_strRunCycle);
        if (m_iRunOk > 0)
            return tr("Updated %1 of %2 products to cycle %3; the result in the update dialog says why the others "
                      "failed")
                .arg(m_iRunOk)
                .arg(m_iRunOk + m_iRunFailed)
                .arg(m_strRunCycle);
        failed = tr("Update failed");
        break;
    case ERunKind::Reset:
        if (m_iRunFailed == 0)
            return tr("Reset %n product(s) to their backed-up cycle", "", m_iRunOk);
        failed = tr("Reset failed");
        break;
    case ERunKind::RemoveBackup:
        if (m_iRunFailed == 0)
            return tr("Deleted the backups of %n product(s)", "", m_iRunOk);
        failed = tr("Backup removal failed");
        break;
    }
    if (m_iRunOk > 0)
        failed = tr("%1 for %2 of %3 products").arg(failed).arg(m_iRunFailed).arg(m_iRunOk + m_iRunFailed);
    return m_strRunProblem.isEmpty() ? failed : failed + QStringLiteral(": ") + m_strRunProblem;
}

void QuillmarkMainWindow::OfferFoundSimulators()
{
    const CSimulatorSearch search = CSimulatorSearch::ForThisUser();
    QMap<QString, QString> offers;
    m_searchedCategories.clear();
    for (int i = 0; i < m_dataModel.GetCategoryListSize(); ++i) {
        CCategory* category = m_dataModel.GetCategoryByIndex(i);
        if (!category || search.Candidates(category->GetName()).isEmpty())
            continue;
        m_searchedCategories << category->GetName();
        // A working folder is the user's choice and stays; nothing changes until an offer is taken.
        if (category->CheckPath())
            continue;
        const QString found = search.Find(category->GetName());
        if (!found.isEmpty())
            offers.insert(category->GetName(), found);
    }
    m_pCatProps->SetOffers(offers);
    UpdateStatus();
}

void QuillmarkMainWindow::UpdateStatus()
{
    m_pStatus->setText(StatusText());
    m_pStatus->setToolTip(m_pStatus->text());
}

QString QuillmarkMainWindow::FirstStartText() const
{
    QStringList parts;
    for (const QString& name : qAsConst(m_searchedCategories)) {
        const CCategory* category = m_dataModel.GetCategoryByName(name);
        if (!m_bFirstStart || !category || category->CheckPath())
            continue;
        const QString offer = m_pCatProps->GetOffer(name);
        const QString shown = VlCatLabel::TranslatedName(name);
        if (offer.isEmpty())
            parts << tr("%1 still needs a folder.").arg(shown);
        else
            parts << tr("%1 found in %2; confirm it under %1.").arg(shown, offer);
    }
    return parts.isEmpty() ? tr("Ready") : parts.join(QLatin1Char(' '));
}

void QuillmarkMainWindow::CloseWindowSlot()
{
    close();
}

void QuillmarkMainWindow::MiniWindowSlot()
{
    showMinimized();
}

void QuillmarkMainWindow::MaxiWindowSlot()
{
    m_normalGeometry = geometry();
    setGeometry(availableArea());
    m_pNormButton->show();
    m_pMaxiButton->hide();
}

void QuillmarkMainWindow::NormWindowSlot()
{
    setGeometry(m_normalGeometry);
    m_pNormButton->hide();
    m_pMaxiButton->show();
}

void QuillmarkMainWindow::ClickedCategory(VlCatLabel* clicked)
{
    m_pSelectedCategory = clicked->GetCategory();
    emit ChangeSelectedCategory(m_pSelectedCategory);
    // A catalogue need not list "Selected" (or even "All") as a category; the button's own name
    // still says what to show.
    if (!m_pSelectedCategory && m_pProdList)
        m_pProdList->ChangeCategoryNameSlot(clicked->GetName());
    if (!m_pSelectedCategory && m_pCatProps)
        m_pCatProps->SetCategoryName(clicked->GetName());
    for (VlCatLabel* button : GetCategoryButtons())
        if (button != clicked)
            button->SetSelect(false);
}

void QuillmarkMainWindow::ClickedCatXPlane10Slot()
{
    ClickedCategory(m_pCatXPlane10);
}
void QuillmarkMainWindow::ClickedCatXPlane11Slot()
{
    ClickedCategory(m_pCatXPlane11);
}
void QuillmarkMainWindow::ClickedCatP3DV2Slot()
{
    ClickedCategory(m_pCatP3DV2);
}
void QuillmarkMainWindow::ClickedCatP3DV3Slot()
{
    ClickedCategory(m_pCatP3DV3);
}
void QuillmarkMainWindow::ClickedCatP3DV4Slot()
{
    ClickedCategory(m_pCatP3DV4);
}
void QuillmarkMainWindow::ClickedCatFSXSlot()
{
    ClickedCategory(m_pCatFSX);
}
void QuillmarkMainWindow::ClickedCatFS2004Slot()
{
    ClickedCategory(m_pCatFS2004);
}
void QuillmarkMainWindow::ClickedCatAllSlot()
{
    ClickedCategory(m_pCatAll);
}
void QuillmarkMainWindow::ClickedCatUpdateListSlot()
{
    ClickedCategory(m_pCatUpdateList);
}

void QuillmarkMainWindow::SelectCategory(CCategory* category)
{
    m_pSelectedCategory = category;
    emit ChangeSelectedCategory(category);
}

void QuillmarkMainWindow::ChangeDatasetFilterSlot(const QString& dataset)
{
    emit SignalChangeDataset(dataset);
    // Re-flows the child layouts after the list changed; the size ends as it was.
    const int w = width();
    const int h = height();
    resize(w + 1, h);
    resize(w, h);
}

void QuillmarkMainWindow::retranslate()
{
    setWindowTitle(tr("Quillmark"));
    // The window draws its own buttons: their pictures alone would say nothing to a screen reader.
    const struct
    {
        SystemButton* button;
        QString name;
        QString description;
    } windowButtons[] = {
        {m_pMiniButton, tr("Minimize"), tr("Puts the Quillmark window into the Dock or task bar.")},
        {m_pMaxiButton, tr("Maximize"), tr("Makes the Quillmark window fill the screen.")},
        {m_pNormButton, tr("Restore size"), tr("Gives the Quillmark window its earlier size again.")},
        {m_pCloseButton, tr("Close"), tr("Closes Quillmark.")},
    };
    for (const auto& b : windowButtons) {
        if (!b.button)
            continue;
        b.button->setAccessibleName(b.name);
        b.button->setAccessibleDescription(b.description);
        b.button->setToolTip(b.name);
    }
    if (m_pFilterCaption)
        m_pFilterCaption->setText(tr("Dataset-Filter"));
    if (m_pStatus && m_pCatProps)
        UpdateStatus();
}

void QuillmarkMainWindow::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
        // Captions change width with the language; decide once the children have their new texts.
        QTimer::singleShot(0, this, &QuillmarkMainWindow::PlaceFilter);
    }
    QMainWindow::changeEvent(event);
}

int QuillmarkMainWindow::HeaderRowWidth() const
{
    // Left margin of the filter, the filter, the action buttons with their right margin.
    return st_filterMargin + m_pFilterBox->sizeHint().width() + m_pActionGrid->sizeHint().width();
}

bool QuillmarkMainWindow::IsFilterInHeader() const
{
    return m_pFilterBox && m_pFilterBox->parentWidget() == m_pRightHeader;
}

void QuillmarkMainWindow::PlaceFilter()
{
    if (!m_pFilterBox)
        return;
    // The header's width follows the window's; the logo column beside it keeps its own.
    const QMargins frame = m_pMainLabel->layout()->contentsMargins();
    const int room = width() - frame.left() - frame.right() - m_pLogoGrid->sizeHint().width();
    const bool inHeader = HeaderRowWidth() <= room;
    if (inHeader == IsFilterInHeader())
        return;
    if (inHeader) {
        m_pProductGrid->removeWidget(m_pFilterBox);
        m_pFilterBox->setParent(m_pRightHeader);
        m_pHeaderFilterGrid->setContentsMargins(st_filterMargin, 0, 0, 0);
        m_pHeaderFilterGrid->addWidget(m_pFilterBox, 0, 0, Qt::AlignLeft);
    } else {
        // Too narrow for filter and buttons side by side: the filter goes right above the list it
        // filters, and the buttons keep the header to themselves.
        m_pHeaderFilterGrid->removeWidget(m_pFilterBox);
        // The empty place keeps no margin, so the buttons may use the whole header.
        m_pHeaderFilterGrid->setContentsMargins(0, 0, 0, 0);
        m_pFilterBox->setParent(m_pProductGrid->parentWidget());
        m_pProductGrid->addWidget(m_pFilterBox, 0, 0, Qt::AlignLeft | Qt::AlignBottom);
    }
    m_pFilterBox->show();
}

void QuillmarkMainWindow::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        m_dragPosition = event->globalPos() - frameGeometry().topLeft();
    event->accept();
}

void QuillmarkMainWindow::mouseMoveEvent(QMouseEvent* event)
{
    // Only the header band, the top 110 pixels, drags the window.
    if ((event->buttons() & Qt::LeftButton) && event->pos().y() <= 109)
        move(event->globalPos() - m_dragPosition);
    event->accept();
}

void QuillmarkMainWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    // Nothing is focused at first, so no button shows a keyboard mark until Tab is pressed.
    if (!focusWidget())
        setFocus(Qt::OtherFocusReason);
    PaintAll();
    // Whatever the filter showed before, the list starts unfiltered; keep the combo in step.
    if (m_pFilter->currentIndex() != 0)
        m_pFilter->setCurrentIndex(0);
    else
        ChangeDatasetFilterSlot(QStringLiteral("All"));
    m_dataModel.InitProdUpdateListForUpdateOrReset(true);
    repaint();
}

void QuillmarkMainWindow::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    PlaceFilter();
    if (isVisible())
        PaintAll();
}

void QuillmarkMainWindow::PaintAll()
{
    PaintMainWidget();
    PaintRightHeaderLabel();
    PaintCategoryLineLabel();
}

void QuillmarkMainWindow::PaintMainWidget()
{
    const QSize size = m_pMainLabel->size();
    if (size.width() < 4 || size.height() < 4)
        return;
    QImage image = transparentImage(size);
    QPainter painter(&image);
    QLinearGradient gradient(0, 0, 0, size.height());
    gradient.setColorAt(0.0, QColor(245, 245, 245));
    gradient.setColorAt(0.01, QColor(195, 195, 205));
    gradient.setColorAt(0.05, QColor(240, 240, 250));
    gradient.setColorAt(0.5, QColor(240, 240, 250));
    gradient.setColorAt(0.8, QColor(240, 240, 250));
    gradient.setColorAt(1.0, QColor(51, 51, 60));
    painter.setBrush(gradient);
    painter.drawRoundedRect(QRectF(0.5, 0.5, size.width() - 2, size.height() - 2), 2, 2);
    painter.setPen(QColor(155, 175, 195));
    for (int y = 45; y <= 95; y += 10)
        painter.drawLine(2, y, size.width() - 2, y);
    painter.end();
    m_pMainLabel->setPixmap(QPixmap::fromImage(image));
    m_pMainLabel->resize(image.size());
}

void QuillmarkMainWindow::PaintRightHeaderLabel()
{
    const QSize size = m_pRightHeader->size();
    if (size.width() <= 0 || size.height() <= 0)
        return;
    const int w = size.width();
    const int h = size.height();
    QImage image = transparentImage(size);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QColor(140, 140, 150));
    QLinearGradient gradient(0, 0, 0, h);
    gradient.setColorAt(0.0, QColor(125, 125, 125));
    gradient.setColorAt(0.3, QColor(228, 228, 242));
    gradient.setColorAt(0.6, QColor(220, 220, 232));
    gradient.setColorAt(0.6, QColor(125, 125, 125));
    gradient.setColorAt(1.0, QColor(125, 125, 125));
    painter.setBrush(gradient);
    QPainterPath path(QPointF(0, h));
    path.cubicTo(QPointF(60, h), QPointF(0, h - 100), QPointF(60, 0));
    path.lineTo(w + 1, 0);
    path.lineTo(w + 1, h + 1);
    painter.drawPath(path);
    painter.end();
    m_pRightHeader->setPixmap(QPixmap::fromImage(image));
}

void QuillmarkMainWindow::PaintCategoryLineLabel()
{
    VlCatLabel::PaintLineLabel(m_pCategoryLine);
}
