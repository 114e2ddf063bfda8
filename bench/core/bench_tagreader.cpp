// SPDX-License-Identifier: GPL-3.0-or-later
// Reading every row of a big device list: the one-pass reader against the literal GetVar loop.
#include "tagreader.h"
#include "tagvalue.h"

#include <benchmark/benchmark.h>

#include <QStringList>

#include <ctime>
#include <map>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

struct Reply
{
    QString text;
    double utf8Bytes = 0;
};

QString deviceRow(int i)
{
    static const QStringList names = {u"Reception"_s, u"Zoë Müller"_s, u"Sales desk"_s,
                                      u"Ørjan Ås"_s,  u"Support 😀"_s,  u"Warehouse"_s};
    static const QStringList departments = {u"Sales"_s, u"Support"_s, u"Accounts"_s, u"Technik"_s};
    QString row;
    AddVar(row, u"ExtensionId"_s, 100 + i);
    AddVar(row, u"Id"_s, 100 + i);
    AddVar(row, u"Ext"_s, QString::number(200 + i));
    AddVar(row, u"Name"_s, QString(names.at(i % names.size()) + u' ' + QString::number(i)));
    AddVar(row, u"Type"_s, u"Extension"_s);
    AddVar(row, u"Dept"_s, departments.at(i % departments.size()));
    return row;
}

// A GetList reply of the devices as the server sends it. Each row entry is written by AddVar on
// its own and appended: AddVar on the whole reply writes the same text (no earlier entry has that
// name) but would search the growing reply every time.
const Reply &deviceReply(int rows)
{
    static std::map<int, Reply> replies;
    auto found = replies.find(rows);
    if (found != replies.end())
        return found->second;
    Reply reply;
    reply.text = u"{Ref(S9)=MAIN-EXTS}"_s;
    AddVar(reply.text, u"ListCount"_s, rows);
    reply.text.reserve(qsizetype(rows) * 140);
    for (int i = 1; i <= rows; ++i) {
        QString entry;
        AddVar(entry, u"List"_s + QString::number(i), deviceRow(i));
        reply.text += entry;
    }
    reply.utf8Bytes = double(reply.text.toUtf8().size());
    return replies.emplace(rows, std::move(reply)).first->second;
}

// Reads every field of every row the way a list page fills itself: each row where it stands in
// the reply, each field into the QString or double the page keeps.
double readFast(const QString &reply)
{
    double sum = 0;
    const ListRows rows(reply);
    for (const QStringView row : rows) {
        const TagReader fields(row);
        sum += fields.number(u"ExtensionId");
        sum += fields.number(u"Id");
        sum += fields.text(u"Ext").size();
        sum += fields.text(u"Name").size();
        sum += fields.text(u"Type").size();
        sum += fields.text(u"Dept").size();
    }
    return sum;
}

// The same with GetVar alone: every row is searched for from the start of the reply.
double readWithGetVar(const QString &reply)
{
    double sum = 0;
    const int count = GetVar(reply, u"ListCount"_s).toInt();
    for (int i = 1; i <= count; ++i) {
        const QString row = GetVar(reply, u"List"_s + QString::number(i)).toString();
        sum += GetVar(row, u"ExtensionId"_s).toDouble();
        sum += GetVar(row, u"Id"_s).toDouble();
        sum += GetVar(row, u"Ext"_s).toString().size();
        sum += GetVar(row, u"Name"_s).toString().size();
        sum += GetVar(row, u"Type"_s).toString().size();
        sum += GetVar(row, u"Dept"_s).toString().size();
    }
    return sum;
}

// Processor time of this thread, as the benchmark library's own rates use: the machine may be busy
// with other work, which wall-clock time would count against the reader.
double cpuNanoseconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e9 + double(now.tv_nsec);
}

using ReadFunction = double (*)(const QString &reply);

// Only the rows, as readList hands them out: each copied into a QString of its own.
double readRows(const QString &reply)
{
    double sum = 0;
    for (const QString &row : readList(reply))
        sum += row.size();
    return sum;
}

// Only the rows, as a list page takes them: views into the reply.
double readRowViews(const QString &reply)
{
    double sum = 0;
    for (const QStringView row : ListRows(reply))
        sum += row.size();
    return sum;
}

// Nanoseconds per row of each way of reading, as measured in this run: by its own benchmark when
// that ran first, else measured here (best of a few passes).
std::map<std::pair<ReadFunction, int>, double> &costs()
{
    static std::map<std::pair<ReadFunction, int>, double> measured;
    return measured;
}

double costPerRow(ReadFunction read, int rows)
{
    const auto key = std::make_pair(read, rows);
    auto found = costs().find(key);
    if (found != costs().end())
        return found->second;
    const QString &reply = deviceReply(rows).text;
    double best = 0;
    for (int pass = 0; pass < (read == readWithGetVar ? 1 : 5); ++pass) {
        const double start = cpuNanoseconds();
        benchmark::DoNotOptimize(read(reply));
        const double ns = (cpuNanoseconds() - start) / rows;
        best = pass == 0 ? ns : std::min(best, ns);
    }
    costs()[key] = best;
    return best;
}

// Times read over the reply of state.range(0) rows and reports its rates and its cost per row,
// which it returns.
double measure(benchmark::State &state, ReadFunction read)
{
    const int rows = int(state.range(0));
    const Reply &reply = deviceReply(rows);
    double spent = 0;
    for (auto _ : state) {
        const double start = cpuNanoseconds();
        benchmark::DoNotOptimize(read(reply.text));
        spent += cpuNanoseconds() - start;
    }
    const double nsPerRow = spent / (double(state.iterations()) * rows);
    costs()[std::make_pair(read, rows)] = nsPerRow;
    state.counters["rows/s"] = benchmark::Counter(rows, benchmark::Counter::kIsIterationInvariantRate);
    state.counters["MB/s"] =
        benchmark::Counter(reply.utf8Bytes / 1e6, benchmark::Counter::kIsIterationInvariantRate);
    state.counters["ns/row"] = nsPerRow;
    // Linear reading keeps this near 1 at every size; the GetVar loop's grows with the rows.
    state.counters["row_cost_vs_1k"] = nsPerRow / costPerRow(read, 1000);
    return nsPerRow;
}

// Every field of every row through the one-pass reader.
void BM_ReadListOnePass(benchmark::State &state)
{
    measure(state, readFast);
}

// The rows alone, as readList gives them.
void BM_ReadListRowsOnly(benchmark::State &state)
{
    measure(state, readRows);
}

// The rows alone, as a list page takes them.
void BM_ListRowsViews(benchmark::State &state)
{
    measure(state, readRowViews);
}

// The same fields with the literal GetVar loop, the way the list was read before.
void BM_ReadListGetVarLoop(benchmark::State &state)
{
    const double nsPerRow = measure(state, readWithGetVar);
    state.counters["one_pass_speedup"] = nsPerRow / costPerRow(readFast, int(state.range(0)));
}

} // namespace

BENCHMARK(BM_ReadListOnePass)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadListRowsOnly)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListRowsViews)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadListGetVarLoop)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
