// SPDX-License-Identifier: GPL-3.0-or-later
#include "commands.h"

#include "tagentries.h"
#include "tagvalue.h"

#include <QDateTime>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <iterator>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

// Appends one sized entry, keeping the type letter the value was stored with. (AddVar would
// search the whole reply for an older entry of the name on every call: fine for a record, far too
// slow for a list of 100,000 rows, and the names here are unique by construction.)
void appendEntry(QString &out, QStringView name, QChar type, QStringView value)
{
    // A list reply holds millions of entries: the length is written without a string of its own.
    char16_t digits[20];
    qsizetype first = std::size(digits);
    qsizetype length = value.size();
    do {
        digits[--first] = char16_t(u'0' + length % 10);
        length /= 10;
    } while (length > 0);
    out += u'{';
    out += name;
    out += u'(';
    out += type;
    out += QStringView(digits + first, std::size(digits) - first);
    out += u")="_s;
    out += value;
    out += u'}';
}

// A refusal is one log line: keep it short and free of line breaks.
QString oneLine(QStringView text, qsizetype max = 80)
{
    QString line = text.left(max).toString();
    for (QChar &c : line) {
        if (c.unicode() < 0x20 || c.unicode() == 0x7f)
            c = u' ';
    }
    return text.size() > max ? line + u"..."_s : line;
}

// The names of a read's Fields: joined by ",", blanks around a name ignored, each name once.
QStringList fieldNames(QStringView text)
{
    QStringList names;
    QSet<QString> seen;
    for (QStringView part : text.split(u',')) {
        const QStringView name = part.trimmed();
        if (name.isEmpty() || seen.contains(fieldKey(name)))
            continue;
        seen.insert(fieldKey(name));
        names.append(name.toString());
    }
    return names;
}

// Ids joined by ","; empty parts are skipped. Nothing when a part is not a whole number.
std::optional<QList<qint64>> parseIds(QStringView text)
{
    QList<qint64> ids;
    for (QStringView part : text.split(u',')) {
        const QStringView trimmed = part.trimmed();
        if (trimmed.isEmpty())
            continue;
        bool ok = false;
        const qint64 id = trimmed.toLongLong(&ok);
        if (!ok)
            return std::nullopt;
        if (!ids.contains(id))
            ids.append(id);
    }
    return ids;
}

// "Id" and "<Table>Id" (ExtensionId, ABId, CampaignId, RoutingId, ScriptId, ...) stand for the
// record's id in reads; writes never store them.
bool isIdAlias(Table table, QStringView name)
{
    static const QStringList common = {u"id"_s};
    static const QHash<int, QStringList> perTable = {
        {int(Table::Exts), {u"extensionid"_s, u"extid"_s, u"extsid"_s, u"deviceid"_s}},
        {int(Table::System), {u"systemid"_s}},
        {int(Table::AB), {u"abid"_s}},
        {int(Table::Routing), {u"routingid"_s}},
        {int(Table::Campaigns), {u"campaignid"_s, u"campaignsid"_s}},
        {int(Table::Scripts), {u"scriptid"_s, u"scriptsid"_s}},
    };
    const QString key = fieldKey(name.trimmed());
    return common.contains(key) || perTable.value(int(table)).contains(key);
}

bool validFieldName(QStringView name)
{
    if (name.trimmed().isEmpty())
        return false;
    for (QChar c : name) {
        if (c == u'{' || c == u'}' || c == u'(' || c == u'=' || c == u',')
            return false;
    }
    return true;
}

// How GetList orders rows: absent values first, then numbers by value, then text without regard
// to case; ties keep id order (the sort is stable over rows read in id order).
struct SortKey
{
    int rank = 0; // 0 absent, 1 number, 2 text
    double number = 0;
    QString text;
};

SortKey sortKey(const StoredField &field)
{
    if (!field.present() || field.value.isEmpty())
        return {};
    const QStringView trimmed = QStringView(field.value).trimmed();
    qsizetype consumed = 0;
    const double number = leadingNumber(trimmed, &consumed);
    if (field.type == u'N' || (consumed > 0 && consumed == trimmed.size()))
        return {1, number, {}};
    return {2, 0, field.value.toCaseFolded()};
}

bool sortsBefore(const SortKey &a, const SortKey &b)
{
    if (a.rank != b.rank)
        return a.rank < b.rank;
    if (a.rank == 1)
        return a.number < b.number;
    return a.text < b.text;
}

} // namespace

bool wellFormedEntries(QStringView text)
{
    const qsizetype n = text.size();
    qsizetype at = 0;
    while (at < n) {
        if (isBlank(text[at])) {
            ++at;
            continue;
        }
        if (text[at] != u'{')
            return false;
        qsizetype cut = at + 1;
        while (cut < n && text[cut] != u'(' && text[cut] != u'=' && text[cut] != u'{' && text[cut] != u'}')
            ++cut;
        if (cut >= n || text[cut] == u'{' || text[cut] == u'}')
            return false;
        if (text[cut] == u'=') {
            const qsizetype close = text.indexOf(u'}', cut + 1);
            if (close < 0)
                return false;
            at = close + 1;
            continue;
        }
        qsizetype k = cut + 1;
        if (k < n && !isDigit(text[k]) && text[k] != u')')
            ++k; // the type letter
        const qsizetype firstDigit = k;
        qint64 length = 0;
        while (k < n && isDigit(text[k])) {
            length = length * 10 + (text[k].unicode() - u'0');
            if (length > n)
                return false;
            ++k;
        }
        if (k == firstDigit || k + 1 >= n || text[k] != u')' || text[k + 1] != u'=')
            return false;
        const qsizetype close = k + 2 + length;
        if (close >= n || text[close] != u'}')
            return false;
        at = close + 1;
    }
    return true;
}

// One command's run: its entries, the reply being built and what was refused.
class CommandProcessor::Run
{
public:
    Run(Store &store, const QString &command) : m_store(store), m_command(command) {}

    CommandOutcome execute();

private:
    const TagEntry *entry(QStringView name) const;
    std::optional<QString> text(QStringView name) const;
    void refuse(const QString &why);
    void startReply();
    bool storageFailed();

    void getList();
    void getField();
    void getFields();
    void setFields();
    void setBlock(const QString &idText);
    void setField();
    void deleteRecords();
    void abRebuild();

    // The record ids a write or read names; refuses and gives nothing when none can be used.
    // Ids that do not exist are refused (one line) while the others are used.
    std::optional<QList<qint64>> existingIds(const QString &idText);
    std::optional<QList<TagEntry>> recordFields();
    bool mergeFields(qint64 id, const QList<TagEntry> &fields);
    bool extFree(qint64 id, const QList<TagEntry> &fields, qsizetype targets);

    Store &m_store;
    const QString &m_command;
    QList<TagEntry> m_entries;
    QString m_word;
    Table m_table = Table::Exts;
    QString m_reply;
    QStringList m_refusals;
    bool m_failed = false;
};

CommandProcessor::CommandProcessor(Store &store) : m_store(store) {}

CommandOutcome CommandProcessor::execute(const QString &command)
{
    return Run(m_store, command).execute();
}

const TagEntry *CommandProcessor::Run::entry(QStringView name) const
{
    // The command's own tags are its top-level entries (sized ones first, as GetVar prefers them):
    // a device's notes inside Fields may hold any text, "{Id(S1)=3}" included, and must never be
    // taken for the command's Id.
    const TagEntry *plain = nullptr;
    for (const TagEntry &candidate : m_entries) {
        if (candidate.name.compare(name, Qt::CaseInsensitive) != 0)
            continue;
        if (candidate.sized)
            return &candidate;
        if (!plain)
            plain = &candidate;
    }
    return plain;
}

std::optional<QString> CommandProcessor::Run::text(QStringView name) const
{
    const TagEntry *found = entry(name);
    if (!found)
        return std::nullopt;
    return found->value;
}

void CommandProcessor::Run::refuse(const QString &why)
{
    m_refusals.append(why);
}

void CommandProcessor::Run::startReply()
{
    // Every reply begins with the command's Ref, so that the client's dispatcher finds it first.
    m_reply.clear();
    if (const auto ref = text(u"Ref"))
        AddVar(m_reply, u"Ref"_s, *ref);
}

bool CommandProcessor::Run::storageFailed()
{
    if (!m_failed) {
        m_failed = true;
        refuse(u"storage failure: "_s + m_store.lastError());
    }
    return false;
}

CommandOutcome CommandProcessor::Run::execute()
{
    CommandOutcome outcome;
    if (!wellFormedEntries(m_command)) {
        outcome.refusal =
            u"malformed command (%1 characters): %2"_s.arg(m_command.size()).arg(oneLine(m_command, 40));
        return outcome;
    }
    m_entries = splitEntries(m_command);
    const auto word = text(u"Cmd");
    if (!word || word->trimmed().isEmpty()) {
        outcome.refusal = u"command without Cmd: "_s + oneLine(m_command, 40);
        return outcome;
    }
    m_word = word->trimmed();
    const QString key = m_word.toLower();

    using Handler = void (Run::*)();
    static const QHash<QString, Handler> tableCommands = {
        {u"getlist"_s, &Run::getList},     {u"getfield"_s, &Run::getField},
        {u"getfields"_s, &Run::getFields}, {u"setfields"_s, &Run::setFields},
        {u"setfield"_s, &Run::setField},   {u"delete"_s, &Run::deleteRecords},
    };
    if (key == u"ping"_s) {
        startReply();
        m_reply += u"{Cmd=PINGECHO}"_s;
        outcome.reply = m_reply;
        return outcome;
    }
    const bool rebuild = key == u"abrebuild"_s;
    const Handler handler = tableCommands.value(key);
    if (!handler && !rebuild) {
        outcome.refusal = u"unknown command "_s + oneLine(m_word);
        return outcome;
    }
    if (handler) {
        const auto tableName = text(u"Table");
        if (!tableName || tableName->trimmed().isEmpty()) {
            outcome.refusal = m_word + u" without Table"_s;
            return outcome;
        }
        const auto table = tableFromName(*tableName);
        if (!table) {
            outcome.refusal = m_word + u": unknown table "_s + oneLine(*tableName);
            return outcome;
        }
        m_table = *table;
    }

    if (!m_store.begin()) {
        outcome.refusal = m_word + u": storage failure: "_s + m_store.lastError();
        return outcome;
    }
    if (rebuild)
        abRebuild();
    else
        (this->*handler)();
    if (m_failed || m_store.readFailed() || !m_store.commit()) {
        m_store.rollback();
        storageFailed();
        m_reply.clear();
    }
    outcome.reply = m_reply;
    if (!m_refusals.isEmpty())
        outcome.refusal =
            m_word + (rebuild ? QString() : u" "_s + tableName(m_table)) + u": "_s + m_refusals.join(u"; "_s);
    return outcome;
}

std::optional<QList<qint64>> CommandProcessor::Run::existingIds(const QString &idText)
{
    const auto ids = parseIds(idText);
    if (!ids) {
        refuse(u"Id is not a list of numbers: "_s + oneLine(idText));
        return std::nullopt;
    }
    QList<qint64> found;
    QStringList missing;
    for (qint64 id : *ids) {
        if (id >= 0 && m_store.exists(m_table, id))
            found.append(id);
        else
            missing.append(QString::number(id));
    }
    if (!missing.isEmpty())
        refuse(u"no record "_s + oneLine(missing.join(u','), 60));
    if (found.isEmpty()) {
        if (missing.isEmpty())
            refuse(u"no Id"_s);
        return std::nullopt;
    }
    return found;
}

void CommandProcessor::Run::getList()
{
    const auto fieldsText = text(u"Fields");
    if (!fieldsText || fieldNames(*fieldsText).isEmpty())
        return refuse(u"no Fields"_s);
    if (m_table == Table::System)
        return refuse(u"System holds blocks, not a list"_s);
    const QStringList names = fieldNames(*fieldsText);
    const QList<qint64> ids = m_store.ids(m_table);

    QList<QList<StoredField>> columns;
    for (const QString &name : names)
        columns.append(isIdAlias(m_table, name) ? QList<StoredField>() : m_store.column(m_table, name, ids));

    QList<qsizetype> order(ids.size());
    std::iota(order.begin(), order.end(), 0);
    const QString sortName = text(u"Sort").value_or(QString()).trimmed();
    if (!sortName.isEmpty() && !isIdAlias(m_table, sortName)) {
        qsizetype asked = -1;
        for (qsizetype c = 0; c < names.size() && asked < 0; ++c) {
            if (names[c].compare(sortName, Qt::CaseInsensitive) == 0)
                asked = c;
        }
        const QList<StoredField> sortColumn =
            asked >= 0 ? columns[asked] : m_store.column(m_table, sortName, ids);
        QList<SortKey> keys;
        keys.reserve(ids.size());
        for (const StoredField &field : sortColumn)
            keys.append(sortKey(field));
        std::stable_sort(order.begin(), order.end(),
                         [&](qsizetype a, qsizetype b) { return sortsBefore(keys[a], keys[b]); });
    }

    startReply();
    appendEntry(m_reply, u"ListCount", u'N', QString::number(ids.size()));
    QString row;
    for (qsizetype position = 0; position < order.size(); ++position) {
        const qsizetype at = order[position];
        row.clear();
        for (qsizetype c = 0; c < names.size(); ++c) {
            if (columns[c].isEmpty() && isIdAlias(m_table, names[c])) {
                appendEntry(row, names[c], u'N', QString::number(ids[at]));
                continue;
            }
            const StoredField &field = columns[c][at];
            if (field.present())
                appendEntry(row, names[c], field.type, field.value);
        }
        appendEntry(m_reply, QString(u"List"_s + QString::number(position + 1)), u'S', row);
    }
}

void CommandProcessor::Run::getFields()
{
    const auto idText = text(u"Id");
    if (!idText)
        return refuse(u"no Id"_s);
    QList<qint64> ids;
    if (m_table == Table::System) {
        const auto block = Store::SystemBlockId(*idText);
        if (!block)
            return refuse(u"no block "_s + oneLine(*idText));
        ids.append(*block);
    } else {
        const auto parsed = parseIds(*idText);
        if (!parsed)
            return refuse(u"Id is not a list of numbers: "_s + oneLine(*idText));
        // The read of a record not yet stored: the new-device read ("{Id(S1)=,}{Index(S3)=Ext}")
        // and Id -1 are answered with the Ref alone, so that the window loads its defaults.
        const bool noIds = parsed->isEmpty() && (text(u"Index") || !idText->trimmed().isEmpty());
        if (noIds || (parsed->size() == 1 && parsed->first() < 0)) {
            startReply();
            return;
        }
        const auto found = existingIds(*idText);
        if (!found)
            return;
        ids = *found;
    }

    // Each record's fields are read once, by key.
    QList<QHash<QString, StoredField>> records;
    QStringList allNames;
    QSet<QString> seen;
    for (qint64 id : std::as_const(ids)) {
        QHash<QString, StoredField> &record = records.emplace_back();
        for (StoredField &field : m_store.fields(m_table, id)) {
            const QString key = fieldKey(field.name);
            if (!seen.contains(key)) {
                seen.insert(key);
                allNames.append(field.name);
            }
            record.insert(key, std::move(field));
        }
    }
    QStringList names;
    if (const auto fieldsText = text(u"Fields"))
        names = fieldNames(*fieldsText);
    if (names.isEmpty())
        names = allNames; // no Fields: every field that any of the records holds

    startReply();
    for (const QString &name : std::as_const(names)) {
        if (isIdAlias(m_table, name)) {
            if (ids.size() == 1)
                appendEntry(m_reply, name, u'N', QString::number(ids.first()));
            else
                appendEntry(m_reply, name, u'S', u" ");
            continue;
        }
        // Several records: a field that differs (or is missing from some) holds the mixed marker.
        // Only the values count: a box ticked by the demo site ("1" as text) and one ticked in the
        // device window (1 as a number) read alike and must not show as mixed.
        const QString key = fieldKey(name);
        const StoredField first = records.first().value(key);
        bool mixed = false;
        for (qsizetype i = 1; i < records.size() && !mixed; ++i) {
            const StoredField other = records[i].value(key);
            mixed = other.present() != first.present() || (first.present() && other.value != first.value);
        }
        if (mixed)
            appendEntry(m_reply, name, u'S', u" ");
        else if (first.present())
            appendEntry(m_reply, name, first.type, first.value);
    }
}

void CommandProcessor::Run::getField()
{
    const auto idText = text(u"Id");
    const auto fieldName = text(u"Field");
    if (!idText)
        return refuse(u"no Id"_s);
    if (!fieldName || !validFieldName(*fieldName))
        return refuse(u"no Field"_s);
    qint64 id = -1;
    if (m_table == Table::System) {
        const auto block = Store::SystemBlockId(*idText);
        if (!block)
            return refuse(u"no block "_s + oneLine(*idText));
        id = *block;
    } else {
        const auto found = existingIds(*idText);
        if (!found)
            return;
        if (found->size() != 1)
            return refuse(u"one Id expected"_s);
        id = found->first();
    }
    const QString name = fieldName->trimmed();
    startReply();
    if (isIdAlias(m_table, name)) {
        appendEntry(m_reply, name, u'N', QString::number(id));
        return;
    }
    const StoredField field = m_store.field(m_table, id, name);
    if (field.present())
        appendEntry(m_reply, name, field.type, field.value);
}

std::optional<QList<TagEntry>> CommandProcessor::Run::recordFields()
{
    const TagEntry *fields = entry(u"Fields");
    if (!fields)
        return QList<TagEntry>();
    if (!wellFormedEntries(fields->value)) {
        refuse(u"malformed Fields"_s);
        return std::nullopt;
    }
    QList<TagEntry> result;
    for (TagEntry &field : splitEntries(fields->value)) {
        if (!validFieldName(field.name)) {
            refuse(u"bad field name "_s + oneLine(field.name, 40));
            return std::nullopt;
        }
        if (isIdAlias(m_table, field.name))
            continue;
        field.name = field.name.trimmed();
        if (field.type.isNull())
            field.type = u'S';
        result.append(field);
    }
    return result;
}

bool CommandProcessor::Run::mergeFields(qint64 id, const QList<TagEntry> &fields)
{
    for (const TagEntry &field : fields) {
        const bool isExt = m_table == Table::Exts && field.name.compare(u"Ext", Qt::CaseInsensitive) == 0;
        if (!m_store.setField(m_table, id, field.name, field.type,
                              isExt ? field.value.trimmed() : field.value))
            return storageFailed();
    }
    return true;
}

// A device's number is unique: an edit may not give it the number of another device, and one
// number cannot go to several devices at once.
bool CommandProcessor::Run::extFree(qint64 id, const QList<TagEntry> &fields, qsizetype targets)
{
    if (m_table != Table::Exts)
        return true;
    for (const TagEntry &field : fields) {
        if (field.name.compare(u"Ext", Qt::CaseInsensitive) != 0)
            continue;
        if (field.value.trimmed().isEmpty()) {
            refuse(u"a device needs an Ext"_s);
            return false;
        }
        if (targets > 1) {
            refuse(u"one Ext for several devices"_s);
            return false;
        }
        const auto owner = m_store.deviceByExt(field.value);
        if (owner && *owner != id) {
            refuse(u"Ext %1 belongs to record %2"_s.arg(oneLine(field.value.trimmed(), 20)).arg(*owner));
            return false;
        }
    }
    return true;
}

void CommandProcessor::Run::setFields()
{
    const auto idText = text(u"Id");
    if (!idText || idText->trimmed().isEmpty())
        return refuse(u"no Id"_s);
    if (m_table == Table::System)
        return setBlock(*idText);
    auto fields = recordFields();
    if (!fields)
        return;

    const auto parsed = parseIds(*idText);
    if (parsed && parsed->size() == 1 && parsed->first() < 0) {
        // A new record; for devices, one whose Ext is already stored updates that device instead.
        std::optional<qint64> target;
        if (m_table == Table::Exts) {
            const auto ext = std::find_if(fields->cbegin(), fields->cend(), [](const TagEntry &f) {
                return f.name.compare(u"Ext", Qt::CaseInsensitive) == 0;
            });
            if (ext == fields->cend() || ext->value.trimmed().isEmpty())
                return refuse(u"a new device needs an Ext"_s);
            target = m_store.deviceByExt(ext->value);
        }
        if (!target) {
            target = m_store.createRecord(m_table);
            if (!target) {
                storageFailed();
                return;
            }
        }
        mergeFields(*target, *fields);
        return;
    }

    const auto ids = existingIds(*idText);
    if (!ids)
        return;
    for (qint64 id : *ids) {
        if (!extFree(id, *fields, ids->size()))
            return;
    }
    for (qint64 id : *ids) {
        if (!mergeFields(id, *fields))
            return;
    }
}

// A System block lives in its field Options. Accept it inside Fields ({Fields={Options=...}}),
// beside Fields ({Options=...}), or as the whole of Fields: the block's own tags sent without the
// Options wrapper, whose names (feature names such as "Call forward") need not be field names.
void CommandProcessor::Run::setBlock(const QString &idText)
{
    const auto block = Store::SystemBlockId(idText);
    if (!block)
        return refuse(u"no block "_s + oneLine(idText));
    const TagEntry *whole = entry(u"Fields");
    const TagEntry *beside = entry(u"Options");
    if (whole && !wellFormedEntries(whole->value))
        return refuse(u"malformed Fields"_s);
    const QList<TagEntry> entries = whole ? splitEntries(whole->value) : QList<TagEntry>();
    const bool wrapped = std::any_of(entries.cbegin(), entries.cend(), [](const TagEntry &f) {
        return f.name.trimmed().compare(u"Options", Qt::CaseInsensitive) == 0;
    });
    if (wrapped) {
        if (const auto fields = recordFields())
            mergeFields(*block, *fields);
    } else if (!entries.isEmpty()) {
        mergeFields(*block, {TagEntry{u"Options"_s, u'S', whole->value, true}});
    } else if (beside) {
        mergeFields(*block, {TagEntry{u"Options"_s, beside->type.isNull() ? u'S' : beside->type,
                                      beside->value, true}});
    }
}

void CommandProcessor::Run::setField()
{
    const auto idText = text(u"Id");
    const auto fieldName = text(u"Field");
    const TagEntry *value = entry(u"Value");
    if (!idText || idText->trimmed().isEmpty())
        return refuse(u"no Id"_s);
    if (!fieldName || !validFieldName(*fieldName))
        return refuse(u"no Field"_s);
    if (!value)
        return refuse(u"no Value"_s);
    if (isIdAlias(m_table, *fieldName))
        return refuse(u"the id is not a field"_s);
    const QList<TagEntry> fields = {
        TagEntry{fieldName->trimmed(), value->type.isNull() ? u'S' : value->type, value->value, true}};
    if (m_table == Table::System) {
        const auto block = Store::SystemBlockId(*idText);
        if (!block)
            return refuse(u"no block "_s + oneLine(*idText));
        mergeFields(*block, fields);
        return;
    }
    const auto ids = existingIds(*idText);
    if (!ids)
        return;
    for (qint64 id : *ids) {
        if (!extFree(id, fields, ids->size()))
            return;
    }
    for (qint64 id : *ids) {
        if (!mergeFields(id, fields))
            return;
    }
}

void CommandProcessor::Run::deleteRecords()
{
    const auto idText = text(u"Id");
    if (!idText || idText->trimmed().isEmpty())
        return refuse(u"no Id"_s);
    if (m_table == Table::System)
        return refuse(u"System blocks cannot be deleted"_s);
    const auto ids = existingIds(*idText);
    if (!ids)
        return;
    for (qint64 id : *ids) {
        if (!m_store.deleteRecord(m_table, id)) {
            storageFailed();
            return;
        }
    }
}

void CommandProcessor::Run::abRebuild()
{
    m_table = Table::AB;
    const auto book = text(u"Ab");
    if (!book || book->trimmed().isEmpty())
        return refuse(u"no Ab"_s);
    const QString wanted = book->trimmed();
    // The tool names the book by its name, so a name wins; an id is accepted as well.
    std::optional<qint64> id;
    const QList<qint64> ids = m_store.ids(Table::AB);
    const QList<StoredField> names = m_store.column(Table::AB, u"Name", ids);
    for (qsizetype i = 0; i < ids.size() && !id; ++i) {
        if (QStringView(names[i].value).trimmed().compare(wanted, Qt::CaseInsensitive) == 0)
            id = ids[i];
    }
    bool isNumber = false;
    const qint64 number = wanted.toLongLong(&isNumber);
    if (!id && isNumber && m_store.exists(Table::AB, number))
        id = number;
    if (!id)
        return refuse(u"no address book "_s + oneLine(wanted, 40));
    const StoredField old = m_store.field(Table::AB, *id, u"Statistics");
    QString statistics = old.value;
    if (GetVar(statistics, u"HitRate"_s).isNull())
        AddVar(statistics, u"HitRate"_s, 0);
    AddVar(statistics, u"Rebuilt"_s, QDateTime::currentDateTime());
    mergeFields(*id, {TagEntry{old.present() ? old.name : u"Statistics"_s, u'S', statistics, true}});
}
