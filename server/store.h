// SPDX-License-Identifier: GPL-3.0-or-later
// The server's tables in one SQLite file: records, their fields, and the admin accounts.
#pragma once

#include <QByteArray>
#include <QList>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringView>

#include <optional>

struct sqlite3_stmt;

// The six tables of the command protocol. The numbers are stored in the file: never renumber.
enum class Table { Exts = 1, System = 2, AB = 3, Routing = 4, Campaigns = 5, Scripts = 6 };

// The table a command names ("Ab" and "AB" are one table); nothing for an unknown name.
std::optional<Table> tableFromName(QStringView name);
QString tableName(Table table);

// One stored field: its name as last written, its type letter ("S", "N", "D", ...) and its text.
struct StoredField
{
    QString name;
    QChar type = u'S';
    QString value;
    bool present() const { return !name.isEmpty(); }
};

struct Account
{
    QByteArray salt;
    QByteArray hash;
    int iterations = 0;
};

// Thread-confined like the QSqlDatabase inside it. Every method that writes expects the caller to
// hold a unit (begin/commit), so that one command is one unit: its own transaction, or, while a
// group is open, a savepoint inside the group's transaction.
class Store
{
public:
    Store();
    ~Store();
    Store(const Store &) = delete;
    Store &operator=(const Store &) = delete;

    // Opens (creating and upgrading the schema as needed) the SQLite file; WAL, synchronous FULL.
    bool open(const QString &file, QString *error = nullptr);
    void close();
    bool isOpen() const;
    QString lastError() const;

    // One command's unit. Outside a group: a transaction of its own, made durable by commit().
    // Inside a group: a savepoint, which commit() keeps in the group and rollback() undoes alone.
    bool begin();
    bool commit();
    // A read inside the current unit failed (set by begin()'s command's reads).
    bool readFailed() const { return m_readFailed; }
    void rollback();

    // A group: one transaction that the units of many commands join, so that one disk flush
    // (commitGroup) makes all of them durable. Some failures (a full disk, an I/O error) make
    // SQLite undo the whole transaction: the group has then ended, and inGroup() says so.
    bool beginGroup();
    bool inGroup() const { return m_inGroup; }
    bool commitGroup();

    // The record ids of a table, ascending.
    QList<qint64> ids(Table table);
    bool exists(Table table, qint64 id);
    bool isEmpty();
    // The System blocks ("PBX", "FEATURES") are records with fixed ids.
    static std::optional<qint64> SystemBlockId(QStringView block);

    // Allocates the next id of the table (ids are never reused) and stores an empty record.
    std::optional<qint64> createRecord(Table table);
    bool deleteRecord(Table table, qint64 id);

    // All fields of one record, in name order.
    QList<StoredField> fields(Table table, qint64 id);
    StoredField field(Table table, qint64 id, QStringView name);
    // Writes one field; an empty value removes it (empty values are not stored).
    bool setField(Table table, qint64 id, const QString &name, QChar type, const QString &value);

    // One field of every record, aligned with ids (which must be ascending): what GetList reads.
    // Each value carries name as given.
    QList<StoredField> column(Table table, QStringView name, const QList<qint64> &ids);

    // The device whose Ext is number (compared without regard to case).
    std::optional<qint64> deviceByExt(const QString &number);

    bool setAccount(const QString &user, const Account &account);
    std::optional<Account> account(const QString &user);

    // The underlying connection, for tools that measure the store beside the server.
    QSqlDatabase database() const;

    static constexpr int SchemaVersion = 1;

private:
    bool createSchema();
    bool exec(const QString &statement);
    bool fail(const QSqlQuery &query);
    bool read(QSqlQuery &query); // exec() that marks the command's reads as failed
    QSqlQuery &prepared(int slot, const QString &statement);

    QString m_connection;
    QString m_error;
    bool m_readFailed = false;
    bool m_inGroup = false;
    bool m_inCommand = false; // a command's savepoint is open in the group
    QList<QSqlQuery *> m_queries;
    // The column read, prepared on SQLite's own connection (nullptr until first used).
    sqlite3_stmt *columnStatement();
    sqlite3_stmt *m_columnStatement = nullptr;
};

// Field names compare without regard to case; this is the stored form they are compared by.
QString fieldKey(QStringView name);
