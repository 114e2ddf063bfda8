// SPDX-License-Identifier: GPL-3.0-or-later
// The directory of devices: every device of the MAIN-EXTS reply as one row, and the view's order
// (by device number, numbers numerically) and quick filter (number, name or department).
#pragma once

#include <QAbstractTableModel>
#include <QList>
#include <QSortFilterProxyModel>
#include <QString>

#include <array>

// One device as the directory shows it.
struct DirectoryEntry
{
    QString id; // the record's Id; the row's key is "~" + id
    QString extensionId;
    QString ext;
    QString name;
    QString type; // the device kind as stored: "EXT", "AGENT", "SPEED", "TRUNK"
    QString dept;
    qint64 number = 0; // ext as a number, when it is one
    bool numeric = false;

    void setExt(const QString &text);
    QString key() const { return u'~' + id; }
};

// Numbers first, by value ("99" before "100"), then every other number text, without regard to
// case. Equal values ("0100" and "100") fall back to the text so the order stays total.
bool extLessThan(const DirectoryEntry &left, const DirectoryEntry &right);

class DirectoryModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { ExtColumn, NameColumn, TypeColumn, DeptColumn, ColumnCount };
    enum Role {
        KeyRole = Qt::UserRole + 1, // "~" + Id
        IdRole,
        ExtensionIdRole,
        TypeCodeRole, // the stored kind, where the Type column shows its name
    };

    explicit DirectoryModel(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    // Replaces every row with the rows of a whole MAIN-EXTS reply (no rows: the list is emptied).
    void fill(const QString &reply);
    void clear();

    const DirectoryEntry &entry(int row) const { return m_entries.at(row); }
    const QList<DirectoryEntry> &entries() const { return m_entries; }
    int rowOfId(const QString &id) const;
    // Changes a device in place from a record: Ext, Name, Type and Dept where the record holds
    // them, the others kept. False when no row has that id.
    bool updateEntry(const QString &id, const QString &record);
    // Takes rows out (model rows, any order, duplicates allowed).
    void removeEntries(QList<int> rows);

    // The name the Type column shows for a stored kind ("EXT" -> "Extension"), translated.
    QString typeName(const QString &type) const;

    // Each row's place in the order of a column: by number for Ext, by text in any case for the
    // others with the number order breaking ties. Kept until the rows change, so sorting the view
    // compares two integers where it would compare two texts: 100 000 rows sort in well under a
    // second.
    const QList<int> &sortRanks(int column) const;

private:
    void translateTypeNames();
    void forgetRanks();
    QList<int> computeRanks(int column) const;

    QList<DirectoryEntry> m_entries;
    mutable std::array<QList<int>, ColumnCount> m_ranks; // empty: not worked out yet
    QHash<QString, QString> m_typeNames;
    QStringList m_headers;
};

// The view's side of the directory: sorted by any column (by number for Ext), filtered as the
// user types.
class DirectoryProxyModel : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    explicit DirectoryProxyModel(DirectoryModel *directory, QObject *parent = nullptr);

    // Keeps the rows whose number, name or department holds text, in any case; empty shows all.
    void setQuickFilter(const QString &text);
    QString quickFilter() const { return m_filter; }

protected:
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    DirectoryModel *m_directory;
    QString m_filter;
};
