// SPDX-License-Identifier: GPL-3.0-or-later
// Layout helpers the windows share.
#pragma once

#include <QList>

class QWidget;

// Gives the labels of every form layout inside the containers one width, so that forms stacked in
// separate groups keep their fields in one column.
void alignFormLabels(const QList<QWidget *> &containers);
