// SPDX-License-Identifier: GPL-3.0-or-later
#include "configparts.h"

#include "devicerecord.h"
#include "translate.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLayout>

#include <span>

using namespace Qt::StringLiterals;

namespace ConfigParts {

namespace {

// The caption beside each box, by index (the tip says what the box does in full).
const QStringList &flagCaptions()
{
    static const QStringList captions{
        u"Disable monitoring"_s,
        u"Ignore for missed calls"_s,
        u"Can dial"_s,
        u"View call log"_s,
        u"View others' call logs"_s,
        u"View address book"_s,
        u"Edit own details"_s,
        u"Exclude from status screen"_s,
        u"Main number"_s,
        u"Edit address book"_s,
        u"Show all departments"_s,
        u"Configure own buttons"_s,
        u"Use extension status window"_s,
        u"Pick up ringing calls"_s,
        u"View 'To do' list"_s,
        u"View features menu"_s,
        u"Set callbacks"_s,
        u"Reroute to external numbers"_s,
        u"Keep call details private"_s,
        u"Administrator"_s,
        u"Disable monitoring"_s,
        u"Use the telephone system's name"_s,
        u"Requires a logged-in agent"_s,
        u"Include on status screen"_s,
    };
    return captions;
}

// What the user of QuillPhone may do goes on the Features page; how the server treats the
// extension on the Advanced page.
constexpr int featureBoxes[] = {2, 3, 4, 5, 9, 6, 10, 11, 12, 13, 14, 15, 16, 17};
constexpr int advancedBoxes[] = {0, 1, 7, 8, 18, 19, 21, 22};
constexpr int trunkBoxes[] = {20, 23};

void addInColumns(QLayout *layout, const QList<QCheckBox *> &boxes, std::span<const int> indexes)
{
    auto *grid = qobject_cast<QGridLayout *>(layout);
    int position = 0;
    const int rows = int((indexes.size() + 1) / 2);
    for (int index : indexes) {
        if (grid)
            grid->addWidget(boxes.at(index), position % rows, position / rows);
        else
            layout->addWidget(boxes.at(index));
        ++position;
    }
    if (grid)
        grid->setRowStretch(rows, 1);
}

struct PageTip
{
    QString key;
    QString text;
};

} // namespace

QList<QCheckBox *> createFlagBoxes(QLayout *features, QLayout *advanced, QLayout *trunkPanel)
{
    QList<QCheckBox *> boxes;
    for (int index = 0; index < DeviceRecord::flagBoxCount; ++index) {
        auto *box = new QCheckBox(Translate(flagCaptions().at(index)));
        box->setObjectName(u"chk_%1"_s.arg(index));
        boxes.append(box);
    }
    addInColumns(features, boxes, featureBoxes);
    addInColumns(advanced, boxes, advancedBoxes);
    addInColumns(trunkPanel, boxes, trunkBoxes);
    return boxes;
}

QList<ControlTip> controlTips()
{
    QList<ControlTip> tips{
        {u"Typ"_s, u"QS122"_s, u"Choose whether to set up an extension, agent, speed dial or a trunk."_s},
        {u"Ext"_s, {}, {}},
        {u"Nam"_s, {}, {}},
        {u"Dept"_s, u"QS077"_s, u"Enter department this extension is in."_s},
        {u"DDI"_s, u"QS078"_s,
         u"Enter this extension's DDI number. This is normally the full DDI number excluding the area code."_s},
        {u"pwd"_s, u"QS114"_s, u"Enter QuillPhone password for this extension."_s},
        {u"Assistant"_s, u"QS115"_s, u"Enter the number of extension's assistant."_s},
        {u"Mobile"_s, u"QS116"_s, u"Enter the number of user's mobile telephone number."_s},
        {u"OK"_s, u"QS110"_s, u"Save changes and return to main screen."_s},
        {u"Cancel"_s, u"QS076"_s, u"Return to main screen without saving changes."_s},
        {u"Ab"_s, u"QS072"_s, u"List of current Address Books."_s},
        {u"NewAb"_s, u"QS109"_s, u"Select the Address Book to create new contacts in."_s},
        {u"pProps_0"_s, u"QS111"_s, u"Click to add a private Address Book for the selected user(s)."_s},
        {u"pProps_1"_s, u"QS112"_s,
         u"Click to configure the selected Address Book for the selected user(s)."_s},
        {u"pProps_2"_s, u"QS113"_s, u"Click to remove the selected private Address Book."_s},
    };
    const QList<DeviceRecord::FlagBox> &boxes = DeviceRecord::flagBoxes();
    for (qsizetype index = 0; index < boxes.size(); ++index)
        tips.append({u"chk_%1"_s.arg(index), boxes.at(index).key, boxes.at(index).text});
    return tips;
}

QString extTip(const QString &kindText)
{
    // Searched in the kind's English word, case and all: a speed dial gets the trunks' text.
    if (kindText.contains(u"Ext"_s))
        return Translate(
            u"QS079"_s,
            u"Enter extension number here. Use a range symbol '-' to create several extensions."_s);
    if (kindText.contains(u"Agent"_s))
        return Translate(u"QS080"_s,
                         u"Enter agent number here. Use a range symbol '-' to create several agents."_s);
    return Translate(u"QS081"_s,
                     u"Enter trunk number here. Use a range symbol '-' to create several trunks."_s);
}

QString namTip(int kindIndex)
{
    switch (kindIndex) {
    case 1:
        return Translate(u"QS107"_s, u"Enter name of this agent."_s);
    case 2:
        return Translate(u"QS142"_s, u"Enter name of this speed dial."_s);
    case 3:
        return Translate(u"QS108"_s, u"Enter name of this trunk."_s);
    default:
        return Translate(u"QS106"_s, u"Enter name of this extension."_s);
    }
}

QString pageTip(int page)
{
    // The Address Books page shares the Advanced page's key and the Notes page the Events page's:
    // the translation files are keyed so.
    static const PageTip tips[PageCount]{
        {u"QS117"_s, u"Enter general information for the directory entry."_s},
        {u"QS118"_s, u"Select the available features of this extension in QuillPhone."_s},
        {u"QS119"_s,
         u"Configure advanced features. The system will work optimally if this data is correct."_s},
        {u"QS119"_s,
         u"Configure how Address Books work on the users machine. Not all Address Books are available to all users."_s},
        {u"QS120"_s, u"Configure programmable buttons.  Not all buttons are available to all users."_s},
        {u"QS121"_s,
         u"Configure events. Events are only available to certain client products. Please check the manual for more information."_s},
        {u"QS141"_s, u"Configure campaigns.  Campaigns are available to QuillCampaign users."_s},
        {u"QS121"_s, u"Please enter any notes as appropriate."_s},
    };
    if (page < 0 || page >= PageCount)
        return {};
    return Translate(tips[page].key, tips[page].text);
}

QString singleTitle(const QString &kindText, const QString &number)
{
    return Translate({}, u"<1> Properties: <2>"_s, kindText, number);
}

QString severalTitle(const QString &loadedType, qsizetype count)
{
    return Translate({}, u"<1> Properties: (<2>)"_s, Translate(DeviceRecord::kindWord(loadedType)),
                     TranslatePlural(count, u"entry"_s));
}

} // namespace ConfigParts
