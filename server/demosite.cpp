// SPDX-License-Identifier: GPL-3.0-or-later
#include "demosite.h"

#include "store.h"
#include "tagentries.h"
#include "tagvalue.h"

#include <QList>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

// A record under construction: entries in the order given, each name once. Nested records are
// Records turned into text. (AddVar's textual search would find names inside nested values that
// were added earlier, such as the Type inside a button, so the builder appends instead.)
class Record
{
public:
    Record &set(const QString &name, const QVariant &value)
    {
        const QString text = tagValueText(value);
        if (!text.isEmpty())
            m_entries.append({name, tagTypeLetter(value), text, true});
        return *this;
    }
    Record &set(const QString &name, const QString &text) { return set(name, QVariant(text)); }
    Record &set(const QString &name, int number) { return set(name, QVariant(number)); }
    Record &set(const QString &name, double number) { return set(name, QVariant(number)); }
    Record &set(const QString &name, const Record &nested) { return set(name, nested.text()); }
    // Always written, even when empty ("{Options(S0)=}").
    Record &keep(const QString &name, const Record &nested)
    {
        m_entries.append({name, u'S', nested.text(), true});
        return *this;
    }
    Record &flag(const QString &name, bool on) { return set(name, on ? u"1"_s : u"0"_s); }

    QString text() const
    {
        QString out;
        for (const TagEntry &entry : m_entries)
            out += u'{' + entry.name + u'(' + entry.type + QString::number(entry.value.size()) + u")="_s +
                   entry.value + u'}';
        return out;
    }
    const QList<TagEntry> &entries() const { return m_entries; }

private:
    QList<TagEntry> m_entries;
};

// --- the company -------------------------------------------------------------------------------

const QString siteName = u"Harbour & Finch Logistics"_s;
const QString areaCode = u"0151"_s;
const QString ddiPrefix = u"496"_s; // 0151 496 0xxx: numbers kept free for fiction

const QStringList firstNames = {
    u"Aisha"_s,   u"Ben"_s,   u"Callum"_s, u"Dana"_s,   u"Eamon"_s,   u"Fiona"_s,  u"Gareth"_s, u"Hannah"_s,
    u"Imran"_s,   u"Jess"_s,  u"Kieran"_s, u"Leah"_s,   u"Marcus"_s,  u"Niamh"_s,  u"Owen"_s,   u"Priya"_s,
    u"Quentin"_s, u"Rosa"_s,  u"Sean"_s,   u"Tamsin"_s, u"Usman"_s,   u"Vicky"_s,  u"Wes"_s,    u"Yasmin"_s,
    u"Zach"_s,    u"Carys"_s, u"Declan"_s, u"Erin"_s,   u"Frankie"_s, u"Grace"_s,  u"Harvey"_s, u"Isla"_s,
    u"Jamal"_s,   u"Kate"_s,  u"Liam"_s,   u"Megan"_s,  u"Nathan"_s,  u"Olivia"_s, u"Piotr"_s,  u"Ruth"_s,
};
const QStringList surnames = {
    u"Ahmed"_s,   u"Brennan"_s,   u"Clarke"_s,   u"Doyle"_s,     u"Evans"_s,   u"Fletcher"_s, u"Gallagher"_s,
    u"Hughes"_s,  u"Iqbal"_s,     u"Jones"_s,    u"Kowalski"_s,  u"Lloyd"_s,   u"McCann"_s,   u"Nolan"_s,
    u"O'Hara"_s,  u"Patel"_s,     u"Quinn"_s,    u"Roberts"_s,   u"Shaw"_s,    u"Thompson"_s, u"Underwood"_s,
    u"Vaughan"_s, u"Walsh"_s,     u"Yates"_s,    u"Begum"_s,     u"Carroll"_s, u"Dunne"_s,    u"Edwards"_s,
    u"Foster"_s,  u"Griffiths"_s, u"Hennessy"_s, u"Kelly"_s,     u"Morgan"_s,  u"Nowak"_s,    u"Parry"_s,
    u"Rimmer"_s,  u"Sullivan"_s,  u"Tierney"_s,  u"Whitfield"_s,
};

// A person's name for an extension number; the steps are prime so that the pairs do not repeat.
QString personName(int number)
{
    return firstNames[(number * 7) % firstNames.size()] + u' ' + surnames[(number * 11) % surnames.size()];
}

struct Department
{
    QString name;
    int first;
    int count;
};

// Extensions 200-339, by department.
const QList<Department> departments = {
    {u"Reception"_s, 200, 4},     {u"Management"_s, 204, 8}, {u"Sales"_s, 212, 30},
    {u"Customer Svc"_s, 242, 30}, {u"Accounts"_s, 272, 14},  {u"Transport"_s, 286, 20},
    {u"Warehouse"_s, 306, 26},    {u"IT"_s, 332, 8},
};

Record action(const QString &type, const QString &display = {})
{
    Record a;
    a.set(u"Type"_s, type);
    a.set(u"Display"_s, display.isEmpty() ? type : display);
    return a;
}

Record scriptAction(const QString &script, const QString &display,
                    const QList<std::pair<QString, QString>> &params)
{
    Record a;
    a.set(u"Type"_s, u"(Script)"_s);
    a.set(u"Script"_s, script);
    a.set(u"Display"_s, display);
    for (const auto &[name, value] : params)
        a.set(name, value);
    return a;
}

// Buttons by department: receptionists and managers have eight, the warehouse floor none.
int buttonCount(const QString &dept)
{
    if (dept == u"Reception"_s || dept == u"Management"_s)
        return 8;
    if (dept == u"Warehouse"_s)
        return 0;
    return 4;
}

Record fourthButton(const QString &dept)
{
    if (dept == u"Sales"_s)
        return action(u"Show Contact"_s, u"Customer"_s);
    if (dept == u"Customer Svc"_s) {
        Record r = action(u"Set Result"_s, u"Wrap up"_s);
        r.set(u"Results"_s, u"Resolved"_s).set(u"Types"_s, u"Inbound"_s);
        return r;
    }
    if (dept == u"Reception"_s || dept == u"Management"_s) {
        Record r = action(u"Extension"_s, u"Ops manager"_s);
        r.set(u"BtnExt"_s, u"205"_s);
        return r;
    }
    return action(u"Show Address Book"_s, u"Contacts"_s);
}

void addButtons(Record &device, const QString &dept)
{
    const int count = buttonCount(dept);
    device.set(u"Buttons"_s, QString::number(count) + u" buttons"_s);
    device.set(u"btn0"_s, action(u"Answer/Hangup"_s));
    if (count == 0)
        return;
    device.set(u"btn1"_s, action(u"Answer/Hangup"_s));
    device.set(u"btn2"_s, action(u"Hold/Unhold"_s));
    device.set(u"btn3"_s, action(u"Transfer"_s));
    device.set(u"btn4"_s, fourthButton(dept));
    if (count < 8)
        return;
    Record speed = action(u"Speed Dial"_s, u"Port Ops"_s);
    speed.set(u"Number"_s, u"7001"_s);
    device.set(u"btn5"_s, speed);
    device.set(u"btn6"_s, action(u"Show Extensions"_s, u"Extensions"_s));
    device.set(u"btn7"_s, action(u"Conference"_s));
    device.set(u"btn8"_s, scriptAction(u"PopCRM"_s, u"CRM"_s, {{u"Window"_s, u"Tab"_s}}));
}

// Call-handling departments run scripts on their calls.
void addEvents(Record &device, const QString &dept)
{
    if (dept != u"Sales"_s && dept != u"Customer Svc"_s)
        return;
    Record events;
    events.set(u"Startup"_s,
               scriptAction(u"LogOn"_s, {}, {{u"Queue"_s, dept == u"Sales"_s ? u"2"_s : u"1"_s}}));
    events.set(u"NewCall"_s, scriptAction(u"PopCRM"_s, {}, {{u"Window"_s, u"Tab"_s}}));
    if (dept == u"Customer Svc"_s)
        events.set(u"DeleteCall"_s, scriptAction(u"WrapUp"_s, {}, {{u"Seconds"_s, u"45"_s}}));
    events.set(u"Shutdown"_s, scriptAction(u"WrapUp"_s, {}, {{u"Seconds"_s, u"0"_s}}));
    device.set(u"Events"_s, events);
}

Record extension(int number, const Department &dept)
{
    const bool lead = number == dept.first;
    const QString &d = dept.name;
    const bool manager = d == u"Management"_s;
    const bool floor = d == u"Warehouse"_s && !lead;
    Record r;
    r.set(u"Ext"_s, QString::number(number));
    r.set(u"Name"_s, personName(number));
    r.set(u"Dept"_s, d);
    r.set(u"DDI"_s, ddiPrefix + u'0' + QString::number(number));
    r.set(u"Type"_s, u"EXT"_s);
    r.set(u"Password"_s, QString::number(1000 + (number * 37) % 9000));
    if (manager) {
        r.set(u"Assistant"_s, u"205"_s);
        r.set(u"Mobile"_s, u"07700 900"_s + QString::number(100 + number));
    }
    r.flag(u"DontMonitor"_s, false);
    r.flag(u"NotAnswer"_s, floor);
    r.flag(u"CanDial"_s, true);
    r.flag(u"CallLog"_s, !floor);
    r.flag(u"OtherLog"_s, lead || manager || d == u"IT"_s || d == u"Reception"_s);
    r.flag(u"ViewAB"_s, true);
    r.flag(u"EditOwn"_s, !floor);
    r.flag(u"ExcludeBLF"_s, floor);
    r.flag(u"MainNo"_s, number == 200);
    r.flag(u"EditAB"_s, d == u"Sales"_s || d == u"Customer Svc"_s || d == u"Reception"_s || manager);
    r.flag(u"ShowAll"_s, manager || d == u"Reception"_s || d == u"IT"_s);
    r.flag(u"ConfigButtons"_s, !floor);
    r.flag(u"ViewBLF"_s, !floor);
    r.flag(u"AllowPickup"_s, true);
    r.flag(u"ViewTodo"_s, !floor);
    r.flag(u"ViewFeatures"_s, !floor);
    r.flag(u"SetCallback"_s, d == u"Sales"_s || d == u"Reception"_s || manager);
    r.flag(u"AllowReroute"_s, d == u"Reception"_s || manager);
    r.flag(u"Privacy"_s, manager || d == u"Accounts"_s);
    r.flag(u"Administrator"_s, d == u"IT"_s);
    r.flag(u"UsePBXName"_s, false);
    r.flag(u"RequireAgent"_s, d == u"Customer Svc"_s && !lead);
    r.flag(u"Supervisor"_s, lead);
    r.flag(u"UseOutlook"_s, d == u"Sales"_s || manager);
    addButtons(r, d);
    addEvents(r, d);
    r.set(u"NewAB"_s, d == u"Sales"_s ? u"Customers"_s : u"(Directory)"_s);
    // The books by their place in the list, as the device window reads them (Customers, Hauliers,
    // Staff by name), and by name, as the clients of the same site read them.
    const bool customers = d != u"Warehouse"_s;
    const bool hauliers = d == u"Transport"_s || d == u"Warehouse"_s || manager;
    r.flag(u"AB1Use"_s, customers).flag(u"AB2Use"_s, hauliers).flag(u"AB3Use"_s, true);
    r.flag(u"CustomersUse"_s, customers);
    r.flag(u"HauliersUse"_s, hauliers);
    r.flag(u"StaffUse"_s, true);
    if (manager && lead) {
        // A private book keeps its whole record, as the address-book window hands it back.
        Record personal;
        personal.set(u"ABName"_s, u"Board contacts"_s);
        personal.set(u"Vars"_s,
                     Record()
                         .set(u"Type"_s, u"CSV"_s)
                         .set(u"Name"_s, u"Board contacts"_s)
                         .set(u"Options"_s,
                              Record().set(u"UseLive"_s, 1).set(u"Caption"_s, u"H:\\board-contacts.csv"_s)));
        r.set(u"PrivateAB"_s, Record().set(u"AB1"_s, personal));
    }
    if (d == u"Sales"_s) {
        r.set(u"Campaigns"_s, u"Spring Renewals,Lapsed Shippers"_s);
        if (number % 3 == 0)
            r.set(u"CampaignsDone"_s, u"Lapsed Shippers"_s);
    }
    r.flag(u"UseAbsence"_s, number % 29 == 0);
    if (number % 29 == 0)
        r.set(u"AbsenceText"_s, u"On annual leave, back Monday. Please call reception on 200."_s);
    if (number % 17 == 0)
        r.set(u"Notes"_s, u"Fire warden for the "_s + d + u" floor.\nFirst aid trained."_s);
    return r;
}

Record agent(int number, int index)
{
    const bool sales = index >= 18;
    Record r;
    r.set(u"Ext"_s, QString::number(number));
    r.set(u"Name"_s, personName(number + 3));
    r.set(u"Dept"_s, sales ? u"Sales"_s : u"Customer Svc"_s);
    r.set(u"Type"_s, u"AGENT"_s);
    r.set(u"Password"_s, QString::number(2000 + (number * 53) % 7000));
    for (const QString &name : {u"CanDial"_s, u"CallLog"_s, u"ViewAB"_s, u"EditOwn"_s, u"ConfigButtons"_s,
                                u"ViewBLF"_s, u"AllowPickup"_s, u"ViewTodo"_s, u"ViewFeatures"_s})
        r.flag(name, true);
    r.flag(u"EditAB"_s, sales);
    r.flag(u"SetCallback"_s, sales);
    r.flag(u"RequireAgent"_s, false);
    addButtons(r, sales ? u"Sales"_s : u"Customer Svc"_s);
    addEvents(r, sales ? u"Sales"_s : u"Customer Svc"_s);
    r.set(u"NewAB"_s, u"(Directory)"_s);
    r.flag(u"AB1Use"_s, true).flag(u"AB2Use"_s, false).flag(u"AB3Use"_s, true);
    r.flag(u"CustomersUse"_s, true).flag(u"HauliersUse"_s, false).flag(u"StaffUse"_s, true);
    if (sales) {
        // Half the sales agents have finished calling the lapsed shippers.
        r.set(u"Campaigns"_s, u"Spring Renewals,Lapsed Shippers"_s);
        if (number % 2 == 0)
            r.set(u"CampaignsDone"_s, u"Lapsed Shippers"_s);
    }
    return r;
}

struct SpeedDial
{
    QString name;
    QString number;
};

const QList<SpeedDial> speedDials = {
    {u"Port Ops Control"_s, u"01514960901"_s},      {u"Seaforth Terminal"_s, u"01514960902"_s},
    {u"Dock Security Gate 5"_s, u"01514960903"_s},  {u"Border Force Liverpool"_s, u"01514960904"_s},
    {u"Customs Helpdesk"_s, u"03001234567"_s},      {u"Maersk Bookings"_s, u"02079460011"_s},
    {u"Fleet Workshop Widnes"_s, u"01514960910"_s}, {u"Tyre Rescue"_s, u"08081570123"_s},
    {u"Fuel Card Hotline"_s, u"08081570456"_s},     {u"Finch Group HQ"_s, u"01614960500"_s},
    {u"Insurance Claims"_s, u"08081570789"_s},      {u"Travel Desk"_s, u"02079460220"_s},
    {u"IT Support Contractor"_s, u"01514960930"_s}, {u"Facilities Helpdesk"_s, u"01514960931"_s},
    {u"Highways NW Incidents"_s, u"03001230099"_s}, {u"Pallet Network Hub"_s, u"01214960444"_s},
    {u"Cold Store Kirkby"_s, u"01514960950"_s},     {u"Rail Freight Garston"_s, u"01514960960"_s},
    {u"Taxi Account"_s, u"01514960970"_s},          {u"Weather Line"_s, u"09014960111"_s},
};

Record speedDial(int index)
{
    const SpeedDial &dial = speedDials[index];
    Record r;
    r.set(u"Ext"_s, QString::number(7001 + index));
    r.set(u"Name"_s, dial.name);
    r.set(u"Type"_s, u"SPEED"_s);
    r.set(u"Notes"_s, u"Dials "_s + dial.number);
    return r;
}

Record trunk(int index)
{
    const bool isdn = index < 6;
    Record r;
    r.set(u"Ext"_s, u"T7%1"_s.arg(index + 1, 2, 10, QLatin1Char('0')));
    r.set(u"Name"_s, isdn ? u"ISDN30 group A ch %1"_s.arg(index + 1) : u"SIP trunk %1"_s.arg(index - 5));
    r.set(u"Dept"_s, u"Lines"_s);
    r.set(u"Type"_s, u"TRUNK"_s);
    r.flag(u"DontMonitor"_s, index == 9);
    r.flag(u"IncludeBLF"_s, index < 4);
    return r;
}

// --- System blocks ------------------------------------------------------------------------------

Record pbxOptions()
{
    Record o;
    o.flag(u"AutoDir"_s, true);
    o.set(u"Name"_s, siteName);
    o.set(u"Trunk"_s, u"9"_s);
    o.set(u"LCR"_s, u"1280,1664"_s);
    o.set(u"Area"_s, areaCode);
    o.set(u"Operator"_s, u"200"_s);
    o.set(u"PBX"_s, u"AVAYA ECS"_s);
    o.set(u"Comm"_s, u"Tcp/Ip"_s);
    o.set(u"Settings"_s, u"19200,n,8,1"_s);
    o.set(u"Ip"_s, u"10.20.1.5"_s);
    o.set(u"Port"_s, u"5678"_s);
    o.set(u"Server"_s, u"aes01.harbourfinch.local"_s);
    o.set(u"Username"_s, u"quillcti"_s);
    o.set(u"Password"_s, u"demo"_s);
    // Alerts go to extensions: the office manager and the operations director.
    o.set(u"FatalAlert"_s, u"204,205"_s);
    o.set(u"WarningAlert"_s, u"204"_s);
    o.set(u"DailyAlert"_s, u"205"_s);
    o.flag(u"SendUpdates"_s, true);
    o.set(u"SendPath"_s, u"\\\\hfl-fs01\\quill\\updates"_s);
    o.set(u"VMType"_s, u"External Voice Mail"_s);
    o.set(u"VM"_s, u"5000"_s);
    o.set(u"VMIp"_s, u"10.20.1.9"_s);
    return o;
}

Record featureCodes()
{
    Record o;
    o.set(u"Pickup"_s, u"*8"_s);
    o.set(u"Park"_s, u"*44"_s);
    o.set(u"Call forward"_s, u"*2"_s);
    o.set(u"Do not disturb"_s, u"*10"_s);
    o.set(u"Voice mail"_s, u"5000"_s);
    o.set(u"Conference"_s, u"*31"_s);
    o.set(u"Transfer"_s, u"*32"_s);
    o.set(u"Intrude"_s, u"*9"_s);
    return o;
}

// --- address books ------------------------------------------------------------------------------

struct Search
{
    QString text;
    QString result;
    double seconds;
};

Record statistics(double hitRate, const QList<Search> &recent)
{
    Record s;
    s.set(u"HitRate"_s, hitRate);
    for (qsizetype i = 0; i < recent.size(); ++i) {
        Record find;
        find.set(u"Search"_s, recent[i].text)
            .set(u"Result"_s, recent[i].result)
            .set(u"Speed"_s, recent[i].seconds);
        s.set(u"Find"_s + QString::number(i + 1), find);
    }
    return s;
}

Record addressBook(const QString &type, const QString &name, const Record &options, const Record &stats)
{
    Record r;
    r.set(u"Type"_s, type);
    r.set(u"Name"_s, name);
    r.keep(u"Options"_s, options);
    r.set(u"Statistics"_s, stats);
    return r;
}

QList<Record> addressBooks()
{
    const QString crm = u"CRM database (SQL Server hfl-sql01)"_s;
    Record customers;
    customers.set(u"Alpha"_s, 2)
        .set(u"UseLive"_s, 1)
        .set(u"DisconnectFrom"_s, u"23"_s)
        .set(u"DisconnectTo"_s, u"1"_s);
    customers.set(u"PlugVars"_s,
                  Record().set(u"Caption"_s, crm).set(u"DSN"_s, u"HFL_CRM"_s).set(u"Table"_s, u"Contacts"_s));
    customers.set(u"Caption"_s, crm)
        .set(u"ABNotes"_s, u"Shippers and consignees from the CRM."_s)
        .set(u"Cache"_s, 1);

    const QString csv = u"\\\\hfl-fs01\\data\\hauliers.csv"_s;
    Record hauliers;
    hauliers.set(u"Alpha"_s, 1).set(u"UseLive"_s, 0).set(u"ImportTime"_s, u"6"_s);
    hauliers.set(u"PlugVars"_s, Record().set(u"Caption"_s, csv).set(u"File"_s, csv).set(u"Header"_s, 1));
    hauliers.set(u"Caption"_s, csv)
        .set(u"ABNotes"_s, u"Subcontracted hauliers; the planners keep the file."_s)
        .set(u"Cache"_s, 1);

    const QString directory = u"Active Directory (harbourfinch.local)"_s;
    Record staff;
    staff.set(u"Alpha"_s, 1).set(u"UseLive"_s, 0).set(u"ImportHour"_s, u"4"_s);
    staff.set(u"PlugVars"_s, Record()
                                 .set(u"Caption"_s, directory)
                                 .set(u"Server"_s, u"dc01.harbourfinch.local"_s)
                                 .set(u"BaseDN"_s, u"OU=Staff,DC=harbourfinch,DC=local"_s));
    staff.set(u"Caption"_s, directory).set(u"Cache"_s, 2);

    return {
        addressBook(u"ODBC"_s, u"Customers"_s, customers,
                    statistics(87.5, {{u"01514960873"_s, u"Mersey Cold Stores Ltd"_s, 0.04},
                                      {u"01614960212"_s, u"Pennine Textiles"_s, 0.05},
                                      {u"Bootle"_s, u"Bootle Timber Co"_s, 0.12},
                                      {u"02079460555"_s, u"(not found)"_s, 0.09},
                                      {u"Atlantic"_s, u"Atlantic Fruit Imports"_s, 0.07}})),
        addressBook(u"CSV"_s, u"Hauliers"_s, hauliers,
                    statistics(64, {{u"Stobart"_s, u"Stobart Widnes depot"_s, 0.01},
                                    {u"01514960777"_s, u"(not found)"_s, 0.02},
                                    {u"Kirkby"_s, u"Kirkby Transport"_s, 0.01}})),
        addressBook(u"LDAP"_s, u"Staff"_s, staff,
                    statistics(92.25, {{u"Patel"_s, u"Priya Patel"_s, 0.21},
                                       {u"4960205"_s, u"Ben Hughes"_s, 0.18},
                                       {u"Walsh"_s, u"Sean Walsh"_s, 0.2},
                                       {u"IT"_s, u"IT Service Desk"_s, 0.31},
                                       {u"Hennessy"_s, u"Carys Hennessy"_s, 0.19}})),
    };
}

// --- routing conditions --------------------------------------------------------------------------

QList<Record> routingConditions()
{
    const auto condition = [](int order, const QString &name, Record options) {
        Record r;
        r.set(u"Order"_s, order);
        r.set(u"Name"_s, name);
        r.keep(u"Options"_s, options);
        return r;
    };
    return {
        condition(1, u"Out of hours"_s,
                  Record()
                      .set(u"Called"_s, u"4960200,4960242"_s)
                      .set(u"Day"_s, 8)
                      .set(u"Time"_s, u"00:00-08:00, 18:00-23:59"_s)
                      .set(u"Destination"_s, u"5000"_s)),
        condition(2, u"Key accounts to sales team leader"_s,
                  Record()
                      .set(u"Caller"_s, u"*"_s)
                      .set(u"AB"_s, u"Customers"_s)
                      .set(u"Day"_s, 0)
                      .set(u"Destination"_s, u"212"_s)),
        condition(
            3, u"Bank holidays"_s,
            Record()
                .set(u"Day"_s, 0)
                .set(u"Date"_s, u"25/12/2025, 26/12/2025, 01/01/2026, 03/04/2026, 06/04/2026, 04/05/2026"_s)
                .set(u"Destination"_s, u"5000"_s)),
        condition(4, u"Reception lunch cover"_s,
                  Record()
                      .set(u"Ext"_s, u"200,201"_s)
                      .set(u"Day"_s, 8)
                      .set(u"Time"_s, u"12:30-13:30"_s)
                      .set(u"Destination"_s, u"242"_s)),
        condition(
            5, u"Weekend warehouse mobile"_s,
            Record().set(u"Called"_s, u"4960306"_s).set(u"Day"_s, 9).set(u"Destination"_s, u"07700900412"_s)),
    };
}

// --- campaigns ---------------------------------------------------------------------------------

struct Choice
{
    QString caption;
    QString color;
    QString file;
    QList<Choice> children;
};

// The menu tree as stored: Root, then Root.1, Root.1.1, ... depth first.
void storeChoices(Record &scripts, const QString &path, const QList<Choice> &choices)
{
    for (qsizetype i = 0; i < choices.size(); ++i) {
        const Choice &choice = choices[i];
        const QString childPath = path + u'.' + QString::number(i + 1);
        Record node;
        node.set(u"Caption"_s, choice.caption).set(u"Type"_s, u"Menu"_s).set(u"Color"_s, choice.color);
        node.set(u"File"_s, choice.file);
        scripts.keep(childPath, node);
        storeChoices(scripts, childPath, choice.children);
    }
}

Record menuTree(const QString &rootFile, const QList<Choice> &choices)
{
    Record scripts;
    scripts.set(
        u"Root"_s,
        Record().set(u"Caption"_s, u"Initial script"_s).set(u"Type"_s, u"Menu"_s).set(u"File"_s, rootFile));
    storeChoices(scripts, u"Root"_s, choices);
    return scripts;
}

struct Result
{
    QString caption;
    QString type;   // Move, Postpone, Remove
    QString detail; // the table for Move, "n unit" for Postpone
    QString color;
};

Record resultList(const QList<Result> &results)
{
    Record list;
    for (qsizetype i = 0; i < results.size(); ++i) {
        const Result &result = results[i];
        Record r;
        r.set(u"Caption"_s, result.caption).set(u"Type"_s, result.type);
        if (result.type == u"Move"_s)
            r.set(u"MoveTable"_s, result.detail);
        if (result.type == u"Postpone"_s) {
            const QStringList parts = result.detail.split(u' ');
            r.set(u"Delay"_s, parts.value(0)).set(u"DelayType"_s, parts.value(1));
        }
        r.set(u"Color"_s, result.color).set(u"Tag"_s, result.caption.toUpper().replace(u' ', u'_'));
        list.set(u"Result"_s + QString::number(i + 1), r);
    }
    return list;
}

Record campaign(const QString &name, const Record &results, const QStringList &source, const Record &scripts)
{
    Record options;
    options.keep(u"Results"_s, results);
    options.set(u"Database"_s, source[0]).set(u"ODBCTable"_s, source[1]);
    options.set(u"fldId"_s, source[2])
        .set(u"fldTel"_s, source[3])
        .set(u"fldName"_s, source[4])
        .set(u"fldNotes"_s, source[5]);
    options.set(u"NoAnswer"_s, source[6]);
    options.keep(u"Scripts"_s, scripts);
    Record r;
    r.set(u"Name"_s, name);
    r.keep(u"Options"_s, options);
    return r;
}

QList<Record> campaigns()
{
    const QString html = u"C:\\Campaigns\\html\\"_s;
    const Record renewalMenus =
        menuTree(html + u"renewal-intro.htm"_s,
                 {
                     {u"Interested"_s,
                      u"Green"_s,
                      html + u"renewal-offer.htm"_s,
                      {
                          {u"Wants a quote"_s, u"Green"_s, html + u"renewal-quote.htm"_s, {}},
                          {u"Renew as before"_s, u"Green"_s, html + u"renewal-confirm.htm"_s, {}},
                      }},
                     {u"Not the right person"_s,
                      u"Yellow"_s,
                      html + u"renewal-gatekeeper.htm"_s,
                      {
                          {u"Got the buyer's name"_s, u"Blue"_s, html + u"renewal-buyer.htm"_s, {}},
                      }},
                     {u"Not interested"_s, u"Red"_s, html + u"renewal-objections.htm"_s, {}},
                 });
    const Record renewalResults = resultList({
        {u"Renewed"_s, u"Remove"_s, {}, u"Green"_s},
        {u"Call back later"_s, u"Postpone"_s, u"2 Hours"_s, u"Yellow"_s},
        {u"No answer"_s, u"Postpone"_s, u"1 Days"_s, u"Blue"_s},
        {u"Declined"_s, u"Move"_s, u"Declined"_s, u"Red"_s},
    });
    const Record lapsedMenus =
        menuTree(html + u"lapsed-intro.htm"_s,
                 {
                     {u"Still shipping"_s, u"Green"_s, html + u"lapsed-rates.htm"_s, {}},
                     {u"Moved to a competitor"_s, u"Yellow"_s, html + u"lapsed-winback.htm"_s, {}},
                 });
    const Record lapsedResults = resultList({
        {u"Won back"_s, u"Move"_s, u"Active"_s, u"Green"_s},
        {u"Try next quarter"_s, u"Postpone"_s, u"90 Days"_s, u"Blue"_s},
        {u"Ceased trading"_s, u"Remove"_s, {}, u"Red"_s},
    });
    return {
        campaign(u"Spring Renewals"_s, renewalResults,
                 {u"C:\\Campaigns\\SpringRenewals.mdb"_s, u"Contacts"_s, u"CustomerID"_s, u"Phone"_s,
                  u"CompanyName"_s, u"Notes"_s, u"25"_s},
                 renewalMenus),
        campaign(u"Lapsed Shippers"_s, lapsedResults,
                 {u"C:\\Campaigns\\Lapsed.mdb"_s, u"qryLapsed12Months"_s, u"AccountKey"_s, u"TelNo"_s,
                  u"ContactName"_s, u"LastShipmentText"_s, u"30"_s},
                 lapsedMenus),
    };
}

// --- scripts -----------------------------------------------------------------------------------

QList<Record> scripts()
{
    const auto script = [](const QString &name, const QString &display, const QString &params,
                           const QStringList &lines) {
        Record r;
        r.set(u"Name"_s, name);
        r.set(u"Display"_s, display);
        r.set(u"Options"_s, Record().set(u"Language"_s, u"VBScript"_s).set(u"Timeout"_s, 10));
        r.set(u"Params"_s, params);
        r.set(u"Script"_s, lines.join(u"\r\n"_s));
        return r;
    };
    return {
        script(u"LogOn"_s, u"Log on to queue"_s, u"Queue=1,Mode=Fast"_s,
               {u"Sub LogOn(Queue, Mode)"_s, u"    Phone.AgentLogon Queue, Mode = \"Fast\""_s,
                u"    Phone.Status = \"Ready\""_s, u"End Sub"_s}),
        script(u"PopCRM"_s, u"Show in CRM"_s,
               u"Url=http://crm.harbourfinch.local/caller?number=,Window=Tab"_s,
               {u"Sub PopCRM(Url, Window)"_s, u"    Browser.Open Url & Call.CallerNumber, Window"_s,
                u"End Sub"_s}),
        script(u"WrapUp"_s, u"Wrap-up timer"_s, u"Seconds=30,Reason="_s,
               {u"Sub WrapUp(Seconds, Reason)"_s, u"    Phone.Status = \"After call work\""_s,
                u"    Timer.Wait Seconds"_s, u"    Phone.Status = \"Ready\""_s, u"End Sub"_s}),
    };
}

// --- storing -----------------------------------------------------------------------------------

bool storeRecord(Store &store, Table table, const Record &record)
{
    const auto id = store.createRecord(table);
    if (!id)
        return false;
    for (const TagEntry &entry : record.entries()) {
        if (!store.setField(table, *id, entry.name, entry.type, entry.value))
            return false;
    }
    return true;
}

bool storeAll(Store &store)
{
    for (const Department &dept : departments) {
        for (int number = dept.first; number < dept.first + dept.count; ++number) {
            if (!storeRecord(store, Table::Exts, extension(number, dept)))
                return false;
        }
    }
    for (int i = 0; i < 30; ++i) {
        if (!storeRecord(store, Table::Exts, agent(801 + i, i)))
            return false;
    }
    for (int i = 0; i < speedDials.size(); ++i) {
        if (!storeRecord(store, Table::Exts, speedDial(i)))
            return false;
    }
    for (int i = 0; i < 10; ++i) {
        if (!storeRecord(store, Table::Exts, trunk(i)))
            return false;
    }
    if (!store.setField(Table::System, *Store::SystemBlockId(u"PBX"), u"Options"_s, u'S',
                        pbxOptions().text()) ||
        !store.setField(Table::System, *Store::SystemBlockId(u"FEATURES"), u"Options"_s, u'S',
                        featureCodes().text()))
        return false;
    const std::pair<Table, QList<Record>> tables[] = {
        {Table::AB, addressBooks()},
        {Table::Routing, routingConditions()},
        {Table::Campaigns, campaigns()},
        {Table::Scripts, scripts()},
    };
    for (const auto &[table, records] : tables) {
        for (const Record &record : records) {
            if (!storeRecord(store, table, record))
                return false;
        }
    }
    return true;
}

} // namespace

namespace DemoSite {

bool seed(Store &store, QString *error)
{
    if (!store.begin() || !storeAll(store) || !store.commit()) {
        if (error)
            *error = store.lastError();
        store.rollback();
        return false;
    }
    return true;
}

} // namespace DemoSite
