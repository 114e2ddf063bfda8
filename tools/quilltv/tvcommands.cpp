// SPDX-License-Identifier: GPL-3.0-or-later
#include "tvcommands.h"

#include "tagentries.h"
#include "tagvalue.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace QuillTv {
namespace {

// Deeper nesting is printed as it stands: no record of the system nests this far, and opening
// each level copies the rest of the string.
constexpr int maxDepth = 64;

// One line per entry: newlines, tabs and backslashes inside values are shown escaped.
QString escaped(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case u'\\':
            result += u"\\\\"_s;
            break;
        case u'\n':
            result += u"\\n"_s;
            break;
        case u'\r':
            result += u"\\r"_s;
            break;
        case u'\t':
            result += u"\\t"_s;
            break;
        default:
            result += c;
        }
    }
    return result;
}

// A value is opened up as a record when it reads as one: braces at both ends, and entries whose
// names hold no brace (text that merely begins with "{" does not).
bool looksLikeRecord(const QString &value, QList<TagEntry> *entries)
{
    if (!value.startsWith(u'{') || !value.endsWith(u'}'))
        return false;
    *entries = splitEntries(value);
    for (const TagEntry &entry : std::as_const(*entries)) {
        if (entry.name.contains(u'{') || entry.name.contains(u'}'))
            return false;
    }
    return !entries->isEmpty();
}

void printEntries(const QList<TagEntry> &entries, int depth, QString &out)
{
    const QString indent(2 * depth, u' ');
    for (const TagEntry &entry : entries) {
        const QString head =
            indent + entry.name + (entry.sized ? u'(' + QString(entry.type) + u')' : QString());
        QList<TagEntry> inner;
        if (depth < maxDepth && looksLikeRecord(entry.value, &inner)) {
            out += head + u'\n';
            printEntries(inner, depth + 1, out);
        } else {
            out += head + u" = "_s + escaped(entry.value) + u'\n';
        }
    }
}

QByteArray errorLine(const QString &message)
{
    return QJsonDocument(QJsonObject{{u"error"_s, message}}).toJson(QJsonDocument::Compact);
}

// One JSON value as text, for lines whose keys keep a fixed order.
QByteArray jsonText(const QJsonValue &value)
{
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return array.mid(1, array.size() - 2);
}

QJsonValue jsonValue(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Double:
        return value.toDouble();
    case QMetaType::UnknownType:
        return QJsonValue::Null;
    default:
        return tagValueText(value);
    }
}

bool isIndex(const QJsonValue &name)
{
    if (!name.isDouble())
        return false;
    const double number = name.toDouble();
    return number == std::floor(number) && number >= std::numeric_limits<int>::min() &&
           number <= std::numeric_limits<int>::max();
}

// A number used as a name: reading by number is for whole numbers in range, any other number
// is a name in its text form.
QString nameText(const QJsonValue &name)
{
    if (name.isString())
        return name.toString();
    const double number = name.toDouble();
    if (number == std::floor(number) && std::abs(number) < 9007199254740992.0)
        return QString::number(qint64(number));
    return tagValueText(number);
}

QVariant writtenValue(const QJsonValue &value)
{
    if (value.isDouble()) {
        const double number = value.toDouble();
        if (number == std::floor(number) && std::abs(number) < 9007199254740992.0)
            return qlonglong(number);
        return number;
    }
    if (value.isBool())
        return value.toBool();
    return value.toString(); // text; null or missing write nothing
}

QByteArray answerGet(const QJsonObject &request, const QString &vars, const QJsonValue &name)
{
    QString entryName;
    QVariant result;
    if (isIndex(name)) {
        result = GetVar(vars, name.toInt(), &entryName);
    } else {
        entryName = nameText(name);
        result = request.contains(u"default"_s)
                     ? GetVar(vars, entryName, request.value(u"default"_s).toVariant())
                     : GetVar(vars, entryName);
    }
    return "{\"value\":" + jsonText(jsonValue(result)) + ",\"name\":" + jsonText(entryName) + '}';
}

QByteArray answerAdd(const QJsonObject &request, QString vars, const QJsonValue &name)
{
    const QJsonValue value = request.value(u"value"_s);
    if (value.isObject() || value.isArray())
        return errorLine(u"\"value\" must be text, a number or true/false"_s);
    const QJsonValue keepEmpty = request.value(u"keepEmpty"_s);
    if (!keepEmpty.isUndefined() && !keepEmpty.isBool())
        return errorLine(u"\"keepEmpty\" must be true or false"_s);
    if (isIndex(name))
        AddVar(vars, name.toInt(), writtenValue(value), keepEmpty.toBool());
    else
        AddVar(vars, nameText(name), writtenValue(value), keepEmpty.toBool());
    return "{\"vars\":" + jsonText(vars) + '}';
}

} // namespace

QString pretty(const QString &vars)
{
    QString out;
    printEntries(splitEntries(vars), 0, out);
    return out;
}

QVariant numberValue(const QString &text)
{
    bool ok = false;
    const qlonglong whole = text.toLongLong(&ok);
    if (ok)
        return whole;
    const double number = text.toDouble(&ok); // "." whatever the locale
    if (ok && std::isfinite(number))
        return number;
    return {};
}

QByteArray answerJsonLine(const QByteArray &line)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(line, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return errorLine(parseError.errorString());
    if (!document.isObject())
        return errorLine(u"each line must be one JSON object"_s);
    const QJsonObject request = document.object();
    const QJsonValue vars = request.value(u"vars"_s);
    if (!vars.isString() && !vars.isUndefined())
        return errorLine(u"\"vars\" must be text"_s);
    const QJsonValue name = request.value(u"name"_s);
    if (!name.isString() && !name.isDouble())
        return errorLine(u"\"name\" must be text or a whole number"_s);
    const QString op = request.value(u"op"_s).toString();
    if (op == u"get"_s)
        return answerGet(request, vars.toString(), name);
    if (op == u"add"_s)
        return answerAdd(request, vars.toString(), name);
    return errorLine(u"\"op\" must be \"get\" or \"add\""_s);
}

} // namespace QuillTv
