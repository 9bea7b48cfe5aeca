#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// Entry points shared by the libFuzzer harnesses (tests/fuzz) and the corpus replay test. Each
// takes the bytes of one file, as a user's disk or the server could hand them over, and takes
// them the way the program does: read, resolve, save, read again. It returns an empty text when
// every check held, else what went wrong.
namespace FuzzTargets {
using Entry = QString (*)(const QByteArray& bytes);

// "catalogue" (bin/base_ini.xml), "settings" (bin/prop_ini.xml beside a fixed catalogue),
// "cycle_info" (a product's file and its backup copy), "version_list" (the server's list, then the
// same file as the local copy), "mac_version" (the download server's version file), "minisig" (a
// signature file, checked against a signed version list)
QStringList names();
// Null for an unknown name.
Entry entry(const QString& name);
} // namespace FuzzTargets
