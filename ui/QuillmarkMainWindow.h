#pragma once

#include "app/VlAtom.h"

#include <QMainWindow>

// The single top-level window: frameless, drawing its own chrome.
class QuillmarkMainWindow : public QMainWindow, public VlAtom
{
    Q_OBJECT

public:
    explicit QuillmarkMainWindow(QWidget* parent = nullptr);
    ~QuillmarkMainWindow() override;
};
