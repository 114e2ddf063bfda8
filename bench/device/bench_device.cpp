// SPDX-License-Identifier: GPL-3.0-or-later
// The device window end to end against the reference server on loopback, driven from the main
// window's directory as an administrator would: 150 selected devices opened, read, one box changed,
// OK, until the directory has its list again; and a range of 100 new devices stored by OK until the
// server lists the last of them. Each beside the same round trip for one device, in the same run.
#include "devicerecord.h"
#include "directorypage.h"
#include "frmConfig.h"
#include "frmMain.h"
#include "propertywindows.h"
#include "quillserver.h"
#include "serverlink.h"
#include "tagreader.h"
#include "tagvalue.h"
#include "usrsession.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QPushButton>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <QTreeView>

#include <benchmark/benchmark.h>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int seededDevices = 400;

// Runs the event loop until done() holds, woken by each event (no polling delay); false after 60 s.
template <typename Done> bool waitFor(Done done)
{
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(60000);
    while (!done() && limit.isActive())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    return done();
}

// The reference server in its own thread on a temporary SQLite file, seeded through execute(); the
// tool's session logged in with one-time tokens, its main window loaded, and the device window
// registered with the directory. Replies are counted after the main window has handled them.
class Site
{
public:
    Site()
    {
        m_context->moveToThread(&m_thread);
        m_thread.start();
        inServer([this] {
            m_server = new QuillServer;
            m_server->open(m_dir.filePath(u"site.sqlite"_s));
            for (int n = 0; n < seededDevices; ++n) {
                QString fields;
                AddVar(fields, u"Ext"_s, QString::number(1000 + n));
                AddVar(fields, u"Name"_s, u"Desk %1"_s.arg(n));
                AddVar(fields, u"Type"_s, n % 10 == 0 ? u"AGENT"_s : u"EXT"_s);
                AddVar(fields, u"Dept"_s, u"Dept %1"_s.arg(n % 7));
                for (const DeviceRecord::FlagBox &box : DeviceRecord::flagBoxes())
                    AddVar(fields, box.tag, 1);
                AddVar(fields, u"Buttons"_s, u"4 buttons"_s);
                AddVar(fields, u"btn0"_s, u"{Type(S13)=Answer/Hangup}{Display(S13)=Answer/Hangup}"_s);
                QString command = u"{Cmd=SetFields}{Table=Exts}"_s;
                AddVar(command, u"Fields"_s, fields);
                AddVar(command, u"Id"_s, -1);
                m_server->execute(command);
            }
            m_server->listen(QHostAddress::LocalHost, 0);
            m_url = m_server->url();
        });
        QObject::connect(&session, &usrSession::SessionEvent, &window,
                         [this](const QString &, const QString &kind, const QString &data) {
                             if (kind != u"MESSAGE"_s)
                                 return;
                             const QString ref = getText(data, u"Ref"_s);
                             if (ref == u"EXTS-EXT"_s)
                                 ++deviceReads;
                             if (ref == u"MAIN-EXTS"_s) {
                                 lastDirectory = data;
                                 ++directoryFills;
                             }
                         });
        window.propertyWindows().setOpener(u"Exts"_s, [this](const QString &ids, QWidget *parent) {
            QElapsedTimer opened;
            opened.start();
            frmConfig config(link, parent);
            config.show();
            const int before = deviceReads;
            config.findChild<QLineEdit *>(u"Lid"_s)->setText(ids);
            if (!waitFor([&] { return deviceReads > before; }))
                return WindowResult::cancelled();
            readSeconds += double(opened.nsecsElapsed()) / 1e9;
            editInWindow(config);
            config.close();
            return config.outcome();
        });
        session.setCredentials({m_url, {}, {}, {}});
        session.setTokenSource([this] { return m_server->createOneTimeToken(); });
        session.StartSession(u"QuillServer Configuration"_s);
        ready = waitFor([this] { return window.isLoaded(); });
    }
    ~Site()
    {
        session.CloseSession();
        inServer([this] {
            m_server->close();
            delete m_server;
        });
        m_thread.quit();
        m_thread.wait();
    }
    template <typename Work> void inServer(Work work)
    {
        QMetaObject::invokeMethod(m_context.get(), work, Qt::BlockingQueuedConnection);
    }
    QString field(const QString &id, const QString &name)
    {
        QString reply;
        inServer([&] {
            reply =
                m_server->execute(u"{Cmd=GetFields}{Table=Exts}{Fields="_s + name + u"}{Id="_s + id + u'}');
        });
        return getText(reply, name);
    }

    // Selects rows [first, first + count) of the directory as shown and presses a button: 0 add,
    // 1 edit. Returns once the window has closed and the directory has asked for its list again.
    void press(int button, int first = 0, int count = 0)
    {
        const QAbstractItemModel *shown = page()->list()->model();
        page()->list()->selectionModel()->clearSelection();
        if (count > 0)
            page()->list()->selectionModel()->select(
                QItemSelection(shown->index(first, 0), shown->index(first + count - 1, 0)),
                QItemSelectionModel::Select | QItemSelectionModel::Rows);
        page()->DButton_Click(button);
    }
    QString idAt(int row)
    {
        const QAbstractItemModel *shown = page()->list()->model();
        page()->list()->selectionModel()->clearSelection();
        page()->list()->selectionModel()->select(shown->index(row, 0),
                                                 QItemSelectionModel::Select | QItemSelectionModel::Rows);
        return page()->selectedIds().value(0);
    }
    DirectoryPage *page() { return window.directoryPage(); }

    QTemporaryDir m_dir;
    QThread m_thread;
    std::unique_ptr<QObject> m_context = std::make_unique<QObject>();
    QuillServer *m_server = nullptr;
    QUrl m_url;
    usrSession session;
    ServerLink link{session};
    frmMain window{link};
    std::function<void(frmConfig &)> editInWindow;
    int deviceReads = 0;
    double readSeconds = 0; // from the button to the window filled from its read, summed
    int directoryFills = 0;
    QString lastDirectory;
    bool ready = false;
};

std::unique_ptr<Site> site;

Site &theSite()
{
    if (!site)
        site = std::make_unique<Site>();
    return *site;
}

bool listed(const QString &reply, const QString &ext)
{
    for (const QString &row : readList(reply)) {
        if (getText(row, u"Ext"_s) == ext)
            return true;
    }
    return false;
}

// One round trip: press, then wait for the directory's next MAIN-EXTS fill, which also says the
// server has run the window's writes (one session, in order). One edited device is shown in place
// by the directory; its list is asked here so that both round trips end at the same point.
double roundTrip(Site &s, int button, int first, int count, const QString &lastNew = {})
{
    QElapsedTimer timer;
    timer.start();
    const int before = s.directoryFills;
    s.press(button, first, count);
    if (count == 1)
        s.link.GetData(u"MAIN-EXTS"_s);
    const bool done = waitFor(
        [&] { return s.directoryFills > before && (lastNew.isEmpty() || listed(s.lastDirectory, lastNew)); });
    return done ? double(timer.nsecsElapsed()) / 1e9 : -1.0;
}

void report(benchmark::State &state, double seconds, qint64 trips, double single)
{
    state.counters["ms_per_round_trip"] = seconds / double(trips) * 1e3;
    state.counters["single_ms"] = single * 1e3;
    state.counters["x_single_time"] = seconds / double(trips) / single;
}

void BM_Edit150DevicesRoundTrip(benchmark::State &state)
{
    Site &s = theSite();
    if (!s.ready)
        return state.SkipWithError("no session");
    const QString tag = DeviceRecord::flagBoxes().at(2).tag;
    s.editInWindow = [](frmConfig &config) {
        config.findChild<QCheckBox *>(u"chk_2"_s)->click();
        config.findChild<QPushButton *>(u"OK"_s)->click();
    };
    constexpr int singleRow = 300, singles = 5;
    double single = 0;
    for (int i = 0; i < singles; ++i) {
        const double trip = roundTrip(s, 1, singleRow, 1);
        if (trip < 0)
            return state.SkipWithError("the directory was not reloaded");
        single += trip / singles;
    }
    double seconds = 0;
    qint64 trips = 0;
    s.readSeconds = 0;
    for (auto _ : state) {
        const double trip = roundTrip(s, 1, 0, 150);
        if (trip < 0)
            return state.SkipWithError("the directory was not reloaded");
        seconds += trip;
        ++trips;
    }
    // Every box starts ticked and each trip toggles it: the first and last devices must agree.
    const QString expected = trips % 2 ? u"0"_s : u"1"_s;
    if (s.field(s.idAt(0), tag) != expected || s.field(s.idAt(149), tag) != expected)
        state.SkipWithError("the change did not reach the server");
    report(state, seconds, trips, single);
    state.counters["read_ms"] = s.readSeconds / double(trips) * 1e3;
    state.counters["devices"] = 150;
}
BENCHMARK(BM_Edit150DevicesRoundTrip)->Iterations(10)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_NewRangeOf100Devices(benchmark::State &state)
{
    Site &s = theSite();
    if (!s.ready)
        return state.SkipWithError("no session");
    QString number;
    s.editInWindow = [&number](frmConfig &config) {
        config.findChild<QLineEdit *>(u"Ext"_s)->setText(number);
        config.findChild<QLineEdit *>(u"Nam"_s)->setText(u"New desk"_s);
        config.findChild<QPushButton *>(u"OK"_s)->click();
    };
    constexpr int singles = 5;
    double single = 0;
    for (int i = 0; i < singles; ++i) {
        number = QString::number(4000 + i);
        const double trip = roundTrip(s, 0, 0, 0, number);
        if (trip < 0)
            return state.SkipWithError("the new device was not listed");
        single += trip / singles;
    }
    double seconds = 0;
    qint64 trips = 0;
    for (auto _ : state) {
        const int first = 5000 + int(trips) * 100;
        number = u"%1-%2"_s.arg(first).arg(first + 99);
        const double trip = roundTrip(s, 0, 0, 0, QString::number(first + 99));
        if (trip < 0)
            return state.SkipWithError("the range was not listed");
        seconds += trip;
        ++trips;
    }
    report(state, seconds, trips, single);
    state.counters["devices"] = 100;
    state.counters["listed"] = double(readList(s.lastDirectory).size());
}
BENCHMARK(BM_NewRangeOf100Devices)->Iterations(5)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // The offscreen platform says so for every window the benchmark opens.
    static const QtMessageHandler previous = qInstallMessageHandler(nullptr);
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &context, const QString &text) {
        if (!text.contains(u"propagateSizeHints"_s))
            previous(type, context, text);
    });
    QLoggingCategory::setFilterRules(u"quill.server.*.info=false\nquill.link.*.info=false"_s);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    site.reset();
    return 0;
}
