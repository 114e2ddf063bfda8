// SPDX-License-Identifier: GPL-3.0-or-later
// The device window's parts built from tables: the flag check boxes on their pages, the help texts
// of its controls and pages, and its titles.
#pragma once

#include "tipfilter.h"

#include <QList>
#include <QString>

class QCheckBox;
class QLayout;

namespace ConfigParts {

// The pages of the device window, in tab order.
enum Page { General, Features, Advanced, AddressBooks, Buttons, Events, Campaigns, Notes, PageCount };

// Creates the flag boxes chk_0 .. chk_23 (indexed as DeviceRecord::flagBoxes()) into the layouts
// of the pages that show them: the Features and Advanced pages hold 0 to 19, 21 and 22, the trunk
// panel of the General page 20 and 23.
QList<QCheckBox *> createFlagBoxes(QLayout *features, QLayout *advanced, QLayout *trunkPanel);

// The help texts of the fixed controls, of the Address Books page and of every flag box. Ext and
// Nam depend on the kind: their texts come from extTip and namTip.
QList<ControlTip> controlTips();
// The tip of Ext for the kind's English word (so in any language): "Ext" in it means extensions,
// else "Agent" agents, and anything else trunks (speed dials included).
QString extTip(const QString &kindText);
// The tip of Nam for the kind index (an extension's for none chosen).
QString namTip(int kindIndex);
// The tip shown when a page is chosen.
QString pageTip(int page);

// "<1> Properties: <2>" for one device or a new one, with the kind's word and the number.
QString singleTitle(const QString &kindText, const QString &number);
// "<1> Properties: (<2>)" for several devices: their kind's word ("Entry" when they differ) and
// "3 entries".
QString severalTitle(const QString &loadedType, qsizetype count);

} // namespace ConfigParts
