// SPDX-License-Identifier: GPL-3.0-or-later
// The server's logging category: refusals, sessions, start and stop.
#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcServer)
