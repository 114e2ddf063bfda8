// SPDX-License-Identifier: GPL-3.0-or-later
// Imports against quillserverd holding the demo site: the plan against what the server holds, new
// devices stored exactly as the device window stores them, and an import cut off halfway that says
// what it wrote and is finished by running it again.
#include "deviceplan.h"
#include "devicereads.h"
#include "devicerecord.h"
#include "devicetransfer.h"
#include "findchild.h"
#include "frmConfig.h"
#include "serverfixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

using Values = QList<std::pair<QString, QString>>;

// A sheet from its title row and rows, as a file with one record per line would give it.
DeviceSheet::Sheet sheetOf(const QStringList &header, const QList<QStringList> &rows)
{
    QList<QStringList> records{header};
    records += rows;
    QList<qsizetype> lines;
    for (qsizetype i = 0; i < records.size(); ++i)
        lines.append(i + 1);
    return DeviceSheet::check(records, lines);
}

} // namespace

class TestBulkImport : public QObject
{
    Q_OBJECT

    std::unique_ptr<ServerFixture> m_fixture;
    std::unique_ptr<SessionChannel> m_channel;

    DeviceSheet::Table readDevices(const QStringList &fields) { return ::readDevices(*m_channel, fields); }
    DevicePlan::Plan planOf(const DeviceSheet::Sheet &sheet)
    {
        return DevicePlan::make(sheet, readDevices(DevicePlan::fieldsToRead(sheet)));
    }
    DeviceSender::Result send(const DevicePlan::Plan &plan, int batchSize, std::function<void()> onFirstProgress = {})
    {
        DeviceSender sender(*m_channel);
        sender.setBatchSize(batchSize);
        std::optional<DeviceSender::Result> result;
        connect(&sender, &DeviceSender::finished, this, [&](const DeviceSender::Result &r) { result = r; });
        connect(&sender, &DeviceSender::progress, this, [&](qsizetype confirmed, qsizetype) {
            if (confirmed > 0 && onFirstProgress)
                std::exchange(onFirstProgress, {})();
        });
        sender.start(DeviceSender::itemsOf(plan));
        if (!QTest::qWaitFor([&] { return result.has_value(); }, 120000))
            return {DeviceSender::Result::Lost, u"no end"_s, {}, {}, {}};
        return *result;
    }
    // The stored row of the device with that number, by tag.
    QHash<QString, QString> deviceRow(const DeviceSheet::Table &devices, const QString &ext)
    {
        QHash<QString, QString> row;
        for (const QStringList &values : devices.rows)
            if (values.value(devices.indexOf(u"Ext")) == ext)
                for (qsizetype i = 0; i < devices.fields.size(); ++i)
                    row.insert(devices.fields.at(i), values.value(i));
        return row;
    }

private slots:
    void initTestCase()
    {
        m_fixture = std::make_unique<ServerFixture>();
        m_fixture->session.setReconnectTiming(50, 400, 1000);
        QString error;
        QVERIFY2(m_fixture->start(&error), qPrintable(error));
        m_channel = std::make_unique<SessionChannel>(m_fixture->session);
    }
    void cleanupTestCase()
    {
        m_channel.reset();
        m_fixture.reset();
    }

    // A new device of a sheet is stored with the very command the device window sends for the
    // same values typed in: its kind's groups, a new device's flags and buttons, then Ext and Name.
    void newDevicesAreStoredAsTheDeviceWindowStoresThem_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<Values>("typed");  // control -> text, or a box "0"/"1"
        QTest::addColumn<Values>("columns"); // the same as sheet columns
        QTest::newRow("extension") << 0
                                   << Values{{u"Ext"_s, u"6101"_s},    {u"Nam"_s, u"Desk #"_s},
                                             {u"Dept"_s, u"Sales"_s},  {u"DDI"_s, u"4966101"_s},
                                             {u"pwd"_s, u"s3cret"_s},  {u"Mobile"_s, u"07700900101"_s},
                                             {u"chk_2"_s, u"0"_s},     {u"chk_7"_s, u"1"_s},
                                             {u"UseAbsence"_s, u"1"_s}, {u"Notes"_s, u"Two\nlines"_s}}
                                   << Values{{u"Ext"_s, u"6101"_s},     {u"Name"_s, u"Desk #"_s},
                                             {u"Dept"_s, u"Sales"_s},   {u"DDI"_s, u"4966101"_s},
                                             {u"Password"_s, u"s3cret"_s}, {u"Mobile"_s, u"07700900101"_s},
                                             {u"CanDial"_s, u"0"_s},    {u"ExcludeBLF"_s, u"1"_s},
                                             {u"UseAbsence"_s, u"1"_s}, {u"Notes"_s, u"Two\nlines"_s}};
        QTest::newRow("agent") << 1 << Values{{u"Ext"_s, u"6102"_s}, {u"Nam"_s, u"Queue"_s}, {u"chk_22"_s, u"1"_s}}
                               << Values{{u"Ext"_s, u"6102"_s}, {u"Name"_s, u"Queue"_s}, {u"RequireAgent"_s, u"1"_s}};
        QTest::newRow("speed dial") << 2 << Values{{u"Ext"_s, u"L6103"_s}, {u"Nam"_s, u"Taxi #"_s}}
                                    << Values{{u"Ext"_s, u"L6103"_s}, {u"Name"_s, u"Taxi #"_s}};
        QTest::newRow("trunk") << 3
                               << Values{{u"Ext"_s, u"T6104"_s}, {u"Nam"_s, u"Line"_s}, {u"Dept"_s, u"Lines"_s},
                                         {u"chk_23"_s, u"1"_s}}
                               << Values{{u"Ext"_s, u"T6104"_s}, {u"Name"_s, u"Line"_s}, {u"Dept"_s, u"Lines"_s},
                                         {u"IncludeBLF"_s, u"1"_s}};
    }
    void newDevicesAreStoredAsTheDeviceWindowStoresThem()
    {
        QFETCH(int, kind);
        QFETCH(Values, typed);
        QFETCH(Values, columns);

        frmConfig window(m_fixture->link);
        window.show();
        child<QLineEdit>(window, u"Lid"_s)->setText(u"-1"_s);
        QVERIFY(QTest::qWaitFor([&] { return child<QCheckBox>(window, u"chk_2"_s)->isChecked(); }, 20000));
        child<QComboBox>(window, u"Typ"_s)->setCurrentIndex(kind);
        for (const auto &[control, value] : typed) {
            QWidget *widget = child<QWidget>(window, control);
            if (auto *box = qobject_cast<QCheckBox *>(widget))
                box->setChecked(value == u"1"_s);
            else if (auto *text = qobject_cast<QPlainTextEdit *>(widget))
                text->setPlainText(value);
            else
                child<QLineEdit>(window, control)->setText(value);
        }
        const qsizetype before = m_fixture->relay.commands().size();
        QTest::mouseClick(child<QPushButton>(window, u"OK"_s), Qt::LeftButton);
        QTRY_COMPARE(m_fixture->relay.commands().size(), before + 1);

        QStringList header{u"Type"_s};
        QStringList row{DeviceRecord::kinds().at(kind)};
        for (const auto &[tag, value] : columns) {
            header.append(tag);
            row.append(value);
        }
        const DeviceSheet::Sheet sheet = sheetOf(header, {row});
        QVERIFY(sheet.findings.isEmpty());
        QCOMPARE(DevicePlan::newDeviceCommand(sheet.rows.constFirst()), m_fixture->relay.commands().constLast());
    }

    // The plan reads what the server holds and sends only what differs; once sent, the same sheet
    // plans nothing more.
    void importPlansAgainstTheServerAndSendsOnlyTheDifferences()
    {
        const QStringList header{u"Ext"_s, u"Name"_s, u"Type"_s, u"Dept"_s, u"DDI"_s, u"CanDial"_s, u"Password"_s};
        const DeviceSheet::Table before = readDevices(header);
        const QHash<QString, QString> lead = deviceRow(before, u"212"_s); // the Sales lead of the demo site
        const QHash<QString, QString> other = deviceRow(before, u"213"_s);
        QCOMPARE(lead.value(u"Dept"_s), u"Sales"_s);
        QCOMPARE(lead.value(u"CanDial"_s), u"1"_s);

        const DeviceSheet::Sheet sheet = sheetOf(
            header, {{u"212"_s, u"New lead"_s, u"Extension"_s, u""_s, lead.value(u"DDI"_s), u"0"_s, u"n3w-pass"_s},
                     {u"213"_s, other.value(u"Name"_s), u"EXT"_s, other.value(u"Dept"_s), other.value(u"DDI"_s),
                      other.value(u"CanDial"_s), other.value(u"Password"_s)},
                     {u"6201"_s, u"Reception 2"_s, u"EXT"_s, u"Reception"_s, u"4966201"_s, u""_s, u""_s},
                     {u"T6202"_s, u"Line 2"_s, u"Trunk"_s, u"Lines"_s, u"4966202"_s, u""_s, u""_s},
                     {u"6203"_s, u"Maybe"_s, u"EXT"_s, u""_s, u""_s, u"maybe"_s, u""_s}});
        const DevicePlan::Plan plan = planOf(sheet);
        QCOMPARE(plan.summary(), u"2 new, 1 changed, 1 unchanged, 1 rejected"_s);

        const DevicePlan::Entry &changed = plan.entries.at(0);
        QCOMPARE(changed.state, DevicePlan::State::Changed);
        QStringList changes;
        for (const DevicePlan::Change &change : changed.changes)
            changes.append(DevicePlan::changeText(change));
        // In the order the device window writes them; a password only says that it changes.
        QCOMPARE(changes, (QStringList{u"Dept: \"Sales\" -> (empty)"_s, u"Password: changed"_s,
                                       u"CanDial: \"1\" -> \"0\""_s,
                                       u"Name: \"%1\" -> \"New lead\""_s.arg(lead.value(u"Name"_s))}));
        // An emptied field is written empty so that the server forgets it; the number is never sent.
        const QString id = lead.value(u"Id"_s);
        QCOMPARE(changed.command, u"{Cmd=SetFields}{Table=Exts}{Fields(S68)={Dept(S0)=}{Password(S8)=n3w-pass}"
                                  "{CanDial(N1)=0}{Name(S8)=New lead}}{Id(S%1)=%2}"_s.arg(id.size()).arg(id));
        QCOMPARE(plan.entries.at(1).state, DevicePlan::State::Unchanged);
        QCOMPARE(plan.entries.at(3).state, DevicePlan::State::New);
        QCOMPARE(plan.entries.at(3).reasons, QStringList{u"Line 5: DDI is not kept for the kind Trunk; it is left out."_s});
        QCOMPARE(plan.entries.at(4).state, DevicePlan::State::Rejected);

        // The three commands go out as planned, each batch closed by an echo that confirms it.
        const qsizetype sentBefore = m_fixture->relay.commands().size();
        const DeviceSender::Result result = send(plan, 2);
        QCOMPARE(result.outcome, DeviceSender::Result::Done);
        QCOMPARE(result.written, (QList<qsizetype>{2, 4, 5}));
        QCOMPARE(result.report(), u"All 3 rows were written."_s);
        const QStringList sent = m_fixture->relay.commands().mid(sentBefore);
        QCOMPARE(sent.size(), 5);
        QCOMPARE(sent.at(0), changed.command);
        QCOMPARE(sent.at(1), plan.entries.at(2).command);
        QVERIFY(sent.at(2).startsWith(u"{Cmd=Ping}{Handler=Branch}{Ref(S"_s));
        QCOMPARE(sent.at(3), plan.entries.at(3).command);

        const DevicePlan::Plan again = planOf(sheet);
        QCOMPARE(again.summary(), u"0 new, 0 changed, 4 unchanged, 1 rejected"_s);
        const QHash<QString, QString> trunk = deviceRow(readDevices(header), u"T6202"_s);
        QCOMPARE(trunk.value(u"Type"_s), u"TRUNK"_s);
        QCOMPARE(trunk.value(u"DDI"_s), QString());
    }

    // The server goes away halfway: the import says which lines reached it and which did not, and
    // running it again stores the rest without storing anything twice.
    void aDroppedConnectionSaysWhatWasWrittenAndARerunFinishes()
    {
        constexpr int count = 1500;
        QList<QStringList> rows;
        for (int i = 0; i < count; ++i)
            rows.append({QString::number(50000 + i), u"Bulk %1"_s.arg(i), u"EXT"_s});
        const DeviceSheet::Sheet sheet = sheetOf({u"Ext"_s, u"Name"_s, u"Type"_s}, rows);
        const DevicePlan::Plan plan = planOf(sheet);
        QCOMPARE(plan.count(DevicePlan::State::New), count);

        const DeviceSender::Result cut = send(plan, 20, [this] { m_fixture->server().kill(); });
        QCOMPARE(cut.outcome, DeviceSender::Result::Lost);
        QVERIFY(!cut.written.isEmpty());
        QVERIFY(!cut.unsent.isEmpty());
        QCOMPARE(cut.written.size() + cut.unconfirmed.size() + cut.unsent.size(), count);
        QCOMPARE(cut.written.constFirst(), 2);
        const QString report = cut.report();
        QVERIFY2(report.contains(u"Written: lines 2-%1."_s.arg(cut.written.constLast())), qPrintable(report));
        QVERIFY2(report.contains(u"Not written: lines "_s), qPrintable(report));
        QVERIFY2(report.contains(u"Run the same import again"_s), qPrintable(report));

        QVERIFY(m_fixture->restartServer());
        const DevicePlan::Plan rest = planOf(sheet);
        // What was confirmed survived the kill; what was only sent may or may not have.
        const qsizetype stored = count - rest.count(DevicePlan::State::New);
        QVERIFY(stored >= cut.written.size());
        QVERIFY(stored <= cut.written.size() + cut.unconfirmed.size());
        QCOMPARE(rest.count(DevicePlan::State::Unchanged), stored);
        QCOMPARE(send(rest, 200).outcome, DeviceSender::Result::Done);

        QHash<QString, int> seen;
        const DeviceSheet::Table after = readDevices({u"Ext"_s});
        for (const QStringList &device : after.rows)
            seen[device.value(1)] += 1;
        for (int i = 0; i < count; ++i)
            QCOMPARE(seen.value(QString::number(50000 + i)), 1);
    }
};

QTEST_MAIN(TestBulkImport)
#include "tst_bulkimport.moc"
