// SPDX-License-Identifier: GPL-3.0-or-later
// The campaign window against quillserverd: copies, the contacts database's names and proposals,
// a database that cannot be read here, and a campaign built in the window that reads back identical
// after a restart of the server.
#include "frmCampaign.h"
#include "isolation.h"
#include "maintool.h"
#include "modalwindow.h"
#include "recordlist.h"
#include "serverfixture.h"
#include "windows.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

namespace {

const QString northwind = QStringLiteral(QUILL_TEST_DATA_DIR "/Northwind.mdb");

template <typename T> T *child(const QWidget &window, const QString &name)
{
    auto *found = window.findChild<T *>(name);
    if (!found)
        qFatal("no control %s", qPrintable(name));
    return found;
}

QString combo(const QWidget &window, const QString &name)
{
    return child<QComboBox>(window, name)->currentText();
}

// The texts of a tree's nodes, depth first, each indented by its depth.
QStringList outline(const QTreeWidget *tree)
{
    QStringList lines;
    const std::function<void(const QTreeWidgetItem *, int)> walk = [&](const QTreeWidgetItem *item,
                                                                       int depth) {
        lines << QString(depth * 2, u' ') + item->text(0);
        for (int child = 0; child < item->childCount(); ++child)
            walk(item->child(child), depth + 1);
    };
    for (int top = 0; top < tree->topLevelItemCount(); ++top)
        walk(tree->topLevelItem(top), 0);
    return lines;
}

// Answers the choice/result window that the next button opens: caption, kind and colour.
void answerProperties(const QString &caption, const QString &kind, const QString &color = {})
{
    answerModalWindow([=](QWidget *window) {
        window->findChild<QLineEdit *>(u"cName"_s)->setText(caption);
        if (!kind.isEmpty()) {
            auto *type = window->findChild<QComboBox *>(u"cType"_s);
            type->setCurrentIndex(type->findText(kind));
        }
        if (!color.isEmpty()) {
            auto *colors = window->findChild<QComboBox *>(u"cColor"_s);
            colors->setCurrentIndex(colors->findText(color));
        }
        if (kind == u"Postpone"_s)
            window->findChild<QLineEdit *>(u"Delay"_s)->setText(u"2"_s);
        QTest::mouseClick(window->findChild<QPushButton *>(u"OK"_s), Qt::LeftButton);
    });
}

} // namespace

class CampaignTest : public QObject
{
    Q_OBJECT
    std::unique_ptr<ServerFixture> m_fixture;
    TestIsolation m_scratch;

    QString lastCommand() const
    {
        return m_fixture->relay.commands().value(m_fixture->relay.commands().size() - 1);
    }
    QString campaignId(const QString &name)
    {
        for (const QString &row : readList(m_fixture->fetch(u"MAIN-CAMPAIGNS"_s))) {
            if (getText(row, u"Name"_s) == name)
                return getText(row, u"Id"_s);
        }
        return {};
    }
    static void press(const QWidget &window, const QString &name)
    {
        QTest::mouseClick(child<QPushButton>(window, name), Qt::LeftButton);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
        m_fixture = std::make_unique<ServerFixture>();
        QString error;
        QVERIFY2(m_fixture->start(&error), qPrintable(error));
        if (!QFile::exists(northwind))
            QSKIP("the test databases are not beside the checkout");
    }
    void cleanupTestCase() { m_fixture.reset(); }

    // Choosing the database lists its tables and queries without the system ones; choosing a
    // table names the campaign after it and proposes the columns.
    void theDatabaseListsItsTablesAndProposesColumns()
    {
        frmCampaign window(m_fixture->link);
        child<QLineEdit>(window, u"Tid"_s)->setText(u"-1"_s);
        QTRY_VERIFY(window.isLoaded());
        frmCampaign::chooseDatabaseFile() = [](QWidget *) { return northwind; };
        press(window, u"OSel"_s);
        frmCampaign::chooseDatabaseFile() = {};
        QTRY_VERIFY(!window.isListing() && child<QComboBox>(window, u"oTable"_s)->count() > 0);
        auto *tables = child<QComboBox>(window, u"oTable"_s);
        QCOMPARE(tables->count(), 8 + 21);
        QStringList names;
        for (int entry = 0; entry < tables->count(); ++entry)
            names << tables->itemText(entry);
        QVERIFY(names.contains(u"Customers"_s) && names.contains(u"Order Details"_s));
        QVERIFY(std::none_of(names.begin(), names.end(), [](const QString &name) {
            return name.startsWith(u"MSys"_s, Qt::CaseInsensitive) || name.startsWith(u'~');
        }));

        tables->setCurrentIndex(tables->findText(u"Customers"_s));
        emit tables->activated(tables->currentIndex());
        QTRY_COMPARE(combo(window, u"oTel"_s), u"Phone"_s);
        QCOMPARE(child<QLineEdit>(window, u"oCampaign"_s)->text(), u"Customers"_s);
        QCOMPARE(combo(window, u"oId"_s), u"CustomerID"_s);
        QCOMPARE(combo(window, u"oName"_s), u"CompanyName"_s);
        QCOMPARE(child<QComboBox>(window, u"oNotes"_s)->currentIndex(), -1);
    }

    // A campaign built in the window: a menu tree three levels deep and a result of each kind is
    // stored depth first, and after a restart of the server it reads back identical, with the
    // notes column proposed again rather than read.
    void aCampaignBuiltHereReadsBackIdentical()
    {
        QString id;
        QStringList menus;
        QStringList results;
        {
            frmCampaign window(m_fixture->link);
            child<QLineEdit>(window, u"Tid"_s)->setText(u"-1"_s);
            QTRY_VERIFY(window.isLoaded());
            child<QLineEdit>(window, u"oSource"_s)->setText(northwind);
            window.oSource_Change();
            QTRY_VERIFY(!window.isListing() && child<QComboBox>(window, u"oTable"_s)->count() > 0);
            auto *tables = child<QComboBox>(window, u"oTable"_s);
            tables->setCurrentIndex(tables->findText(u"Employees"_s));
            emit tables->activated(tables->currentIndex());
            QTRY_COMPARE(combo(window, u"oNotes"_s), u"Notes"_s);
            child<QComboBox>(window, u"oNotes"_s)->setCurrentText(u"Address"_s);
            child<QLineEdit>(window, u"oCampaign"_s)->setText(u"Staff survey of the year 2026"_s);
            child<QLineEdit>(window, u"oSecs"_s)->setText(u"25"_s);

            auto *tree = child<QTreeWidget>(window, u"Menus"_s);
            const auto addUnder = [&](QTreeWidgetItem *parent, const QString &caption) {
                tree->setCurrentItem(parent);
                answerProperties(caption, u"Menu"_s, u"Green"_s);
                press(window, u"BMenu_0"_s);
            };
            QTreeWidgetItem *root = tree->topLevelItem(0);
            addUnder(root, u"Interested"_s);
            addUnder(root, u"Not interested"_s);
            addUnder(root->child(0), u"Send brochure"_s);
            addUnder(root->child(0)->child(0), u"By post"_s);
            addUnder(root->child(0)->child(0), u"By e-mail"_s);
            for (const auto &[caption, kind] : {std::pair{u"Moved on"_s, u"Move"_s},
                                                {u"Call back"_s, u"Postpone"_s},
                                                {u"Done"_s, u"Remove"_s}}) {
                answerProperties(caption, kind, u"Red"_s);
                press(window, u"BResults_0"_s);
            }
            menus = outline(tree);
            results = outline(child<QTreeWidget>(window, u"Results"_s));
            QCOMPARE(menus, (QStringList{u"Initial script"_s, u"  Interested"_s, u"    Send brochure"_s,
                                         u"      By post"_s, u"      By e-mail"_s, u"  Not interested"_s}));
            press(window, u"OK"_s);
            QTRY_VERIFY(lastCommand().startsWith(u"{Cmd=SetFields}{Table=Campaigns}"_s));
            const QString options = getText(getText(lastCommand(), u"Fields"_s), u"Options"_s);
            const QString scripts = getText(options, u"Scripts"_s);
            const auto node = [](const QString &caption) {
                QString tag;
                AddVar(tag, u"Caption"_s, caption);
                AddVar(tag, u"Type"_s, u"Menu"_s);
                AddVar(tag, u"Color"_s, u"Green"_s);
                return tag;
            };
            QString expected;
            for (const auto &[path, caption] : {std::pair{u"Root.1"_s, u"Interested"_s},
                                                {u"Root.1.1"_s, u"Send brochure"_s},
                                                {u"Root.1.1.1"_s, u"By post"_s},
                                                {u"Root.1.1.2"_s, u"By e-mail"_s},
                                                {u"Root.2"_s, u"Not interested"_s}})
                AddVar(expected, path, node(caption), true);
            QCOMPARE(scripts, expected);
            QString stored;
            for (const auto &[n, caption, kind, extra] : {std::tuple{1, u"Moved on"_s, u"Move"_s, QString()},
                                                          {2, u"Call back"_s, u"Postpone"_s, u"2"_s},
                                                          {3, u"Done"_s, u"Remove"_s, QString()}}) {
                QString tag;
                AddVar(tag, u"Caption"_s, caption);
                AddVar(tag, u"Type"_s, kind);
                AddVar(tag, u"Delay"_s, extra);
                AddVar(tag, u"Color"_s, u"Red"_s);
                AddVar(stored, u"Result"_s + QString::number(n), tag, true);
            }
            QCOMPARE(getText(options, u"Results"_s), stored);
            QCOMPARE(getText(getText(lastCommand(), u"Fields"_s), u"Name"_s), u"Staff survey of the "_s);
            QCOMPARE(getText(options, u"fldNotes"_s), u"Address"_s);
            id = campaignId(u"Staff survey of the "_s);
            QVERIFY(!id.isEmpty());
        }

        QVERIFY(m_fixture->restartServer());
        frmCampaign window(m_fixture->link);
        child<QLineEdit>(window, u"Tid"_s)->setText(id);
        QTRY_COMPARE(child<QLineEdit>(window, u"oCampaign"_s)->text(), u"Staff survey of the "_s);
        QTRY_VERIFY(!window.isListing() && child<QComboBox>(window, u"oId"_s)->count() > 1);
        QCOMPARE(outline(child<QTreeWidget>(window, u"Menus"_s)), menus);
        QCOMPARE(outline(child<QTreeWidget>(window, u"Results"_s)), results);
        QCOMPARE(combo(window, u"oTable"_s), u"Employees"_s);
        QCOMPARE(child<QLineEdit>(window, u"oSecs"_s)->text(), u"25"_s);
        QCOMPARE(combo(window, u"oNotes"_s), u"Notes"_s); // the proposal, not the stored "Address"
    }

    // A copy reads the original and is stored as a new campaign; a database that cannot be read
    // here says so and keeps the stored table and columns.
    void aCopyOfACampaignWhoseDatabaseIsElsewhere()
    {
        QString options;
        AddVar(options, u"Results"_s, QString(), true);
        AddVar(options, u"Database"_s, u"C:\\Campaigns\\Lapsed.mdb"_s);
        AddVar(options, u"ODBCTable"_s, u"qryLapsed"_s);
        AddVar(options, u"fldId"_s, u"AccountKey"_s);
        AddVar(options, u"fldTel"_s, u"TelNo"_s);
        AddVar(options, u"Scripts"_s, QString(), true);
        QString record;
        AddVar(record, u"Name"_s, u"Lapsed"_s);
        AddVar(record, u"Options"_s, options, true);
        m_fixture->create(u"Campaigns"_s, record);
        const QString id = campaignId(u"Lapsed"_s);

        frmCampaign window(m_fixture->link);
        const qsizetype before = m_fixture->relay.commands().size();
        child<QLineEdit>(window, u"Tid"_s)->setText(u"*"_s + id);
        QTRY_COMPARE(child<QLineEdit>(window, u"oCampaign"_s)->text(), u"<New campaign>"_s);
        QCOMPARE(m_fixture->relay.commands().value(before),
                 u"{Cmd=GetFields}{Table=Campaigns}{Fields=Name,Options}{Ref=CAMPAIGN-CAMPAIGN}{Id(S%1)=%2}"_s
                     .arg(id.size())
                     .arg(id));
        QTRY_VERIFY(!window.isListing());
        QVERIFY(child<QLabel>(window, u"Tip"_s)->text().contains(u"C:\\Campaigns\\Lapsed.mdb"_s));
        QCOMPARE(combo(window, u"oTable"_s), u"qryLapsed"_s);
        QCOMPARE(combo(window, u"oTel"_s), u"TelNo"_s);
        child<QLineEdit>(window, u"oCampaign"_s)->setText(u"Lapsed again"_s);
        press(window, u"OK"_s);
        QString copied;
        AddVar(copied, u"Name"_s, u"Lapsed again"_s);
        AddVar(copied, u"Options"_s, options, true);
        QString command = u"{Cmd=SetFields}{Table=Campaigns}"_s;
        AddVar(command, u"Fields"_s, copied);
        AddVar(command, u"Id"_s, u"-1"_s);
        QTRY_COMPARE(lastCommand(), command);
        QCOMPARE(window.outcome().outcome, WindowResult::SavedNew);
    }
    // The campaign list opens the window: Copy saves a new campaign and the list asks again; Edit
    // renames in place.
    void theCampaignListCopiesAndEdits()
    {
        MainTool tool(m_fixture->relay.url());
        registerWindows(tool.window, tool.link);
        QVERIFY(tool.waitLoaded());
        tool.tabs()->setCurrentIndex(frmMain::Campaigns);
        RecordList *list = tool.window.recordList(RecordKind::Campaigns);
        const int listed = list->list()->topLevelItemCount();
        QVERIFY(listed > 0);
        list->list()->setCurrentItem(list->list()->topLevelItem(0));
        answerModalWindow([](QWidget *window) {
            auto *name = window->findChild<QLineEdit *>(u"oCampaign"_s);
            QTRY_COMPARE(name->text(), u"<New campaign>"_s);
            name->setText(u"Copied campaign"_s);
            press(*window, u"OK"_s);
        });
        QTest::mouseClick(list->button(RecordList::CopyButton), Qt::LeftButton);
        QTRY_COMPARE(list->list()->topLevelItemCount(), listed + 1);
        QVERIFY(list->names().contains(u"Copied campaign"_s));

        QTreeWidgetItem *first = list->list()->topLevelItem(0);
        list->list()->setCurrentItem(first);
        answerModalWindow([](QWidget *window) {
            auto *name = window->findChild<QLineEdit *>(u"oCampaign"_s);
            QTRY_VERIFY(!name->text().isEmpty());
            name->setText(u"Renamed campaign"_s);
            press(*window, u"OK"_s);
        });
        QTest::mouseClick(list->button(RecordList::EditButton), Qt::LeftButton);
        QCOMPARE(first->text(0), u"Renamed campaign"_s);
        QCOMPARE(list->list()->topLevelItemCount(), listed + 1);
    }
};

QTEST_MAIN(CampaignTest)
#include "tst_campaign.moc"
