// SPDX-License-Identifier: GPL-3.0-or-later
// The address-book window against quillserverd: what it reads and writes for public books, the
// private book it hands back to a device, its plug-in's dialog, statistics, and the list that opens it.
#include "frmAB.h"
#include "isolation.h"
#include "maintool.h"
#include "modalwindow.h"
#include "msgboxanswers.h"
#include "pluginhost.h"
#include "recordlist.h"
#include "serverfixture.h"
#include "translate.h"
#include "windows.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QTabWidget>
#include <QTableWidget>
#include <QTreeWidget>

namespace {

const frmAB::PluginList plugins{{u"CSV"_s, u"CSV file"_s}, {u"SampleData"_s, u"Sample data"_s}};

template <typename T> T *child(const QWidget &window, const QString &name)
{
    auto *found = window.findChild<T *>(name);
    if (!found)
        qFatal("no control %s", qPrintable(name));
    return found;
}

QString bookRecord(const QString &type, const QString &name, const QString &options)
{
    QString text;
    AddVar(text, u"Type"_s, type);
    AddVar(text, u"Name"_s, name);
    AddVar(text, u"Options"_s, options, true);
    return text;
}

QString storeCommand(const QString &fields, const QString &id)
{
    QString command = u"{Cmd=SetFields}{Table=AB}"_s;
    AddVar(command, u"Fields"_s, fields);
    AddVar(command, u"Id"_s, id);
    return command;
}

// Options of a book that leaves everything at its default: live, no index, a daily refresh.
QString defaultOptions()
{
    QString options;
    AddVar(options, u"Alpha"_s, 0, true);
    AddVar(options, u"UseLive"_s, 1, true);
    AddVar(options, u"Cache"_s, 1, true);
    return options;
}

// Fills the window from a record as the server's reply would, without asking the server.
void giveRecord(frmAB &window, const QString &id, const QString &message)
{
    {
        const QSignalBlocker quiet(child<QLineEdit>(window, u"Tid"_s));
        child<QLineEdit>(window, u"Tid"_s)->setText(id);
    }
    window.DataArrived(u"AB"_s, message);
}

} // namespace

class AddressBookTest : public QObject
{
    Q_OBJECT
    std::unique_ptr<ServerFixture> m_fixture;
    TestIsolation m_scratch;

    QString lastCommand() const
    {
        return m_fixture->relay.commands().value(m_fixture->relay.commands().size() - 1);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
        qputenv("QUILL_PLUGIN_PATH", QUILL_TEST_PLUGIN_DIR);
        PluginHost::forgetScan();
        m_fixture = std::make_unique<ServerFixture>();
        QString error;
        QVERIFY2(m_fixture->start(&error), qPrintable(error));
    }
    void cleanupTestCase() { m_fixture.reset(); }

    void controlsCarryTheirTipsAndTheListsTheirEntries()
    {
        frmAB window(m_fixture->link, plugins);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QCOMPARE(child<QLabel>(window, u"Tip"_s)->text(), u" "_s);
        const QList<std::pair<QString, QString>> tips{
            {u"aName"_s, u"Enter a name to display when the address book is used."_s},
            {u"plgName"_s, u"Select the type of Address Book to use."_s},
            {u"Config"_s, u"Click to configure the details of this Address Book."_s},
            {u"OK"_s, u"Click to save changes and close this window."_s},
        };
        for (const auto &[control, tip] : tips) {
            child<QWidget>(window, control)->setFocus();
            QTRY_COMPARE(child<QLabel>(window, u"Tip"_s)->text(), tip);
        }
        auto *tabs = child<QTabWidget>(window, u"Tabs"_s);
        tabs->setCurrentIndex(1);
        QCOMPARE(child<QLabel>(window, u"Tip"_s)->text(),
                 u"Enter update information for the address book."_s);
        child<QWidget>(window, u"DiscTo"_s)->setFocus();
        QTRY_COMPARE(
            child<QLabel>(window, u"Tip"_s)->text(),
            u"Enter the time to reconnect to this Addres Bok from. This disconnection allows the Address Book (database) to be backed up."_s);

        QCOMPARE(child<QComboBox>(window, u"plgName"_s)->itemText(1), u"Sample data"_s);
        auto *alpha = child<QComboBox>(window, u"aAlpha"_s);
        QCOMPARE(alpha->count(), 3);
        QCOMPARE(alpha->itemText(2), u"Use company name"_s);
        auto *grid = child<QTableWidget>(window, u"sLast"_s);
        QCOMPARE(grid->rowCount(), 5);
        QCOMPARE(grid->horizontalHeaderItem(2)->text(), u"Speed (s)"_s);
    }

    // Records as the server may hold them, what the window shows, and what OK writes back.
    void booksAreSavedAsTheWindowShowsThem_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("typed"); // typed into aName before OK; empty: left as loaded
        QTest::addColumn<QString>("shownType");
        QTest::addColumn<QString>("expected");

        QTest::newRow("no settings at all: live, no index, daily")
            << bookRecord(u"CSV"_s, u"Plain"_s, {}) << QString() << u"CSV file"_s
            << bookRecord(u"CSV"_s, u"Plain"_s, defaultOptions());
        QTest::newRow("brackets for parentheses, no dashes or bangs")
            << bookRecord(u"CSV"_s, u"X"_s, {}) << u"Sales (N)-Office!"_s << u"CSV file"_s
            << bookRecord(u"CSV"_s, u"Sales [N]Office"_s, defaultOptions());
        QTest::newRow("cut to 20 before the clean-up")
            << bookRecord(u"CSV"_s, u"X"_s, {}) << u"Harbour-Finch Suppliers"_s << u"CSV file"_s
            << bookRecord(u"CSV"_s, u"HarbourFinch Suppli"_s, defaultOptions());
        QTest::newRow("a closing bracket alone stays")
            << bookRecord(u"CSV"_s, u"X"_s, {}) << u"Staff) list"_s << u"CSV file"_s
            << bookRecord(u"CSV"_s, u"Staff) list"_s, defaultOptions());

        // Every setting, in the order the server expects them, kept through a load and a save.
        QString full;
        AddVar(full, u"Alpha"_s, 2, true);
        AddVar(full, u"UseLive"_s, 0);
        AddVar(full, u"DisconnectFrom"_s, u"23"_s);
        AddVar(full, u"DisconnectTo"_s, u"1"_s);
        AddVar(full, u"ImportTime"_s, u"6"_s);
        AddVar(full, u"ImportHour"_s, u"4"_s);
        AddVar(full, u"PlugVars"_s,
               record({{u"Caption"_s, u"\\\\fs01\\data\\hauliers.csv"_s}, {u"Header"_s, 1}}));
        AddVar(full, u"Caption"_s, u"\\\\fs01\\data\\hauliers.csv"_s);
        AddVar(full, u"ABNotes"_s, u"Planners keep the file.\r\nAsk Jo."_s);
        AddVar(full, u"Cache"_s, 2);
        QTest::newRow("every setting") << bookRecord(u"CSV"_s, u"Hauliers"_s, full) << QString()
                                       << u"CSV file"_s << bookRecord(u"CSV"_s, u"Hauliers"_s, full);

        // A type whose plug-in is not installed here is shown by its code and written back.
        QString odbc;
        AddVar(odbc, u"Alpha"_s, 1, true);
        AddVar(odbc, u"UseLive"_s, 1);
        AddVar(odbc, u"PlugVars"_s, record({{u"Caption"_s, u"CRM"_s}, {u"DSN"_s, u"HFL_CRM"_s}}));
        AddVar(odbc, u"Caption"_s, u"CRM"_s);
        AddVar(odbc, u"Cache"_s, 1);
        QTest::newRow("plug-in not installed") << bookRecord(u"ODBC"_s, u"Customers"_s, odbc) << QString()
                                               << u"ODBC"_s << bookRecord(u"ODBC"_s, u"Customers"_s, odbc);
    }
    void booksAreSavedAsTheWindowShowsThem()
    {
        QFETCH(QString, message);
        QFETCH(QString, typed);
        QFETCH(QString, shownType);
        QFETCH(QString, expected);
        frmAB window(m_fixture->link, plugins);
        giveRecord(window, u"41"_s, message);
        QCOMPARE(child<QComboBox>(window, u"plgName"_s)->currentText(), shownType);
        if (shownType == u"ODBC"_s)
            QCOMPARE(
                child<QLabel>(window, u"Tip"_s)->text(),
                u"Could not configure 'Customers'. Please ensure the 'ODBC' plugin is installed on this machine."_s);
        if (!typed.isEmpty())
            child<QLineEdit>(window, u"aName"_s)->setText(typed);
        QTest::mouseClick(child<QPushButton>(window, u"OK"_s), Qt::LeftButton);
        QTRY_COMPARE(lastCommand(), storeCommand(expected, u"41"_s));
        QCOMPARE(window.outcome().outcome, WindowResult::SavedExisting);
        QCOMPARE(window.outcome().columns, (QStringList{getText(expected, u"Name"_s), shownType}));
    }

    void statisticsShowTheTruncatedAverageOfTheSpeedsGiven_data()
    {
        QTest::addColumn<QString>("statistics");
        QTest::addColumn<QString>("hitRate");
        QTest::addColumn<QString>("average");
        QTest::addColumn<QString>("secondSpeed");
        const auto find = [](const QString &search, const QString &speed) {
            return record(
                {{u"Search"_s, search}, {u"Result"_s, QString(search + u" Ltd"_s)}, {u"Speed"_s, speed}});
        };
        QTest::newRow("none") << QString() << u"0%"_s << u"0"_s << QString();
        QTest::newRow("second and fourth only") << record({{u"HitRate"_s, 87.5},
                                                           {u"Find1"_s, find(u"a"_s, {})},
                                                           {u"Find2"_s, find(u"b"_s, u"0.04"_s)},
                                                           {u"Find4"_s, find(u"d"_s, u"0.12"_s)}})
                                                << u"87.5%"_s << u"0.08"_s << u"0.04"_s;
        QTest::newRow("truncated, not rounded") << record({{u"HitRate"_s, 64},
                                                           {u"Find1"_s, find(u"a"_s, u"0.3334"_s)},
                                                           {u"Find2"_s, find(u"b"_s, u"0.3335"_s)}})
                                                << u"64%"_s << u"0.333"_s << u"0.3335"_s;
    }
    void statisticsShowTheTruncatedAverageOfTheSpeedsGiven()
    {
        QFETCH(QString, statistics);
        QFETCH(QString, hitRate);
        QFETCH(QString, average);
        QFETCH(QString, secondSpeed);
        frmAB window(m_fixture->link, plugins);
        QString message = bookRecord(u"CSV"_s, u"Stats"_s, {});
        AddVar(message, u"Statistics"_s, statistics);
        giveRecord(window, u"7"_s, message);
        QCOMPARE(child<QLabel>(window, u"sHitRate"_s)->text(), hitRate);
        QCOMPARE(child<QLabel>(window, u"sAveSpeed"_s)->text(), average);
        auto *grid = child<QTableWidget>(window, u"sLast"_s);
        QCOMPARE(grid->item(1, 2)->text(), secondSpeed);
        QCOMPARE(grid->item(2, 0)->text(), QString());
    }

    // The live and cached boxes stay opposite, by box or by the words beside it; each enables its
    // own settings, and statistics only for a live book.
    void liveAndCachedAreOneChoice()
    {
        frmAB window(m_fixture->link, plugins);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto *live = child<QCheckBox>(window, u"uLive_0"_s);
        auto *cached = child<QCheckBox>(window, u"uLive_1"_s);
        auto *tabs = child<QTabWidget>(window, u"Tabs"_s);
        const auto state = [&] {
            return QList<bool>{live->isChecked(), cached->isChecked(),
                               child<QGroupBox>(window, u"uFrame_0"_s)->isEnabled(),
                               child<QGroupBox>(window, u"uFrame_1"_s)->isEnabled(), tabs->isTabEnabled(2)};
        };
        QCOMPARE(state(), (QList<bool>{true, false, true, false, true}));
        tabs->setCurrentIndex(1);
        QTest::mouseClick(cached, Qt::LeftButton);
        QCOMPARE(state(), (QList<bool>{false, true, false, true, false}));
        QTest::mouseClick(live, Qt::LeftButton);
        QCOMPARE(state(), (QList<bool>{true, false, true, false, true}));
        QTest::mouseClick(child<QLabel>(window, u"Label8"_s), Qt::LeftButton);
        QCOMPARE(state(), (QList<bool>{false, true, false, true, false}));
        QTest::mouseClick(cached, Qt::LeftButton); // unticking the cached box makes the book live
        QCOMPARE(state(), (QList<bool>{true, false, true, false, true}));
    }

    // The plug-in's dialog sets the source, and the name when none was typed; a type whose plug-in
    // is missing says so and keeps every setting.
    void theDataSourceIsSetUpByThePlugIn()
    {
        frmAB window(m_fixture->link, plugins);
        const qsizetype before = m_fixture->relay.commands().size();
        child<QLineEdit>(window, u"Tid"_s)->setText(u"-1"_s);
        QCOMPARE(m_fixture->relay.commands().size(), before); // a new book reads nothing
        QCOMPARE(window.windowTitle(), u"Public Address Book"_s);
        QVERIFY(!child<QPushButton>(window, u"Build"_s)->isEnabled());
        child<QComboBox>(window, u"plgName"_s)->setCurrentIndex(1);
        QTest::mouseClick(child<QPushButton>(window, u"Config"_s), Qt::LeftButton);
        QCOMPARE(child<QLabel>(window, u"aSource"_s)->text(), u"D:\\Books\\Harbour Suppliers.csv"_s);
        QCOMPARE(child<QLineEdit>(window, u"aName"_s)->text(), u"Harbour Suppliers.csv"_s);
        QTest::mouseClick(child<QPushButton>(window, u"OK"_s), Qt::LeftButton);
        QString options;
        AddVar(options, u"Alpha"_s, 0, true);
        AddVar(options, u"UseLive"_s, 1, true);
        AddVar(options, u"PlugVars"_s,
               u"{Level=Data}{Owner=frmAB}{Caption=D:\\Books\\Harbour Suppliers.csv}"_s);
        AddVar(options, u"Caption"_s, u"D:\\Books\\Harbour Suppliers.csv"_s);
        AddVar(options, u"Cache"_s, 1, true);
        QTRY_COMPARE(lastCommand(),
                     storeCommand(bookRecord(u"SampleData"_s, u"Harbour Suppliers.cs"_s, options), u"-1"_s));
        QCOMPARE(window.outcome().outcome, WindowResult::SavedNew);

        frmAB missing(m_fixture->link, plugins);
        giveRecord(missing, u"9"_s,
                   bookRecord(u"LDAP"_s, u"Staff"_s, record({{u"PlugVars"_s, u"{Caption=dc01}"_s}})));
        QStringList asked;
        answerMessageBoxes(QMessageBox::Ok, asked);
        QTest::mouseClick(child<QPushButton>(missing, u"Config"_s), Qt::LeftButton);
        setMsgBoxAnswer({});
        QCOMPARE(
            asked,
            QStringList{
                u"Could not configure 'Staff'. Please ensure the 'LDAP' plugin is installed on this machine."_s});
        QCOMPARE(child<QComboBox>(missing, u"plgName"_s)->currentText(), u"LDAP"_s);
    }

    // A device's private book: read from Tid, never from the server, and handed back on OK.
    void aPrivateBookGoesBackToTheDevice()
    {
        frmAB window(m_fixture->link, plugins);
        const QString book =
            bookRecord(u"CSV"_s, u"Board (old)"_s, record({{u"Caption"_s, u"H:\\board.csv"_s}}));
        const qsizetype before = m_fixture->relay.commands().size();
        child<QLineEdit>(window, u"Tid"_s)->setText(u"-2:{Index=1}"_s + book);
        QCOMPARE(window.windowTitle(), u"Private Address Book"_s);
        QCOMPARE(child<QLineEdit>(window, u"aName"_s)->text(), u"Board (old)"_s);
        QCOMPARE(child<QLabel>(window, u"aSource"_s)->text(), u"H:\\board.csv"_s);
        auto *tabs = child<QTabWidget>(window, u"Tabs"_s);
        QVERIFY(tabs->isTabEnabled(0) && !tabs->isTabEnabled(1) && !tabs->isTabEnabled(2));
        QTest::mouseClick(child<QPushButton>(window, u"OK"_s), Qt::LeftButton);
        QTest::qWait(50);
        QCOMPARE(m_fixture->relay.commands().size(), before);

        QString options;
        AddVar(options, u"Alpha"_s, 0, true);
        AddVar(options, u"UseLive"_s, 1, true);
        AddVar(options, u"Caption"_s, u"H:\\board.csv"_s);
        AddVar(options, u"Cache"_s, 1, true);
        QString handBack = u"{Index=1}"_s;
        AddVar(handBack, u"Fields"_s, bookRecord(u"CSV"_s, u"Board [old]"_s, options));
        QCOMPARE(window.outcome().outcome, WindowResult::SavedExisting);
        QCOMPARE(window.outcome().record, handBack);

        frmAB added(m_fixture->link, plugins);
        child<QLineEdit>(added, u"Tid"_s)->setText(u"-2:{Index=-1}"_s);
        QCOMPARE(child<QComboBox>(added, u"plgName"_s)->currentIndex(),
                 0); // a new one starts with the first type
        child<QLineEdit>(added, u"aName"_s)->setText(u"Mine"_s);
        QTest::mouseClick(child<QPushButton>(added, u"OK"_s), Qt::LeftButton);
        QVERIFY(added.outcome().record.startsWith(u"{Index=-1}{Fields"_s));
    }

    // The address-book list opens the window: a new book is stored and the list asked for again; an
    // edited one changes in place; "Refresh now" names the book as typed; after a restart the book
    // reads back as saved.
    void theListOpensBooksThatOutliveARestart()
    {
        QSettings settings(PluginHost::OrganisationName.toString());
        settings.setValue(u"Plugins/CSV"_s, u"CSV file"_s);
        settings.sync();
        auto tool = std::make_unique<MainTool>(m_fixture->relay.url());
        registerWindows(tool->window, tool->link);
        QVERIFY(tool->waitLoaded());
        tool->tabs()->setCurrentIndex(frmMain::AddressBooks);
        RecordList *list = tool->window.recordList(RecordKind::AddressBooks);
        const int listed = list->list()->topLevelItemCount();

        answerModalWindow([](QWidget *window) {
            window->findChild<QLineEdit *>(u"aName"_s)->setText(u"Depot (North)"_s);
            window->findChild<QTabWidget *>(u"Tabs"_s)->setCurrentIndex(1);
            QTest::mouseClick(window->findChild<QCheckBox *>(u"uLive_1"_s), Qt::LeftButton);
            QTest::mouseClick(window->findChild<QRadioButton *>(u"Cache_2"_s), Qt::LeftButton);
            QTest::keyClicks(window->findChild<QLineEdit *>(u"cHour"_s), u" 3 "_s);
            QTest::mouseClick(window->findChild<QPushButton *>(u"OK"_s), Qt::LeftButton);
        });
        qsizetype before = m_fixture->relay.commands().size();
        QTest::mouseClick(list->button(RecordList::AddButton), Qt::LeftButton);
        QTRY_COMPARE(list->list()->topLevelItemCount(), listed + 1);
        QString options;
        AddVar(options, u"Alpha"_s, 0, true);
        AddVar(options, u"UseLive"_s, 0, true);
        AddVar(options, u"ImportHour"_s, u"3"_s);
        AddVar(options, u"Cache"_s, 2, true);
        const QString saved = bookRecord(u"CSV"_s, u"Depot [North]"_s, options);
        QCOMPARE(m_fixture->relay.commands().value(before), storeCommand(saved, u"-1"_s));
        QVERIFY(m_fixture->relay.commands()
                    .value(before + 1)
                    .startsWith(u"{Cmd=GetList}{Table=Ab}{Ref=MAIN-AB}"_s));
        QVERIFY2(list->names().contains(u"Depot [North]"_s), qPrintable(list->names().join(u',')));

        // A fresh start of both ends: what is shown now was read back from the server's file.
        tool.reset();
        QVERIFY(m_fixture->restartServer());
        tool = std::make_unique<MainTool>(m_fixture->relay.url());
        registerWindows(tool->window, tool->link);
        QVERIFY(tool->waitLoaded());
        tool->tabs()->setCurrentIndex(frmMain::AddressBooks);
        list = tool->window.recordList(RecordKind::AddressBooks);
        const int row = int(list->names().indexOf(u"Depot [North]"_s));
        QVERIFY2(row >= 0, qPrintable(list->names().join(u',')));
        const QString id = list->ids().value(row);
        QTreeWidgetItem *item = list->list()->topLevelItem(row);
        list->list()->setCurrentItem(item);
        answerModalWindow([](QWidget *window) {
            auto *name = window->findChild<QLineEdit *>(u"aName"_s);
            QTRY_COMPARE(name->text(), u"Depot [North]"_s); // read back as saved
            QCOMPARE(window->findChild<QLineEdit *>(u"cHour"_s)->text(), u"3"_s);
            QVERIFY(window->findChild<QRadioButton *>(u"Cache_2"_s)->isChecked());
            QVERIFY(!window->findChild<QCheckBox *>(u"uLive_0"_s)->isChecked());
            name->setText(u"Depot North"_s);
            QTest::mouseClick(window->findChild<QPushButton *>(u"Build"_s), Qt::LeftButton);
            QTest::mouseClick(window->findChild<QPushButton *>(u"OK"_s), Qt::LeftButton);
        });
        before = m_fixture->relay.commands().size();
        QTest::mouseClick(list->button(RecordList::EditButton), Qt::LeftButton);
        QCOMPARE(item->text(0), u"Depot North"_s);
        QCOMPARE(item->text(1), u"CSV file"_s);
        QTRY_COMPARE(m_fixture->relay.commands().size(), before + 3); // read, refresh, store: no list
        const QStringList sent = m_fixture->relay.commands().mid(before);
        QCOMPARE(sent.value(0),
                 u"{Cmd=GetFields}{Table=Ab}{Fields=Name,Type,Options,Statistics}{Ref=AB-AB}{Id(S%1)=%2}"_s
                     .arg(id.size())
                     .arg(id));
        QCOMPARE(sent.value(1), u"{Cmd=ABRebuild}{Ab=Depot North}"_s);
        QCOMPARE(sent.value(2), storeCommand(bookRecord(u"CSV"_s, u"Depot North"_s, options), id));
        settings.remove(u"Plugins"_s);
    }
};

QTEST_MAIN(AddressBookTest)
#include "tst_addressbook.moc"
