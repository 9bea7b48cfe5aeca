#include "model/CAiracCycle.h"

namespace {
// Cycle 2001 took effect on 2 January 2020; every other date follows from it.
const QDate st_reference(2020, 1, 2);
constexpr qint64 st_period = 28;
constexpr int st_firstYear = 2000;
constexpr int st_lastYear = 2099;

// Whole periods from the reference to the day, rounded down (towards the past).
qint64 periodsBefore(const QDate& day)
{
    const qint64 days = st_reference.daysTo(day);
    return days >= 0 ? days / st_period : -((-days + st_period - 1) / st_period);
}

// The first cycle that takes effect in the year.
QDate firstOfYear(int year)
{
    const QDate newYear(year, 1, 1);
    QDate start = st_reference.addDays(periodsBefore(newYear) * st_period);
    if (start < newYear)
        start = start.addDays(st_period);
    return start;
}
} // namespace

QDate CAiracCycle::EffectiveDate(const QString& cycle)
{
    if (cycle.size() != 4)
        return QDate();
    for (const QChar c : cycle)
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return QDate();
    const int year = st_firstYear + cycle.leftRef(2).toInt();
    const int number = cycle.midRef(2).toInt();
    if (number < 1)
        return QDate();
    const QDate effective = firstOfYear(year).addDays((number - 1) * st_period);
    // A 14th cycle exists only in the years whose first cycle comes early enough.
    return effective.year() == year ? effective : QDate();
}

QDate CAiracCycle::LastDay(const QString& cycle)
{
    const QDate effective = EffectiveDate(cycle);
    return effective.isValid() ? effective.addDays(st_period - 1) : QDate();
}

QString CAiracCycle::CycleOn(const QDate& day)
{
    if (!day.isValid())
        return QString();
    const QDate effective = st_reference.addDays(periodsBefore(day) * st_period);
    const int year = effective.year();
    if (year < st_firstYear || year > st_lastYear)
        return QString();
    const qint64 number = firstOfYear(year).daysTo(effective) / st_period + 1;
    return QStringLiteral("%1%2").arg(year % 100, 2, 10, QLatin1Char('0')).arg(number, 2, 10, QLatin1Char('0'));
}

int CAiracCycle::DaysExpired(const QString& cycle, const QDate& today)
{
    const QDate last = LastDay(cycle);
    if (!last.isValid() || !today.isValid() || today <= last)
        return -1;
    return int(last.daysTo(today)) - 1;
}
