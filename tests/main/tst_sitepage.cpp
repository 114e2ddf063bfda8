// SPDX-License-Identifier: GPL-3.0-or-later
// The Site, Network and Features pages on their own: which controls each telephone system shows,
// defaults on load and what they save.
#include "featurespage.h"
#include "findchild.h"
#include "isolation.h"
#include "listreplies.h"
#include "networkpage.h"
#include "sitepage.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSet>
#include <QTableWidget>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QStringList allGroups{u"bPort"_s,  u"bIp"_s,   u"bIPPort"_s, u"bComm"_s,
                            u"pPword"_s, u"pDemo"_s, u"pAvaya"_s,  u"pAuto"_s};

// The groups the page shows, in the order of allGroups.
QStringList shownGroups(const QWidget &page)
{
    QStringList shown;
    for (const QString &name : allGroups) {
        auto *group = page.findChild<QWidget *>(name);
        if (group && !group->isHidden())
            shown << name;
    }
    return shown;
}


// What the named controls show: a line's text, a list's choice, "1" or "0" for a box.
QStringList shown(const QWidget &page, const QStringList &names)
{
    QStringList texts;
    for (const QString &name : names) {
        QWidget *control = child<QWidget>(page, name);
        if (auto *line = qobject_cast<QLineEdit *>(control))
            texts << line->text();
        else if (auto *combo = qobject_cast<QComboBox *>(control))
            texts << combo->currentText();
        else
            texts << (child<QCheckBox>(page, name)->isChecked() ? u"1"_s : u"0"_s);
    }
    return texts;
}

void choose(QComboBox *combo, const QString &text)
{
    const int index = combo->findText(text);
    QVERIFY2(index >= 0, qPrintable(text));
    combo->setCurrentIndex(index);
}

} // namespace

class SitePageTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_scratch.enter()); }

    void eachTypeShowsExactlyItsGroups_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QStringList>("groups");
        QTest::addColumn<QString>("connection");

        const QString net = u"{Comm=Tcp/Ip}"_s;
        const QString serial = u"{Comm=Com2:}"_s;
        const QStringList passwordAndAuto{u"pPword"_s, u"pAuto"_s};
        QTest::newRow("Siemens on the network")
            << u"{PBX=SIEMENS}"_s + net << QStringList{u"bPort"_s, u"bIp"_s, u"bIPPort"_s} + passwordAndAuto
            << u"Tcp/Ip"_s;
        QTest::newRow("Intertel on a serial port")
            << u"{PBX=INTERTEL}"_s + serial << QStringList{u"bPort"_s, u"bComm"_s} + passwordAndAuto
            << u"Com2:"_s;
        QTest::newRow("Toshiba on the network")
            << u"{PBX=TOSHIBA}"_s + net << QStringList{u"bPort"_s, u"bIp"_s, u"bIPPort"_s} << u"Tcp/Ip"_s;
        QTest::newRow("Toshiba on a serial port")
            << u"{PBX=toshiba}"_s + serial << QStringList{u"bPort"_s, u"bComm"_s} << u"Com2:"_s;
        // Telrad's type fixes its link: the connection stored is kept as it is, network or port.
        QTest::newRow("Telrad keeps a network link")
            << u"{PBX=TELRAD}"_s + net << QStringList{u"bPort"_s} << u"Tcp/Ip"_s;
        QTest::newRow("Telrad keeps its port")
            << u"{PBX=TELRAD}{Comm=Com4:}"_s << QStringList{u"bPort"_s, u"bComm"_s} << u"Com4:"_s;
        // The Nortel is reached through its CTE: no connection to choose, auto-create only.
        QTest::newRow("Nortel stored as CTE")
            << u"{PBX=NORTEL CTE}{Comm=Com3:}"_s << QStringList{u"pAuto"_s} << u"Tcp/Ip"_s;
        QTest::newRow("demonstration")
            << u"{PBX=Demonstration mode}"_s + net << QStringList{u"pDemo"_s} << u"Tcp/Ip"_s;
        QTest::newRow("Avaya") << u"{PBX=AVAYA ECS}"_s + net
                               << QStringList{u"pPword"_s, u"pAvaya"_s, u"pAuto"_s} << u"Tcp/Ip"_s;
        QTest::newRow("another system") << u"{PBX=MITEL}"_s + serial << QStringList{u"pAuto"_s} << u"Com2:"_s;
        QTest::newRow("not used") << u"{PBX=Not used}"_s << QStringList{u"pAuto"_s} << QString();
        QTest::newRow("no type yet") << u"{Comm=Tcp/Ip}"_s << QStringList{} << u"Tcp/Ip"_s;
        // A type that is part of a listed name takes that name's rule.
        QTest::newRow("part of INTERTEL")
            << u"{PBX=tel}"_s + serial << QStringList{u"bPort"_s, u"bComm"_s} + passwordAndAuto << u"Com2:"_s;
    }

    void eachTypeShowsExactlyItsGroups()
    {
        QFETCH(QString, stored);
        QFETCH(QStringList, groups);
        QFETCH(QString, connection);

        SitePage page;
        page.load(stored);
        QCOMPARE(shownGroups(page), groups);
        QCOMPARE(child<QComboBox>(page, u"Comm"_s)->currentText(), connection);
    }

    void choosingTypeAndConnectionSwitchesTheGroups()
    {
        SitePage page;
        auto *type = child<QComboBox>(page, u"sType"_s);
        auto *comm = child<QComboBox>(page, u"Comm"_s);
        page.load(u"{PBX=SIEMENS}{Comm=Tcp/Ip}"_s);
        // One choice after another on the same page: the groups and the connection then shown.
        const struct
        {
            QComboBox *list;
            QString choice;
            QStringList groups;
            QString connection;
        } steps[] = {
            {comm, u"Com3:"_s, {u"bPort"_s, u"bComm"_s, u"pPword"_s, u"pAuto"_s}, u"Com3:"_s},
            {comm, u"Tcp/Ip"_s, {u"bPort"_s, u"bIp"_s, u"bIPPort"_s, u"pPword"_s, u"pAuto"_s}, u"Tcp/Ip"_s},
            {type, u"AVAYA ECS"_s, {u"pPword"_s, u"pAvaya"_s, u"pAuto"_s}, u"Tcp/Ip"_s},
            // A connection chosen while the type has none shows nothing more.
            {comm, u"Com1:"_s, {u"pPword"_s, u"pAvaya"_s, u"pAuto"_s}, u"Com1:"_s},
            {type, u"Nortel BCM"_s, {u"pAuto"_s}, u"Tcp/Ip"_s},
            {type, u"Demonstration mode"_s, {u"pDemo"_s}, u"Tcp/Ip"_s},
            {comm, u"Com2:"_s, {u"pDemo"_s}, u"Com2:"_s},
            {type, u"TELRAD"_s, {u"bPort"_s, u"bComm"_s}, u"Com2:"_s},
            {comm, u"Tcp/Ip"_s, {u"bPort"_s}, u"Tcp/Ip"_s},
        };
        for (const auto &step : steps) {
            choose(step.list, step.choice);
            QCOMPARE(shownGroups(page), step.groups);
            QCOMPARE(comm->currentText(), step.connection);
        }

        // The fixed lists offer what the site needs.
        for (const QString &entry : {u"AVAYA ECS"_s, u"Nortel BCM"_s, u"SIEMENS"_s, u"INTERTEL"_s,
                                     u"TELRAD"_s, u"TOSHIBA"_s, u"Demonstration mode"_s, u"Not used"_s})
            QVERIFY2(type->findText(entry) >= 0, qPrintable(entry));
        QCOMPARE(comm->count(), 9);
        QCOMPARE(comm->itemText(0), u"Tcp/Ip"_s);
        QCOMPARE(comm->itemText(8), u"Com8:"_s);
    }

    void loadingFillsDefaultsAndStoredValues()
    {
        SitePage page;
        NetworkPage network;
        const QStringList fields{u"Settings"_s, u"sVMType"_s, u"AutoDir"_s, u"sType"_s, u"sVMIP"_s};
        page.load(QString());
        network.load(QString());
        QCOMPARE(shown(page, fields),
                 (QStringList{u"19200,n,8,1"_s, u"(None)"_s, u"0"_s, QString(), QString()}));
        QCOMPARE(child<QComboBox>(page, u"sType"_s)->currentIndex(), -1);
        QCOMPARE(shown(network, {u"netSend"_s}), QStringList{u"0"_s});

        const QString stored =
            u"{Name(S11)=Quay Office}{AutoDir(N1)=1}{PBX=samsung}{VMIP=10.1.1.9}{VMType=voxpro}"
            u"{Settings=9600,e,7,1}{Username=cti}{Password=pw}{Server=aes}{Random=30}"
            u"{Numbers=201,202}{FatalAlert=201}{WarningAlert=202}{DailyAlert=203}"
            u"{SendUpdates=1}{SendPath=\\\\fs\\upd}{Cluster=qs2,qs3}"_s;
        page.load(stored);
        network.load(stored);
        // A type the list does not offer is kept, so saving gives it back.
        QCOMPARE(shown(page, fields + QStringList{u"sName"_s, u"Uname"_s, u"PWord"_s}),
                 (QStringList{u"9600,e,7,1"_s, u"VoxPro"_s, u"1"_s, u"samsung"_s, u"10.1.1.9"_s,
                              u"Quay Office"_s, u"cti"_s, u"pw"_s}));
        QCOMPARE(child<QLineEdit>(page, u"PWord"_s)->echoMode(), QLineEdit::Password);
        QCOMPARE(shown(network, {u"Alert_0"_s, u"Alert_2"_s, u"netSend"_s, u"netPath"_s, u"netCluster"_s}),
                 (QStringList{u"201"_s, u"203"_s, u"1"_s, u"\\\\fs\\upd"_s, u"qs2,qs3"_s}));

        // Loading again replaces everything: a field the new record lacks takes its default.
        page.load(u"{Name=Dock}{PBX=NORTEL CTE}"_s);
        QCOMPARE(shown(page, fields),
                 (QStringList{u"19200,n,8,1"_s, u"(None)"_s, u"0"_s, u"Nortel BCM"_s, QString()}));

        // The type is written as the list names it, chosen or not; an empty field is left out, a
        // box always written (the whole record, in its order, is the main window's test).
        RecordEntries entries;
        page.save(entries);
        QCOMPARE(entries.value(u"pbx"_s), u"{PBX(S10)=Nortel BCM}"_s);
        QCOMPARE(entries.value(u"autodir"_s), u"{AutoDir(N1)=0}"_s);
        QVERIFY(entries.value(u"lcr"_s).isEmpty());
    }

    void everyLabelAndBoxHasItsOwnMnemonic()
    {
        // Alt and the underlined letter reach each field shown: the label's field takes the focus,
        // a check box toggles. No two on show share a letter.
        const auto pressEach = [](QWidget &page) {
            QSet<QChar> letters;
            const auto letterOf = [&letters](const QString &text) {
                const qsizetype amp = text.indexOf(u'&');
                const QChar letter = amp >= 0 ? text.at(amp + 1).toLower() : QChar();
                return letters.contains(letter) ? QChar() : *letters.insert(letter);
            };
            for (QLabel *label : page.findChildren<QLabel *>()) {
                QWidget *field = label->buddy();
                if (!field || !label->isVisible() || !field->isEnabled())
                    continue;
                const QChar letter = letterOf(label->text());
                QVERIFY2(!letter.isNull(), qPrintable(label->text()));
                QTest::keyClick(&page, letter.toLatin1(), Qt::AltModifier);
                QCOMPARE(QApplication::focusWidget(), field);
            }
            for (QCheckBox *box : page.findChildren<QCheckBox *>()) {
                if (!box->isVisible())
                    continue;
                const QChar letter = letterOf(box->text());
                QVERIFY2(!letter.isNull(), qPrintable(box->text()));
                const bool wasChecked = box->isChecked();
                QTest::keyClick(&page, letter.toLatin1(), Qt::AltModifier);
                QTRY_COMPARE(box->isChecked(), !wasChecked);
            }
        };
        const auto showActive = [](QWidget &page) {
            page.show();
            page.activateWindow();
            return QTest::qWaitForWindowActive(&page);
        };

        SitePage site;
        QVERIFY(showActive(site));
        for (const QString &type : {u"{PBX=SIEMENS}{Comm=Tcp/Ip}"_s, u"{PBX=INTERTEL}{Comm=Com1:}"_s,
                                    u"{PBX=AVAYA ECS}"_s, u"{PBX=Demonstration mode}"_s}) {
            site.load(type + u"{VMType=VoxBox}"_s);
            pressEach(site);
        }
        site.hide();
        NetworkPage network;
        QVERIFY(showActive(network));
        pressEach(network);
    }

    void voiceMailTypeEnablesItsFields()
    {
        SitePage page;
        auto *type = child<QComboBox>(page, u"sVMType"_s);
        auto *number = child<QLineEdit>(page, u"sVM"_s);
        auto *address = child<QLineEdit>(page, u"sVMIP"_s);
        // Each type in the list's order, with whether it takes a number and an address.
        const std::tuple<QString, bool, bool> types[] = {{u"(None)"_s, false, false},
                                                         {u"VoxBox"_s, true, true},
                                                         {u"VoxPro"_s, true, true},
                                                         {u"External Voice Mail"_s, true, true},
                                                         {u"Internal Voice Mail"_s, true, false}};
        int index = 0;
        for (const auto &[name, hasNumber, hasAddress] : types) {
            QCOMPARE(type->itemText(index++), name);
            choose(type, name);
            QCOMPARE(number->isEnabled(), hasNumber);
            QCOMPARE(address->isEnabled(), hasAddress);
        }
        QCOMPARE(type->count(), index);
    }

    void featuresGridShowsCommonAndStoredFeatures()
    {
        FeaturesPage page;
        QTableWidget *grid = page.grid();
        QCOMPARE(grid->objectName(), u"Features"_s);
        QCOMPARE(grid->columnCount(), 2);
        const QStringList common{u"Pickup"_s,     u"Park"_s,       u"Call forward"_s, u"Do not disturb"_s,
                                 u"Voice mail"_s, u"Conference"_s, u"Transfer"_s,     u"Intrude"_s};
        QCOMPARE(grid->rowCount(), int(common.size()));
        for (int row = 0; row < common.size(); ++row)
            QCOMPARE(grid->item(row, 0)->text(), common.at(row));

        page.load(u"{Flash(S1)=R}{park(S3)=*44}{Pickup(S2)=*8}{Call forward(S2)=*2}"_s);
        QCOMPARE(grid->rowCount(), int(common.size()) + 1);
        QCOMPARE(grid->item(common.size(), 0)->text(), u"Flash"_s);
        QCOMPARE(page.code(u"Park"_s), u"*44"_s);
        QCOMPARE(page.code(u"Call forward"_s), u"*2"_s);
        QVERIFY(page.code(u"Intrude"_s).isEmpty());

        // The administrator types a code into the grid; a code cleared is left out.
        grid->setCurrentCell(7, 1);
        grid->item(7, 1)->setText(u"*9"_s);
        page.setCode(u"Pickup"_s, QString());
        const QString saved = page.record();
        QCOMPARE(tagNames(saved), (QStringList{u"Park"_s, u"Call forward"_s, u"Intrude"_s, u"Flash"_s}));
        QCOMPARE(getText(saved, u"Intrude"_s), u"*9"_s);
        QCOMPARE(getText(saved, u"Flash"_s), u"R"_s);
        // The feature names are not editable, the codes are.
        QVERIFY(!(grid->item(0, 0)->flags() & Qt::ItemIsEditable));
        QVERIFY(grid->item(0, 1)->flags() & Qt::ItemIsEditable);

        // A reload drops rows of features the new record no longer has.
        page.load(u"{Pickup=*7}"_s);
        QCOMPARE(grid->rowCount(), int(common.size()));
        QCOMPARE(page.code(u"Pickup"_s), u"*7"_s);
        QVERIFY(page.code(u"Intrude"_s).isEmpty());
    }

private:
    TestIsolation m_scratch;
};

QTEST_MAIN(SitePageTest)
#include "tst_sitepage.moc"
