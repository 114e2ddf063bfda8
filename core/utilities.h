// SPDX-License-Identifier: GPL-3.0-or-later
// Text helpers shared by every window: list keys, occurrence counts, names, paths, plug-in lists.
#pragma once

#include <QString>
#include <QStringView>
#include <QVariant>

class QSettings;

// Turns a list key back into a record identifier: "~17" gives the number 17 (read as a leading
// number, so "~" alone gives 0); any key that does not begin with "~" comes back unchanged as
// text ("17" stays the text "17").
QVariant GetId(const QString &key);

// How many times part occurs in text, overlapping occurrences included ("aaa" holds "aa" twice).
// The comparison is exact, case included. An empty part occurs once at every position of text.
qsizetype Occur(const QString &text, const QString &part);

// Word-initial capitals: a character after a blank, "-" or "." (or the first) is upper-cased,
// every other one lower-cased. "o'neil-smith jr.x" becomes "O'neil-Smith Jr.X".
QString Proper(const QString &text);

// The characters before the first control character (code below 32), as for a fixed-size buffer
// the operating system filled and terminated.
QString ZTrim(const QString &text);

// The directory part of a path: everything up to and including its last separator, or empty text
// when there is none. "\" is the separator the server and the other clients write; "/" counts as
// well because paths on this platform (and paths Qt hands back on any platform) use it.
QString FilePath(const QString &path);

// The values of one settings group (our stand-in for a registry key, e.g. "Plugins") as a
// tagged-value string: value name as tag, value data as text. Names are cut to 102 characters and
// data to 1002, each cut at its first control character and trimmed of blanks. A missing group
// gives empty text; subgroups are not values and are left out.
QString RegistryListEntries(QSettings &settings, const QString &group);
