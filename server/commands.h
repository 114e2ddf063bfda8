// SPDX-License-Identifier: GPL-3.0-or-later
// The command catalogue of the server: one command string in, one reply (or none) out.
#pragma once

#include "store.h"

#include <QString>

// What one command did: the reply to send ("" when the command has none) and, when the command
// was refused in whole or in part, one line saying why. The server never sends refusals to the
// client: they go to the log only.
struct CommandOutcome
{
    QString reply;
    QString refusal;
};

class CommandProcessor
{
public:
    explicit CommandProcessor(Store &store);

    // Runs one command as one unit of the store (its own transaction, or a savepoint of the open
    // group). Never throws; bad input gives a refusal and leaves the stored data as it was.
    CommandOutcome execute(const QString &command);

private:
    class Run;
    Store &m_store;
};

// True when text is a run of whole entries: every sized entry's length lands on its "}", every
// plain entry is closed. A command cut short anywhere fails this test.
bool wellFormedEntries(QStringView text);
