// SPDX-License-Identifier: GPL-3.0-or-later
// The command catalogue against quillserverd over a real loopback session.
#include "serverharness.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_ServerCommands : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void getListOrdersRowsCountsThemAndAnswersEmptyTables();
    void getFieldsReadsOneRecordOrMarksDifferencesAcrossSeveral();
    void setFieldsMergesAndKeepsFieldsNotSent();
    void newRecordsAndDevicesWhoseExtExists();
    void featureCodesWithoutTheirWrapperAndAddressBookRebuild();

private:
    QString request(const QString &command) { return m_client->request(command); }
    void send(const QString &command) { m_client->send(command); }
    QString createDevice(const QString &ext, std::initializer_list<std::pair<QString, QVariant>> fields);
    QString deviceList(const QString &sort);

    QTemporaryDir m_templateDir;
    QString m_template;
    std::unique_ptr<ServerProcess> m_server;
    std::unique_ptr<RawClient> m_client;
};

void tst_ServerCommands::initTestCase()
{
    // One account, hashed once; every test starts from a copy of this empty database.
    m_template = m_templateDir.filePath(u"template.sqlite"_s);
    ServerProcess setup(m_template);
    QVERIFY(setup.addUser(TestAccount::user(), TestAccount::password()));
}

void tst_ServerCommands::init()
{
    m_server = std::make_unique<ServerProcess>();
    QVERIFY(QFile::copy(m_template, m_server->dbFile()));
    QVERIFY(m_server->start());
    m_client = std::make_unique<RawClient>();
    QVERIFY(m_client->openLoggedIn(m_server->url()));
}

void tst_ServerCommands::cleanup()
{
    m_client.reset();
    QVERIFY(m_server->stop());
    m_server.reset();
}

QString tst_ServerCommands::createDevice(const QString &ext,
                                         std::initializer_list<std::pair<QString, QVariant>> fields)
{
    send(setFieldsCommand(u"Exts"_s, record({{u"Ext"_s, ext}}) + record(fields), u"-1"_s));
    const QString list = request(u"{Cmd=GetList}{Table=Exts}{Fields=Id,Ext}{Sort=Id}"_s);
    return listColumn(list, u"Id"_s).value(listColumn(list, u"Ext"_s).indexOf(ext));
}

QString tst_ServerCommands::deviceList(const QString &sort)
{
    return request(
        u"{Cmd=GetList}{Table=Exts}{Ref=MAIN-EXTS}{Fields=ExtensionId,Id,Ext,Name,Type,Dept}{Sort="_s + sort +
        u'}');
}

void tst_ServerCommands::getListOrdersRowsCountsThemAndAnswersEmptyTables()
{
    // A table with nothing in it: ListCount 0 and no rows, still under the command's Ref.
    const QString empty = request(
        u"{Cmd=GetList}{Table=Routing}{Ref=MAIN-ROUTING}{Fields=RoutingId,Id,Name,Order,Options}{Sort=Order}"_s);
    QVERIFY(empty.startsWith(u"{Ref"_s));
    QCOMPARE(getText(empty, u"Ref"_s), u"MAIN-ROUTING"_s);
    QCOMPARE(GetVar(empty, u"ListCount"_s).toInt(), 0);
    QVERIFY(!empty.contains(u"{List1("_s));

    createDevice(u"10"_s, {{u"Name"_s, u"bravo"_s}, {u"Type"_s, u"EXT"_s}, {u"Dept"_s, u"Sales"_s}});
    createDevice(u"9"_s, {{u"Name"_s, u"Alpha"_s}, {u"Type"_s, u"EXT"_s}});
    createDevice(u"100"_s, {{u"Name"_s, u"charlie"_s}, {u"Type"_s, u"TRUNK"_s}, {u"Dept"_s, u"Lines"_s}});
    createDevice(u"ABD"_s, {{u"Name"_s, u"Alpha"_s}, {u"Type"_s, u"SPEED"_s}});
    createDevice(u"abc"_s, {{u"Name"_s, u"Delta"_s}, {u"Type"_s, u"AGENT"_s}});

    // Numbers by value (9 before 10 before 100), then text without regard to case.
    const QString byExt = deviceList(u"Ext"_s);
    QCOMPARE(getText(byExt, u"Ref"_s), u"MAIN-EXTS"_s);
    QCOMPARE(GetVar(byExt, u"ListCount"_s).toInt(), 5);
    QCOMPARE(listColumn(byExt, u"Ext"_s), (QStringList{u"9"_s, u"10"_s, u"100"_s, u"abc"_s, u"ABD"_s}));
    // The id aliases give the record id; a field the record lacks is left out of its row.
    for (const QString &row : readList(byExt)) {
        QCOMPARE(getText(row, u"ExtensionId"_s), getText(row, u"Id"_s));
        QVERIFY(!getText(row, u"Id"_s).isEmpty());
    }
    QVERIFY(!readList(byExt).at(0).contains(u"{Dept("_s, Qt::CaseInsensitive));
    QCOMPARE(getText(readList(byExt).at(1), u"Dept"_s), u"Sales"_s);

    // Equal names keep id order; the sort field is matched without regard to case.
    const QString byName = deviceList(u"name"_s);
    QCOMPARE(listColumn(byName, u"Name"_s),
             (QStringList{u"Alpha"_s, u"Alpha"_s, u"bravo"_s, u"charlie"_s, u"Delta"_s}));
    QCOMPARE(listColumn(byName, u"Ext"_s).mid(0, 2), (QStringList{u"9"_s, u"ABD"_s}));
}

void tst_ServerCommands::getFieldsReadsOneRecordOrMarksDifferencesAcrossSeveral()
{
    const QString a = createDevice(
        u"201"_s,
        {{u"Name"_s, u"Ann"_s}, {u"Dept"_s, u"Sales"_s}, {u"CanDial"_s, u"1"_s}, {u"Notes"_s, u"keys"_s}});
    const QString b =
        createDevice(u"202"_s, {{u"Name"_s, u"Bob"_s}, {u"Dept"_s, u"Sales"_s}, {u"CanDial"_s, u"1"_s}});
    const QString c = createDevice(
        u"203"_s, {{u"Name"_s, u"Cy"_s}, {u"Dept"_s, u"Sales"_s}, {u"CanDial"_s, 1}, {u"Limit"_s, 12.5}});

    // One device: the asked fields as top-level entries, with the type letters they were stored with.
    QString one = u"{Cmd=GetFields}{Table=Exts}{Fields=Ext,Name,Limit,Privacy}{Ref=EXTS-EXT}"_s;
    AddVar(one, u"Id"_s, c);
    const QString single = request(one);
    QCOMPARE(getText(single, u"Ref"_s), u"EXTS-EXT"_s);
    QCOMPARE(getText(single, u"Name"_s), u"Cy"_s);
    QVERIFY(single.contains(u"{Limit(N4)=12.5}"_s));
    QVERIFY(!single.contains(u"Privacy"_s)); // never stored: left out

    // Several devices at once: one row; differing fields (or fields some lack) hold " ".
    QString several = u"{Cmd=GetFields}{Table=Exts}{Fields=Name,Dept,CanDial,Notes,Privacy}{Ref=EXTS-EXT}"_s;
    AddVar(several, u"Id"_s, QStringList{a, b, c}.join(u','));
    const QString mixed = request(several);
    QCOMPARE(getText(mixed, u"Name"_s), u" "_s);
    QCOMPARE(getText(mixed, u"Dept"_s), u"Sales"_s);
    QCOMPARE(getText(mixed, u"CanDial"_s), u"1"_s); // ticked as text or as a number: not mixed
    QCOMPARE(getText(mixed, u"Notes"_s), u" "_s);
    QVERIFY(!mixed.contains(u"Privacy"_s));

    // The read of a device not yet stored answers with the Ref alone.
    QString fresh = u"{Cmd=GetFields}{Table=Exts}{Fields=Ext,Name,Dept}{Ref=EXTS-EXT}"_s;
    AddVar(fresh, u"Id"_s, u","_s, true);
    AddVar(fresh, u"Index"_s, u"Ext"_s);
    QCOMPARE(request(fresh), u"{Ref(S8)=EXTS-EXT}"_s);
}

void tst_ServerCommands::setFieldsMergesAndKeepsFieldsNotSent()
{
    const QString a = createDevice(u"301"_s, {{u"Name"_s, u"Dee"_s},
                                              {u"Dept"_s, u"Accounts"_s},
                                              {u"Notes"_s, u"line 1\nline 2"_s},
                                              {u"Privacy"_s, u"1"_s}});
    const QString b = createDevice(u"302"_s, {{u"Name"_s, u"Eve"_s}, {u"Dept"_s, u"Accounts"_s}});
    createDevice(u"303"_s, {{u"Name"_s, u"Fay"_s}, {u"Dept"_s, u"Accounts"_s}});

    send(setFieldsCommand(u"Exts"_s, record({{u"Name"_s, u"Dee Walsh"_s}}), a));
    QString read = u"{Cmd=GetFields}{Table=Exts}{Fields=Ext,Name,Dept,Notes,Privacy}{Ref=EXTS-EXT}"_s;
    AddVar(read, u"Id"_s, a);
    QString reply = request(read);
    QCOMPARE(getText(reply, u"Name"_s), u"Dee Walsh"_s);
    QCOMPARE(getText(reply, u"Ext"_s), u"301"_s);
    QCOMPARE(getText(reply, u"Dept"_s), u"Accounts"_s);
    QCOMPARE(getText(reply, u"Notes"_s), u"line 1\nline 2"_s);
    QCOMPARE(getText(reply, u"Privacy"_s), u"1"_s);

    // A field sent empty (with the always-write flag) is cleared; the others stay.
    QString clear;
    AddVar(clear, u"Notes"_s, QString(), true);
    send(setFieldsCommand(u"Exts"_s, clear, a));
    reply = request(read);
    QVERIFY(!reply.contains(u"Notes"_s));
    QCOMPARE(getText(reply, u"Privacy"_s), u"1"_s);

    // Several ids: each device takes the fields sent and keeps its own name.
    send(setFieldsCommand(u"Exts"_s, record({{u"Dept"_s, u"Finance"_s}}), QString(a + u',' + b)));
    const QString list = deviceList(u"Ext"_s);
    QCOMPARE(listColumn(list, u"Dept"_s), (QStringList{u"Finance"_s, u"Finance"_s, u"Accounts"_s}));
    QCOMPARE(listColumn(list, u"Name"_s), (QStringList{u"Dee Walsh"_s, u"Eve"_s, u"Fay"_s}));

    // Script 7 of the example: stored as sent, and an empty record keeps what is there.
    for (int i = 0; i < 7; ++i)
        send(setFieldsCommand(u"Scripts"_s, record({{u"Name"_s, QString(u"s"_s + QString::number(i))}}), u"-1"_s));
    send(u"{Cmd=SetFields}{Table=Scripts}{Fields(S33)={Name(S5)=Daily}{Script(S4)=Beep}}{Id(S1)=7}"_s);
    send(u"{Cmd=SetFields}{Table=Scripts}{Id(S1)=7}"_s);
    const QString script = request(
        u"{Cmd=GetFields}{Table=Scripts}{Id=7}{Fields=ScriptId,Id,Name,Options,Script}{Ref=SCRIPTS-SCRIPT}"_s);
    QCOMPARE(getText(script, u"Name"_s), u"Daily"_s);
    QCOMPARE(getText(script, u"Script"_s), u"Beep"_s);
    QCOMPARE(GetVar(script, u"ScriptId"_s).toInt(), 7);
}

void tst_ServerCommands::newRecordsAndDevicesWhoseExtExists()
{
    const QString first = createDevice(
        u"401"_s, {{u"Name"_s, u"Gil"_s}, {u"Dept"_s, u"IT"_s}, {u"Mobile"_s, u"07700900401"_s}});
    const QString second = createDevice(u"402"_s, {{u"Name"_s, u"Hal"_s}});
    QVERIFY(!first.isEmpty());
    QVERIFY(second.toInt() > first.toInt());

    // Id -1 with a number that exists updates that device instead of adding another.
    send(setFieldsCommand(u"Exts"_s, record({{u"Ext"_s, u"401"_s}, {u"Name"_s, u"Gil Evans"_s}}), u"-1"_s));
    QCOMPARE(GetVar(deviceList(u"Ext"_s), u"ListCount"_s).toInt(), 2);
    QString read = u"{Cmd=GetFields}{Table=Exts}{Fields=Name,Dept,Mobile}{Ref=EXTS-EXT}"_s;
    AddVar(read, u"Id"_s, first);
    const QString reply = request(read);
    QCOMPARE(getText(reply, u"Name"_s), u"Gil Evans"_s);
    QCOMPARE(getText(reply, u"Mobile"_s), u"07700900401"_s);

    // Other tables: every Id -1 is a new record with a new id.
    send(setFieldsCommand(u"AB"_s, record({{u"Name"_s, u"Customers"_s}, {u"Type"_s, u"ODBC"_s}}), u"-1"_s));
    send(setFieldsCommand(u"AB"_s, record({{u"Name"_s, u"Customers"_s}, {u"Type"_s, u"ODBC"_s}}), u"-1"_s));
    const QString books =
        request(u"{Cmd=GetList}{Table=Ab}{Ref=MAIN-AB}{Fields=ABId,Id,Type,Name}{Sort=Name}"_s);
    QCOMPARE(GetVar(books, u"ListCount"_s).toInt(), 2);
    QVERIFY(getText(readList(books).at(0), u"ABId"_s) != getText(readList(books).at(1), u"ABId"_s));
}

void tst_ServerCommands::featureCodesWithoutTheirWrapperAndAddressBookRebuild()
{
    // Feature codes come wrapped in Options, as the tool writes them, or as the block's own tags.
    // (The main window test reads back the PBX and feature blocks the tool stores.)
    QString features = u"{Cmd=SetFields}{Table=System}{Id=FEATURES}"_s;
    AddVar(features, u"Fields"_s, record({{u"Options"_s, record({{u"Park"_s, u"*44"_s}})}}));
    send(features);
    // Without the wrapper, the names are the features' names, blanks and all.
    QString bare = u"{Cmd=SetFields}{Table=System}{Id=FEATURES}"_s;
    AddVar(bare, u"Fields"_s, record({{u"Call forward"_s, u"*2"_s}, {u"Park, retrieve"_s, u"*45"_s}}));
    send(bare);
    const QString renamed =
        getText(request(u"{Cmd=GetField}{Table=System}{Id=FEATURES}{Field=Options}{Ref=MAIN-FEATURES}"_s),
                u"Options"_s);
    QCOMPARE(getText(renamed, u"Call forward"_s), u"*2"_s);
    QCOMPARE(getText(renamed, u"Park, retrieve"_s), u"*45"_s);
    QVERIFY(!renamed.contains(u"{Park("_s)); // the block is replaced whole

    // ABRebuild names the book (by name, as the tool does, or by id) and refreshes its statistics.
    const QString stats =
        record({{u"HitRate"_s, QVariant(50)}, {u"Find1"_s, record({{u"Search"_s, u"Bootle"_s}})}});
    send(setFieldsCommand(u"AB"_s, record({{u"Name"_s, u"Customers"_s}, {u"Statistics"_s, stats}}), u"-1"_s));
    send(u"{Cmd=ABRebuild}{Ab=customers}"_s);
    const QString book =
        request(u"{Cmd=GetFields}{Table=Ab}{Fields=Name,Type,Options,Statistics}{Ref=AB-AB}{Id=1}"_s);
    const QString refreshed = getText(book, u"Statistics"_s);
    QVERIFY(GetVar(refreshed, u"Rebuilt"_s).toDateTime().isValid());
    QCOMPARE(getText(getText(refreshed, u"Find1"_s), u"Search"_s), u"Bootle"_s);
    QCOMPARE(GetVar(refreshed, u"HitRate"_s).toDouble(), 50.0);
    // A name wins over an id: {Ab=1} rebuilds the book named "1", not the book whose id is 1.
    send(setFieldsCommand(u"AB"_s, record({{u"Name"_s, u"1"_s}}), u"-1"_s));
    send(u"{Cmd=ABRebuild}{Ab=1}"_s);
    const QString named = request(u"{Cmd=GetFields}{Table=Ab}{Fields=Name,Statistics}{Ref=AB-AB}{Id=2}"_s);
    QCOMPARE(getText(named, u"Name"_s), u"1"_s);
    QVERIFY(GetVar(getText(named, u"Statistics"_s), u"Rebuilt"_s).toDateTime().isValid());

    QCOMPARE(request(ping), echo);
    QCOMPARE(m_server->refusalLines(), 0);
}

QTEST_GUILESS_MAIN(tst_ServerCommands)
#include "tst_servercommands.moc"
