// SPDX-License-Identifier: GPL-3.0-or-later
#include "utilities.h"

#include "errorlog.h"
#include "tagvalue.h"

#include <QScopeGuard>
#include <QSettings>
#include <QStringList>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype registryNameLength = 102;
constexpr qsizetype registryDataLength = 1002;

// Trims blanks only: tabs and other control characters have already been cut by ZTrim, and other
// white space is part of a name.
QString trimBlanks(const QString &text)
{
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && text[first] == u' ')
        ++first;
    while (last > first && text[last - 1] == u' ')
        --last;
    return text.mid(first, last - first);
}

// Record identifiers are whole numbers; keep them whole so that they print and compare as such.
QVariant numberValue(double number)
{
    if (std::trunc(number) == number && std::abs(number) < 9.0e15)
        return QVariant(qlonglong(number));
    return QVariant(number);
}

// A settings value as the text a registry string would hold. A list (a multi-string value) is
// joined with the terminators it carries there, so that the cut keeps only its first string.
QString settingsText(const QVariant &value)
{
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList().join(QChar(0));
    return tagValueText(value);
}

} // namespace

QVariant GetId(const QString &key)
{
    QVariant id = key;
    Guard(u" @ basQSConfig.GetId"_s, [&] {
        if (key.startsWith(u'~'))
            id = numberValue(leadingNumber(QStringView(key).mid(1)));
    });
    return id;
}

qsizetype Occur(const QString &text, const QString &part)
{
    qsizetype count = 0;
    Guard(u" @ basGlobal.Occur"_s, [&] {
        const QStringView view(text);
        for (qsizetype at = 0; at < view.size(); ++at) {
            if (view.mid(at).startsWith(part))
                ++count;
        }
    });
    return count;
}

QString Proper(const QString &text)
{
    QString result;
    Guard(u" @ basGlobal.Proper"_s, [&] {
        result.reserve(text.size());
        for (const QChar c : text) {
            const bool wordStart =
                result.isEmpty() || result.back() == u' ' || result.back() == u'-' || result.back() == u'.';
            result += wordStart ? c.toUpper() : c.toLower();
        }
    });
    return result;
}

QString ZTrim(const QString &text)
{
    QString result = text;
    Guard(u" @ basGlobal.ZTrim"_s, [&] {
        for (qsizetype at = 0; at < text.size(); ++at) {
            if (text[at].unicode() < 32) {
                result = text.left(at);
                return;
            }
        }
    });
    return result;
}

QString FilePath(const QString &path)
{
    const qsizetype lastSeparator = qMax(path.lastIndexOf(u'\\'), path.lastIndexOf(u'/'));
    return path.left(lastSeparator + 1);
}

QString RegistryListEntries(QSettings &settings, const QString &group)
{
    QString entries;
    Guard(u" @ basGlobal.RegistryListEntries"_s, [&] {
        settings.beginGroup(group);
        const auto leaveGroup = qScopeGuard([&] { settings.endGroup(); });
        const QStringList names = settings.childKeys();
        for (const QString &rawName : names) {
            const QString name = trimBlanks(ZTrim(rawName.left(registryNameLength)));
            const QString data =
                trimBlanks(ZTrim(settingsText(settings.value(rawName)).left(registryDataLength)));
            AddVar(entries, name, data);
        }
    });
    return entries;
}
