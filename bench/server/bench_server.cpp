// SPDX-License-Identifier: GPL-3.0-or-later
// The reference server against SQLite itself: commands per second over one live session (reads,
// edits, and new devices sent without waiting, whose writes are committed in groups), and the list
// of 100,000 devices, each beside the same work done straight through QSqlQuery in this run; and a
// session's pings during a flood of wrong passwords, beside the same pings alone.
#include "quillserver.h"
#include "store.h"
#include "tagvalue.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLoggingCategory>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTimer>
#include <QWebSocket>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int deviceCount = 100000;

const QString deviceFieldList = u"Ext,Name,Dept,DDI,Type,Password,Assistant,Mobile,CanDial,CallLog,OtherLog,"
                                u"ViewAB,EditAB,ShowAll,ExcludeBLF,"
                                "DontMonitor,MainNo,NotAnswer,EditOwn,Supervisor,ConfigButtons,UseOutlook,"
                                "AllowPickup,SetCallback,AllowReroute,"
                                "Privacy,Administrator,ViewBLF,ViewTodo,ViewFeatures,UsePBXName,RequireAgent,"
                                "IncludeBLF,Buttons,btn0,btn1,btn2,"
                                "btn3,btn4,btn5,btn6,btn7,btn8,Events,NewAB,PrivateAB,AB1Vars,AB2Vars,"
                                "AB3Vars,AB4Vars,AB1Use,AB2Use,AB3Use,"
                                "AB4Use,Campaigns,CampaignsDone,UseAbsence,AbsenceText,Notes"_s;

const QStringList flags = {u"CanDial"_s,     u"CallLog"_s,     u"OtherLog"_s, u"ViewAB"_s,
                           u"EditAB"_s,      u"ShowAll"_s,     u"EditOwn"_s,  u"ConfigButtons"_s,
                           u"ViewBLF"_s,     u"AllowPickup"_s, u"ViewTodo"_s, u"ViewFeatures"_s,
                           u"SetCallback"_s, u"Privacy"_s};

// A device as the device window writes it: general fields, flags, buttons.
QString deviceRecord(int n, int edit = 0)
{
    QString r;
    AddVar(r, u"Type"_s, n % 10 == 0 ? u"AGENT"_s : u"EXT"_s);
    AddVar(r, u"Dept"_s, u"Dept %1"_s.arg(n % 37));
    AddVar(r, u"DDI"_s, u"496%1"_s.arg(n, 6, 10, QLatin1Char('0')));
    for (qsizetype i = 0; i < flags.size(); ++i)
        AddVar(r, flags[i], QString::number((n + i + edit) % 2));
    AddVar(r, u"Buttons"_s, u"4 buttons"_s);
    AddVar(r, u"btn0"_s, u"{Type(S13)=Answer/Hangup}{Display(S13)=Answer/Hangup}"_s);
    AddVar(r, u"btn1"_s, u"{Type(S11)=Hold/Unhold}{Display(S11)=Hold/Unhold}"_s);
    AddVar(r, u"Notes"_s, u"Edit %1 of device %2"_s.arg(edit).arg(n));
    AddVar(r, u"Name"_s, u"Device %1"_s.arg(n));
    return r;
}

// A session client that waits for each reply in a local event loop.
class Client
{
public:
    Client()
    {
        m_socket.setMaxAllowedIncomingFrameSize(256 * 1024 * 1024);
        m_socket.setMaxAllowedIncomingMessageSize(256 * 1024 * 1024);
        QObject::connect(&m_socket, &QWebSocket::textMessageReceived, [this](const QString &frame) {
            m_last = frame;
            ++m_received;
            m_loop.quit();
        });
        QObject::connect(&m_socket, &QWebSocket::connected, [this] { m_loop.quit(); });
    }
    bool open(const QUrl &url, const QString &token)
    {
        QString login = u"{Session=Login}"_s;
        AddVar(login, u"Token"_s, token);
        return logIn(url, login);
    }
    bool logIn(const QUrl &url, const QString &login)
    {
        m_socket.open(url);
        wait([&] { return m_socket.state() == QAbstractSocket::ConnectedState; });
        m_socket.sendTextMessage(login);
        return receive(2) && m_last == u"{Session=READY}"_s;
    }
    void send(const QString &frame) { m_socket.sendTextMessage(frame); }
    QString request(const QString &frame)
    {
        send(frame);
        receive(1);
        return m_last;
    }
    bool receive(int frames)
    {
        const qint64 target = m_received + frames;
        return wait([&] { return m_received >= target; });
    }

private:
    template <typename Done> bool wait(Done done)
    {
        QTimer limit;
        limit.setSingleShot(true);
        QObject::connect(&limit, &QTimer::timeout, &m_loop, &QEventLoop::quit);
        limit.start(60000);
        while (!done() && limit.isActive())
            m_loop.exec();
        return done();
    }

    QWebSocket m_socket;
    QEventLoop m_loop;
    QString m_last;
    qint64 m_received = 0;
};

// One database of 100,000 devices, one server on it, one logged-in session, and a plain SQLite
// connection to the same file for the baselines. Built once, on first use.
class Site
{
public:
    static Site &instance()
    {
        static Site site;
        return site;
    }

    QuillServer server;
    Client client;
    QSqlDatabase sqlite;
    QList<qint64> ids;

private:
    Site()
    {
        const QString file = m_dir.filePath(u"bench.sqlite"_s);
        seed(file);
        server.open(file);
        server.listen(QHostAddress::LocalHost, 0);
        client.open(server.url(), server.createOneTimeToken());
        sqlite = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"baseline"_s);
        sqlite.setDatabaseName(file);
        sqlite.open();
        QSqlQuery(sqlite).exec(u"PRAGMA synchronous=FULL"_s);
    }

    void seed(const QString &file)
    {
        Store store;
        store.open(file);
        store.begin();
        for (int n = 1; n <= deviceCount; ++n) {
            const qint64 id = *store.createRecord(Table::Exts);
            ids.append(id);
            store.setField(Table::Exts, id, u"Ext"_s, u'S', QString::number(100000 + n));
            QString record = deviceRecord(n);
            // Straight into the store: one transaction for the whole site.
            for (int i = 1;; ++i) {
                QString name;
                const QVariant value = GetVar(record, i, &name);
                if (name.isEmpty())
                    break;
                store.setField(Table::Exts, id, name, u'S', value.toString());
                if (i > 40)
                    break;
            }
        }
        store.commit();
    }

    QTemporaryDir m_dir;
};

qint64 pickDevice(std::uint64_t &state)
{
    state = state * 6364136223846793005ULL + 1442695040888963407ULL;
    const QList<qint64> &ids = Site::instance().ids;
    return ids[qsizetype((state >> 33) % std::uint64_t(ids.size()))];
}

// Seconds per operation of body, run count times.
template <typename Body> double secondsPerOp(int count, Body body)
{
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < count; ++i)
        body(i);
    return double(timer.nsecsElapsed()) / 1e9 / count;
}

void reportAgainstBaseline(benchmark::State &state, double seconds, qint64 operations, double baseline)
{
    const double perOp = seconds / double(operations);
    state.counters["ops_per_s"] = benchmark::Counter(1.0 / perOp);
    state.counters["sqlite_ops_per_s"] = benchmark::Counter(1.0 / baseline);
    state.counters["x_sqlite_time"] = benchmark::Counter(perOp / baseline); // server time / SQLite's
}

// --- GetFields: the device window's read of one device --------------------------------------------

double sqliteDeviceRead(int count)
{
    Site &site = Site::instance();
    QSqlQuery query(site.sqlite);
    query.setForwardOnly(true);
    query.prepare(
        u"SELECT name, type, value FROM field INDEXED BY field_by_record WHERE tbl = 1 AND id = ?"_s);
    std::uint64_t random = 7;
    return secondsPerOp(count, [&](int) {
        query.bindValue(0, pickDevice(random));
        query.exec();
        QString sink;
        while (query.next())
            sink += query.value(2).toString();
        benchmark::DoNotOptimize(sink);
    });
}

void BM_GetFieldsOverSession(benchmark::State &state)
{
    Site &site = Site::instance();
    const double baseline = sqliteDeviceRead(2000);
    std::uint64_t random = 11;
    QElapsedTimer timer;
    timer.start();
    qint64 operations = 0;
    for (auto _ : state) {
        QString command = u"{Cmd=GetFields}{Table=Exts}{Fields="_s + deviceFieldList + u"}{Ref=EXTS-EXT}"_s;
        AddVar(command, u"Id"_s, pickDevice(random));
        benchmark::DoNotOptimize(site.client.request(command));
        ++operations;
    }
    reportAgainstBaseline(state, double(timer.nsecsElapsed()) / 1e9, operations, baseline);
}
BENCHMARK(BM_GetFieldsOverSession)->Unit(benchmark::kMicrosecond)->MinTime(2.0);

// --- SetFields: the device window's save of one device ---------------------------------------------

double sqliteDeviceWrite(int count)
{
    Site &site = Site::instance();
    QSqlQuery upsert(site.sqlite);
    upsert.prepare(
        u"INSERT OR REPLACE INTO field (tbl, fkey, id, name, type, value) VALUES (1, ?, ?, ?, 'S', ?)"_s);
    std::uint64_t random = 13;
    return secondsPerOp(count, [&](int i) {
        const qint64 id = pickDevice(random);
        const QString record = deviceRecord(int(id), i + 1);
        site.sqlite.transaction();
        for (int n = 1;; ++n) {
            QString name;
            const QVariant value = GetVar(record, n, &name);
            if (name.isEmpty() || n > 40)
                break;
            upsert.bindValue(0, name.toLower());
            upsert.bindValue(1, id);
            upsert.bindValue(2, name);
            upsert.bindValue(3, value.toString());
            upsert.exec();
        }
        site.sqlite.commit();
    });
}

void BM_SetFieldsOverSession(benchmark::State &state)
{
    Site &site = Site::instance();
    const double baseline = sqliteDeviceWrite(300);
    constexpr int batch = 20; // writes have no reply: a ping after each batch says they are done
    std::uint64_t random = 17;
    QElapsedTimer timer;
    timer.start();
    qint64 operations = 0;
    int edit = 1000;
    for (auto _ : state) {
        for (int i = 0; i < batch; ++i) {
            const qint64 id = pickDevice(random);
            QString command = u"{Cmd=SetFields}{Table=Exts}"_s;
            AddVar(command, u"Fields"_s, deviceRecord(int(id), ++edit));
            AddVar(command, u"Id"_s, id);
            site.client.send(command);
        }
        benchmark::DoNotOptimize(site.client.request(u"{Cmd=Ping}{Handler=Branch}"_s));
        operations += batch;
    }
    reportAgainstBaseline(state, double(timer.nsecsElapsed()) / 1e9, operations, baseline);
}
BENCHMARK(BM_SetFieldsOverSession)->Unit(benchmark::kMillisecond)->MinTime(2.0);

// --- New devices, sent without waiting: what a bulk import does ------------------------------------

QString newDeviceRecord(int ext)
{
    QString r;
    AddVar(r, u"Ext"_s, QString::number(ext));
    return r + deviceRecord(ext);
}

// The same new devices written straight through QSqlQuery with one transaction, and so one disk
// flush, per device: how the server stored each command before it committed writes in groups.
double sqliteNewDevicePerTransaction(int count, int &nextExt)
{
    Site &site = Site::instance();
    QSqlQuery byExt(site.sqlite);
    byExt.setForwardOnly(true);
    byExt.prepare(
        u"SELECT id FROM field WHERE tbl = 1 AND fkey = 'ext' AND value = ? COLLATE NOCASE ORDER BY id LIMIT 1"_s);
    QSqlQuery next(site.sqlite);
    next.setForwardOnly(true);
    next.prepare(u"SELECT next FROM next_id WHERE tbl = 1"_s);
    QSqlQuery advance(site.sqlite);
    advance.prepare(u"UPDATE next_id SET next = ? WHERE tbl = 1"_s);
    QSqlQuery insert(site.sqlite);
    insert.prepare(u"INSERT INTO record (tbl, id) VALUES (1, ?)"_s);
    QSqlQuery upsert(site.sqlite);
    upsert.prepare(
        u"INSERT OR REPLACE INTO field (tbl, fkey, id, name, type, value) VALUES (1, ?, ?, ?, 'S', ?)"_s);
    return secondsPerOp(count, [&](int) {
        const QString record = newDeviceRecord(++nextExt);
        site.sqlite.transaction();
        byExt.bindValue(0, QString::number(nextExt));
        byExt.exec();
        byExt.next();
        byExt.finish();
        next.exec();
        next.next();
        const qint64 id = next.value(0).toLongLong();
        next.finish();
        advance.bindValue(0, id + 1);
        advance.exec();
        insert.bindValue(0, id);
        insert.exec();
        for (int n = 1;; ++n) {
            QString name;
            const QVariant value = GetVar(record, n, &name);
            if (name.isEmpty())
                break;
            upsert.bindValue(0, name.toLower());
            upsert.bindValue(1, id);
            upsert.bindValue(2, name);
            upsert.bindValue(3, value.toString());
            upsert.exec();
        }
        site.sqlite.commit();
    });
}

// Writes per second of new devices over one session, sent one after another without waiting,
// then one ping whose echo says that all of them are on disk; beside the same writes with one
// transaction per write.
void BM_NewDevicesOverSession(benchmark::State &state)
{
    Site &site = Site::instance();
    int ext = 500000;
    const double baseline = sqliteNewDevicePerTransaction(300, ext);
    constexpr int batch = 1000;
    QElapsedTimer timer;
    timer.start();
    qint64 operations = 0;
    for (auto _ : state) {
        for (int i = 0; i < batch; ++i) {
            QString command = u"{Cmd=SetFields}{Table=Exts}{Id=-1}"_s;
            AddVar(command, u"Fields"_s, newDeviceRecord(++ext));
            site.client.send(command);
        }
        benchmark::DoNotOptimize(site.client.request(u"{Cmd=Ping}{Handler=Branch}"_s));
        operations += batch;
    }
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    reportAgainstBaseline(state, seconds, operations, baseline);
    // How many times as many writes a second as with one transaction per write.
    state.counters["x_write_rate"] = benchmark::Counter(baseline * double(operations) / seconds);
}
BENCHMARK(BM_NewDevicesOverSession)->Unit(benchmark::kMillisecond)->MinTime(2.0);

// --- GetList of 100,000 devices -------------------------------------------------------------------

const QString deviceListCommand =
    u"{Cmd=GetList}{Table=Exts}{Ref=MAIN-EXTS}{Fields=ExtensionId,Id,Ext,Name,Type,Dept}{Sort=Ext}"_s;

// The same rows read straight from SQLite: the four stored fields of every device.
double sqliteDeviceList()
{
    Site &site = Site::instance();
    QSqlQuery query(site.sqlite);
    query.setForwardOnly(true);
    return secondsPerOp(3, [&](int) {
        query.exec(
            u"SELECT id, fkey, type, value FROM field WHERE tbl = 1 AND fkey IN ('ext', 'name', 'type', 'dept')"_s);
        qint64 rows = 0;
        while (query.next()) {
            benchmark::DoNotOptimize(query.value(0).toLongLong());
            benchmark::DoNotOptimize(query.value(3).toString());
            ++rows;
        }
        benchmark::DoNotOptimize(rows);
    });
}

void BM_GetList100kExecute(benchmark::State &state)
{
    Site &site = Site::instance();
    const double baseline = sqliteDeviceList();
    QElapsedTimer timer;
    timer.start();
    qint64 operations = 0;
    qsizetype characters = 0;
    for (auto _ : state) {
        const QString reply = site.server.execute(deviceListCommand);
        characters = reply.size();
        ++operations;
    }
    reportAgainstBaseline(state, double(timer.nsecsElapsed()) / 1e9, operations, baseline);
    state.counters["devices"] = deviceCount;
    state.counters["reply_MB"] = double(characters) / 1e6;
}
BENCHMARK(BM_GetList100kExecute)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_GetList100kReceivedByClient(benchmark::State &state)
{
    Site &site = Site::instance();
    const double baseline = sqliteDeviceList();
    QElapsedTimer timer;
    timer.start();
    qint64 operations = 0;
    int rows = 0;
    for (auto _ : state) {
        const QString reply = site.client.request(deviceListCommand);
        rows = GetVar(reply, u"ListCount"_s).toInt();
        ++operations;
    }
    reportAgainstBaseline(state, double(timer.nsecsElapsed()) / 1e9, operations, baseline);
    state.counters["devices"] = rows;
}
BENCHMARK(BM_GetList100kReceivedByClient)->Unit(benchmark::kMillisecond)->Iterations(5);

// --- Pings of a working session while other clients guess passwords --------------------------------

QString passwordLogIn(const QString &user, const QString &password)
{
    QString login = u"{Session=Login}"_s;
    AddVar(login, u"User"_s, user);
    AddVar(login, u"Password"_s, password);
    AddVar(login, u"App"_s, u"bench"_s);
    return login;
}

// Clients that log in with a wrong password over and over, each again as soon as it is refused.
class PasswordFlood
{
public:
    PasswordFlood(const QUrl &url, int clients)
    {
        for (int i = 0; i < clients; ++i) {
            auto *socket = new QWebSocket;
            m_sockets.emplace_back(socket);
            QObject::connect(socket, &QWebSocket::connected, socket, [socket] {
                socket->sendTextMessage(passwordLogIn(u"admin"_s, u"guess"_s));
            });
            QObject::connect(socket, &QWebSocket::disconnected, socket, [this, socket, url] {
                ++attempts;
                if (!m_stopping)
                    QTimer::singleShot(0, socket, [socket, url] { socket->open(url); });
            });
            socket->open(url);
        }
    }
    ~PasswordFlood()
    {
        m_stopping = true;
        for (auto &socket : m_sockets)
            socket->abort();
    }
    qint64 attempts = 0;

private:
    std::vector<std::unique_ptr<QWebSocket>> m_sockets;
    bool m_stopping = false;
};

// Every attempt of the flood has its password checked (no back-off), so a check that ran on the
// thread serving the sessions would hold each ping up; the baseline is the same pings with no flood.
void BM_PingDuringPasswordFlood(benchmark::State &state)
{
    QTemporaryDir dir;
    QuillServer server;
    server.open(dir.filePath(u"flood.sqlite"_s));
    server.addUser(u"admin"_s, u"right-password"_s);
    LogInLimits limits;
    limits.failuresBeforeBackOff = 1 << 30;
    server.setLogInLimits(limits);
    server.listen(QHostAddress::LocalHost, 0);
    Client client;
    if (!client.logIn(server.url(), passwordLogIn(u"admin"_s, u"right-password"_s))) {
        state.SkipWithError("no log-in");
        return;
    }
    const QString ping = u"{Cmd=Ping}{Handler=Branch}"_s;
    const double alone = secondsPerOp(200, [&](int) { benchmark::DoNotOptimize(client.request(ping)); });

    PasswordFlood flood(server.url(), 4);
    QElapsedTimer timer;
    timer.start();
    qint64 operations = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(client.request(ping));
        ++operations;
    }
    const double perPing = double(timer.nsecsElapsed()) / 1e9 / double(operations);
    state.counters["pings_per_s"] = benchmark::Counter(1.0 / perPing);
    state.counters["alone_pings_per_s"] = benchmark::Counter(1.0 / alone);
    state.counters["x_alone_time"] = benchmark::Counter(perPing / alone); // 1 = the flood costs nothing
    state.counters["guesses"] = benchmark::Counter(double(flood.attempts));
}
BENCHMARK(BM_PingDuringPasswordFlood)->Unit(benchmark::kMicrosecond)->MinTime(3.0);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(u"quill.server.*.info=false"_s);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
