// SPDX-License-Identifier: GPL-3.0-or-later
// The main window's help texts and the event filter that shows them.
#include "tips.h"

#include "translate.h"


using namespace Qt::StringLiterals;

namespace Tips {

const QStringList &pageNames()
{
    static const QStringList names{u"Directory"_s, u"Site"_s,    u"Address Books"_s, u"Campaigns"_s,
                                   u"Features"_s,  u"Routing"_s, u"Network"_s,       u"Scripts"_s};
    return names;
}

QString pageTip(int page, const QString &productName)
{
    static const QStringList texts{
        u"Enter a complete list of devices that are found on the PBX.  Trunks are not entered on all PBXs, please check installation notes before starting."_s,
        u"Enter the site details, making sure the locality data is correct.  Select 'auto create devices', if available, to speed up installation."_s,
        u"Address Books allow searching of external telephone numbers.  Not all Address Books are available to all client software."_s,
        u"Add the campaigns to be used.  Campaigns are for use by the QuillCampaign client software."_s,
        u"Enter the relevant feature codes above.  Please check installation notes for details.  Certain features are not available on some PBXs."_s,
        u"Routing allows certain types of calls to be automatically routed.  Not all types of routes are available on all PBXs.  Please see installation notes."_s,
        u"Enter the relevant information to allow daily reports and automatic client upgrades, etc."_s,
        u"Scripts are available to <1> clients. They are written in VB Script and run on the client machine."_s,
    };
    if (page < 0 || page >= texts.size())
        return {};
    // Only the scripts tip names the product, and it names it in capitals.
    return Translate(QString(), texts.at(page), productName.toUpper());
}

const QList<ControlTip> &controlTips()
{
    static const QList<ControlTip> tips{
        {u"AutoDir"_s, u"QS001"_s, u"Select Auto create for <1> to 'learn' your extension numbers."_s},
        {u"Campaigns"_s, u"QS002"_s, u"Lists Campaigns <1> has been configured to use."_s},
        {u"Ab"_s, u"QS003"_s, u"List of public Address Books <1> has been configured to use."_s},
        {u"Alert_0"_s, u"QS004"_s, u"Enter the extension number of the users to send fatal warnings to."_s},
        {u"Alert_1"_s, u"QS005"_s,
         u"Enter the extension number of the users to send non fatal warnings to."_s},
        {u"Alert_2"_s, u"QS006"_s, u"Enter the extension number of the users to send daily reports to."_s},
        {u"Ip"_s, u"QS007"_s, u"Enter the IP address of your telephone system."_s},
        {u"List"_s, u"QS008"_s,
         u"List of configured extensions, agents and trunks of your telephone system."_s},
        {u"netCluster"_s, u"QS009"_s, u"Enter a comma separated list of remote servers."_s},
        {u"netPath"_s, u"QS010"_s,
         u"Enter the source path of the update files.  This should be in UNC format. ie \\\\server\\share\\path."_s},
        {u"netSend"_s, u"QS011"_s, u"Select this option to send QuillPhone updates automatically."_s},
        {u"sNumbers"_s, u"QS012"_s,
         u"Enter a comma separated list of numbers to use when generating random calls."_s},
        {u"sRandom"_s, u"QS013"_s, u"Enter the number of seconds to wait before making a new random call."_s},
        {u"Port"_s, u"QS014"_s,
         u"Enter the TCP port of your telephone system.  You may need to get this value from your telephone maintainer."_s},
        {u"AButton_0"_s, u"QS015"_s, u"Click this to add an Address Book to the list."_s},
        {u"AButton_1"_s, u"QS016"_s, u"Click this to edit the properties of the selected Address Book."_s},
        {u"AButton_2"_s, u"QS017"_s, u"Click this to remove the selected Address Book from <1>."_s},
        {u"AButton_3"_s, u"QS018"_s,
         u"Click this to move the selected Address Book up in the priority order."_s},
        {u"AButton_4"_s, u"QS019"_s,
         u"Click this to move the selected Address Book down in the priority order."_s},
        {u"RButton_0"_s, u"QS020"_s, u"Click this to add a Routing Condition to the list."_s},
        {u"RButton_1"_s, u"QS021"_s,
         u"Click this to edit the properties of the selected Routing Condition."_s},
        {u"RButton_2"_s, u"QS022"_s,
         u"Click this to stop using the selected Routing Condition in QuillPhone."_s},
        {u"RButton_3"_s, u"QS023"_s,
         u"Click this to move the selected Routing Condition up in the priority order."_s},
        {u"RButton_4"_s, u"QS024"_s,
         u"Click this to move the selected Routing Condition down in the priority order."_s},
        {u"CButton_0"_s, u"QS025"_s, u"Click this to add a campaign."_s},
        {u"CButton_1"_s, u"QS026"_s, u"Click this to edit the properties of the selected campaign."_s},
        {u"CButton_2"_s, u"QS027"_s, u"Click this to stop using the selected campaign in QuillPhone."_s},
        {u"SButton_0"_s, u"QS028"_s, u"Click this to add a script."_s},
        {u"SButton_1"_s, u"QS029"_s, u"Click this to edit the properties of the script."_s},
        {u"SButton_2"_s, u"QS030"_s, u"Click this to remove the selected script."_s},
        {u"Cancel"_s, u"QS031"_s, u"Click this button to exit Configuration without saving changes."_s},
        {u"Comm"_s, u"QS032"_s,
         u"Select which Com port or network protocol your telephone system is connected to the server on."_s},
        {u"DButton_0"_s, u"QS033"_s, u"Click this button to add a new extension."_s},
        {u"DButton_1"_s, u"QS034"_s,
         u"Click this button to edit the properties of the selected extension."_s},
        {u"DButton_2"_s, u"QS035"_s, u"Click this button to remove the selected extension."_s},
        // The bulk buttons have no key of their own: their texts are translated as they stand.
        {u"Export"_s, {}, u"Click this button to save the listed devices, or all of them, to a CSV file."_s},
        {u"Import"_s, {},
         u"Click this button to add or change devices from a CSV file; every change is shown before anything is sent."_s},
        {u"OK"_s, u"QS036"_s, u"Click this button to save changes and exit Configuration."_s},
        {u"sArea"_s, u"QS037"_s, u"Enter the area code of the city your telephone system is in."_s},
        {u"Scripts"_s, u"QS038"_s, u"List of the installed QuillPhone scripts"_s},
        {u"Settings"_s, u"QS039"_s,
         u"Enter the Com port's baud rate, parity checking, data bits and stop bits settings here."_s},
        {u"sName"_s, u"QS040"_s, u"Enter your site name here."_s},
        {u"Features"_s, u"QS041"_s,
         u"This is the list of codes dialed to access the various special features of your telephone system."_s},
        {u"sTrunk"_s, u"QS044"_s,
         u"Enter the number which must be dialed before dialing an external number."_s},
        {u"sLCR"_s, u"QS045"_s,
         u"Enter the LCR codes separated by commas which can precede external numbers."_s},
        {u"sOperator"_s, u"QS046"_s, u"Enter the main operator's extension or group number."_s},
        {u"sVM"_s, u"QS047"_s, u"Enter the number to use to access the voice mail."_s},
        {u"sVMType"_s, u"QS048"_s, u"Select the type of voice mail used."_s},
        // The voice mail's address and the telephone-system type share one key.
        {u"sVMIP"_s, u"QS049"_s, u"Enter the IP address of the voice mail."_s},
        {u"sType"_s, u"QS049"_s, u"Select the type of telephone system <1> is connected to from the list."_s},
        {u"Routing"_s, u"QS050"_s, u"List of Routing Conditions <1> has been configured to use."_s},
    };
    return tips;
}

QString controlTipText(const ControlTip &tip, const QString &productName, const QString &systemType)
{
    const QString &fill = tip.control == u"AutoDir"_s ? systemType : productName;
    return Translate(tip.key, tip.text, fill);
}

} // namespace Tips
