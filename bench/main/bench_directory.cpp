// SPDX-License-Identifier: GPL-3.0-or-later
// Filling the directory from a MAIN-EXTS reply of 10 000 and 100 000 devices until it is ready to
// show, sorted by number: the page's model with its sorting proxy, against a QTreeWidget filled
// with the same rows and sorted the same way, measured in the same run.
#include "directorymodel.h"
#include "directorypage.h"
#include "propertywindows.h"
#include "serverlink.h"
#include "tagreader.h"
#include "tagvalue.h"
#include "usrsession.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QHash>
#include <QHeaderView>
#include <QRandomGenerator>
#include <QTreeView>
#include <QTreeWidget>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

// A reply as the server sends it: rows ordered by Type, device numbers in no useful order.
QString extsReply(int devices)
{
    static const QString types[] = {u"AGENT"_s, u"EXT"_s, u"SPEED"_s, u"TRUNK"_s};
    static const QString depts[] = {u"Sales"_s, u"Support"_s, u"Accounts"_s, u"Warehouse"_s, u""_s};
    QRandomGenerator random(42);
    QList<int> numbers(devices);
    for (int i = 0; i < devices; ++i)
        numbers[i] = 1000 + i;
    std::shuffle(numbers.begin(), numbers.end(), random);
    QString reply = u"{Ref=MAIN-EXTS}"_s;
    AddVar(reply, u"ListCount"_s, devices);
    for (int i = 0; i < devices; ++i) {
        QString row;
        AddVar(row, u"ExtensionId"_s, i + 1);
        AddVar(row, u"Id"_s, i + 1);
        // One in fifty numbers is not a plain number: it sorts after all the others.
        AddVar(row, u"Ext"_s, i % 50 == 0 ? u"%1A"_s.arg(numbers[i]) : QString::number(numbers[i]));
        AddVar(row, u"Name"_s, u"User %1"_s.arg(random.bounded(100000)));
        AddVar(row, u"Type"_s, types[i * 4 / devices]);
        AddVar(row, u"Dept"_s, depts[i % 5]);
        // Appended as written on the wire; AddVar on the growing reply would search it each time.
        reply += u"{List"_s + QString::number(i + 1) + u"(S"_s + QString::number(row.size()) + u")="_s + row +
                 u'}';
    }
    return reply;
}

const QString &replyFor(int devices)
{
    static QHash<int, QString> replies;
    auto found = replies.find(devices);
    if (found == replies.end())
        found = replies.insert(devices, extsReply(devices));
    return found.value();
}

// The baseline item: the same order as the directory (numbers by value, then text).
class DeviceItem : public QTreeWidgetItem
{
public:
    using QTreeWidgetItem::QTreeWidgetItem;
    DirectoryEntry entry;
    bool operator<(const QTreeWidgetItem &other) const override
    {
        return extLessThan(entry, static_cast<const DeviceItem &>(other).entry);
    }
};

// One fill of the baseline: a tree widget item per row, then sorted by the number column.
void fillTreeWidget(QTreeWidget &tree, const QString &reply)
{
    tree.clear();
    const QStringList rows = readList(reply);
    QList<QTreeWidgetItem *> items;
    items.reserve(rows.size());
    for (const QString &row : rows) {
        // The rows are read the same way as the directory reads them: only the list differs.
        const TagReader fields(row);
        auto *item = new DeviceItem;
        item->entry.id = fields.text(u"Id");
        item->entry.setExt(fields.text(u"Ext"));
        item->setText(0, item->entry.ext);
        item->setText(1, fields.text(u"Name"));
        item->setText(2, fields.text(u"Type"));
        item->setText(3, fields.text(u"Dept"));
        item->setData(0, Qt::UserRole, QString(u'~' + item->entry.id));
        item->setData(0, Qt::UserRole + 1, fields.text(u"ExtensionId"));
        items.append(item);
    }
    tree.addTopLevelItems(items);
    tree.sortItems(0, Qt::AscendingOrder);
    tree.doItemsLayout();
}

QHash<int, double> baselineSeconds; // by device count, from the baseline benchmark of this run

struct Session
{
    usrSession session;
    ServerLink link{session};
    PropertyWindows windows;
};

double timeTreeWidgetFill(const QString &reply)
{
    QTreeWidget tree;
    tree.setColumnCount(4);
    tree.setUniformRowHeights(true);
    tree.resize(800, 600);
    tree.show();
    QElapsedTimer timer;
    timer.start();
    fillTreeWidget(tree, reply);
    return double(timer.nsecsElapsed()) / 1e9;
}

void BM_TreeWidgetFill(benchmark::State &state)
{
    const int devices = int(state.range(0));
    const QString &reply = replyFor(devices);
    QTreeWidget tree;
    tree.setColumnCount(4);
    tree.setUniformRowHeights(true);
    tree.resize(800, 600);
    tree.show();
    QElapsedTimer timer;
    qint64 nanoseconds = 0;
    for (auto _ : state) {
        timer.start();
        fillTreeWidget(tree, reply);
        nanoseconds += timer.nsecsElapsed();
        benchmark::DoNotOptimize(tree.topLevelItemCount());
    }
    baselineSeconds[devices] = double(nanoseconds) / 1e9 / double(state.iterations());
    state.counters["devices"] = devices;
    state.counters["fill_ms"] = baselineSeconds[devices] * 1e3;
    state.counters["ratio"] = 1.0; // the baseline itself
    tree.clear();
}

void BM_DirectoryFill(benchmark::State &state)
{
    const int devices = int(state.range(0));
    const QString &reply = replyFor(devices);
    Session session;
    DirectoryPage page(session.link, session.windows);
    page.resize(800, 600);
    page.show();
    QElapsedTimer timer;
    qint64 nanoseconds = 0;
    for (auto _ : state) {
        timer.start();
        page.fill(reply);
        page.list()->doItemsLayout(); // the proxy maps and sorts here: the list is ready to show
        nanoseconds += timer.nsecsElapsed();
        benchmark::DoNotOptimize(page.proxy()->rowCount());
    }
    if (page.proxy()->rowCount() != devices)
        state.SkipWithError("the directory does not show every device");
    const double seconds = double(nanoseconds) / 1e9 / double(state.iterations());
    if (!baselineSeconds.contains(devices))
        baselineSeconds[devices] = timeTreeWidgetFill(reply);

    // Sortable: a click on the Name heading and back on Ext, each a full re-sort.
    timer.start();
    page.list()->sortByColumn(DirectoryModel::NameColumn, Qt::AscendingOrder);
    page.list()->doItemsLayout();
    const double byName = double(timer.nsecsElapsed()) / 1e9;
    timer.start();
    page.list()->sortByColumn(DirectoryModel::ExtColumn, Qt::AscendingOrder);
    page.list()->doItemsLayout();
    const double byExt = double(timer.nsecsElapsed()) / 1e9;

    state.counters["devices"] = devices;
    state.counters["fill_ms"] = seconds * 1e3;
    state.counters["tree_widget_ms"] = baselineSeconds[devices] * 1e3;
    state.counters["ratio"] =
        baselineSeconds[devices] / seconds; // how many times faster than the tree widget
    state.counters["sort_name_ms"] = byName * 1e3;
    state.counters["sort_ext_ms"] = byExt * 1e3;
    state.counters["under_1s"] = seconds < 1.0 ? 1 : 0;
}

// Reading the rows into the model alone (readList and the six fields of each row), without the
// view and its sorting: the part of the fill both lists share.
void BM_ReadRows(benchmark::State &state)
{
    const int devices = int(state.range(0));
    const QString &reply = replyFor(devices);
    QElapsedTimer timer;
    qint64 nanoseconds = 0;
    for (auto _ : state) {
        timer.start();
        DirectoryModel model;
        model.fill(reply);
        nanoseconds += timer.nsecsElapsed();
        benchmark::DoNotOptimize(model.rowCount());
    }
    const double seconds = double(nanoseconds) / 1e9 / double(state.iterations());
    state.counters["devices"] = devices;
    state.counters["read_ms"] = seconds * 1e3;
    if (baselineSeconds.contains(devices))
        state.counters["share_of_tree_widget"] = seconds / baselineSeconds[devices];
}

} // namespace

BENCHMARK(BM_TreeWidgetFill)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DirectoryFill)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadRows)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
