// SPDX-License-Identifier: GPL-3.0-or-later
#include "devicesheet.h"

#include "csv.h"
#include "devicerecord.h"
#include "translate.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace DeviceSheet {

namespace {

Column text(const QString &tag, int cut, int kinds)
{
    return {tag, Holds::Text, cut, kinds};
}

Column flag(const QString &tag, int kinds)
{
    return {tag, Holds::Flag, 0, kinds};
}

QList<Column> makeColumns()
{
    QList<Column> list{{u"Ext"_s, Holds::Number, 15, AllKinds},
                       text(u"Name"_s, 25, AllKinds),
                       {u"Type"_s, Holds::Kind, 0, AllKinds},
                       text(u"Dept"_s, 15, Phones | Trunk),
                       text(u"DDI"_s, 15, Phones),
                       text(u"Password"_s, 0, Phones),
                       text(u"Assistant"_s, 0, Phones),
                       text(u"Mobile"_s, 0, Phones)};
    // The flag boxes in their order; DontMonitor has a box on the trunk panel as well, and
    // IncludeBLF only there.
    QStringList seen;
    for (const DeviceRecord::FlagBox &box : DeviceRecord::flagBoxes()) {
        if (seen.contains(box.tag))
            continue;
        seen.append(box.tag);
        const int kinds = box.tag == u"DontMonitor"_s ? Phones | Trunk : box.tag == u"IncludeBLF"_s ? Trunk : Phones;
        list.append(flag(box.tag, kinds));
    }
    list.append(flag(u"UseAbsence"_s, Phones));
    list.append(text(u"AbsenceText"_s, 0, Phones));
    list.append(text(u"NewAB"_s, 0, Phones));
    list.append(text(u"Notes"_s, 0, AllKinds));
    return list;
}

QString kindName(int kindIndex)
{
    return Translate(DeviceRecord::kindWords().value(kindIndex));
}

QString failureText(Csv::Failure failure, const QString &path, qint64 maxFileSize)
{
    switch (failure) {
    case Csv::Failure::None:
        return {};
    case Csv::Failure::Missing:
        return Translate({}, u"The file \"<1>\" does not exist."_s, path);
    case Csv::Failure::Unreadable:
        return Translate({}, u"The file \"<1>\" could not be read."_s, path);
    case Csv::Failure::Empty:
        return Translate({}, u"The file \"<1>\" is empty."_s, path);
    case Csv::Failure::NotText:
        return Translate({}, u"The file \"<1>\" is not UTF-8 text. Save it from the spreadsheet as \"CSV UTF-8\"."_s,
                         path);
    case Csv::Failure::TooLarge:
        return Translate({}, u"The file \"<1>\" is larger than <2> MB."_s, path,
                         QString::number(maxFileSize / (1024 * 1024)));
    }
    return {};
}

QString shown(const QString &value)
{
    return value.size() > 40 ? value.left(40) + u"..."_s : value;
}

} // namespace

const QList<Column> &columns()
{
    static const QList<Column> list = makeColumns();
    return list;
}

const Column *column(QStringView name)
{
    const QStringView trimmed = name.trimmed();
    for (const Column &c : columns())
        if (trimmed.compare(c.tag, Qt::CaseInsensitive) == 0)
            return &c;
    return nullptr;
}

QStringList defaultExportFields()
{
    QStringList fields;
    for (const Column &c : columns())
        if (!isSecret(c.tag))
            fields.append(c.tag);
    return fields;
}

bool isSecret(QStringView tag)
{
    return tag.compare(u"Password"_s, Qt::CaseInsensitive) == 0;
}

QString kindFromText(const QString &text)
{
    const QString word = text.trimmed();
    for (int i = 0; i < DeviceRecord::kinds().size(); ++i) {
        const QString &kind = DeviceRecord::kinds().at(i);
        const QString &english = DeviceRecord::kindWords().at(i);
        if (word.compare(kind, Qt::CaseInsensitive) == 0 || word.compare(english, Qt::CaseInsensitive) == 0 ||
            word.compare(Translate(english), Qt::CaseInsensitive) == 0)
            return kind;
    }
    return {};
}

int kindIndex(const QString &kind)
{
    return DeviceRecord::kinds().indexOf(kind);
}

QString stored(const Column &c, const QString &value)
{
    switch (c.holds) {
    case Holds::Number:
        return DeviceRecord::cutNumber(value);
    case Holds::Kind:
        return kindFromText(value);
    case Holds::Flag:
        return value.trimmed() == u"1"_s ? u"1"_s : u"0"_s;
    case Holds::Text:
        break;
    }
    return c.cut > 0 ? value.left(c.cut) : value;
}

qsizetype Sheet::rejectedCount() const
{
    return std::count_if(rows.cbegin(), rows.cend(), [](const Row &row) { return row.rejected; });
}

Sheet read(const QString &path, qint64 maxFileSize)
{
    Csv::ReadOptions options;
    options.maxFileSize = maxFileSize;
    const Csv::Table table = Csv::readFile(path, options);
    if (!table.ok()) {
        Sheet sheet;
        sheet.failure = failureText(table.failure, path, maxFileSize);
        return sheet;
    }
    return check(table.records, table.lines);
}

Sheet check(const QList<QStringList> &records, const QList<qsizetype> &lines)
{
    Sheet sheet;
    const auto lineOf = [&](qsizetype record) { return lines.value(record, record + 1); };
    if (records.isEmpty()) {
        sheet.failure = Translate(u"The file holds no title row."_s);
        return sheet;
    }

    // The title row: every name a device field, none twice, Ext among them.
    QList<const Column *> header;
    QStringList unknown;
    for (const QString &name : records.first()) {
        const Column *c = column(name);
        if (!c) {
            unknown.append(name.trimmed());
        } else if (header.contains(c)) {
            sheet.failure = Translate({}, u"Line <1>: the column <2> is named twice."_s,
                                      QString::number(lineOf(0)), c->tag);
            return sheet;
        }
        header.append(c);
        sheet.header.append(c ? c->tag : name.trimmed());
    }
    if (!unknown.isEmpty()) {
        sheet.failure = Translate({}, u"Line <1>: <2> is not a device field."_s, QString::number(lineOf(0)),
                                  u'"' + unknown.join(u"\", \""_s) + u'"');
        return sheet;
    }
    const qsizetype extColumn = sheet.header.indexOf(u"Ext"_s);
    if (extColumn < 0) {
        sheet.failure = Translate({}, u"Line <1>: the title row has no Ext column; every device needs its number."_s,
                                  QString::number(lineOf(0)));
        return sheet;
    }

    QHash<QString, qsizetype> firstLineOfExt; // number -> index into rows
    for (qsizetype r = 1; r < records.size(); ++r) {
        const QStringList &fields = records.at(r);
        Row row;
        row.line = lineOf(r);
        const QString line = QString::number(row.line);
        const auto find = [&](Finding::Severity severity, const QString &text) {
            sheet.findings.append({row.line, severity, text});
            if (severity == Finding::Error)
                row.rejected = true;
        };
        row.ext = DeviceRecord::cutNumber(fields.value(extColumn));
        if (fields.size() != header.size()) {
            find(Finding::Error, Translate({}, u"Line <1>: <2>."_s, line,
                                           Translate({}, u"<1> fields where the title row names <2>"_s,
                                                     QString::number(fields.size()), QString::number(header.size()))));
            sheet.rows.append(row);
            continue;
        }
        for (qsizetype i = 0; i < header.size(); ++i)
            row.values.insert(header.at(i)->tag, fields.at(i));

        const QString typed = row.values.value(u"Ext"_s);
        row.ext = DeviceRecord::cutNumber(typed);
        if (row.ext.isEmpty()) {
            find(Finding::Error, Translate({}, u"Line <1>: no Ext."_s, line));
        } else if (row.ext.contains(u'-')) {
            find(Finding::Error,
                 Translate({}, u"Line <1>: Ext <2> is a range; give each device a line of its own."_s, line, row.ext));
        } else if (typed.trimmed().size() > 15) {
            find(Finding::Warning, Translate({}, u"Line <1>: Ext is cut to 15 characters: <2>."_s, line, row.ext));
        }

        int kind = -1;
        if (row.values.contains(u"Type"_s) && !row.values.value(u"Type"_s).trimmed().isEmpty()) {
            const QString stored = kindFromText(row.values.value(u"Type"_s));
            if (stored.isEmpty())
                find(Finding::Error,
                     Translate({}, u"Line <1>: Type <2> is not one of EXT, AGENT, SPEED or TRUNK."_s, line,
                               u'"' + shown(row.values.value(u"Type"_s)) + u'"'));
            else
                row.values.insert(u"Type"_s, stored);
            kind = kindIndex(stored);
        }

        for (const Column *c : header) {
            const QString value = row.values.value(c->tag);
            if (c->holds == Holds::Flag) {
                const QString flagValue = value.trimmed();
                if (!flagValue.isEmpty() && flagValue != u"0"_s && flagValue != u"1"_s)
                    find(Finding::Error, Translate({}, u"Line <1>: <2>."_s, line,
                                                   Translate({}, u"<1> is 0 or 1, not \"<2>\""_s, c->tag,
                                                             isSecret(c->tag) ? QString() : shown(value))));
            } else if (c->holds == Holds::Text && c->cut > 0 && value.size() > c->cut) {
                find(Finding::Warning, Translate({}, u"Line <1>: <2>."_s, line,
                                                 Translate({}, u"<1> is cut to <2> characters"_s, c->tag,
                                                           QString::number(c->cut))));
            }
            if (kind >= 0 && !value.trimmed().isEmpty() && !(c->kinds & (1 << kind)))
                find(Finding::Warning,
                     Translate({}, u"Line <1>: <2>."_s, line,
                               Translate({}, u"<1> is not kept for the kind <2>; it is left out"_s, c->tag, kindName(kind))));
        }

        if (!row.ext.isEmpty()) {
            const auto first = firstLineOfExt.constFind(row.ext);
            if (first != firstLineOfExt.cend()) {
                Row &earlier = sheet.rows[*first];
                find(Finding::Error, Translate({}, u"Line <1>: Ext <2> is on an earlier line as well."_s, line, row.ext));
                if (!earlier.rejected) {
                    earlier.rejected = true;
                    sheet.findings.append({earlier.line, Finding::Error,
                                           Translate({}, u"Line <1>: Ext <2> is on a later line as well."_s,
                                                     QString::number(earlier.line), row.ext)});
                }
            } else {
                firstLineOfExt.insert(row.ext, sheet.rows.size());
            }
        }
        sheet.rows.append(row);
    }
    std::stable_sort(sheet.findings.begin(), sheet.findings.end(),
                     [](const Finding &a, const Finding &b) { return a.line < b.line; });
    return sheet;
}

qsizetype Table::indexOf(QStringView field) const
{
    for (qsizetype i = 0; i < fields.size(); ++i)
        if (field.compare(fields.at(i), Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

QString csvLine(const QStringList &values)
{
    QString line;
    for (qsizetype i = 0; i < values.size(); ++i) {
        if (i > 0)
            line += u',';
        const QString &value = values.at(i);
        const bool quote = value.contains(u',') || value.contains(u';') || value.contains(u'"') ||
                           value.contains(u'\n') || value.contains(u'\r') || value.contains(u'\t') ||
                           (!value.isEmpty() && (value.front().isSpace() || value.back().isSpace()));
        if (quote)
            line += u'"' + QString(value).replace(u'"', u"\"\""_s) + u'"';
        else
            line += value;
    }
    return line;
}

QString write(const QStringList &fields, const Table &devices)
{
    QList<qsizetype> positions;
    for (const QString &field : fields)
        positions.append(devices.indexOf(field));
    QString out;
    out.reserve((devices.rows.size() + 1) * fields.size() * 8);
    out += csvLine(fields) + u"\r\n"_s;
    QStringList values;
    for (const QStringList &row : devices.rows) {
        values.clear();
        for (qsizetype position : positions)
            values.append(position < 0 ? QString() : row.value(position));
        out += csvLine(values);
        out += u"\r\n"_s;
    }
    return out;
}

} // namespace DeviceSheet
