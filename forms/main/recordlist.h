// SPDX-License-Identifier: GPL-3.0-or-later
// The record lists of the main window: address books (Ab), campaigns, routing conditions and
// scripts, each with its row of command buttons (AButton, CButton, RButton, SButton).
#pragma once

#include <QStringList>
#include <QWidget>

#include <functional>

class ButtonRow;
class PropertyWindows;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class ServerLink;

enum class RecordKind { AddressBooks, Campaigns, Routing, Scripts };

class RecordList : public QWidget
{
    Q_OBJECT
public:
    // The buttons by index. Campaigns have no move buttons; their index 3 copies the selected
    // campaign (the campaign window opens with "*" + id).
    enum Button { AddButton, EditButton, RemoveButton, MoveUpButton, MoveDownButton, CopyButton = 3 };
    // The data kept with each entry (column 0).
    enum Role { KeyRole = Qt::UserRole, RecordIdRole, SecondValueRole };

    RecordList(RecordKind kind, ServerLink &link, PropertyWindows &windows, QWidget *parent = nullptr);

    RecordKind kind() const { return m_kind; }
    // The table the list's window and commands work on: "AB", "Campaigns", "Routing", "Scripts".
    QString table() const;
    // The main-window reference whose reply fills the list: "MAIN-AB", ... .
    QString listReference() const;

    // The list's reply: the list is cleared and refilled from it.
    void fill(const QString &message);
    void clear();

    QString selectedId() const; // empty when nothing is selected
    QStringList ids() const;    // in list order
    QStringList names() const;  // the entries' texts, in list order
    // The last list reply as the server sent it (ListCount, List1..n): the scripts are offered so
    // to the device window's action editor.
    QString reply() const { return m_reply; }
    // A record saved by its window: its text and second column change in place.
    bool updateEntry(const QString &id, const QString &name, const QString &second = {});
    // How the second column shows its value (the address-book type code as the plug-in's name).
    void setSecondColumnText(std::function<QString(const QString &value)> display);

    // Address books: the moves made in the list reach the server only when the main window is
    // saved. These are the commands that store them: one "{Cmd=SetField}{Table=AB}" with Field
    // "Order" and Value = the 1-based position, for each book whose position differs from the
    // order of the last reply.
    QStringList orderCommands() const;
    // Sends orderCommands(); the list's order then counts as stored. Returns how many were sent.
    int saveOrder();

    // The handler of the button row (AButton_Click, CButton_Click, ...).
    void Button_Click(int index);

    QTreeWidget *list() const { return m_list; }
    QPushButton *button(int index) const;

private:
    struct Kind;
    const Kind &kindInfo() const;
    void openWindow(const QString &idText);
    void editRecord(const QString &prefix);
    void removeRecord();
    void moveRecord(int step);
    void updateButtons();
    QTreeWidgetItem *itemForId(const QString &id) const;
    QString idOf(const QTreeWidgetItem *item) const;
    void applyLocalOrder(const QStringList &order);

    RecordKind m_kind;
    ServerLink &m_link;
    PropertyWindows &m_windows;
    QTreeWidget *m_list;
    ButtonRow *m_buttons = nullptr;
    std::function<QString(const QString &)> m_secondText;
    QString m_reply;
    QStringList m_storedOrder; // ids in the order of the last reply (or the last saved order)
};
