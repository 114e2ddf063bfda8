// SPDX-License-Identifier: GPL-3.0-or-later
// The Events page of the device window: the script or plug-in action the client runs on each call
// event. Reads and writes Events, one entry per assigned event, tagged by the event's name without
// blanks.
#pragma once

#include "actiongrid.h"

#include <QString>
#include <QStringList>
#include <QWidget>

class QLabel;
class TipFilter;

class EventsPage : public QWidget
{
    Q_OBJECT
public:
    EventsPage(QLabel *tipArea, ActionGrid::Editor editor, QWidget *parent = nullptr);

    // The events in grid order, as the grid names them.
    static const QStringList &eventNames();
    // The tag of an event in Events: its name without blanks ("New Call" -> "NewCall").
    static QString eventTag(const QString &name);

    void load(const QString &row);
    // Writes Events: the value as loaded (so entries of events the grid does not list stay), with
    // each row that is not mixed written over its entry; a cleared row removes its entry.
    void save(QString &row) const;

    ActionGrid *actions() const { return m_grid; }

private:
    ActionGrid *m_grid;
    TipFilter *m_tips;
    QString m_loaded;
};
