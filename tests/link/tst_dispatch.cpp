// SPDX-License-Identifier: GPL-3.0-or-later
// Replies reach the window their reference names; start-up picks the product name and one copy runs.
#include "errorlog.h"
#include "isolation.h"
#include "serverlink.h"
#include "startup.h"
#include "usrsession.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {
// A receiving window that remembers what reached it.
class FakeWindow : public QObject, public IDataReceiver
{
public:
    void DataArrived(const QString &SubRef, const QString &Message) override { received.append({SubRef, Message}); }
    QList<QPair<QString, QString>> received;
};

const QStringList prefixes = {u"MAIN"_s, u"AB"_s, u"CAMPAIGN"_s, u"ROUTING"_s, u"EXTS"_s, u"SCRIPTS"_s};
} // namespace

class DispatchTest : public QObject
{
    Q_OBJECT
    TestIsolation m_scratch;
    std::unique_ptr<usrSession> m_session;
    std::unique_ptr<ServerLink> m_link;
    QHash<QString, FakeWindow *> m_windows;

    // Everything any window received since the last call, as "PREFIX:SubRef".
    QStringList takeDeliveries()
    {
        QStringList deliveries;
        for (const QString &prefix : prefixes) {
            for (const auto &[subRef, message] : std::as_const(m_windows[prefix]->received))
                deliveries << prefix + u':' + subRef;
            m_windows[prefix]->received.clear();
        }
        return deliveries;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
    }

    void init()
    {
        m_session = std::make_unique<usrSession>();
        m_link = std::make_unique<ServerLink>(*m_session);
        m_windows.clear();
        for (const QString &prefix : prefixes) {
            auto *window = new FakeWindow;
            window->setParent(m_link.get());
            m_windows.insert(prefix, window);
            m_link->setReceiver(prefix, window);
        }
    }

    void cleanup()
    {
        m_link.reset();
        m_session.reset();
    }

    void routesEachReplyByItsReferencePrefix()
    {
        m_link->HandleCallback(u"{Ref=main-exts}{ListCount=0}"_s);
        QCOMPARE(m_windows[u"MAIN"_s]->received.value(0).first, u"EXTS"_s);
        QCOMPARE(m_windows[u"MAIN"_s]->received.value(0).second, u"{Ref=main-exts}{ListCount=0}"_s);
        takeDeliveries();

        m_link->HandleCallback(u"{Ref=AB-AB}{Name(S5)=Sales}"_s);
        m_link->HandleCallback(u"{Ref=Campaign-Campaign}"_s);
        m_link->HandleCallback(u"{Ref=ROUTING-ROUTING}"_s);
        m_link->HandleCallback(u"{Ref=EXTS-EXT}{Ext(S3)=201}"_s);
        m_link->HandleCallback(u"{Ref=SCRIPTS-SCRIPT}"_s);
        m_link->HandleCallback(u"{Ref=SCRIPTS}"_s); // only the prefix: an empty sub-reference
        m_link->HandleCallback(u"{Ref(S12)=main-routing}{ListCount(N1)=0}"_s);
        QCOMPARE(takeDeliveries(), (QStringList{u"MAIN:ROUTING"_s, u"AB:AB"_s, u"CAMPAIGN:CAMPAIGN"_s,
                                                u"ROUTING:ROUTING"_s, u"EXTS:EXT"_s, u"SCRIPTS:SCRIPT"_s,
                                                u"SCRIPTS:"_s}));

        // Ref wins over Cmd; Cmd stands in only when there is no Ref.
        m_link->HandleCallback(u"{Cmd=BLF}{Ref=MAIN-PBX}"_s);
        m_link->HandleCallback(u"{Cmd=Main-Features}"_s);
        // The sub-reference is everything after the prefix's "-", further dashes included.
        m_link->HandleCallback(u"{Ref=ab-list-2}"_s);
        QCOMPARE(takeDeliveries(), (QStringList{u"MAIN:PBX"_s, u"MAIN:FEATURES"_s, u"AB:LIST-2"_s}));
    }

    void dropsMessagesThatNoWindowAskedFor()
    {
        const QStringList dropped = {u"{Cmd=PINGECHO}"_s,
                                     u"{Cmd=BLF}{Ext=201}"_s,
                                     u"{Cmd=LOGIN}"_s,
                                     u"{Cmd=NEWSTATE}{Ext=201}"_s,
                                     u"{Ref=NOWHERE-X}"_s,
                                     u"{Ref=MAINS-EXTS}"_s, // a longer word is not the prefix
                                     u"{Name=no reference at all}"_s,
                                     u"not a tagged value"_s,
                                     QString()};
        for (const QString &message : dropped)
            m_link->HandleCallback(message);
        QCOMPARE(takeDeliveries(), QStringList());
    }

    void deliversOnlyToWindowsThatAreOpen()
    {
        delete m_windows.take(u"AB"_s); // the address-book window was closed
        m_link->HandleCallback(u"{Ref=AB-AB}{Name(S5)=Sales}"_s);
        m_link->setReceiver(u"SCRIPTS"_s, nullptr);
        m_link->HandleCallback(u"{Ref=SCRIPTS-SCRIPT}"_s);
        m_link->HandleCallback(u"{Ref=MAIN-AB}"_s); // the others still receive
        QCOMPARE(m_windows[u"MAIN"_s]->received.size(), 1);
        QVERIFY(m_windows[u"SCRIPTS"_s]->received.isEmpty());
    }

    void theChoiceOfACampaignReachesTheDeviceWindowOnly()
    {
        const QString answer = u"{Ref=AddCampaign}{Choice(S6)=Autumn}"_s;
        m_link->HandleCallback(answer);
        QCOMPARE(m_windows[u"EXTS"_s]->received.value(0).second, answer);
        QCOMPARE(takeDeliveries(), QStringList{u"EXTS:ADDCAMPAIGN"_s});

        // With the device window closed the answer has nowhere to go.
        m_link->setReceiver(u"EXTS"_s, nullptr);
        m_link->HandleCallback(answer);
        QCOMPARE(takeDeliveries(), QStringList());
    }

    void sessionEventsOtherThanTheSessionsOwnGoToTheDispatcher()
    {
        SessionEvents events(*m_link);
        QSignalSpy loads(&events, &SessionEvents::loadStarted);
        QSignalSpy logouts(&events, &SessionEvents::logout);

        events.Sess_SessionEvent({}, u"MESSAGE"_s, u"{Ref=MAIN-CAMPAIGNS}{ListCount=0}"_s);
        events.Sess_SessionEvent({}, u"login"_s, u"{Ref=MAIN-EXTS}"_s); // LOGIN does nothing
        QCOMPARE(takeDeliveries(), QStringList{u"MAIN:CAMPAIGNS"_s});
        QCOMPARE(loads.size(), 0);

        m_link->setDeviceSort(u"Ext"_s);
        events.Sess_SessionEvent({}, u"Ready"_s, {});
        QCOMPARE(loads.size(), 1);
        QCOMPARE(m_link->deviceSort(), u"Type"_s);

        events.Sess_SessionEvent({}, u"LOGOUT"_s, u"{Session=LOGOUT}"_s);
        QCOMPARE(logouts.size(), 1);
        QCOMPARE(takeDeliveries(), QStringList());
    }

    void productNameComesFromTheWholeExecutableName()
    {
        const QStringList halyard = {u"hlconfig"_s, u"HLCONFIG"_s, u"/opt/tools/HlConfig"_s,
                                     u"C:\\Tools\\HLCONFIG.EXE"_s, u"hlconfig.exe"_s};
        for (const QString &path : halyard)
            QCOMPARE(Startup::productName(path), u"Halyard"_s);
        const QStringList quill = {u"HLCONFIG2"_s,     u"hlconfig2.exe"_s, u"xhlconfig"_s,
                                   u"/usr/bin/quillconfig"_s, u"/hlconfig/quillconfig"_s, QString()};
        for (const QString &path : quill)
            QCOMPARE(Startup::productName(path), u"QuillServer"_s);

        QCOMPARE(Startup::applicationTitle(u"QuillServer"_s), u"QuillServer Configuration"_s);
        QCOMPARE(Startup::applicationTitle(u"Halyard"_s), u"Halyard Configuration"_s);
        QCOMPARE(Startup::windowTitle(u"Halyard"_s), u"Halyard configuration"_s); // no translator: English
    }

    void onlyOneCopyRunsAtATime()
    {
        const QString path = m_scratch.filePath(u"quillconfig.lock"_s);
        QLockFile first(path);
        QVERIFY(Startup::acquireSingleInstance(first));
        QLockFile second(path);
        QVERIFY(!Startup::acquireSingleInstance(second));
        first.unlock();
        QVERIFY(Startup::acquireSingleInstance(second)); // free again once the first copy ends
        // A lock that cannot be made at all (its folder is a file) does not stop the tool.
        QFile plain(m_scratch.filePath(u"plain-file"_s));
        QVERIFY(plain.open(QIODevice::WriteOnly));
        QLockFile impossible(plain.fileName() + u"/quillconfig.lock"_s);
        QVERIFY(Startup::acquireSingleInstance(impossible));

        // The lock is the user's own: no other user of the machine can take it or write beside it.
        const QFileInfo lockFolder(QFileInfo(Startup::lockFilePath()).absolutePath());
        QVERIFY(lockFolder.isDir());
        QCOMPARE(lockFolder.ownerId(), QFileInfo(QDir::homePath()).ownerId());
        QCOMPARE(lockFolder.permissions() & (QFile::WriteGroup | QFile::WriteOther), QFile::Permissions());
    }
};

QTEST_GUILESS_MAIN(DispatchTest)
#include "tst_dispatch.moc"
