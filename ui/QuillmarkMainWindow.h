#pragma once

#include "app/VlAtom.h"
#include "model/CDataModel.h"

#include <QMainWindow>

// The single top-level window: frameless, drawing its own chrome.
class QuillmarkMainWindow : public QMainWindow, public VlAtom
{
    Q_OBJECT

public:
    explicit QuillmarkMainWindow(QWidget* parent = nullptr);
    ~QuillmarkMainWindow() override;

    CDataModel* GetDataModel() { return &m_dataModel; }

private:
    CDataModel m_dataModel;
};
