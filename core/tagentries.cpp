// SPDX-License-Identifier: GPL-3.0-or-later
#include "tagentries.h"

#include "tagvalue.h"

#include <cmath>

namespace {
// Reads the sized entry whose "(" is at paren; returns the index just past the entry.
qsizetype readSized(QStringView vars, qsizetype paren, TagEntry &entry)
{
    const qsizetype afterParen = paren + 1;
    const QStringView head = vars.mid(afterParen, qMin<qsizetype>(10, vars.size() - afterParen));
    double length = leadingNumber(head);
    entry.type = u'S';
    if (length == 0 && !head.isEmpty()) {
        entry.type = head[0];
        length = leadingNumber(head.mid(1));
    }
    const qsizetype equals = vars.indexOf(u'=', afterParen);
    if (equals < 0)
        return vars.size();
    const qsizetype start = equals + 1;
    const qsizetype count = length > 0 ? qMin(qsizetype(std::nearbyint(qMin(length, 1e15))), vars.size() - start) : 0;
    entry.value = vars.mid(start, count).toString();
    const qsizetype end = start + count;
    return end < vars.size() && vars[end] == u'}' ? end + 1 : end;
}
} // namespace

QList<TagEntry> splitEntries(QStringView vars)
{
    QList<TagEntry> entries;
    qsizetype at = vars.indexOf(u'{');
    while (at >= 0 && at < vars.size()) {
        qsizetype cut = at + 1;
        while (cut < vars.size() && vars[cut] != u'(' && vars[cut] != u'=')
            ++cut;
        if (cut >= vars.size())
            break;
        TagEntry entry;
        entry.name = vars.mid(at + 1, cut - at - 1).toString();
        qsizetype next;
        if (vars[cut] == u'(') {
            entry.sized = true;
            next = readSized(vars, cut, entry);
        } else {
            const qsizetype close = vars.indexOf(u'}', cut + 1);
            entry.value = (close < 0 ? vars.mid(cut + 1) : vars.mid(cut + 1, close - cut - 1)).toString();
            next = close < 0 ? vars.size() : close + 1;
        }
        entries.append(entry);
        at = vars.indexOf(u'{', next);
    }
    return entries;
}

QString entryText(const TagEntry &entry)
{
    if (!entry.sized)
        return u'{' + entry.name + u'=' + entry.value + u'}';
    return u'{' + entry.name + u'(' + (entry.type.isNull() ? QChar(u'S') : entry.type)
        + QString::number(entry.value.size()) + u")=" + entry.value + u'}';
}
