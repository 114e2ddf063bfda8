// SPDX-License-Identifier: GPL-3.0-or-later
#include "directorymodel.h"

#include "errorlog.h"
#include "tagreader.h"
#include "tagvalue.h"
#include "translate.h"

#include <QLoggingCategory>

#include <algorithm>
#include <numeric>
#include <vector>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcDirectory, "quill.forms.directory")

namespace {
const QString idTag = u"Id"_s;
const QString extensionIdTag = u"ExtensionId"_s;
const QString extTag = u"Ext"_s;
const QString nameTag = u"Name"_s;
const QString typeTag = u"Type"_s;
const QString deptTag = u"Dept"_s;

DirectoryEntry entryFromRow(QStringView row)
{
    // Read as GetVar reads them, from one pass over the row instead of six case-blind searches;
    // the row is read where it stands in the reply.
    const TagReader fields(row);
    DirectoryEntry entry;
    entry.id = fields.text(idTag);
    entry.extensionId = fields.text(extensionIdTag);
    entry.setExt(fields.text(extTag));
    entry.name = fields.text(nameTag);
    entry.type = fields.text(typeTag);
    entry.dept = fields.text(deptTag);
    return entry;
}

int compareText(const QString &left, const QString &right)
{
    const int folded = left.compare(right, Qt::CaseInsensitive);
    return folded != 0 ? folded : left.compare(right);
}
} // namespace

void DirectoryEntry::setExt(const QString &text)
{
    ext = text;
    // Device numbers are digits in practice; anything else ("12AB", "*55") sorts as text after them.
    number = text.toLongLong(&numeric);
    numeric = numeric && !text.isEmpty() && text.front().isDigit();
}

bool extLessThan(const DirectoryEntry &left, const DirectoryEntry &right)
{
    if (left.numeric != right.numeric)
        return left.numeric;
    if (left.numeric && left.number != right.number)
        return left.number < right.number;
    return compareText(left.ext, right.ext) < 0;
}

DirectoryModel::DirectoryModel(QObject *parent) : QAbstractTableModel(parent)
{
    translateTypeNames();
}

void DirectoryModel::translateTypeNames()
{
    m_typeNames = {{u"EXT"_s, Translate(u"Extension"_s)},
                   {u"AGENT"_s, Translate(u"Agent"_s)},
                   {u"SPEED"_s, Translate(u"Speed dial"_s)},
                   {u"TRUNK"_s, Translate(u"Trunk"_s)}};
    m_headers = {Translate(u"Ext"_s), Translate(u"Name"_s), Translate(u"Type"_s), Translate(u"Dept"_s)};
}

QString DirectoryModel::typeName(const QString &type) const
{
    return m_typeNames.value(type.toUpper(), type);
}

int DirectoryModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_entries.size());
}

int DirectoryModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant DirectoryModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const DirectoryEntry &entry = m_entries.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        switch (index.column()) {
        case ExtColumn:
            return entry.ext;
        case NameColumn:
            return entry.name;
        case TypeColumn:
            return typeName(entry.type);
        case DeptColumn:
            return entry.dept;
        }
        return {};
    case KeyRole:
        return entry.key();
    case IdRole:
        return entry.id;
    case ExtensionIdRole:
        return entry.extensionId;
    case TypeCodeRole:
        return entry.type;
    }
    return {};
}

QVariant DirectoryModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount)
        return QAbstractTableModel::headerData(section, orientation, role);
    return m_headers.at(section);
}

void DirectoryModel::fill(const QString &reply)
{
    QList<DirectoryEntry> entries;
    Guard(u"  @  frmMain.DataArrived"_s, [&] {
        const ListRows rows(reply);
        entries.reserve(rows.size());
        for (const QStringView row : rows) {
            DirectoryEntry entry = entryFromRow(row);
            if (entry.id.isEmpty()) {
                qCWarning(lcDirectory) << "device row without Id left out:" << row.left(200);
                continue;
            }
            entries.append(std::move(entry));
        }
    });
    beginResetModel();
    translateTypeNames();
    m_entries = std::move(entries);
    forgetRanks();
    endResetModel();
}

void DirectoryModel::clear()
{
    beginResetModel();
    m_entries.clear();
    forgetRanks();
    endResetModel();
}

void DirectoryModel::forgetRanks()
{
    for (QList<int> &ranks : m_ranks)
        ranks.clear();
}

const QList<int> &DirectoryModel::sortRanks(int column) const
{
    QList<int> &ranks = m_ranks.at(column);
    if (ranks.size() != m_entries.size())
        ranks = computeRanks(column);
    return ranks;
}

QList<int> DirectoryModel::computeRanks(int column) const
{
    const int count = int(m_entries.size());
    QList<int> order(count);
    std::iota(order.begin(), order.end(), 0);
    if (column == ExtColumn) {
        // A small key per row keeps the sort in the cache; only texts and equal numbers read the row.
        struct Key
        {
            qint64 number;
            int row;
            bool numeric;
        };
        std::vector<Key> keys(count);
        for (int row = 0; row < count; ++row)
            keys[row] = {m_entries[row].number, row, m_entries[row].numeric};
        std::sort(keys.begin(), keys.end(), [this](const Key &a, const Key &b) {
            if (a.numeric != b.numeric)
                return a.numeric;
            if (a.numeric && a.number != b.number)
                return a.number < b.number;
            const int text = compareText(m_entries[a.row].ext, m_entries[b.row].ext);
            return text != 0 ? text < 0 : a.row < b.row;
        });
        for (int place = 0; place < count; ++place)
            order[place] = keys[place].row;
    } else {
        const QList<int> &byNumber = sortRanks(ExtColumn);
        struct Key
        {
            QString folded;
            int row;
        };
        std::vector<Key> keys(count);
        for (int row = 0; row < count; ++row) {
            const DirectoryEntry &entry = m_entries[row];
            const QString &text = column == NameColumn   ? entry.name
                                  : column == DeptColumn ? entry.dept
                                                         : typeName(entry.type);
            keys[row] = {text.toCaseFolded(), row};
        }
        std::sort(keys.begin(), keys.end(), [&byNumber](const Key &a, const Key &b) {
            const int text = a.folded.compare(b.folded);
            return text != 0 ? text < 0 : byNumber[a.row] < byNumber[b.row];
        });
        for (int place = 0; place < count; ++place)
            order[place] = keys[place].row;
    }
    QList<int> ranks(count);
    for (int place = 0; place < count; ++place)
        ranks[order[place]] = place;
    return ranks;
}

int DirectoryModel::rowOfId(const QString &id) const
{
    const auto found = std::find_if(m_entries.cbegin(), m_entries.cend(),
                                    [&](const DirectoryEntry &entry) { return entry.id == id; });
    return found == m_entries.cend() ? -1 : int(found - m_entries.cbegin());
}

bool DirectoryModel::updateEntry(const QString &id, const QString &record)
{
    const int row = rowOfId(id);
    if (row < 0)
        return false;
    DirectoryEntry &entry = m_entries[row];
    auto field = [&](const QString &tag, auto apply) {
        const QVariant value = GetVar(record, tag);
        if (value.isValid())
            apply(tagValueText(value));
    };
    field(extTag, [&](const QString &text) { entry.setExt(text); });
    field(nameTag, [&](const QString &text) { entry.name = text; });
    field(typeTag, [&](const QString &text) { entry.type = text; });
    field(deptTag, [&](const QString &text) { entry.dept = text; });
    forgetRanks();
    emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
    return true;
}

void DirectoryModel::removeEntries(QList<int> rows)
{
    std::sort(rows.begin(), rows.end(), std::greater<int>());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    rows.erase(std::remove_if(rows.begin(), rows.end(),
                              [this](int row) { return row < 0 || row >= m_entries.size(); }),
               rows.end());
    // Contiguous runs go in one step each, from the bottom so the rows above keep their numbers.
    qsizetype at = 0;
    while (at < rows.size()) {
        const int last = rows[at];
        int first = last;
        while (at + 1 < rows.size() && rows[at + 1] == first - 1)
            first = rows[++at];
        ++at;
        beginRemoveRows({}, first, last);
        m_entries.remove(first, last - first + 1);
        // The places of the rows left keep their order: cut the removed ones out.
        for (QList<int> &ranks : m_ranks) {
            if (ranks.size() > last)
                ranks.remove(first, last - first + 1);
        }
        endRemoveRows();
    }
}

DirectoryProxyModel::DirectoryProxyModel(DirectoryModel *directory, QObject *parent)
    : QSortFilterProxyModel(parent), m_directory(directory)
{
    setSourceModel(directory);
    setDynamicSortFilter(true);
}

void DirectoryProxyModel::setQuickFilter(const QString &text)
{
    const QString filter = text.trimmed();
    if (filter == m_filter)
        return;
    m_filter = filter;
    invalidateFilter();
}

bool DirectoryProxyModel::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    if (sourceModel() != m_directory || left.column() < 0 || left.column() >= DirectoryModel::ColumnCount)
        return QSortFilterProxyModel::lessThan(left, right);
    const QList<int> &ranks = m_directory->sortRanks(left.column());
    return ranks.at(left.row()) < ranks.at(right.row());
}

bool DirectoryProxyModel::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (m_filter.isEmpty() || sourceParent.isValid() || sourceModel() != m_directory)
        return true;
    const DirectoryEntry &entry = m_directory->entry(sourceRow);
    return entry.ext.contains(m_filter, Qt::CaseInsensitive) ||
           entry.name.contains(m_filter, Qt::CaseInsensitive) ||
           entry.dept.contains(m_filter, Qt::CaseInsensitive);
}
