// SPDX-License-Identifier: GPL-3.0-or-later
// Admin passwords and log-in tokens: salted PBKDF2 hashes, constant-time comparison.
#pragma once

#include "store.h"

#include <QByteArray>
#include <QString>

namespace Credentials {
// Slow on purpose: one log-in costs a noticeable fraction of a second of a guesser's time.
inline constexpr int DefaultIterations = 100000;
inline constexpr int SaltBytes = 16;
inline constexpr int HashBytes = 32;

// A fresh salt and the PBKDF2-SHA-256 hash of password under it.
Account hashPassword(const QString &password, int iterations = DefaultIterations);
// True when password hashes to account's hash; the comparison takes the same time wherever the
// first difference is.
bool verify(const QString &password, const Account &account);
// The same work as Verify for a user that does not exist, so that a wrong name and a wrong
// password take the same time.
void wasteVerification(const QString &password);
bool constantTimeEquals(const QByteArray &a, const QByteArray &b);
// 32 random bytes from the system generator, as hex text.
QString newToken();
} // namespace Credentials
