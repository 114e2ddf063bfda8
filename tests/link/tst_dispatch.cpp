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
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {
// "PREFIX:SubRef" and the message, for each reply that reached a window.
using Deliveries = QList<QPair<QString, QString>>;

// A receiving window that notes what reached it in a log shared by every window.
class FakeWindow : public QObject, public IDataReceiver
{
public:
    FakeWindow(const QString &prefix, Deliveries &log) : m_prefix(prefix), m_log(log) {}
    void DataArrived(const QString &SubRef, const QString &Message) override
    {
        m_log.append({m_prefix + u':' + SubRef, Message});
    }

private:
    QString m_prefix;
    Deliveries &m_log;
};
} // namespace

class DispatchTest : public QObject
{
    Q_OBJECT
    TestIsolation m_scratch;
    std::unique_ptr<usrSession> m_session;
    std::unique_ptr<ServerLink> m_link;
    QHash<QString, FakeWindow *> m_windows;
    Deliveries m_delivered;

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
        m_delivered.clear();
        for (const QString &prefix :
             {u"MAIN"_s, u"AB"_s, u"CAMPAIGN"_s, u"ROUTING"_s, u"EXTS"_s, u"SCRIPTS"_s}) {
            auto *window = new FakeWindow(prefix, m_delivered);
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

    void eachReplyReachesTheWindowItsReferenceNames_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("delivery"); // "PREFIX:SubRef"; empty when no window asked for it
        const auto row = [](const QString &message, const QString &delivery) {
            QTest::newRow(qPrintable(message.isEmpty() ? u"empty"_s : message)) << message << delivery;
        };
        row(u"{Ref=main-exts}{ListCount=0}"_s, u"MAIN:EXTS"_s);
        row(u"{Ref(S12)=main-routing}{ListCount(N1)=0}"_s, u"MAIN:ROUTING"_s);
        row(u"{Ref=AB-AB}{Name(S5)=Sales}"_s, u"AB:AB"_s);
        row(u"{Ref=Campaign-Campaign}"_s, u"CAMPAIGN:CAMPAIGN"_s);
        row(u"{Ref=ROUTING-ROUTING}"_s, u"ROUTING:ROUTING"_s);
        row(u"{Ref=EXTS-EXT}{Ext(S3)=201}"_s, u"EXTS:EXT"_s);
        row(u"{Ref=SCRIPTS-SCRIPT}"_s, u"SCRIPTS:SCRIPT"_s);
        row(u"{Ref=SCRIPTS}"_s, u"SCRIPTS:"_s);               // only the prefix: an empty sub-reference
        row(u"{Cmd=BLF}{Ref=MAIN-PBX}"_s, u"MAIN:PBX"_s);     // Ref wins over Cmd
        row(u"{Cmd=Main-Features}"_s, u"MAIN:FEATURES"_s);    // Cmd stands in only when there is no Ref
        row(u"{Ref=ab-list-2}"_s, u"AB:LIST-2"_s);           // everything after the prefix's "-"
        row(u"{Ref=AddCampaign}{Choice(S6)=Autumn}"_s, u"EXTS:ADDCAMPAIGN"_s); // the choice dialog's answer
        for (const QString &dropped : {u"{Cmd=PINGECHO}"_s, u"{Cmd=BLF}{Ext=201}"_s, u"{Cmd=LOGIN}"_s,
                                       u"{Cmd=NEWSTATE}{Ext=201}"_s, u"{Ref=NOWHERE-X}"_s,
                                       u"{Ref=MAINS-EXTS}"_s, // a longer word is not the prefix
                                       u"{Name=no reference at all}"_s, u"not a tagged value"_s, QString()})
            row(dropped, QString());
    }

    void eachReplyReachesTheWindowItsReferenceNames()
    {
        QFETCH(QString, message);
        QFETCH(QString, delivery);
        m_link->HandleCallback(message);
        QCOMPARE(m_delivered, (delivery.isEmpty() ? Deliveries() : Deliveries{{delivery, message}}));
    }

    void deliversOnlyToWindowsThatAreOpen()
    {
        delete m_windows.take(u"AB"_s); // the address-book window was closed
        m_link->setReceiver(u"SCRIPTS"_s, nullptr);
        m_link->setReceiver(u"EXTS"_s, nullptr); // a campaign chosen has nowhere to go
        for (const QString &message : {u"{Ref=AB-AB}{Name(S5)=Sales}"_s, u"{Ref=SCRIPTS-SCRIPT}"_s,
                                       u"{Ref=AddCampaign}{Choice(S6)=Autumn}"_s, u"{Ref=MAIN-AB}"_s})
            m_link->HandleCallback(message);
        QCOMPARE(m_delivered, (Deliveries{{u"MAIN:AB"_s, u"{Ref=MAIN-AB}"_s}})); // the others still receive
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
    }

    // That a second copy ends while the first runs, and not after, is the quillconfig test's to show.
    void theLockIsTheUsersOwnAndALockThatCannotBeMadeDoesNotStopTheTool()
    {
        QFile plain(m_scratch.filePath(u"plain-file"_s));
        QVERIFY(plain.open(QIODevice::WriteOnly));
        QLockFile impossible(plain.fileName() + u"/quillconfig.lock"_s); // its folder is a file
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
