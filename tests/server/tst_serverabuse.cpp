// SPDX-License-Identifier: GPL-3.0-or-later
// Bad input of every kind: the server refuses it with one log line each, keeps running and keeps
// its stored data exactly as it was. Failing log-ins neither hold up the sessions at work nor get
// many tries.
#include "serverharness.h"
#include "tagreader.h"

#include <QRandomGenerator>
#include <QTcpSocket>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <atomic>

using namespace Qt::StringLiterals;

namespace {
QString randomText(QRandomGenerator &random, int length)
{
    static const QString alphabet = u"{}()=,SND0123456789-~ CmdTableIdFieldsExts\u00e9\u20ac"_s;
    QString text;
    for (int i = 0; i < length; ++i)
        text += alphabet[random.bounded(int(alphabet.size()))];
    return text;
}

// A WebSocket handshake made by hand on a bare connection, so that it can then send what no
// well-behaved client would.
bool handshake(QTcpSocket &socket, const QUrl &url)
{
    socket.connectToHost(url.host(), quint16(url.port()));
    if (!socket.waitForConnected(5000))
        return false;
    socket.write("GET / HTTP/1.1\r\nHost: " + url.host().toUtf8() +
                 "\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
                 "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\nSec-WebSocket-Version: 13\r\n\r\n");
    QByteArray answer;
    while (!answer.contains("\r\n\r\n") && socket.waitForReadyRead(5000))
        answer += socket.readAll();
    return answer.startsWith("HTTP/1.1 101");
}

// Log-ins of a user without an account from a few connections at once, each connecting again
// shortly after its answer: enough to keep the password checks busy, yet little work apart from
// them. It runs in a thread of its own, so that it never waits on the session the test measures.
class PasswordFlood : public QThread
{
public:
    PasswordFlood(const QUrl &url, int connections) : m_url(url), m_connections(connections) {}
    ~PasswordFlood() override { stop(); }
    void stop()
    {
        quit();
        wait();
    }
    // Answers that say the password was checked, and all answers (the rest were turned away
    // without a check).
    int checked() const { return m_checked; }
    int answers() const { return m_answers; }

protected:
    void run() override
    {
        const QString logIn = RawClient::logInFrame(u"intruder"_s, u"guess"_s);
        std::vector<std::unique_ptr<QWebSocket>> sockets;
        for (int i = 0; i < m_connections; ++i) {
            QWebSocket *socket = sockets.emplace_back(std::make_unique<QWebSocket>()).get();
            connect(socket, &QWebSocket::connected, socket,
                    [socket, logIn] { socket->sendTextMessage(logIn); });
            connect(socket, &QWebSocket::textMessageReceived, socket, [this](const QString &answer) {
                if (getText(answer, u"Reason"_s) == u"Unknown user or wrong password"_s)
                    ++m_checked;
                ++m_answers;
            });
            connect(socket, &QWebSocket::disconnected, socket, [this, socket] {
                QTimer::singleShot(10, socket, [this, socket] { socket->open(m_url); });
            });
            socket->open(m_url);
        }
        exec();
    }

private:
    QUrl m_url;
    int m_connections;
    std::atomic<int> m_checked = 0;
    std::atomic<int> m_answers = 0;
};
} // namespace

class tst_ServerAbuse : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void badCommandsAreRefusedWithOneLineEach();
    void truncatedAndRandomFramesChangeNothing();
    void oversizeFramesCloseOnlyTheirOwnConnection();
    void aThousandDroppedConnectionsLeaveTheServerServing();
    void aPasswordFloodNeitherStallsSessionsNorGetsManyTries();

private:
    // Every record of every table, with all its fields: what must never change.
    QStringList snapshot();
    bool stillServing();

    std::unique_ptr<ServerProcess> m_server;
    std::unique_ptr<RawClient> m_client;
    QStringList m_before;
};

void tst_ServerAbuse::initTestCase()
{
    m_server = std::make_unique<ServerProcess>();
    QVERIFY(m_server->addUser(TestAccount::user(), TestAccount::password()));
    // A short back-off, so that the flood test can see it run out.
    QVERIFY(m_server->start({u"--seed-demo"_s, u"--login-backoff"_s, u"20"_s}));
    m_client = std::make_unique<RawClient>();
    QVERIFY(m_client->openLoggedIn(m_server->url()));
    m_before = snapshot();
    QVERIFY(m_before.size() > 200);
}

void tst_ServerAbuse::cleanupTestCase()
{
    m_client.reset();
    QVERIFY(m_server->isRunning());
    QVERIFY(m_server->stop());
}

QStringList tst_ServerAbuse::snapshot()
{
    QStringList records;
    for (const QString &table : {u"Exts"_s, u"Ab"_s, u"Routing"_s, u"Campaigns"_s, u"Scripts"_s}) {
        const QString list =
            m_client->request(u"{Cmd=GetList}{Table="_s + table + u"}{Fields=Id}{Sort=Id}"_s);
        for (const QString &row : readList(list)) {
            const QString id = getText(row, u"Id"_s);
            records.append(table + id +
                           m_client->request(u"{Cmd=GetFields}{Table="_s + table + u"}{Id="_s + id + u'}'));
        }
    }
    for (const QString &block : {u"PBX"_s, u"FEATURES"_s})
        records.append(m_client->request(u"{Cmd=GetFields}{Table=System}{Id="_s + block + u'}'));
    return records;
}

bool tst_ServerAbuse::stillServing()
{
    if (!m_server->isRunning())
        return false;
    RawClient fresh;
    return fresh.openLoggedIn(m_server->url()) && fresh.request(ping) == echo;
}

void tst_ServerAbuse::badCommandsAreRefusedWithOneLineEach()
{
    const QStringList bad = {
        u"{Cmd=Frobnicate}{Table=Exts}{Id=1}"_s,
        u"{Cmd=GetList}{Ref=MAIN-EXTS}{Fields=Id,Ext}"_s,
        u"{Cmd=GetList}{Table=Nowhere}{Fields=Id}"_s,
        u"{Table=Exts}{Id=1}"_s,
        QString(),
        u"hello"_s,
        setFieldsCommand(u"Exts"_s, u"{Name(S3)=Bob}"_s, {}),    // no Id
        setFieldsCommand(u"Exts"_s, u"{Name(S3)=Bob}"_s, 99999), // no such device
        setFieldsCommand(u"Exts"_s, u"{Name(S3)=Bob}"_s, -1),    // new device, no Ext
        setFieldsCommand(u"Exts"_s, u"{Ext(S3)=201}"_s, 3),      // another device's Ext
        setFieldsCommand(u"Exts"_s, u"not a tag"_s, 1),
        setFieldsCommand(u"Exts"_s, u"{Bad}Name(S1)=x}"_s, 1),
        setFieldsCommand(u"System"_s, u"{Options(S3)=x=1}"_s, {}),
        u"{Cmd=Delete}{Table=Exts}{Id=99998,99999}"_s,
        u"{Cmd=Delete}{Table=Campaigns}{Id=abc}"_s,
        u"{Cmd=Delete}{Table=System}{Id=PBX}"_s,
        u"{Cmd=Delete}{Table=Scripts}"_s,
        u"{Cmd=SetField}{Table=Routing}{Id=4242}{Field=Order}{Value=1}"_s,
        u"{Cmd=SetField}{Table=Routing}{Id=1}{Field=Order}"_s,
        u"{Cmd=GetFields}{Table=Scripts}{Id=777}{Fields=Name}{Ref=SCRIPTS-SCRIPT}"_s,
        u"{Cmd=GetField}{Table=System}{Id=NETWORK}{Field=Options}{Ref=MAIN-NET}"_s,
        u"{Cmd=ABRebuild}{Ab=No such book}"_s,
        u"{Session=Hello}"_s,
    };
    int expected = m_server->refusalLines();
    for (const QString &command : bad) {
        m_client->send(command);
        // No reply of any kind: the next frame is the echo of the ping behind it.
        QCOMPARE(m_client->request(ping), echo);
        ++expected;
        QTRY_COMPARE_WITH_TIMEOUT(m_server->refusalLines(), expected, 2000);
    }
    m_client->socket().sendBinaryMessage(QByteArrayLiteral("{Cmd=Delete}{Table=Exts}{Id=1}"));
    QCOMPARE(m_client->request(ping), echo);
    QTRY_COMPARE_WITH_TIMEOUT(m_server->refusalLines(), expected + 1, 2000);

    QCOMPARE(snapshot(), m_before);
}

void tst_ServerAbuse::truncatedAndRandomFramesChangeNothing()
{
    // Writes cut short at every length: each is refused, none changes anything.
    const QStringList writes = {
        setFieldsCommand(u"Exts"_s, u"{Name(S9)=Cut Short}{Notes(S7)=a}b{c}d}"_s, 5),
        u"{Cmd=Delete}{Table=Exts}{Id(S5)=1,2,3}"_s,
        u"{Cmd=SetField}{Table=Routing}{Id(S1)=1}{Field(S5)=Order}{Value(N1)=9}"_s,
    };
    int expected = m_server->refusalLines();
    for (const QString &write : writes) {
        for (qsizetype length = 1; length < write.size(); ++length)
            m_client->send(write.left(length));
        expected += int(write.size()) - 1;
    }
    QCOMPARE(m_client->request(ping), echo);
    QTRY_COMPARE_WITH_TIMEOUT(m_server->refusalLines(), expected, 5000);

    // Random text frames: refused one line each.
    QRandomGenerator random(20240917);
    for (int i = 0; i < 300; ++i)
        m_client->send(randomText(random, 1 + random.bounded(120)));
    expected += 300;
    QCOMPARE(m_client->request(ping), echo);
    QTRY_COMPARE_WITH_TIMEOUT(m_server->refusalLines(), expected, 5000);

    // Random bytes below the session: on a bare connection, as a text frame that is not UTF-8,
    // and as a frame header that promises more than ever comes.
    for (int i = 0; i < 20; ++i) {
        QTcpSocket bare;
        bare.connectToHost(m_server->url().host(), quint16(m_server->url().port()));
        QVERIFY(bare.waitForConnected(5000));
        QByteArray bytes(1 + random.bounded(400), Qt::Uninitialized);
        for (char &byte : bytes)
            byte = char(random.bounded(256));
        bare.write(bytes);
        bare.flush();
        QTest::qWait(5);
        bare.abort();
    }
    // One masked text frame whose payload is not UTF-8.
    QTcpSocket notUtf8;
    QVERIFY(handshake(notUtf8, m_server->url()));
    const int refusalsBefore = m_server->refusalLines();
    const QByteArray payload("{Cmd=Delete}{Table=Exts}{Id=1}\xff\xfe", 32);
    const QByteArray mask = "\x11\x22\x33\x44";
    QByteArray frame = "\x81" + QByteArray(1, char(0x80 | payload.size())) + mask;
    for (qsizetype i = 0; i < payload.size(); ++i)
        frame.append(char(payload[i] ^ mask[i % 4]));
    notUtf8.write(frame);
    QVERIFY(QTest::qWaitFor([&] { return notUtf8.state() == QAbstractSocket::UnconnectedState; }, 5000));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->refusalLines(), refusalsBefore + 1, 2000);
    QTcpSocket shortFrame;
    QVERIFY(handshake(shortFrame, m_server->url()));
    shortFrame.write(QByteArray("\x81\xfe\x10", 3));
    shortFrame.flush();
    shortFrame.abort();

    QVERIFY(stillServing());
    QCOMPARE(snapshot(), m_before);
}

void tst_ServerAbuse::oversizeFramesCloseOnlyTheirOwnConnection()
{
    const int before = m_server->refusalLines();
    const QString tooBig = u"{Cmd=Delete}{Table=Exts}{Id=1}"_s + QString(17 * 1024 * 1024, u' ');

    // One message in many frames, then one single frame, each over the limit.
    for (const bool singleFrame : {false, true}) {
        RawClient greedy;
        if (singleFrame)
            greedy.socket().setOutgoingFrameSize(32 * 1024 * 1024);
        QVERIFY(greedy.openLoggedIn(m_server->url()));
        greedy.send(tooBig);
        QVERIFY(greedy.waitClosed(20000));
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_server->refusalLines(), before + 2, 5000);

    // The session that behaved is still there, and a frame just under the limit is accepted.
    QCOMPARE(m_client->request(ping), echo);
    const QString large =
        u"{Cmd=GetFields}{Table=Exts}{Id=1}{Fields=Ext}{Ref=BIG}"_s + QString(15 * 1024 * 1024, u' ');
    QCOMPARE(getText(m_client->request(large), u"Ext"_s), u"200"_s);
    QCOMPARE(snapshot(), m_before);
}

void tst_ServerAbuse::aThousandDroppedConnectionsLeaveTheServerServing()
{
    const QUrl url = m_server->url();
    int opened = 0;
    for (int batch = 0; batch < 20; ++batch) {
        std::vector<std::unique_ptr<QTcpSocket>> bare;
        std::vector<std::unique_ptr<QWebSocket>> sockets;
        for (int i = 0; i < 25; ++i) {
            bare.push_back(std::make_unique<QTcpSocket>());
            bare.back()->connectToHost(url.host(), quint16(url.port()));
            sockets.push_back(std::make_unique<QWebSocket>());
            sockets.back()->open(url);
        }
        const auto connected = [](const auto &s) { return s->state() == QAbstractSocket::ConnectedState; };
        QVERIFY(QTest::qWaitFor(
            [&] { return std::ranges::all_of(bare, connected) && std::ranges::all_of(sockets, connected); },
            10000));
        opened += int(bare.size() + sockets.size());
        for (std::size_t i = 0; i < bare.size(); ++i) {
            if (i % 2)
                bare[i]->write("GET / HTTP/1.1\r\nUpgrade: webs"); // a handshake dropped half-way
            bare[i]->abort();
            sockets[i]->abort();
        }
    }
    QCOMPARE(opened, 1000);
    QVERIFY(stillServing());
    QCOMPARE(m_client->request(ping), echo);
    QCOMPARE(snapshot(), m_before);
}

void tst_ServerAbuse::aPasswordFloodNeitherStallsSessionsNorGetsManyTries()
{
    // A password under check holds up no session: the ping sent behind a wrong log-in is answered
    // before the log-in's refusal, which says that the password was checked.
    RawClient guesser;
    QVERIFY(guesser.open(m_server->url()));
    guesser.send(RawClient::logInFrame(u"intruder"_s, u"guess"_s));
    guesser.socket().flush();
    QCOMPARE(m_client->request(ping), echo);
    QVERIFY2(!guesser.next(0), "the session waited for a password check");
    QCOMPARE(getText(guesser.next().value_or(QString()), u"Reason"_s), u"Unknown user or wrong password"_s);

    // A flood from one address: the session at work is answered throughout; the guesser had its
    // first few tries, then one each time the back-off (doubling) ran out.
    const int refusalsBefore = m_server->refusalLines();
    PasswordFlood flood(m_server->url(), 4);
    flood.start();
    QVERIFY(QTest::qWaitFor([&] { return flood.answers() > 0; }, 10000));
    int answered = 0;
    while ((answered < 100 || flood.checked() <= 5 || flood.answers() < 200) && answered < 100000 &&
           m_client->request(ping) == echo)
        ++answered;
    flood.stop();
    QVERIFY(answered >= 100 && answered < 100000);
    QVERIFY2(flood.checked() <= 20 && flood.checked() * 10 < flood.answers(), "the back-off let the flood try on");
    QTRY_VERIFY(m_server->refusalLines() >= refusalsBefore + flood.answers());

    // The same address logs in with the right password once its back-off has run out.
    QVERIFY(QTest::qWaitFor(
        [&] {
            RawClient client;
            return client.openLoggedIn(m_server->url());
        },
        30000));
    QVERIFY(stillServing());
}

QTEST_GUILESS_MAIN(tst_ServerAbuse)
#include "tst_serverabuse.moc"
