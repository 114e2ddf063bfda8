// SPDX-License-Identifier: GPL-3.0-or-later
// What an import of a device sheet would do to the devices the server holds: for each row, a new
// device, a change (which fields, from what to what), nothing, or a rejection; and the store
// command of every row that sends one, written as the device window writes it. QtCore only.
#pragma once

#include "devicesheet.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace DevicePlan {

enum class State { New, Changed, Unchanged, Rejected };

struct Change
{
    QString field;
    QString before;
    QString after;
};

struct Entry
{
    qsizetype line = 0;
    QString ext;
    State state = State::Rejected;
    QString id;             // the stored device's id; empty for a new one
    QList<Change> changes;  // in the order the device window writes the fields
    QStringList reasons;    // what was found on the row (its errors, or the warnings of a sent row)
    QString command;        // the store command; empty when nothing is sent
};

struct Plan
{
    QList<Entry> entries;
    qsizetype count(State state) const;
    // How many rows send a command (new and changed ones).
    qsizetype sending() const;
    // "N new, N changed, N unchanged, N rejected".
    QString summary() const;
};

// The fields a plan needs to read from the server for sheet: Ext and Type, then the sheet's other
// columns.
QStringList fieldsToRead(const DeviceSheet::Sheet &sheet);

// Plans sheet against the devices of server (read with at least fieldsToRead(sheet) and Id).
Plan make(const DeviceSheet::Sheet &sheet, const DeviceSheet::Table &server);

// The command that stores a new device of row as the device window stores one typed in with the
// same values: Type, the fields its kind shows (a new device's defaults where the row says
// nothing), its buttons, then Ext and Name.
QString newDeviceCommand(const DeviceSheet::Row &row);

// "Name: Reception -> Front desk"; a secret field says only that it changes.
QString changeText(const Change &change);
// A state's word as the preview and the summary show it ("new", "changed", ...), translated.
QString stateWord(State state);

} // namespace DevicePlan
