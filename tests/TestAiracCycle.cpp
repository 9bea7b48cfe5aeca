#include "model/CAiracCycle.h"

#include <QTest>

// Cycle dates against published effective dates, and the walk through every cycle from 1901.
class TestAiracCycle : public QObject
{
    Q_OBJECT

private slots:
    void effectiveDate_data()
    {
        QTest::addColumn<QString>("cycle");
        QTest::addColumn<QDate>("effective"); // null: names no cycle

        QTest::newRow("first known") << "0001" << QDate(2000, 1, 27);
        QTest::newRow("1401") << "1401" << QDate(2014, 1, 9);
        QTest::newRow("last of 2014") << "1413" << QDate(2014, 12, 11);
        QTest::newRow("1801") << "1801" << QDate(2018, 1, 4);
        QTest::newRow("2001") << "2001" << QDate(2020, 1, 2);
        QTest::newRow("2020 has a 14th") << "2014" << QDate(2020, 12, 31);
        QTest::newRow("2101") << "2101" << QDate(2021, 1, 28);
        QTest::newRow("2401") << "2401" << QDate(2024, 1, 25);
        QTest::newRow("2501") << "2501" << QDate(2025, 1, 23);
        QTest::newRow("2601") << "2601" << QDate(2026, 1, 22);
        QTest::newRow("2043 has a 14th") << "4314" << QDate(2043, 12, 31);
        QTest::newRow("last known") << "9913" << QDate(2099, 12, 17);

        QTest::newRow("14th of a 13-cycle year") << "1414" << QDate();
        QTest::newRow("15th") << "2015" << QDate();
        QTest::newRow("cycle 00") << "2000" << QDate();
        QTest::newRow("three digits") << "201" << QDate();
        QTest::newRow("five digits") << "20011" << QDate();
        QTest::newRow("letter") << "20a1" << QDate();
        QTest::newRow("space") << " 201" << QDate();
        QTest::newRow("sign") << "+201" << QDate();
        QTest::newRow("other digits") << QString::fromUtf8("\xd9\xa2\xd9\xa0\xd9\xa0\xd9\xa1") << QDate();
    }

    void effectiveDate()
    {
        QFETCH(QString, cycle);
        QFETCH(QDate, effective);

        QCOMPARE(CAiracCycle::EffectiveDate(cycle), effective);
        QCOMPARE(CAiracCycle::LastDay(cycle), effective.isValid() ? effective.addDays(27) : QDate());
        QCOMPARE(CAiracCycle::DaysExpired(cycle, QDate(2100, 6, 1)) >= 0, effective.isValid());
        if (effective.isValid()) {
            QCOMPARE(CAiracCycle::CycleOn(effective), cycle);
            // Before the first cycle and after the last one no cycle is known.
            QCOMPARE(CAiracCycle::CycleOn(effective.addDays(-1)).isEmpty(), cycle == QLatin1String("0001"));
            QCOMPARE(CAiracCycle::CycleOn(effective.addDays(28)).isEmpty(), cycle == QLatin1String("9913"));
        }
    }

    void daysExpired_data()
    {
        QTest::addColumn<QString>("cycle");
        QTest::addColumn<QDate>("today");
        QTest::addColumn<int>("days"); // -1: in force, not yet, or no cycle

        QTest::newRow("first day") << "2601" << QDate(2026, 1, 22) << -1;
        QTest::newRow("last day") << "2601" << QDate(2026, 2, 18) << -1;
        QTest::newRow("next one took effect") << "2601" << QDate(2026, 2, 19) << 0;
        QTest::newRow("over a year's end") << "2513" << QDate(2026, 2, 1) << 10;
        QTest::newRow("not yet in force") << "2605" << QDate(2026, 1, 1) << -1;
        QTest::newRow("no cycle") << "unknown" << QDate(2026, 1, 1) << -1;
        QTest::newRow("no day") << "2601" << QDate() << -1;
    }

    void daysExpired()
    {
        QFETCH(QString, cycle);
        QFETCH(QDate, today);
        QFETCH(int, days);
        QCOMPARE(CAiracCycle::DaysExpired(cycle, today), days);
    }

    // Each cycle starts on a Thursday the day after the one before ends, and the numbers run on
    // without a gap: 13 a year, 14 in 2020.
    void everyCycleFrom1901To2613()
    {
        QString cycle = QStringLiteral("1901");
        QMap<int, int> perYear;
        while (cycle <= QLatin1String("2613") && perYear.size() < 10) {
            const QDate effective = CAiracCycle::EffectiveDate(cycle);
            const QDate last = CAiracCycle::LastDay(cycle);
            QVERIFY2(effective.isValid(), qPrintable(cycle));
            QCOMPARE(effective.dayOfWeek(), int(Qt::Thursday));
            QCOMPARE(effective.year(), 2000 + cycle.leftRef(2).toInt());
            QCOMPARE(effective.daysTo(last), qint64(27));
            QCOMPARE(CAiracCycle::CycleOn(effective), cycle);
            QCOMPARE(CAiracCycle::CycleOn(last), cycle);
            const QString next = CAiracCycle::CycleOn(last.addDays(1));
            QCOMPARE(CAiracCycle::EffectiveDate(next), last.addDays(1));
            const bool newYear = next.leftRef(2) != cycle.leftRef(2);
            QCOMPARE(next.midRef(2).toInt(), newYear ? 1 : cycle.midRef(2).toInt() + 1);
            ++perYear[effective.year()];
            cycle = next;
        }
        QCOMPARE(cycle, QStringLiteral("2701"));
        QCOMPARE(perYear.keys(), (QList<int>{2019, 2020, 2021, 2022, 2023, 2024, 2025, 2026}));
        for (auto it = perYear.cbegin(); it != perYear.cend(); ++it)
            QCOMPARE(it.value(), it.key() == 2020 ? 14 : 13);
    }
};

QTEST_MAIN(TestAiracCycle)
#include "TestAiracCycle.moc"
