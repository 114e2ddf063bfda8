// SPDX-License-Identifier: GPL-3.0-or-later
// The device row without a window: the flag boxes, what OK sends for a number, a range or an edit,
// and the campaign list after a choice.
#include "devicerecord.h"
#include "isolation.h"
#include "tagvalue.h"

#include <QTest>

using namespace Qt::StringLiterals;
using DeviceRecord::PlannedDevice;

namespace {

// "Ext|Name" per device, so that a failing comparison shows the whole plan.
QStringList texts(const QList<PlannedDevice> &plan)
{
    QStringList out;
    for (const PlannedDevice &device : plan)
        out.append(device.ext + u'|' + device.name);
    return out;
}

QStringList numbered(const QString &prefix, int from, int to, const QString &name)
{
    QStringList out;
    for (int n = from; n <= to; ++n)
        out.append(prefix + QString::number(n) + u'|' + name + QString::number(n));
    return out;
}

} // namespace

class DeviceRecordTest : public QObject
{
    Q_OBJECT
    TestIsolation m_scratch;

private slots:
    void initTestCase() { QVERIFY(m_scratch.enter()); }

    // Each flag box is a field the device read asks for, with the help text key of its place
    // (the order OK writes them in, and the titles' kind words, are the device window's test).
    void flagBoxesAreReadAndKeyedInTheirOrder()
    {
        const QList<DeviceRecord::FlagBox> &boxes = DeviceRecord::flagBoxes();
        QCOMPARE(boxes.size(), DeviceRecord::flagBoxCount);
        const QStringList fields = DeviceRecord::fieldList().split(u',');
        for (int i = 0; i < boxes.size(); ++i) {
            QVERIFY2(fields.contains(boxes.at(i).tag), qPrintable(boxes.at(i).tag));
            QCOMPARE(boxes.at(i).key, u"QS%1"_s.arg(82 + i, 3, 10, QChar(u'0')));
        }
    }

    void sendingPlanCreatesRangesAndEdits_data()
    {
        QTest::addColumn<QString>("number");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("newDevice");
        QTest::addColumn<QStringList>("sent");

        const auto row = [](const char *tag, const QString &number, const QString &name, bool newDevice,
                            const QStringList &sent) {
            QTest::newRow(tag) << number << name << newDevice << sent;
        };
        row("one number", u"200"_s, u"Reception"_s, true, {u"200|Reception"_s});
        row("range of three", u"200-202"_s, u"Room #"_s, true, numbered({}, 200, 202, u"Room "_s));
        row("L range keeps its prefix", u"L10-L20"_s, u"Agent #"_s, true,
            numbered(u"L"_s, 10, 20, u"Agent "_s));
        row("L range, last without L", u"L10-20"_s, u"#"_s, true, {u"L10|10"_s});
        row("a hundred apart", u"10-110"_s, u"#"_s, true, numbered({}, 10, 110, {}));
        row("101 apart", u"10-111"_s, u"#"_s, true, {u"10|10"_s});
        row("one apart", u"100-101"_s, u"#"_s, true, {u"100|100"_s});
        row("150 apart", u"100-250"_s, u"#"_s, true, {u"100|100"_s});
        row("backwards", u"5-3"_s, u"#"_s, true, {u"5|5"_s});
        row("from zero", u"0-5"_s, u"#"_s, true, {u"0|0"_s});
        row("leading zeros only on the first", u"0100-0105"_s, u"Room #"_s, true,
            QStringList{u"0100|Room 0100"_s} + numbered({}, 101, 105, u"Room "_s));
        row("not a number", u"abc"_s, u"Lobby"_s, true, {u"ABC|Lobby"_s});
        row("trimmed and upper-cased", u" 12ab "_s, u"Desk"_s, true, {u"12AB|Desk"_s});
        row("number cut to 15", u"1234567890123456789"_s, u"x"_s, true, {u"123456789012345|x"_s});
        row("name cut to 25, then numbered", u"300-302"_s, u"Abcdefghijklmnopqrstuvwx#yz123"_s, true,
            numbered({}, 300, 302, u"Abcdefghijklmnopqrstuvwx"_s));
        row("no number", u"  "_s, u"Room #"_s, true, {});
        row("edit: no Ext, # removed", u"10-12"_s, u"Sales #1"_s, false, {u"|Sales 1"_s});
        row("edit without a number", QString(), u"Sales"_s, false, {});
    }
    void sendingPlanCreatesRangesAndEdits()
    {
        QFETCH(QString, number);
        QFETCH(QString, name);
        QFETCH(bool, newDevice);
        QFETCH(QStringList, sent);
        QCOMPARE(texts(DeviceRecord::sendingPlan(number, name, newDevice)), sent);
    }

    void storeCommandsEndWithNumberNameAndIds()
    {
        const QString fields = u"{Type(S3)=EXT}"_s;
        const QStringList range = DeviceRecord::storeCommands(
            fields, u"-1"_s, DeviceRecord::sendingPlan(u"10-12"_s, u"Room #"_s, true));
        QCOMPARE(range.size(), 3);
        QCOMPARE(range.at(0), u"{Cmd=SetFields}{Table=Exts}{Fields(S44)={Type(S3)=EXT}{Ext(S2)=10}"
                              "{Name(S7)=Room 10}}{Id(S2)=-1}"_s);
        QCOMPARE(range.at(2), u"{Cmd=SetFields}{Table=Exts}{Fields(S44)={Type(S3)=EXT}{Ext(S2)=12}"
                              "{Name(S7)=Room 12}}{Id(S2)=-1}"_s);
        // A private address book's Name nested in the row stays whole; the device's follows it.
        const QString books = u"{PrivateAB(S15)={Name(S4)=Home}}"_s;
        QCOMPARE(
            DeviceRecord::storeCommands(books, u"7"_s, DeviceRecord::sendingPlan(u"7"_s, u"Desk"_s, false)),
            QStringList{u"{Cmd=SetFields}{Table=Exts}{Fields(S47)="_s + books +
                        u"{Name(S4)=Desk}}{Id(S1)=7}"_s});
    }

    void campaignChoiceMovesToTheEndUnmarked_data()
    {
        QTest::addColumn<QStringList>("entries");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char *tag, const QStringList &entries, const QString &choice,
                            const QStringList &expected) {
            QTest::newRow(tag) << entries << u"{Ref=ADDCAMPAIGN}{Choice=%1}"_s.arg(choice) << expected;
        };
        row("done, other case", {u"Spring (Done)"_s, u"Summer"_s}, u"spring"_s, {u"Summer"_s, u"spring"_s});
        row("new one appended", {u"Summer"_s}, u"Autumn"_s, {u"Summer"_s, u"Autumn"_s});
        row("only the first match goes", {u"Spring"_s, u"Summer"_s, u"SPRING (Done)"_s}, u"spring"_s,
            {u"Summer"_s, u"SPRING (Done)"_s, u"spring"_s});
        row("a longer name is another campaign", {u"Spring sale"_s}, u"Spring"_s,
            {u"Spring sale"_s, u"Spring"_s});
    }
    void campaignChoiceMovesToTheEndUnmarked()
    {
        QFETCH(QStringList, entries);
        QFETCH(QString, answer);
        QFETCH(QStringList, expected);
        QCOMPARE(DeviceRecord::addCampaignChoice(entries, getText(answer, u"Choice"_s)), expected);
    }
};

QTEST_GUILESS_MAIN(DeviceRecordTest)
#include "tst_devicerecord.moc"
