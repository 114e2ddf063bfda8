// SPDX-License-Identifier: GPL-3.0-or-later
// The choice dialog: what a request lists, when OK can be pressed, and the answer the device window
// receives through the dispatcher.
#include "frmCombo.h"
#include "isolation.h"
#include "serverlink.h"
#include "usrsession.h"

#include <QApplication>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {
// The device window as the dispatcher sees it.
class DeviceWindow : public QObject, public IDataReceiver
{
public:
    void DataArrived(const QString &SubRef, const QString &Message) override { received << SubRef + u'|' + Message; }
    QStringList received;
};
} // namespace

class ComboTest : public QObject
{
    Q_OBJECT
    TestIsolation m_scratch;
    usrSession m_session; // never started: the answer does not travel to the server
    ServerLink m_link{m_session};
    DeviceWindow m_devices;

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
        m_link.setReceiver(u"EXTS"_s, &m_devices);
    }

    void requestListsItsChoices_data()
    {
        QTest::addColumn<QString>("request");
        QTest::addColumn<QStringList>("listed"); // empty and never shown: {"(hidden)"}
        QTest::newRow("trailing separator") << u"{Cmd=SelectOne}{Ref=AddCampaign}{Choices=Spring~Summer~}"_s
                                            << QStringList{u"Spring"_s, u"Summer"_s};
        QTest::newRow("empty entry inside") << u"{Cmd=selectone}{Ref=X}{Choices(S5)=a~~b~}"_s
                                            << QStringList{u"a"_s, QString(), u"b"_s};
        QTest::newRow("leading separator") << u"{Cmd=SelectOne}{Ref=X}{Choices=~a}"_s << QStringList{QString(), u"a"_s};
        QTest::newRow("no choices") << u"{Cmd=SelectOne}{Ref=X}{Choices=}"_s << QStringList();
        QTest::newRow("another command") << u"{Cmd=SelectMany}{Ref=X}{Choices=a~b}"_s << QStringList{u"(hidden)"_s};
    }
    void requestListsItsChoices()
    {
        QFETCH(QString, request);
        QFETCH(QStringList, listed);
        frmCombo dialog(m_link);
        bool shown = false;
        QStringList seen;
        bool okEnabled = true;
        QTimer::singleShot(0, &dialog, [&] {
            shown = dialog.isVisible();
            auto *list = dialog.findChild<QListWidget *>(u"List"_s);
            for (int row = 0; row < list->count(); ++row)
                seen << list->item(row)->text();
            okEnabled = dialog.findChild<QPushButton *>(u"OK"_s)->isEnabled();
            dialog.reject();
        });
        dialog.DataArrived(request);
        if (listed == QStringList{u"(hidden)"_s}) {
            QVERIFY(!shown);
            return;
        }
        QVERIFY(shown);
        QCOMPARE(seen, listed);
        QVERIFY(!okEnabled); // nothing selected yet
        QVERIFY(m_devices.received.isEmpty());
    }

    // Selecting enables OK; OK or a double-click answers through the dispatcher; Cancel answers nothing.
    void theChoiceReachesTheDeviceWindow()
    {
        const QString request = u"{Cmd=SelectOne}{Ref=AddCampaign}{Choices=Spring~Summer~}"_s;
        enum Finish { PressOk, DoubleClick, PressCancel };
        for (const Finish finish : {PressOk, DoubleClick, PressCancel}) {
            m_devices.received.clear();
            frmCombo dialog(m_link);
            QTimer::singleShot(0, &dialog, [&] {
                auto *list = dialog.findChild<QListWidget *>(u"List"_s);
                auto *ok = dialog.findChild<QPushButton *>(u"OK"_s);
                const QRect summer = list->visualItemRect(list->item(1));
                QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, summer.center());
                QVERIFY(ok->isEnabled());
                if (finish == PressOk)
                    QTest::mouseClick(ok, Qt::LeftButton);
                else if (finish == DoubleClick)
                    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, summer.center());
                else
                    QTest::mouseClick(dialog.findChild<QPushButton *>(u"Cancel"_s), Qt::LeftButton);
            });
            dialog.DataArrived(request);
            QVERIFY(!dialog.isVisible());
            if (finish == PressCancel)
                QCOMPARE(m_devices.received, QStringList());
            else
                QCOMPARE(m_devices.received, QStringList{u"ADDCAMPAIGN|{Ref=AddCampaign}{Choice=Summer}"_s});
        }
    }
};

QTEST_MAIN(ComboTest)
#include "tst_combo.moc"
