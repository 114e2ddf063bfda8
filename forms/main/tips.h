// SPDX-License-Identifier: GPL-3.0-or-later
// The main window's help texts: one per page and one per control, shown in the tip area.
#pragma once

#include "tipfilter.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace Tips {
// The pages in tab order, as their tabs are captioned (untranslated).
const QStringList &PageNames();
// The translated help text of page (0 = Directory .. 7 = Scripts); empty past the last page.
QString PageTip(int page, const QString &productName);
// Every control's help text, in key order.
const QList<ControlTip> &ControlTips();
// The translated help text of one control.
QString ControlTipText(const ControlTip &tip, const QString &productName, const QString &systemType);
} // namespace Tips
