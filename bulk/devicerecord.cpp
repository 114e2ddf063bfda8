// SPDX-License-Identifier: GPL-3.0-or-later
#include "devicerecord.h"

#include "serverlink.h"
#include "tagvalue.h"

using namespace Qt::StringLiterals;

namespace DeviceRecord {

QString fieldList()
{
    // The read command owns the list; without address books it is the list alone.
    return Commands::deviceFieldList({});
}

QString defaults()
{
    return u"{CanDial=1}{CallLog=1}{ViewAB=1}{EditOwn=1}{EditAB=1}{ConfigButtons=1}{ViewBLF=1}"
           "{AllowPickup=1}{ViewTodo=1}{ViewFeatures=1}{Preview=1}{BLFName=1}{Buttons(S9)=4 buttons}"
           "{btn0(S53)={Type(S13)=Answer/Hangup}{Display(S13)=Answer/Hangup}}"
           "{btn1(S53)={Type(S13)=Answer/Hangup}{Display(S13)=Answer/Hangup}}"
           "{btn2(S49)={Type(S11)=Hold/Unhold}{Display(S11)=Hold/Unhold}}"
           "{btn3(S51)={Type(S12)=Show Contact}{Display(S12)=Show Contact}}"
           "{btn4(S17)={Type(S6)=(None)}}{Buttons(S9)=4 buttons}"_s;
}

const QStringList &kinds()
{
    static const QStringList types{u"EXT"_s, u"AGENT"_s, u"SPEED"_s, u"TRUNK"_s};
    return types;
}

const QStringList &kindWords()
{
    static const QStringList words{u"Extension"_s, u"Agent"_s, u"Speed dial"_s, u"Trunk"_s};
    return words;
}

QString mixedKindWord()
{
    return u"Entry"_s;
}

int kindIndex(const QString &type)
{
    return kinds().indexOf(type.toUpper());
}

QString kindWord(const QString &type)
{
    const int index = kindIndex(type);
    return index < 0 ? mixedKindWord() : kindWords().at(index);
}

const QList<FlagBox> &flagBoxes()
{
    static const QList<FlagBox> boxes{
        {u"DontMonitor"_s, u"QS082"_s, u"Check this to disable monitoring of this extension."_s},
        {u"NotAnswer"_s, u"QS083"_s, u"Check this to ignore this extension when analyzing missed calls."_s},
        {u"CanDial"_s, u"QS084"_s, u"Check this to enable dialing from this extension."_s},
        {u"CallLog"_s, u"QS085"_s, u"Check this to enable viewing of the call log."_s},
        {u"OtherLog"_s, u"QS086"_s, u"Check this to enable viewing of others call logs."_s},
        {u"ViewAB"_s, u"QS087"_s, u"Check this to enable viewing of the address book."_s},
        {u"EditOwn"_s, u"QS088"_s, u"Check this to allow user to edit their details in QuillPhone."_s},
        {u"ExcludeBLF"_s, u"QS089"_s,
         u"Check this to exclude this extension from the extension status screen."_s},
        {u"MainNo"_s, u"QS090"_s, u"Check this to treat this extension as a main number in calculations."_s},
        {u"EditAB"_s, u"QS091"_s, u"Check this to enable editing of address book."_s},
        {u"ShowAll"_s, u"QS092"_s,
         u"Check this to include all departments in the user's extension status window."_s},
        {u"ConfigButtons"_s, u"QS093"_s, u"Check this to allow the user to configure their own buttons."_s},
        {u"ViewBLF"_s, u"QS094"_s, u"Check this to allow the user to use Extension Status Window."_s},
        {u"AllowPickup"_s, u"QS095"_s, u"Check this to allow the user to 'pickup' ringing calls."_s},
        {u"ViewTodo"_s, u"QS096"_s, u"Check this to enable the user to view their 'To do' list."_s},
        {u"ViewFeatures"_s, u"QS097"_s, u"Check this to allow the user to view the features menu."_s},
        {u"SetCallback"_s, u"QS098"_s,
         u"Check this to allow the user to set callbacks on external numbers."_s},
        {u"AllowReroute"_s, u"QS099"_s,
         u"Check this to allow the user to reroute callers to external numbers."_s},
        {u"Privacy"_s, u"QS100"_s, u"Check this to keep this user's call details private."_s},
        {u"Administrator"_s, u"QS101"_s,
         u"Check this to allow this user to perform administrative functions."_s},
        {u"DontMonitor"_s, u"QS102"_s, u"Check this to disable monitoring of this trunk."_s},
        // Two blanks after the first sentence, as the translation files have it.
        {u"UsePBXName"_s, u"QS103"_s,
         u"Check this to use the extension's name from the telephone system.  This is normally updated during calls."_s},
        {u"RequireAgent"_s, u"QS104"_s,
         u"This option means that the extension must have an agent logged in before calls can be made."_s},
        {u"IncludeBLF"_s, u"QS105"_s, u"Check this to include this trunk on the extension status screen."_s},
    };
    return boxes;
}

QString cutName(const QString &name)
{
    return name.left(25);
}

QString cutDepartment(const QString &department)
{
    return department.left(15);
}

QString cutDdi(const QString &ddi)
{
    return ddi.left(15);
}

QString cutNumber(const QString &number)
{
    return number.trimmed().left(15).toUpper();
}

QList<PlannedDevice> sendingPlan(const QString &number, const QString &name, bool newDevice)
{
    const QString ext = cutNumber(number);
    const QString shownName = cutName(name);
    if (ext.isEmpty())
        return {};

    // An edit keeps first and last empty: one store, no Ext, and "#" stands for nothing.
    QString prefix;
    QString first;
    QString last;
    if (newDevice) {
        const qsizetype dash = ext.indexOf(u'-');
        first = dash < 0 ? ext : ext.left(dash);
        last = dash < 0 ? QString() : ext.mid(dash + 1);
        if (first.startsWith(u'L')) {
            // "L10-L20": the letter is not part of the count; both ends lose their first character
            // and each number sent gets the "L" back (its name does not).
            prefix = u"L"_s;
            first.remove(0, 1);
            last.remove(0, 1);
        }
        // A range makes 3 to 101 devices; anything else ("100-101", "100-250", "0-5", "5-3")
        // creates its first number only, without a word to the user.
        const double span = leadingNumber(last) - leadingNumber(first);
        if (leadingNumber(first) == 0 || leadingNumber(last) == 0 || span < 2 || span > 100)
            last.clear();
    }

    QList<PlannedDevice> plan;
    QString current = first; // the first number goes as typed, leading zeros and all
    double value = leadingNumber(first);
    const double end = leadingNumber(last);
    for (;;) {
        plan.append(
            {first.isEmpty() ? QString() : prefix + current, QString(shownName).replace(u'#', current)});
        if (first.isEmpty() || last.isEmpty() || value >= end)
            break;
        value += 1;
        current = QString::number(value, 'g', 15);
    }
    return plan;
}

QStringList storeCommands(const QString &fields, const QString &idList, const QList<PlannedDevice> &plan)
{
    // Ext and Name are written after the row rather than into it: writing a tag removes its first
    // entry anywhere in the text, a nested one included.
    QStringList commands;
    for (const PlannedDevice &device : plan) {
        QString identity;
        if (!device.ext.isEmpty())
            AddVar(identity, u"Ext"_s, device.ext);
        // A name still showing the mixed marker (one blank) is left out, so each device keeps its own.
        if (device.name != u" "_s)
            AddVar(identity, u"Name"_s, device.name);
        QString command = u"{Cmd=SetFields}{Table=Exts}"_s;
        AddVar(command, u"Fields"_s, QString(fields + identity));
        AddVar(command, u"Id"_s, idList);
        commands.append(command);
    }
    return commands;
}

QString campaignDoneMark()
{
    return u" (Done)"_s;
}

QStringList addCampaignChoice(QStringList entries, const QString &choice)
{
    const QString doneMark = campaignDoneMark();
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const qsizetype mark = entries.at(i).indexOf(doneMark);
        const QString name = mark < 0 ? entries.at(i) : entries.at(i).left(mark);
        if (name.compare(choice, Qt::CaseInsensitive) == 0) {
            entries.removeAt(i);
            break;
        }
    }
    entries.append(choice);
    return entries;
}

} // namespace DeviceRecord
