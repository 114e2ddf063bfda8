// SPDX-License-Identifier: GPL-3.0-or-later
#include "contactsdatabase.h"

#include <QDataStream>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLoggingCategory>
#include <QtConcurrent/QtConcurrentRun>

#include <mdbtools.h>

#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <mutex>
#include <optional>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

// libmdb 1.0 needs no mdb_init()/mdb_exit(): the header marks both as deprecated no-ops, so they
// are not called. Each read opens its own handle (libmdb's handles are not thread-safe) inside a
// child process of its own.

Q_LOGGING_CATEGORY(lcCampaignDatabase, "quill.campaign.database", QtWarningMsg)

namespace ContactsDatabase {

namespace {

// What a read hands back from the child process: a failure, its message and up to two lists.
struct Reply
{
    Failure failure = Failure::None;
    QString error;
    QStringList first;
    QStringList second;

    bool ok() const { return failure == Failure::None; }
};

QString shown(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

Reply failed(Failure failure, const QString &error)
{
    return {failure, error, {}, {}};
}

// Jet files begin with this signature, then the name of their engine; the byte at 0x14 is the
// version, which fixes the page size. Every file is a whole number of pages.
constexpr char jetSignature[] = "\x00\x01\x00\x00Standard Jet DB";
constexpr char aceSignature[] = "\x00\x01\x00\x00Standard ACE DB";
constexpr qsizetype signatureSize = sizeof(jetSignature) - 1;
constexpr qsizetype versionOffset = 0x14;
constexpr int newestVersion = 0x06; // Access 2019
// The catalogue (MSysObjects) starts on page 2, so anything shorter cannot be read.
constexpr qint64 fewestPages = 3;

// Checks before libmdb sees the file: that it is there, readable and an Access database of a
// plausible size. Returns the failure, or nothing when the file may be handed on.
std::optional<Reply> checkFile(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return failed(Failure::Missing, u"The file %1 does not exist."_s.arg(shown(path)));
    if (info.isDir())
        return failed(Failure::Unreadable, u"%1 is a folder, not a database file."_s.arg(shown(path)));
    if (!info.isFile()) // a pipe or a device would block or never end
        return failed(Failure::Unreadable, u"%1 is not a database file."_s.arg(shown(path)));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failed(Failure::Unreadable,
                      u"The file %1 cannot be read: %2."_s.arg(shown(path), file.errorString()));
    const qint64 size = file.size();
    if (size == 0)
        return failed(Failure::NotDatabase, u"The file %1 is empty."_s.arg(shown(path)));
    const QByteArray head = file.read(versionOffset + 1);
    if (head.size() <= versionOffset || (!head.startsWith(QByteArrayView(jetSignature, signatureSize)) &&
                                         !head.startsWith(QByteArrayView(aceSignature, signatureSize))))
        return failed(Failure::NotDatabase, u"The file %1 is not an Access database."_s.arg(shown(path)));
    const int version = static_cast<unsigned char>(head.at(versionOffset));
    if (version > newestVersion)
        return failed(
            Failure::NotDatabase,
            u"The file %1 is an Access database of an unknown version (%2)."_s.arg(shown(path)).arg(version));
    const qint64 pageSize = version == 0 ? 2048 : 4096;
    if (size < fewestPages * pageSize)
        return failed(Failure::Damaged, u"The file %1 is cut short: it is too small to hold a "
                                        "database."_s.arg(shown(path)));
    if (size % pageSize != 0)
        return failed(Failure::Damaged, u"The file %1 is cut short or damaged: it is not a whole number "
                                        "of database pages."_s.arg(shown(path)));
    return std::nullopt;
}

// --- The child process -----------------------------------------------------------------------------

QByteArray encode(const Reply &reply)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_6_4);
    out << static_cast<qint32>(reply.failure) << reply.error << reply.first << reply.second;
    return bytes;
}

std::optional<Reply> decode(const QByteArray &bytes)
{
    QDataStream in(bytes);
    in.setVersion(QDataStream::Qt_6_4);
    qint32 failure = 0;
    Reply reply;
    in >> failure >> reply.error >> reply.first >> reply.second;
    if (in.status() != QDataStream::Ok || failure < 0 ||
        failure > static_cast<qint32>(Failure::ColumnsUnknown))
        return std::nullopt;
    reply.failure = static_cast<Failure>(failure);
    return reply;
}

bool writeAll(int fd, const QByteArray &bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.constData() + done, size_t(bytes.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        done += n;
    }
    return true;
}

// How much of libmdb's messages is kept: on some damaged pages it complains without end.
constexpr qsizetype messagesSize = 64 * 1024;

// Whether libmdb said that it tried to read a page past the end of the file.
bool readPastEnd(int messagesFd)
{
    QByteArray messages(messagesSize, '\0');
    const ssize_t n = ::pread(messagesFd, messages.data(), size_t(messages.size()), 0);
    if (n <= 0)
        return false;
    messages.truncate(n);
    return messages.contains("beyond EOF") || messages.contains("reading page");
}

// One read at a time, from the fork to the child's end. A child is a copy of this process taken
// while its other threads run; with several reads side by side a child could start with a lock held
// by another read's thread and never finish (seen as an empty listing after the time limit). It also
// keeps a fork from inheriting another read's pipe before its writing end is closed.
std::mutex readMutex;

// Runs work in a child process and returns what it wrote, or the failure of the child: libmdb trusts
// the offsets it reads and may crash or loop on a damaged file.
Reply runIsolated(const QString &path, int timeoutMs, const std::function<Reply()> &work)
{
    const std::lock_guard oneAtATime(readMutex);
    int fds[2];
    pid_t pid = -1;
    {
        if (::pipe2(fds, O_CLOEXEC) != 0) {
            qCWarning(lcCampaignDatabase) << "no pipe for reading" << path << ::strerror(errno);
            return failed(Failure::Unreadable, u"The file %1 cannot be read: no pipe."_s.arg(shown(path)));
        }
        pid = ::fork();
        if (pid == 0) {
            ::close(fds[0]);
            const rlimit noCore{0, 0}; // a crash on a damaged file leaves no core file behind
            ::setrlimit(RLIMIT_CORE, &noCore);
            // libmdb's complaints are not for the user's terminal; they are kept to tell a file that
            // is cut short, which libmdb reads as if the missing pages were empty.
            const int devNull = ::open("/dev/null", O_WRONLY);
            if (devNull >= 0)
                ::dup2(devNull, STDOUT_FILENO);
            const int messages = ::memfd_create("libmdb-messages", MFD_ALLOW_SEALING);
            if (messages >= 0 && ::ftruncate(messages, messagesSize) == 0)
                ::fcntl(messages, F_ADD_SEALS, F_SEAL_GROW | F_SEAL_SHRINK);
            if (messages >= 0 || devNull >= 0)
                ::dup2(messages >= 0 ? messages : devNull, STDERR_FILENO);
            Reply reply = work();
            if (reply.failure != Failure::Damaged && messages >= 0 && readPastEnd(messages))
                reply = failed(Failure::Damaged, u"The file %1 is cut short: parts of the database are "
                                                 "missing."_s.arg(shown(path)));
            const bool written = writeAll(fds[1], encode(reply));
            ::_exit(written ? 0 : 1); // the child's memory, handles and all, goes with it
        }
        ::close(fds[1]);
    }
    if (pid < 0) {
        ::close(fds[0]);
        qCWarning(lcCampaignDatabase) << "no child process for reading" << path << ::strerror(errno);
        return failed(Failure::Unreadable, u"The file %1 cannot be read: no process."_s.arg(shown(path)));
    }

    QByteArray output;
    bool timedOut = false;
    const QDeadlineTimer deadline(timeoutMs);
    for (;;) {
        pollfd ready{fds[0], POLLIN, 0};
        const int polled = ::poll(&ready, 1, int(qMax<qint64>(0, deadline.remainingTime())));
        if (polled < 0 && errno == EINTR)
            continue;
        if (polled == 0) {
            timedOut = true;
            break;
        }
        char buffer[16384];
        const ssize_t n = ::read(fds[0], buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        output.append(buffer, n);
    }
    ::close(fds[0]);
    if (timedOut)
        ::kill(pid, SIGKILL);
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }

    if (timedOut) {
        qCWarning(lcCampaignDatabase)
            << "reading" << path << "took longer than" << timeoutMs << "ms; given up";
        return failed(Failure::Damaged,
                      u"Reading %1 took too long; the file may be damaged."_s.arg(shown(path)));
    }
    if (WIFSIGNALED(status)) {
        qCWarning(lcCampaignDatabase) << "reading" << path << "stopped with signal" << WTERMSIG(status);
        return failed(Failure::Damaged, u"The file %1 is damaged and cannot be read."_s.arg(shown(path)));
    }
    const std::optional<Reply> reply = decode(output);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || !reply) {
        qCWarning(lcCampaignDatabase) << "reading" << path << "gave no answer; exit status" << status;
        return failed(Failure::Damaged, u"The file %1 is damaged and cannot be read."_s.arg(shown(path)));
    }
    if (!reply->ok())
        qCInfo(lcCampaignDatabase) << "reading" << path << "failed:" << reply->error;
    return *reply;
}

// --- Reading with libmdb (in the child) ------------------------------------------------------------

QString nameOf(const char *name)
{
    return QString::fromUtf8(name);
}

bool isListedTable(const MdbCatalogEntry *entry)
{
    return entry->object_type == MDB_TABLE && !mdb_is_system_table(const_cast<MdbCatalogEntry *>(entry)) &&
           !nameOf(entry->object_name).toUpper().startsWith("MSYS"_L1);
}

bool isListedQuery(const MdbCatalogEntry *entry)
{
    return entry->object_type == MDB_QUERY && !nameOf(entry->object_name).startsWith(u'~');
}

// One row of MSysQueries: a part of a stored query's definition.
struct QueryRow
{
    int attribute = 0;
    int flag = 0;
    QString name1;
    QString name2;
    QString expression;
};

// Kinds of query, as the definition's row with attribute 1 gives them (none means select).
enum QueryKind {
    Select = 1,
    MakeTable,
    Append,
    Update,
    Delete,
    Crosstab,
    DataDefinition,
    PassThrough,
    Union
};
enum QueryAttribute { KindRow = 1, SourceRow = 5, ColumnRow = 6 };

// An output column: its name and the table (or alias) it was read from, if any.
struct OutputColumn
{
    QString name;
    QString qualifier;
};

using ColumnsOrError = std::pair<QList<OutputColumn>, QString>;

ColumnsOrError columnsError(const QString &why)
{
    return {{}, why};
}

// The parts of a plain column reference ("Col", "[T].[Col]", "T.*"), or nothing for any other
// expression.
std::optional<QStringList> referenceParts(QStringView expression)
{
    QStringList parts;
    const QStringView text = expression.trimmed();
    qsizetype i = 0;
    while (i < text.size()) {
        QString part;
        if (text[i] == u'[') {
            const qsizetype close = text.indexOf(u']', i + 1);
            if (close < 0)
                return std::nullopt;
            part = text.mid(i + 1, close - i - 1).toString();
            i = close + 1;
        } else if (text[i] == u'*') {
            part = u"*"_s;
            ++i;
        } else {
            const qsizetype start = i;
            while (i < text.size() && (text[i].isLetterOrNumber() || text[i] == u'_'))
                ++i;
            part = text.mid(start, i - start).toString();
        }
        if (part.isEmpty() || (!parts.isEmpty() && parts.last() == u'*'))
            return std::nullopt;
        parts << part;
        if (i == text.size())
            break;
        if (text[i] != u'.')
            return std::nullopt;
        ++i;
        if (i == text.size())
            return std::nullopt;
    }
    if (parts.isEmpty() || parts.size() > 3 || (parts.last().front().isDigit() && parts.size() == 1))
        return std::nullopt;
    return parts;
}

// Marks the characters of SQL text that are outside brackets, quotes and parentheses.
QList<bool> topLevel(QStringView sql)
{
    QList<bool> mask(sql.size(), false);
    int depth = 0;
    QChar quote;
    for (qsizetype i = 0; i < sql.size(); ++i) {
        const QChar c = sql[i];
        if (!quote.isNull()) {
            if (c == quote)
                quote = QChar();
            continue;
        }
        if (c == u'[')
            quote = u']';
        else if (c == u'"' || c == u'\'')
            quote = c;
        else if (c == u'(')
            ++depth;
        else if (c == u')')
            depth = qMax(0, depth - 1);
        else if (depth == 0)
            mask[i] = true;
    }
    return mask;
}

// Where the word (in upper case) stands alone at the top level of sql from `from` on, or -1.
qsizetype findWord(QStringView sql, const QList<bool> &mask, QLatin1StringView word, qsizetype from = 0)
{
    auto isWordChar = [&](qsizetype at) {
        return at >= 0 && at < sql.size() && (sql[at].isLetterOrNumber() || sql[at] == u'_');
    };
    for (qsizetype i = sql.indexOf(word, from, Qt::CaseInsensitive); i >= 0;
         i = sql.indexOf(word, i + 1, Qt::CaseInsensitive)) {
        if (mask[i] && !isWordChar(i - 1) && !isWordChar(i + word.size()))
            return i;
    }
    return -1;
}

// The select list of the first SELECT of a union query's text, as (expression, alias) pairs.
std::optional<QList<std::pair<QString, QString>>> selectList(const QString &sql)
{
    const QList<bool> mask = topLevel(sql);
    qsizetype start = findWord(sql, mask, "SELECT"_L1);
    if (start < 0)
        return std::nullopt;
    start += 6;
    qsizetype end = sql.size();
    for (const auto word : {"FROM"_L1, "WHERE"_L1, "UNION"_L1, "GROUP"_L1, "ORDER"_L1, "HAVING"_L1}) {
        const qsizetype at = findWord(sql, mask, word, start);
        if (at >= 0)
            end = qMin(end, at);
    }
    QStringView list = QStringView(sql).mid(start, end - start).trimmed();
    for (const auto word : {"DISTINCTROW"_L1, "DISTINCT"_L1, "ALL"_L1}) {
        if (list.startsWith(word, Qt::CaseInsensitive) && list.size() > word.size() &&
            list[word.size()].isSpace())
            list = list.mid(word.size()).trimmed();
    }
    if (list.startsWith("TOP"_L1, Qt::CaseInsensitive))
        return std::nullopt;

    QList<std::pair<QString, QString>> items;
    const qsizetype offset = list.data() - sql.constData();
    qsizetype itemStart = 0;
    for (qsizetype i = 0; i <= list.size(); ++i) {
        if (i < list.size() && !(list[i] == u',' && mask[offset + i]))
            continue;
        const QStringView item = list.mid(itemStart, i - itemStart).trimmed();
        itemStart = i + 1;
        if (item.isEmpty())
            return std::nullopt;
        const QString itemText = item.toString();
        const QList<bool> itemMask = topLevel(itemText);
        qsizetype as = -1;
        for (qsizetype at = findWord(itemText, itemMask, "AS"_L1); at >= 0;
             at = findWord(itemText, itemMask, "AS"_L1, at + 1))
            as = at;
        if (as < 0) {
            items.append({itemText, QString()});
            continue;
        }
        const std::optional<QStringList> alias = referenceParts(QStringView(itemText).mid(as + 2));
        if (!alias || alias->size() != 1)
            return std::nullopt;
        items.append({itemText.left(as).trimmed(), alias->first()});
    }
    return items;
}

class Reader
{
public:
    explicit Reader(MdbHandle *mdb) : m_mdb(mdb) {}

    const MdbCatalogEntry *find(const QString &name, bool (*listed)(const MdbCatalogEntry *)) const
    {
        const MdbCatalogEntry *ignoringCase = nullptr;
        for (guint i = 0; i < m_mdb->catalog->len; ++i) {
            const auto *entry = static_cast<const MdbCatalogEntry *>(g_ptr_array_index(m_mdb->catalog, i));
            if (!listed(entry))
                continue;
            const QString entryName = nameOf(entry->object_name);
            if (entryName == name)
                return entry;
            if (!ignoringCase && entryName.compare(name, Qt::CaseInsensitive) == 0)
                ignoringCase = entry;
        }
        return ignoringCase;
    }

    std::optional<QStringList> tableColumns(const MdbCatalogEntry *entry) const
    {
        MdbTableDef *table = mdb_read_table(const_cast<MdbCatalogEntry *>(entry));
        if (!table || !mdb_read_columns(table))
            return std::nullopt;
        QStringList names;
        for (guint i = 0; i < table->columns->len; ++i)
            names << nameOf(static_cast<const MdbColumn *>(g_ptr_array_index(table->columns, i))->name);
        mdb_free_tabledef(table);
        return names;
    }

    // The columns of a table or query called name, each given the qualifier it was reached by.
    ColumnsOrError sourceColumns(const QString &name, const QString &qualifier, int depth)
    {
        auto anyTable = [](const MdbCatalogEntry *e) { return e->object_type == MDB_TABLE; };
        auto anyQuery = [](const MdbCatalogEntry *e) { return e->object_type == MDB_QUERY; };
        if (const MdbCatalogEntry *table = find(name, anyTable)) {
            const std::optional<QStringList> names = tableColumns(table);
            if (!names)
                return columnsError(u"the columns of its table %1 cannot be read"_s.arg(name));
            QList<OutputColumn> columns;
            for (const QString &column : *names)
                columns.append({column, qualifier});
            return {columns, {}};
        }
        if (const MdbCatalogEntry *query = find(name, anyQuery)) {
            auto [columns, error] = queryColumns(query, depth + 1);
            for (OutputColumn &column : columns)
                column.qualifier = qualifier;
            return {columns, error};
        }
        if (name.contains(u';') || name.contains(u'\\') || name.contains(u'/'))
            return columnsError(u"it reads from another database"_s);
        return columnsError(u"it reads from %1, which is not in the database"_s.arg(name));
    }

    ColumnsOrError queryColumns(const MdbCatalogEntry *query, int depth)
    {
        if (depth > maxDepth)
            return columnsError(u"its queries refer to each other too deeply"_s);
        if (!m_rowsRead && !readQueryRows())
            return columnsError(u"the query definitions (MSysQueries) cannot be read"_s);
        const QList<QueryRow> rows = m_rows.value(query->table_pg & objectIdMask);
        if (rows.isEmpty())
            return columnsError(u"its definition is missing"_s);

        int kind = Select;
        QList<std::pair<QString, QString>> items; // expression, alias
        QHash<QString, QString> sources;          // alias or name in upper case -> table or query
        QStringList sourceOrder;                  // aliases or names as written
        QString unionText;
        for (const QueryRow &row : rows) {
            if (row.attribute == KindRow)
                kind = row.flag;
            else if (row.attribute == ColumnRow)
                items.append({row.expression, row.name1});
            else if (row.attribute == SourceRow) {
                if (unionText.isEmpty() && !row.expression.isEmpty())
                    unionText = row.expression;
                if (row.name1.isEmpty())
                    continue;
                const QString alias = row.name2.isEmpty() ? row.name1 : row.name2;
                sources.insert(alias.toUpper(), row.name1);
                sourceOrder << alias;
            }
        }
        switch (kind) {
        case Select:
        case MakeTable:
            break;
        case Union: {
            const auto list = selectList(unionText);
            if (!list)
                return columnsError(u"the first part of its union cannot be read"_s);
            items = *list;
            break;
        }
        case Crosstab:
            return columnsError(u"it is a crosstab query, whose columns depend on its data"_s);
        case Append:
            return columnsError(u"it is an append query, which returns no rows"_s);
        case Update:
            return columnsError(u"it is an update query, which returns no rows"_s);
        case Delete:
            return columnsError(u"it is a delete query, which returns no rows"_s);
        case DataDefinition:
            return columnsError(u"it is a data-definition query, which returns no rows"_s);
        case PassThrough:
            return columnsError(u"it is a pass-through query, whose rows come from another server"_s);
        default:
            return columnsError(u"its kind (%1) is unknown"_s.arg(kind));
        }

        QList<OutputColumn> columns;
        for (qsizetype place = 0; place < items.size(); ++place) {
            const auto &[expression, alias] = items.at(place);
            if (!alias.isEmpty()) {
                columns.append({alias, {}});
                continue;
            }
            const std::optional<QStringList> parts = referenceParts(expression);
            if (!parts) {
                // Access names an expression without alias by its place in the select list.
                columns.append({u"Expr%1"_s.arg(1000 + place), {}});
                continue;
            }
            if (parts->last() != u'*') {
                columns.append({parts->last(), parts->size() > 1 ? parts->at(parts->size() - 2) : QString()});
                continue;
            }
            if (kind == Union)
                return columnsError(u"its union selects \"*\""_s);
            const QStringList from =
                parts->size() > 1 ? QStringList{parts->at(parts->size() - 2)} : sourceOrder;
            for (const QString &qualifier : from) {
                const QString name = sources.value(qualifier.toUpper(), qualifier);
                auto [more, error] = sourceColumns(name, qualifier, depth);
                if (!error.isEmpty())
                    return columnsError(error);
                columns.append(more);
            }
        }
        // A name that comes from two tables is given with its table, as Access does; a query read
        // by another keeps the names so made.
        QHash<QString, int> uses;
        for (const OutputColumn &column : std::as_const(columns))
            ++uses[column.name.toUpper()];
        for (OutputColumn &column : columns) {
            if (uses.value(column.name.toUpper()) > 1 && !column.qualifier.isEmpty())
                column.name = column.qualifier + u'.' + column.name;
        }
        return {columns, {}};
    }

private:
    static constexpr int maxDepth = 16;
    static constexpr unsigned long objectIdMask = 0x00FFFFFF;
    static constexpr size_t bindSize = 200000; // long enough for a union query's text

    bool readQueryRows()
    {
        m_rowsRead = true;
        const MdbCatalogEntry *entry =
            find(u"MSysQueries"_s, [](const MdbCatalogEntry *e) { return e->object_type == MDB_TABLE; });
        if (!entry)
            return false;
        mdb_set_bind_size(m_mdb, bindSize);
        MdbTableDef *table = mdb_read_table(const_cast<MdbCatalogEntry *>(entry));
        if (!table || !mdb_read_columns(table))
            return false;
        const char *names[] = {"ObjectId", "Attribute", "Flag", "Name1", "Name2", "Expression"};
        std::vector<std::vector<char>> values(std::size(names), std::vector<char>(bindSize + 1, '\0'));
        for (size_t i = 0; i < std::size(names); ++i) {
            if (mdb_bind_column_by_name(table, const_cast<char *>(names[i]), values[i].data(), nullptr) < 0)
                return false;
        }
        mdb_rewind_table(table);
        while (mdb_fetch_row(table)) {
            auto text = [&](int i) { return QString::fromUtf8(values[i].data()); };
            const QueryRow row{text(1).toInt(), text(2).toInt(), text(3), text(4), text(5)};
            m_rows[static_cast<unsigned long>(text(0).toLongLong()) & objectIdMask].append(row);
            for (auto &value : values)
                value[0] = '\0'; // an empty (null) value leaves the buffer as it was
        }
        mdb_free_tabledef(table);
        return true;
    }

    MdbHandle *m_mdb;
    bool m_rowsRead = false;
    QHash<unsigned long, QList<QueryRow>> m_rows;
};

// Opens the file with libmdb and reads its catalogue; the handle is left to the child's exit.
std::pair<MdbHandle *, Reply> openDatabase(const QString &path)
{
    MdbHandle *mdb = mdb_open(QFile::encodeName(path).constData(), MDB_NOFLAGS);
    if (!mdb)
        return {nullptr, failed(Failure::NotDatabase,
                                u"The file %1 cannot be opened as an Access database."_s.arg(shown(path)))};
    auto catalogues = [](const MdbCatalogEntry *e) {
        return e->object_type == MDB_TABLE && qstrcmp(e->object_name, "MSysObjects") == 0;
    };
    if (!mdb_read_catalog(mdb, MDB_ANY) || !mdb->catalog || !Reader(mdb).find(u"MSysObjects"_s, catalogues))
        return {nullptr,
                failed(Failure::Damaged,
                       u"The catalogue of %1 cannot be read; the file may be damaged."_s.arg(shown(path)))};
    return {mdb, {}};
}

Reply listInChild(const QString &path)
{
    const auto [mdb, failure] = openDatabase(path);
    if (!mdb)
        return failure;
    Reply reply;
    for (guint i = 0; i < mdb->catalog->len; ++i) {
        const auto *entry = static_cast<const MdbCatalogEntry *>(g_ptr_array_index(mdb->catalog, i));
        if (isListedTable(entry))
            reply.first << nameOf(entry->object_name);
        else if (isListedQuery(entry))
            reply.second << nameOf(entry->object_name);
    }
    return reply;
}

Reply columnsInChild(const QString &path, const QString &source)
{
    const auto [mdb, failure] = openDatabase(path);
    if (!mdb)
        return failure;
    Reader reader(mdb);
    if (const MdbCatalogEntry *table = reader.find(source, isListedTable)) {
        const std::optional<QStringList> names = reader.tableColumns(table);
        if (!names)
            return failed(
                Failure::Damaged,
                u"The columns of the table %1 cannot be read; the file may be damaged."_s.arg(source));
        return {Failure::None, {}, *names, {}};
    }
    const MdbCatalogEntry *query = reader.find(source, isListedQuery);
    if (!query)
        return failed(Failure::UnknownSource,
                      u"The database %1 has no table or query called %2."_s.arg(shown(path), source));
    const auto [columns, error] = reader.queryColumns(query, 0);
    if (!error.isEmpty())
        return failed(Failure::ColumnsUnknown,
                      u"The columns of the query %1 cannot be worked out: %2."_s.arg(source, error));

    Reply reply;
    for (const OutputColumn &column : columns)
        reply.first << column.name;
    return reply;
}

} // namespace

Sources readSources(const QString &path, int timeoutMs)
{
    Reply reply = checkFile(path).value_or(Reply{});
    if (reply.ok())
        reply = runIsolated(path, timeoutMs, [&] { return listInChild(path); });
    if (!reply.ok())
        return {reply.failure, reply.error, {}, {}};
    return {Failure::None, {}, reply.first, reply.second};
}

Columns readColumns(const QString &path, const QString &source, int timeoutMs)
{
    Reply reply = checkFile(path).value_or(Reply{});
    if (reply.ok())
        reply = runIsolated(path, timeoutMs, [&] { return columnsInChild(path, source); });
    if (!reply.ok())
        return {reply.failure, reply.error, {}};
    return {Failure::None, {}, reply.first};
}

Proposals proposeColumns(const QStringList &columns)
{
    auto firstWhere = [&](auto fits) {
        for (const QString &column : columns) {
            if (fits(column.toUpper()))
                return column;
        }
        return QString();
    };
    Proposals proposals;
    proposals.id = firstWhere([](const QString &n) { return n.endsWith("ID"_L1) || n.endsWith("KEY"_L1); });
    proposals.telephone =
        firstWhere([](const QString &n) { return n.contains("PHONE"_L1) || n.contains("TEL"_L1); });
    proposals.name = firstWhere([](const QString &n) {
        return n.contains("CONTACT"_L1) || n.contains("NAME"_L1) || n.contains("COMPANY"_L1);
    });
    proposals.notes =
        firstWhere([](const QString &n) { return n.contains("NOTES"_L1) || n.contains("TEXT"_L1); });
    return proposals;
}

QFuture<Sources> readSourcesAsync(const QString &path, int timeoutMs)
{
    return QtConcurrent::run(readSources, path, timeoutMs);
}

QFuture<Columns> readColumnsAsync(const QString &path, const QString &source, int timeoutMs)
{
    return QtConcurrent::run(readColumns, path, source, timeoutMs);
}

} // namespace ContactsDatabase
