// SPDX-License-Identifier: GPL-3.0-or-later
#include "deviceplan.h"

#include "devicerecord.h"
#include "tagvalue.h"
#include "translate.h"

using namespace Qt::StringLiterals;
using DeviceSheet::Column;
using DeviceSheet::Holds;

namespace DevicePlan {

namespace {

// The columns in the order the device window writes them: Type, the extension panel (Dept to
// Mobile) or the trunk panel (Dept, DontMonitor, IncludeBLF), the flag boxes, the book for new
// contacts, absence, notes. A kind keeps only its own, so one order serves all four.
const QList<const Column *> &writeOrder()
{
    static const QList<const Column *> order = [] {
        QList<const Column *> list;
        for (const QString &tag : {u"Type"_s, u"Dept"_s, u"DDI"_s, u"Password"_s, u"Assistant"_s, u"Mobile"_s,
                                   u"DontMonitor"_s, u"IncludeBLF"_s})
            list.append(DeviceSheet::column(tag));
        for (const Column &c : DeviceSheet::columns())
            if (c.holds == Holds::Flag && !list.contains(&c) && c.tag != u"UseAbsence"_s)
                list.append(&c);
        for (const QString &tag : {u"NewAB"_s, u"UseAbsence"_s, u"AbsenceText"_s, u"Notes"_s})
            list.append(DeviceSheet::column(tag));
        return list;
    }();
    return order;
}

bool keeps(const Column &column, int kind)
{
    return kind >= 0 ? (column.kinds & (1 << kind)) != 0 : column.kinds == DeviceSheet::AllKinds;
}

// The values of a new device's defaults that an import writes, read once: flags and buttons.
const QHash<QString, QString> &newDeviceDefaults()
{
    static const QHash<QString, QString> values = [] {
        const QString defaults = DeviceRecord::defaults();
        QHash<QString, QString> read;
        QStringList tags{u"Buttons"_s};
        for (int button = 0; button <= 8; ++button)
            tags.append(u"btn"_s + QString::number(button));
        for (const Column &c : DeviceSheet::columns())
            if (c.holds == Holds::Flag)
                tags.append(c.tag);
        for (const QString &tag : tags)
            read.insert(tag, getText(defaults, tag));
        return read;
    }();
    return values;
}

QStringList reasonsOf(const DeviceSheet::Sheet &sheet, qsizetype line)
{
    QStringList reasons;
    for (const DeviceSheet::Finding &finding : sheet.findings)
        if (finding.line == line)
            reasons.append(finding.text);
    return reasons;
}

QString storeCommand(const QString &fields, const QString &id)
{
    QString command = u"{Cmd=SetFields}{Table=Exts}"_s;
    AddVar(command, u"Fields"_s, fields);
    AddVar(command, u"Id"_s, id);
    return command;
}

} // namespace

qsizetype Plan::count(State state) const
{
    return std::count_if(entries.cbegin(), entries.cend(), [state](const Entry &e) { return e.state == state; });
}

qsizetype Plan::sending() const
{
    return std::count_if(entries.cbegin(), entries.cend(), [](const Entry &e) { return !e.command.isEmpty(); });
}

QString Plan::summary() const
{
    return Translate({}, u"<1> new, <2> changed"_s, QString::number(count(State::New)),
                     QString::number(count(State::Changed))) +
           u", "_s +
           Translate({}, u"<1> unchanged, <2> rejected"_s, QString::number(count(State::Unchanged)),
                     QString::number(count(State::Rejected)));
}

QStringList fieldsToRead(const DeviceSheet::Sheet &sheet)
{
    QStringList fields{u"Ext"_s, u"Type"_s};
    for (const QString &tag : sheet.header)
        if (!fields.contains(tag))
            fields.append(tag);
    return fields;
}

QString newDeviceCommand(const DeviceSheet::Row &row)
{
    const QHash<QString, QString> &defaults = newDeviceDefaults();
    const QString typed = row.values.value(u"Type"_s);
    const QString kind = typed.isEmpty() ? DeviceRecord::kinds().constFirst() : typed;
    const int kindIndex = DeviceSheet::kindIndex(kind);

    QString fields;
    AddVar(fields, u"Type"_s, kind);
    for (const Column *c : writeOrder()) {
        if (c->holds == Holds::Kind || !keeps(*c, kindIndex))
            continue;
        const QString given = row.values.value(c->tag);
        if (c->tag == u"NewAB"_s) {
            // The Address Books page: new contacts go to the directory unless the row names a book;
            // then the Buttons page with a new device's buttons.
            AddVar(fields, c->tag, given.isEmpty() ? u"(Directory)"_s : given);
            AddVar(fields, u"Buttons"_s, defaults.value(u"Buttons"_s));
            for (int button = 0; button <= 8; ++button) {
                const QString name = u"btn"_s + QString::number(button);
                AddVar(fields, name, defaults.value(name));
            }
            continue;
        }
        if (c->holds == Holds::Flag) // a check box writes a number, as the window's boxes do
            AddVar(fields, c->tag,
                   DeviceSheet::stored(*c, given.trimmed().isEmpty() ? defaults.value(c->tag) : given).toInt());
        else
            AddVar(fields, c->tag, DeviceSheet::stored(*c, given));
    }
    const QList<DeviceRecord::PlannedDevice> device =
        DeviceRecord::sendingPlan(row.ext, row.values.value(u"Name"_s), true);
    return DeviceRecord::storeCommands(fields, u"-1"_s, device).value(0);
}

Plan make(const DeviceSheet::Sheet &sheet, const DeviceSheet::Table &server)
{
    Plan plan;
    if (!sheet.ok())
        return plan;
    const qsizetype idAt = server.indexOf(u"Id");
    const qsizetype extAt = server.indexOf(u"Ext");
    QHash<QString, qsizetype> byNumber;
    for (qsizetype i = 0; i < server.rows.size(); ++i) {
        const QString number = server.rows.at(i).value(extAt).trimmed().toUpper();
        if (!number.isEmpty() && !byNumber.contains(number))
            byNumber.insert(number, i);
    }
    // Where each field stands in the server's rows, looked up once for the whole sheet.
    QHash<QString, qsizetype> fieldAt;
    for (qsizetype i = 0; i < server.fields.size(); ++i)
        fieldAt.insert(server.fields.at(i).toLower(), i);
    const auto serverValue = [&](qsizetype device, const QString &tag) {
        const qsizetype at = fieldAt.value(tag.toLower(), -1);
        return at < 0 ? QString() : server.rows.at(device).value(at);
    };

    for (const DeviceSheet::Row &row : sheet.rows) {
        Entry entry;
        entry.line = row.line;
        entry.ext = row.ext;
        entry.reasons = reasonsOf(sheet, row.line);
        if (row.rejected) {
            entry.state = State::Rejected;
            plan.entries.append(entry);
            continue;
        }
        const auto found = byNumber.constFind(row.ext);
        if (found == byNumber.cend()) {
            entry.state = State::New;
            entry.command = newDeviceCommand(row);
            plan.entries.append(entry);
            continue;
        }

        const qsizetype device = *found;
        entry.id = server.rows.at(device).value(idAt);
        const QString typed = row.values.value(u"Type"_s);
        const int kind = DeviceSheet::kindIndex(typed.isEmpty() ? serverValue(device, u"Type"_s).toUpper() : typed);
        QString fields;
        for (const Column *c : writeOrder()) {
            if (!row.values.contains(c->tag) || !keeps(*c, kind))
                continue;
            const QString given = row.values.value(c->tag);
            // No kind or flag given: the device keeps its own (a new one takes a new device's).
            if ((c->holds == Holds::Kind || c->holds == Holds::Flag) && given.trimmed().isEmpty())
                continue;
            QString before = serverValue(device, c->tag);
            if (c->holds == Holds::Flag)
                before = DeviceSheet::stored(*c, before);
            else if (c->holds == Holds::Kind)
                before = before.toUpper();
            const QString after = DeviceSheet::stored(*c, given);
            if (after == before)
                continue;
            entry.changes.append({c->tag, before, after});
            // An emptied field is written empty, so that the server forgets its value; a flag is a
            // number, as the window's check boxes write it.
            if (c->holds == Holds::Flag)
                AddVar(fields, c->tag, after.toInt());
            else
                AddVar(fields, c->tag, after, true);
        }
        if (row.values.contains(u"Name"_s)) {
            // An edit stores the name without "#", as the device window does.
            const QString name = DeviceRecord::cutName(row.values.value(u"Name"_s)).remove(u'#');
            const QString before = serverValue(device, u"Name"_s);
            if (name != before) {
                entry.changes.append({u"Name"_s, before, name});
                AddVar(fields, u"Name"_s, name, true);
            }
        }
        entry.state = entry.changes.isEmpty() ? State::Unchanged : State::Changed;
        if (entry.state == State::Changed)
            entry.command = storeCommand(fields, entry.id);
        plan.entries.append(entry);
    }
    return plan;
}

QString changeText(const Change &change)
{
    if (DeviceSheet::isSecret(change.field))
        return Translate({}, u"<1>: changed"_s, change.field);
    const auto quoted = [](const QString &value) {
        QString one = value;
        one.replace(u"\r\n"_s, u" "_s).replace(u'\n', u' ').replace(u'\r', u' ');
        return one.isEmpty() ? Translate(u"(empty)"_s) : u'"' + one + u'"';
    };
    return change.field + u": "_s + quoted(change.before) + u" -> "_s + quoted(change.after);
}

QString stateWord(State state)
{
    switch (state) {
    case State::New:
        return Translate(u"new"_s);
    case State::Changed:
        return Translate(u"changed"_s);
    case State::Unchanged:
        return Translate(u"unchanged"_s);
    case State::Rejected:
        return Translate(u"rejected"_s);
    }
    return {};
}

} // namespace DevicePlan
