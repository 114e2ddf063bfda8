// SPDX-License-Identifier: GPL-3.0-or-later
// Records and list replies as the server sends them, built with AddVar, for tests of lists and pages.
#pragma once

#include "tagreader.h"
#include "tagvalue.h"

#include <QStringList>

#include <algorithm>
#include <initializer_list>
#include <utility>

using namespace Qt::StringLiterals;

// A record built with AddVar from name/value pairs, in order.
inline QString record(std::initializer_list<std::pair<QString, QVariant>> fields)
{
    QString vars;
    for (const auto &[name, value] : fields)
        AddVar(vars, name, value);
    return vars;
}
inline QString record(const QList<std::pair<QString, QVariant>> &fields)
{
    QString vars;
    for (const auto &[name, value] : fields)
        AddVar(vars, name, value);
    return vars;
}

// "{Cmd=SetFields}{Table=table}" with Fields and Id added by AddVar, as the tool stores a record.
inline QString setFieldsCommand(const QString &table, const QString &fields, const QVariant &id = -1)
{
    QString command = u"{Cmd=SetFields}{Table="_s + table + u'}';
    AddVar(command, u"Fields"_s, fields);
    AddVar(command, u"Id"_s, id);
    return command;
}

// A list reply of these rows, in this order.
inline QString listReply(const QStringList &rows)
{
    QString reply;
    AddVar(reply, u"ListCount"_s, int(rows.size()));
    for (qsizetype row = 0; row < rows.size(); ++row)
        AddVar(reply, u"List"_s + QString::number(row + 1), rows[row]);
    return reply;
}

// One field of every row of a list reply, in the reply's order.
inline QStringList listColumn(const QString &reply, const QString &field)
{
    QStringList values;
    for (const QString &row : readList(reply))
        values.append(getText(row, field));
    return values;
}

// The same list reply with its rows the other way round.
inline QString reversedReply(const QString &reply)
{
    QStringList rows = readList(reply);
    std::reverse(rows.begin(), rows.end());
    return listReply(rows);
}

// The top-level tag names of a record, in order.
inline QStringList tagNames(const QString &record)
{
    QStringList names;
    for (int index = 1;; ++index) {
        QString name;
        GetVar(record, index, &name);
        if (name.isEmpty())
            return names;
        names << name;
    }
}

