#include "model/EQMKProductInstallState.h"

void RegisterInstallStateMetaType()
{
    static const int id = qRegisterMetaType<EQMKProductInstallState>("EQMKProductInstallState");
    Q_UNUSED(id)
}
