// SPDX-License-Identifier: GPL-3.0-or-later
// The server's logging categories: refusals, sessions, start and stop; and the back-off of
// failing log-ins (quill.server.auth).
#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcServer)
Q_DECLARE_LOGGING_CATEGORY(lcServerAuth)
