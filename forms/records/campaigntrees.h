// SPDX-License-Identifier: GPL-3.0-or-later
// The campaign window's two trees: the menu tree an agent walks through during a call (stored as
// the campaign's Scripts) and the flat list of results a call can end with (stored as Results).
// Each node carries its choice's or result's properties as a tagged-value string (its tag) and
// shows their Caption.
#pragma once

#include <QObject>
#include <QString>

class QTreeWidget;
class QTreeWidgetItem;

// Gives every node of a tree a number of its own, kept in the item: the next number when the node
// is created (1 = the first node, the menu root), never reused after a removal, so that a
// descriptor such as "{Type=Choice}{Item=7}" still finds its node after others were removed.
class ChoiceTree : public QObject
{
    Q_OBJECT
public:
    enum Kind { Menus, Results };

    // Child entries read back under one menu node, and results read back: nodes beyond them are
    // written but not shown again after reloading.
    static constexpr int MaxChoices = 21;
    static constexpr int MaxResults = 20;

    // Menus: creates the root "Initial script" (index 1), selected and expanded; the root is kept
    // open whenever it is collapsed.
    ChoiceTree(QTreeWidget *tree, Kind kind, QObject *parent = nullptr);

    Kind kind() const { return m_kind; }
    QTreeWidget *tree() const { return m_tree; }

    QTreeWidgetItem *item(int index) const;         // nullptr when there is no such node
    int indexOf(const QTreeWidgetItem *item) const; // 0 for none
    int selectedIndex() const;                      // 0 when nothing is selected
    QString tagOf(int index) const;

    // Menus: a child of parentIndex (which is expanded, the new node scrolled into view); Results:
    // a node at the end, parentIndex ignored. Returns the new node's index, 0 when parentIndex
    // names no node.
    int addNode(int parentIndex, const QString &text, const QString &tag);
    // Sets a node's text and tag; false when there is no such node.
    bool setNode(int index, const QString &text, const QString &tag);
    // Removes the node with its subtree; the menu root stays.
    void remove(int index);

    // What the campaign window's buttons may do with the selected node: edit it (any node), remove
    // it (any node but the menu root).
    bool canEdit() const;
    bool canRemove() const;

    // Menus: the value of Scripts: "Root" (only when the root's tag is not empty), then every node
    // depth first as its path ("Root.1", "Root.1.1", "Root.2", ...), written even when empty.
    QString EnumNodes() const;
    // Menus: the tree again from a Scripts value, up to MaxChoices children under each node,
    // stopping at the first missing or empty entry.
    void BuildMenu(const QString &scripts);

    // Results: the value of Results: "Result1", "Result2", ... in list order.
    QString resultsText() const;
    // Results: the list again from a Results value, up to MaxResults, stopping at the first missing
    // or empty entry.
    void buildResults(const QString &results);

    // Menus: back to the bare root (its tag empty); Results: empty.
    void clear();

private:
    QTreeWidgetItem *makeItem(const QString &text, const QString &tag);
    void enumChildren(QString &scripts, const QTreeWidgetItem *parent, const QString &path) const;
    void buildChildren(const QString &scripts, QTreeWidgetItem *parent, const QString &path);
    void keepRootOpen(QTreeWidgetItem *collapsed);

    QTreeWidget *m_tree;
    Kind m_kind;
    int m_lastIndex = 0;
};
