// SPDX-License-Identifier: GPL-3.0-or-later
// The device row as the device window reads and writes it, and the rules of its OK that need no
// window: input cuts, the numbered range of new devices and the commands that store them, and the
// campaign list after a choice. QtCore only, so that every rule is tested without a window.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace DeviceRecord {

// The fields the window asks the server for, in order; the read command sends this text verbatim
// (before the per-book fields) as its Fields value.
QString fieldList();

// The row a new device starts from, character for character. Buttons is written twice and the
// first entry is the one read; Preview and BLFName are in it although no control shows them.
QString defaults();

// The kind selector's entries in order: the Type value of each index, and the word for it in
// titles. A selection of several kinds is called mixedKindWord().
const QStringList &kinds();
const QStringList &kindWords();
QString mixedKindWord();
// The selector index of a Type value (any case), or -1 for the mixed marker or an unknown kind.
int kindIndex(const QString &type);
// The title word for a loaded Type: its kind's word, or "Entry" when the devices differ.
QString kindWord(const QString &type);

// One flag check box: the field it edits and its tip (translation key and English text).
struct FlagBox
{
    QString tag;
    QString key;
    QString text;
};
inline constexpr int flagBoxCount = 24;
// Indexed by box: DontMonitor has two boxes, 0 on the extension pages and 20 on the trunk page.
const QList<FlagBox> &flagBoxes();

// What OK does to the top panel's and the general page's texts before anything is checked or sent.
QString cutName(const QString &name);
QString cutDepartment(const QString &department);
QString cutDdi(const QString &ddi);
// Trimmed, cut to 15 and upper-cased: " 12ab " is stored as "12AB".
QString cutNumber(const QString &number);

// One store command's device: ext is empty when the row carries no Ext (an edit never changes a
// device's number).
struct PlannedDevice
{
    QString ext;
    QString name;
    bool operator==(const PlannedDevice &) const = default;
};
// The devices OK sends, in order, from the texts of Ext and Nam (cut here as OK cuts them).
// A new device's number may be a range "first-last" ("L" before the first number is kept as a
// prefix); "#" in the name stands for each number. A range that is not 2 to 100 apart, or with a
// number that reads as zero, creates only its first device. An edit gives one entry, without Ext
// and with every "#" removed. Empty when the number is empty: the window says so and sends nothing.
QList<PlannedDevice> sendingPlan(const QString &number, const QString &name, bool newDevice);
// The store commands for a plan: fields is the row built from the pages, idList the window's id
// list ("-1" for new devices). Each device's Ext and Name follow fields without touching them, so
// a record nested in the row (a private address book has a Name of its own) stays whole.
QStringList storeCommands(const QString &fields, const QString &idList, const QList<PlannedDevice> &plan);

// The mark after a done campaign's name that saving recognises: " (Done)", in English whatever
// language the list shows it in.
QString campaignDoneMark();
// The device's campaign entries after the choice dialog answered with choice: the first entry
// naming it (any case, with or without its " (Done)" mark) goes, and the choice is appended unmarked.
QStringList addCampaignChoice(QStringList entries, const QString &choice);

} // namespace DeviceRecord
