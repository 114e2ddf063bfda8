// SPDX-License-Identifier: GPL-3.0-or-later
// The directory opens the device window for Add, Edit and a double-click, and shows what it saved:
// new devices and several edited ones by asking for the list again, one edited device in place.
#include "directorymodel.h"
#include "directorypage.h"
#include "maintool.h"
#include "modalwindow.h"
#include "recordlist.h"
#include "serverfixture.h"
#include "windows.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <QTreeView>

namespace {

const QString storeDevice = u"{Cmd=SetFields}{Table=Exts}"_s;
const QString askList = u"{Cmd=GetList}{Table=Exts}{Ref=MAIN-EXTS}"_s;

QStringList numbers(const QString &first, int count)
{
    QStringList list;
    for (int n = 0; n < count; ++n)
        list << first + QString::number(n);
    return list;
}

} // namespace

class ConfigListTest : public QObject
{
    Q_OBJECT
    std::unique_ptr<ServerFixture> m_fixture;
    std::unique_ptr<MainTool> m_tool;
    QTreeView *m_list = nullptr;

    QStringList sentSince(qsizetype before) const { return m_fixture->relay.commands().mid(before); }
    qsizetype sentCount() const { return m_fixture->relay.commands().size(); }
    static qsizetype countStarting(const QStringList &commands, const QString &start)
    {
        return std::count_if(commands.begin(), commands.end(),
                             [&](const QString &c) { return c.startsWith(start); });
    }
    QPushButton *button(int index) const { return m_tool->window.directoryPage()->button(index); }
    QString cell(int row, int column) const { return m_list->model()->index(row, column).data().toString(); }
    int rowOf(const QString &ext) const
    {
        for (int row = 0; row < m_list->model()->rowCount(); ++row) {
            if (cell(row, DirectoryModel::ExtColumn) == ext)
                return row;
        }
        return -1;
    }
    QStringList listed(const QStringList &exts) const
    {
        QStringList found;
        for (const QString &ext : exts) {
            if (rowOf(ext) >= 0)
                found << ext;
        }
        return found;
    }
    // A new device's window once its defaults are shown.
    static void waitForDefaults(QWidget *window)
    {
        QVERIFY(
            QTest::qWaitFor([&] { return window->findChild<QCheckBox *>(u"chk_2"_s)->isChecked(); }, 20000));
    }
    static void click(QWidget *window, const QString &name)
    {
        QTest::mouseClick(window->findChild<QPushButton *>(name), Qt::LeftButton);
    }

private slots:
    void initTestCase()
    {
        m_fixture = std::make_unique<ServerFixture>();
        QString error;
        QVERIFY2(m_fixture->start(&error), qPrintable(error));
        m_tool = std::make_unique<MainTool>(m_fixture->relay.url());
        registerWindows(m_tool->window, m_tool->link);
        QVERIFY(m_tool->waitLoaded());
        m_tool->tabs()->setCurrentIndex(frmMain::Directory);
        m_list = m_tool->window.directoryPage()->findChild<QTreeView *>(u"List"_s);
        QVERIFY(m_list->model()->rowCount() >= 3);
    }
    void cleanupTestCase()
    {
        m_tool.reset();
        m_fixture.reset();
    }

    // Add stays open after OK; Cancel then makes the directory ask again, and the whole range is
    // listed. Esc while a range is being sent stops it after the device being sent, and what was
    // created is listed.
    void newDevicesAreListedAfterTheWindowCloses()
    {
        const QStringList range{u"L10"_s, u"L11"_s, u"L12"_s, u"L13"_s, u"L14"_s, u"L15"_s,
                                u"L16"_s, u"L17"_s, u"L18"_s, u"L19"_s, u"L20"_s};
        QCOMPARE(listed(range), QStringList());
        bool stayedOpen = false;
        answerModalWindow([&](QWidget *window) {
            waitForDefaults(window);
            QTest::keyClicks(window->findChild<QLineEdit *>(u"Ext"_s), u"L10-L20"_s);
            click(window, u"OK"_s);
            stayedOpen = window->isVisible() && window->findChild<QLineEdit *>(u"Ext"_s)->text().isEmpty();
            click(window, u"Cancel"_s);
        });
        qsizetype before = sentCount();
        QTest::mouseClick(button(0), Qt::LeftButton);
        QVERIFY(stayedOpen);
        QTRY_COMPARE(listed(range), range);
        QStringList sent = sentSince(before);
        QCOMPARE(countStarting(sent, storeDevice), 11);
        QVERIFY(sent.constLast().startsWith(askList));

        const QStringList stopped = numbers(u"L3"_s, 10);
        answerModalWindow([](QWidget *window) {
            waitForDefaults(window);
            QTest::keyClicks(window->findChild<QLineEdit *>(u"Ext"_s), u"L30-L39"_s);
            // Pressed as soon as the window lets the user in, after the first device was sent.
            QTimer::singleShot(0, window, [window] { QTest::keyClick(window, Qt::Key_Escape); });
            click(window, u"OK"_s);
        });
        before = sentCount();
        QTest::mouseClick(button(0), Qt::LeftButton);
        QVERIFY(!QApplication::activeModalWidget());
        QTRY_COMPARE(listed(stopped), QStringList{u"L30"_s});
        sent = sentSince(before);
        QCOMPARE(countStarting(sent, storeDevice), 1);
        QVERIFY(sent.constLast().startsWith(askList));
    }

    // One edited device changes in place without asking for the list; a double-click opens it too,
    // and Cancel without a save asks for nothing.
    void oneEditedDeviceIsUpdatedInPlace()
    {
        const QString ext = cell(0, DirectoryModel::ExtColumn);
        m_list->setCurrentIndex(m_list->model()->index(0, 0));
        answerModalWindow([](QWidget *window) {
            QTRY_VERIFY(!window->findChild<QLineEdit *>(u"Ext"_s)->text().isEmpty()); // the row has arrived
            window->findChild<QLineEdit *>(u"Nam"_s)->setText(u"Renamed desk"_s);
            click(window, u"OK"_s);
        });
        const qsizetype before = sentCount();
        QTest::mouseClick(button(1), Qt::LeftButton);
        QCOMPARE(cell(rowOf(ext), DirectoryModel::NameColumn), u"Renamed desk"_s);
        QCOMPARE(cell(rowOf(ext), DirectoryModel::ExtColumn), ext);

        answerModalWindow([](QWidget *window) {
            QTRY_VERIFY(!window->findChild<QLineEdit *>(u"Ext"_s)->text().isEmpty());
            click(window, u"Cancel"_s);
        });
        const QRect rect = m_list->visualRect(m_list->model()->index(rowOf(ext), 0));
        QTest::mouseClick(m_list->viewport(), Qt::LeftButton, {}, rect.center());
        QTest::mouseDClick(m_list->viewport(), Qt::LeftButton, {}, rect.center());
        // The second read is the last command: nothing asked for the list in between or after.
        QTRY_COMPARE(countStarting(sentSince(before), u"{Cmd=GetFields}{Table=Exts}"_s), 2);
        const QStringList sent = sentSince(before);
        QCOMPARE(countStarting(sent, storeDevice), 1);
        QCOMPARE(countStarting(sent, askList), 0);
        QVERIFY(sent.constLast().startsWith(u"{Cmd=GetFields}{Table=Exts}"_s));
    }

    // Three devices saved at once: the directory asks for its whole list again.
    void severalEditedDevicesReloadTheList()
    {
        m_list->clearSelection();
        for (int row = 0; row < 3; ++row)
            m_list->selectionModel()->select(m_list->model()->index(row, 0),
                                             QItemSelectionModel::Select | QItemSelectionModel::Rows);
        answerModalWindow([](QWidget *window) {
            QTRY_VERIFY(window->windowTitle().contains(u"3 entries"_s)); // the rows have arrived
            click(window, u"OK"_s);
        });
        const qsizetype before = sentCount();
        QTest::mouseClick(button(1), Qt::LeftButton);
        QTRY_VERIFY(countStarting(sentSince(before), askList) == 1);
        const QStringList sent = sentSince(before);
        QCOMPARE(countStarting(sent, storeDevice), 1);
        QVERIFY(getText(sent.at(sent.size() - 2), u"Id"_s).count(u',') == 2);
        QVERIFY(sent.constLast().startsWith(askList));
    }
    // The device window takes its address books and campaigns from the main window's lists: a
    // book's box sits in the list's order, and a campaign chosen in the real choice dialog comes
    // back through the dispatcher and is stored with the agent.
    void anAgentsBooksAndCampaignsComeFromTheMainLists()
    {
        const QStringList books = m_tool->window.recordList(RecordKind::AddressBooks)->names();
        const QStringList campaigns = m_tool->window.recordList(RecordKind::Campaigns)->names();
        QVERIFY(books.size() >= 2 && campaigns.size() >= 2);
        m_list->setCurrentIndex(m_list->model()->index(rowOf(u"801"_s), 0));
        QStringList shownBooks;
        QStringList offered;
        answerModalWindow([&](QWidget *window) {
            QTRY_COMPARE(window->findChild<QLineEdit *>(u"Ext"_s)->text(), u"801"_s);
            for (int row = 0; row < books.size(); ++row)
                shownBooks << window->findChild<QCheckBox *>(u"pCheck_"_s + QString::number(row + 1))->text();
            window->findChild<QTabWidget *>(u"Tabs"_s)->setCurrentIndex(6);
            // The choice dialog opens over the device window: pick the last campaign there.
            const std::function<void()> choose = [&, window] {
                QWidget *combo = QApplication::activeModalWidget();
                if (!combo || combo == window) {
                    QTimer::singleShot(10, choose);
                    return;
                }
                auto *choices = combo->findChild<QListWidget *>(u"List"_s);
                for (int row = 0; row < choices->count(); ++row)
                    offered << choices->item(row)->text();
                choices->setCurrentRow(choices->count() - 1);
                click(combo, u"OK"_s);
            };
            QTimer::singleShot(10, choose);
            click(window, u"cProps_0"_s);
            QTRY_VERIFY(window->findChild<QListWidget *>(u"Campaigns"_s)
                            ->findItems(campaigns.constLast(), Qt::MatchExactly)
                            .size() == 1);
            click(window, u"OK"_s);
        });
        const qsizetype before = sentCount();
        QTest::mouseClick(button(1), Qt::LeftButton);
        QCOMPARE(shownBooks, books.mid(0, shownBooks.size()));
        QCOMPARE(offered, campaigns);
        QTRY_COMPARE(countStarting(sentSince(before), storeDevice), 1);
        const QString fields = getText(sentSince(before).constLast(), u"Fields"_s);
        QVERIFY2(getText(fields, u"Campaigns"_s).split(u',').contains(campaigns.constLast()),
                 qPrintable(fields));
    }
};

QTEST_MAIN(ConfigListTest)
#include "tst_configlist.moc"
