// SPDX-License-Identifier: GPL-3.0-or-later
// Routing conditions as the tool reads them: which criteria a call meets, which condition takes
// it, and the warnings of the Routing page.
#include "routingrules.h"
#include "tagvalue.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace RoutingRules;

Q_DECLARE_METATYPE(RoutingRules::Criterion)
Q_DECLARE_METATYPE(RoutingRules::Outcome)
Q_DECLARE_METATYPE(RoutingRules::WarningKind)

namespace {

// A list row as the server sends it, with Options nested as a sized value.
QString row(int id, const QString &name, int order, const QString &options)
{
    QString r;
    AddVar(r, u"Id"_s, id);
    AddVar(r, u"Name"_s, name);
    AddVar(r, u"Order"_s, order);
    AddVar(r, u"Options"_s, options, true);
    return r;
}

Condition condition(const QString &name, int order, const QString &options)
{
    static int id = 0;
    return Condition::fromRecord(row(++id, name, order, options + u"{Destination=200}"_s));
}

// 2026-11-23 is a Monday.
QDateTime at(const QString &text)
{
    return QDateTime::fromString(text, u"yyyy-MM-dd HH:mm:ss"_s);
}

} // namespace

class tst_RoutingRules : public QObject
{
    Q_OBJECT

private slots:
    void criterion_data();
    void criterion();
    void firstFiring_data();
    void firstFiring();
    void shadowing_data();
    void shadowing();
    void pageWarnings_data();
    void pageWarnings();
};

void tst_RoutingRules::criterion_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("number"); // the caller, called or ext named by the criterion
    QTest::addColumn<QString>("when");
    QTest::addColumn<Criterion>("criterion");
    QTest::addColumn<Outcome>("expected");

    const auto C = Criterion::Caller;
    const auto M = Outcome::Matched, N = Outcome::NotMatched;
    const QString mon = u"2026-11-23 10:00:00"_s;
    QTest::newRow("empty matches any number") << u""_s << u"0123"_s << mon << C << M;
    QTest::newRow("exact") << u"{Caller=0123}"_s << u"0123"_s << mon << C << M;
    QTest::newRow("exact, other number") << u"{Caller=0123}"_s << u"01234"_s << mon << C << N;
    QTest::newRow("trailing star") << u"{Caller=01*}"_s << u"01999"_s << mon << C << M;
    QTest::newRow("trailing star, other start") << u"{Caller=01*}"_s << u"02999"_s << mon << C << N;
    QTest::newRow("leading star") << u"{Called=*99}"_s << u"0123499"_s << mon << Criterion::Called << M;
    QTest::newRow("inner star") << u"{Called=0*9}"_s << u"0123"_s << mon << Criterion::Called << N;
    QTest::newRow("star matches nothing too") << u"{Ext=2*0}"_s << u"20"_s << mon << Criterion::Ext << M;
    QTest::newRow("second alternative") << u"{Ext=100,2*}"_s << u"250"_s << mon << Criterion::Ext << M;
    QTest::newRow("blanks around alternatives") << u"{Ext= 100 , 250 }"_s << u"250"_s << mon << Criterion::Ext << M;
    QTest::newRow("no alternative") << u"{Ext=100,2*}"_s << u"300"_s << mon << Criterion::Ext << N;
    QTest::newRow("case") << u"{Caller=Anon*}"_s << u"ANONYMOUS"_s << mon << C << M;

    const auto D = Criterion::Date;
    QTest::newRow("date d/m/yyyy") << u"{Date=23/11/2026}"_s << u""_s << mon << D << M;
    QTest::newRow("date d.m.yy") << u"{Date=1.1.26, 23.11.26}"_s << u""_s << mon << D << M;
    QTest::newRow("date d-m-yy") << u"{Date=23-11-26}"_s << u""_s << mon << D << M;
    QTest::newRow("date iso") << u"{Date=2026-11-23}"_s << u""_s << mon << D << M;
    QTest::newRow("date other day") << u"{Date=24/11/2026,2026-11-22}"_s << u""_s << mon << D << N;
    QTest::newRow("date other year") << u"{Date=23/11/25}"_s << u""_s << mon << D << N;
    QTest::newRow("date empty") << u""_s << u""_s << mon << D << M;

    const auto T = Criterion::Time;
    const QString times = u"{Time=09:00-11:30, 14:00-17:00}"_s;
    QTest::newRow("time at start") << times << u""_s << u"2026-11-23 09:00:00"_s << T << M;
    QTest::newRow("time before start") << times << u""_s << u"2026-11-23 08:59:59"_s << T << N;
    QTest::newRow("time last minute") << times << u""_s << u"2026-11-23 11:29:59"_s << T << M;
    QTest::newRow("time at end") << times << u""_s << u"2026-11-23 11:30:00"_s << T << N;
    QTest::newRow("time second range") << times << u""_s << u"2026-11-23 16:00:00"_s << T << M;
    QTest::newRow("time between ranges") << times << u""_s << u"2026-11-23 12:00:00"_s << T << N;
    const QString night = u"{Time=22:00-6:00}"_s;
    QTest::newRow("night before midnight") << night << u""_s << u"2026-11-23 23:30:00"_s << T << M;
    QTest::newRow("night after midnight") << night << u""_s << u"2026-11-23 05:59:00"_s << T << M;
    QTest::newRow("night at end") << night << u""_s << u"2026-11-23 06:00:00"_s << T << N;
    QTest::newRow("night in the day") << night << u""_s << u"2026-11-23 12:00:00"_s << T << N;
    QTest::newRow("night at start") << night << u""_s << u"2026-11-23 22:00:00"_s << T << M;

    const auto Y = Criterion::Day;
    // 2026-11-23 Monday ... 2026-11-29 Sunday.
    const struct {
        int day;
        int matchedFrom, matchedTo; // 23..29
    } days[] = {{-1, 23, 29}, {0, 23, 29}, {1, 23, 23}, {2, 24, 24}, {3, 25, 25}, {4, 26, 26},
                {5, 27, 27}, {6, 28, 28}, {7, 29, 29}, {8, 23, 27}, {9, 28, 29}};
    for (const auto &d : days) {
        for (int date = 23; date <= 29; ++date) {
            const bool in = date >= d.matchedFrom && date <= d.matchedTo;
            QTest::addRow("day %d on the %d", d.day, date)
                << (u"{Day="_s + QString::number(d.day) + u'}') << u""_s
                << (u"2026-11-"_s + QString::number(date) + u" 10:00:00"_s) << Y << (in ? M : N);
        }
    }
}

void tst_RoutingRules::criterion()
{
    QFETCH(QString, options);
    QFETCH(QString, number);
    QFETCH(QString, when);
    QFETCH(Criterion, criterion);
    QFETCH(Outcome, expected);

    Call call;
    call.caller = call.called = call.ext = number;
    call.when = at(when);
    call.book = BookAnswer::Found;
    const Evaluation e = evaluate(condition(u"R"_s, 1, options), call);
    QCOMPARE(e.outcome(criterion), expected);
    QCOMPARE(e.fires, expected == Outcome::Matched);
}

void tst_RoutingRules::firstFiring_data()
{
    QTest::addColumn<QStringList>("options"); // one condition each, in list order
    QTest::addColumn<QList<int>>("orders");
    QTest::addColumn<int>("book");            // BookAnswer
    QTest::addColumn<int>("firing");
    QTest::addColumn<QList<int>>("mayFireFirst");

    const QStringList three = {u"{Caller=9*}"_s, u"{Caller=01*}{Day=9}"_s, u"{Caller=01*}{Time=08:00-18:00}"_s,
                               u""_s};
    QTest::newRow("the third fires") << three << QList<int>{1, 2, 3, 4} << int(BookAnswer::Found) << 2 << QList<int>{};
    QTest::newRow("in Order, not in list order")
        << three << QList<int>{1, 2, 9, 5} << int(BookAnswer::Found) << 3 << QList<int>{};

    const QStringList books = {u"{Caller=01*}{AB=VIP}"_s, u"{Caller=02*}{AB=Staff}"_s, u"{Caller=0*}"_s};
    QTest::newRow("book unknown: may fire first") << books << QList<int>{1, 2, 3} << int(BookAnswer::Unknown) << 2
                                                  << QList<int>{0};
    QTest::newRow("book found") << books << QList<int>{1, 2, 3} << int(BookAnswer::Found) << 0 << QList<int>{};
    QTest::newRow("book not found") << books << QList<int>{1, 2, 3} << int(BookAnswer::NotFound) << 2
                                    << QList<int>{};
    QTest::newRow("none fires") << QStringList{u"{Caller=9*}"_s} << QList<int>{1} << int(BookAnswer::Found) << -1
                                << QList<int>{};
}

void tst_RoutingRules::firstFiring()
{
    QFETCH(QStringList, options);
    QFETCH(QList<int>, orders);
    QFETCH(int, book);
    QFETCH(int, firing);
    QFETCH(QList<int>, mayFireFirst);

    QList<Condition> conditions;
    for (int i = 0; i < options.size(); ++i)
        conditions.append(condition(u"R"_s + QString::number(i), orders[i], options[i]));
    Call call;
    call.caller = u"0123"_s;
    call.when = at(u"2026-11-23 10:00:00"_s);
    call.book = BookAnswer(book);

    const Firing result = RoutingRules::firstFiring(conditions, call);
    QCOMPARE(result.index, firing);
    QCOMPARE(result.mayFireFirst, mayFireFirst);
    for (int i : mayFireFirst) {
        const Evaluation e = evaluate(conditions[i], call);
        QCOMPARE(e.outcome(Criterion::AddressBook), Outcome::NotEvaluated);
        QVERIFY(e.mayFire && !e.fires);
    }
    if (firing >= 0)
        QVERIFY(evaluate(conditions[firing], call).fires);
}

void tst_RoutingRules::shadowing_data()
{
    QTest::addColumn<QString>("earlier");
    QTest::addColumn<QString>("later");
    QTest::addColumn<bool>("shadowed");

    QTest::newRow("after a catch-all") << u""_s << u"{Caller=0123}{Day=3}{Time=09:00-10:00}"_s << true;
    QTest::newRow("star over anything") << u"{Caller=*}"_s << u"{Caller=01*,5}"_s << true;
    QTest::newRow("prefix over longer prefix") << u"{Caller=01*}"_s << u"{Caller=0123*, 019}"_s << true;
    QTest::newRow("suffix over number") << u"{Called=*99}"_s << u"{Called=12399}"_s << true;
    QTest::newRow("suffix not over other ending") << u"{Called=*99}"_s << u"{Called=*98, 12399}"_s << false;
    QTest::newRow("same alternatives, case") << u"{Ext=100,Reception}"_s << u"{Ext=reception , 100}"_s << true;
    QTest::newRow("only overlapping numbers") << u"{Caller=01*}"_s << u"{Caller=0*}"_s << false;
    QTest::newRow("overlapping alternatives") << u"{Ext=100,101}"_s << u"{Ext=101,102}"_s << false;
    QTest::newRow("prefix and suffix overlap") << u"{Caller=01*}"_s << u"{Caller=*99}"_s << false;
    QTest::newRow("narrower earlier") << u"{Caller=0123}"_s << u""_s << false;
    QTest::newRow("weekdays over Tuesday") << u"{Day=8}"_s << u"{Day=2}"_s << true;
    QTest::newRow("weekends over Sunday") << u"{Day=9}"_s << u"{Day=7}"_s << true;
    QTest::newRow("weekdays not over Saturday") << u"{Day=8}"_s << u"{Day=6}"_s << false;
    QTest::newRow("any day over weekends") << u"{Day=-1}"_s << u"{Day=9}"_s << true;
    QTest::newRow("Monday not over weekdays") << u"{Day=1}"_s << u"{Day=8}"_s << false;
    QTest::newRow("dates superset") << u"{Date=1/1/26, 2026-12-25}"_s << u"{Date=25.12.2026}"_s << true;
    QTest::newRow("dates overlap") << u"{Date=1/1/26}"_s << u"{Date=1/1/26,2/1/26}"_s << false;
    QTest::newRow("dates against any date") << u"{Date=1/1/26}"_s << u""_s << false;
    QTest::newRow("time union covers") << u"{Time=08:00-12:00,12:00-18:00}"_s << u"{Time=11:00-13:00}"_s << true;
    QTest::newRow("time partly covered") << u"{Time=08:00-12:00}"_s << u"{Time=11:00-13:00}"_s << false;
    QTest::newRow("night covers early morning") << u"{Time=22:00-07:00}"_s << u"{Time=23:00-01:00, 5:00-6:00}"_s
                                                << true;
    QTest::newRow("night not over evening") << u"{Time=22:00-07:00}"_s << u"{Time=21:00-23:00}"_s << false;
    QTest::newRow("whole day in two ranges") << u"{Time=00:00-12:00, 12:00-24:00}"_s << u""_s << true;
    QTest::newRow("same book") << u"{AB=VIP}"_s << u"{AB=vip}{Caller=01*}"_s << true;
    QTest::newRow("book over none") << u"{AB=VIP}"_s << u""_s << false;
    QTest::newRow("other book") << u"{AB=VIP}"_s << u"{AB=Staff}"_s << false;
    QTest::newRow("one criterion narrower") << u"{Caller=01*}{Day=8}"_s << u"{Caller=012}{Day=9}"_s << false;
}

void tst_RoutingRules::shadowing()
{
    QFETCH(QString, earlier);
    QFETCH(QString, later);
    QFETCH(bool, shadowed);

    // Listed later first: Order decides which is earlier.
    const QList<Condition> conditions = {condition(u"Later"_s, 20, later), condition(u"Earlier"_s, 10, earlier)};
    QList<Warning> found;
    for (const Warning &w : check(conditions, {u"VIP"_s, u"Staff"_s}))
        if (w.kind == WarningKind::Shadowed)
            found.append(w);
    QCOMPARE(found.size(), shadowed ? 1 : 0);
    if (shadowed) {
        QCOMPARE(found[0].condition, 0);
        QCOMPARE(found[0].other, 1);
        QCOMPARE(found[0].text, u"The routing condition \"Later\" can never be used: the earlier condition "
                                u"\"Earlier\" already takes every call it matches."_s);
    }
}

void tst_RoutingRules::pageWarnings_data()
{
    QTest::addColumn<QString>("options"); // of the second condition, after "{Caller=9*}" named "Night"
    QTest::addColumn<QString>("name");
    QTest::addColumn<WarningKind>("kind");
    QTest::addColumn<QString>("text");

    QTest::newRow("no destination") << u"{Caller=1}{Destination= }"_s << u"Day"_s << WarningKind::EmptyDestination
                                    << u"The routing condition \"Day\" has no destination."_s;
    QTest::newRow("unknown book") << u"{AB=Suppliers}{Destination=200}"_s << u"Day"_s
                                  << WarningKind::UnknownAddressBook
                                  << u"The routing condition \"Day\" looks the caller up in the address book "
                                     u"\"Suppliers\", which does not exist."_s;
    QTest::newRow("bad date") << u"{Date=1/1/26, 31/2/26}{Destination=200}"_s << u"Day"_s
                              << WarningKind::UnreadableDate
                              << u"The routing condition \"Day\" has a date that cannot be read: \"31/2/26\"."_s;
    QTest::newRow("bad date form") << u"{Date=1/1/126}{Destination=200}"_s << u"Day"_s << WarningKind::UnreadableDate
                                   << u"The routing condition \"Day\" has a date that cannot be read: \"1/1/126\"."_s;
    QTest::newRow("bad time") << u"{Time=09:00-12:00, 25:00-26:00}{Destination=200}"_s << u"Day"_s
                              << WarningKind::UnreadableTime
                              << u"The routing condition \"Day\" has a time range that cannot be read: "
                                 u"\"25:00-26:00\"."_s;
    QTest::newRow("time without end") << u"{Time=9:00}{Destination=200}"_s << u"Day"_s << WarningKind::UnreadableTime
                                      << u"The routing condition \"Day\" has a time range that cannot be read: "
                                         u"\"9:00\"."_s;
    QTest::newRow("same name") << u"{Caller=1}{Destination=200}"_s << u"NIGHT"_s << WarningKind::DuplicateName
                               << u"The routing condition \"NIGHT\" has the same name as an earlier one "
                                  u"(\"Night\")."_s;
}

void tst_RoutingRules::pageWarnings()
{
    QFETCH(QString, options);
    QFETCH(QString, name);
    QFETCH(WarningKind, kind);
    QFETCH(QString, text);

    const QList<Condition> conditions = {
        Condition::fromRecord(row(1, u"Night"_s, 1, u"{Caller=9*}{AB=vip}{Destination=300}"_s)),
        Condition::fromRecord(row(2, name, 2, options))};
    const QList<Warning> warnings = check(conditions, {u"VIP"_s});
    QCOMPARE(warnings.size(), 1);
    QCOMPARE(warnings[0].kind, kind);
    QCOMPARE(warnings[0].condition, 1);
    QCOMPARE(warnings[0].text, text);
}

QTEST_GUILESS_MAIN(tst_RoutingRules)
#include "tst_routingrules.moc"
