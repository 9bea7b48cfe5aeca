#pragma once

#include "engine/CFileWorkerThread.h"

#include <QString>

class CProduct;

// Puts back the files an install replaced: walks a product's targets and moves the content of
// every backup folder into its own folder, then deletes that backup folder. A backup folder whose
// files could not all be put back is kept.
class FileResetThread : public CFileWorkerThread
{
    Q_OBJECT

public:
    FileResetThread();

    // Prepares a run; call only while the thread is not running.
    void Init(CProduct* product);

    bool ResetProductFiles();
    bool ResetProductFilesSub(QString target);
    void resetFolder(const QString& backupFolder, const QString& targetFolder);

protected:
    // Success is the result of the last install target, and false when any file could not be put back.
    void DoRun() override;
};
