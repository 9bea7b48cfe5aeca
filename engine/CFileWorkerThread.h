#pragma once

#include "app/CMyLog.h"
#include "engine/CFolderWalk.h"

#include <QString>
#include <QThread>

#include <atomic>

class CProduct;

// What the three file workers (copy, reset, backup removal) share: their own log, the folder
// walk, a stop request, the success of the last run and the announcement of its end.
class CFileWorkerThread : public QThread
{
    Q_OBJECT

public:
    bool GetSuccess() const { return m_bSuccess; }
    // Starts a run after Init. The stop request is cleared here, on the caller's thread, so that a
    // stop asked for right after the start is never lost. The tag comes back with the run's end.
    void Start(quint64 tag);
    // Asks a running walk to stop before its next file.
    void RequestStop() { m_bStopRequested = true; }
    static bool removeDir(const QString& path);

signals:
    void SignalFinished();
    // Emitted together with SignalFinished, with the tag the run was started with.
    void SignalRunEnded(quint64 tag);
    void terminated();

protected:
    explicit CFileWorkerThread(const QString& logFileName);

    // Stores the product and the name of its backup folders, "QMK_" + dataset + "_back".
    void SetProduct(CProduct* product);
    // The worker's own part of run().
    virtual void DoRun() = 0;

    bool m_bSuccess = false;
    std::atomic_bool m_bStopRequested{false};
    CProduct* m_pProduct = nullptr;
    CMyLog m_log;
    QString m_strBackupDirName;
    CFolderWalk m_walk;

private:
    void run() final;

    // Set as the last step of run(); a terminated run never gets there.
    bool m_bRunDone = false;
    quint64 m_runTag = 0;
};
