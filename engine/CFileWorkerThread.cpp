#include "engine/CFileWorkerThread.h"

#include "model/CFileTree.h"
#include "model/CProduct.h"

CFileWorkerThread::CFileWorkerThread(const QString& logFileName) : QThread(nullptr), m_walk(m_log, m_bStopRequested)
{
    m_log.SetFileName(logFileName);
    m_log.WriteString(QStringLiteral("Init"), false);
    // The end is announced once the thread has wound down, so that the receiver may start the next
    // run at once; a terminated run announces nothing.
    connect(
        this, &QThread::finished, this,
        [this] {
            if (!m_bRunDone)
                return;
            emit SignalFinished();
            emit SignalRunEnded(m_runTag);
        },
        Qt::DirectConnection);
}

void CFileWorkerThread::SetProduct(CProduct* product)
{
    m_bSuccess = false;
    m_pProduct = product;
    if (product)
        m_strBackupDirName = QStringLiteral("QMK_") + product->GetDataset() + QStringLiteral("_back");
}

void CFileWorkerThread::Start(quint64 tag)
{
    m_runTag = tag;
    m_bRunDone = false;
    m_bStopRequested = false;
    start(QThread::InheritPriority);
}

void CFileWorkerThread::run()
{
    DoRun();
    m_bRunDone = true;
}

bool CFileWorkerThread::removeDir(const QString& path)
{
    return CFileTree::removeDir(path);
}
