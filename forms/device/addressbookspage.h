// SPDX-License-Identifier: GPL-3.0-or-later
// The Address Books page of the device window: which of the system's address books the user may
// use and with what settings, the user's private books, and the book that takes the user's new
// contacts. Reads and writes AB<i>Vars and AB<i>Use for each system book i, PrivateAB and NewAB.
#pragma once

#include <QIcon>
#include <QList>
#include <QString>
#include <QStringList>
#include <QWidget>

class ButtonRow;
class PropertyWindows;
class QCheckBox;
class QComboBox;
class QTreeWidget;

// A book of the system's address-book list: its name and its plug-in's type code.
struct SystemAddressBook
{
    QString name;
    QString type;
};

class AddressBooksPage : public QWidget
{
    Q_OBJECT
public:
    enum Column { NameColumn, KindColumn };
    enum Button { AddButton, ConfigureButton, RemoveButton };

    explicit AddressBooksPage(QWidget *parent = nullptr);

    // The system's books in the main window's order: book i (from 1) is stored as AB<i>Use and
    // AB<i>Vars. Given before the row arrives; the private books shown stay.
    void setSystemBooks(const QList<SystemAddressBook> &books);
    // Where the private books' window ("AB") comes from; without it none can be added or configured.
    void setWindows(const PropertyWindows *windows);

    void load(const QString &row);
    // Writes AB<i>Vars and AB<i>Use for each system book, PrivateAB and NewAB; a field the devices
    // being edited do not share is left out until the user changes it.
    void save(QString &row) const;

    // Add a private book (0), configure the selected book (1), remove the selected private book (2).
    void pProps_Click(int index);

    // The stored text of the new-contacts entry that stands for the shared directory.
    static QString directoryEntry();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct PrivateBook
    {
        QString name;
        QString vars; // the book's record: Type, Name, Options
    };
    int systemCount() const { return int(m_books.size()); }
    int selectedRow() const;
    bool canOpenBooks() const;
    void clearPrivateBooks();
    void addPrivateRow(const PrivateBook &book);
    void configureSystemBook(int book);
    // The private book's window on book index (-1 for a new book); its hand-back adds or replaces.
    void openPrivateBook(int index, const QString &vars);
    void removePrivateBook(int index);
    void updateButtons();

    QTreeWidget *m_list;
    QComboBox *m_newBook;
    ButtonRow *m_buttons;
    const PropertyWindows *m_windows = nullptr;
    QList<SystemAddressBook> m_books;
    QList<QCheckBox *> m_use; // pCheck_1 .. pCheck_n
    QStringList m_vars;       // AB<i>Vars by book, the mixed marker while the devices differ
    QList<PrivateBook> m_private;
    bool m_privateMixed = false;
    QString m_loadedPrivate; // PrivateAB as loaded
    QIcon m_privateIcon;     // a blank the size of a check box's indicator
};
