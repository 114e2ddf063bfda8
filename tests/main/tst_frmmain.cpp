// SPDX-License-Identifier: GPL-3.0-or-later
// The main window against quillserverd with the demo site: filling every page, pages and tips,
// saving the settings on OK (and keeping them over a server restart), Cancel, LOGOUT, pictures.
#include "isolation.h"
#include "directorypage.h"
#include "featurespage.h"
#include "frmMain.h"
#include "maintool.h"
#include "msgboxanswers.h"
#include "serverfixture.h"
#include "recordlist.h"
#include "screenshots.h"
#include "startup.h"

#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTabWidget>
#include <QTimer>
#include <QTreeView>
#include <QTreeWidget>

#include <memory>

namespace {

// The order in which the PBX settings record is written.
const QStringList pbxOrder{
    u"AutoDir"_s,  u"Name"_s,       u"Trunk"_s,        u"LCR"_s,        u"Area"_s,
    u"Operator"_s, u"PBX"_s,        u"Comm"_s,         u"Random"_s,     u"Numbers"_s,
    u"Settings"_s, u"Ip"_s,         u"Port"_s,         u"Server"_s,     u"Username"_s,
    u"Password"_s, u"FatalAlert"_s, u"WarningAlert"_s, u"DailyAlert"_s, u"SendUpdates"_s,
    u"SendPath"_s, u"Cluster"_s,    u"VMType"_s,       u"VM"_s,         u"VMIp"_s};

// A second client that reads and writes the server directly, to see what the tool stored.
class Probe
{
public:
    explicit Probe(const QUrl &server)
    {
        QObject::connect(&m_session, &usrSession::SessionEvent,
                         [this](const QString &, const QString &kind, const QString &data) {
                             if (kind == u"READY"_s)
                                 m_ready = true;
                             else if (kind == u"MESSAGE"_s)
                                 m_replies.insert(getText(data, u"Ref"_s).toUpper(), data);
                         });
        m_session.setCredentials({server, TestAccount::user(), TestAccount::password(), {}});
        m_session.StartSession(u"Probe"_s);
    }
    ~Probe() { m_session.CloseSession(); }

    bool ready()
    {
        return QTest::qWaitFor([this] { return m_ready; }, 20000);
    }

    // Sends a read whose literal carries "{Ref=PROBE-...}" and waits for its answer.
    QString ask(const QString &command)
    {
        const QString ref = getText(command, u"Ref"_s).toUpper();
        m_replies.remove(ref);
        m_session.SendCommand(command);
        if (!QTest::qWaitFor([&] { return m_replies.contains(ref); }, 20000))
            qWarning("no answer to %s", qPrintable(command));
        return m_replies.value(ref);
    }
    QString systemBlock(const QString &block)
    {
        return getText(ask(u"{Cmd=GetField}{Table=System}{Id="_s + block + u"}{Field=Options}{Ref=PROBE-"_s +
                           block + u"}"_s),
                       u"Options"_s);
    }
    void setSystemBlock(const QString &block, const QString &options)
    {
        QString fields;
        AddVar(fields, u"Options"_s, options);
        QString command = u"{Cmd=SetFields}{Table=System}{Id="_s + block + u"}"_s;
        AddVar(command, u"Fields"_s, fields);
        m_session.SendCommand(command);
    }
    // The names of a list, in the server's order.
    QStringList names(const QString &table, const QString &sort)
    {
        const QString reply = ask(u"{Cmd=GetList}{Table="_s + table + u"}{Ref=PROBE-"_s + table.toUpper() +
                                  u"}{Fields=Id,Name}{Sort="_s + sort + u"}"_s);
        QStringList names;
        for (const QString &row : readList(reply))
            names << getText(row, u"Name"_s);
        return names;
    }

private:
    usrSession m_session;
    bool m_ready = false;
    QHash<QString, QString> m_replies;
};

// The page whose panel holds widget, or -1 (the buttons below the pages).
int pageOf(const QWidget *widget)
{
    for (const QWidget *w = widget; w; w = w->parentWidget()) {
        if (w->objectName().startsWith(u"picPanel_"_s))
            return w->objectName().mid(9).toInt();
    }
    return -1;
}

void retype(QLineEdit *edit, const QString &text)
{
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
}

} // namespace

class MainWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyPageFillsFromTheServer();
    void selectingAPageShowsItsPanelAndTip();
    void everyControlShowsItsTip();
    void okStoresTheSettingsInOrderAndTheyOutliveARestart();
    void cancelClosesWithoutSendingAnything();
    void sessionEventsLoadAndCloseTheWindow();
    void picturesOfEveryPage();

private:
    TestIsolation m_scratch;
    ServerProcess m_server;
    RecordingRelay m_relay;
};

void MainWindowTest::initTestCase()
{
    QVERIFY(m_scratch.enter());
    QVERIFY2(m_server.addUser(TestAccount::user(), TestAccount::password()) &&
                 m_server.start({u"--seed-demo"_s}),
             qPrintable(m_server.log()));
    QVERIFY(m_relay.listen(m_server.url()));
}

void MainWindowTest::everyPageFillsFromTheServer()
{
    Probe probe(m_server.url());
    QVERIFY(probe.ready());
    MainTool tool(m_relay.url());
    QVERIFY(tool.waitLoaded());
    QVERIFY(tool.window.isVisible());

    // Devices: as many rows as the server has.
    const QString devices = probe.ask(u"{Cmd=GetList}{Table=Exts}{Ref=PROBE-EXTS}{Fields=Id}{Sort=Type}"_s);
    QVERIFY(GetVar(devices, u"ListCount"_s).toInt() > 0);
    QCOMPARE(tool.control<QTreeView>(u"List"_s)->model()->rowCount(),
             GetVar(devices, u"ListCount"_s).toInt());

    // The record lists, in the server's order.
    const auto namesOf = [&](RecordKind kind) { return tool.window.recordList(kind)->names(); };
    QCOMPARE(namesOf(RecordKind::AddressBooks), probe.names(u"Ab"_s, u"Name"_s));
    QCOMPARE(namesOf(RecordKind::Campaigns), probe.names(u"Campaigns"_s, u"Name"_s));
    QCOMPARE(namesOf(RecordKind::Scripts), probe.names(u"Scripts"_s, u"Name"_s));
    QCOMPARE(namesOf(RecordKind::Routing), probe.names(u"Routing"_s, u"Order"_s));
    QVERIFY(!namesOf(RecordKind::AddressBooks).isEmpty());

    // The settings pages.
    const QString pbx = probe.systemBlock(u"PBX"_s);
    QVERIFY(!getText(pbx, u"Name"_s).isEmpty());
    QCOMPARE(tool.control<QLineEdit>(u"sName"_s)->text(), getText(pbx, u"Name"_s));
    QCOMPARE(tool.control<QLineEdit>(u"sArea"_s)->text(), getText(pbx, u"Area"_s));
    QCOMPARE(tool.control<QComboBox>(u"sType"_s)->currentText().toUpper(), getText(pbx, u"PBX"_s).toUpper());
    QCOMPARE(tool.control<QLineEdit>(u"Alert_0"_s)->text(), getText(pbx, u"FatalAlert"_s));
    QCOMPARE(tool.control<QLineEdit>(u"sVMIP"_s)->text(), getText(pbx, u"VMIp"_s));
    const QString features = probe.systemBlock(u"FEATURES"_s);
    QVERIFY(!features.isEmpty());
    for (const QString &tag : tagNames(features))
        QCOMPARE(tool.window.featuresPage()->code(tag), getText(features, tag));

    // The device read asks for the fields of each address book, in the list's order.
    const qsizetype before = m_relay.commands().size();
    tool.link.GetData(u"EXT"_s, 1);
    QTRY_COMPARE(m_relay.commands().size(), before + 1);
    QString bookFields;
    for (const QString &book : namesOf(RecordKind::AddressBooks))
        bookFields += u","_s + book + u"Vars,"_s + book + u"Use"_s;
    QVERIFY2(m_relay.commands().last().contains(u",Notes"_s + bookFields + u"}"_s),
             qPrintable(m_relay.commands().last()));

    // The status line names the server and the session's state.
    QCOMPARE(tool.control<QLabel>(u"ServerUrl"_s)->text(), m_relay.url().toString());
    QCOMPARE(tool.control<QLabel>(u"SessionState"_s)->text(), u"Ready"_s);
    tool.window.setEndsProgram(false);
    tool.window.close();
    QCOMPARE(tool.control<QLabel>(u"SessionState"_s)->text(), u"Session closed"_s);
}

void MainWindowTest::selectingAPageShowsItsPanelAndTip()
{
    MainTool tool(m_relay.url());
    QVERIFY(tool.waitLoaded());
    const QStringList captions{u"Directory"_s, u"Site"_s,    u"Address Books"_s, u"Campaigns"_s,
                               u"Features"_s,  u"Routing"_s, u"Network"_s,       u"Scripts"_s};
    const QStringList tips{
        u"Enter a complete list of devices that are found on the PBX.  Trunks are not entered on all PBXs, please check installation notes before starting."_s,
        u"Enter the site details, making sure the locality data is correct.  Select 'auto create devices', if available, to speed up installation."_s,
        u"Address Books allow searching of external telephone numbers.  Not all Address Books are available to all client software."_s,
        u"Add the campaigns to be used.  Campaigns are for use by the QuillCampaign client software."_s,
        u"Enter the relevant feature codes above.  Please check installation notes for details.  Certain features are not available on some PBXs."_s,
        u"Routing allows certain types of calls to be automatically routed.  Not all types of routes are available on all PBXs.  Please see installation notes."_s,
        u"Enter the relevant information to allow daily reports and automatic client upgrades, etc."_s,
        u"Scripts are available to QUILLSERVER clients. They are written in VB Script and run on the client machine."_s,
    };
    QTabWidget *tabs = tool.tabs();
    QCOMPARE(tabs->count(), 8);
    QCOMPARE(tabs->currentIndex(), 0);
    QCOMPARE(tool.tip()->text(), tips.at(0));
    for (int page = 0; page < 8; ++page) {
        tabs->tabBar()->setCurrentIndex(page);
        QCOMPARE(tabs->tabText(page), captions.at(page));
        QCOMPARE(tool.tip()->text(), tips.at(page));
        for (int panel = 0; panel < 8; ++panel)
            QCOMPARE(tool.control<QWidget>(u"picPanel_%1"_s.arg(panel))->isVisible(), panel == page);
    }

    // Under the other product name the title and the scripts tip follow.
    tool.window.setProductName(u"Halyard"_s);
    QCOMPARE(tool.window.windowTitle(), u"Halyard configuration"_s);
    QCOMPARE(
        tool.tip()->text(),
        u"Scripts are available to HALYARD clients. They are written in VB Script and run on the client machine."_s);
    tool.window.close();
}

void MainWindowTest::everyControlShowsItsTip()
{
    struct Row
    {
        QString control;
        QString type; // the telephone system that shows the control
        QString connection;
        QString tip;
    };
    const QString siemens = u"SIEMENS"_s;
    const QString net = u"Tcp/Ip"_s;
    const QList<Row> rows{
        {u"AutoDir"_s, u"AVAYA ECS"_s, net,
         u"Select Auto create for AVAYA ECS to 'learn' your extension numbers."_s},
        {u"Campaigns"_s, siemens, net, u"Lists Campaigns QuillServer has been configured to use."_s},
        {u"Ab"_s, siemens, net, u"List of public Address Books QuillServer has been configured to use."_s},
        {u"Alert_0"_s, siemens, net, u"Enter the extension number of the users to send fatal warnings to."_s},
        {u"Alert_1"_s, siemens, net,
         u"Enter the extension number of the users to send non fatal warnings to."_s},
        {u"Alert_2"_s, siemens, net, u"Enter the extension number of the users to send daily reports to."_s},
        {u"Ip"_s, siemens, net, u"Enter the IP address of your telephone system."_s},
        {u"List"_s, siemens, net,
         u"List of configured extensions, agents and trunks of your telephone system."_s},
        {u"netCluster"_s, siemens, net, u"Enter a comma separated list of remote servers."_s},
        {u"netPath"_s, siemens, net,
         u"Enter the source path of the update files.  This should be in UNC format. ie \\\\server\\share\\path."_s},
        {u"netSend"_s, siemens, net, u"Select this option to send QuillPhone updates automatically."_s},
        {u"sNumbers"_s, u"Demonstration mode"_s, net,
         u"Enter a comma separated list of numbers to use when generating random calls."_s},
        {u"sRandom"_s, u"Demonstration mode"_s, net,
         u"Enter the number of seconds to wait before making a new random call."_s},
        {u"Port"_s, siemens, net,
         u"Enter the TCP port of your telephone system.  You may need to get this value from your telephone maintainer."_s},
        {u"AButton_0"_s, siemens, net, u"Click this to add an Address Book to the list."_s},
        {u"AButton_1"_s, siemens, net, u"Click this to edit the properties of the selected Address Book."_s},
        {u"AButton_2"_s, siemens, net, u"Click this to remove the selected Address Book from QuillServer."_s},
        {u"AButton_3"_s, siemens, net,
         u"Click this to move the selected Address Book up in the priority order."_s},
        {u"AButton_4"_s, siemens, net,
         u"Click this to move the selected Address Book down in the priority order."_s},
        {u"RButton_0"_s, siemens, net, u"Click this to add a Routing Condition to the list."_s},
        {u"RButton_1"_s, siemens, net,
         u"Click this to edit the properties of the selected Routing Condition."_s},
        {u"RButton_2"_s, siemens, net,
         u"Click this to stop using the selected Routing Condition in QuillPhone."_s},
        {u"RButton_3"_s, siemens, net,
         u"Click this to move the selected Routing Condition up in the priority order."_s},
        {u"RButton_4"_s, siemens, net,
         u"Click this to move the selected Routing Condition down in the priority order."_s},
        {u"CButton_0"_s, siemens, net, u"Click this to add a campaign."_s},
        {u"CButton_1"_s, siemens, net, u"Click this to edit the properties of the selected campaign."_s},
        {u"CButton_2"_s, siemens, net, u"Click this to stop using the selected campaign in QuillPhone."_s},
        {u"SButton_0"_s, siemens, net, u"Click this to add a script."_s},
        {u"SButton_1"_s, siemens, net, u"Click this to edit the properties of the script."_s},
        {u"SButton_2"_s, siemens, net, u"Click this to remove the selected script."_s},
        {u"Cancel"_s, siemens, net, u"Click this button to exit Configuration without saving changes."_s},
        {u"Comm"_s, siemens, net,
         u"Select which Com port or network protocol your telephone system is connected to the server on."_s},
        {u"DButton_0"_s, siemens, net, u"Click this button to add a new extension."_s},
        {u"DButton_1"_s, siemens, net,
         u"Click this button to edit the properties of the selected extension."_s},
        {u"DButton_2"_s, siemens, net, u"Click this button to remove the selected extension."_s},
        {u"OK"_s, siemens, net, u"Click this button to save changes and exit Configuration."_s},
        {u"sArea"_s, siemens, net, u"Enter the area code of the city your telephone system is in."_s},
        {u"Scripts"_s, siemens, net, u"List of the installed QuillPhone scripts"_s},
        {u"Settings"_s, siemens, u"Com1:"_s,
         u"Enter the Com port's baud rate, parity checking, data bits and stop bits settings here."_s},
        {u"sName"_s, siemens, net, u"Enter your site name here."_s},
        {u"Features"_s, siemens, net,
         u"This is the list of codes dialed to access the various special features of your telephone system."_s},
        {u"sTrunk"_s, siemens, net,
         u"Enter the number which must be dialed before dialing an external number."_s},
        {u"sLCR"_s, siemens, net,
         u"Enter the LCR codes separated by commas which can precede external numbers."_s},
        {u"sOperator"_s, siemens, net, u"Enter the main operator's extension or group number."_s},
        {u"sVM"_s, siemens, net, u"Enter the number to use to access the voice mail."_s},
        {u"sVMType"_s, siemens, net, u"Select the type of voice mail used."_s},
        {u"sVMIP"_s, siemens, net, u"Enter the IP address of the voice mail."_s},
        {u"sType"_s, siemens, net,
         u"Select the type of telephone system QuillServer is connected to from the list."_s},
        {u"Routing"_s, siemens, net, u"List of Routing Conditions QuillServer has been configured to use."_s},
    };

    MainTool tool(m_relay.url());
    QVERIFY(tool.waitLoaded());
    tool.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&tool.window));
    auto *type = tool.control<QComboBox>(u"sType"_s);
    auto *comm = tool.control<QComboBox>(u"Comm"_s);
    auto *voiceMail = tool.control<QComboBox>(u"sVMType"_s);
    voiceMail->setCurrentIndex(voiceMail->findText(u"VoxBox"_s));

    for (const Row &row : rows) {
        auto *control = tool.control<QWidget>(row.control);
        QVERIFY2(control, qPrintable(row.control));
        type->setCurrentIndex(type->findText(row.type));
        comm->setCurrentIndex(comm->findText(row.connection));
        const int page = pageOf(control);
        if (page >= 0)
            tool.tabs()->setCurrentIndex(page);
        QVERIFY2(control->isVisible(), qPrintable(row.control));

        tool.tabs()->setFocus();
        tool.tip()->clear();
        if (control->isEnabled() && control->focusPolicy() != Qt::NoFocus) {
            control->setFocus(Qt::TabFocusReason);
            QTRY_COMPARE(tool.tip()->text(), row.tip);
            // A click shows it again (a button that acts is not clicked here).
            if (!qobject_cast<QAbstractButton *>(control) && !qobject_cast<QComboBox *>(control)) {
                tool.tip()->clear();
                auto *scrollArea = qobject_cast<QAbstractScrollArea *>(control);
                QWidget *target = scrollArea ? scrollArea->viewport() : control;
                QTest::mousePress(target, Qt::LeftButton, {}, QPoint(2, 2));
                QTest::mouseRelease(target, Qt::LeftButton, {}, QPoint(2, 2));
                QCOMPARE(tool.tip()->text(), row.tip);
            }
        } else {
            // A button without a selection to act on cannot take the focus, but can be clicked.
            QTest::mouseClick(control, Qt::LeftButton);
            QCOMPARE(tool.tip()->text(), row.tip);
        }
        QApplication::processEvents();
    }
    tool.window.close();
}

void MainWindowTest::okStoresTheSettingsInOrderAndTheyOutliveARestart()
{
    Probe probe(m_server.url());
    QVERIFY(probe.ready());
    const QString originalPbx = probe.systemBlock(u"PBX"_s);
    // Stored out of order, with a setting the tool does not show and one tag in other case.
    const QString stored =
        u"{VMIP=10.0.0.9}{Licence(S3)=ABC}{Name=Old Site}{PBX=SIEMENS}{Comm=Tcp/Ip}{Trunk=9}"
        u"{AutoDir=1}{Area=0161}{Operator=200}{LCR=1470,1471}{Random=30}{Numbers=201,202}"
        u"{Settings=9600,n,8,1}{Ip=10.0.0.5}{Port=3000}{Server=aes1}{Username=cti}{Password=pw}"
        u"{FatalAlert=201}{WarningAlert=202}{DailyAlert=203}{SendUpdates=1}"
        u"{SendPath=\\\\srv\\upd}{Cluster=qs2,qs3}{VMType=VoxBox}{VM=555}{Site(N3)=007}"_s;
    probe.setSystemBlock(u"PBX"_s, stored);
    probe.setSystemBlock(u"FEATURES"_s, u"{Pickup=*8}{Flash=R}{Park=*44}"_s);
    QCOMPARE(probe.systemBlock(u"PBX"_s), stored);

    QStringList sent;
    {
        MainTool tool(m_relay.url());
        QVERIFY(tool.waitLoaded());
        QSignalSpy unloaded(&tool.window, &frmMain::unloaded);
        QCOMPARE(tool.control<QLineEdit>(u"sName"_s)->text(), u"Old Site"_s);
        retype(tool.control<QLineEdit>(u"sName"_s), u"Harbour Site"_s);
        retype(tool.control<QLineEdit>(u"Alert_2"_s), u"299"_s);
        tool.window.featuresPage()->setCode(u"Pickup"_s, u"*88"_s);
        tool.window.featuresPage()->setCode(u"Park"_s, QString());

        const qsizetype before = m_relay.commands().size();
        QTest::mouseClick(tool.control<QPushButton>(u"OK"_s), Qt::LeftButton);
        QVERIFY(!tool.window.isVisible());
        QCOMPARE(unloaded.size(), 1);
        QCOMPARE(tool.session.state(), usrSession::State::Closed);
        QTRY_COMPARE(m_relay.commands().size(), before + 2);
        sent = m_relay.commands().mid(before);
    }

    // The settings record: every tag in its place, then the one the tool does not show.
    QVERIFY2(sent.at(0).startsWith(u"{Cmd=SetFields}{Table=System}{Id=PBX}{Fields(S"_s),
             qPrintable(sent.at(0)));
    const QString pbx = getText(getText(sent.at(0), u"Fields"_s), u"Options"_s);
    QCOMPARE(tagNames(pbx), pbxOrder + QStringList({u"Licence"_s, u"Site"_s}));
    QVERIFY2(pbx.endsWith(u"{Licence(S3)=ABC}{Site(N3)=007}"_s), qPrintable(pbx)); // not re-typed
    QCOMPARE(getText(pbx, u"Name"_s), u"Harbour Site"_s);
    QCOMPARE(getText(pbx, u"DailyAlert"_s), u"299"_s);
    QCOMPARE(getText(pbx, u"VMIp"_s), u"10.0.0.9"_s);
    QCOMPARE(getText(pbx, u"SendPath"_s), u"\\\\srv\\upd"_s);
    QCOMPARE(getText(pbx, u"AutoDir"_s), u"1"_s);
    QVERIFY2(sent.at(1).startsWith(u"{Cmd=SetFields}{Table=System}{Id=FEATURES}{Fields(S"_s),
             qPrintable(sent.at(1)));
    const QString features = getText(getText(sent.at(1), u"Fields"_s), u"Options"_s);
    QCOMPARE(tagNames(features), (QStringList{u"Pickup"_s, u"Flash"_s}));
    QCOMPARE(getText(features, u"Pickup"_s), u"*88"_s);

    // After a restart the server gives back what was stored, and a new window shows it.
    QVERIFY2(m_server.restart(), qPrintable(m_server.log()));
    {
        Probe after(m_server.url());
        QVERIFY(after.ready());
        QCOMPARE(after.systemBlock(u"PBX"_s), pbx);
        QCOMPARE(after.systemBlock(u"FEATURES"_s), features);
    }
    MainTool tool(m_relay.url());
    QVERIFY(tool.waitLoaded());
    QCOMPARE(tool.control<QLineEdit>(u"sName"_s)->text(), u"Harbour Site"_s);
    QCOMPARE(tool.control<QLineEdit>(u"Alert_2"_s)->text(), u"299"_s);
    QCOMPARE(tool.window.featuresPage()->code(u"Pickup"_s), u"*88"_s);
    QVERIFY(tool.window.featuresPage()->code(u"Park"_s).isEmpty());
    QCOMPARE(tool.window.featuresPage()->code(u"Flash"_s), u"R"_s);
    tool.window.close();

    Probe restore(m_server.url());
    QVERIFY(restore.ready());
    restore.setSystemBlock(u"PBX"_s, originalPbx);
    QCOMPARE(restore.systemBlock(u"PBX"_s), originalPbx);
}

void MainWindowTest::cancelClosesWithoutSendingAnything()
{
    Probe probe(m_server.url());
    QVERIFY(probe.ready());
    const QString pbx = probe.systemBlock(u"PBX"_s);
    const QString features = probe.systemBlock(u"FEATURES"_s);

    qsizetype before = 0;
    {
        MainTool tool(m_relay.url());
        QVERIFY(tool.waitLoaded());
        QSignalSpy unloaded(&tool.window, &frmMain::unloaded);
        retype(tool.control<QLineEdit>(u"sName"_s), u"Not To Be Saved"_s);
        tool.control<QCheckBox>(u"netSend"_s)->toggle();
        tool.window.featuresPage()->setCode(u"Intrude"_s, u"*77"_s);
        before = m_relay.commands().size();
        auto *cancel = tool.control<QPushButton>(u"Cancel"_s);
        cancel->setFocus();
        QTest::keyClick(cancel, Qt::Key_Return); // Enter presses the button that has the focus
        QVERIFY(!tool.window.isVisible());
        QCOMPARE(unloaded.size(), 1);
        QCOMPARE(tool.session.state(), usrSession::State::Closed);
    }

    // The next copy of the tool sees the settings unchanged, and nothing but its own reads went
    // through the relay since the Cancel.
    MainTool next(m_relay.url());
    QVERIFY(next.waitLoaded());
    for (const QString &command : m_relay.commands().mid(before))
        QVERIFY2(command.startsWith(u"{Cmd=Get"_s), qPrintable(command));
    QCOMPARE(next.control<QLineEdit>(u"sName"_s)->text(), getText(pbx, u"Name"_s));
    QCOMPARE(probe.systemBlock(u"PBX"_s), pbx);
    QCOMPARE(probe.systemBlock(u"FEATURES"_s), features);
    next.window.close();
}

void MainWindowTest::sessionEventsLoadAndCloseTheWindow()
{
    MainTool tool(m_relay.url());
    QVERIFY(tool.waitLoaded());
    QSignalSpy loaded(&tool.window, &frmMain::loaded);
    QSignalSpy unloaded(&tool.window, &frmMain::unloaded);

    // A READY in any case loads every list again.
    const qsizetype before = m_relay.commands().size();
    emit tool.session.SessionEvent(QString(), u"ready"_s, QString());
    QVERIFY(!tool.window.isLoaded());
    QTRY_COMPARE(loaded.size(), 1);
    QCOMPARE(m_relay.commands().size(), before + 7);

    // The keep-alive runs while the window is open.
    auto *ping = tool.window.findChild<QTimer *>(u"PingTimer"_s);
    QVERIFY(ping && ping->isActive());
    tool.window.PingTimer_Timer();
    QTRY_COMPARE(m_relay.commands().size(), before + 8);
    QCOMPARE(m_relay.commands().last(), u"{Cmd=Ping}{Handler=Branch}"_s);

    // LOGOUT closes the window and its session.
    emit tool.session.SessionEvent(QString(), u"LOGOUT"_s, QString());
    QVERIFY(!tool.window.isVisible());
    QCOMPARE(unloaded.size(), 1);
    QCOMPARE(tool.session.state(), usrSession::State::Closed);
    QVERIFY(!ping->isActive());
}

void MainWindowTest::picturesOfEveryPage()
{
    MainTool tool(m_relay.url());
    QVERIFY(tool.waitLoaded());
    // QUILL_SCREENSHOT_DIR keeps the pictures for a look at the layout.
    const QString dir = qEnvironmentVariable("QUILL_SCREENSHOT_DIR", m_scratch.filePath(u"pictures"_s));
    QString error;
    const QStringList files = savePageScreenshots(tool.window, dir, &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    const QStringList names{u"page-0-directory.png"_s,     u"page-1-site.png"_s,
                            u"page-2-address-books.png"_s, u"page-3-campaigns.png"_s,
                            u"page-4-features.png"_s,      u"page-5-routing.png"_s,
                            u"page-6-network.png"_s,       u"page-7-scripts.png"_s};
    QCOMPARE(files.size(), names.size());
    for (int page = 0; page < names.size(); ++page) {
        QCOMPARE(QFileInfo(files.at(page)).fileName(), names.at(page));
        const QImage picture(files.at(page));
        QCOMPARE(picture.size(), tool.window.size() * tool.window.devicePixelRatio());
    }
    // The pictures differ: each shows its own page.
    QVERIFY(QImage(files.at(1)) != QImage(files.at(6)));
    QCOMPARE(tool.tabs()->currentIndex(), 0);
    tool.window.close();
}

QTEST_MAIN(MainWindowTest)
#include "tst_frmmain.moc"
