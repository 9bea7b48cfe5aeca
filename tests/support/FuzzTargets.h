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

// "catalogue", "settings", "cycle_info", "version_list", "mac_version"
QStringList names();
// Null for an unknown name.
Entry entry(const QString& name);

// bin/base_ini.xml
QString catalogue(const QByteArray& bytes);
// bin/prop_ini.xml, beside a fixed catalogue
QString settings(const QByteArray& bytes);
// a product's cycle_info.txt and its backup copy
QString cycleInfo(const QByteArray& bytes);
// the server's versionList.txt, then the same file as the local copy
QString versionList(const QByteArray& bytes);
// the download server's mac_version.txt
QString macVersion(const QByteArray& bytes);
} // namespace FuzzTargets
