#pragma once

#include <QMetaType>

// What the update engine is doing with a product, or last did to it. The numbers are stable:
// every layer compares them as such.
enum EQMKProductInstallState
{
    QMK_STATE_INSTALL_RUN = 1,
    QMK_STATE_RESET_RUN = 2,
    QMK_STATE_REMOVE_BACKUP_RUN = 3,
    QMK_STATE_NOT_INSTALLED = 4,
    QMK_STATE_INSTALL_OK = 5,
    QMK_STATE_INSTALL_ERROR = 6,
    QMK_STATE_INSTALL_WARNING = 7,
    QMK_STATE_UPDATE_AVAILABLE = 8
};
Q_DECLARE_METATYPE(EQMKProductInstallState)

// Makes the state usable in queued connections; safe to call any number of times.
void RegisterInstallStateMetaType();
