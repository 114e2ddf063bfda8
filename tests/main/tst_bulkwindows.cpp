// SPDX-License-Identifier: GPL-3.0-or-later
// The directory's Import and Export windows against quillserverd with the demo site: a device
// sheet is checked, planned and previewed, and sent only when asked, leaving its rejected rows out;
// an export writes the chosen fields of the listed or of all devices.
#include "devicesheet.h"
#include "devicereads.h"
#include "devicetransfer.h"
#include "directorymodel.h"
#include "directorypage.h"
#include "frmExport.h"
#include "frmImport.h"
#include "serverfixture.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTemporaryDir>

#include <memory>

namespace {

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// Each device's values of fields by number, as the server holds them.
QHash<QString, QStringList> byNumber(const DeviceSheet::Table &devices, const QStringList &fields)
{
    QHash<QString, QStringList> rows;
    for (const QStringList &row : devices.rows) {
        QStringList values;
        for (const QString &field : fields)
            values.append(row.value(devices.indexOf(field)));
        rows.insert(row.value(devices.indexOf(u"Ext")), values);
    }
    return rows;
}

} // namespace

class BulkWindowsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void importShowsThePlanAndSendsOnlyTheAcceptedRowsWhenAsked();
    void exportWritesTheChosenFieldsOfTheListedOrAllDevices();
    void aConnectionLostWhileSendingIsReportedAndTheSameImportFinishesIt();

private:
    DeviceSheet::Table readDevices(const QStringList &fields);
    template <typename T> T *control(QWidget *window, const QString &name)
    {
        auto *found = window->findChild<T *>(name);
        if (!found)
            qWarning("no control %s", qPrintable(name));
        return found;
    }

    std::unique_ptr<ServerFixture> m_fixture;
    std::unique_ptr<DirectoryPage> m_page;
    QTemporaryDir m_files;
};

void BulkWindowsTest::initTestCase()
{
    m_fixture = std::make_unique<ServerFixture>();
    QString error;
    QVERIFY2(m_fixture->start(&error), qPrintable(error));
    m_page = std::make_unique<DirectoryPage>(m_fixture->link, m_fixture->windows);
    m_fixture->onReply = [this](const QString &subRef, const QString &message) {
        if (subRef == u"EXTS"_s)
            m_page->fill(message);
    };
    QVERIFY(!m_fixture->fetch(u"MAIN-EXTS"_s).isEmpty());
    m_page->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
}

void BulkWindowsTest::cleanupTestCase()
{
    frmImport::setFileChooser({});
    frmExport::setFileChooser({});
    m_page.reset();
    m_fixture.reset();
}

DeviceSheet::Table BulkWindowsTest::readDevices(const QStringList &fields)
{
    SessionChannel channel(m_fixture->session);
    return ::readDevices(channel, fields);
}

void BulkWindowsTest::importShowsThePlanAndSendsOnlyTheAcceptedRowsWhenAsked()
{
    const QStringList fields{u"Name"_s, u"Type"_s, u"Dept"_s, u"DDI"_s};
    const QHash<QString, QStringList> before = byNumber(readDevices(fields), fields);
    QVERIFY(before.contains(u"200"_s) && !before.contains(u"9301"_s));

    // A file without an Ext column is refused with its reason, and nothing is read or sent.
    const QString unusable = m_files.filePath(u"no-ext.csv"_s);
    QVERIFY(writeFile(unusable, "Name,Dept\r\nAda,Sales\r\n"));
    QString chosen = unusable;
    frmImport::setFileChooser([&] { return chosen; });
    QTest::mouseClick(control<QPushButton>(m_page.get(), u"Import"_s), Qt::LeftButton);
    frmImport *window = m_page->findChild<frmImport *>();
    QVERIFY(window && window->isVisible());
    QCOMPARE(control<QLabel>(window, u"Status"_s)->text(), DeviceSheet::read(unusable).failure);
    QVERIFY(control<QLabel>(window, u"Summary"_s)->text().isEmpty());
    QVERIFY(!control<QPushButton>(window, u"Send"_s)->isEnabled());
    QCOMPARE(window->step(), frmImport::Step::NoPlan);

    // One change to a demo device, two new devices and a row of an unknown kind.
    chosen = m_files.filePath(u"devices.csv"_s);
    QVERIFY(writeFile(chosen, "Ext,Name,Type,Dept,DDI\r\n"
                              "200,Ada Quill,,Reception,0161 496 0999\r\n"
                              "9301,Bea Neu,EXT,Sales,\r\n"
                              "9302,Cai Neu,AGENT,,\r\n"
                              "9303,Dee Neu,PHONE,,\r\n"));
    QTest::mouseClick(control<QPushButton>(window, u"Browse"_s), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(control<QLabel>(window, u"Summary"_s)->text(),
                              u"2 new, 1 changed, 0 unchanged, 1 rejected"_s, 20000);
    auto *preview = control<QTableView>(window, u"Preview"_s);
    QAbstractItemModelTester tester(preview->model());
    QCOMPARE(preview->model()->rowCount(), 4);
    auto *filter = control<QComboBox>(window, u"Filter"_s);
    filter->setCurrentIndex(filter->findText(u"Rejected rows"_s));
    QCOMPARE(preview->model()->rowCount(), 1);
    QCOMPARE(preview->model()->index(0, 0).data().toString(), u"5"_s);
    QCOMPARE(preview->model()->index(0, 2).data().toString(), u"rejected"_s);
    QVERIFY(preview->model()->index(0, 3).data().toString().contains(u"PHONE"_s));
    filter->setCurrentIndex(filter->findText(u"Changed devices"_s));
    QCOMPARE(preview->model()->rowCount(), 1);
    QCOMPARE(preview->model()->index(0, 3).data().toString(),
             u"DDI: \""_s + before[u"200"_s][3] + u"\" -> \"0161 496 0999\"; Name: \""_s +
                 before[u"200"_s][0] + u"\" -> \"Ada Quill\""_s);

    // Nothing goes before Import, and Import waits for the rejected row to be left out knowingly.
    auto *send = control<QPushButton>(window, u"Send"_s);
    auto *partial = control<QCheckBox>(window, u"Partial"_s);
    QVERIFY(partial->isVisible() && !partial->isChecked());
    QVERIFY(!send->isEnabled());
    QCOMPARE(byNumber(readDevices(fields), fields), before);
    QTest::mouseClick(partial, Qt::LeftButton, {}, QPoint(8, partial->height() / 2));
    QVERIFY(send->isEnabled());
    m_fixture->relay.clear();
    QTest::mouseClick(send, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(control<QLabel>(window, u"Status"_s)->text(), u"All 3 rows were written."_s,
                              20000);
    QVERIFY(!send->isEnabled());

    const QHash<QString, QStringList> after = byNumber(readDevices(fields), fields);
    QCOMPARE(after.value(u"200"_s),
             (QStringList{u"Ada Quill"_s, u"EXT"_s, u"Reception"_s, u"0161 496 0999"_s}));
    QCOMPARE(after.value(u"9301"_s), (QStringList{u"Bea Neu"_s, u"EXT"_s, u"Sales"_s, QString()}));
    QCOMPARE(after.value(u"9302"_s).mid(0, 2), (QStringList{u"Cai Neu"_s, u"AGENT"_s}));
    QVERIFY(!after.contains(u"9303"_s));
    QCOMPARE(after.size(), before.size() + 2);

    // The directory asks for its list again after the writes, and shows the new devices.
    QStringList refs;
    for (const QString &command : m_fixture->relay.commands())
        refs.append(getText(command, u"Ref"_s));
    QVERIFY2(refs.lastIndexOf(u"MAIN-EXTS"_s) > refs.lastIndexOf(u"BULK-ACK-1"_s),
             qPrintable(refs.join(u',')));
    QTRY_VERIFY_WITH_TIMEOUT(std::any_of(m_page->model()->entries().cbegin(),
                                         m_page->model()->entries().cend(),
                                         [](const DirectoryEntry &entry) { return entry.ext == u"9302"_s; }),
                             20000);
    window->close();
}

void BulkWindowsTest::exportWritesTheChosenFieldsOfTheListedOrAllDevices()
{
    const QString wrongPlace = m_files.filePath(u"a-file"_s);
    QVERIFY(writeFile(wrongPlace, "x"));
    QString chosen;
    frmExport::setFileChooser([&] { return chosen; });
    struct Case
    {
        const char *name;
        QString quickFilter;
        QStringList fields; // empty: as the window proposes
        bool all;
    };
    const Case cases[]{
        {"listed, chosen fields", u"Sales"_s, {u"Ext"_s, u"Name"_s, u"Dept"_s, u"DDI"_s}, false},
        {"all, proposed fields", QString(), {}, true}};
    for (const Case &c : cases) {
        auto *quickFilter = control<QLineEdit>(m_page.get(), u"DirFilter"_s);
        quickFilter->clear();
        QTest::keyClicks(quickFilter, c.quickFilter);
        QStringList listed;
        for (int row = 0; row < m_page->proxy()->rowCount(); ++row)
            listed.append(m_page->proxy()->index(row, DirectoryModel::ExtColumn).data().toString());
        QVERIFY(!listed.isEmpty());

        QTest::mouseClick(control<QPushButton>(m_page.get(), u"Export"_s), Qt::LeftButton);
        frmExport *window = m_page->findChild<frmExport *>();
        QVERIFY(window && window->isVisible());
        QVERIFY2(control<QRadioButton>(window, u"Listed"_s)->isChecked(), c.name);
        // Every field is offered, and all but the passwords are ticked.
        auto *fieldList = control<QListWidget>(window, u"Fields"_s);
        QCOMPARE(fieldList->count(), DeviceSheet::columns().size());
        QCOMPARE(window->chosenFields(), DeviceSheet::defaultExportFields());
        QVERIFY(!window->chosenFields().contains(u"Password"_s));
        for (int row = 0; !c.fields.isEmpty() && row < fieldList->count(); ++row) {
            QListWidgetItem *item = fieldList->item(row);
            const bool wanted = c.fields.contains(item->text());
            item->setCheckState(wanted ? Qt::Checked : Qt::Unchecked);
        }
        if (c.all)
            QTest::mouseClick(control<QRadioButton>(window, u"AllDevices"_s), Qt::LeftButton);
        const QStringList fields = c.fields.isEmpty() ? DeviceSheet::defaultExportFields() : c.fields;
        const QStringList expected =
            c.all ? ServerFixture::replyIds(m_fixture->fetch(u"MAIN-EXTS"_s)) : listed; // one row each

        // A place that cannot be written is said at once, and the window stays for another.
        auto *status = control<QLabel>(window, u"Status"_s);
        chosen = wrongPlace + u"/devices.csv"_s;
        QTest::mouseClick(control<QPushButton>(window, u"OK"_s), Qt::LeftButton);
        QVERIFY2(status->text().startsWith(u"The file \""_s) &&
                     status->text().contains(u"cannot be written"_s),
                 qPrintable(status->text()));
        QVERIFY(window->isVisible() && !window->isReading());

        chosen = m_files.filePath(u"export-%1"_s.arg(c.all)); // ".csv" is added
        QTest::mouseClick(control<QPushButton>(window, u"OK"_s), Qt::LeftButton);
        const QString written = u"%1 devices written to \"%2.csv\"."_s.arg(expected.size()).arg(chosen);
        QTRY_COMPARE_WITH_TIMEOUT(status->text(), written, 20000);
        QFile file(chosen + u".csv"_s);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY2(bytes.startsWith("\xEF\xBB\xBF"), c.name); // spreadsheets read it as UTF-8
        QCOMPARE(bytes.mid(3, bytes.indexOf('\n') - 2), fields.join(u',').toUtf8() + "\r\n");
        // Read back as an import reads it: one row per device (notes may span lines).
        const DeviceSheet::Sheet sheet = DeviceSheet::read(file.fileName());
        QVERIFY2(sheet.ok(), qPrintable(sheet.failure));
        QStringList numbers;
        for (const DeviceSheet::Row &row : sheet.rows)
            numbers.append(row.ext);
        if (c.all) {
            QCOMPARE(numbers.size(), expected.size());
        } else {
            numbers.sort();
            listed.sort();
            QCOMPARE(numbers, listed);
        }
        window->close();
        QTRY_VERIFY(!m_page->findChild<frmExport *>());
    }

    // What was exported imports back as it is: every device unchanged, nothing to send.
    const QString all = m_files.filePath(u"export-1.csv"_s);
    frmImport::setFileChooser([&] { return all; });
    QTest::mouseClick(control<QPushButton>(m_page.get(), u"Import"_s), Qt::LeftButton);
    frmImport *import = m_page->findChild<frmImport *>();
    QVERIFY(import);
    const QString devices = QString::number(ServerFixture::replyIds(m_fixture->fetch(u"MAIN-EXTS"_s)).size());
    QTRY_COMPARE_WITH_TIMEOUT(control<QLabel>(import, u"Summary"_s)->text(),
                              u"0 new, 0 changed, "_s + devices + u" unchanged, 0 rejected"_s, 20000);
    QVERIFY(!control<QPushButton>(import, u"Send"_s)->isEnabled());
    import->close();
}

void BulkWindowsTest::aConnectionLostWhileSendingIsReportedAndTheSameImportFinishesIt()
{
    const QString sheet = m_files.filePath(u"more.csv"_s);
    QVERIFY(writeFile(sheet, "Ext,Name\r\n9501,Fay Neu\r\n9502,Gus Neu\r\n9503,Hal Neu\r\n"));
    frmImport::setFileChooser([&] { return sheet; });
    QTest::mouseClick(control<QPushButton>(m_page.get(), u"Import"_s), Qt::LeftButton);
    frmImport *window = m_page->findChild<frmImport *>();
    QVERIFY(window);
    QTRY_COMPARE_WITH_TIMEOUT(window->step(), frmImport::Step::Planned, 20000);
    auto *status = control<QLabel>(window, u"Status"_s);
    auto *send = control<QPushButton>(window, u"Send"_s);

    // The server goes away before it has confirmed anything: no row counts as written.
    QTest::mouseClick(send, Qt::LeftButton);
    QVERIFY(m_fixture->restartServer());
    QTRY_COMPARE_WITH_TIMEOUT(window->step(), frmImport::Step::Sent, 20000);
    const QStringList report = status->text().split(u'\n');
    QCOMPARE(report.size(), 4); // first why it stopped, then:
    QCOMPARE(
        report.mid(1),
        (QStringList{u"No row was written."_s,
                     u"Sent but not confirmed (they may or may not be stored): lines 2-4."_s,
                     u"Run the same import again to finish: rows already stored then show as unchanged."_s}));

    // The same file again sends what is still missing, and then the server holds every row.
    QTest::mouseClick(control<QPushButton>(window, u"Browse"_s), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(window->step(), frmImport::Step::Planned, 20000);
    const qsizetype missing = window->plan().count(DevicePlan::State::New);
    QCOMPARE(missing + window->plan().count(DevicePlan::State::Unchanged), 3);
    if (missing > 0) {
        QTest::mouseClick(send, Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(status->text(), u"All %1 rows were written."_s.arg(missing), 20000);
    }
    const QHash<QString, QStringList> after = byNumber(readDevices({u"Name"_s}), {u"Name"_s});
    QCOMPARE(after.value(u"9501"_s), QStringList{u"Fay Neu"_s});
    QCOMPARE(after.value(u"9503"_s), QStringList{u"Hal Neu"_s});
    window->close();
}

QTEST_MAIN(BulkWindowsTest)
#include "tst_bulkwindows.moc"
