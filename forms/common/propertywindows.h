// SPDX-License-Identifier: GPL-3.0-or-later
// The openers of the property windows, by table: the main window's lists open records through here,
// and each window tells its list how it closed.
#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

// How a property window closed, for the list that opened it.
struct WindowResult
{
    enum Outcome {
        Cancelled,     // nothing was sent: the list stays as it is
        SavedNew,      // a new record: the list asks for its whole list again
        SavedExisting, // an edited record: the list shows its new values in place
    };
    Outcome outcome = Cancelled;
    QString id;          // the edited record's id (the first when several were saved at once)
    QStringList columns; // the entry's texts to show, from the first column; none: ask again
    QString record;      // the record as saved, for lists that show several of its fields

    static WindowResult cancelled() { return {}; }
    static WindowResult savedNew() { return {SavedNew, {}, {}, {}}; }
    static WindowResult savedExisting(const QString &id, const QStringList &columns, const QString &record = {})
    {
        return {SavedExisting, id, columns, record};
    }
};

// Each property window registers how it is opened for its table ("Exts", "AB", "Campaigns",
// "Routing", "Scripts"; compared without regard to case), and the tool's small windows under their
// own names ("Errors"). The id text is what the window receives in its hidden Tid (Lid for devices):
// "-1" for a new record, the id or the ids joined by ",", or "*" + id to copy a campaign. The
// opener shows its window (modally for a record) and returns how it closed.
class PropertyWindows : public QObject
{
    Q_OBJECT
public:
    using Opener = std::function<WindowResult(const QString &idText, QWidget *parent)>;

    explicit PropertyWindows(QObject *parent = nullptr);

    // An empty opener takes the table's window away again.
    void setOpener(const QString &table, Opener opener);
    bool canOpen(const QString &table) const;
    // Cancelled (and nothing shown) when the table has no window.
    WindowResult open(const QString &table, const QString &idText, QWidget *parent) const;

    // Opens the window from a list and brings the list up to date from how it closed: an edited
    // record that the list can show in place (updateInPlace returns true: the window gave the
    // values and the entry is still there) is shown so; any other save makes the list ask for its
    // whole list again (reload).
    WindowResult openFromList(const QString &table, const QString &idText, QWidget *parent,
                              const std::function<bool(const WindowResult &result)> &updateInPlace,
                              const std::function<void()> &reload) const;

    // The tool tip of a button whose window is missing.
    static QString unavailableTip();

signals:
    // A window came or went: the lists update their buttons.
    void openersChanged();

private:
    QHash<QString, Opener> m_openers;
};
