// SPDX-License-Identifier: GPL-3.0-or-later
// The names in a campaign's contacts database (an Access ".mdb" file): its tables and stored queries,
// the columns of one of them, and which columns to propose for a contact's id, telephone number,
// name and notes. Only names are read, never contact rows. Failures are values with a message in
// English for the user; a damaged file never stops or hangs the caller (see readSources).
#pragma once

#include <QFuture>
#include <QString>
#include <QStringList>

namespace ContactsDatabase {

enum class Failure {
    None,
    Missing,        // no file at that path
    Unreadable,     // a folder, or a file that could not be opened or read
    NotDatabase,    // not an Access database at all (empty, another kind of file, random bytes)
    Damaged,        // an Access database that is cut short or whose catalogue cannot be read
    UnknownSource,  // no listed table or stored query of that name
    ColumnsUnknown, // a stored query whose columns cannot be worked out from its definition
};

// How long a read may take before it is given up as a damaged file; reading the names of even a
// large database takes well under a second.
inline constexpr int defaultTimeoutMs = 20000;

struct Sources
{
    Failure failure = Failure::None;
    QString error; // for the user; empty when ok()
    // The user tables, then the stored queries, each in the order of the file's catalogue (the order
    // in which Access stored them, which is not necessarily alphabetical).
    QStringList tables;
    QStringList queries;

    bool ok() const { return failure == Failure::None; }
};

struct Columns
{
    Failure failure = Failure::None;
    QString error;
    QStringList names; // in their stored order (a query's: the order of its output columns)

    bool ok() const { return failure == Failure::None; }
};

// The column proposed for each of a campaign's four fields; empty when no column fits.
struct Proposals
{
    QString id;
    QString telephone;
    QString name;
    QString notes;

    friend bool operator==(const Proposals &, const Proposals &) = default;
};

// The tables whose names do not begin with "MSys" (in any case) and are not system tables, then the
// stored queries whose names do not begin with "~". Linked tables (kept in another file) are not
// listed. The file is checked to be an Access database first; libmdb then reads it in a child
// process, so that a damaged file that would crash it or make it loop gives Failure::Damaged instead
// (after at most timeoutMs: libmdb can loop for ever on some damaged pages).
Sources readSources(const QString &path, int timeoutMs = defaultTimeoutMs);

// The columns of the listed table or stored query called source (matched exactly, else ignoring
// case). A stored query's columns are worked out from its definition as Access names them: the
// alias, else the column referred to ("Customers.CompanyName" gives "CompanyName", "Orders.*" all
// of Orders' columns), else "Expr1000" plus the expression's place in the select list (Expr1002 for
// the third); a name that comes from two tables is given with its table ("Customers.CompanyName",
// "Shippers.CompanyName"). Select and make-table queries are read, and a union query by its first
// select; crosstab and action queries give Failure::ColumnsUnknown.
Columns readColumns(const QString &path, const QString &source, int timeoutMs = defaultTimeoutMs);

// The columns proposed by name, compared in upper case: the id ends with "ID" or "KEY"; the
// telephone number contains "PHONE" or "TEL"; the name contains "CONTACT", "NAME" or "COMPANY"; the
// notes contain "NOTES" or "TEXT". When several columns fit one field, the first in column order
// wins (on Northwind's Customers: CustomerID, Phone and CompanyName, not ContactName).
Proposals proposeColumns(const QStringList &columns);

// The same reads on a thread of the global pool, for a window that must stay responsive on a large
// file. Each read opens the file afresh; reads asked for together are run one after the other.
QFuture<Sources> readSourcesAsync(const QString &path, int timeoutMs = defaultTimeoutMs);
QFuture<Columns> readColumnsAsync(const QString &path, const QString &source,
                                  int timeoutMs = defaultTimeoutMs);

} // namespace ContactsDatabase
