// SPDX-License-Identifier: GPL-3.0-or-later
// The main window's help texts: one per page and one per control, shown in the tip area.
#pragma once

#include "tipfilter.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace Tips {
// The pages in tab order, as their tabs are captioned (untranslated).
const QStringList &pageNames();
// The translated help text of page (0 = Directory .. 7 = Scripts); empty past the last page.
QString pageTip(int page, const QString &productName);
// Every control's help text, in key order.
const QList<ControlTip> &controlTips();
// The translated help text of one control.
QString controlTipText(const ControlTip &tip, const QString &productName, const QString &systemType);
} // namespace Tips
