// SPDX-License-Identifier: GPL-3.0-or-later
// The address-book, campaign, routing and script lists against quillserverd: filling, opening
// the property windows, removing records, and the priority order of routing conditions and books.
#include "msgboxanswers.h"
#include "recordlist.h"
#include "serverfixture.h"
#include "translatewidgets.h"

#include <QPushButton>
#include <QTreeWidget>

#include <memory>

namespace {
// The command that stores a record's place in its list, byte for byte.
QString setOrder(const QString &table, const QString &id, qsizetype position)
{
    return u"{Cmd=SetField}{Table=%1}{Id(N%2)=%3}{Field(S5)=Order}{Value(N%4)=%5}"_s.arg(table)
        .arg(id.size())
        .arg(id)
        .arg(QString::number(position).size())
        .arg(position);
}
} // namespace

class RecordListsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void listsShowTheServerRecords();
    void buttonsFollowTheSelection();
    void routingMoveStoresBothOrdersAndSwapsThem();
    void addressBookMovesWaitForTheMainWindowsSave();
    void removalAsksWithTheKindWordAndDeletesOnlyAfterYes();

private:
    RecordList *listFor(const QString &subRef) const;
    void select(RecordList *list, const QString &name);
    QPushButton *button(RecordList *list, int index) const;

    std::unique_ptr<ServerFixture> m_fixture;
    std::unique_ptr<RecordList> m_books;
    std::unique_ptr<RecordList> m_campaigns;
    std::unique_ptr<RecordList> m_routing;
    std::unique_ptr<RecordList> m_scripts;
    QStringList m_asked;
    QStringList m_opened;
};

void RecordListsTest::initTestCase()
{
    m_fixture = std::make_unique<ServerFixture>();
    QString error;
    QVERIFY2(m_fixture->start(&error), qPrintable(error));
    ServerLink &link = m_fixture->link;
    PropertyWindows &windows = m_fixture->windows;
    m_books = std::make_unique<RecordList>(RecordKind::AddressBooks, link, windows);
    m_campaigns = std::make_unique<RecordList>(RecordKind::Campaigns, link, windows);
    m_routing = std::make_unique<RecordList>(RecordKind::Routing, link, windows);
    m_scripts = std::make_unique<RecordList>(RecordKind::Scripts, link, windows);
    m_fixture->onReply = [this](const QString &subRef, const QString &message) {
        if (RecordList *list = listFor(subRef))
            list->fill(message);
    };

    // Routing conditions keep their place in the list as their order: new ones go at the end.
    const int routes = ServerFixture::replyIds(m_fixture->fetch(u"MAIN-ROUTING"_s)).size();
    const QStringList routeNames{u"Route X"_s, u"Route Y"_s, u"Route Z"_s};
    for (int i = 0; i < routeNames.size(); ++i)
        m_fixture->create(u"Routing"_s,
                          record({{u"Order"_s, routes + i + 1},
                                  {u"Name"_s, routeNames[i]},
                                  {u"Options"_s, record({{u"Destination"_s, u"20%1"_s.arg(i)}})}}));
    for (const QString &name : {u"Book A"_s, u"Book B"_s, u"Book C"_s})
        m_fixture->create(u"AB"_s, record({{u"Type"_s, u"CSV"_s}, {u"Name"_s, name}, {u"Options"_s, u""_s}}));
    for (const QString &name : {u"Spring Drive"_s, u"Summer Drive"_s})
        m_fixture->create(u"Campaigns"_s, record({{u"Name"_s, name}}));
    for (const QString &name : {u"Farewell"_s, u"Greeting"_s})
        m_fixture->create(u"Scripts"_s, record({{u"Name"_s, name}, {u"Script"_s, u"Beep"_s}}));
    for (const QString &key : {u"MAIN-AB"_s, u"MAIN-CAMPAIGNS"_s, u"MAIN-ROUTING"_s, u"MAIN-SCRIPTS"_s})
        QVERIFY2(!m_fixture->fetch(key).isEmpty(), qPrintable(key));
}

void RecordListsTest::cleanup()
{
    setMsgBoxAnswer({});
    for (const QString &table : {u"AB"_s, u"Campaigns"_s, u"Routing"_s, u"Scripts"_s})
        m_fixture->windows.setOpener(table, {});
    m_asked.clear();
    m_opened.clear();
}

RecordList *RecordListsTest::listFor(const QString &subRef) const
{
    const QHash<QString, RecordList *> lists{{u"AB"_s, m_books.get()},
                                             {u"CAMPAIGNS"_s, m_campaigns.get()},
                                             {u"ROUTING"_s, m_routing.get()},
                                             {u"SCRIPTS"_s, m_scripts.get()}};
    return lists.value(subRef);
}

void RecordListsTest::select(RecordList *list, const QString &name)
{
    const QList<QTreeWidgetItem *> found = list->list()->findItems(name, Qt::MatchExactly);
    QVERIFY2(found.size() == 1, qPrintable(name));
    list->list()->setCurrentItem(found.first());
}

QPushButton *RecordListsTest::button(RecordList *list, int index) const
{
    // AButton for Ab, CButton for Campaigns, ...
    const QString prefix = list->list()->objectName().left(1) + u"Button"_s;
    return list->findChild<QPushButton *>(prefix + u'_' + QString::number(index));
}

void RecordListsTest::listsShowTheServerRecords()
{
    struct Expect
    {
        RecordList *list;
        QString objectName;
        QString subRef;
        QString idTag;
    };
    const Expect lists[] = {{m_books.get(), u"Ab"_s, u"AB"_s, u"ABId"_s},
                            {m_campaigns.get(), u"Campaigns"_s, u"CAMPAIGNS"_s, u"CampaignId"_s},
                            {m_routing.get(), u"Routing"_s, u"ROUTING"_s, u"RoutingId"_s},
                            {m_scripts.get(), u"Scripts"_s, u"SCRIPTS"_s, u"ScriptId"_s}};
    for (const Expect &expect : lists) {
        QTreeWidget *tree = expect.list->findChild<QTreeWidget *>(expect.objectName);
        QVERIFY2(tree, qPrintable(expect.objectName));
        const QString reply = m_fixture->lastReply(expect.subRef);
        const QStringList ids = ServerFixture::replyIds(reply);
        QCOMPARE(tree->topLevelItemCount(), ids.size());
        for (int row = 0; row < ids.size(); ++row) {
            const QTreeWidgetItem *item = tree->topLevelItem(row);
            QCOMPARE(item->data(0, RecordList::KeyRole).toString(), u"~"_s + ids[row]);
            QCOMPARE(item->text(0), ServerFixture::fieldOf(reply, ids[row], u"Name"_s));
            QCOMPARE(item->data(0, RecordList::RecordIdRole).toString(),
                     ServerFixture::fieldOf(reply, ids[row], expect.idTag));
        }
        QCOMPARE(expect.list->ids(), ids);
    }
    // The destination lives inside each condition's Options; it shows as the second column.
    QCOMPARE(m_routing->list()->findItems(u"Route Y"_s, Qt::MatchExactly).value(0)->text(1), u"201"_s);
    QCOMPARE(m_books->list()->findItems(u"Book A"_s, Qt::MatchExactly).value(0)->text(1), u"CSV"_s);
    m_books->setSecondColumnText(
        [](const QString &type) { return type == u"CSV"_s ? u"Text file"_s : type; });
    QCOMPARE(m_books->list()->findItems(u"Book A"_s, Qt::MatchExactly).value(0)->text(1), u"Text file"_s);

    // A record saved by its window changes in place.
    const QString y = m_routing->ids().at(m_routing->names().indexOf(u"Route Y"_s));
    QVERIFY(m_routing->updateEntry(y, u"Route Y2"_s, u"299"_s));
    QCOMPARE(m_routing->list()->findItems(u"Route Y2"_s, Qt::MatchExactly).value(0)->text(1), u"299"_s);
    QVERIFY(!m_routing->updateEntry(u"999999"_s, u"Nobody"_s));
    QVERIFY(!m_fixture->fetch(u"MAIN-ROUTING"_s).isEmpty());

    // A list reply without rows empties the list.
    m_scripts->fill(u"{Ref=MAIN-SCRIPTS}{ListCount=0}"_s);
    QCOMPARE(m_scripts->list()->topLevelItemCount(), 0);
    QVERIFY(!m_fixture->fetch(u"MAIN-SCRIPTS"_s).isEmpty());
}

void RecordListsTest::buttonsFollowTheSelection()
{
    QTreeWidget *tree = m_routing->list();
    const int last = tree->topLevelItemCount() - 1;
    QVERIFY(last >= 2);
    tree->clearSelection();
    // Nothing to open the window with: Add, Edit stay off and say why.
    QVERIFY(!button(m_routing.get(), 0)->isEnabled());
    QCOMPARE(button(m_routing.get(), 0)->toolTip(), u"This window is not available in this version."_s);
    m_fixture->windows.setOpener(u"Routing"_s, [this](const QString &id, QWidget *) {
        m_opened.append(id);
        return WindowResult::cancelled();
    });
    QVERIFY(button(m_routing.get(), 0)->isEnabled());
    for (int index = 1; index <= 4; ++index)
        QVERIFY2(!button(m_routing.get(), index)->isEnabled(), qPrintable(QString::number(index)));

    // Edit and Remove for any entry; Up for all but the first, Down for all but the last.
    for (const auto &[row, up, down] :
         {std::tuple{0, false, true}, std::tuple{last, true, false}, std::tuple{1, true, true}}) {
        tree->setCurrentItem(tree->topLevelItem(row));
        QVERIFY(button(m_routing.get(), 1)->isEnabled() && button(m_routing.get(), 2)->isEnabled());
        QCOMPARE(button(m_routing.get(), 3)->isEnabled(), up);
        QCOMPARE(button(m_routing.get(), 4)->isEnabled(), down);
    }

    // Add opens a new record; a double-click and Enter open the entry.
    QTest::mouseClick(button(m_routing.get(), 0), Qt::LeftButton);
    const QString second = m_routing->ids().at(1);
    m_routing->resize(500, 400);
    m_routing->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_routing.get()));
    // A double-click is a click followed by the second press.
    const QPoint entry = tree->visualItemRect(tree->topLevelItem(1)).center();
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, entry);
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, entry);
    QTest::keyClick(tree, Qt::Key_Return);
    QCOMPARE(m_opened, (QStringList{u"-1"_s, second, second}));
    m_routing->hide();

    // Campaigns copy too, on "*" and the id, once their window is there; removing needs none.
    select(m_campaigns.get(), u"Spring Drive"_s);
    const QString campaign = m_campaigns->selectedId();
    QPushButton *copy = button(m_campaigns.get(), RecordList::CopyButton);
    QVERIFY(copy && !copy->isEnabled());
    QVERIFY(button(m_campaigns.get(), 2)->isEnabled());
    m_fixture->windows.setOpener(u"Campaigns"_s, [this](const QString &ids, QWidget *) {
        m_opened.append(ids);
        return WindowResult::cancelled();
    });
    m_opened.clear();
    QTest::mouseClick(copy, Qt::LeftButton);
    QTest::mouseClick(button(m_campaigns.get(), 1), Qt::LeftButton);
    QCOMPARE(m_opened, (QStringList{u"*"_s + campaign, campaign}));
    m_campaigns->list()->clearSelection();
    QVERIFY(!copy->isEnabled());
    QVERIFY(!button(m_campaigns.get(), 1)->isEnabled());
}

void RecordListsTest::routingMoveStoresBothOrdersAndSwapsThem()
{
    const RecordingRelay &relay = m_fixture->relay;
    QStringList names = m_routing->names();
    const int y = int(names.indexOf(u"Route Y"_s)); // 0-based; its position is y + 1
    QVERIFY(y > 0);
    const QString idY = m_routing->ids().at(y);
    const QString idX = m_routing->ids().at(y - 1);

    select(m_routing.get(), u"Route Y"_s);
    qsizetype mark = relay.commands().size();
    QTest::mouseClick(button(m_routing.get(), 3), Qt::LeftButton);
    QString reply = m_fixture->fetch(u"MAIN-ROUTING"_s); // the frame after the move's own
    QCOMPARE(relay.commands().mid(mark, 2),
             (QStringList{setOrder(u"Routing"_s, idY, y), setOrder(u"Routing"_s, idX, y + 1)}));
    QCOMPARE(relay.commands().size(), mark + 3);
    names.swapItemsAt(y - 1, y);
    QCOMPARE(m_routing->names(), names);
    // The server now holds the swapped order: the fresh list shows it and the selection stays.
    QCOMPARE(ServerFixture::replyIds(reply).at(y - 1), idY);
    QCOMPARE(ServerFixture::replyIds(reply).at(y), idX);
    QCOMPARE(m_routing->names(), names);
    QCOMPARE(m_routing->selectedId(), idY);

    // And back down.
    mark = relay.commands().size();
    QTest::mouseClick(button(m_routing.get(), 4), Qt::LeftButton);
    reply = m_fixture->fetch(u"MAIN-ROUTING"_s);
    QCOMPARE(relay.commands().mid(mark, 2),
             (QStringList{setOrder(u"Routing"_s, idY, y + 1), setOrder(u"Routing"_s, idX, y)}));
    QCOMPARE(ServerFixture::replyIds(reply).at(y - 1), idX);
    QCOMPARE(ServerFixture::replyIds(reply).at(y), idY);

    // The first entry cannot go up, nor the last down: nothing is sent.
    m_routing->list()->setCurrentItem(m_routing->list()->topLevelItem(0));
    mark = relay.commands().size();
    m_routing->Button_Click(RecordList::MoveUpButton);
    m_routing->list()->setCurrentItem(
        m_routing->list()->topLevelItem(m_routing->list()->topLevelItemCount() - 1));
    m_routing->Button_Click(RecordList::MoveDownButton);
    m_fixture->fetch(u"MAIN-ROUTING"_s);
    QCOMPARE(relay.commands().size(), mark + 1);
}

void RecordListsTest::addressBookMovesWaitForTheMainWindowsSave()
{
    const RecordingRelay &relay = m_fixture->relay;
    QStringList order = m_books->ids();
    const int b = int(m_books->names().indexOf(u"Book B"_s));
    QVERIFY(b > 0);

    // The move itself sends nothing: the next frame the server sees is the list read below.
    select(m_books.get(), u"Book B"_s);
    qsizetype mark = relay.commands().size();
    QTest::mouseClick(button(m_books.get(), 3), Qt::LeftButton);
    order.swapItemsAt(b - 1, b);
    QCOMPARE(m_books->ids(), order);
    QCOMPARE(m_books->selectedId(), order.at(b - 1));
    // A refill before the save (another book added, say) keeps the order the user made.
    m_fixture->fetch(u"MAIN-AB"_s);
    QCOMPARE(relay.commands().size(), mark + 1);
    QCOMPARE(m_books->ids(), order);

    // Saving stores every book's position; the server then lists them in that order.
    QCOMPARE(m_books->orderCommands().size(), order.size());
    mark = relay.commands().size();
    QCOMPARE(m_books->saveOrder(), int(order.size()));
    QVERIFY(m_books->orderCommands().isEmpty());
    m_fixture->link.setAddressBookSort(u"Order"_s);
    const QString reply = m_fixture->fetch(u"MAIN-AB"_s);
    m_fixture->link.setAddressBookSort(u"Name"_s);
    QCOMPARE(relay.commands().size(), mark + order.size() + 1);
    for (qsizetype position = 0; position < order.size(); ++position) {
        const QString id = order[position];
        QCOMPARE(relay.commands().at(mark + position), setOrder(u"AB"_s, id, position + 1));
    }
    QCOMPARE(ServerFixture::replyIds(reply), order);
    QCOMPARE(m_books->ids(), order);
}

void RecordListsTest::removalAsksWithTheKindWordAndDeletesOnlyAfterYes()
{
    struct Case
    {
        RecordList *list;
        QString name;
        QString prompt;
        QString table;
    };
    const Case cases[] = {
        {m_books.get(), u"Book C"_s, u"Are you sure you want to remove this Address Book?"_s, u"AB"_s},
        {m_campaigns.get(), u"Summer Drive"_s, u"Are you sure you want to remove this Campaign?"_s,
         u"Campaigns"_s},
        {m_routing.get(), u"Route Z"_s, u"Are you sure you want to remove this Routing Condition?"_s,
         u"Routing"_s},
        {m_scripts.get(), u"Farewell"_s, u"Are you sure you want to remove this Script?"_s, u"Scripts"_s},
    };
    const RecordingRelay &relay = m_fixture->relay;
    for (const Case &c : cases) {
        const QString subRef = c.table.toUpper(); // the list's reference is MAIN-<subRef>
        select(c.list, c.name);
        const QString id = c.list->selectedId();
        const int count = c.list->list()->topLevelItemCount();

        m_asked.clear();
        answerMessageBoxes(QMessageBox::No, m_asked);
        qsizetype mark = relay.commands().size();
        QTest::mouseClick(button(c.list, 2), Qt::LeftButton);
        QCOMPARE(m_asked, QStringList{c.prompt});
        QCOMPARE(c.list->list()->topLevelItemCount(), count);
        QVERIFY(ServerFixture::replyIds(m_fixture->fetch(u"MAIN-"_s + subRef)).contains(id));
        QCOMPARE(relay.commands().size(), mark + 1); // only the list read

        // A list reply that refills the list while the question is open does not change what goes.
        const QString reply = m_fixture->lastReply(subRef);
        answerMessageBoxes(QMessageBox::Yes, m_asked, [&c, reply] { c.list->fill(reversedReply(reply)); });
        select(c.list, c.name);
        mark = relay.commands().size();
        const int before = m_fixture->replyCount(subRef);
        QTest::keyClick(c.list->list(), Qt::Key_Delete); // the key does what the button does
        QCOMPARE(c.list->list()->topLevelItemCount(), count - 1);
        QVERIFY(m_fixture->waitForReply(subRef, before));
        QCOMPARE(relay.commands().at(mark),
                 u"{Cmd=Delete}{Table=%1}{Id(N%2)=%3}"_s.arg(c.table).arg(id.size()).arg(id));
        QVERIFY(relay.commands().at(mark + 1).contains(u"{Ref=MAIN-"_s + subRef + u'}'));
        QVERIFY(!ServerFixture::replyIds(m_fixture->lastReply(subRef)).contains(id));
        QCOMPARE(c.list->list()->topLevelItemCount(), count - 1);
        QVERIFY(!c.list->ids().contains(id));
    }
}

QTEST_MAIN(RecordListsTest)
#include "tst_recordlists.moc"
