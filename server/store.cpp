// SPDX-License-Identifier: GPL-3.0-or-later
#include "store.h"

#include <QAtomicInteger>
#include <QDir>
#include <QFileInfo>
#include <QSqlDriver>
#include <QSqlError>
#include <QVariant>

#include <sqlite3.h>

#include <utility>

using namespace Qt::StringLiterals;

// Schema. Records are rows of `record`; each field of a record is one row of `field`, keyed by
// (table, lower-cased field name, record id) and clustered in that order (WITHOUT ROWID).
// Why a field table and not one tagged-value blob per record:
//  - any field name works, and a merge (SetFields) touches only the fields sent;
//  - GetList asks a handful of fields of every record of a table: with this key each asked field
//    is one sequential range of the clustered index, already in id order, so 100,000 devices cost a
//    few hundred thousand sequential rows instead of parsing 100,000 records of 60 fields each;
//  - the device number has a partial index, so "Id -1 with an Ext that exists" is one seek.
// GetFields of one record goes through `field_by_record` (one seek per field, ~60 for a device).
// Values are kept as text beside their type letter so that every field comes back as it was sent.

namespace {

const QStringList schemaStatements = {
    u"CREATE TABLE record (tbl INTEGER NOT NULL, id INTEGER NOT NULL, PRIMARY KEY (tbl, id)) WITHOUT ROWID"_s,
    u"CREATE TABLE field (tbl INTEGER NOT NULL, fkey TEXT NOT NULL, id INTEGER NOT NULL, name TEXT NOT NULL,"
    " type TEXT NOT NULL, value TEXT NOT NULL, PRIMARY KEY (tbl, fkey, id)) WITHOUT ROWID"_s,
    u"CREATE INDEX field_by_record ON field (tbl, id)"_s,
    u"CREATE INDEX device_number ON field (value COLLATE NOCASE) WHERE tbl = 1 AND fkey = 'ext'"_s,
    u"CREATE TABLE next_id (tbl INTEGER PRIMARY KEY, next INTEGER NOT NULL)"_s,
    u"CREATE TABLE account (name TEXT PRIMARY KEY COLLATE NOCASE, salt BLOB NOT NULL, hash BLOB NOT NULL,"
    " iterations INTEGER NOT NULL)"_s,
    // The two System blocks exist from the start; ids 1 and 2 of the System table.
    u"INSERT INTO record (tbl, id) VALUES (2, 1), (2, 2)"_s,
    u"INSERT INTO next_id (tbl, next) VALUES (1, 1), (2, 3), (3, 1), (4, 1), (5, 1), (6, 1)"_s,
};

enum Slot {
    SelectIds,
    SelectExists,
    SelectFields,
    SelectField,
    UpsertField,
    DeleteField,
    SelectColumn,
    SelectNextId,
    UpdateNextId,
    InsertRecord,
    DeleteRecordFields,
    DeleteRecordRow,
    SelectDevice,
    Savepoint,
    ReleaseSavepoint,
    RollbackToSavepoint,
    SlotCount
};

QString connectionName()
{
    static QAtomicInteger<int> counter;
    return u"quillserver-store-%1"_s.arg(counter.fetchAndAddRelaxed(1));
}

} // namespace

QString fieldKey(QStringView name)
{
    return name.toString().toLower();
}

std::optional<Table> tableFromName(QStringView name)
{
    static const std::pair<QString, Table> names[] = {
        {u"exts"_s, Table::Exts},       {u"system"_s, Table::System},       {u"ab"_s, Table::AB},
        {u"routing"_s, Table::Routing}, {u"campaigns"_s, Table::Campaigns}, {u"scripts"_s, Table::Scripts},
    };
    const QString key = name.trimmed().toString().toLower();
    for (const auto &[text, table] : names) {
        if (key == text)
            return table;
    }
    return std::nullopt;
}

QString tableName(Table table)
{
    switch (table) {
    case Table::Exts:
        return u"Exts"_s;
    case Table::System:
        return u"System"_s;
    case Table::AB:
        return u"AB"_s;
    case Table::Routing:
        return u"Routing"_s;
    case Table::Campaigns:
        return u"Campaigns"_s;
    case Table::Scripts:
        return u"Scripts"_s;
    }
    return {};
}

Store::Store() : m_connection(connectionName()) {}

Store::~Store()
{
    close();
}

QSqlDatabase Store::database() const
{
    return QSqlDatabase::database(m_connection, false);
}

bool Store::isOpen() const
{
    return QSqlDatabase::contains(m_connection) && database().isOpen();
}

QString Store::lastError() const
{
    return m_error;
}

bool Store::open(const QString &file, QString *error)
{
    close();
    const auto failWith = [&](const QString &message) {
        m_error = message;
        if (error)
            *error = message;
        close();
        return false;
    };
    const QFileInfo info(file);
    if (!info.absoluteDir().exists() && !QDir().mkpath(info.absolutePath()))
        return failWith(u"cannot create the folder %1"_s.arg(info.absolutePath()));
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, m_connection);
        db.setDatabaseName(file);
        if (!db.open())
            return failWith(u"cannot open %1: %2"_s.arg(file, db.lastError().text()));
    }
    m_queries.fill(nullptr, SlotCount);
    QSqlQuery pragma(database());
    if (!pragma.exec(u"PRAGMA journal_mode=WAL"_s) || !pragma.next() ||
        pragma.value(0).toString().compare(u"wal"_s, Qt::CaseInsensitive) != 0)
        return failWith(u"%1 cannot use write-ahead logging"_s.arg(file));
    // FULL: a commit is on disk when the command that made it is answered, even across a power cut.
    // Temporary files in memory: each command's savepoint inside a group of writes keeps its undo
    // journal there, and on disk that costs a write call for every page it touches.
    if (!exec(u"PRAGMA synchronous=FULL"_s) || !exec(u"PRAGMA busy_timeout=5000"_s) ||
        !exec(u"PRAGMA cache_size=-32000"_s) || !exec(u"PRAGMA temp_store=MEMORY"_s))
        return failWith(m_error);

    if (!pragma.exec(u"PRAGMA user_version"_s) || !pragma.next())
        return failWith(u"cannot read the schema version of %1"_s.arg(file));
    const int version = pragma.value(0).toInt();
    if (version > SchemaVersion)
        return failWith(u"%1 was written by a newer server (schema %2, this server knows %3)"_s.arg(file)
                            .arg(version)
                            .arg(SchemaVersion));
    if (version == 0) {
        if (!pragma.exec(u"SELECT count(*) FROM sqlite_master"_s) || !pragma.next())
            return failWith(u"cannot read %1"_s.arg(file));
        if (pragma.value(0).toInt() > 0)
            return failWith(u"%1 is not a QuillServer database"_s.arg(file));
        if (!createSchema())
            return failWith(u"cannot create the tables in %1: %2"_s.arg(file, m_error));
    }
    // Later schema versions upgrade here, one step per version, each in its own transaction.
    return true;
}

bool Store::createSchema()
{
    if (!begin())
        return false;
    for (const QString &statement : schemaStatements) {
        if (!exec(statement)) {
            rollback();
            return false;
        }
    }
    if (!exec(u"PRAGMA user_version=%1"_s.arg(SchemaVersion))) {
        rollback();
        return false;
    }
    return commit();
}

void Store::close()
{
    m_inGroup = false; // an open group's transaction ends with the connection, undone
    m_inCommand = false;
    qDeleteAll(m_queries);
    m_queries.clear();
    sqlite3_finalize(m_columnStatement);
    m_columnStatement = nullptr;
    if (QSqlDatabase::contains(m_connection)) {
        {
            QSqlDatabase db = database();
            if (db.isOpen())
                db.close();
        }
        QSqlDatabase::removeDatabase(m_connection);
    }
}

bool Store::exec(const QString &statement)
{
    QSqlQuery query(database());
    if (!query.exec(statement))
        return fail(query);
    return true;
}

bool Store::fail(const QSqlQuery &query)
{
    m_error = query.lastError().text();
    return false;
}

bool Store::read(QSqlQuery &query)
{
    if (query.exec())
        return true;
    // A read that failed must not pass for "no such record": the command is refused instead, so
    // that a window never loads defaults over what is really stored.
    m_readFailed = true;
    return fail(query);
}

sqlite3_stmt *Store::columnStatement()
{
    if (m_columnStatement)
        return m_columnStatement;
    const QVariant handle = database().driver()->handle();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return nullptr;
    sqlite3 *connection = *static_cast<sqlite3 *const *>(handle.constData());
    if (!connection ||
        sqlite3_prepare_v2(connection, "SELECT id, type, value FROM field WHERE tbl = ?1 AND fkey = ?2 ORDER BY id", -1,
                           &m_columnStatement, nullptr) != SQLITE_OK) {
        sqlite3_finalize(m_columnStatement);
        m_columnStatement = nullptr;
    }
    return m_columnStatement;
}

QSqlQuery &Store::prepared(int slot, const QString &statement)
{
    if (!m_queries[slot]) {
        m_queries[slot] = new QSqlQuery(database());
        m_queries[slot]->setForwardOnly(true);
        m_queries[slot]->prepare(statement);
    }
    return *m_queries[slot];
}

bool Store::begin()
{
    m_readFailed = false;
    if (m_inGroup) {
        QSqlQuery &savepoint = prepared(Savepoint, u"SAVEPOINT command"_s);
        if (!savepoint.exec())
            return fail(savepoint);
        m_inCommand = true;
        return true;
    }
    if (!database().transaction()) {
        m_error = database().lastError().text();
        return false;
    }
    return true;
}

bool Store::commit()
{
    if (m_inGroup) {
        QSqlQuery &release = prepared(ReleaseSavepoint, u"RELEASE command"_s);
        if (!release.exec()) {
            fail(release);
            rollback();
            return false;
        }
        m_inCommand = false;
        return true;
    }
    if (!database().commit()) {
        m_error = database().lastError().text();
        database().rollback();
        return false;
    }
    return true;
}

void Store::rollback()
{
    if (!m_inGroup) {
        database().rollback();
        return;
    }
    if (!std::exchange(m_inCommand, false))
        return; // undone already
    // lastError() keeps saying why the command failed: these statements do not set it.
    // Without the savepoint the transaction is gone: SQLite has undone the whole group.
    if (!prepared(RollbackToSavepoint, u"ROLLBACK TO command"_s).exec() ||
        !prepared(ReleaseSavepoint, u"RELEASE command"_s).exec()) {
        m_inGroup = false;
        database().rollback();
    }
}

bool Store::beginGroup()
{
    if (m_inGroup)
        return true;
    if (!begin())
        return false;
    m_inGroup = true;
    return true;
}

bool Store::commitGroup()
{
    if (!m_inGroup)
        return true;
    m_inGroup = false;
    m_inCommand = false;
    return commit();
}

QList<qint64> Store::ids(Table table)
{
    QSqlQuery &query = prepared(SelectIds, u"SELECT id FROM record WHERE tbl = ? ORDER BY id"_s);
    query.bindValue(0, int(table));
    QList<qint64> result;
    if (!read(query))
        return result;
    while (query.next())
        result.append(query.value(0).toLongLong());
    query.finish();
    return result;
}

bool Store::exists(Table table, qint64 id)
{
    QSqlQuery &query = prepared(SelectExists, u"SELECT 1 FROM record WHERE tbl = ? AND id = ?"_s);
    query.bindValue(0, int(table));
    query.bindValue(1, id);
    const bool found = read(query) && query.next();
    query.finish();
    return found;
}

bool Store::isEmpty()
{
    QSqlQuery query(database());
    // The two System blocks always exist; empty means that nothing has been stored in any table.
    return query.exec(
               u"SELECT NOT EXISTS (SELECT 1 FROM field) AND NOT EXISTS (SELECT 1 FROM record WHERE tbl <> 2)"_s) &&
           query.next() && query.value(0).toBool();
}

std::optional<qint64> Store::SystemBlockId(QStringView block)
{
    const QStringView name = block.trimmed();
    if (name.compare(u"PBX", Qt::CaseInsensitive) == 0)
        return 1;
    if (name.compare(u"FEATURES", Qt::CaseInsensitive) == 0)
        return 2;
    return std::nullopt;
}

std::optional<qint64> Store::createRecord(Table table)
{
    QSqlQuery &next = prepared(SelectNextId, u"SELECT next FROM next_id WHERE tbl = ?"_s);
    next.bindValue(0, int(table));
    if (!next.exec() || !next.next()) {
        fail(next);
        return std::nullopt;
    }
    const qint64 id = next.value(0).toLongLong();
    next.finish();
    QSqlQuery &advance = prepared(UpdateNextId, u"UPDATE next_id SET next = ? WHERE tbl = ?"_s);
    advance.bindValue(0, id + 1);
    advance.bindValue(1, int(table));
    if (!advance.exec()) {
        fail(advance);
        return std::nullopt;
    }
    QSqlQuery &insert = prepared(InsertRecord, u"INSERT INTO record (tbl, id) VALUES (?, ?)"_s);
    insert.bindValue(0, int(table));
    insert.bindValue(1, id);
    if (!insert.exec()) {
        fail(insert);
        return std::nullopt;
    }
    return id;
}

bool Store::deleteRecord(Table table, qint64 id)
{
    QSqlQuery &fieldsGone = prepared(
        DeleteRecordFields, u"DELETE FROM field INDEXED BY field_by_record WHERE tbl = ? AND id = ?"_s);
    fieldsGone.bindValue(0, int(table));
    fieldsGone.bindValue(1, id);
    if (!fieldsGone.exec())
        return fail(fieldsGone);
    QSqlQuery &rowGone = prepared(DeleteRecordRow, u"DELETE FROM record WHERE tbl = ? AND id = ?"_s);
    rowGone.bindValue(0, int(table));
    rowGone.bindValue(1, id);
    if (!rowGone.exec())
        return fail(rowGone);
    return true;
}

QList<StoredField> Store::fields(Table table, qint64 id)
{
    QSqlQuery &query = prepared(
        SelectFields,
        u"SELECT name, type, value FROM field INDEXED BY field_by_record WHERE tbl = ? AND id = ? ORDER BY fkey"_s);
    query.bindValue(0, int(table));
    query.bindValue(1, id);
    QList<StoredField> result;
    if (!read(query))
        return result;
    while (query.next()) {
        const QString type = query.value(1).toString();
        result.append(
            {query.value(0).toString(), type.isEmpty() ? u'S' : type.at(0), query.value(2).toString()});
    }
    query.finish();
    return result;
}

StoredField Store::field(Table table, qint64 id, QStringView name)
{
    QSqlQuery &query =
        prepared(SelectField, u"SELECT name, type, value FROM field WHERE tbl = ? AND fkey = ? AND id = ?"_s);
    query.bindValue(0, int(table));
    query.bindValue(1, fieldKey(name));
    query.bindValue(2, id);
    StoredField result;
    if (read(query) && query.next()) {
        const QString type = query.value(1).toString();
        result = {query.value(0).toString(), type.isEmpty() ? u'S' : type.at(0), query.value(2).toString()};
    }
    query.finish();
    return result;
}

bool Store::setField(Table table, qint64 id, const QString &name, QChar type, const QString &value)
{
    if (value.isEmpty()) {
        QSqlQuery &remove =
            prepared(DeleteField, u"DELETE FROM field WHERE tbl = ? AND fkey = ? AND id = ?"_s);
        remove.bindValue(0, int(table));
        remove.bindValue(1, fieldKey(name));
        remove.bindValue(2, id);
        return remove.exec() || fail(remove);
    }
    QSqlQuery &upsert = prepared(
        UpsertField,
        u"INSERT OR REPLACE INTO field (tbl, fkey, id, name, type, value) VALUES (?, ?, ?, ?, ?, ?)"_s);
    upsert.bindValue(0, int(table));
    upsert.bindValue(1, fieldKey(name));
    upsert.bindValue(2, id);
    upsert.bindValue(3, name);
    upsert.bindValue(4, QString(type.isNull() ? u'S' : type));
    upsert.bindValue(5, value);
    return upsert.exec() || fail(upsert);
}

QList<StoredField> Store::column(Table table, QStringView name, const QList<qint64> &ids)
{
    QList<StoredField> result(ids.size());
    // A list of 100,000 devices reads millions of values: straight from SQLite they cost one string
    // each, through QSqlQuery a variant and a cached copy as well.
    if (sqlite3_stmt *statement = columnStatement()) {
        const QByteArray key = fieldKey(name).toUtf8();
        sqlite3_bind_int(statement, 1, int(table));
        sqlite3_bind_text(statement, 2, key.constData(), int(key.size()), SQLITE_STATIC);
        const QString asked = name.toString();
        qsizetype row = 0;
        int step = SQLITE_ROW;
        while (row < ids.size() && (step = sqlite3_step(statement)) == SQLITE_ROW) {
            const qint64 id = sqlite3_column_int64(statement, 0);
            while (row < ids.size() && ids[row] < id)
                ++row;
            if (row < ids.size() && ids[row] == id) {
                const auto *type = sqlite3_column_text(statement, 1);
                const auto *value = reinterpret_cast<const char *>(sqlite3_column_text(statement, 2));
                const int bytes = sqlite3_column_bytes(statement, 2);
                result[row] = {asked, type && *type ? QChar(char16_t(*type)) : u'S', QString::fromUtf8(value, bytes)};
                ++row;
            }
        }
        if (step != SQLITE_ROW && step != SQLITE_DONE) {
            m_error = QString::fromUtf8(sqlite3_errmsg(sqlite3_db_handle(statement)));
            m_readFailed = true;
        }
        sqlite3_reset(statement);
        sqlite3_clear_bindings(statement);
        return result;
    }
    QSqlQuery &query =
        prepared(SelectColumn, u"SELECT id, type, value FROM field WHERE tbl = ? AND fkey = ? ORDER BY id"_s);
    query.bindValue(0, int(table));
    query.bindValue(1, fieldKey(name));
    if (!read(query))
        return result;
    // Every value of the column carries the name as asked (one shared string), not as stored.
    const QString asked = name.toString();
    qsizetype row = 0;
    // Both sides are in id order: walk them together.
    while (query.next() && row < ids.size()) {
        const qint64 id = query.value(0).toLongLong();
        while (row < ids.size() && ids[row] < id)
            ++row;
        if (row < ids.size() && ids[row] == id) {
            const QString type = query.value(1).toString();
            result[row] = {asked, type.isEmpty() ? u'S' : type.at(0), query.value(2).toString()};
            ++row;
        }
    }
    query.finish();
    return result;
}

std::optional<qint64> Store::deviceByExt(const QString &number)
{
    // The literal terms let SQLite use the partial index device_number.
    QSqlQuery &query = prepared(
        SelectDevice,
        u"SELECT id FROM field WHERE tbl = 1 AND fkey = 'ext' AND value = ? COLLATE NOCASE ORDER BY id LIMIT 1"_s);
    query.bindValue(0, number.trimmed());
    std::optional<qint64> result;
    if (read(query) && query.next())
        result = query.value(0).toLongLong();
    query.finish();
    return result;
}

bool Store::setAccount(const QString &user, const Account &account)
{
    QSqlQuery query(database());
    query.prepare(u"INSERT OR REPLACE INTO account (name, salt, hash, iterations) VALUES (?, ?, ?, ?)"_s);
    query.addBindValue(user);
    query.addBindValue(account.salt);
    query.addBindValue(account.hash);
    query.addBindValue(account.iterations);
    return query.exec() || fail(query);
}

std::optional<Account> Store::account(const QString &user)
{
    QSqlQuery query(database());
    query.prepare(u"SELECT salt, hash, iterations FROM account WHERE name = ?"_s);
    query.addBindValue(user);
    if (!query.exec() || !query.next())
        return std::nullopt;
    return Account{query.value(0).toByteArray(), query.value(1).toByteArray(), query.value(2).toInt()};
}
