// SPDX-License-Identifier: GPL-3.0-or-later
// The openers of the property windows, by table: the main window's lists open records through here.
#pragma once

#include <QHash>
#include <QObject>
#include <QString>

#include <functional>

class QWidget;

// Each property window registers how it is opened for its table ("Exts", "AB", "Campaigns",
// "Routing", "Scripts"; compared without regard to case). The id text is what the window receives
// in its hidden Tid (Lid for devices): "-1" for a new record, the id or the ids joined by ",", or
// "*" + id to copy a campaign. The opener shows its window modally.
class PropertyWindows : public QObject
{
    Q_OBJECT
public:
    using Opener = std::function<void(const QString &idText, QWidget *parent)>;

    explicit PropertyWindows(QObject *parent = nullptr);

    // An empty opener takes the table's window away again.
    void setOpener(const QString &table, Opener opener);
    bool canOpen(const QString &table) const;
    // False (and nothing shown) when the table has no window.
    bool open(const QString &table, const QString &idText, QWidget *parent) const;

    // The tool tip of a button whose window is missing.
    static QString unavailableTip();

signals:
    // A window came or went: the lists update their buttons.
    void openersChanged();

private:
    QHash<QString, Opener> m_openers;
};
