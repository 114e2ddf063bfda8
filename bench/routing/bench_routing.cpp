// SPDX-License-Identifier: GPL-3.0-or-later
// 1,000 routing conditions with varied criteria, the one that takes the call near the end.
// firstFiring against the plain loop that re-reads every Options string with GetVar per criterion
// per call; the page's warnings against reading the 1,000 rows into conditions once.
#include "routingrules.h"
#include "tagvalue.h"

#include <benchmark/benchmark.h>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace RoutingRules;

namespace {

constexpr int Count = 1000;
constexpr int FiringAt = 990;

QString optionsFor(int i)
{
    QString options;
    if (i == FiringAt) {
        AddVar(options, u"Caller"_s, u"0044*"_s);
        AddVar(options, u"Day"_s, 8);
        AddVar(options, u"Time"_s, u"08:00-18:00"_s);
        AddVar(options, u"Destination"_s, u"200"_s);
        return options;
    }
    // Every other condition misses the call on exactly one criterion, a different one in turn.
    const int miss = i % 6;
    AddVar(options, u"Caller"_s, miss == 0 ? u"0033*, 0049*"_s : u"00*, *9"_s);
    AddVar(options, u"Called"_s, miss == 1 ? QString(u"8"_s + QString::number(i) + u'*') : u"*"_s);
    AddVar(options, u"Ext"_s, miss == 2 ? QString::number(100 + i) : u""_s);
    AddVar(options, u"Day"_s, miss == 3 ? 9 : (i % 3 == 0 ? 0 : 8));
    AddVar(options, u"Date"_s, miss == 4 ? u"24/12/26, 2026-12-31"_s : u""_s);
    AddVar(options, u"Time"_s, miss == 5 ? u"22:00-06:00"_s : u"07:00-12:00, 13:00-19:00"_s);
    AddVar(options, u"Destination"_s, QString::number(300 + i));
    return options;
}

const QStringList &rows()
{
    static const QStringList list = [] {
        QStringList r;
        for (int i = 0; i < Count; ++i) {
            QString row;
            AddVar(row, u"Id"_s, i + 1);
            AddVar(row, u"Name"_s, QString(u"Route "_s + QString::number(i)));
            AddVar(row, u"Order"_s, i + 1);
            AddVar(row, u"Options"_s, optionsFor(i), true);
            r.append(row);
        }
        return r;
    }();
    return list;
}

const QList<Condition> &conditions()
{
    static const QList<Condition> list = [] {
        QList<Condition> c;
        for (const QString &row : rows())
            c.append(Condition::fromRecord(row));
        return c;
    }();
    return list;
}

Call theCall()
{
    Call call;
    call.caller = u"00441234"_s;
    call.called = u"500"_s;
    call.ext = u"200"_s;
    call.when = QDateTime(QDate(2026, 11, 23), QTime(10, 15));
    call.book = BookAnswer::Found;
    return call;
}

// The plain loop: each condition's criteria read and parsed again for every call.
int plainFirstFiring(const QStringList &list, const Call &call)
{
    for (int i = 0; i < list.size(); ++i) {
        const QString options = getText(list[i], u"Options"_s);
        if (!NumberPattern::parse(getText(options, u"Caller"_s)).matches(call.caller)
            || !NumberPattern::parse(getText(options, u"Called"_s)).matches(call.called)
            || !NumberPattern::parse(getText(options, u"Ext"_s)).matches(call.ext))
            continue;
        const QString day = getText(options, u"Day"_s);
        if (!DaySet::fromNumber(day.isEmpty() ? -1 : day.toInt()).matches(call.when.date())
            || !DateSet::parse(getText(options, u"Date"_s)).matches(call.when.date())
            || !TimeSet::parse(getText(options, u"Time"_s)).matches(call.when.time()))
            continue;
        if (!getText(options, u"AB"_s).isEmpty() && call.book != BookAnswer::Found)
            continue;
        return i;
    }
    return -1;
}

template <typename F> double msPerRun(F &&f, int runs)
{
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < runs; ++i)
        f();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count() / runs;
}

void BM_FirstFiring(benchmark::State &state)
{
    const QList<Condition> &list = conditions();
    const Call call = theCall();
    if (RoutingRules::firstFiring(list, call).index != FiringAt || plainFirstFiring(rows(), call) != FiringAt) {
        state.SkipWithError("the generated conditions do not fire where they should");
        return;
    }
    const double baseline = msPerRun([&] { benchmark::DoNotOptimize(plainFirstFiring(rows(), call)); }, 20);
    double total = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(RoutingRules::firstFiring(list, call));
        total += std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    }
    const double ms = total / double(state.iterations());
    state.counters["ms"] = ms;
    state.counters["baseline_ms"] = baseline;
    state.counters["vs_baseline"] = ms / baseline;
    state.counters["goal_ms"] = 50;
}

void BM_PageWarnings(benchmark::State &state)
{
    const QStringList books = {u"VIP"_s, u"Staff"_s};
    const double baseline = msPerRun(
        [&] {
            QList<Condition> c;
            for (const QString &row : rows())
                c.append(Condition::fromRecord(row));
            benchmark::DoNotOptimize(c);
        },
        5);
    double total = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(check(conditions(), books));
        total += std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    }
    const double ms = total / double(state.iterations());
    state.counters["ms"] = ms;
    state.counters["read_rows_ms"] = baseline;
    state.counters["vs_read_rows"] = ms / baseline;
    state.counters["goal_ms"] = 200;
}

} // namespace

BENCHMARK(BM_FirstFiring)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PageWarnings)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
