// SPDX-License-Identifier: GPL-3.0-or-later
// The device window's Address Books and Campaigns pages against quillserverd: the row each kind
// stores byte for byte, each edit of the pages, and several devices keeping what they do not share.
#include "devicerecord.h"
#include "frmConfig.h"
#include "pluginhost.h"
#include "serverfixture.h"
#include "translate.h"
#include "translatewidgets.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScopeGuard>
#include <QTreeWidget>

namespace {

using Fields = QList<std::pair<QString, QVariant>>;
// A field written empty ("{Tag(S0)=}"): a list the user emptied, which the server must clear too.
const QVariant emptied = QVariant(QByteArray());

QString row(const Fields &fields)
{
    QString vars;
    for (const auto &[name, value] : fields) {
        if (value.typeId() == QMetaType::QByteArray)
            AddVar(vars, name, QString(), true);
        else
            AddVar(vars, name, value);
    }
    return vars;
}
Fields with(Fields fields, const QString &tag, const QVariant &value)
{
    for (auto &field : fields) {
        if (field.first == tag)
            field.second = value;
    }
    fields.removeIf([](const auto &field) {
        return field.second.typeId() != QMetaType::QByteArray && field.second.toString().isEmpty();
    });
    return fields;
}

QString privateBook(const QString &name)
{
    return row({{u"Type"_s, u"CSV"_s}, {u"Name"_s, name}, {u"Options"_s, u"{Alpha(N1)=0}"_s}});
}
QString privateBooks(const QStringList &names)
{
    QString books;
    for (qsizetype n = 0; n < names.size(); ++n)
        AddVar(books, u"AB%1"_s.arg(n + 1),
               row({{u"ABName"_s, names[n]}, {u"Vars"_s, privateBook(names[n])}}));
    return books;
}

const QString settings = u"{Colour(S4)=Blue}"_s;
// An agent using the first of two system books, with two private books, one taking new contacts.
const Fields booksAndCampaigns{{u"AB1Vars"_s, settings},
                               {u"AB1Use"_s, 1},
                               {u"AB2Use"_s, 0},
                               {u"PrivateAB"_s, privateBooks({u"Board contacts"_s, u"Home"_s})},
                               {u"NewAB"_s, u"Board contacts"_s},
                               {u"CampaignsDone"_s, u"Sales"_s},
                               {u"Campaigns"_s, u"Sales,Sales2"_s}};
const Fields bookFields = booksAndCampaigns.first(5);

// A translator that knows two words, as a German one would.
class GermanWords : public QObject, public ITranslator
{
    Q_OBJECT
    Q_INTERFACES(ITranslator)
public:
    bool TranslateLoad(const QString &) override { return true; }
    QString Translate(const QString &, const QString &text, const QString &p1, const QString &p2) override
    {
        const QHash<QString, QString> words{{u"Done"_s, u"Erledigt"_s},
                                            {u"(Directory)"_s, u"(Verzeichnis)"_s}};
        return words.value(text, text).replace(u"<1>"_s, p1).replace(u"<2>"_s, p2);
    }
    void TranslateWindow(QObject *) override {}
};

} // namespace

class ConfigBooksTest : public QObject
{
    Q_OBJECT
    std::unique_ptr<ServerFixture> m_fixture;
    int m_nextNumber = 6100;
    QStringList m_asked; // the messages shown and the windows opened, with their titles and requests
    QString m_answer;    // what the choice dialog or a private book's window hands back

    template <typename T> static T *child(const QWidget &window, const QString &name)
    {
        auto *found = window.findChild<T *>(name);
        if (!found)
            qFatal("no control %s", qPrintable(name));
        return found;
    }
    static void press(const frmConfig &window, const QString &button)
    {
        QTest::mouseClick(child<QPushButton>(window, button), Qt::LeftButton);
    }
    // Stores a device named Desk of kind type with fields, and gives its id.
    QString storedDevice(const QString &type, const Fields &fields)
    {
        const QString ext = QString::number(m_nextNumber++);
        m_fixture->create(u"Exts"_s,
                          row(Fields{{u"Ext"_s, ext}, {u"Name"_s, u"Desk"_s}, {u"Type"_s, type}} + fields));
        for (const QString &entry : readList(m_fixture->fetch(u"MAIN-EXTS"_s))) {
            if (getText(entry, u"Ext"_s) == ext)
                return getText(entry, u"Id"_s);
        }
        return {};
    }
    // The window with two system books (the first of plug-in type firstType), read from lid.
    void open(frmConfig &window, const QString &lid, const QString &firstType = u"Sample"_s)
    {
        window.setAddressBooks({{u"Customers"_s, firstType}, {u"Hauliers"_s, u"Missing"_s}});
        window.setCampaignNames({u"Sales"_s, u"Sales2"_s, u"Winter"_s});
        window.setWindows(&m_fixture->windows);
        child<QLineEdit>(window, u"Lid"_s)->setText(lid);
        QVERIFY(
            QTest::qWaitFor([&] { return child<QLineEdit>(window, u"Nam"_s)->text() == u"Desk"_s; }, 20000));
    }
    // Presses OK and gives the Fields of the command it sent.
    QString storedFields(frmConfig &window)
    {
        const qsizetype before = m_fixture->relay.commands().size();
        press(window, u"OK"_s);
        if (!QTest::qWaitFor([&] { return m_fixture->relay.commands().size() == before + 1; }, 20000))
            return u"(nothing sent)"_s;
        return getText(m_fixture->relay.commands().constLast(), u"Fields"_s);
    }
    // The row of a device of kind type that sets nothing else, around the pages' fields.
    static QString deviceRow(const QString &type, const Fields &pages)
    {
        QString flags;
        for (int box = 0; box < DeviceRecord::flagBoxCount; ++box) {
            if (box != 20 && box != 23)
                AddVar(flags, DeviceRecord::flagBoxes()[box].tag, 0, true);
        }
        return row({{u"Type"_s, type}}) + flags + row(pages) + u"{UseAbsence(N1)=0}{Name(S4)=Desk}"_s;
    }

private slots:
    void initTestCase()
    {
        qputenv("QUILL_PLUGIN_PATH", QUILL_TEST_PLUGIN_DIR);
        PluginHost::forgetScan();
        setApplicationTitle(u"QuillServer"_s);
        m_fixture = std::make_unique<ServerFixture>();
        QString error;
        QVERIFY2(m_fixture->start(&error), qPrintable(error));
        setMsgBoxAnswer([this](const QString &title, const QString &text, QMessageBox::StandardButtons) {
            m_asked << title + u'|' + text;
            return QMessageBox::Ok;
        });
        // The choice dialog answers through the dispatcher, as frmCombo does; a private book's
        // window hands back the book of the index it was opened for.
        m_fixture->windows.setOpener(u"Combo"_s, [this](const QString &request, QWidget *) {
            m_asked << request;
            m_fixture->link.HandleCallback(u"{Ref="_s + getText(request, u"Ref"_s) + u"}{Choice="_s +
                                           m_answer + u'}');
            return WindowResult::cancelled();
        });
        m_fixture->windows.setOpener(u"AB"_s, [this](const QString &request, QWidget *) {
            m_asked << request;
            QString handBack = u"{Index="_s + getText(request.mid(3), u"Index"_s) + u'}';
            AddVar(handBack, u"Fields"_s, privateBook(m_answer));
            return WindowResult::savedExisting({}, {}, handBack);
        });
    }
    void cleanupTestCase()
    {
        setMsgBoxAnswer({});
        m_fixture.reset();
    }

    // Agents store both pages, extensions the address books only, trunks neither; an untouched row
    // goes back as it came. Under a translation the done mark shown is not recognised on saving,
    // and the directory entry is stored by its English name. The directory that opened the window
    // is handed the device's name, not its private book's.
    void kindsStoreTheirPages_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<bool>("german");
        QTest::addColumn<QString>("stored");
        QTest::newRow("agent") << u"AGENT"_s << false << deviceRow(u"AGENT"_s, booksAndCampaigns);
        QTest::newRow("extension") << u"EXT"_s << false << deviceRow(u"EXT"_s, bookFields);
        QTest::newRow("trunk") << u"TRUNK"_s << false
                               << u"{Type(S5)=TRUNK}{DontMonitor(N1)=0}{IncludeBLF(N1)=0}{Name(S4)=Desk}"_s;
        // The translated mark is not recognised: the name keeps it, and the done list is emptied.
        const Fields german = with(with(booksAndCampaigns, u"CampaignsDone"_s, emptied), u"Campaigns"_s,
                                   u"Sales (Erledigt),Sales2"_s);
        QTest::newRow("agent, in German")
            << u"AGENT"_s << true << deviceRow(u"AGENT"_s, with(german, u"NewAB"_s, u"(Directory)"_s));
    }
    void kindsStoreTheirPages()
    {
        QFETCH(QString, type);
        QFETCH(bool, german);
        QFETCH(QString, stored);
        GermanWords words;
        if (german)
            setTranslator(&words);
        const auto english = qScopeGuard([] { setTranslator(nullptr); });
        frmConfig window(m_fixture->link);
        open(window,
             storedDevice(type, german ? with(booksAndCampaigns, u"NewAB"_s, {}) : booksAndCampaigns));
        QCOMPARE(child<QCheckBox>(window, u"pCheck_1"_s)->checkState(), Qt::Checked);
        auto *books = child<QTreeWidget>(window, u"Ab"_s);
        QCOMPARE(child<QCheckBox>(window, u"pCheck_2"_s)->text() + u'|' + books->topLevelItem(1)->text(1) +
                     u'|' + books->topLevelItem(2)->text(1),
                 u"Hauliers|Public|Private"_s);
        books->setCurrentItem(books->topLevelItem(1));
        QVERIFY(!child<QPushButton>(window, u"pProps_2"_s)->isEnabled()); // a system book is not removed
        QCOMPARE(child<QComboBox>(window, u"NewAb"_s)->currentText(),
                 german ? u"(Verzeichnis)"_s : u"Board contacts"_s);
        QCOMPARE(child<QListWidget>(window, u"Campaigns"_s)->item(0)->text(),
                 german ? u"Sales (Erledigt)"_s : u"Sales (Done)"_s);
        QCOMPARE(storedFields(window), stored);
        QCOMPARE(getText(window.outcome().record, u"Name"_s), u"Desk"_s);
    }

    // A campaign chosen in the choice dialog comes back through the dispatcher and replaces an
    // entry of the same name, done mark and all. Configure runs a system book's plug-in at the User
    // level on its settings; a plug-in without user settings, or none installed, is said so and the
    // settings stay. A private book's window is asked with the book's index and record, and its
    // hand-back adds or replaces the book; a removed book's new contacts go to the directory.
    void editsOnThePagesAreStored_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("asked");
        QTest::addColumn<Fields>("stored");
        const auto add = [](const char *action, const QString &asked, const Fields &stored) {
            QTest::newRow(action) << QString::fromLatin1(action) << asked << stored;
        };
        const QString choices = u"{Cmd=SelectOne}{Ref=AddCampaign}{Choices(S19)=Sales~Sales2~Winter}"_s;
        add("choose Winter", choices, with(booksAndCampaigns, u"Campaigns"_s, u"Sales,Sales2,Winter"_s));
        add("choose Sales", choices,
            with(with(booksAndCampaigns, u"CampaignsDone"_s, emptied), u"Campaigns"_s, u"Sales2,Sales"_s));
        add("remove Sales2", {}, with(booksAndCampaigns, u"Campaigns"_s, u"Sales"_s));
        add("configure Sample", {},
            with(booksAndCampaigns, u"AB1Vars"_s, QString(settings + u"{Level=User}{Owner=frmConfig}"_s)));
        const QString title = u"QuillServer Configuration|"_s;
        add("configure SampleAction", title + u"No user configuration available for 'Customers'."_s,
            booksAndCampaigns);
        add("configure Missing",
            title +
                u"Could not configure 'Customers'. Please ensure the 'Missing' plugin is installed on this machine."_s,
            booksAndCampaigns);
        add("add Harbour", u"-2:{Index=-1}"_s,
            with(booksAndCampaigns, u"PrivateAB"_s,
                 privateBooks({u"Board contacts"_s, u"Home"_s, u"Harbour"_s})));
        add("edit Board", u"-2:{Index=0}"_s + privateBook(u"Board contacts"_s),
            with(with(booksAndCampaigns, u"PrivateAB"_s, privateBooks({u"Board"_s, u"Home"_s})), u"NewAB"_s,
                 u"Board"_s));
        add("clear both lists", {},
            with(with(with(with(booksAndCampaigns, u"PrivateAB"_s, emptied), u"NewAB"_s, u"(Directory)"_s),
                      u"CampaignsDone"_s, emptied),
                 u"Campaigns"_s, emptied));
        add("drop Board contacts", {},
            with(with(booksAndCampaigns, u"PrivateAB"_s, privateBooks({u"Home"_s})), u"NewAB"_s,
                 u"(Directory)"_s));
    }
    void editsOnThePagesAreStored()
    {
        QFETCH(QString, action);
        QFETCH(QString, asked);
        QFETCH(Fields, stored);
        const QString verb = action.section(u' ', 0, 0);
        m_answer = action.section(u' ', 1);
        frmConfig window(m_fixture->link);
        open(window, storedDevice(u"AGENT"_s, booksAndCampaigns),
             verb == u"configure"_s ? m_answer : u"Sample"_s);
        m_asked.clear();
        auto *books = child<QTreeWidget>(window, u"Ab"_s);
        if (verb == u"choose"_s || verb == u"add"_s) {
            press(window, verb == u"add"_s ? u"pProps_0"_s : u"cProps_0"_s);
        } else if (verb == u"clear"_s) {
            // Every campaign and every private book removed: the server must forget them too.
            auto *campaigns = child<QListWidget>(window, u"Campaigns"_s);
            while (campaigns->count() > 0) {
                campaigns->setCurrentRow(0);
                press(window, u"cProps_1"_s);
            }
            while (books->topLevelItemCount() > 2) {
                books->setCurrentItem(books->topLevelItem(2));
                press(window, u"pProps_2"_s);
            }
        } else if (verb == u"remove"_s) {
            child<QListWidget>(window, u"Campaigns"_s)->setCurrentRow(1);
            press(window, u"cProps_1"_s);
        } else {
            books->setCurrentItem(books->topLevelItem(verb == u"configure"_s ? 0 : 2));
            press(window, verb == u"drop"_s ? u"pProps_2"_s : u"pProps_1"_s);
        }
        QCOMPARE(m_asked, asked.isEmpty() ? QStringList() : QStringList{asked});
        QCOMPARE(storedFields(window), deviceRow(u"AGENT"_s, stored));
    }

    // Two agents that differ in one field: it is left out until the user changes it, and while
    // their private books differ none can be added or removed.
    void severalDevicesKeepWhatTheyDoNotShare_data()
    {
        QTest::addColumn<Fields>("second");  // the one field of the second agent that differs
        QTest::addColumn<QString>("change"); // "pCheck_1" clicked, or a campaign chosen
        QTest::addColumn<Fields>("stored");
        const auto add = [](const char *name, const Fields &second, const QString &change,
                            const Fields &stored) { QTest::newRow(name) << second << change << stored; };
        add("use", {{u"AB1Use"_s, 0}}, {}, with(booksAndCampaigns, u"AB1Use"_s, {}));
        add("use, clicked", {{u"AB1Use"_s, 0}}, u"pCheck_1"_s, booksAndCampaigns);
        add("settings", {{u"AB1Vars"_s, u"{Colour(S3)=Red}"_s}}, {},
            with(booksAndCampaigns, u"AB1Vars"_s, {}));
        // The new-contacts book is one of the private books, which are not shown.
        add("private books", {{u"PrivateAB"_s, privateBooks({u"Home"_s})}}, {},
            with(with(booksAndCampaigns, u"PrivateAB"_s, {}), u"NewAB"_s, {}));
        add("new contacts", {{u"NewAB"_s, u"(Directory)"_s}}, {}, with(booksAndCampaigns, u"NewAB"_s, {}));
        add("campaigns", {{u"Campaigns"_s, u"Sales"_s}}, {}, bookFields);
        add("campaigns, one chosen", {{u"Campaigns"_s, u"Sales"_s}}, u"Winter"_s,
            bookFields + Fields{{u"Campaigns"_s, u"Winter"_s}});
    }
    void severalDevicesKeepWhatTheyDoNotShare()
    {
        QFETCH(Fields, second);
        QFETCH(QString, change);
        QFETCH(Fields, stored);
        const QString ids =
            storedDevice(u"AGENT"_s, booksAndCampaigns) + u',' +
            storedDevice(u"AGENT"_s, with(booksAndCampaigns, second[0].first, second[0].second));
        frmConfig window(m_fixture->link);
        open(window, ids);
        QCOMPARE(child<QPushButton>(window, u"pProps_0"_s)->isEnabled(), second[0].first != u"PrivateAB"_s);
        if (change == u"pCheck_1"_s) {
            auto *box = child<QCheckBox>(window, change);
            QCOMPARE(box->checkState(), Qt::PartiallyChecked);
            box->click();
        } else if (!change.isEmpty()) {
            m_answer = change;
            press(window, u"cProps_0"_s);
        }
        QCOMPARE(storedFields(window), deviceRow(u"AGENT"_s, stored));
    }
};

QTEST_MAIN(ConfigBooksTest)
#include "tst_configbooks.moc"
