// SPDX-License-Identifier: GPL-3.0-or-later
// What quilltv does with a tagged-value string, apart from reading and writing the terminal.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

namespace QuillTv {

// An indented tree of the string's entries, one line each, nested records opened up.
QString pretty(const QString &vars);

// The value quilltv writes for "add --number": a whole number stays whole, anything else that
// reads as a number is a double. Text that is no number gives an invalid QVariant.
QVariant numberValue(const QString &text);

// Answers one line of the --json-lines protocol with one JSON line (without the line end).
QByteArray answerJsonLine(const QByteArray &line);

} // namespace QuillTv
