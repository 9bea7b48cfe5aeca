#pragma once

#include <QCoreApplication>
#include <QDate>
#include <QString>

// What the user interface says about a cycle's dates, in the language's date format, and the one
// place below which nothing reads the clock.
class VlCycleDates
{
    Q_DECLARE_TR_FUNCTIONS(VlCycleDates)

public:
    // Today as the user interface sees it: the system's date unless a day was set.
    static QDate Today();
    // Fixes today, for tests and pictures; a null date gives the system's date back.
    static void SetToday(const QDate& day);

    // "valid 22 Jan – 18 Feb 2026"; empty for digits that name no cycle.
    static QString Validity(const QString& cycle);
    // "expired 12 days ago"; empty while the cycle is in force or for no cycle.
    static QString Expiry(const QString& cycle, const QDate& today);

private:
    static QDate st_today;
};
