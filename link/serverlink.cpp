// SPDX-License-Identifier: GPL-3.0-or-later
#include "serverlink.h"

#include "errorlog.h"
#include "tagvalue.h"
#include "usrsession.h"

#include <QLoggingCategory>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcDispatch, "quill.link.dispatch")

namespace {

const QString getDataLabel = u"  @  basTRConfig.GetData"_s;
const QString handleCallbackLabel = u"  @  basQSConfig.HandleCallback"_s;

const QString deviceFields = u"Ext,Name,Dept,DDI,Type,Password,Assistant,Mobile,CanDial,CallLog,OtherLog,"
                             "ViewAB,EditAB,ShowAll,ExcludeBLF,DontMonitor,MainNo,NotAnswer,EditOwn,Supervisor,"
                             "ConfigButtons,UseOutlook,AllowPickup,SetCallback,AllowReroute,Privacy,"
                             "Administrator,ViewBLF,ViewTodo,ViewFeatures,UsePBXName,RequireAgent,IncludeBLF,"
                             "Buttons,btn0,btn1,btn2,btn3,btn4,btn5,btn6,btn7,btn8,Events,NewAB,PrivateAB,"
                             "AB1Vars,AB2Vars,AB3Vars,AB4Vars,AB1Use,AB2Use,AB3Use,AB4Use,Campaigns,"
                             "CampaignsDone,UseAbsence,AbsenceText,Notes"_s;

// The receiving windows by prefix, with the characters cut before the sub-reference.
struct Route {
    QString prefix;
    int cut;
};
const Route routes[] = {{u"MAIN"_s, 5},    {u"AB"_s, 3},   {u"CAMPAIGN"_s, 9},
                        {u"ROUTING"_s, 8}, {u"EXTS"_s, 5}, {u"SCRIPTS"_s, 8}};

// Server messages this tool does not use, and the keep-alive answer.
const QStringList ignoredKinds = {u"LOGIN"_s,     u"SUCCESS"_s,  u"BLF"_s,      u"PHONE"_s,
                                  u"EXTUPDATE"_s, u"NEWSTATE"_s, u"LISTEXTS"_s, u"PINGECHO"_s,
                                  u"BULK"_s}; // BULK: the bulk work listens to the session itself

QString deviceRead(const QVariant &id, const QStringList &addressBookNames)
{
    QString message = u"{Cmd=GetFields}{Table=Exts}{Fields="_s + Commands::deviceFieldList(addressBookNames)
        + u"}{Ref=EXTS-EXT}"_s;
    if (leadingNumber(tagValueText(id)) == -1) {
        // A device not yet stored: the server picks the record by its Ext.
        AddVar(message, u"Id"_s, u","_s, true);
        AddVar(message, u"Index"_s, u"Ext"_s);
    } else {
        AddVar(message, u"Id"_s, id);
    }
    return message;
}

QString withId(QString message, const QVariant &id)
{
    AddVar(message, u"Id"_s, id);
    return message;
}

} // namespace

namespace Commands {

QString deviceFieldList(const QStringList &addressBookNames)
{
    QString fields = deviceFields;
    for (const QString &book : addressBookNames)
        fields += u',' + book + u"Vars,"_s + book + u"Use"_s;
    return fields;
}

QString readCommand(const QString &key, const QVariant &id, const QString &extsSort, const QString &abSort,
                    const QStringList &addressBookNames)
{
    const QString k = key.toUpper();
    if (k == u"MAIN-EXTS"_s)
        return u"{Cmd=GetList}{Table=Exts}{Ref=MAIN-EXTS}{Fields=ExtensionId,Id,Ext,Name,Type,Dept}{Sort="_s + extsSort
            + u'}';
    if (k == u"MAIN-PBX"_s)
        return u"{Cmd=GetField}{Table=System}{Id=PBX}{Field=Options}{Ref=MAIN-PBX}"_s;
    if (k == u"MAIN-AB"_s)
        return u"{Cmd=GetList}{Table=Ab}{Ref=MAIN-AB}{Fields=ABId,Id,Type,Name}{Sort="_s + abSort + u'}';
    if (k == u"MAIN-CAMPAIGNS"_s)
        return u"{Cmd=GetList}{Table=Campaigns}{Ref=MAIN-CAMPAIGNS}{Fields=CampaignId,Id,Name}{Sort=Name}"_s;
    if (k == u"MAIN-FEATURES"_s)
        return u"{Cmd=GetField}{Table=System}{Id=FEATURES}{Field=Options}{Ref=MAIN-FEATURES}"_s;
    if (k == u"MAIN-SCRIPTS"_s)
        return u"{Cmd=GetList}{Table=Scripts}{Ref=MAIN-SCRIPTS}{Fields=ScriptId,Id,Name,Options}{Sort=Name}"_s;
    if (k == u"MAIN-ROUTING"_s)
        return u"{Cmd=GetList}{Table=Routing}{Ref=MAIN-ROUTING}{Fields=RoutingId,Id,Name,Order,Options}{Sort=Order}"_s;
    if (k == u"EXT"_s)
        return deviceRead(id, addressBookNames);
    if (k == u"AB"_s)
        return withId(u"{Cmd=GetFields}{Table=Ab}{Fields=Name,Type,Options,Statistics}{Ref=AB-AB}"_s, id);
    if (k == u"ROUTING"_s)
        return withId(u"{Cmd=GetFields}{Table=Routing}{Fields=Name,Order,Options}{Ref=ROUTING-ROUTING}"_s, id);
    if (k == u"CAMPAIGN"_s)
        return withId(u"{Cmd=GetFields}{Table=Campaigns}{Fields=Name,Options}{Ref=CAMPAIGN-CAMPAIGN}"_s, id);
    if (k == u"SCRIPT"_s)
        return u"{Cmd=GetFields}{Table=Scripts}{Id="_s + tagValueText(id)
            + u"}{Fields=ScriptId,Id,Name,Options,Script}{Ref=SCRIPTS-SCRIPT}"_s;
    return {}; // "LOCALEXT" and unknown keys
}

} // namespace Commands

ServerLink::ServerLink(usrSession &session, QObject *parent) : QObject(parent), m_session(session) {}

void ServerLink::GetData(const QString &Key, const QVariant &Id)
{
    QString message;
    Guard(getDataLabel, [&] {
        const QStringList books = m_addressBookNames ? m_addressBookNames() : QStringList();
        message = Commands::readCommand(Key, Id, m_deviceSort, m_addressBookSort, books);
    });
    // Whatever the key, exactly one send: an unknown key sends an empty message.
    m_session.SendCommand(message);
}

void ServerLink::SendCommand(const QString &command)
{
    m_session.SendCommand(command);
}

void ServerLink::setReceiver(const QString &prefix, QObject *receiver)
{
    m_receivers.insert(prefix.toUpper(), QPointer<QObject>(receiver));
}

IDataReceiver *ServerLink::receiverFor(const QString &prefix) const
{
    const QPointer<QObject> window = m_receivers.value(prefix);
    return window ? dynamic_cast<IDataReceiver *>(window.data()) : nullptr;
}

void ServerLink::HandleCallback(const QString &Message)
{
    if (Message.isEmpty())
        return;
    Guard(handleCallbackLabel, [&] {
        QString tag = getText(Message, u"Ref"_s).toUpper();
        if (tag.isEmpty())
            tag = getText(Message, u"Cmd"_s).toUpper();
        const QString prefix = tag.section(u'-', 0, 0);
        for (const Route &route : routes) {
            if (prefix != route.prefix)
                continue;
            if (IDataReceiver *window = receiverFor(route.prefix))
                window->DataArrived(tag.mid(route.cut), Message);
            else
                qCDebug(lcDispatch) << "reply for a closed window dropped:" << tag;
            return;
        }
        if (prefix == u"ADDCAMPAIGN"_s) {
            // The device window asked for it: it adds the chosen campaign to its own list.
            if (IDataReceiver *devices = receiverFor(u"EXTS"_s))
                devices->DataArrived(prefix, Message);
            else
                qCDebug(lcDispatch) << "campaign choice for a closed device window dropped";
            return;
        }
        if (!ignoredKinds.contains(prefix))
            qCDebug(lcDispatch) << "message of unknown kind dropped:" << tag;
    });
}
