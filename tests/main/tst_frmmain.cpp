// SPDX-License-Identifier: GPL-3.0-or-later
// The main window against quillserverd with the demo site: filling every page, pages and tips,
// saving the settings on OK (and keeping them over a server restart), Cancel, LOGOUT, pictures.
#include "featurespage.h"
#include "frmMain.h"
#include "maintool.h"
#include "recordlist.h"
#include "screenshots.h"
#include "serverfixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

#include <memory>

namespace {

// The order in which the PBX settings record is written.
const QStringList pbxOrder{
    u"AutoDir"_s,  u"Name"_s,       u"Trunk"_s,        u"LCR"_s,        u"Area"_s,
    u"Operator"_s, u"PBX"_s,        u"Comm"_s,         u"Random"_s,     u"Numbers"_s,
    u"Settings"_s, u"Ip"_s,         u"Port"_s,         u"Server"_s,     u"Username"_s,
    u"Password"_s, u"FatalAlert"_s, u"WarningAlert"_s, u"DailyAlert"_s, u"SendUpdates"_s,
    u"SendPath"_s, u"Cluster"_s,    u"VMType"_s,       u"VM"_s,         u"VMIp"_s};

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
    // A settings block ("PBX", "FEATURES") as the server holds it, read and written by the
    // fixture's own session, to see what the tool stored.
    QString systemBlock(const QString &block)
    {
        return getText(m_fixture->fetch(u"MAIN-"_s + block), u"Options"_s);
    }
    void setSystemBlock(const QString &block, const QString &options)
    {
        QString command = u"{Cmd=SetFields}{Table=System}{Id="_s + block + u'}';
        AddVar(command, u"Fields"_s, record({{u"Options"_s, options}}));
        m_fixture->link.SendCommand(command);
    }
    // The names of a MAIN- list, in the server's order.
    QStringList listNames(const QString &key)
    {
        QStringList names;
        for (const QString &row : readList(m_fixture->fetch(key)))
            names << getText(row, u"Name"_s);
        return names;
    }

    std::unique_ptr<ServerFixture> m_fixture;
};

void MainWindowTest::initTestCase()
{
    m_fixture = std::make_unique<ServerFixture>();
    QString error;
    QVERIFY2(m_fixture->start(&error), qPrintable(error));
    m_fixture->link.setAddressBookSort(u"Order"_s); // as the main window lists them
}

void MainWindowTest::everyPageFillsFromTheServer()
{
    MainTool tool(m_fixture->relay.url());
    QVERIFY(tool.waitLoaded());
    QVERIFY(tool.window.isVisible());
    const RecordingRelay &relay = m_fixture->relay;

    // Devices: as many rows as the server has.
    const int devices = GetVar(m_fixture->fetch(u"MAIN-EXTS"_s), u"ListCount"_s).toInt();
    QVERIFY(devices > 0);
    QCOMPARE(tool.control<QTreeView>(u"List"_s)->model()->rowCount(), devices);

    // The record lists, in the server's order.
    const auto namesOf = [&](RecordKind kind) { return tool.window.recordList(kind)->names(); };
    QCOMPARE(namesOf(RecordKind::AddressBooks), listNames(u"MAIN-AB"_s));
    QCOMPARE(namesOf(RecordKind::Campaigns), listNames(u"MAIN-CAMPAIGNS"_s));
    QCOMPARE(namesOf(RecordKind::Scripts), listNames(u"MAIN-SCRIPTS"_s));
    QCOMPARE(namesOf(RecordKind::Routing), listNames(u"MAIN-ROUTING"_s));
    QVERIFY(!namesOf(RecordKind::AddressBooks).isEmpty());

    // The settings pages (each field's loading is the site page test's to check).
    const QString pbx = systemBlock(u"PBX"_s);
    QVERIFY(!getText(pbx, u"Name"_s).isEmpty());
    QCOMPARE(tool.control<QLineEdit>(u"sName"_s)->text(), getText(pbx, u"Name"_s));
    QCOMPARE(tool.control<QLineEdit>(u"Alert_0"_s)->text(), getText(pbx, u"FatalAlert"_s));
    const QString features = systemBlock(u"FEATURES"_s);
    QVERIFY(!features.isEmpty());
    for (const QString &tag : tagNames(features))
        QCOMPARE(tool.window.featuresPage()->code(tag), getText(features, tag));

    // The device read asks for the fields of each address book, in the list's order.
    const qsizetype before = relay.commands().size();
    tool.link.GetData(u"EXT"_s, 1);
    QTRY_COMPARE(relay.commands().size(), before + 1);
    QString bookFields;
    for (const QString &book : namesOf(RecordKind::AddressBooks))
        bookFields += u","_s + book + u"Vars,"_s + book + u"Use"_s;
    QVERIFY2(relay.commands().last().contains(u",Notes"_s + bookFields + u"}"_s),
             qPrintable(relay.commands().last()));

    // The status line names the server and the session's state.
    QCOMPARE(tool.control<QLabel>(u"ServerUrl"_s)->text(), relay.url().toString());
    QCOMPARE(tool.control<QLabel>(u"SessionState"_s)->text(), u"Ready"_s);
    tool.window.setEndsProgram(false);
    tool.window.close();
    QCOMPARE(tool.control<QLabel>(u"SessionState"_s)->text(), u"Session closed"_s);
}

void MainWindowTest::selectingAPageShowsItsPanelAndTip()
{
    MainTool tool(m_fixture->relay.url());
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
        QString tip;
        QString type = u"SIEMENS"_s; // the telephone system that shows the control
        QString connection = u"Tcp/Ip"_s;
    };
    const QList<Row> rows{
        {u"AutoDir"_s, u"Select Auto create for AVAYA ECS to 'learn' your extension numbers."_s,
         u"AVAYA ECS"_s},
        {u"Campaigns"_s, u"Lists Campaigns QuillServer has been configured to use."_s},
        {u"Ab"_s, u"List of public Address Books QuillServer has been configured to use."_s},
        {u"Alert_0"_s, u"Enter the extension number of the users to send fatal warnings to."_s},
        {u"Alert_1"_s, u"Enter the extension number of the users to send non fatal warnings to."_s},
        {u"Alert_2"_s, u"Enter the extension number of the users to send daily reports to."_s},
        {u"Ip"_s, u"Enter the IP address of your telephone system."_s},
        {u"List"_s, u"List of configured extensions, agents and trunks of your telephone system."_s},
        {u"netCluster"_s, u"Enter a comma separated list of remote servers."_s},
        {u"netPath"_s,
         u"Enter the source path of the update files.  This should be in UNC format. ie \\\\server\\share\\path."_s},
        {u"netSend"_s, u"Select this option to send QuillPhone updates automatically."_s},
        {u"sNumbers"_s, u"Enter a comma separated list of numbers to use when generating random calls."_s,
         u"Demonstration mode"_s},
        {u"sRandom"_s, u"Enter the number of seconds to wait before making a new random call."_s,
         u"Demonstration mode"_s},
        {u"Port"_s, u"Enter the TCP port of your telephone system.  You may need to get this value from your "
                    u"telephone maintainer."_s},
        {u"AButton_0"_s, u"Click this to add an Address Book to the list."_s},
        {u"AButton_1"_s, u"Click this to edit the properties of the selected Address Book."_s},
        {u"AButton_2"_s, u"Click this to remove the selected Address Book from QuillServer."_s},
        {u"AButton_3"_s, u"Click this to move the selected Address Book up in the priority order."_s},
        {u"AButton_4"_s, u"Click this to move the selected Address Book down in the priority order."_s},
        {u"RButton_0"_s, u"Click this to add a Routing Condition to the list."_s},
        {u"RButton_1"_s, u"Click this to edit the properties of the selected Routing Condition."_s},
        {u"RButton_2"_s, u"Click this to stop using the selected Routing Condition in QuillPhone."_s},
        {u"RButton_3"_s, u"Click this to move the selected Routing Condition up in the priority order."_s},
        {u"RButton_4"_s, u"Click this to move the selected Routing Condition down in the priority order."_s},
        {u"CButton_0"_s, u"Click this to add a campaign."_s},
        {u"CButton_1"_s, u"Click this to edit the properties of the selected campaign."_s},
        {u"CButton_2"_s, u"Click this to stop using the selected campaign in QuillPhone."_s},
        {u"SButton_0"_s, u"Click this to add a script."_s},
        {u"SButton_1"_s, u"Click this to edit the properties of the script."_s},
        {u"SButton_2"_s, u"Click this to remove the selected script."_s},
        {u"Cancel"_s, u"Click this button to exit Configuration without saving changes."_s},
        {u"Comm"_s,
         u"Select which Com port or network protocol your telephone system is connected to the server on."_s},
        {u"DButton_0"_s, u"Click this button to add a new extension."_s},
        {u"DButton_1"_s, u"Click this button to edit the properties of the selected extension."_s},
        {u"DButton_2"_s, u"Click this button to remove the selected extension."_s},
        {u"OK"_s, u"Click this button to save changes and exit Configuration."_s},
        {u"sArea"_s, u"Enter the area code of the city your telephone system is in."_s},
        {u"Scripts"_s, u"List of the installed QuillPhone scripts"_s},
        {u"Settings"_s,
         u"Enter the Com port's baud rate, parity checking, data bits and stop bits settings here."_s,
         u"SIEMENS"_s, u"Com1:"_s},
        {u"sName"_s, u"Enter your site name here."_s},
        {u"Features"_s,
         u"This is the list of codes dialed to access the various special features of your telephone system."_s},
        {u"sTrunk"_s, u"Enter the number which must be dialed before dialing an external number."_s},
        {u"sLCR"_s, u"Enter the LCR codes separated by commas which can precede external numbers."_s},
        {u"sOperator"_s, u"Enter the main operator's extension or group number."_s},
        {u"sVM"_s, u"Enter the number to use to access the voice mail."_s},
        {u"sVMType"_s, u"Select the type of voice mail used."_s},
        {u"sVMIP"_s, u"Enter the IP address of the voice mail."_s},
        {u"sType"_s, u"Select the type of telephone system QuillServer is connected to from the list."_s},
        {u"Routing"_s, u"List of Routing Conditions QuillServer has been configured to use."_s},
    };

    MainTool tool(m_fixture->relay.url());
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
    const RecordingRelay &relay = m_fixture->relay;
    // Stored out of order, with a setting the tool does not show and one tag in other case.
    const QString stored =
        u"{VMIP=10.0.0.9}{Licence(S3)=ABC}{Name=Old Site}{PBX=SIEMENS}{Comm=Tcp/Ip}{Trunk=9}"
        u"{AutoDir=1}{Area=0161}{Operator=200}{LCR=1470,1471}{Random=30}{Numbers=201,202}"
        u"{Settings=9600,n,8,1}{Ip=10.0.0.5}{Port=3000}{Server=aes1}{Username=cti}{Password=pw}"
        u"{FatalAlert=201}{WarningAlert=202}{DailyAlert=203}{SendUpdates=1}"
        u"{SendPath=\\\\srv\\upd}{Cluster=qs2,qs3}{VMType=VoxBox}{VM=555}{Site(N3)=007}"_s;
    setSystemBlock(u"PBX"_s, stored);
    setSystemBlock(u"FEATURES"_s, u"{Pickup=*8}{Flash=R}{Park=*44}"_s);
    QCOMPARE(systemBlock(u"PBX"_s), stored);

    QStringList sent;
    {
        MainTool tool(relay.url());
        QVERIFY(tool.waitLoaded());
        QSignalSpy unloaded(&tool.window, &frmMain::unloaded);
        QCOMPARE(tool.control<QLineEdit>(u"sName"_s)->text(), u"Old Site"_s);
        retype(tool.control<QLineEdit>(u"sName"_s), u"Harbour Site"_s);
        retype(tool.control<QLineEdit>(u"Alert_2"_s), u"299"_s);
        tool.window.featuresPage()->setCode(u"Pickup"_s, u"*88"_s);
        tool.window.featuresPage()->setCode(u"Park"_s, QString());

        const qsizetype before = relay.commands().size();
        QTest::mouseClick(tool.control<QPushButton>(u"OK"_s), Qt::LeftButton);
        QVERIFY(!tool.window.isVisible());
        QCOMPARE(unloaded.size(), 1);
        QCOMPARE(tool.session.state(), usrSession::State::Closed);
        QTRY_COMPARE(relay.commands().size(), before + 2);
        sent = relay.commands().mid(before);
    }

    // The settings record: every tag in its place, then the ones the tool does not show, as they were.
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

    // After a restart the server gives back what was stored.
    QVERIFY(m_fixture->restartServer());
    QCOMPARE(systemBlock(u"PBX"_s), pbx);
    QCOMPARE(systemBlock(u"FEATURES"_s), features);
}

void MainWindowTest::cancelClosesWithoutSendingAnything()
{
    const RecordingRelay &relay = m_fixture->relay;
    const QString pbx = systemBlock(u"PBX"_s);
    const QString features = systemBlock(u"FEATURES"_s);
    qsizetype before = 0;
    {
        MainTool tool(relay.url());
        QVERIFY(tool.waitLoaded());
        QSignalSpy unloaded(&tool.window, &frmMain::unloaded);
        retype(tool.control<QLineEdit>(u"sName"_s), u"Not To Be Saved"_s);
        tool.control<QCheckBox>(u"netSend"_s)->toggle();
        tool.window.featuresPage()->setCode(u"Intrude"_s, u"*77"_s);
        before = relay.commands().size();
        auto *cancel = tool.control<QPushButton>(u"Cancel"_s);
        cancel->setFocus();
        QTest::keyClick(cancel, Qt::Key_Return); // Enter presses the button that has the focus
        QVERIFY(!tool.window.isVisible());
        QCOMPARE(unloaded.size(), 1);
        QCOMPARE(tool.session.state(), usrSession::State::Closed);
    }

    // The settings are unchanged, and nothing but reads went through the relay since the Cancel.
    QCOMPARE(systemBlock(u"PBX"_s), pbx);
    QCOMPARE(systemBlock(u"FEATURES"_s), features);
    for (const QString &command : relay.commands().mid(before))
        QVERIFY2(command.startsWith(u"{Cmd=Get"_s), qPrintable(command));
}

void MainWindowTest::sessionEventsLoadAndCloseTheWindow()
{
    MainTool tool(m_fixture->relay.url());
    QVERIFY(tool.waitLoaded());
    QSignalSpy loaded(&tool.window, &frmMain::loaded);
    QSignalSpy unloaded(&tool.window, &frmMain::unloaded);

    // A READY in any case loads every list again.
    const qsizetype before = m_fixture->relay.commands().size();
    emit tool.session.SessionEvent(QString(), u"ready"_s, QString());
    QVERIFY(!tool.window.isLoaded());
    QTRY_COMPARE(loaded.size(), 1);
    QCOMPARE(m_fixture->relay.commands().size(), before + 7);

    // The keep-alive runs while the window is open.
    auto *ping = tool.window.findChild<QTimer *>(u"PingTimer"_s);
    QVERIFY(ping && ping->isActive());
    tool.window.PingTimer_Timer();
    QTRY_COMPARE(m_fixture->relay.commands().size(), before + 8);
    QCOMPARE(m_fixture->relay.commands().last(), u"{Cmd=Ping}{Handler=Branch}"_s);

    // LOGOUT closes the window and its session.
    emit tool.session.SessionEvent(QString(), u"LOGOUT"_s, QString());
    QVERIFY(!tool.window.isVisible());
    QCOMPARE(unloaded.size(), 1);
    QCOMPARE(tool.session.state(), usrSession::State::Closed);
    QVERIFY(!ping->isActive());
}

void MainWindowTest::picturesOfEveryPage()
{
    MainTool tool(m_fixture->relay.url());
    QVERIFY(tool.waitLoaded());
    // QUILL_SCREENSHOT_DIR keeps the pictures for a look at the layout.
    QTemporaryDir scratch;
    const QString dir = qEnvironmentVariable("QUILL_SCREENSHOT_DIR", scratch.filePath(u"pictures"_s));
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
