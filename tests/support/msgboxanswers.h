// SPDX-License-Identifier: GPL-3.0-or-later
// Message boxes answered by the test instead of the user.
#pragma once

#include "translatewidgets.h"

#include <QStringList>

#include <functional>

// Answers every message box with answer, noting its text in asked; whileAsked runs while the box
// would be open (a reply arriving then, say).
inline void answerMessageBoxes(QMessageBox::StandardButton answer, QStringList &asked,
                               std::function<void()> whileAsked = {})
{
    setMsgBoxAnswer(
        [&asked, answer, whileAsked](const QString &, const QString &text, QMessageBox::StandardButtons) {
            asked.append(text);
            if (whileAsked)
                whileAsked();
            return answer;
        });
}
