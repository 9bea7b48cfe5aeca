#pragma once

#include "app/VlAtom.h"
#include "model/CDataModel.h"

#include <QMainWindow>
#include <QPoint>
#include <QRect>

class CCategory;
class CvlFilterCmb;
class CvlHelpButton;
class CvlRemoveBackupButton;
class CvlResetButton;
class CvlSettingsButton;
class CvlUpdateButton;
class QGridLayout;
class QLabel;
class QScrollArea;
class SystemButton;
class VlActionLabel;
class VlCatLabel;
class VlCatPropsLabel;
class VlProdListLabel;

// The single top-level window: frameless, drawing its own chrome, owning the data model.
class QuillmarkMainWindow : public QMainWindow, public VlAtom
{
    Q_OBJECT

public:
    explicit QuillmarkMainWindow(QWidget* parent = nullptr);
    ~QuillmarkMainWindow() override;

    CDataModel* GetDataModel() { return &m_dataModel; }
    CCategory* GetSelectedCategory() const { return m_pSelectedCategory; }

    // Parts reached by the tests and the screenshot tool.
    VlProdListLabel* GetProdList() const { return m_pProdList; }
    VlCatPropsLabel* GetCatProps() const { return m_pCatProps; }
    CvlFilterCmb* GetFilter() const { return m_pFilter; }
    VlActionLabel* GetFilterCaption() const { return m_pFilterCaption; }
    QLabel* GetStatusLabel() const { return m_pStatus; }
    // Buttons in column order: All, Selected, X-Plane 10, X-Plane 11, FSX, FS2004, Prepar3D v2, v3, v4.
    QList<VlCatLabel*> GetCategoryButtons() const;
    VlCatLabel* GetCategoryButton(const QString& name) const;
    SystemButton* GetCloseButton() const { return m_pCloseButton; }
    SystemButton* GetMiniButton() const { return m_pMiniButton; }
    SystemButton* GetMaxiButton() const { return m_pMaxiButton; }
    SystemButton* GetNormButton() const { return m_pNormButton; }
    QList<QWidget*> GetActionButtons() const;
    QRect GetNormalGeometry() const { return m_normalGeometry; }
    bool IsFilterInHeader() const;

signals:
    void ChangeSelectedCategory(CCategory* category);
    void SignalChangeDataset(const QString& dataset);

public slots:
    void CloseWindowSlot();
    void MiniWindowSlot();
    void MaxiWindowSlot();
    void NormWindowSlot();
    void ClickedCatXPlane10Slot();
    void ClickedCatXPlane11Slot();
    void ClickedCatP3DV2Slot();
    void ClickedCatP3DV3Slot();
    void ClickedCatP3DV4Slot();
    void ClickedCatFSXSlot();
    void ClickedCatFS2004Slot();
    void ClickedCatAllSlot();
    void ClickedCatUpdateListSlot();
    void SelectCategory(CCategory* category);
    void ChangeDatasetFilterSlot(const QString& dataset);
    void retranslate() override;

protected:
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    // Left margin of the dataset filter while it stands in the header.
    static constexpr int st_filterMargin = 45;
    void CreateMainWidget();
    void CreateMainWidgetGrid();
    QGridLayout* CreateHeaderLayout();
    QGridLayout* CreateToolIconHeaderLayout();
    QGridLayout* CreateRightHeaderLayout();
    QGridLayout* CreateSystemButtonLayout();
    void CreateRightHeaderLabel();
    QGridLayout* CreateTitleLayout();
    QGridLayout* CreateFilterLayout();
    QGridLayout* CreateActionButtonLayout();
    QLabel* CreateMiddleLabel();
    QGridLayout* CreateCatsLayout();
    QGridLayout* CreateStatusLeisteLayout();
    void InitSlotSignal();
    void InitShortcuts();

    // Offers the simulator folders found for categories without a working one.
    void OfferFoundSimulators();
    // The status line: on the first start what was found and what still needs a folder.
    void UpdateStatus();

    void PaintMainWidget();
    void PaintRightHeaderLabel();
    void PaintCategoryLineLabel();
    void PaintAll();

    // What the last engine run did, kept so that the status line can say it in any language.
    enum class ERunKind
    {
        None,
        Download,
        Update,
        Reset,
        RemoveBackup
    };
    void RunEndedSlot(ERunKind kind);
    void DownloadFailedSlot();
    QString StatusText() const;
    // Until a run has ended: what the first start found, and what still needs a folder.
    QString FirstStartText() const;

    void ClickedCategory(VlCatLabel* clicked);
    int HeaderRowWidth() const;
    void PlaceFilter();

    CDataModel m_dataModel;
    CCategory* m_pSelectedCategory = nullptr;
    QPoint m_dragPosition;
    QLabel* m_pMainLabel = nullptr;
    QLabel* m_pStatus = nullptr;
    QLabel* m_pRightHeader = nullptr;
    QLabel* m_pTitle = nullptr;
    VlActionLabel* m_pFilterCaption = nullptr;
    QLabel* m_pCategoryLine = nullptr;
    VlCatLabel* m_pCatXPlane10 = nullptr;
    VlCatLabel* m_pCatXPlane11 = nullptr;
    VlCatLabel* m_pCatP3DV2 = nullptr;
    VlCatLabel* m_pCatP3DV3 = nullptr;
    VlCatLabel* m_pCatP3DV4 = nullptr;
    VlCatLabel* m_pCatFSX = nullptr;
    VlCatLabel* m_pCatFS2004 = nullptr;
    VlCatLabel* m_pCatAll = nullptr;
    VlCatLabel* m_pCatUpdateList = nullptr;
    VlCatPropsLabel* m_pCatProps = nullptr;
    VlProdListLabel* m_pProdList = nullptr;
    CvlUpdateButton* m_pUpdateButton = nullptr;
    CvlSettingsButton* m_pSettingsButton = nullptr;
    CvlResetButton* m_pResetButton = nullptr;
    CvlHelpButton* m_pHelpButton = nullptr;
    CvlRemoveBackupButton* m_pRemoveBackupButton = nullptr;
    QRect m_normalGeometry;
    ERunKind m_eLastRun = ERunKind::None;
    int m_iRunOk = 0;
    int m_iRunFailed = 0;
    QString m_strRunCycle;
    QString m_strRunProblem; // why a run that reached nothing failed
    CvlFilterCmb* m_pFilter = nullptr;
    SystemButton* m_pCloseButton = nullptr;
    SystemButton* m_pMiniButton = nullptr;
    SystemButton* m_pMaxiButton = nullptr;
    SystemButton* m_pNormButton = nullptr;
    QWidget* m_pFilterBox = nullptr;
    QGridLayout* m_pHeaderFilterGrid = nullptr;
    QGridLayout* m_pActionGrid = nullptr;
    QGridLayout* m_pLogoGrid = nullptr;
    QGridLayout* m_pProductGrid = nullptr;
    QScrollArea* m_pCatScroll = nullptr;
    // No settings file was there when the window was built.
    bool m_bFirstStart = false;
    // The categories a simulator search knows, in catalogue order.
    QStringList m_searchedCategories;
};
