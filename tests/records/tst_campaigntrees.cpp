// SPDX-License-Identifier: GPL-3.0-or-later
// The campaign's menu tree and result list: how they are stored in Scripts and Results and read
// back, and the node numbers that descriptors find nodes by.
#include "campaigntrees.h"
#include "isolation.h"
#include "tagvalue.h"

#include <QTest>
#include <QTreeWidget>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

QString choice(const QString &caption)
{
    QString tag;
    AddVar(tag, u"Caption"_s, caption);
    return tag;
}

// The tree as the administrator sees it: one line per node, indented by its depth.
QString outline(const QTreeWidget &tree)
{
    QStringList lines;
    std::function<void(const QTreeWidgetItem *, int)> walk = [&](const QTreeWidgetItem *item, int depth) {
        lines << QString(depth * 2, u' ') + item->text(0);
        for (int n = 0; n < item->childCount(); ++n)
            walk(item->child(n), depth + 1);
    };
    for (int n = 0; n < tree.topLevelItemCount(); ++n)
        walk(tree.topLevelItem(n), 0);
    return lines.join(u'|');
}

// count entries prefix1, prefix2, ... holding the choices caption1, caption2, ...; as shown: the
// captions under parent (empty: as top-level nodes).
QString numbered(const QString &prefix, int count, const QString &caption)
{
    QString text;
    for (int n = 1; n <= count; ++n)
        AddVar(text, prefix + QString::number(n), choice(caption + QString::number(n)));
    return text;
}
QString shownAs(const QString &parent, int count, const QString &caption)
{
    QStringList lines;
    if (!parent.isEmpty())
        lines << parent;
    for (int n = 1; n <= count; ++n)
        lines << (parent.isEmpty() ? QString() : u"  "_s) + caption + QString::number(n);
    return lines.join(u'|');
}

} // namespace

class CampaignTreesTest : public QObject
{
    Q_OBJECT
    TestIsolation m_scratch;

private slots:
    void initTestCase() { QVERIFY(m_scratch.enter()); }

    void storedTreesLoadAndSaveAgain_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("stored"); // Scripts or Results
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("saved");
        const int menus = ChoiceTree::Menus;
        const QString threeLevels = u"{Root(S19)={File(S8)=root.htm}}{Root.1(S15)={Caption(S1)=A}}"
                                    u"{Root.1.1(S16)={Caption(S2)=A1}}{Root.1.1.1(S17)={Caption(S3)=A1a}}"
                                    u"{Root.2(S15)={Caption(S1)=B}}"_s;
        QTest::newRow("three levels")
            << menus << threeLevels << u"Initial script|  A|    A1|      A1a|  B"_s << threeLevels;
        QTest::newRow("no scripts") << menus << QString() << u"Initial script"_s << QString();
        QTest::newRow("gap in the numbering")
            << menus << u"{Root.1(S15)={Caption(S1)=A}}{Root.3(S15)={Caption(S1)=C}}"_s
            << u"Initial script|  A"_s << u"{Root.1(S15)={Caption(S1)=A}}"_s;
        QTest::newRow("empty entry ends its level")
            << menus << u"{Root.1(S0)=}{Root.2(S15)={Caption(S1)=B}}"_s << u"Initial script"_s << QString();
        QTest::newRow("names in any case and order")
            << menus << u"{root.2(S15)={Caption(S1)=B}}{ROOT.1(S15)={Caption(S1)=A}}"_s
            << u"Initial script|  A|  B"_s << u"{Root.1(S15)={Caption(S1)=A}}{Root.2(S15)={Caption(S1)=B}}"_s;
        QTest::newRow("22 children reload as 21")
            << menus << numbered(u"Root."_s, 22, u"C"_s) << shownAs(u"Initial script"_s, 21, u"C"_s)
            << numbered(u"Root."_s, 21, u"C"_s);

        const int results = ChoiceTree::Results;
        QTest::newRow("result gap")
            << results << u"{Result1(S20)={Caption(S6)=Called}}{Result3(S18)={Caption(S4)=Busy}}"_s
            << u"Called"_s << u"{Result1(S20)={Caption(S6)=Called}}"_s;
        QTest::newRow("21 results reload as 20")
            << results << numbered(u"Result"_s, 21, u"R"_s) << shownAs(QString(), 20, u"R"_s)
            << numbered(u"Result"_s, 20, u"R"_s);
    }
    void storedTreesLoadAndSaveAgain()
    {
        QFETCH(int, kind);
        QFETCH(QString, stored);
        QFETCH(QString, shown);
        QFETCH(QString, saved);
        QTreeWidget widget;
        ChoiceTree tree(&widget, ChoiceTree::Kind(kind));
        tree.addNode(1, u"stale"_s, choice(u"stale"_s)); // replaced by the load
        AddVar(stored, u"Unrelated"_s, u"x"_s);          // other entries of the record are no nodes
        if (kind == ChoiceTree::Menus) {
            tree.BuildMenu(stored);
            QCOMPARE(outline(widget), shown);
            QCOMPARE(tree.EnumNodes(), saved);
            QCOMPARE(tree.indexOf(widget.topLevelItem(0)), 1);
        } else {
            tree.buildResults(stored);
            QCOMPARE(outline(widget), shown);
            QCOMPARE(tree.resultsText(), saved);
        }
    }

    // Nodes are written depth first whatever order they were added in, and a choice with no
    // properties is still written, empty.
    void menusAreWrittenDepthFirst()
    {
        QTreeWidget widget;
        ChoiceTree menus(&widget, ChoiceTree::Menus);
        QCOMPARE(menus.selectedIndex(), 1);
        QVERIFY(widget.topLevelItem(0)->isExpanded());
        const int a = menus.addNode(1, u"A"_s, choice(u"A"_s));
        const int b = menus.addNode(1, u"B"_s, QString());
        const int a1 = menus.addNode(a, u"A1"_s, choice(u"A1"_s));
        menus.addNode(a1, u"A1a"_s, choice(u"A1a"_s));
        menus.addNode(b, u"B1"_s, choice(u"B1"_s));
        QCOMPARE(menus.addNode(99, u"lost"_s, choice(u"lost"_s)), 0);
        QVERIFY(menus.item(a)->isExpanded());
        QCOMPARE(menus.EnumNodes(), u"{Root.1(S15)={Caption(S1)=A}}{Root.1.1(S16)={Caption(S2)=A1}}"
                                    u"{Root.1.1.1(S17)={Caption(S3)=A1a}}{Root.2(S0)=}"
                                    u"{Root.2.1(S16)={Caption(S2)=B1}}"_s);
        QVERIFY(menus.setNode(1, u"Initial script"_s, u"{File(S1)=x}"_s));
        QVERIFY(menus.EnumNodes().startsWith(u"{Root(S12)={File(S1)=x}}{Root.1(S15)="_s));
    }

    // A node keeps its number through removals of others, so that a descriptor's Item still
    // finds it; numbers are never given again; saving renumbers the paths.
    void nodeNumbersOutliveRemovals()
    {
        QTreeWidget widget;
        ChoiceTree menus(&widget, ChoiceTree::Menus);
        menus.BuildMenu(u"{Root.1(S15)={Caption(S1)=A}}{Root.1.1(S16)={Caption(S2)=A1}}"
                        u"{Root.1.2(S16)={Caption(S2)=A2}}{Root.2(S15)={Caption(S1)=B}}"
                        u"{Root.3(S15)={Caption(S1)=C}}"_s);
        const int a = menus.indexOf(widget.topLevelItem(0)->child(0));
        const int a2 = menus.indexOf(menus.item(a)->child(1));
        const int c = menus.indexOf(widget.topLevelItem(0)->child(2));
        QVERIFY(a > 1 && a2 > a && c > a2);

        menus.remove(a);
        QCOMPARE(outline(widget), u"Initial script|  B|  C"_s);
        QCOMPARE(menus.item(a), nullptr);
        QCOMPARE(menus.item(a2), nullptr);
        QCOMPARE(menus.item(c)->text(0), u"C"_s);
        QCOMPARE(menus.tagOf(c), u"{Caption(S1)=C}"_s);
        QCOMPARE(menus.EnumNodes(), u"{Root.1(S15)={Caption(S1)=B}}{Root.2(S15)={Caption(S1)=C}}"_s);

        const int d = menus.addNode(c, u"D"_s, choice(u"D"_s));
        QVERIFY(d > c);
        QVERIFY(!menus.setNode(a, u"gone"_s, QString()));
        // A reload numbers on from the last node ever made.
        menus.BuildMenu(u"{Root.1(S15)={Caption(S1)=E}}"_s);
        QVERIFY(menus.indexOf(widget.topLevelItem(0)->child(0)) > d);

        QTreeWidget resultWidget;
        ChoiceTree results(&resultWidget, ChoiceTree::Results);
        const int first = results.addNode(-1, u"Called"_s, choice(u"Called"_s));
        const int second = results.addNode(-1, u"Busy"_s, choice(u"Busy"_s));
        results.remove(first);
        QCOMPARE(results.item(second)->text(0), u"Busy"_s);
        QCOMPARE(results.addNode(-1, u"Later"_s, choice(u"Later"_s)), second + 1);
        QCOMPARE(results.resultsText(),
                 u"{Result1(S18)={Caption(S4)=Busy}}{Result2(S19)={Caption(S5)=Later}}"_s);
    }

    // The root can be edited but neither removed nor closed; what the buttons may do follows the
    // selected node.
    void theRootStaysAndStaysOpen()
    {
        QTreeWidget widget;
        ChoiceTree menus(&widget, ChoiceTree::Menus);
        const int a = menus.addNode(1, u"A"_s, choice(u"A"_s));
        menus.addNode(a, u"A1"_s, choice(u"A1"_s));
        QTreeWidgetItem *root = menus.item(1);

        menus.remove(1);
        QCOMPARE(outline(widget), u"Initial script|  A|    A1"_s);

        widget.show();
        QVERIFY(QTest::qWaitForWindowExposed(&widget));
        widget.setCurrentItem(root);
        QTest::keyClick(&widget, Qt::Key_Left); // collapses the current node
        QVERIFY(root->isExpanded());

        // The root may be edited but not removed; with nothing selected neither.
        QVERIFY(menus.canEdit() && !menus.canRemove());
        widget.setCurrentItem(menus.item(a));
        QVERIFY(menus.selectedIndex() == a && menus.canEdit() && menus.canRemove());
        widget.clearSelection();
        QVERIFY(menus.selectedIndex() == 0 && !menus.canEdit() && !menus.canRemove());

        QTreeWidget resultWidget;
        ChoiceTree results(&resultWidget, ChoiceTree::Results);
        QCOMPARE(results.canEdit(), false);
        results.item(results.addNode(-1, u"Called"_s, choice(u"Called"_s)))->setSelected(true);
        QVERIFY(results.canEdit() && results.canRemove());
    }
};

QTEST_MAIN(CampaignTreesTest)
#include "tst_campaigntrees.moc"
