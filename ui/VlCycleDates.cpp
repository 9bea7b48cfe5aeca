#include "ui/VlCycleDates.h"

#include "app/Application.h"
#include "model/CAiracCycle.h"

#include <QLocale>

QDate VlCycleDates::st_today;

QDate VlCycleDates::Today()
{
    return st_today.isValid() ? st_today : QDate::currentDate();
}

void VlCycleDates::SetToday(const QDate& day)
{
    st_today = day;
}

QString VlCycleDates::Validity(const QString& cycle)
{
    const QDate first = CAiracCycle::EffectiveDate(cycle);
    const QDate last = CAiracCycle::LastDay(cycle);
    if (!first.isValid())
        return QString();
    // Month names from the interface language, the order of day, month and year from its translation.
    const QLocale locale(Application::GetLanguage());
    const QString withYear = tr("d MMM yyyy", "date format: day, short month name, year");
    const QString withoutYear = tr("d MMM", "date format: day and short month name");
    const QString from = locale.toString(first, first.year() == last.year() ? withoutYear : withYear);
    return tr("valid %1 – %2").arg(from, locale.toString(last, withYear));
}

QString VlCycleDates::Expiry(const QString& cycle, const QDate& today)
{
    const int days = CAiracCycle::DaysExpired(cycle, today);
    if (days < 0)
        return QString();
    if (days == 0)
        return tr("expired today");
    return tr("expired %n day(s) ago", nullptr, days);
}
