// SPDX-License-Identifier: GPL-3.0-or-later
// The exact bytes the session puts on the wire: the log-in frame and every read command, as a
// server receives them.
#include "errorlog.h"
#include "isolation.h"
#include "serverlink.h"
#include "startup.h"
#include "usrsession.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTest>
#include <QWebSocket>
#include <QWebSocketServer>

#include <memory>

using namespace Qt::StringLiterals;

namespace {
// Records every frame a client sends, as UTF-8 bytes; answers a log-in with LOGIN and READY so
// that the session starts sending. Only for checking what is sent: the session's behaviour
// against a real server is tested with quillserverd.
class RecordingServer : public QObject
{
public:
    RecordingServer()
    {
        m_server.listen(QHostAddress::LocalHost, 0);
        connect(&m_server, &QWebSocketServer::newConnection, this, [this] {
            QWebSocket *client = m_server.nextPendingConnection();
            client->setParent(this);
            connect(client, &QWebSocket::textMessageReceived, this, [this, client](const QString &frame) {
                frames.append(frame.toUtf8());
                if (frame.startsWith(u"{Session=Login}"_s)) {
                    client->sendTextMessage(u"{Session=LOGIN}"_s);
                    client->sendTextMessage(u"{Session=READY}"_s);
                }
            });
        });
    }
    QUrl url() const { return QUrl(u"ws://127.0.0.1:%1"_s.arg(m_server.serverPort())); }

    QList<QByteArray> frames;

private:
    QWebSocketServer m_server{u"recorder"_s, QWebSocketServer::NonSecureMode};
};

// The seven reads of the main window's load, in the order READY sends them; the device list is
// sorted as asked ("%1").
const QStringList mainReads{
    u"{Cmd=GetList}{Table=Exts}{Ref=MAIN-EXTS}{Fields=ExtensionId,Id,Ext,Name,Type,Dept}{Sort=%1}"_s,
    u"{Cmd=GetField}{Table=System}{Id=PBX}{Field=Options}{Ref=MAIN-PBX}"_s,
    u"{Cmd=GetList}{Table=Ab}{Ref=MAIN-AB}{Fields=ABId,Id,Type,Name}{Sort=Name}"_s,
    u"{Cmd=GetList}{Table=Campaigns}{Ref=MAIN-CAMPAIGNS}{Fields=CampaignId,Id,Name}{Sort=Name}"_s,
    u"{Cmd=GetField}{Table=System}{Id=FEATURES}{Field=Options}{Ref=MAIN-FEATURES}"_s,
    u"{Cmd=GetList}{Table=Scripts}{Ref=MAIN-SCRIPTS}{Fields=ScriptId,Id,Name,Options}{Sort=Name}"_s,
    u"{Cmd=GetList}{Table=Routing}{Ref=MAIN-ROUTING}{Fields=RoutingId,Id,Name,Order,Options}{Sort=Order}"_s,
};

QList<QByteArray> mainLoad(const QString &deviceSort)
{
    QList<QByteArray> frames;
    for (const QString &read : mainReads)
        frames << (read.contains(u"%1"_s) ? read.arg(deviceSort) : read).toUtf8();
    return frames;
}

const QString deviceFieldList =
    u"Ext,Name,Dept,DDI,Type,Password,Assistant,Mobile,CanDial,CallLog,OtherLog,ViewAB,EditAB,ShowAll,"
    "ExcludeBLF,DontMonitor,MainNo,NotAnswer,EditOwn,Supervisor,ConfigButtons,UseOutlook,AllowPickup,"
    "SetCallback,AllowReroute,Privacy,Administrator,ViewBLF,ViewTodo,ViewFeatures,UsePBXName,RequireAgent,"
    "IncludeBLF,Buttons,btn0,btn1,btn2,btn3,btn4,btn5,btn6,btn7,btn8,Events,NewAB,PrivateAB,AB1Vars,AB2Vars,"
    "AB3Vars,AB4Vars,AB1Use,AB2Use,AB3Use,AB4Use,Campaigns,CampaignsDone,UseAbsence,AbsenceText,Notes"_s;
} // namespace

class CommandsSentTest : public QObject
{
    Q_OBJECT
    TestIsolation m_scratch;
    std::unique_ptr<RecordingServer> m_server;
    std::unique_ptr<usrSession> m_session;
    std::unique_ptr<ServerLink> m_link;

    // Starts a session that logs in with a password and waits until it is ready.
    void startSession()
    {
        m_session->setCredentials({m_server->url(), u"admin"_s, u"pässwörd"_s, {}});
        m_session->StartSession(u"QuillServer Configuration"_s);
        QTRY_COMPARE(m_session->state(), usrSession::State::Ready);
    }

    // Waits until count frames have followed the log-in frame.
    bool waitForCommands(qsizetype count)
    {
        return QTest::qWaitFor([&] { return m_server->frames.size() >= count + 1; }, 10000);
    }
    QList<QByteArray> commands() const { return m_server->frames.mid(1); }

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
    }

    void init()
    {
        m_server = std::make_unique<RecordingServer>();
        m_session = std::make_unique<usrSession>();
        m_link = std::make_unique<ServerLink>(*m_session);
    }

    void cleanup()
    {
        m_link.reset();
        m_session.reset();
        m_server.reset();
    }

    // With a password, or with a fresh token of the embedded server's; a command sent before the
    // log-in waits for it.
    void theLogInFrameNamesUserPasswordOrTokenAndApplication()
    {
        m_session->SendCommand(u"{Cmd=Ping}{Handler=Branch}"_s);
        startSession();
        QCOMPARE(m_server->frames.value(0),
                 u"{Session=Login}{User(S5)=admin}{Password(S8)=pässwörd}{App(S25)=QuillServer Configuration}"_s
                     .toUtf8());
        QVERIFY(waitForCommands(1));
        QCOMPARE(commands(), QList<QByteArray>{"{Cmd=Ping}{Handler=Branch}"});

        cleanup();
        init();
        int issued = 0;
        m_session->setTokenSource([&issued] { return u"token-%1"_s.arg(++issued); });
        m_session->setCredentials({m_server->url(), {}, {}, {}});
        m_session->StartSession(u"Halyard Configuration"_s);
        QTRY_COMPARE(m_session->state(), usrSession::State::Ready);
        QCOMPARE(m_server->frames.value(0),
                 QByteArray("{Session=Login}{Token(S7)=token-1}{App(S21)=Halyard Configuration}"));
    }

    void credentialsComeFromTheCommandLineThenTheSettingsThenThePrompt()
    {
        const SessionOptions options = SessionOptions::parse(
            u"--demo --server=pbx.example:4510 --user \"Jo Smith\" --ca /etc/quill/ca.pem"_s);
        QCOMPARE(options.server, QUrl(u"ws://pbx.example:4510"_s));
        QCOMPARE(options.user, u"Jo Smith"_s);
        QVERIFY(options.demo);
        QCOMPARE(options.caFile, u"/etc/quill/ca.pem"_s);
        QVERIFY(usrSession::serverConfigured(u"--server 10.0.0.5:4510"_s));

        QSettings settings(u"Tamsel Telecom Ltd"_s, u"QuillConfig"_s);
        QVERIFY(settings.fileName().contains(u"qttest"_s)); // never the user's own settings
        settings.clear();
        QVERIFY(!usrSession::serverConfigured(QString()));
        // The settings name server and user, and the password is asked for; the command line comes
        // first (its settings name a server where nothing listens).
        for (const QString &user : {u"saved-user"_s, u"cli-user"_s}) {
            const bool commandLine = user == u"cli-user"_s;
            if (commandLine) {
                cleanup();
                init();
                m_session->command = u"--server "_s + m_server->url().toString() + u" --user cli-user"_s;
            }
            settings.setValue(u"Session/Server"_s,
                              commandLine ? u"ws://127.0.0.1:9"_s : m_server->url().toString());
            settings.setValue(u"Session/User"_s, u"saved-user"_s);
            settings.sync();
            QVERIFY(usrSession::serverConfigured(QString()));
            QList<SessionCredentials> offered;
            m_session->setCredentialsPrompt([&](SessionCredentials &credentials, const QString &) {
                offered << credentials;
                credentials.password = u"pw"_s;
                return true;
            });
            m_session->StartSession(u"QuillServer Configuration"_s);
            QTRY_COMPARE(m_session->state(), usrSession::State::Ready);
            QCOMPARE(offered.size(), 1);
            QCOMPARE(offered[0].server, m_server->url());
            QCOMPARE(offered[0].user, user);
            QCOMPARE(m_server->frames.value(0),
                     u"{Session=Login}{User(S%1)=%2}{Password(S2)=pw}{App(S25)=QuillServer Configuration}"_s
                         .arg(user.size())
                         .arg(user)
                         .toUtf8());
        }
        settings.clear();
    }

    void everyReadKeySendsItsCatalogueTextExactly()
    {
        startSession();
        QStringList books;
        m_link->setAddressBookNames([&books] { return books; });
        m_link->setDeviceSort(u"Ext"_s);
        m_link->setAddressBookSort(u"Name"_s);

        struct Read {
            QString key;
            QVariant id;
            QStringList books;
            QString expected;
        };
        const QString deviceRead = u"{Cmd=GetFields}{Table=Exts}{Fields="_s + deviceFieldList;
        const QString keys[] = {u"MAIN-EXTS"_s,     u"main-pbx"_s,      u"MAIN-AB"_s,     u"MAIN-CAMPAIGNS"_s,
                                u"MAIN-FEATURES"_s, u"Main-Scripts"_s, u"MAIN-ROUTING"_s}; // any case
        QList<Read> reads;
        for (int i = 0; i < 7; ++i)
            reads.append({keys[i], {}, {}, QString::fromUtf8(mainLoad(u"Ext"_s).at(i))});
        reads += QList<Read>{
            // A device not yet stored: the server picks the record by its Ext.
            {u"EXT"_s, u"-1"_s, {}, deviceRead + u"}{Ref=EXTS-EXT}{Id(S1)=,}{Index(S3)=Ext}"_s},
            {u"ext"_s, -1, {u"Sales"_s}, deviceRead + u",SalesVars,SalesUse}{Ref=EXTS-EXT}{Id(S1)=,}{Index(S3)=Ext}"_s},
            {u"EXT"_s, u"42"_s, {u"Sales"_s, u"Staff"_s},
             deviceRead + u",SalesVars,SalesUse,StaffVars,StaffUse}{Ref=EXTS-EXT}{Id(S2)=42}"_s},
            {u"AB"_s, u"7"_s, {}, u"{Cmd=GetFields}{Table=Ab}{Fields=Name,Type,Options,Statistics}{Ref=AB-AB}{Id(S1)=7}"_s},
            {u"AB"_s, u"Zoë’s"_s, {}, // sized by UTF-16 units, sent as UTF-8
             u"{Cmd=GetFields}{Table=Ab}{Fields=Name,Type,Options,Statistics}{Ref=AB-AB}{Id(S5)=Zoë’s}"_s},
            {u"ROUTING"_s, u"3"_s, {},
             u"{Cmd=GetFields}{Table=Routing}{Fields=Name,Order,Options}{Ref=ROUTING-ROUTING}{Id(S1)=3}"_s},
            {u"CAMPAIGN"_s, u"12"_s, {},
             u"{Cmd=GetFields}{Table=Campaigns}{Fields=Name,Options}{Ref=CAMPAIGN-CAMPAIGN}{Id(S2)=12}"_s},
            {u"SCRIPT"_s, u"9"_s, {},
             u"{Cmd=GetFields}{Table=Scripts}{Id=9}{Fields=ScriptId,Id,Name,Options,Script}{Ref=SCRIPTS-SCRIPT}"_s},
            // Keys without a command still send exactly one, empty, message.
            {u"LOCALEXT"_s, u"201"_s, {}, QString()},
            {u"MAIN-NOTHING"_s, {}, {}, QString()},
        };
        for (const Read &read : reads) {
            books = read.books;
            m_link->GetData(read.key, read.id);
        }
        QVERIFY(waitForCommands(reads.size()));
        const QList<QByteArray> received = commands();
        QCOMPARE(received.size(), reads.size());
        for (qsizetype i = 0; i < reads.size(); ++i) {
            const QByteArray expected = reads[i].expected.toUtf8();
            if (received[i] != expected)
                QFAIL(qPrintable(u"GetData(%1) sent\n%2\ninstead of\n%3"_s.arg(
                    reads[i].key, QString::fromUtf8(received[i]), QString::fromUtf8(expected))));
        }
    }

    void readyInAnyCaseSendsTheSevenMainReadsInOrder()
    {
        startSession();
        SessionEvents events(*m_link);
        QSignalSpy loads(&events, &SessionEvents::loadStarted);
        m_link->setDeviceSort(u"Ext"_s);
        events.Sess_SessionEvent({}, u"LOGIN"_s, u"{Session=LOGIN}"_s); // sends nothing
        events.Sess_SessionEvent({}, u"ready"_s, u"{Session=READY}"_s);
        QCOMPARE(loads.size(), 1);
        const QList<QByteArray> expected = mainLoad(u"Type"_s); // whatever sort the list asks for
        QVERIFY(waitForCommands(7));
        QCOMPARE(commands(), expected);

        // A second READY (after a reconnect) repeats the whole load.
        events.Sess_SessionEvent({}, u"READY"_s, u"{Session=READY}"_s);
        QVERIFY(waitForCommands(14));
        QCOMPARE(commands().mid(7), expected);

        QSignalSpy logouts(&events, &SessionEvents::logout);
        events.Sess_SessionEvent({}, u"LOGOUT"_s, u"{Session=LOGOUT}"_s);
        QCOMPARE(loads.size(), 2);
        QCOMPARE(logouts.size(), 1);
    }

    void refusesFramesOverSixteenMebibytes()
    {
        startSession();
        m_session->SendCommand(u"{Cmd=SetFields}{Table=Scripts}{Script="_s + QString(16 * 1024 * 1024, u'x')
                               + u'}');
        m_session->SendCommand(u"{Cmd=Ping}{Handler=Branch}"_s);
        QVERIFY(waitForCommands(1));
        QCOMPARE(commands(), QList<QByteArray>{"{Cmd=Ping}{Handler=Branch}"});
        QCOMPARE(m_session->state(), usrSession::State::Ready);
    }
};

QTEST_GUILESS_MAIN(CommandsSentTest)
#include "tst_commandssent.moc"
