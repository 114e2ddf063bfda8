// SPDX-License-Identifier: GPL-3.0-or-later
// The device window against quillserverd: the row a new device stores, byte for byte, for each kind;
// ranges of numbers; several devices saved at once keeping what they do not share; the refused
// empty number; the pages shown for each kind; the titles; the button count, the button and event
// rows edited in the action editor, and a row the pages cannot show fully going back as it came.
#include "findchild.h"
#include "frmConfig.h"
#include "modalwindow.h"
#include "msgboxanswers.h"
#include "serverfixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>

namespace {

using Fields = QList<std::pair<QString, QVariant>>;

QString setFields(const QString &fields, const QString &id)
{
    return setFieldsCommand(u"Exts"_s, fields, id);
}

// The flag boxes of the Features and Advanced pages as a new device starts, in the order OK writes
// them (boxes 0 to 19, 21, 22), and the absence box.
const Fields newDeviceFlags{
    {u"DontMonitor"_s, 0}, {u"NotAnswer"_s, 0},    {u"CanDial"_s, 1},   {u"CallLog"_s, 1},
    {u"OtherLog"_s, 0},    {u"ViewAB"_s, 1},       {u"EditOwn"_s, 1},   {u"ExcludeBLF"_s, 0},
    {u"MainNo"_s, 0},      {u"EditAB"_s, 1},       {u"ShowAll"_s, 0},   {u"ConfigButtons"_s, 1},
    {u"ViewBLF"_s, 1},     {u"AllowPickup"_s, 1},  {u"ViewTodo"_s, 1},  {u"ViewFeatures"_s, 1},
    {u"SetCallback"_s, 0}, {u"AllowReroute"_s, 0}, {u"Privacy"_s, 0},   {u"Administrator"_s, 0},
    {u"UsePBXName"_s, 0},  {u"RequireAgent"_s, 0}, {u"UseAbsence"_s, 0}};
const Fields flagsBeforeButtons = newDeviceFlags.first(newDeviceFlags.size() - 1);
const Fields absence{newDeviceFlags.constLast()};
// The Address Books page of a device without address books: new contacts go to the directory.
const Fields directoryBook{{u"NewAB"_s, u"(Directory)"_s}};

// A new device's buttons, as its defaults hold them: four and the preview button.
const Fields newDeviceButtons{{u"Buttons"_s, u"4 buttons"_s},
                              {u"btn0"_s, u"{Type(S13)=Answer/Hangup}{Display(S13)=Answer/Hangup}"_s},
                              {u"btn1"_s, u"{Type(S13)=Answer/Hangup}{Display(S13)=Answer/Hangup}"_s},
                              {u"btn2"_s, u"{Type(S11)=Hold/Unhold}{Display(S11)=Hold/Unhold}"_s},
                              {u"btn3"_s, u"{Type(S12)=Show Contact}{Display(S12)=Show Contact}"_s},
                              {u"btn4"_s, u"{Type(S6)=(None)}"_s}};

// The flag boxes of an existing device whose row sets none of them, without the absence box.
Fields clearFlags()
{
    Fields flags = flagsBeforeButtons;
    for (auto &flag : flags)
        flag.second = 0;
    return flags;
}

// The texts of one column of a grid, from the first row to the last.
QStringList column(QTableWidget *grid, int column)
{
    QStringList texts;
    for (int row = 0; row < grid->rowCount(); ++row)
        texts << grid->item(row, column)->text();
    return texts;
}

} // namespace

class ConfigTest : public QObject
{
    Q_OBJECT
    std::unique_ptr<ServerFixture> m_fixture;

    const QStringList &sent() const { return m_fixture->relay.commands(); }

    // Opens the window on a new device and waits until the defaults are shown.
    void openNew(frmConfig &window)
    {
        child<QLineEdit>(window, u"Lid"_s)->setText(u"-1"_s);
        QVERIFY(QTest::qWaitFor([&] { return child<QCheckBox>(window, u"chk_2"_s)->isChecked(); }, 20000));
    }
    // Ext -> row of the server's device list.
    QHash<QString, QString> listedDevices()
    {
        QHash<QString, QString> devices;
        for (const QString &entry : readList(m_fixture->fetch(u"MAIN-EXTS"_s)))
            devices.insert(getText(entry, u"Ext"_s), entry);
        return devices;
    }

    // The id of a new device stored for the tests that load their own row into the window.
    int m_nextNumber = 5410;
    QString storedDeviceId()
    {
        const QString ext = QString::number(m_nextNumber++);
        m_fixture->create(u"Exts"_s, record({{u"Ext"_s, ext}, {u"Name"_s, u"Desk"_s}, {u"Type"_s, u"EXT"_s}}));
        return getText(listedDevices().value(ext), u"Id"_s);
    }
    // The window as the reply with loaded would leave it, for the device (or devices) lid.
    void loadRow(frmConfig &window, const QString &lid, const QString &loaded)
    {
        {
            const QSignalBlocker quiet(child<QLineEdit>(window, u"Lid"_s));
            child<QLineEdit>(window, u"Lid"_s)->setText(lid);
        }
        window.DataArrived(u"EXT"_s, loaded);
    }
    // Presses OK and answers the Fields of the command it sent.
    QString storedFields(frmConfig &window)
    {
        const qsizetype before = sent().size();
        QTest::mouseClick(child<QPushButton>(window, u"OK"_s), Qt::LeftButton);
        if (!QTest::qWaitFor([&] { return sent().size() == before + 1; }, 20000))
            return u"(nothing sent)"_s;
        return getText(sent().constLast(), u"Fields"_s);
    }

private slots:
    void initTestCase()
    {
        m_fixture = std::make_unique<ServerFixture>();
        QString error;
        QVERIFY2(m_fixture->start(&error), qPrintable(error));
    }
    void cleanupTestCase() { m_fixture.reset(); }

    // What a new device stores, for each kind: Type, the panel of its kind, then the flag boxes and
    // the absence box where they are shown. The later pages (address books, buttons, events,
    // campaigns, notes) add their groups between the flag boxes and the absence box.
    void newDeviceStoresTheGroupsItsKindShows_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("typedNumber");
        QTest::addColumn<Fields>("typed"); // control -> text, or a box ticked
        QTest::addColumn<Fields>("stored");
        const Fields extension{{u"Dept"_s, u"Sales"_s},
                               {u"DDI"_s, u"4960200"_s},
                               {u"Password"_s, u"s3cret"_s},
                               {u"Assistant"_s, u"4101"_s},
                               {u"Mobile"_s, u"07700900123"_s}};
        Fields typedExtension = extension; // the controls are named as the tags, but for the password
        typedExtension[2].first = u"pwd"_s;
        QTest::newRow("extension: defaults and its panel")
            << 0 << u" 41ab "_s << typedExtension
            << (Fields{{u"Type"_s, u"EXT"_s}} + extension + flagsBeforeButtons + directoryBook +
                newDeviceButtons + absence);
        QTest::newRow("trunk: department and its two boxes")
            << 3 << u"4130"_s << Fields{{u"Dept"_s, u"Lines"_s}, {u"chk_23"_s, true}}
            << Fields{{u"Type"_s, u"TRUNK"_s},
                      {u"Dept"_s, u"Lines"_s},
                      {u"DontMonitor"_s, 0},
                      {u"IncludeBLF"_s, 1}};
        QTest::newRow("speed dial: its kind only")
            << 2 << u"4120"_s << Fields{{u"Dept"_s, u"Hidden"_s}} << Fields{{u"Type"_s, u"SPEED"_s}};
    }
    void newDeviceStoresTheGroupsItsKindShows()
    {
        QFETCH(int, kind);
        QFETCH(QString, typedNumber);
        QFETCH(Fields, typed);
        QFETCH(Fields, stored);
        frmConfig window(m_fixture->link);
        window.show();
        openNew(window);
        child<QComboBox>(window, u"Typ"_s)->setCurrentIndex(kind);
        for (const auto &[control, value] : typed) {
            if (auto *box = qobject_cast<QCheckBox *>(child<QWidget>(window, control)))
                box->setChecked(value.toBool());
            else
                child<QLineEdit>(window, control)->setText(value.toString());
        }
        QTest::keyClicks(child<QLineEdit>(window, u"Ext"_s), typedNumber);
        const QString number = typedNumber.trimmed().toUpper(); // as OK cuts it
        child<QLineEdit>(window, u"Nam"_s)->setText(u"Reception"_s);
        const qsizetype before = sent().size();
        QTest::mouseClick(child<QPushButton>(window, u"OK"_s), Qt::LeftButton);

        QTRY_COMPARE(sent().size(), before + 1);
        QCOMPARE(sent().constLast(),
                 setFields(record(stored + Fields{{u"Ext"_s, number}, {u"Name"_s, u"Reception"_s}}), u"-1"_s));
        // The window stays for the next device, on the General page with the number cleared.
        QVERIFY(window.isVisible());
        QCOMPARE(child<QLineEdit>(window, u"Ext"_s)->text(), QString());
        QCOMPARE(child<QTabWidget>(window, u"Tabs"_s)->currentIndex(), 0);
        QCOMPARE(window.outcome().outcome, WindowResult::SavedNew);
    }

    // A range creates one device per number, each named with its number where the name has "#"
    // (the numbering rules are the device row's test), and the server lists them all.
    void rangesCreateEveryNumber()
    {
        frmConfig window(m_fixture->link);
        openNew(window);
        child<QLineEdit>(window, u"Ext"_s)->setText(u"L200-L202"_s);
        child<QLineEdit>(window, u"Nam"_s)->setText(u"Room #"_s);
        const qsizetype before = sent().size();
        QTest::mouseClick(child<QPushButton>(window, u"OK"_s), Qt::LeftButton);
        QTRY_COMPARE(sent().size(), before + 3);
        const QHash<QString, QString> listed = listedDevices();
        for (int n = 200; n <= 202; ++n)
            QCOMPARE(getText(listed.value(u"L%1"_s.arg(n)), u"Name"_s), u"Room %1"_s.arg(n));
    }

    // Three devices of three departments saved without touching the department send no Dept (nor
    // the names they do not share, nor a number) and keep their own; one of them edited alone is
    // shown in place from the row it stored.
    void severalDevicesKeepWhatTheyDoNotShare()
    {
        const QStringList departments{u"Sales"_s, u"Support"_s, u"Stores"_s};
        for (int n = 0; n < 3; ++n)
            m_fixture->create(u"Exts"_s, record({{u"Ext"_s, u"530%1"_s.arg(n)},
                                              {u"Name"_s, u"Desk %1"_s.arg(n)},
                                              {u"Dept"_s, departments[n]},
                                              {u"Type"_s, u"EXT"_s}}));
        QHash<QString, QString> listed = listedDevices();
        QStringList ids;
        for (int n = 0; n < 3; ++n)
            ids << getText(listed.value(u"530%1"_s.arg(n)), u"Id"_s);
        const QString idList = ids.join(u',');
        {
            frmConfig window(m_fixture->link);
            child<QLineEdit>(window, u"Lid"_s)->setText(idList);
            QTRY_COMPARE(child<QLineEdit>(window, u"Dept"_s)->text(), u" "_s);
            QVERIFY(!child<QWidget>(window, u"TopPanel"_s)->isEnabled());
            const qsizetype before = sent().size();
            QTest::mouseClick(child<QPushButton>(window, u"OK"_s), Qt::LeftButton);
            QTRY_COMPARE(sent().size(), before + 1);
            QCOMPARE(sent().constLast(), // none of the three has a flag set
                     setFields(record(Fields{{u"Type"_s, u"EXT"_s}} + clearFlags() + directoryBook +
                                   Fields{{u"UseAbsence"_s, 0}}),
                               idList));
            QCOMPARE(window.outcome().outcome, WindowResult::SavedExisting);
            QCOMPARE(window.outcome().id, idList); // the directory asks for its list again
        }
        listed = listedDevices();
        for (int n = 0; n < 3; ++n)
            QCOMPARE(getText(listed.value(u"530%1"_s.arg(n)), u"Dept"_s), departments[n]);

        frmConfig window(m_fixture->link);
        child<QLineEdit>(window, u"Lid"_s)->setText(ids[1]);
        QTRY_COMPARE(child<QLineEdit>(window, u"Dept"_s)->text(), u"Support"_s);
        QCOMPARE(window.windowTitle(), u"Extension Properties: 5301"_s);
        child<QLineEdit>(window, u"Nam"_s)->setText(u"Help # desk"_s);
        const qsizetype before = sent().size();
        QTest::mouseClick(child<QPushButton>(window, u"OK"_s), Qt::LeftButton);
        QTRY_COMPARE(sent().size(), before + 1);
        const QString stored = getText(sent().constLast(), u"Fields"_s);
        QCOMPARE(getText(sent().constLast(), u"Id"_s), ids[1]);
        QCOMPARE(GetVar(stored, u"Ext"_s), QVariant()); // a number is never changed by an edit
        QCOMPARE(getText(stored, u"Name"_s), u"Help  desk"_s);
        QCOMPARE(window.outcome().id, ids[1]);
        // The directory shows the device in place from its kind, department and name.
        QCOMPARE(window.outcome().record,
                 record({{u"Type"_s, u"EXT"_s}, {u"Dept"_s, u"Support"_s}, {u"Name"_s, u"Help  desk"_s}}));
    }

    void emptyNumberIsRefused()
    {
        QStringList asked;
        answerMessageBoxes(QMessageBox::Ok, asked);
        frmConfig window(m_fixture->link);
        window.show();
        openNew(window);
        child<QLineEdit>(window, u"Ext"_s)->setText(u"   "_s);
        const qsizetype before = sent().size();
        QTest::mouseClick(child<QPushButton>(window, u"OK"_s), Qt::LeftButton);
        setMsgBoxAnswer({});
        QCOMPARE(
            asked,
            QStringList{u"No extension number was entered.  The extension number is a mandatory value."_s});
        // Nothing went before a read sent after the click.
        m_fixture->link.GetData(u"MAIN-PBX"_s);
        QTRY_COMPARE(sent().size(), before + 1);
        QVERIFY(sent().constLast().contains(u"MAIN-PBX"_s));
        QVERIFY(window.isVisible());
        QCOMPARE(window.outcome().outcome, WindowResult::Cancelled);
    }

    void pagesFollowTheKind_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("tabs");   // pages 0 to 7, "1" shown
        QTest::addColumn<QString>("panels"); // deptPanel, extPanel, absencePanel, trunkPanel
        QTest::newRow("extension") << 0 << u"11111101"_s << u"1110"_s;
        QTest::newRow("agent") << 1 << u"11111111"_s << u"1110"_s;
        QTest::newRow("speed dial") << 2 << u"10000001"_s << u"0000"_s;
        QTest::newRow("trunk") << 3 << u"10000001"_s << u"1001"_s;
    }
    void pagesFollowTheKind()
    {
        QFETCH(int, kind);
        QFETCH(QString, tabs);
        QFETCH(QString, panels);
        frmConfig window(m_fixture->link);
        child<QComboBox>(window, u"Typ"_s)->setCurrentIndex(kind == 1 ? 3 : 1); // from another kind
        child<QComboBox>(window, u"Typ"_s)->setCurrentIndex(kind);
        QString shown;
        for (int page = 0; page < 8; ++page)
            shown += child<QTabWidget>(window, u"Tabs"_s)->isTabVisible(page) ? u'1' : u'0';
        QCOMPARE(shown, tabs);
        shown.clear();
        for (const QString &panel : {u"deptPanel"_s, u"extPanel"_s, u"absencePanel"_s, u"trunkPanel"_s})
            shown += child<QWidget>(window, panel)->isVisibleTo(&window) ? u'1' : u'0';
        QCOMPARE(shown, panels);
    }

    // The number's and the name's tips follow the kind (a speed dial's number gets the trunks'
    // text); the flag boxes have theirs, the trunk's own box included.
    void tipsFollowTheKind_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("tip");
        QTest::newRow("agent number")
            << 1 << u"Ext"_s
            << u"Enter agent number here. Use a range symbol '-' to create several agents."_s;
        QTest::newRow("speed dial number")
            << 2 << u"Ext"_s
            << u"Enter trunk number here. Use a range symbol '-' to create several trunks."_s;
        QTest::newRow("speed dial name") << 2 << u"Nam"_s << u"Enter name of this speed dial."_s;
        QTest::newRow("trunk box") << 3 << u"chk_20"_s
                                   << u"Check this to disable monitoring of this trunk."_s;
        QTest::newRow("extension box")
            << 0 << u"chk_22"_s
            << u"This option means that the extension must have an agent logged in before calls can be made."_s;
    }
    void tipsFollowTheKind()
    {
        QFETCH(int, kind);
        QFETCH(QString, control);
        QFETCH(QString, tip);
        frmConfig window(m_fixture->link);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        child<QComboBox>(window, u"Typ"_s)->setCurrentIndex(kind);
        auto *widget = child<QWidget>(window, control);
        child<QTabWidget>(window, u"Tabs"_s)->setCurrentIndex(kind == 3 ? 0 : 2); // where the box is
        widget->setFocus();
        QTRY_COMPARE(child<QLabel>(window, u"Tip"_s)->text(), tip);
    }

    void titlesNameTheKindAndTheSelection_data()
    {
        QTest::addColumn<QString>("lid");
        QTest::addColumn<QString>("loaded");
        QTest::addColumn<int>("kind"); // chosen after loading, -1 for none
        QTest::addColumn<QString>("title");
        QTest::newRow("new") << u"-1"_s << QString() << -1 << u"Extension Properties: "_s;
        QTest::newRow("new agent") << u"-1"_s << QString() << 1 << u"Agent Properties: "_s;
        QTest::newRow("one trunk") << u"17"_s << record({{u"Ext"_s, u"9001"_s}, {u"Type"_s, u"TRUNK"_s}}) << -1
                                   << u"Trunk Properties: 9001"_s;
        QTest::newRow("one, speed dial chosen")
            << u"17"_s << record({{u"Ext"_s, u"9001"_s}, {u"Type"_s, u"TRUNK"_s}}) << 2
            << u"Speed dial Properties: 9001"_s;
        QTest::newRow("three agents") << u"4,5,6"_s << record({{u"Ext"_s, u" "_s}, {u"Type"_s, u"AGENT"_s}})
                                      << -1 << u"Agent Properties: (3 entries)"_s;
        QTest::newRow("two kinds") << u"4,9"_s << record({{u"Ext"_s, u" "_s}, {u"Type"_s, u" "_s}}) << -1
                                   << u"Entry Properties: (2 entries)"_s;
    }
    void titlesNameTheKindAndTheSelection()
    {
        QFETCH(QString, lid);
        QFETCH(QString, loaded);
        QFETCH(int, kind);
        QFETCH(QString, title);
        frmConfig window(m_fixture->link);
        {
            const QSignalBlocker quiet(child<QLineEdit>(window, u"Lid"_s)); // the reply is given here
            child<QLineEdit>(window, u"Lid"_s)->setText(lid);
        }
        window.DataArrived(u"EXT"_s, loaded);
        if (kind >= 0)
            child<QComboBox>(window, u"Typ"_s)->setCurrentIndex(kind);
        QCOMPARE(window.windowTitle(), title);
        // A typed number shows at once in a single device's title.
        if (!lid.contains(u',')) {
            child<QLineEdit>(window, u"Ext"_s)->setText(u"77"_s);
            QVERIFY(window.windowTitle().endsWith(u": 77"_s));
        }
    }

    // The count list chooses by the number at the front of Buttons divided by 4; the grid has the
    // preview row and one row per numbered button, all nine when the list shows no count.
    void buttonCountChoosesTheRows_data()
    {
        QTest::addColumn<QString>("buttons");
        QTest::addColumn<int>("choice");
        QTest::addColumn<int>("numbered");
        QTest::newRow("8 buttons") << u"8 buttons"_s << 2 << 8;
        QTest::newRow("0 buttons") << u"0 buttons"_s << 0 << 0;
        QTest::newRow("mixed") << u" "_s << -1 << 8;
        QTest::newRow("12 buttons") << u"12 buttons"_s << -1 << 8;
        QTest::newRow("abc") << u"abc"_s << -1 << 8;
    }
    void buttonCountChoosesTheRows()
    {
        QFETCH(QString, buttons);
        QFETCH(int, choice);
        QFETCH(int, numbered);
        frmConfig window(m_fixture->link);
        loadRow(window, u"17"_s,
                record({{u"Ext"_s, u"9001"_s},
                     {u"Type"_s, u"EXT"_s},
                     {u"Buttons"_s, buttons},
                     {u"btn2"_s, u"{Type(S6)=Hangup}{Display(S3)=End}"_s}}));
        auto *style = child<QComboBox>(window, u"btnStyle"_s);
        QCOMPARE(style->currentIndex(), choice);
        QCOMPARE(style->itemText(2), u"8 buttons"_s);
        QStringList names{u"Preview"_s};
        for (int n = 1; n <= numbered; ++n)
            names << u"Button %1"_s.arg(n);
        auto *grid = child<QTableWidget>(window, u"btnGrid"_s);
        QCOMPARE(column(grid, 1), names);
        QCOMPARE(grid->item(0, 0)->text(), u"btnContact"_s);
        if (numbered >= 2)
            QCOMPARE(grid->item(2, 2)->text(), u"End"_s);
    }

    // A row opens in the action editor with its Index and its action, and takes what the editor
    // answers; a cleared event leaves Events, and with no event left no Events is sent; "No buttons"
    // keeps only the preview button.
    void rowsAreEditedInTheActionEditor_data()
    {
        QTest::addColumn<QString>("events");
        QTest::addColumn<QString>("storedEvents"); // empty: no Events sent
        const QString startup = u"{Type(S8)=(Script)}{Script(S7)=Welcome}"_s;
        const QString newCall = u"{Type(S8)=(Script)}{Script(S6)=Lookup}"_s;
        QTest::newRow("other events stay")
            << record({{u"Startup"_s, startup}, {u"NewCall"_s, newCall}}) << record({{u"NewCall"_s, newCall}});
        QTest::newRow("the only event") << record({{u"Startup"_s, startup}}) << QString();
    }
    void rowsAreEditedInTheActionEditor()
    {
        QFETCH(QString, events);
        QFETCH(QString, storedEvents);
        frmConfig window(m_fixture->link);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const QString speedDial = u"{Type(S10)=Speed Dial}{Display(S4)=Boss}{Number(S3)=123}"_s;
        loadRow(window, storedDeviceId(),
                record({{u"Ext"_s, u"5410"_s},
                     {u"Type"_s, u"EXT"_s},
                     {u"Name"_s, u"Desk"_s},
                     {u"Buttons"_s, u"4 buttons"_s},
                     {u"btn3"_s, speedDial},
                     {u"Events"_s, events}}));
        auto *tabs = child<QTabWidget>(window, u"Tabs"_s);
        tabs->setCurrentIndex(4);
        auto *grid = child<QTableWidget>(window, u"btnGrid"_s);
        QString shownNumber;
        int shownIndex = -1;
        answerModalWindow([&shownNumber, &shownIndex](QWidget *editor) {
            shownIndex = qobject_cast<frmButton *>(editor)->outcome().index;
            shownNumber = editor->findChild<QLineEdit *>(u"btnNumber"_s)->text();
            editor->findChild<QLineEdit *>(u"btnDisplay"_s)->setText(u"Chief"_s);
            QTest::mouseClick(editor->findChild<QPushButton *>(u"OK"_s), Qt::LeftButton);
        });
        const QPoint cell = grid->visualItemRect(grid->item(3, 2)).center();
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell);
        QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, cell);
        QCOMPARE(shownIndex, 4); // the preview row is Index 1
        QCOMPARE(shownNumber, u"123"_s);
        QCOMPARE(column(grid, 2), (QStringList{{}, {}, {}, u"Chief"_s, {}}));

        tabs->setCurrentIndex(5);
        auto *eventGrid = child<QTableWidget>(window, u"evtGrid"_s);
        QCOMPARE(column(eventGrid, 0).first(2), (QStringList{u"Startup"_s, u"NewCall"_s}));
        QCOMPARE(eventGrid->item(0, 2)->text(), u"Welcome"_s);
        answerModalWindow([](QWidget *editor) {
            auto *kind = editor->findChild<QComboBox *>(u"btnType"_s);
            kind->setCurrentIndex(kind->findText(u"(None)"_s));
            QTest::mouseClick(editor->findChild<QPushButton *>(u"OK"_s), Qt::LeftButton);
        });
        eventGrid->setCurrentCell(0, 1);
        eventGrid->setFocus();
        QTest::keyClick(eventGrid, Qt::Key_Return);
        QCOMPARE(eventGrid->item(0, 2)->text(), QString());

        child<QComboBox>(window, u"btnStyle"_s)->setCurrentIndex(0);
        QCOMPARE(grid->rowCount(), 1);
        Fields expected = Fields{{u"Type"_s, u"EXT"_s}} + clearFlags() + directoryBook +
                          Fields{{u"Buttons"_s, u"0 buttons"_s}};
        if (!storedEvents.isEmpty())
            expected.append({u"Events"_s, storedEvents});
        QCOMPARE(storedFields(window), record(expected + absence + Fields{{u"Name"_s, u"Desk"_s}}));
    }

    // What the pages cannot show fully, saved untouched, goes back exactly as it came: a count the
    // list does not offer, an action that is no tagged-value string, an event the grid does not
    // list; a field the devices do not share is left out.
    void untouchedRowsGoBackAsTheyCame_data()
    {
        QTest::addColumn<QString>("lid");
        QTest::addColumn<QString>("came"); // the rows of the Buttons and Events pages
        QTest::addColumn<QString>("sent");
        const QString hangup = u"{Type(S6)=Hangup}{Display(S3)=End}"_s;
        const QString buttons = record({{u"btn0"_s, hangup}, {u"btn1"_s, hangup}, {u"btn8"_s, hangup}});
        QTest::newRow("12 buttons") << QString() << u"{Buttons(S10)=12 buttons}"_s + buttons
                                    << u"{Buttons(S10)=12 buttons}"_s + buttons;
        QTest::newRow("abc") << QString() << u"{Buttons(S3)=abc}"_s + buttons
                             << u"{Buttons(S3)=abc}"_s + buttons;
        const QString bad = u"{Buttons(S9)=8 buttons}{btn3(S18)={Type(S40)=Hangup}}"_s;
        QTest::newRow("btn3 no tagged value") << QString() << bad << bad;
        const QString events =
            record({{u"Events"_s, record({{u"Lunch"_s, u"{Type(S8)=(Script)}{Script(S5)=Break}"_s},
                                    {u"NewCall"_s, u"{Type(S8)=(Script)}{Script(S6)=Lookup}"_s}})}});
        QTest::newRow("unknown event")
            << QString() << u"{Buttons(S9)=0 buttons}"_s + events << u"{Buttons(S9)=0 buttons}"_s + events;
        QTest::newRow("several, mixed")
            << u"several"_s
            << u"{Buttons(S1)= }{btn0(S1)= }"_s + record({{u"btn1"_s, hangup}}) + u"{Events(S1)= }"_s
            << record({{u"btn1"_s, hangup}});
    }
    void untouchedRowsGoBackAsTheyCame()
    {
        QFETCH(QString, lid);
        QFETCH(QString, came);
        QFETCH(QString, sent);
        QString id = storedDeviceId();
        if (!lid.isEmpty())
            id += u',' + storedDeviceId();
        const QString notes = record({{u"Notes"_s, u"Key under the mat\r\nDesk by the window"_s}});
        frmConfig window(m_fixture->link);
        loadRow(window, id, u"{Ext(S4)=5420}{Name(S4)=Desk}{Type(S3)=EXT}"_s + came + notes);
        QVERIFY(child<QPlainTextEdit>(window, u"Notes"_s)->toPlainText().contains(u'\n'));
        QCOMPARE(storedFields(window), record(Fields{{u"Type"_s, u"EXT"_s}} + clearFlags() + directoryBook) +
                                           sent + record(absence) + notes + u"{Name(S4)=Desk}"_s);
    }
};

QTEST_MAIN(ConfigTest)
#include "tst_config.moc"
