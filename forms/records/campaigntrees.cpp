// SPDX-License-Identifier: GPL-3.0-or-later
#include "campaigntrees.h"

#include "errorlog.h"
#include "guarded.h"
#include "tagvalue.h"
#include "translate.h"

#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr int IndexRole = Qt::UserRole;
constexpr int TagRole = Qt::UserRole + 1;
const QString rootPath = u"Root"_s;
} // namespace

ChoiceTree::ChoiceTree(QTreeWidget *tree, Kind kind, QObject *parent)
    : QObject(parent), m_tree(tree), m_kind(kind)
{
    m_tree->setSelectionMode(QAbstractItemView::SingleSelection);
    if (m_kind == Menus) {
        clear();
        connectGuarded(m_tree, &QTreeWidget::itemCollapsed, this, u" @ frmCampaign.Menus_Collapse"_s,
                       &ChoiceTree::keepRootOpen);
    }
}

QTreeWidgetItem *ChoiceTree::makeItem(const QString &text, const QString &tag)
{
    auto *item = new QTreeWidgetItem(QStringList{text});
    item->setData(0, IndexRole, ++m_lastIndex);
    item->setData(0, TagRole, tag);
    return item;
}

QTreeWidgetItem *ChoiceTree::item(int index) const
{
    if (index < 1)
        return nullptr;
    for (QTreeWidgetItemIterator it(m_tree); *it; ++it) {
        if (indexOf(*it) == index)
            return *it;
    }
    return nullptr;
}

int ChoiceTree::indexOf(const QTreeWidgetItem *item) const
{
    return item ? item->data(0, IndexRole).toInt() : 0;
}

int ChoiceTree::selectedIndex() const
{
    const QList<QTreeWidgetItem *> selected = m_tree->selectedItems();
    return selected.isEmpty() ? 0 : indexOf(selected.first());
}

QString ChoiceTree::tagOf(int index) const
{
    const QTreeWidgetItem *node = item(index);
    return node ? node->data(0, TagRole).toString() : QString();
}

int ChoiceTree::addNode(int parentIndex, const QString &text, const QString &tag)
{
    if (m_kind == Results) {
        QTreeWidgetItem *node = makeItem(text, tag);
        m_tree->addTopLevelItem(node);
        m_tree->scrollToItem(node);
        return indexOf(node);
    }
    QTreeWidgetItem *parent = item(parentIndex);
    if (!parent)
        return 0;
    QTreeWidgetItem *node = makeItem(text, tag);
    parent->addChild(node);
    parent->setExpanded(true);
    m_tree->scrollToItem(node);
    return indexOf(node);
}

bool ChoiceTree::setNode(int index, const QString &text, const QString &tag)
{
    QTreeWidgetItem *node = item(index);
    if (!node)
        return false;
    node->setText(0, text);
    node->setData(0, TagRole, tag);
    return true;
}

void ChoiceTree::remove(int index)
{
    QTreeWidgetItem *node = item(index);
    if (!node || (m_kind == Menus && index == 1))
        return;
    delete node; // the item takes its children with it
}

bool ChoiceTree::canEdit() const
{
    return selectedIndex() >= 1;
}

bool ChoiceTree::canRemove() const
{
    return selectedIndex() >= (m_kind == Menus ? 2 : 1);
}

QString ChoiceTree::EnumNodes() const
{
    QString scripts;
    Guard(u" @ frmCampaign.EnumNodes"_s, [&] {
        const QTreeWidgetItem *root = m_tree->topLevelItem(0);
        if (!root)
            return;
        AddVar(scripts, rootPath, root->data(0, TagRole).toString());
        enumChildren(scripts, root, rootPath);
    });
    return scripts;
}

void ChoiceTree::enumChildren(QString &scripts, const QTreeWidgetItem *parent, const QString &path) const
{
    for (int n = 0; n < parent->childCount(); ++n) {
        const QTreeWidgetItem *child = parent->child(n);
        const QString childPath = path + u'.' + QString::number(n + 1);
        AddVar(scripts, childPath, child->data(0, TagRole).toString(), true);
        enumChildren(scripts, child, childPath);
    }
}

void ChoiceTree::BuildMenu(const QString &scripts)
{
    clear();
    QTreeWidgetItem *root = m_tree->topLevelItem(0);
    Guard(u"  @  frmCampaign.BuildMenu"_s, [&] { root->setData(0, TagRole, getText(scripts, rootPath)); });
    buildChildren(scripts, root, rootPath);
    root->setExpanded(true);
}

void ChoiceTree::buildChildren(const QString &scripts, QTreeWidgetItem *parent, const QString &path)
{
    for (int n = 1; n <= MaxChoices; ++n) {
        const QString childPath = path + u'.' + QString::number(n);
        // Each entry is read by its whole path: "Root.1" never matches "Root.1.1", which must be
        // followed by "(" or "=".
        const QString entry = getText(scripts, childPath);
        if (entry.isEmpty())
            return;
        QTreeWidgetItem *child = nullptr;
        Guard(u"  @  frmCampaign.BuildMenu"_s, [&] {
            child = makeItem(getText(entry, u"Caption"_s), entry);
            parent->addChild(child);
        });
        if (child)
            buildChildren(scripts, child, childPath);
    }
}

QString ChoiceTree::resultsText() const
{
    QString results;
    for (int n = 0; n < m_tree->topLevelItemCount(); ++n)
        AddVar(results, u"Result"_s + QString::number(n + 1),
               m_tree->topLevelItem(n)->data(0, TagRole).toString());
    return results;
}

void ChoiceTree::buildResults(const QString &results)
{
    clear();
    for (int n = 1; n <= MaxResults; ++n) {
        const QString entry = getText(results, u"Result"_s + QString::number(n));
        if (entry.isEmpty())
            return;
        m_tree->addTopLevelItem(makeItem(getText(entry, u"Caption"_s), entry));
    }
}

void ChoiceTree::clear()
{
    if (m_kind == Results) {
        m_tree->clear();
        return;
    }
    // The root keeps its index: a node's number is never given to another.
    QTreeWidgetItem *root = m_tree->topLevelItem(0);
    if (root && indexOf(root) == 1) {
        qDeleteAll(root->takeChildren());
        while (m_tree->topLevelItemCount() > 1)
            delete m_tree->takeTopLevelItem(1);
        root->setText(0, Translate(u"Initial script"_s));
        root->setData(0, TagRole, QString());
    } else {
        m_tree->clear();
        root = new QTreeWidgetItem(QStringList{Translate(u"Initial script"_s)});
        root->setData(0, IndexRole, 1);
        m_lastIndex = std::max(m_lastIndex, 1);
        m_tree->addTopLevelItem(root);
    }
    root->setExpanded(true);
    m_tree->setCurrentItem(root);
    root->setSelected(true);
}

void ChoiceTree::keepRootOpen(QTreeWidgetItem *collapsed)
{
    if (indexOf(collapsed) == 1)
        collapsed->setExpanded(true);
}
