// SPDX-License-Identifier: GPL-3.0-or-later
// A window's control by its object name, for tests that drive real windows.
#pragma once

#include <QObject>
#include <QString>
#include <QWidget>
#include <QtGlobal>

// The control of window named name; a control the window lacks ends the test program at once.
template <typename T = QWidget> T *child(const QObject &window, const QString &name)
{
    auto *found = window.findChild<T *>(name);
    if (!found)
        qFatal("no control %s", qPrintable(name));
    return found;
}
template <typename T = QWidget> T *child(const QObject *window, const QString &name)
{
    return child<T>(*window, name);
}
