// SPDX-License-Identifier: GPL-3.0-or-later
// The device window against quillserverd: the row a new device stores, byte for byte, for each kind;
// ranges of numbers; several devices saved at once keeping what they do not share; the refused
// empty number; the pages shown for each kind; and the titles.
#include "frmConfig.h"
#include "msgboxanswers.h"
#include "serverfixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>

namespace {

using Fields = QList<std::pair<QString, QVariant>>;

template <typename T> T *child(const QWidget &window, const QString &name)
{
    auto *found = window.findChild<T *>(name);
    if (!found)
        qFatal("no control %s", qPrintable(name));
    return found;
}

QString row(const Fields &fields)
{
    QString vars;
    for (const auto &[name, value] : fields)
        AddVar(vars, name, value);
    return vars;
}

QString setFields(const QString &fields, const QString &id)
{
    QString command = u"{Cmd=SetFields}{Table=Exts}"_s;
    AddVar(command, u"Fields"_s, fields);
    AddVar(command, u"Id"_s, id);
    return command;
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
        QTest::newRow("extension: defaults and its panel")
            << 0 << u" 41ab "_s
            << Fields{{u"Dept"_s, u"Sales"_s},
                      {u"DDI"_s, u"4960200"_s},
                      {u"pwd"_s, u"s3cret"_s},
                      {u"Assistant"_s, u"4101"_s},
                      {u"Mobile"_s, u"07700900123"_s}}
            << (Fields{{u"Type"_s, u"EXT"_s}} + extension + newDeviceFlags);
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
                 setFields(row(stored + Fields{{u"Ext"_s, number}, {u"Name"_s, u"Reception"_s}}), u"-1"_s));
        // The window stays for the next device, on the General page with the number cleared.
        QVERIFY(window.isVisible());
        QCOMPARE(child<QLineEdit>(window, u"Ext"_s)->text(), QString());
        QCOMPARE(child<QTabWidget>(window, u"Tabs"_s)->currentIndex(), 0);
        QCOMPARE(window.outcome().outcome, WindowResult::SavedNew);
    }

    // A range creates one device per number, each named with its number where the name has "#",
    // and the server lists them all.
    void rangesCreateEveryNumber_data()
    {
        QTest::addColumn<QString>("number");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("created"); // "Ext|Name"
        QStringList lines;
        for (int n = 10; n <= 20; ++n)
            lines << u"L%1|Line"_s.arg(n);
        QTest::newRow("L10-L20") << u"L10-L20"_s << u"Line"_s << lines;
        QTest::newRow("Room # 200-202")
            << u"200-202"_s << u"Room #"_s
            << QStringList{u"200|Room 200"_s, u"201|Room 201"_s, u"202|Room 202"_s};
    }
    void rangesCreateEveryNumber()
    {
        QFETCH(QString, number);
        QFETCH(QString, name);
        QFETCH(QStringList, created);
        frmConfig window(m_fixture->link);
        openNew(window);
        child<QLineEdit>(window, u"Ext"_s)->setText(number);
        child<QLineEdit>(window, u"Nam"_s)->setText(name);
        const qsizetype before = sent().size();
        QTest::mouseClick(child<QPushButton>(window, u"OK"_s), Qt::LeftButton);
        QTRY_COMPARE(sent().size(), before + created.size());

        const QHash<QString, QString> listed = listedDevices();
        for (const QString &device : std::as_const(created)) {
            const QString ext = device.section(u'|', 0, 0);
            QVERIFY2(listed.contains(ext), qPrintable(ext));
            QCOMPARE(getText(listed.value(ext), u"Name"_s), device.section(u'|', 1));
        }
    }

    // Three devices of three departments saved without touching the department send no Dept (nor
    // the names they do not share, nor a number) and keep their own; one of them edited alone is
    // shown in place from the row it stored.
    void severalDevicesKeepWhatTheyDoNotShare()
    {
        const QStringList departments{u"Sales"_s, u"Support"_s, u"Stores"_s};
        for (int n = 0; n < 3; ++n)
            m_fixture->create(u"Exts"_s, row({{u"Ext"_s, u"530%1"_s.arg(n)},
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
            Fields flags = newDeviceFlags; // none of the three has a flag set
            for (auto &flag : flags)
                flag.second = 0;
            QCOMPARE(sent().constLast(), setFields(row(Fields{{u"Type"_s, u"EXT"_s}} + flags), idList));
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
        QCOMPARE(window.outcome().record, stored);
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
        QTest::newRow("one trunk") << u"17"_s << row({{u"Ext"_s, u"9001"_s}, {u"Type"_s, u"TRUNK"_s}}) << -1
                                   << u"Trunk Properties: 9001"_s;
        QTest::newRow("one, speed dial chosen")
            << u"17"_s << row({{u"Ext"_s, u"9001"_s}, {u"Type"_s, u"TRUNK"_s}}) << 2
            << u"Speed dial Properties: 9001"_s;
        QTest::newRow("three agents") << u"4,5,6"_s << row({{u"Ext"_s, u" "_s}, {u"Type"_s, u"AGENT"_s}})
                                      << -1 << u"Agent Properties: (3 entries)"_s;
        QTest::newRow("two kinds") << u"4,9"_s << row({{u"Ext"_s, u" "_s}, {u"Type"_s, u" "_s}}) << -1
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
};

QTEST_MAIN(ConfigTest)
#include "tst_config.moc"
