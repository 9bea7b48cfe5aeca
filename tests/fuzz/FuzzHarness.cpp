// libFuzzer harness for one entry of FuzzTargets, chosen at build time (QMK_FUZZ_TARGET). A
// failed check aborts, so that libFuzzer keeps the input that caused it.
#include "support/FuzzTargets.h"

#include <QCoreApplication>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {
FuzzTargets::Entry st_entry = nullptr;
}

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static QCoreApplication app(*argc, *argv);
    st_entry = FuzzTargets::entry(QStringLiteral(QMK_FUZZ_TARGET));
    if (!st_entry) {
        std::fprintf(stderr, "unknown fuzz target %s\n", QMK_FUZZ_TARGET);
        std::abort();
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString problem = st_entry(QByteArray(reinterpret_cast<const char*>(data), int(size)));
    if (!problem.isEmpty()) {
        std::fprintf(stderr, "%s: %s\n", QMK_FUZZ_TARGET, qPrintable(problem));
        std::abort();
    }
    return 0;
}
