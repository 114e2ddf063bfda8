// SPDX-License-Identifier: GPL-3.0-or-later
// Bulk device work end to end against the reference server on loopback, over the tool's own
// session: the export of 100,000 devices (every device's export fields read, then written as CSV
// into a string and a file), and the import of 10,000 new devices (the sheet checked, the server's
// devices read for the plan, the plan made, its commands sent until the server confirmed each).
// Each beside the way the tool does the same work one device at a time today, measured in the same
// run on a sample and scaled up; the counters say by how much.
#include "deviceplan.h"
#include "devicerecord.h"
#include "devicesheet.h"
#include "devicetransfer.h"
#include "quillserver.h"
#include "serverlink.h"
#include "store.h"
#include "tagentries.h"
#include "tagreader.h"
#include "tagvalue.h"
#include "usrsession.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLoggingCategory>
#include <QSet>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <functional>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int exportDevices = 100000;
constexpr double exportGoalSeconds = 3.0;
constexpr int exportSample = 1000; // one-device reads measured, then scaled to exportDevices

constexpr int importDevices = 10000;
constexpr double importGoalSeconds = 15.0;
constexpr int importSample = 150; // one-device saves measured before and again after the import

// Runs the event loop until done() holds, woken by each event (no polling delay); false after the
// limit.
template <typename Done> bool waitFor(Done done, int limitMs = 300000)
{
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(limitMs);
    while (!done() && limit.isActive())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    return done();
}

double secondsOf(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e9;
}

// The sheet row of device n: a typical site's extensions and agents.
DeviceSheet::Row deviceRow(int ext, int n)
{
    DeviceSheet::Row row;
    row.ext = QString::number(ext);
    row.values.insert(u"Ext"_s, row.ext);
    row.values.insert(u"Name"_s, u"Desk %1"_s.arg(n));
    row.values.insert(u"Type"_s, n % 10 == 0 ? u"AGENT"_s : u"EXT"_s);
    row.values.insert(u"Dept"_s, u"Dept %1"_s.arg(n % 37));
    row.values.insert(u"DDI"_s, u"496%1"_s.arg(n, 6, 10, QLatin1Char('0')));
    row.values.insert(u"CanDial"_s, u"1"_s);
    row.values.insert(u"CallLog"_s, QString::number(n % 2));
    row.values.insert(u"ViewAB"_s, u"1"_s);
    row.values.insert(u"Privacy"_s, QString::number(n % 3 == 0));
    row.values.insert(u"DontMonitor"_s, u"0"_s);
    if (n % 20 == 0)
        row.values.insert(u"Notes"_s, u"Desk %1, by the window; \"quiet\" room"_s.arg(n));
    return row;
}

// The reference server in its own thread on a temporary SQLite file, and the tool's session logged
// in with one-time tokens, with the bulk work's channel on top.
class Site
{
public:
    // Runs in the server's thread: before the server opens the file, and once it has opened it.
    using Prepare = std::function<void(const QString &file)>;
    using Seed = std::function<void(QuillServer &)>;

    explicit Site(const Prepare &prepare, const Seed &seed = {})
    {
        m_context->moveToThread(&m_thread);
        m_thread.start();
        inServer([&] {
            const QString file = m_dir.filePath(u"site.sqlite"_s);
            if (prepare)
                prepare(file);
            m_server = new QuillServer;
            m_server->open(file);
            if (seed)
                seed(*m_server);
            m_server->listen(QHostAddress::LocalHost, 0);
            m_url = m_server->url();
        });
        QObject::connect(&session, &usrSession::SessionEvent, &m_receiver,
                         [this](const QString &, const QString &kind, const QString &data) {
                             if (kind == u"READY"_s)
                                 m_ready = true;
                             else if (kind == u"MESSAGE"_s && m_listening) {
                                 ++m_replies;
                                 m_last = data;
                             }
                         });
        session.setCredentials({m_url, {}, {}, {}});
        session.setTokenSource([this] { return m_server->createOneTimeToken(); });
        session.StartSession(u"QuillServer Configuration"_s);
        ready = waitFor([this] { return m_ready && channel.isOpen(); }, 60000);
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
    // Runs command inside the server and hands its reply to look, in the server's thread.
    template <typename Look> void inServerExecute(const QString &command, Look look)
    {
        inServer([&] { look(m_server->execute(command)); });
    }
    // Seconds the server itself takes to run commands, one after another, in its thread.
    double executeSeconds(const QStringList &commands)
    {
        double seconds = 0;
        inServer([&] {
            QElapsedTimer timer;
            timer.start();
            for (const QString &command : commands)
                benchmark::DoNotOptimize(m_server->execute(command));
            seconds = secondsOf(timer);
        });
        return seconds;
    }

    // Sends command over the session and waits for the reply whose Ref is ref (one command at a
    // time: the previous reply has arrived when this is called). Empty when none came.
    QString request(const QString &command, const QString &ref)
    {
        m_listening = true;
        const qint64 before = m_replies;
        m_last.clear();
        session.SendCommand(command);
        const bool arrived = waitFor(
            [&] {
                return m_replies > before && getText(m_last, u"Ref"_s).compare(ref, Qt::CaseInsensitive) == 0;
            },
            120000);
        m_listening = false;
        return arrived ? m_last : QString();
    }

    // The devices' numbers as the server lists them to the session.
    QStringList listedNumbers()
    {
        const QString reply =
            request(u"{Cmd=GetList}{Table=Exts}{Ref=COUNT-EXTS}{Fields=Id,Ext}{Sort=Ext}"_s, u"COUNT-EXTS"_s);
        QStringList numbers;
        for (const QStringView row : ListRows(reply))
            numbers.append(TagReader(row).text(u"Ext"));
        return numbers;
    }

    usrSession session;
    SessionChannel channel{session};
    bool ready = false;

private:
    QTemporaryDir m_dir;
    QThread m_thread;
    std::unique_ptr<QObject> m_context = std::make_unique<QObject>();
    QObject m_receiver;
    QuillServer *m_server = nullptr;
    QUrl m_url;
    bool m_ready = false;
    bool m_listening = false; // only the one-device paths and the checks read replies here
    qint64 m_replies = 0;
    QString m_last;
};

// --- Export of 100,000 devices --------------------------------------------------------------------

// 100,000 devices as the server's command path stores the device window's new-device command for
// each (every field of the command's Fields with its type, the Ext trimmed), written straight into the
// store in one transaction before the server opens the file: seeding through 100,000 commands
// would take minutes on this machine, and the seed is not what is measured.
void seedExportSite(const QString &file)
{
    Store store;
    store.open(file);
    store.begin();
    for (int n = 1; n <= exportDevices; ++n) {
        const QString command = DevicePlan::newDeviceCommand(deviceRow(100000 + n, n));
        const qint64 id = *store.createRecord(Table::Exts);
        for (const TagEntry &field : splitEntries(getText(command, u"Fields"_s))) {
            const bool isExt = field.name.compare(u"Ext"_s, Qt::CaseInsensitive) == 0;
            store.setField(Table::Exts, id, field.name.trimmed(), field.type.isNull() ? u'S' : field.type,
                           isExt ? field.value.trimmed() : field.value);
        }
    }
    store.commit();
    store.close();
}

// The session's channel, keeping a copy of every command the bulk work sends through it, so that
// the same commands can be run again inside the server.
class RecordingChannel : public BulkChannel
{
public:
    explicit RecordingChannel(BulkChannel &inner) : m_inner(inner)
    {
        connect(&inner, &BulkChannel::replyArrived, this, &BulkChannel::replyArrived);
        connect(&inner, &BulkChannel::lost, this, &BulkChannel::lost);
    }
    void send(const QString &command) override
    {
        sent.append(command);
        m_inner.send(command);
    }
    bool isOpen() const override { return m_inner.isOpen(); }

    QStringList sent;

private:
    BulkChannel &m_inner;
};

void BM_Export100000Devices(benchmark::State &state)
{
    QElapsedTimer seeding;
    seeding.start();
    Site site(seedExportSite);
    const double seedSeconds = secondsOf(seeding);
    if (!site.ready)
        return state.SkipWithError("no session");
    QTemporaryDir out;
    const QStringList fields = DeviceSheet::defaultExportFields();

    double seconds = 0, readSeconds = 0, csvSeconds = 0, fileSeconds = 0;
    int progressCalls = 0;
    qsizetype csvCharacters = 0;
    DeviceSheet::Table devices;
    RecordingChannel channel(site.channel);
    for (auto _ : state) {
        DeviceReader reader(channel);
        QObject::connect(&reader, &DeviceReader::progress, [&](int, int) { ++progressCalls; });
        std::optional<DeviceReader::Result> result;
        QObject::connect(&reader, &DeviceReader::finished,
                         [&](const DeviceReader::Result &finished) { result = finished; });
        QElapsedTimer timer;
        timer.start();
        reader.start(fields);
        if (!waitFor([&] { return result.has_value(); }) || !result->ok())
            return state.SkipWithError("the devices were not read");
        readSeconds = secondsOf(timer);
        const QString csv = DeviceSheet::write(fields, result->devices);
        csvSeconds = secondsOf(timer) - readSeconds;
        QFile file(out.filePath(u"devices.csv"_s));
        if (!file.open(QIODevice::WriteOnly) || file.write(csv.toUtf8()) < 0 || !file.flush())
            return state.SkipWithError("the CSV file was not written");
        file.close();
        seconds = secondsOf(timer);
        fileSeconds = seconds - readSeconds - csvSeconds;
        state.SetIterationTime(seconds);
        csvCharacters = csv.size();
        devices = result->devices;
    }
    if (devices.rows.size() != exportDevices)
        return state.SkipWithError("the export does not hold every device");

    // The one-device path: the device window's read of one device (GetData "EXT"), its reply read
    // into the same export fields, one after another, on devices spread over the whole site. It
    // writes no CSV: the comparison leaves the export's own writing on the bulk side only.
    const qsizetype idAt = devices.indexOf(u"Id");
    QElapsedTimer timer;
    timer.start();
    qsizetype filled = 0;
    for (int i = 0; i < exportSample; ++i) {
        const QString id = devices.rows.at(qsizetype(i) * exportDevices / exportSample).at(idAt);
        const QString reply =
            site.request(Commands::readCommand(u"EXT"_s, id, u"Type"_s, u"Name"_s, {}), u"EXTS-EXT"_s);
        const TagReader reader(reply);
        QStringList values;
        for (const QString &field : fields)
            values.append(reader.text(field));
        filled += !values.first().isEmpty();
    }
    const double perDevice = secondsOf(timer) / exportSample;
    if (filled != exportSample)
        return state.SkipWithError("a one-device read came back without its device");
    const double oneDeviceScaled = perDevice * exportDevices;
    // Where the read's time goes: the reader's own list reads run again inside the server, and one
    // list read of the ids alone, which every one of them pays whatever fields it carries.
    const QStringList listCommands = channel.sent;
    const double serverSeconds = site.executeSeconds(listCommands);
    const double idsOnlySeconds =
        site.executeSeconds({u"{Cmd=GetList}{Table=Exts}{Ref=BULK-READ-0}{Fields=Id}{Sort=Ext}"_s});
    const double idsUnsortedSeconds =
        site.executeSeconds({u"{Cmd=GetList}{Table=Exts}{Ref=BULK-READ-0}{Fields=Id}"_s});
    // Every export field in one list read, inside the server (no frame limit applies there): what
    // the server needs when the fields share their reads, and how large the whole answer is.
    const QString allFields =
        u"{Cmd=GetList}{Table=Exts}{Ref=BULK-READ-0}{Fields=Id,"_s + fields.join(u',') + u"}{Sort=Ext}"_s;
    const double allFieldsSeconds = site.executeSeconds({allFields});
    QString allFieldsReply;
    site.inServerExecute(allFields, [&](const QString &reply) { allFieldsReply = reply; });
    const qsizetype allFieldsBytes = allFieldsReply.toUtf8().size();
    // The client's side of the same answer: its rows read into the export's table, as the reader
    // reads each reply (without the session: no transfer, no UTF-8 decoding).
    QElapsedTimer parsing;
    parsing.start();
    qsizetype parsedRows = 0;
    {
        const ListRows rows(allFieldsReply);
        QList<QStringList> table;
        table.reserve(rows.size());
        for (const QStringView row : rows) {
            const TagReader reader(row);
            QStringList values;
            values.reserve(fields.size() + 1);
            values.append(reader.text(u"Id"));
            for (const QString &field : fields)
                values.append(reader.text(field));
            table.append(values);
        }
        parsedRows = table.size();
    }
    const double parseSeconds = secondsOf(parsing);
    if (parsedRows != exportDevices)
        return state.SkipWithError("the one list read does not hold every device");

    state.counters["seconds"] = seconds;
    state.counters["goal_seconds"] = exportGoalSeconds;
    state.counters["over_goal_s"] = qMax(0.0, seconds - exportGoalSeconds);
    state.counters["read_s"] = readSeconds;
    state.counters["read_server_execute_s"] = serverSeconds; // the same list reads, inside the server
    state.counters["read_list_reads"] = double(listCommands.size());
    state.counters["server_list_of_ids_only_s"] = idsOnlySeconds;
    state.counters["server_list_of_ids_unsorted_s"] = idsUnsortedSeconds;
    state.counters["server_one_list_all_fields_s"] = allFieldsSeconds;
    state.counters["one_list_all_fields_MB"] = double(allFieldsBytes) / 1e6;
    state.counters["client_parse_one_list_all_fields_s"] = parseSeconds;
    state.counters["csv_string_s"] = csvSeconds;
    state.counters["csv_file_s"] = fileSeconds;
    state.counters["csv_MB"] = double(csvCharacters) / 1e6;
    state.counters["devices"] = double(devices.rows.size());
    state.counters["fields"] = double(fields.size());
    state.counters["progress_callbacks"] = progressCalls;
    state.counters["one_device_read_sample"] = exportSample;
    state.counters["one_device_read_ms"] = perDevice * 1e3;
    state.counters["one_device_reads_x100000_s"] = oneDeviceScaled;
    state.counters["speedup_vs_one_device_path"] = oneDeviceScaled / seconds;
    state.counters["seed_s"] = seedSeconds;
}
BENCHMARK(BM_Export100000Devices)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);

// --- Import of 10,000 new devices -----------------------------------------------------------------

QList<QStringList> importRecords(int firstExt, int count)
{
    const QStringList header{u"Ext"_s,     u"Name"_s,    u"Type"_s,   u"Dept"_s,    u"DDI"_s,
                             u"CanDial"_s, u"CallLog"_s, u"ViewAB"_s, u"Privacy"_s, u"DontMonitor"_s};
    QList<QStringList> records{header};
    records.reserve(count + 1);
    for (int n = 0; n < count; ++n) {
        const DeviceSheet::Row row = deviceRow(firstExt + n, n);
        QStringList record;
        for (const QString &tag : header)
            record.append(row.values.value(tag));
        records.append(record);
    }
    return records;
}

QList<qsizetype> recordLines(const QList<QStringList> &records)
{
    QList<qsizetype> lines;
    for (qsizetype i = 0; i < records.size(); ++i)
        lines.append(i + 1);
    return lines;
}

// The device editor's save of one new device, one after another: its store command alone, then the
// directory's reload of the device list, awaited before the next device. The devices are the rows
// of a sheet like the import's. Seconds per device.
double oneDeviceSaves(Site &site, int firstExt, int count)
{
    const QList<QStringList> records = importRecords(firstExt, count);
    const DeviceSheet::Sheet sheet = DeviceSheet::check(records, recordLines(records));
    if (sheet.rows.size() != count)
        return -1;
    const QString reload = Commands::readCommand(u"MAIN-EXTS"_s, {}, u"Type"_s, u"Name"_s, {});
    QElapsedTimer timer;
    timer.start();
    for (const DeviceSheet::Row &row : sheet.rows) {
        // What OK sends for a new device typed in with the row's values: the one command that
        // DeviceRecord::storeCommands makes of the window's row for a single new number.
        site.session.SendCommand(DevicePlan::newDeviceCommand(row));
        if (site.request(reload, u"MAIN-EXTS"_s).isEmpty())
            return -1;
    }
    return secondsOf(timer) / count;
}

void BM_Import10000NewDevices(benchmark::State &state)
{
    Site site({}, [](QuillServer &server) { server.seedDemo(); });
    if (!site.ready)
        return state.SkipWithError("no session");
    constexpr int bulkFirst = 20000, sampleFirst = 40000;

    // The one-device path while the site holds its own few devices...
    const double perDeviceBefore = oneDeviceSaves(site, sampleFirst, importSample);
    const qsizetype listedBefore = site.listedNumbers().size();

    const QList<QStringList> records = importRecords(bulkFirst, importDevices);
    const QList<qsizetype> lines = recordLines(records);

    double seconds = 0, checkSeconds = 0, readSeconds = 0, planSeconds = 0, sendSeconds = 0;
    int readProgress = 0, sendProgress = 0;
    qsizetype serverDevicesRead = 0, written = 0;
    for (auto _ : state) {
        QElapsedTimer timer;
        timer.start();
        const DeviceSheet::Sheet sheet = DeviceSheet::check(records, lines);
        checkSeconds = secondsOf(timer);
        if (!sheet.ok() || sheet.rows.size() != importDevices || sheet.rejectedCount() != 0)
            return state.SkipWithError("the sheet did not pass its checks");

        DeviceReader reader(site.channel);
        QObject::connect(&reader, &DeviceReader::progress, [&](int, int) { ++readProgress; });
        std::optional<DeviceReader::Result> read;
        QObject::connect(&reader, &DeviceReader::finished,
                         [&](const DeviceReader::Result &result) { read = result; });
        reader.start(DevicePlan::fieldsToRead(sheet));
        if (!waitFor([&] { return read.has_value(); }) || !read->ok())
            return state.SkipWithError("the server's devices were not read");
        readSeconds = secondsOf(timer) - checkSeconds;
        serverDevicesRead = read->devices.rows.size();

        const DevicePlan::Plan plan = DevicePlan::make(sheet, read->devices);
        const QList<DeviceSender::Item> items = DeviceSender::itemsOf(plan);
        planSeconds = secondsOf(timer) - checkSeconds - readSeconds;
        if (plan.count(DevicePlan::State::New) != importDevices || items.size() != importDevices)
            return state.SkipWithError("the plan does not store every device as new");

        DeviceSender sender(site.channel);
        QObject::connect(&sender, &DeviceSender::progress, [&](qsizetype, qsizetype) { ++sendProgress; });
        std::optional<DeviceSender::Result> sent;
        QObject::connect(&sender, &DeviceSender::finished,
                         [&](const DeviceSender::Result &result) { sent = result; });
        sender.start(items);
        if (!waitFor([&] { return sent.has_value(); }) || sent->outcome != DeviceSender::Result::Done)
            return state.SkipWithError("the devices were not all confirmed");
        seconds = secondsOf(timer);
        sendSeconds = seconds - checkSeconds - readSeconds - planSeconds;
        written = sent->written.size();
        state.SetIterationTime(seconds);
    }

    // The server lists every imported device, and exactly that many more than before.
    const QStringList listed = site.listedNumbers();
    const QSet<QString> numbers(listed.cbegin(), listed.cend());
    for (int n = 0; n < importDevices; ++n)
        if (!numbers.contains(QString::number(bulkFirst + n)))
            return state.SkipWithError("an imported device is not listed");
    if (listed.size() - listedBefore != importDevices || written != importDevices)
        return state.SkipWithError("the server does not list 10,000 more devices");

    // ...and again once it holds the imported ones: each reload lists more devices as an import
    // goes on, so the mean of the two is the cost per device over the whole import.
    const double perDeviceAfter = oneDeviceSaves(site, sampleFirst + importSample, importSample);
    if (perDeviceBefore < 0 || perDeviceAfter < 0)
        return state.SkipWithError("the directory was not reloaded");
    const double oneDeviceScaled = (perDeviceBefore + perDeviceAfter) / 2 * importDevices;

    state.counters["seconds"] = seconds;
    state.counters["goal_seconds"] = importGoalSeconds;
    state.counters["over_goal_s"] = qMax(0.0, seconds - importGoalSeconds);
    state.counters["check_s"] = checkSeconds;
    state.counters["read_s"] = readSeconds;
    state.counters["plan_s"] = planSeconds;
    state.counters["send_s"] = sendSeconds;
    state.counters["server_devices_read"] = double(serverDevicesRead);
    state.counters["devices_added"] = double(listed.size() - listedBefore);
    state.counters["read_progress_callbacks"] = readProgress;
    state.counters["send_progress_callbacks"] = sendProgress;
    state.counters["progress_callbacks"] = readProgress + sendProgress;
    state.counters["one_device_save_sample"] = 2 * importSample;
    state.counters["one_device_save_ms_at_start"] = perDeviceBefore * 1e3;
    state.counters["one_device_save_ms_at_end"] = perDeviceAfter * 1e3;
    state.counters["one_device_saves_x10000_s"] = oneDeviceScaled;
    state.counters["speedup_vs_one_device_path"] = oneDeviceScaled / seconds;
}
BENCHMARK(BM_Import10000NewDevices)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(u"quill.server.*.info=false\nquill.link.*.info=false"_s);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
