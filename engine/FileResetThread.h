#pragma once

#include "engine/CFileWorkerThread.h"

#include <QString>

class CProduct;

// Puts back the files an install replaced: walks a product's targets and moves the content of
// every backup folder into its own folder. The product's cycle file comes back last, and only then
// are the emptied backup folders deleted, so that a reset cut off at any point can simply be run
// again. A backup folder whose files could not all be put back is kept.
class FileResetThread : public CFileWorkerThread
{
    Q_OBJECT

public:
    FileResetThread();

    // Prepares a run; call only while the thread is not running. `cycleFile` is the product's
    // cycle file, put back after every other file. `finishing` finishes a reset that was cut off:
    // the emptied backup folders are then looked for below every folder, since some above them
    // may already be gone.
    void Init(CProduct* product, const QString& cycleFile = QString(), bool finishing = false);
    // Runs the reset on the calling thread (to finish an interrupted one before anything else).
    void RunHere();

    bool ResetProductFiles();
    bool ResetProductFilesSub(QString target);
    void resetFolder(const QString& backupFolder, const QString& targetFolder);

protected:
    // Success is the result of the last install target, and false when any file could not be put back.
    void DoRun() override;

private:
    bool RestoreCycleFile();
    void RemoveEmptiedBackups(const QString& target);

    QString m_strCycleFile;
    bool m_bFinishing = false;
};
