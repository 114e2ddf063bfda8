// SPDX-License-Identifier: GPL-3.0-or-later
// The routing-condition window against quillserverd: labels and tips, the criteria stored exactly as
// typed (and still so after a restart), the order it writes, and the routing list that opens it.
#include "findchild.h"
#include "frmRouting.h"
#include "maintool.h"
#include "modalwindow.h"
#include "pluginhost.h"
#include "recordlist.h"
#include "serverfixture.h"
#include "translate.h"
#include "windows.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>

namespace {

const QStringList books{u"Customers"_s, u"Suppliers"_s};

// The record OK writes for a condition: its Options always, even empty.
QString condition(const QVariant &order, const QString &name, const QString &options)
{
    QString fields = record({{u"Order"_s, order}, {u"Name"_s, name}});
    AddVar(fields, u"Options"_s, options, true);
    return fields;
}

// What OK sends for a condition, built as the server expects it.
QString setFields(const QVariant &order, const QString &name, const QString &options, const QString &id)
{
    return setFieldsCommand(u"Routing"_s, condition(order, name, options), id);
}

// A translation that knows only the key the date and time tips share.
class DateTimeTranslator : public QObject, public ITranslator
{
    Q_OBJECT
    Q_INTERFACES(ITranslator)
public:
    bool TranslateLoad(const QString &) override { return true; }
    QString Translate(const QString &key, const QString &text, const QString &, const QString &) override
    {
        return key == u"QS144"_s ? u"Wann diese Route gilt."_s : text;
    }
    void TranslateWindow(QObject *) override {}
};

} // namespace

class RoutingTest : public QObject
{
    Q_OBJECT
    std::unique_ptr<ServerFixture> m_fixture;

    QString lastCommand() const { return m_fixture->relay.commands().value(m_fixture->relay.commands().size() - 1); }

private slots:
    void initTestCase()
    {
        m_fixture = std::make_unique<ServerFixture>();
        QString error;
        QVERIFY2(m_fixture->start(&error), qPrintable(error));
    }
    void cleanupTestCase() { m_fixture.reset(); }

    // Each control's label and tip; the date and time tips share one key, so that a translation of
    // it serves both.
    void everyControlHasItsLabelAndTip()
    {
        const QList<std::tuple<QString, QString, QString>> controls{
            {u"rName"_s, u"&Name:"_s, u"Enter the name of this Routing Condition."_s},
            {u"rCaller"_s, u"&Caller tel:"_s,
             u"Enter any criteria to match for callers.  Wildcards (*) and Commas (,) are valid."_s},
            {u"rCalled"_s, u"Called &tel:"_s,
             u"Enter any criteria to match for called numbers.  Wildcards (*) and Commas (,) are valid."_s},
            {u"rExt"_s, u"&Ringing ext:"_s,
             u"Enter any criteria to match for ringing extensions.  Wildcards (*) and Commas (,) are valid."_s},
            {u"rAB"_s, u"&Address Book:"_s, u"Select the Address Book to check callers against."_s},
            {u"rDay"_s, u"Da&y:"_s, u"Enter the weekday(s) during which this Route will operate."_s},
            {u"rDate"_s, u"&Date:"_s,
             u"Enter the Date(s) during which this Route will operate.  Multiple dates can be separated by commas."_s},
            {u"rTime"_s, u"&Time:"_s,
             u"Enter the times during which this Route will operate. This can be a list, ie 09:00-11:30, 14:00-17:00"_s},
            {u"rDestination"_s, u"De&stination:"_s,
             u"Enter the destination address to route calls to.  This entry is mandatory."_s},
            {u"OK"_s, u"OK"_s, u"Click to save changes and close this window."_s},
            {u"Cancel"_s, u"Cancel"_s, u"Click to undo any changes and close this window."_s}};
        DateTimeTranslator translator;
        for (const bool translated : {false, true}) {
            setTranslator(translated ? &translator : nullptr);
            frmRouting window(m_fixture->link, books, 0);
            QCOMPARE(child<QLabel>(window, u"Tip"_s)->text(), u" "_s); // until a control has the focus
            window.show();
            QVERIFY(QTest::qWaitForWindowActive(&window));
            QCOMPARE(window.windowTitle(), u"Routing Condition"_s);
            const QList<QLabel *> labels = window.findChildren<QLabel *>();
            for (const auto &[control, label, tip] : controls) {
                auto *widget = child<QWidget>(window, control);
                const auto found = std::find_if(labels.begin(), labels.end(),
                                                [&](QLabel *l) { return l->buddy() == widget; });
                if (auto *button = qobject_cast<QPushButton *>(widget))
                    QCOMPARE(button->text(), label);
                else
                    QCOMPARE(found != labels.end() ? (*found)->text() : QString(), label);
                widget->setFocus();
                const bool dateOrTime = control == u"rDate"_s || control == u"rTime"_s;
                QTRY_COMPARE(child<QLabel>(window, u"Tip"_s)->text(),
                             translated && dateOrTime ? u"Wann diese Route gilt."_s : tip);
            }
            // The lists: a blank entry, then the books in the main list's order, or the weekday rules.
            QCOMPARE(child<QComboBox>(window, u"rAB"_s)->count(), 3);
            QCOMPARE(child<QComboBox>(window, u"rAB"_s)->itemText(2), u"Suppliers"_s);
            auto *day = child<QComboBox>(window, u"rDay"_s);
            QCOMPARE(day->count(), 10);
            QCOMPARE(day->itemText(0), QString());
            QCOMPARE(day->itemText(1), u"Monday"_s);
            QCOMPARE(day->itemText(9), u"Weekends only"_s);
        }
        setTranslator(nullptr);
    }

    // A new condition typed in full is stored byte for byte, after the five listed; read back after
    // a restart every criterion is as typed, and saved again unchanged it keeps that order.
    void criteriaAreStoredAsTypedAndOutliveARestart()
    {
        const QList<std::pair<QString, QString>> typed{
            {u"rCaller"_s, u"0161*,0207*"_s}, {u"rCalled"_s, u"4960200"_s},       {u"rExt"_s, u"2*"_s},
            {u"rDate"_s, u"24/12/2026, 31/12/2026"_s}, {u"rTime"_s, u"09:00-11:30, 14:00-17:00"_s},
            {u"rDestination"_s, u"*5000"_s}};
        const QString name = u"Night service \u00e9t\u00e9 {x}"_s;
        QString options;
        {
            frmRouting window(m_fixture->link, books, 5);
            const qsizetype before = m_fixture->relay.commands().size();
            child<QLineEdit>(window, u"Tid"_s)->setText(u"-1"_s);
            child<QLineEdit>(window, u"rName"_s)->insert(name); // as pasted: keyClicks types ASCII only
            for (const auto &[control, text] : typed)
                QTest::keyClicks(child<QLineEdit>(window, control), text);
            child<QComboBox>(window, u"rAB"_s)->setCurrentIndex(1);
            child<QComboBox>(window, u"rDay"_s)->setCurrentIndex(0); // any day: still written, as 0
            QTest::mouseClick(child<QPushButton>(window, u"OK"_s), Qt::LeftButton);

            for (const auto &[tag, value] : std::initializer_list<std::pair<QString, QVariant>>{
                     {u"Caller"_s, u"0161*,0207*"_s}, {u"Called"_s, u"4960200"_s}, {u"Ext"_s, u"2*"_s},
                     {u"AB"_s, u"Customers"_s}, {u"Day"_s, 0}, {u"Date"_s, u"24/12/2026, 31/12/2026"_s},
                     {u"Time"_s, u"09:00-11:30, 14:00-17:00"_s}, {u"Destination"_s, u"*5000"_s}})
                AddVar(options, tag, value);
            QTRY_COMPARE(m_fixture->relay.commands().size(), before + 1); // no read for a new one
            QCOMPARE(lastCommand(), setFields(6, name, options, u"-1"_s));
            QCOMPARE(window.outcome().outcome, WindowResult::SavedNew);
        }

        QVERIFY(m_fixture->restartServer());
        const QString list = m_fixture->fetch(u"MAIN-ROUTING"_s);
        const QStringList names = listColumn(list, u"Name"_s);
        const QString id = ServerFixture::replyIds(list).value(names.indexOf(name));
        QVERIFY2(!id.isEmpty(), qPrintable(list));

        frmRouting window(m_fixture->link, books, 5);
        child<QLineEdit>(window, u"Tid"_s)->setText(id);
        QTRY_COMPARE(child<QLineEdit>(window, u"rName"_s)->text(), name);
        QVERIFY(m_fixture->relay.commands().contains(
            u"{Cmd=GetFields}{Table=Routing}{Fields=Name,Order,Options}{Ref=ROUTING-ROUTING}{Id(S%1)=%2}"_s.arg(id.size()).arg(id)));
        for (const auto &[control, text] : typed)
            QCOMPARE(child<QLineEdit>(window, control)->text(), text);
        QCOMPARE(child<QComboBox>(window, u"rAB"_s)->currentText(), u"Customers"_s);
        QCOMPARE(child<QComboBox>(window, u"rDay"_s)->currentIndex(), 0);

        QTest::mouseClick(child<QPushButton>(window, u"OK"_s), Qt::LeftButton);
        QTRY_COMPARE(lastCommand(), setFields(6, name, options, id)); // edited: after the five again
        QCOMPARE(window.outcome().outcome, WindowResult::SavedExisting);
        QCOMPARE(window.outcome().columns, (QStringList{name, u"*5000"_s}));
    }

    // Loaded records that are odd in one way each, and what OK writes for them.
    void loadedRecordsAreSavedAsTheWindowShowsThem_data()
    {
        QTest::addColumn<QString>("record");
        QTest::addColumn<QString>("name");    // rName after load
        QTest::addColumn<QString>("expected"); // the record OK writes
        const QString sixty = QString(u"N"_s).repeated(60);
        const auto saved = condition;
        QTest::newRow("name cut to 50")
            << record({{u"Name"_s, sixty}, {u"Options"_s, record({{u"Day"_s, 3}})}}) << sixty.left(50)
            << saved(6, sixty.left(50), record({{u"Day"_s, 3}}));
        QTest::newRow("book gone")
            << record({{u"Name"_s, u"X"_s},
                       {u"Options"_s, record({{u"AB"_s, u"Retired"_s}, {u"Day"_s, 1}, {u"Ext"_s, u"5"_s}})}})
            << u"X"_s << saved(6, u"X"_s, record({{u"Ext"_s, u"5"_s}, {u"Day"_s, 1}}));
        QTest::newRow("no criteria at all")
            << record({{u"Name"_s, u"Y"_s}}) << u"Y"_s << saved(6, u"Y"_s, record({{u"Day"_s, -1}}));
        QTest::newRow("order kept in the criteria")
            << record({{u"Name"_s, u"Z"_s}, {u"Order"_s, 1}, {u"Options"_s, record({{u"Order"_s, u"3"_s}, {u"Day"_s, 0}})}})
            << u"Z"_s << saved(u"3"_s, u"Z"_s, record({{u"Day"_s, 0}}));
    }
    void loadedRecordsAreSavedAsTheWindowShowsThem()
    {
        QFETCH(QString, record);
        QFETCH(QString, name);
        QFETCH(QString, expected);
        frmRouting window(m_fixture->link, books, 5);
        {
            const QSignalBlocker quiet(child<QLineEdit>(window, u"Tid"_s)); // no read: the reply is given here
            child<QLineEdit>(window, u"Tid"_s)->setText(u"999"_s);
        }
        window.DataArrived(u"ROUTING"_s, record);
        QCOMPARE(child<QLineEdit>(window, u"rName"_s)->text(), name);
        QTest::mouseClick(child<QPushButton>(window, u"OK"_s), Qt::LeftButton);
        QTRY_COMPARE(lastCommand(), setFieldsCommand(u"Routing"_s, expected, u"999"_s));
    }

    // The routing list opens the window for Add, Edit and a double-click, and shows what it saved:
    // a new condition by asking for the list again, an edited one in place.
    void theRoutingListOpensTheWindowAndShowsItsResult()
    {
        MainTool tool(m_fixture->relay.url());
        registerWindows(tool.window, tool.link);
        QVERIFY(tool.waitLoaded());
        tool.tabs()->setCurrentIndex(frmMain::Routing);
        RecordList *list = tool.window.recordList(RecordKind::Routing);
        const int listed = list->list()->topLevelItemCount();
        QVERIFY(listed > 0);

        answerModalWindow([](QWidget *window) {
            QTest::keyClicks(window->findChild<QLineEdit *>(u"rName"_s), u"Added from the list"_s);
            QTest::mouseClick(window->findChild<QPushButton *>(u"OK"_s), Qt::LeftButton);
        });
        qsizetype before = m_fixture->relay.commands().size();
        QTest::mouseClick(list->button(RecordList::AddButton), Qt::LeftButton);
        QTRY_COMPARE(list->list()->topLevelItemCount(), listed + 1);
        QStringList sent = m_fixture->relay.commands().mid(before);
        QCOMPARE(GetVar(getText(sent.value(0), u"Fields"_s), u"Order"_s).toInt(), listed + 1);
        QCOMPARE(sent.value(1), u"{Cmd=GetList}{Table=Routing}{Ref=MAIN-ROUTING}{Fields=RoutingId,Id,Name,Order,Options}{Sort=Order}"_s);
        QCOMPARE(list->names().constLast(), u"Added from the list"_s);

        // Edited: name and destination change in place, and nothing more is asked.
        QTreeWidgetItem *first = list->list()->topLevelItem(0);
        list->list()->setCurrentItem(first);
        answerModalWindow([](QWidget *window) {
            auto *name = window->findChild<QLineEdit *>(u"rName"_s);
            QTRY_VERIFY(!name->text().isEmpty()); // the record has arrived
            name->setText(u"Renamed"_s);
            window->findChild<QLineEdit *>(u"rDestination"_s)->setText(u"7000"_s);
            QTest::mouseClick(window->findChild<QPushButton *>(u"OK"_s), Qt::LeftButton);
        });
        before = m_fixture->relay.commands().size();
        QTest::mouseClick(list->button(RecordList::EditButton), Qt::LeftButton);
        QCOMPARE(first->text(0), u"Renamed"_s);
        QCOMPARE(first->text(1), u"7000"_s);
        sent = m_fixture->relay.commands().mid(before);
        QTRY_COMPARE(m_fixture->relay.commands().size(), before + 2); // the read and the write
        QVERIFY(m_fixture->relay.commands().constLast().startsWith(u"{Cmd=SetFields}{Table=Routing}"_s));

        // A double-click opens it too; Cancel sends nothing and changes nothing.
        const QRect rect = list->list()->visualItemRect(first);
        QTest::mouseClick(list->list()->viewport(), Qt::LeftButton, {}, rect.center());
        answerModalWindow([](QWidget *window) {
            QTest::mouseClick(window->findChild<QPushButton *>(u"Cancel"_s), Qt::LeftButton);
        });
        before = m_fixture->relay.commands().size();
        QTest::mouseDClick(list->list()->viewport(), Qt::LeftButton, {}, rect.center());
        QTRY_COMPARE(m_fixture->relay.commands().size(), before + 1); // the read only
        QVERIFY(m_fixture->relay.commands().constLast().startsWith(u"{Cmd=GetFields}{Table=Routing}"_s));
        QCOMPARE(first->text(0), u"Renamed"_s);
    }
};

QTEST_MAIN(RoutingTest)
#include "tst_routing.moc"
