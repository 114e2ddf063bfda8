// SPDX-License-Identifier: GPL-3.0-or-later
// The demo site as the tool's windows will read it: every table filled with records of the right
// shape, and seeding only ever fills an empty database.
#include "quillserver.h"
#include "tagreader.h"
#include "tagvalue.h"

#include <QLoggingCategory>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_DemoSite : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void devicesOfAllFourKindsWithButtonsAndEvents();
    void siteSettingsAndFeatureCodes();
    void addressBooksRoutingCampaignsAndScripts();
    void seedingOnlyFillsAnEmptyDatabase();

private:
    QTemporaryDir m_dir;
    QuillServer m_server;
};

void tst_DemoSite::initTestCase()
{
    QLoggingCategory::setFilterRules(u"quill.server.*.info=false"_s);
    QVERIFY(m_server.open(m_dir.filePath(u"demo.sqlite"_s)));
    QVERIFY(m_server.isEmpty());
    m_server.seedDemo();
    QVERIFY(!m_server.isEmpty());
    QCOMPARE(m_server.refusalCount(), 0);
}

void tst_DemoSite::devicesOfAllFourKindsWithButtonsAndEvents()
{
    const QString list = m_server.execute(
        u"{Cmd=GetList}{Table=Exts}{Ref=MAIN-EXTS}{Fields=ExtensionId,Id,Ext,Name,Type,Dept}{Sort=Type}"_s);
    const QStringList devices = readList(list);
    QVERIFY(devices.size() >= 180 && devices.size() <= 220);
    QMap<QString, int> kinds;
    QSet<QString> numbers;
    QSet<QString> departments;
    for (const QString &row : devices) {
        kinds[getText(row, u"Type"_s)]++;
        numbers.insert(getText(row, u"Ext"_s));
        QVERIFY(!getText(row, u"Name"_s).isEmpty());
        QVERIFY(getText(row, u"Name"_s).size() <= 25);
        QVERIFY(getText(row, u"Dept"_s).size() <= 15);
        if (getText(row, u"Type"_s) != u"SPEED"_s)
            departments.insert(getText(row, u"Dept"_s));
    }
    QCOMPARE(QSet<QString>(kinds.keyBegin(), kinds.keyEnd()),
             (QSet<QString>{u"EXT"_s, u"AGENT"_s, u"SPEED"_s, u"TRUNK"_s}));
    QVERIFY(kinds[u"EXT"_s] > kinds[u"AGENT"_s]);
    QCOMPARE(numbers.size(), devices.size()); // every number once
    QVERIFY(departments.size() >= 6);
    // Sorted by Type: agents first, trunks last.
    QCOMPARE(getText(devices.first(), u"Type"_s), u"AGENT"_s);
    QCOMPARE(getText(devices.last(), u"Type"_s), u"TRUNK"_s);

    // The reception's first extension, read as the device window reads it.
    const QString reception = m_server.execute(
        u"{Cmd=GetFields}{Table=Exts}{Fields=Ext,Name,Dept,DDI,Type,CanDial,MainNo,Buttons,btn0,btn1,btn4,btn8,Events,NewAB}{Ref=EXTS-EXT}{Id=1}"_s);
    QCOMPARE(getText(reception, u"Ext"_s), u"200"_s);
    QCOMPARE(getText(reception, u"DDI"_s), u"4960200"_s);
    QCOMPARE(getText(reception, u"MainNo"_s), u"1"_s);
    QCOMPARE(getText(reception, u"Buttons"_s), u"8 buttons"_s);
    QCOMPARE(getText(getText(reception, u"btn0"_s), u"Type"_s), u"Answer/Hangup"_s);
    QCOMPARE(getText(getText(reception, u"btn4"_s), u"BtnExt"_s), u"205"_s);
    QCOMPARE(getText(getText(reception, u"btn8"_s), u"Script"_s), u"PopCRM"_s);

    // A sales extension runs scripts on its events.
    const QString sales = readList(m_server.execute(u"{Cmd=GetList}{Table=Exts}{Fields=Id,Dept}{Sort=Id}"_s))
                              .filter(u"Sales"_s)
                              .first();
    const QString salesRow =
        m_server.execute(u"{Cmd=GetFields}{Table=Exts}{Fields=Events,Campaigns,Buttons}{Id="_s +
                         getText(sales, u"Id"_s) + u'}');
    const QString events = getText(salesRow, u"Events"_s);
    QCOMPARE(getText(getText(events, u"NewCall"_s), u"Script"_s), u"PopCRM"_s);
    QCOMPARE(getText(getText(events, u"Startup"_s), u"Script"_s), u"LogOn"_s);
    QVERIFY(getText(salesRow, u"Campaigns"_s).contains(u"Spring Renewals"_s));
}

void tst_DemoSite::siteSettingsAndFeatureCodes()
{
    const QString pbx =
        getText(m_server.execute(u"{Cmd=GetField}{Table=System}{Id=PBX}{Field=Options}{Ref=MAIN-PBX}"_s),
                u"Options"_s);
    QCOMPARE(getText(pbx, u"PBX"_s), u"AVAYA ECS"_s);
    QCOMPARE(getText(pbx, u"Comm"_s), u"Tcp/Ip"_s);
    QVERIFY(getText(pbx, u"Name"_s).contains(u"Harbour"_s));
    QVERIFY(!getText(pbx, u"Ip"_s).isEmpty());
    QVERIFY(GetVar(pbx, u"Port"_s).toInt() > 0);
    QVERIFY(!getText(pbx, u"Area"_s).isEmpty());
    QCOMPARE(getText(pbx, u"VMIP"_s), getText(pbx, u"VMIp"_s));

    const QString features = getText(
        m_server.execute(u"{Cmd=GetField}{Table=System}{Id=FEATURES}{Field=Options}{Ref=MAIN-FEATURES}"_s),
        u"Options"_s);
    for (const QString &feature : {u"Pickup"_s, u"Park"_s, u"Call forward"_s, u"Do not disturb"_s,
                                   u"Voice mail"_s, u"Conference"_s, u"Transfer"_s, u"Intrude"_s})
        QVERIFY2(!getText(features, feature).isEmpty(), qPrintable(feature));
}

void tst_DemoSite::addressBooksRoutingCampaignsAndScripts()
{
    const QStringList books = readList(
        m_server.execute(u"{Cmd=GetList}{Table=Ab}{Ref=MAIN-AB}{Fields=ABId,Id,Type,Name}{Sort=Name}"_s));
    QCOMPARE(books.size(), 3);
    for (const QString &book : books) {
        const QString record = m_server.execute(
            u"{Cmd=GetFields}{Table=Ab}{Fields=Name,Type,Options,Statistics}{Ref=AB-AB}{Id="_s +
            getText(book, u"Id"_s) + u'}');
        QVERIFY(!getText(record, u"Type"_s).isEmpty());
        QVERIFY(!getText(getText(record, u"Options"_s), u"Caption"_s).isEmpty());
        const QString stats = getText(record, u"Statistics"_s);
        QVERIFY(GetVar(stats, u"HitRate"_s).toDouble() > 0);
        const QString find1 = getText(stats, u"Find1"_s);
        QVERIFY(!getText(find1, u"Search"_s).isEmpty());
        QVERIFY(!getText(find1, u"Result"_s).isEmpty());
        QVERIFY(GetVar(find1, u"Speed"_s).toDouble() > 0);
    }

    const QStringList routing = readList(m_server.execute(
        u"{Cmd=GetList}{Table=Routing}{Ref=MAIN-ROUTING}{Fields=RoutingId,Id,Name,Order,Options}{Sort=Order}"_s));
    QCOMPARE(routing.size(), 5);
    for (int i = 0; i < 5; ++i) {
        QCOMPARE(GetVar(routing[i], u"Order"_s).toInt(), i + 1);
        QVERIFY(!getText(getText(routing[i], u"Options"_s), u"Destination"_s).isEmpty());
    }

    const QStringList campaigns = readList(m_server.execute(
        u"{Cmd=GetList}{Table=Campaigns}{Ref=MAIN-CAMPAIGNS}{Fields=CampaignId,Id,Name}{Sort=Name}"_s));
    QCOMPARE(campaigns.size(), 2);
    for (const QString &campaign : campaigns) {
        const QString options = getText(
            m_server.execute(
                u"{Cmd=GetFields}{Table=Campaigns}{Fields=Name,Options}{Ref=CAMPAIGN-CAMPAIGN}{Id="_s +
                getText(campaign, u"Id"_s) + u'}'),
            u"Options"_s);
        QVERIFY(getText(options, u"Database"_s).endsWith(u".mdb"_s));
        const QString menus = getText(options, u"Scripts"_s);
        QCOMPARE(getText(getText(menus, u"Root"_s), u"Caption"_s), u"Initial script"_s);
        QCOMPARE(getText(getText(menus, u"Root.1"_s), u"Type"_s), u"Menu"_s);
        QVERIFY(!getText(getText(menus, u"Root.2"_s), u"Caption"_s).isEmpty());
        const QString results = getText(options, u"Results"_s);
        for (int n = 1; n <= 3; ++n) {
            const QString result = getText(results, u"Result"_s + QString::number(n));
            QVERIFY(
                QStringList({u"Move"_s, u"Postpone"_s, u"Remove"_s}).contains(getText(result, u"Type"_s)));
        }
    }

    const QStringList scripts = readList(m_server.execute(
        u"{Cmd=GetList}{Table=Scripts}{Ref=MAIN-SCRIPTS}{Fields=ScriptId,Id,Name,Params,Display,Options}{Sort=Name}"_s));
    QCOMPARE(scripts.size(), 3);
    for (const QString &script : scripts) {
        QVERIFY(getText(script, u"Params"_s).contains(u'='));
        QVERIFY(!getText(script, u"Display"_s).isEmpty());
    }
}

void tst_DemoSite::seedingOnlyFillsAnEmptyDatabase()
{
    // Seeding again adds nothing.
    const QString read = u"{Cmd=GetList}{Table=Exts}{Fields=Id}{Sort=Id}"_s;
    const int devices = GetVar(m_server.execute(read), u"ListCount"_s).toInt();
    m_server.seedDemo();
    QCOMPARE(GetVar(m_server.execute(read), u"ListCount"_s).toInt(), devices);

    // A database with one record of the administrator's own is not touched.
    QTemporaryDir dir;
    QuillServer own;
    QVERIFY(own.open(dir.filePath(u"own.sqlite"_s)));
    own.execute(u"{Cmd=SetFields}{Table=Scripts}{Fields(S15)={Name(S4)=Mine}}{Id=-1}"_s);
    QVERIFY(!own.isEmpty());
    own.seedDemo();
    QCOMPARE(GetVar(own.execute(read), u"ListCount"_s).toInt(), 0);
    QCOMPARE(GetVar(own.execute(u"{Cmd=GetList}{Table=Scripts}{Fields=Id}"_s), u"ListCount"_s).toInt(), 1);
}

QTEST_GUILESS_MAIN(tst_DemoSite)
#include "tst_demosite.moc"
