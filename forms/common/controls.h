// SPDX-License-Identifier: GPL-3.0-or-later
// Moving field values between tagged-value records and form controls, mixed state included.
#pragma once

#include <QString>
#include <QVariant>

class QButtonGroup;
class QObject;
class QWidget;

// The text form of the mixed state: a field whose records disagree when several are edited at
// once. A control shows it as its greyed or empty state, and a field left so is not written.
inline const QString MixedValue = QStringLiteral(" ");

// A "BTN" control (objectName beginning with "BTN" in any case) is a list of button actions: it
// is set and read by the text of its entries. Other controls carry a number.
bool isButtonList(const QObject *control);

// Index (from 0) of the first entry of a QComboBox or QListWidget that matches value, or -1.
// A number matches the number stored with the entry (its Qt::UserRole data; an entry without one
// holds 0). Text matches the entry's whole text, or with partial its beginning, in any case.
int ListSearch(const QWidget *list, const QVariant &value, bool partial = false);

// Sets a control from a record's field text.
// - Check box: the leading number of value (so "1" ticks, "" clears); MixedValue greys it.
// - "BTN" list: selects the entry whose text is value, none when there is no such entry.
// - Other lists (QComboBox, QListWidget): selects the entry at the leading number of value.
// - Any list: MixedValue leaves no entry selected.
// A value the control cannot take (a check box of 7, an entry past the end) is logged and the
// control keeps its state.
void GetOption(QWidget *control, const QString &value);
// An option group: checks the button whose id is the leading number of value; MixedValue, or an
// id without a button, leaves every button unchecked. Give each button its value as its id.
void GetOption(QButtonGroup *group, const QString &value);

// Writes the control's value into vars as name, always (a cleared check box is stored as "0"),
// unless the control is in its mixed state (greyed check box, list or group with nothing chosen).
// A check box writes 0, 1; a "BTN" list the selected entry's text; other lists the selected index;
// an option group the checked button's id.
void SetOption(QString &vars, const QString &name, const QWidget *control);
void SetOption(QString &vars, const QString &name, const QButtonGroup *group);
// Writes text into vars as name unless it is MixedValue. Empty text removes the field.
void SetOption(QString &vars, const QString &name, const QString &text);
// The same for a list the user edits whole (campaigns, private books): text that is empty where the
// field as loaded held a value (not MixedValue) is written empty, so that the server forgets the
// list too instead of keeping what was removed.
void SetListOption(QString &vars, const QString &name, const QString &text, const QString &loaded);
