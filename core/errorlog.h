// SPDX-License-Identifier: GPL-3.0-or-later
// The error log: one line per fault, appended to tamsel.log, and the guard that writes it.
#pragma once

#include <QString>
#include <exception>
#include <stdexcept>
#include <utility>

// A fault with a description, as the guarded handlers report it.
class Fault : public std::runtime_error
{
public:
    explicit Fault(const QString &description) : std::runtime_error(description.toStdString()) {}
};

namespace ErrorLog {
// Appends one line for message. Never throws; flushes the line to disk before it returns.
// Messages about the two expected faults are not written at all.
void write(const QString &message) noexcept;
// The log file: tamsel.log in the user's data folder unless a test has set another.
QString path();
void setPath(const QString &path); // test seam; an empty path restores the default
// The application name each line begins with (the executable's name by default).
void setApplicationName(const QString &name);
// The last lines of the log, for the Errors window.
QString tail(qsizetype maxBytes = 64 * 1024);
void clear();
inline constexpr qint64 MaxBytes = 1000000;
} // namespace ErrorLog

// Runs body; a thrown fault is written with the location label (" @ basGlobal.AddVar") and the
// program goes on. The handler stops at the fault: C++ has no resume-next.
template <typename Body>
bool Guard(const QString &label, Body &&body) noexcept
{
    try {
        std::forward<Body>(body)();
        return true;
    } catch (const std::exception &fault) {
        ErrorLog::write(QString::fromUtf8(fault.what()) + label);
    } catch (...) {
        ErrorLog::write(QStringLiteral("Unknown fault") + label);
    }
    return false;
}
