// SPDX-License-Identifier: GPL-3.0-or-later
#include "propertywindows.h"

#include "translate.h"

#include <QLoggingCategory>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcPropertyWindows, "quill.main.windows")

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

bool PropertyWindows::open(const QString &table, const QString &idText, QWidget *parent) const
{
    const auto found = m_openers.constFind(table.toLower());
    if (found == m_openers.constEnd()) {
        qCWarning(lcPropertyWindows) << "no property window for table" << table;
        return false;
    }
    // A copy: the opener may replace itself while its window is open.
    const Opener opener = found.value();
    opener(idText, parent);
    return true;
}

QString PropertyWindows::unavailableTip()
{
    return Translate(u"This window is not available in this version."_s);
}
