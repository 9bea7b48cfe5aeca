#pragma once

#include <QDate>
#include <QString>

// The dates of an AIRAC cycle ("2601"): every cycle takes effect on a Thursday, 28 days after the
// one before; the first two digits are the year it takes effect in (2000 to 2099), the last two
// its number within that year, counted from 01. Nothing here reads the clock: callers pass today.
class CAiracCycle
{
public:
    // The day the cycle takes effect; null for digits that name no cycle.
    static QDate EffectiveDate(const QString& cycle);
    // The day before the next cycle takes effect; null for digits that name no cycle.
    static QDate LastDay(const QString& cycle);
    // The cycle in force on the day; empty before the first cycle of 2000 and after the last of 2099.
    static QString CycleOn(const QDate& day);
    // Days since the cycle went out of force (0 on the day the next one took effect); -1 while it
    // is in force or not yet, and for digits that name no cycle.
    static int DaysExpired(const QString& cycle, const QDate& today);
};
