// SPDX-License-Identifier: GPL-3.0-or-later
// Answering a modal window that the next step of a test opens (its exec() returns only once the
// window is closed, so the test acts on it from a timer).
#pragma once

#include <QApplication>
#include <QTimer>
#include <QWidget>

#include <functional>

// Runs answer on the modal window as soon as one is showing (for about five seconds at the most).
inline void answerModalWindow(std::function<void(QWidget *window)> answer, int triesLeft = 500)
{
    QTimer::singleShot(10, [answer, triesLeft] {
        if (QWidget *window = QApplication::activeModalWidget())
            answer(window);
        else if (triesLeft > 0)
            answerModalWindow(answer, triesLeft - 1);
    });
}
