// SPDX-License-Identifier: GPL-3.0-or-later
#include "propertywindows.h"

#include "translate.h"

#include <QLoggingCategory>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcPropertyWindows, "quill.forms.windows")

PropertyWindows::PropertyWindows(QObject *parent) : QObject(parent) {}

void PropertyWindows::setOpener(const QString &table, Opener opener)
{
    const QString key = table.toLower();
    if (opener)
        m_openers.insert(key, std::move(opener));
    else
        m_openers.remove(key);
    emit openersChanged();
}

bool PropertyWindows::canOpen(const QString &table) const
{
    return m_openers.contains(table.toLower());
}

WindowResult PropertyWindows::open(const QString &table, const QString &idText, QWidget *parent) const
{
    const auto found = m_openers.constFind(table.toLower());
    if (found == m_openers.constEnd()) {
        qCWarning(lcPropertyWindows) << "no property window for table" << table;
        return WindowResult::cancelled();
    }
    // A copy: the opener may replace itself while its window is open.
    const Opener opener = found.value();
    return opener(idText, parent);
}

WindowResult PropertyWindows::openFromList(const QString &table, const QString &idText, QWidget *parent,
                                           const std::function<bool(const WindowResult &)> &updateInPlace,
                                           const std::function<void()> &reload) const
{
    const WindowResult result = open(table, idText, parent);
    switch (result.outcome) {
    case WindowResult::Cancelled:
        break;
    case WindowResult::SavedExisting:
        if (updateInPlace && updateInPlace(result))
            break;
        [[fallthrough]]; // nothing to show in place, or the entry has gone meanwhile
    case WindowResult::SavedNew:
        if (reload)
            reload();
        break;
    }
    return result;
}

QString PropertyWindows::unavailableTip()
{
    return Translate(u"This window is not available in this version."_s);
}
