// SPDX-License-Identifier: GPL-3.0-or-later
// The Directory page against quillserverd: filling and ordering, the quick filter, opening the
// device window for the selection and removing devices.
#include "directorymodel.h"
#include "directorypage.h"
#include "msgboxanswers.h"
#include "serverfixture.h"
#include "translatewidgets.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTreeView>

#include <memory>

namespace {
const QString bulkDept = u"BulkTest"_s;
constexpr int bulkCount = 160;

QStringList column(const QAbstractItemModel *model, int column)
{
    QStringList texts;
    for (int row = 0; row < model->rowCount(); ++row)
        texts.append(model->index(row, column).data().toString());
    return texts;
}

// The order the directory promises: device numbers by value, then every other number as text.
bool numberBefore(const QString &a, const QString &b)
{
    bool aNumber = false, bNumber = false;
    const qint64 aValue = a.toLongLong(&aNumber);
    const qint64 bValue = b.toLongLong(&bNumber);
    if (aNumber != bNumber)
        return aNumber;
    if (aNumber)
        return aValue < bValue;
    return a.compare(b, Qt::CaseInsensitive) < 0;
}
} // namespace

class DirectoryTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void fillsFromTheServerOrderedByNumber();
    void quickFilterNarrowsByNumberNameAndDepartment_data();
    void quickFilterNarrowsByNumberNameAndDepartment();
    void editOpensTheSelectedDevicesAndWarnsAboveOneHundredFifty();
    void removeDeletesTheSelectedDevicesOnlyAfterYes();

private:
    QString idOfExt(const QString &ext) const;
    void selectRows(int first, int last);

    std::unique_ptr<ServerFixture> m_fixture;
    std::unique_ptr<DirectoryPage> m_page;
    std::unique_ptr<QAbstractItemModelTester> m_modelTester;
    std::unique_ptr<QAbstractItemModelTester> m_proxyTester;
    QStringList m_asked;
    QStringList m_opened;
};

void DirectoryTest::initTestCase()
{
    m_fixture = std::make_unique<ServerFixture>();
    QString error;
    QVERIFY2(m_fixture->start(&error), qPrintable(error));
    m_page = std::make_unique<DirectoryPage>(m_fixture->link, m_fixture->windows);
    m_modelTester = std::make_unique<QAbstractItemModelTester>(m_page->model());
    m_proxyTester = std::make_unique<QAbstractItemModelTester>(m_page->proxy());
    m_fixture->onReply = [this](const QString &subRef, const QString &message) {
        if (subRef == u"EXTS"_s)
            m_page->fill(message);
    };

    const auto device = [this](const QString &ext, const QString &name, const QString &type,
                               const QString &dept) {
        m_fixture->create(u"Exts"_s,
                          record({{u"Type"_s, type}, {u"Dept"_s, dept}, {u"Ext"_s, ext}, {u"Name"_s, name}}));
    };
    device(u"99"_s, u"Alice Smith"_s, u"EXT"_s, u"Sales"_s);
    device(u"100"_s, u"Bob Jones"_s, u"EXT"_s, u"Support"_s);
    device(u"7"_s, u"Front Door"_s, u"SPEED"_s, u"Facilities"_s);
    device(u"1000"_s, u"Line One"_s, u"TRUNK"_s, u"Lines"_s);
    device(u"55A"_s, u"Queue Agent"_s, u"AGENT"_s, u"Support"_s);
    for (int i = 0; i < bulkCount; ++i)
        device(QString::number(6000 + i), u"Bulk %1"_s.arg(i), u"EXT"_s, bulkDept);
    for (int i = 0; i < 4; ++i)
        device(QString::number(7100 + i), u"Leaver %1"_s.arg(i), u"EXT"_s, u"GoneTest"_s);
    QVERIFY(!m_fixture->fetch(u"MAIN-EXTS"_s).isEmpty());

    m_page->resize(700, 500);
    m_page->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
}

void DirectoryTest::cleanup()
{
    setMsgBoxAnswer({});
    m_fixture->windows.setOpener(u"Exts"_s, {});
    m_page->filterEdit()->clear();
    m_page->list()->clearSelection();
    m_asked.clear();
    m_opened.clear();
}

QString DirectoryTest::idOfExt(const QString &ext) const
{
    const QString reply = m_fixture->lastReply(u"EXTS"_s);
    return listColumn(reply, u"Id"_s).value(listColumn(reply, u"Ext"_s).indexOf(ext));
}

void DirectoryTest::selectRows(int first, int last)
{
    const QAbstractItemModel *proxy = m_page->proxy();
    const QItemSelection rows(proxy->index(first, 0), proxy->index(last, DirectoryModel::ColumnCount - 1));
    m_page->list()->selectionModel()->select(rows,
                                             QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void DirectoryTest::fillsFromTheServerOrderedByNumber()
{
    const QString reply = m_fixture->lastReply(u"EXTS"_s);
    const int listCount = GetVar(reply, u"ListCount"_s).toInt();
    QVERIFY(listCount >= bulkCount + 9);
    QCOMPARE(m_page->model()->rowCount(), listCount);
    QCOMPARE(m_page->proxy()->rowCount(), listCount);

    // Every row keeps its record's key and ExtensionId; the type shows as a word.
    const QString alice = idOfExt(u"99"_s);
    const int row = m_page->model()->rowOfId(alice);
    QVERIFY(row >= 0);
    const QModelIndex aliceIndex = m_page->model()->index(row, DirectoryModel::ExtColumn);
    QCOMPARE(aliceIndex.data(DirectoryModel::KeyRole).toString(), u"~"_s + alice);
    QCOMPARE(aliceIndex.data(DirectoryModel::ExtensionIdRole).toString(),
             ServerFixture::fieldOf(reply, alice, u"ExtensionId"_s));
    QCOMPARE(aliceIndex.siblingAtColumn(DirectoryModel::NameColumn).data().toString(), u"Alice Smith"_s);
    QCOMPARE(aliceIndex.siblingAtColumn(DirectoryModel::TypeColumn).data().toString(), u"Extension"_s);
    QCOMPARE(aliceIndex.siblingAtColumn(DirectoryModel::DeptColumn).data().toString(), u"Sales"_s);

    // The server sends the devices by type; the list shows them by number, 99 before 100.
    const QStringList exts = column(m_page->proxy(), DirectoryModel::ExtColumn);
    for (qsizetype i = 1; i < exts.size(); ++i)
        QVERIFY2(!numberBefore(exts[i], exts[i - 1]),
                 qPrintable(exts[i - 1] + u" listed before "_s + exts[i]));
    QCOMPARE(exts.filter(QRegularExpression(u"^(7|99|100|1000|55A)$"_s)),
             (QStringList{u"7"_s, u"99"_s, u"100"_s, u"1000"_s, u"55A"_s}));

    // A click on a heading sorts by that column; a click on Ext goes back to the numbers.
    QHeaderView *header = m_page->list()->header();
    const auto clickHeading = [header](int section) {
        const QPoint at(header->sectionViewportPosition(section) + header->sectionSize(section) / 2,
                        header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, at);
    };
    clickHeading(DirectoryModel::NameColumn);
    const QStringList names = column(m_page->proxy(), DirectoryModel::NameColumn);
    for (qsizetype i = 1; i < names.size(); ++i)
        QVERIFY(names[i - 1].compare(names[i], Qt::CaseInsensitive) <= 0);
    clickHeading(DirectoryModel::ExtColumn);
    QCOMPARE(header->sortIndicatorSection(), int(DirectoryModel::ExtColumn));
    QCOMPARE(header->sortIndicatorOrder(), Qt::AscendingOrder);
    QCOMPARE(column(m_page->proxy(), DirectoryModel::ExtColumn), exts);

    // A device saved by its window changes in place and takes its new place in the order.
    QVERIFY(m_page->updateDevice(alice, record({{u"Ext"_s, u"5"_s}, {u"Name"_s, u"Alice Brown"_s}})));
    const QStringList moved = column(m_page->proxy(), DirectoryModel::ExtColumn);
    QVERIFY(!moved.contains(u"99"_s));
    QVERIFY(moved.indexOf(u"5"_s) >= 0 && moved.indexOf(u"5"_s) < moved.indexOf(u"7"_s));
    QCOMPARE(m_page->model()->index(row, DirectoryModel::NameColumn).data().toString(), u"Alice Brown"_s);
    QCOMPARE(m_page->model()->index(row, DirectoryModel::DeptColumn).data().toString(), u"Sales"_s);
    QVERIFY(!m_page->updateDevice(u"999999"_s, record({{u"Name"_s, u"Nobody"_s}})));

    // An empty list reply empties the list; the next reply fills it again.
    m_page->fill(u"{Ref=MAIN-EXTS}{ListCount=0}"_s);
    QCOMPARE(m_page->proxy()->rowCount(), 0);
    QVERIFY(!m_fixture->fetch(u"MAIN-EXTS"_s).isEmpty());
    QCOMPARE(m_page->proxy()->rowCount(), listCount);
}

void DirectoryTest::quickFilterNarrowsByNumberNameAndDepartment_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("among"); // devices that must stay in the list
    QTest::newRow("number") << u"100"_s << QStringList{u"100"_s, u"1000"_s};
    QTest::newRow("name, any case, as it is typed") << u"bob jo"_s << QStringList{u"100"_s};
    QTest::newRow("department") << u"FACILITIES"_s << QStringList{u"7"_s};
}

void DirectoryTest::quickFilterNarrowsByNumberNameAndDepartment()
{
    QFETCH(QString, typed);
    QFETCH(QStringList, among);
    QLineEdit *filter = m_page->findChild<QLineEdit *>(u"DirFilter"_s);
    QVERIFY(filter);
    QVERIFY(!filter->placeholderText().isEmpty());
    const QAbstractItemModel *proxy = m_page->proxy();
    const int all = proxy->rowCount();

    QTest::keyClicks(filter, typed);
    QVERIFY(proxy->rowCount() < all);
    for (const QString &ext : among)
        QVERIFY2(column(proxy, DirectoryModel::ExtColumn).contains(ext), qPrintable(ext));
    // Every row left holds the text in its number, name or department.
    for (int row = 0; row < proxy->rowCount(); ++row) {
        const QModelIndex index = proxy->index(row, 0);
        QStringList texts;
        for (int column : {DirectoryModel::ExtColumn, DirectoryModel::NameColumn, DirectoryModel::DeptColumn})
            texts << index.siblingAtColumn(column).data().toString();
        QVERIFY2(texts.join(u'\n').contains(typed, Qt::CaseInsensitive), qPrintable(texts.join(u'|')));
    }

    QTest::keyClick(filter, Qt::Key_Escape);
    QVERIFY(filter->text().isEmpty());
    QCOMPARE(proxy->rowCount(), all);
}

void DirectoryTest::editOpensTheSelectedDevicesAndWarnsAboveOneHundredFifty()
{
    QPushButton *add = m_page->findChild<QPushButton *>(u"DButton_0"_s);
    QPushButton *edit = m_page->findChild<QPushButton *>(u"DButton_1"_s);
    QPushButton *remove = m_page->findChild<QPushButton *>(u"DButton_2"_s);
    QVERIFY(add && edit && remove);

    // Without a device window there is nothing to open.
    QVERIFY(!add->isEnabled());
    QCOMPARE(add->toolTip(), u"This window is not available in this version."_s);
    m_fixture->windows.setOpener(u"Exts"_s, [this](const QString &ids, QWidget *) {
        m_opened.append(ids);
        return WindowResult::cancelled();
    });
    QVERIFY(add->isEnabled());
    QVERIFY(add->toolTip().isEmpty());
    QVERIFY(!edit->isEnabled());
    QVERIFY(!remove->isEnabled());

    add->setFocus();
    QTest::keyClick(add, Qt::Key_Return); // Enter presses the button that has the focus
    QCOMPARE(m_opened, QStringList{u"-1"_s});

    answerMessageBoxes(QMessageBox::No, m_asked);
    QTest::keyClicks(m_page->filterEdit(), bulkDept);
    QCOMPARE(m_page->proxy()->rowCount(), bulkCount);
    QStringList idsInListOrder;
    for (int i = 0; i < bulkCount; ++i)
        idsInListOrder.append(idOfExt(QString::number(6000 + i)));

    // 150 devices open together without a question, in list order.
    m_opened.clear();
    selectRows(0, 149);
    QVERIFY(edit->isEnabled() && remove->isEnabled());
    QTest::mouseClick(edit, Qt::LeftButton);
    QVERIFY(m_asked.isEmpty());
    QCOMPARE(m_opened, QStringList{idsInListOrder.mid(0, 150).join(u',')});

    // 151 ask first; No opens nothing, Yes opens all of them.
    m_opened.clear();
    selectRows(0, 150);
    QTest::mouseClick(edit, Qt::LeftButton);
    QCOMPARE(m_asked,
             QStringList{u"It is recommended that you do not edit more than 150 extensions at a time.  "
                         u"Are you sure you wish to continue?"_s});
    QVERIFY(m_opened.isEmpty());
    answerMessageBoxes(QMessageBox::Yes, m_asked);
    QTest::mouseClick(edit, Qt::LeftButton);
    QCOMPARE(m_opened, QStringList{idsInListOrder.mid(0, 151).join(u',')});

    // A double-click and the Enter key edit the device under the cursor.
    m_opened.clear();
    QTreeView *list = m_page->list();
    const QRect third = list->visualRect(m_page->proxy()->index(2, DirectoryModel::NameColumn));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, third.center());
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, third.center());
    QCOMPARE(m_opened, QStringList{idsInListOrder[2]});
    QTest::keyClick(list, Qt::Key_Return);
    QCOMPARE(m_opened, (QStringList{idsInListOrder[2], idsInListOrder[2]}));

    // The window going away takes the buttons with it.
    m_fixture->windows.setOpener(u"Exts"_s, {});
    QVERIFY(!edit->isEnabled());
    QVERIFY(remove->isEnabled());
}

void DirectoryTest::removeDeletesTheSelectedDevicesOnlyAfterYes()
{
    const RecordingRelay &relay = m_fixture->relay;
    QPushButton *remove = m_page->findChild<QPushButton *>(u"DButton_2"_s);
    const QStringList leavers{idOfExt(u"7100"_s), idOfExt(u"7101"_s), idOfExt(u"7102"_s)};
    QTest::keyClicks(m_page->filterEdit(), u"GoneTest"_s);
    QCOMPARE(m_page->proxy()->rowCount(), 4);
    selectRows(0, 2);
    QCOMPARE(m_page->selectedIds(), leavers);

    // No: nothing reaches the server; the next frame it sees is the list read that follows.
    answerMessageBoxes(QMessageBox::No, m_asked);
    qsizetype mark = relay.commands().size();
    QTest::mouseClick(remove, Qt::LeftButton);
    QCOMPARE(m_asked, QStringList{u"Are you sure you want to remove the selected users?"_s});
    QCOMPARE(m_page->proxy()->rowCount(), 4);
    QString reply = m_fixture->fetch(u"MAIN-EXTS"_s);
    QCOMPARE(relay.commands().size(), mark + 1);
    QVERIFY(relay.commands().at(mark).startsWith(u"{Cmd=GetList}{Table=Exts}{Ref=MAIN-EXTS}"_s));
    for (const QString &id : leavers)
        QVERIFY(ServerFixture::replyIds(reply).contains(id));

    // Yes: one delete with every id asked about, though a list reply in another order refilled the
    // list while the question was open; the rows leave at once, and the list is read again.
    answerMessageBoxes(QMessageBox::Yes, m_asked, [this, reply] { m_page->fill(reversedReply(reply)); });
    selectRows(0, 2);
    mark = relay.commands().size();
    const int repliesBefore = m_fixture->replyCount(u"EXTS"_s);
    QTest::mouseClick(remove, Qt::LeftButton);
    QCOMPARE(m_page->proxy()->rowCount(), 1);
    QVERIFY(m_fixture->waitForReply(u"EXTS"_s, repliesBefore));
    QCOMPARE(relay.commands().size(), mark + 2);
    QCOMPARE(
        relay.commands().at(mark),
        u"{Cmd=Delete}{Table=Exts}{Id(S%1)=%2}"_s.arg(leavers.join(u',').size()).arg(leavers.join(u',')));
    QVERIFY(relay.commands().at(mark + 1).startsWith(u"{Cmd=GetList}{Table=Exts}{Ref=MAIN-EXTS}"_s));
    reply = m_fixture->lastReply(u"EXTS"_s);
    for (const QString &id : leavers) {
        QVERIFY(!ServerFixture::replyIds(reply).contains(id));
        QCOMPARE(m_page->model()->rowOfId(id), -1);
    }
    QCOMPARE(m_page->proxy()->rowCount(), 1);

    // The Delete key removes as the button does.
    answerMessageBoxes(QMessageBox::Yes, m_asked);
    const QString last = idOfExt(u"7103"_s);
    selectRows(0, 0);
    mark = relay.commands().size();
    const int before = m_fixture->replyCount(u"EXTS"_s);
    QTest::keyClick(m_page->list(), Qt::Key_Delete);
    QVERIFY(m_fixture->waitForReply(u"EXTS"_s, before));
    QCOMPARE(relay.commands().at(mark), u"{Cmd=Delete}{Table=Exts}{Id(S%1)=%2}"_s.arg(last.size()).arg(last));
    QVERIFY(!ServerFixture::replyIds(m_fixture->lastReply(u"EXTS"_s)).contains(last));
    QCOMPARE(m_page->proxy()->rowCount(), 0);
    QVERIFY(!remove->isEnabled());
}

QTEST_MAIN(DirectoryTest)
#include "tst_directory.moc"
