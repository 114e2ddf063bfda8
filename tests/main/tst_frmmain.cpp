// SPDX-License-Identifier: GPL-3.0-or-later
// The main window against quillserverd with the demo site: filling every page, pages and tips,
// saving the settings on OK (and keeping them over a server restart), Cancel, LOGOUT, pictures.
#include "featurespage.h"
#include "frmMain.h"
#include "maintool.h"
#include "recordlist.h"
#include "screenshots.h"
#include "serverfixture.h"
#include "tips.h"

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
    void pagesAndControlsShowTheirTips();
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
    QStringList listNames(const QString &key) { return listColumn(m_fixture->fetch(key), u"Name"_s); }

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

// The tip texts are the window's own table (the translation tests check them by key); what is
// checked here is that each page and each control of the table shows its text, on selection, focus
// or a click, with the system type or the product name filled in.
void MainWindowTest::pagesAndControlsShowTheirTips()
{
    MainTool tool(m_fixture->relay.url());
    QVERIFY(tool.waitLoaded());
    QTabWidget *tabs = tool.tabs();
    QCOMPARE(tabs->count(), 8);
    QCOMPARE(tabs->currentIndex(), 0);
    QCOMPARE(tool.tip()->text(), Tips::pageTip(0, u"QuillServer"_s));
    for (int page = 0; page < 8; ++page) {
        tabs->tabBar()->setCurrentIndex(page);
        QCOMPARE(tabs->tabText(page), Tips::pageNames().at(page));
        QCOMPARE(tool.tip()->text(), Tips::pageTip(page, u"QuillServer"_s));
        for (int panel = 0; panel < 8; ++panel)
            QCOMPARE(tool.control<QWidget>(u"picPanel_%1"_s.arg(panel))->isVisible(), panel == page);
    }
    QCOMPARE(
        tool.tip()->text(),
        u"Scripts are available to QUILLSERVER clients. They are written in VB Script and run on the client machine."_s);

    const QHash<QString, QString> spelledOut{
        {u"AutoDir"_s, u"Select Auto create for AVAYA ECS to 'learn' your extension numbers."_s},
        {u"Ab"_s, u"List of public Address Books QuillServer has been configured to use."_s},
        {u"sType"_s, u"Select the type of telephone system QuillServer is connected to from the list."_s},
        {u"sVMIP"_s, u"Enter the IP address of the voice mail."_s}, // shares its key with sType
    };
    // The telephone system and connection that show a control, where SIEMENS on Tcp/Ip does not.
    const QHash<QString, QStringList> shownBy{{u"AutoDir"_s, {u"AVAYA ECS"_s, u"Tcp/Ip"_s}},
                                              {u"sNumbers"_s, {u"Demonstration mode"_s, u"Tcp/Ip"_s}},
                                              {u"sRandom"_s, {u"Demonstration mode"_s, u"Tcp/Ip"_s}},
                                              {u"Settings"_s, {u"SIEMENS"_s, u"Com1:"_s}}};
    tool.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&tool.window));
    auto *type = tool.control<QComboBox>(u"sType"_s);
    auto *comm = tool.control<QComboBox>(u"Comm"_s);
    auto *voiceMail = tool.control<QComboBox>(u"sVMType"_s);
    voiceMail->setCurrentIndex(voiceMail->findText(u"VoxBox"_s));

    QCOMPARE(Tips::controlTips().size(), 51);
    for (const ControlTip &entry : Tips::controlTips()) {
        const QStringList system = shownBy.value(entry.control, {u"SIEMENS"_s, u"Tcp/Ip"_s});
        const QString tip =
            spelledOut.value(entry.control, Tips::controlTipText(entry, u"QuillServer"_s, system[0]));
        auto *control = tool.control<QWidget>(entry.control);
        QVERIFY2(control, qPrintable(entry.control));
        type->setCurrentIndex(type->findText(system[0]));
        comm->setCurrentIndex(comm->findText(system[1]));
        const int page = pageOf(control);
        if (page >= 0)
            tool.tabs()->setCurrentIndex(page);
        QVERIFY2(control->isVisible(), qPrintable(entry.control));

        tool.tabs()->setFocus();
        tool.tip()->clear();
        if (control->isEnabled() && control->focusPolicy() != Qt::NoFocus) {
            control->setFocus(Qt::TabFocusReason);
            QTRY_COMPARE(tool.tip()->text(), tip);
            // A click shows it again (a button that acts is not clicked here).
            if (!qobject_cast<QAbstractButton *>(control) && !qobject_cast<QComboBox *>(control)) {
                tool.tip()->clear();
                auto *scrollArea = qobject_cast<QAbstractScrollArea *>(control);
                QWidget *target = scrollArea ? scrollArea->viewport() : control;
                QTest::mousePress(target, Qt::LeftButton, {}, QPoint(2, 2));
                QTest::mouseRelease(target, Qt::LeftButton, {}, QPoint(2, 2));
                QCOMPARE(tool.tip()->text(), tip);
            }
        } else {
            // A button without a selection to act on cannot take the focus, but can be clicked.
            QTest::mouseClick(control, Qt::LeftButton);
            QCOMPARE(tool.tip()->text(), tip);
        }
        QApplication::processEvents();
    }

    // Under the other product name the title and the scripts tip follow.
    tool.window.setProductName(u"Halyard"_s);
    QCOMPARE(tool.window.windowTitle(), u"Halyard configuration"_s);
    tabs->setCurrentIndex(7);
    QCOMPARE(
        tool.tip()->text(),
        u"Scripts are available to HALYARD clients. They are written in VB Script and run on the client machine."_s);
    tool.window.close();
}

void MainWindowTest::okStoresTheSettingsInOrderAndTheyOutliveARestart()
{
    const RecordingRelay &relay = m_fixture->relay;
    // Stored out of order, with a setting the tool does not show, one tag in other case and no
    // serial settings (the page shows its default).
    const QString stored =
        u"{VMIP=10.0.0.9}{Licence(S3)=ABC}{Name=Old Site}{PBX=SIEMENS}{Comm=Tcp/Ip}{Trunk=9}"
        u"{AutoDir=1}{Area=0161}{Operator=200}{LCR=1470,1471}{Random=30}{Numbers=201,202}"
        u"{Ip=10.0.0.5}{Port=3000}{Server=aes1}{Username=cti}{Password=pw}"
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
        tool.control<QCheckBox>(u"netSend"_s)->setChecked(false);
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

    // The settings record: every tag in its place (a box unticked written all the same), then the
    // ones the tool does not show, as they were.
    QVERIFY2(sent.at(0).startsWith(u"{Cmd=SetFields}{Table=System}{Id=PBX}{Fields(S"_s),
             qPrintable(sent.at(0)));
    const QString pbx = getText(getText(sent.at(0), u"Fields"_s), u"Options"_s);
    QCOMPARE(tagNames(pbx), pbxOrder + QStringList({u"Licence"_s, u"Site"_s}));
    QVERIFY2(pbx.endsWith(u"{Licence(S3)=ABC}{Site(N3)=007}"_s), qPrintable(pbx)); // not re-typed
    QCOMPARE(getText(pbx, u"Name"_s), u"Harbour Site"_s);
    QCOMPARE(getText(pbx, u"DailyAlert"_s), u"299"_s);
    QCOMPARE(getText(pbx, u"SendUpdates"_s), u"0"_s);
    QCOMPARE(getText(pbx, u"Settings"_s), u"19200,n,8,1"_s);
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
