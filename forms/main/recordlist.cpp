// SPDX-License-Identifier: GPL-3.0-or-later
#include "recordlist.h"

#include "buttonrow.h"
#include "errorlog.h"
#include "guarded.h"
#include "propertywindows.h"
#include "serverlink.h"
#include "tagreader.h"
#include "tagvalue.h"
#include "translate.h"
#include "translatewidgets.h"
#include "utilities.h"

#include <QHeaderView>
#include <QLoggingCategory>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcRecordList, "quill.forms.lists")

struct RecordList::Kind
{
    QString listName;     // the list's objectName
    QString buttonPrefix; // the button array's name
    int buttonCount;
    QString table;
    QString kindWord;    // in the removal prompt
    QString recordIdTag; // the second id each row carries
    QString secondTag;   // the field of the second column, if any
    QString secondHeader;
    QString reference;
    bool movesOnServer; // routing: each move stores both orders at once
    bool movesLocally;  // address books: moves are stored with the main window
    bool copies;
};

const RecordList::Kind &RecordList::kindInfo() const
{
    static const Kind kinds[] = {
        {u"Ab"_s, u"AButton"_s, 5, u"AB"_s, u"Address Book"_s, u"ABId"_s, u"Type"_s, u"Type"_s, u"MAIN-AB"_s,
         false, true, false},
        {u"Campaigns"_s,
         u"CButton"_s,
         4,
         u"Campaigns"_s,
         u"Campaign"_s,
         u"CampaignId"_s,
         {},
         {},
         u"MAIN-CAMPAIGNS"_s,
         false,
         false,
         true},
        {u"Routing"_s, u"RButton"_s, 5, u"Routing"_s, u"Routing Condition"_s, u"RoutingId"_s,
         u"Destination"_s, u"Destination"_s, u"MAIN-ROUTING"_s, true, false, false},
        {u"Scripts"_s,
         u"SButton"_s,
         3,
         u"Scripts"_s,
         u"Script"_s,
         u"ScriptId"_s,
         {},
         {},
         u"MAIN-SCRIPTS"_s,
         false,
         false,
         false},
    };
    return kinds[int(m_kind)];
}

RecordList::RecordList(RecordKind kind, ServerLink &link, PropertyWindows &windows, QWidget *parent)
    : QWidget(parent), m_kind(kind), m_link(link), m_windows(windows), m_list(new QTreeWidget(this))
{
    const Kind &info = kindInfo();
    setObjectName(info.listName + u"Page"_s);
    m_list->setObjectName(info.listName);
    m_list->setRootIsDecorated(false);
    m_list->setItemsExpandable(false);
    m_list->setAllColumnsShowFocus(true);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    QStringList headers{Translate(u"Name"_s)};
    if (!info.secondTag.isEmpty())
        headers.append(Translate(info.secondHeader));
    m_list->setColumnCount(int(headers.size()));
    m_list->setHeaderLabels(headers);
    m_list->header()->resizeSection(0, 250);
    connect(m_list, &QTreeWidget::itemSelectionChanged, this, &RecordList::updateButtons);
    connectGuarded(m_list, &QTreeWidget::itemDoubleClicked, this, u" @ frmMain."_s + info.listName + u"_DblClick"_s,
                   [this](QTreeWidgetItem *item) {
                       if (item)
                           editRecord({});
                   });
    connect(&m_windows, &PropertyWindows::openersChanged, this, &RecordList::updateButtons);

    QStringList captions{u"&Add..."_s, u"&Edit..."_s, u"&Remove"_s, u"Move &Up"_s, u"Move &Down"_s};
    if (info.copies)
        captions[CopyButton] = u"&Copy..."_s;
    m_buttons = new ButtonRow(info.buttonPrefix, captions.mid(0, info.buttonCount), this,
                              u" @ frmMain."_s + info.buttonPrefix + u"_Click"_s,
                              [this](int index) { Button_Click(index); });
    m_buttons->bindKeys(m_list, EditButton, RemoveButton);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_list, 1);
    layout->addLayout(m_buttons->layout());
    updateButtons();
}

QString RecordList::table() const
{
    return kindInfo().table;
}

QString RecordList::listReference() const
{
    return kindInfo().reference;
}

QPushButton *RecordList::button(int index) const
{
    return m_buttons->button(index);
}

void RecordList::setSecondColumnText(std::function<QString(const QString &)> display)
{
    m_secondText = std::move(display);
    for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
        QTreeWidgetItem *item = m_list->topLevelItem(row);
        const QString value = item->data(0, SecondValueRole).toString();
        item->setText(1, m_secondText ? m_secondText(value) : value);
    }
}

void RecordList::fill(const QString &message)
{
    const Kind &info = kindInfo();
    m_reply = message;
    // Book moves not yet stored survive a refill (after adding a book, say); new books go last.
    const QStringList shownOrder = ids();
    const bool keepLocalOrder = info.movesLocally && shownOrder != m_storedOrder;
    const QString selected = selectedId();

    QList<QTreeWidgetItem *> items;
    Guard(u"  @  frmMain.DataArrived"_s, [&] {
        const QStringList rows = readList(message);
        for (const QString &row : rows) {
            const QString id = getText(row, u"Id"_s);
            if (id.isEmpty()) {
                qCWarning(lcRecordList) << info.listName << "row without Id left out:" << row.left(200);
                continue;
            }
            auto *item = new QTreeWidgetItem;
            item->setText(0, getText(row, u"Name"_s));
            item->setData(0, KeyRole, QString(u'~' + id));
            item->setData(0, RecordIdRole, getText(row, info.recordIdTag));
            if (!info.secondTag.isEmpty()) {
                // GetVar finds the field inside a nested record too: the destination lives in Options.
                const QString value = getText(row, info.secondTag);
                item->setData(0, SecondValueRole, value);
                item->setText(1, m_secondText ? m_secondText(value) : value);
            }
            items.append(item);
        }
    });
    m_list->clear();
    m_list->addTopLevelItems(items);
    m_storedOrder = ids();
    if (keepLocalOrder)
        applyLocalOrder(shownOrder);
    if (QTreeWidgetItem *item = itemForId(selected)) {
        m_list->setCurrentItem(item);
        item->setSelected(true);
    }
    updateButtons();
}

void RecordList::clear()
{
    m_list->clear();
    m_reply.clear();
    m_storedOrder.clear();
    updateButtons();
}

void RecordList::applyLocalOrder(const QStringList &order)
{
    int target = 0;
    for (const QString &id : order) {
        QTreeWidgetItem *item = itemForId(id);
        if (!item)
            continue;
        m_list->insertTopLevelItem(target++, m_list->takeTopLevelItem(m_list->indexOfTopLevelItem(item)));
    }
}

QString RecordList::idOf(const QTreeWidgetItem *item) const
{
    return item ? tagValueText(GetId(item->data(0, KeyRole).toString())) : QString();
}

QTreeWidgetItem *RecordList::itemForId(const QString &id) const
{
    if (id.isEmpty())
        return nullptr;
    const QString key = u'~' + id;
    for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
        if (m_list->topLevelItem(row)->data(0, KeyRole).toString() == key)
            return m_list->topLevelItem(row);
    }
    return nullptr;
}

QString RecordList::selectedId() const
{
    return idOf(m_list->selectedItems().value(0));
}

QStringList RecordList::ids() const
{
    QStringList result;
    for (int row = 0; row < m_list->topLevelItemCount(); ++row)
        result.append(idOf(m_list->topLevelItem(row)));
    return result;
}

QStringList RecordList::names() const
{
    QStringList result;
    for (int row = 0; row < m_list->topLevelItemCount(); ++row)
        result.append(m_list->topLevelItem(row)->text(0));
    return result;
}

bool RecordList::updateEntry(const QString &id, const QString &name, const QString &second)
{
    QTreeWidgetItem *item = itemForId(id);
    if (!item)
        return false;
    item->setText(0, name);
    if (m_list->columnCount() > 1)
        item->setText(1, second);
    return true;
}

QStringList RecordList::orderCommands() const
{
    const QStringList order = ids();
    if (!kindInfo().movesLocally || order == m_storedOrder)
        return {};
    // Every book gets its position, so the stored order is whole even for books that never had one.
    QStringList commands;
    for (qsizetype position = 0; position < order.size(); ++position) {
        QString command = u"{Cmd=SetField}{Table=AB}"_s;
        AddVar(command, u"Id"_s, GetId(u'~' + order[position]));
        AddVar(command, u"Field"_s, u"Order"_s);
        AddVar(command, u"Value"_s, int(position + 1));
        commands.append(command);
    }
    return commands;
}

int RecordList::saveOrder()
{
    const QStringList commands = orderCommands();
    for (const QString &command : commands)
        m_link.SendCommand(command);
    m_storedOrder = ids();
    return int(commands.size());
}

void RecordList::Button_Click(int index)
{
    const Kind &info = kindInfo();
    switch (index) {
    case AddButton:
        openWindow(u"-1"_s);
        break;
    case EditButton:
        editRecord({});
        break;
    case RemoveButton:
        removeRecord();
        break;
    case MoveUpButton: // CopyButton for campaigns
        if (info.copies)
            editRecord(u"*"_s);
        else
            moveRecord(-1);
        break;
    case MoveDownButton:
        moveRecord(+1);
        break;
    default:
        break;
    }
}

void RecordList::editRecord(const QString &prefix)
{
    const QString id = selectedId();
    if (!id.isEmpty())
        openWindow(prefix + id);
}

void RecordList::openWindow(const QString &idText)
{
    if (!m_windows.canOpen(table()))
        return;
    // The window's id text may hold several ids; the entry is the first one's.
    m_windows.openFromList(
        table(), idText, window(),
        [this](const WindowResult &result) {
            return !result.columns.isEmpty()
                && updateEntry(result.id.section(u',', 0, 0), result.columns.value(0), result.columns.value(1));
        },
        [this] { m_link.GetData(listReference()); });
}

void RecordList::removeRecord()
{
    // The entry is held by its key, not by its item, across the question: a list reply that
    // arrives while it is open replaces every item of the list.
    const QList<QTreeWidgetItem *> selected = m_list->selectedItems();
    if (selected.isEmpty())
        return;
    const QString key = selected.first()->data(0, KeyRole).toString();
    const QString id = tagValueText(GetId(key));
    const Kind &info = kindInfo();
    if (TranslateMsgBox(u"Are you sure you want to remove this <1>?"_s, QMessageBox::Yes | QMessageBox::No,
                        Translate(info.kindWord)) != QMessageBox::Yes)
        return;
    QString command = u"{Cmd=Delete}{Table="_s + info.table + u'}';
    AddVar(command, u"Id"_s, GetId(key));
    m_link.SendCommand(command);
    // Gone at once, so it cannot be edited or removed again while the server works; the fresh list
    // that follows shows what the server holds.
    m_storedOrder.removeOne(id);
    delete itemForId(key.mid(1));
    m_link.GetData(info.reference);
}

void RecordList::moveRecord(int step)
{
    const Kind &info = kindInfo();
    if (!info.movesOnServer && !info.movesLocally)
        return;
    QTreeWidgetItem *item = m_list->selectedItems().value(0);
    if (!item)
        return;
    const int from = m_list->indexOfTopLevelItem(item);
    const int to = from + step;
    if (to < 0 || to >= m_list->topLevelItemCount())
        return;
    if (info.movesOnServer) {
        // Positions count from 1: the order of a condition is always its place in this list.
        const auto setOrder = [this](const QTreeWidgetItem *record, int position) {
            QString command = u"{Cmd=SetField}{Table=Routing}"_s;
            AddVar(command, u"Id"_s, GetId(record->data(0, KeyRole).toString()));
            AddVar(command, u"Field"_s, u"Order"_s);
            AddVar(command, u"Value"_s, position);
            m_link.SendCommand(command);
        };
        setOrder(item, to + 1);
        setOrder(m_list->topLevelItem(to), from + 1);
    }
    m_list->insertTopLevelItem(to, m_list->takeTopLevelItem(from));
    m_list->setCurrentItem(item);
    item->setSelected(true);
    updateButtons();
}

void RecordList::updateButtons()
{
    const Kind &info = kindInfo();
    const bool windowThere = m_windows.canOpen(info.table);
    QTreeWidgetItem *item = m_list->selectedItems().value(0);
    const int row = item ? m_list->indexOfTopLevelItem(item) : -1;
    const QString tip = windowThere ? QString() : PropertyWindows::unavailableTip();
    const auto set = [this](int index, bool enabled, const QString &toolTip = {}) {
        m_buttons->setEnabled(index, enabled, toolTip);
    };
    set(AddButton, windowThere, tip);
    set(EditButton, windowThere && item, tip);
    set(RemoveButton, item != nullptr);
    if (info.copies) {
        set(CopyButton, windowThere && item, tip);
    } else {
        set(MoveUpButton, item && row > 0);
        set(MoveDownButton, item && row < m_list->topLevelItemCount() - 1);
    }
}
