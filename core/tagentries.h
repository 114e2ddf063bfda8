// SPDX-License-Identifier: GPL-3.0-or-later
// A structural walk over the top-level entries of a tagged-value string. The server reads the
// fields of incoming records with it, and support tools print trees with it; the tool's windows
// read records only with GetVar.
#pragma once

#include <QList>
#include <QString>
#include <QStringView>

struct TagEntry {
    QString name;
    QChar type;         // 'S', 'N', 'D' (or what the writer put there); null for a plain entry
    QString value;      // the raw value text
    bool sized = false;
};

// The top-level entries in order. Text between entries is skipped; a value whose length runs past
// the end yields what exists; a plain value without "}" runs to the end.
QList<TagEntry> splitEntries(QStringView vars);
// The entry written back as it was read: name, type letter and value unchanged ("{Port(N3)=007}"
// stays so, where reading the value as a number and writing it again would give "7").
QString entryText(const TagEntry &entry);
