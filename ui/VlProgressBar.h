#pragma once

#include <QProgressBar>

// The progress bar of every dialog: one look idle, running and finished, whether or not the
// dialog has it enabled, and no "0%" on a bar that has not started.
class VlProgressBar : public QProgressBar
{
    Q_OBJECT

public:
    explicit VlProgressBar(QWidget* parent = nullptr);
};
