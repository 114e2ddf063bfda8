// SPDX-License-Identifier: GPL-3.0-or-later
// The shipped translator plgTranslate.Translate, loaded by class name from the build's plug-in folder:
// when it loads, what it makes of captions, help texts, placeholders, plurals and windows, and the
// compiled German catalogue it loads.
#include "germancatalogue.h"
#include "isolation.h"
#include "translatewidgets.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace {
QStringList placeholders(const QString &text)
{
    QStringList found;
    for (const auto &match : QRegularExpression(u"<\\d>|%\\d"_s).globalMatch(text))
        found << match.captured();
    found.sort();
    return found;
}
qsizetype accelerators(QString text)
{
    return text.remove(u"&&"_s).count(u'&');
}
} // namespace

class TestPlgTranslate : public QObject
{
    Q_OBJECT
    TestIsolation m_scratch;

private slots:
    void initTestCase() { QVERIFY(m_scratch.enter()); }
    void init() { QVERIFY(loadGermanTranslator()); }
    void cleanupTestCase() { setTranslator(nullptr); }

    // German for a German default locale, whatever its country; every other language stays
    // English, and so does any other program. Qt's own button texts follow the same choice.
    void loadsGermanForGermanLocalesOnly_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("appKey");
        QTest::addColumn<bool>("german");
        QTest::newRow("Germany") << u"de_DE"_s << u"QSConfig"_s << true;
        QTest::newRow("Austria") << u"de_AT"_s << u"QSConfig"_s << true;
        QTest::newRow("British English") << u"en_GB"_s << u"QSConfig"_s << false;
        QTest::newRow("American English") << u"en_US"_s << u"QSConfig"_s << false;
        QTest::newRow("no language") << u"C"_s << u"QSConfig"_s << false;
        QTest::newRow("French, not translated") << u"fr_FR"_s << u"QSConfig"_s << false;
        QTest::newRow("another program") << u"de_DE"_s << u"QSPhone"_s << false;
    }
    void loadsGermanForGermanLocalesOnly()
    {
        QFETCH(QString, locale);
        QFETCH(QString, appKey);
        QFETCH(bool, german);
        QLocale::setDefault(QLocale(locale));
        QCOMPARE(TranslateLoad(appKey), german);
        QCOMPARE(translator() != nullptr, german);
        QCOMPARE(Translate(u"Cancel"_s), german ? u"Abbrechen"_s : u"Cancel"_s);
        QDialogButtonBox box(QDialogButtonBox::Yes | QDialogButtonBox::No);
        QCOMPARE(box.button(QDialogButtonBox::Yes)->text(), german ? u"&Ja"_s : u"&Yes"_s);
        // The shipped plug-ins' dialogs translate themselves with tr().
        QCOMPARE(QCoreApplication::translate("CsvBookDialog", "Columns"),
                 german ? u"Spalten"_s : u"Columns"_s);
    }

    // Help texts are found by their key first, so a changed English wording keeps its German; a
    // key that stands for two texts tells them apart by the English. Placeholders are filled in
    // the German word order, exactly as the English path fills them.
    void translatesCaptionsHelpTextsAndPlaceholders_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("p1");
        QTest::addColumn<QString>("p2");
        QTest::addColumn<QString>("expected");
        const QString ipTip = u"Geben Sie die IP-Adresse Ihrer Telefonanlage ein."_s;
        QTest::newRow("caption") << QString() << u"&Add..."_s << QString() << QString()
                                 << u"&Hinzufügen..."_s;
        QTest::newRow("help text") << u"QS007"_s << u"Enter the IP address of your telephone system."_s
                                   << QString() << QString() << ipTip;
        QTest::newRow("help text worded otherwise")
            << u"QS007"_s << u"Enter the address of the PBX."_s << QString() << QString() << ipTip;
        QTest::newRow("shared key, first text")
            << u"QS049"_s << u"Enter the IP address of the voice mail."_s << QString() << QString()
            << u"Geben Sie die IP-Adresse der Voicemail ein."_s;
        QTest::newRow("shared key, second text")
            << u"QS049"_s << u"Select the type of telephone system <1> is connected to from the list."_s
            << u"QUILLSERVER"_s << QString()
            << u"Wählen Sie aus der Liste den Typ der Telefonanlage, mit der QUILLSERVER verbunden ist."_s;
        QTest::newRow("dates and times share one translation")
            << u"QS144"_s
            << u"Enter the times during which this Route will operate. This can be a list, ie 09:00-11:30, 14:00-17:00"_s
            << QString() << QString()
            << u"Geben Sie die Tage oder Uhrzeiten ein, zu denen diese Route gilt.  Mehrere Angaben werden "
               u"durch Kommas getrennt, z. B. 09:00-11:30, 14:00-17:00"_s;
        QTest::newRow("unknown key, known text")
            << u"QS999"_s << u"Cancel"_s << QString() << QString() << u"Abbrechen"_s;
        QTest::newRow("German word order") << QString() << u"<1> Properties: <2>"_s << u"Nebenstelle"_s
                                           << u"201"_s << u"Eigenschaften: Nebenstelle 201"_s;
        QTest::newRow("a <2> brought in by the first parameter")
            << QString() << u"Saving <1> of <2>..."_s << u"<2>"_s << u"9"_s << u"Speichern: 9 von 9..."_s;
        QTest::newRow("untranslated stays English")
            << QString() << u"Hello <1>"_s << u"admin"_s << QString() << u"Hello admin"_s;
    }
    void translatesCaptionsHelpTextsAndPlaceholders()
    {
        QFETCH(QString, key);
        QFETCH(QString, text);
        QFETCH(QString, p1);
        QFETCH(QString, p2);
        QFETCH(QString, expected);
        QCOMPARE(Translate(key, text, p1, p2), expected);
    }

    void pluralsAreGerman()
    {
        QCOMPARE(TranslatePlural(1, u"entry"_s), u"1 Eintrag"_s);
        QCOMPARE(TranslatePlural(3, u"entry"_s), u"3 Einträge"_s);
        QCOMPARE(TranslatePlural(1, u"extension"_s), u"1 Nebenstelle"_s);
        QCOMPARE(TranslatePlural(0, u"extension"_s), u"0 Nebenstellen"_s);
    }

    // What a window shows of its own is translated, once however often it is asked; what it holds
    // as data (edit texts, list rows, grid cells, stored list values) is not. Texts without a
    // translation are reported once each, numbers never.
    void windowsAreTranslatedButNotTheirData()
    {
        TranslatorMisses misses;
        QWidget window;
        window.setWindowTitle(u"Configuration"_s);
        auto *label = new QLabel(u"&Name:"_s, &window);
        auto *number = new QLabel(u"201"_s, &window);
        auto *check = new QCheckBox(u"Can dial"_s, &window);
        auto *group = new QGroupBox(u"Site details"_s, &window);
        auto *edit = new QLineEdit(u"Cancel"_s, &window);
        edit->setPlaceholderText(u"Find a number, name or department"_s);
        edit->setToolTip(u"Find"_s);
        auto *tabs = new QTabWidget(&window);
        tabs->addTab(new QWidget, u"General"_s);
        tabs->addTab(new QWidget, u"Diagnostics"_s);
        auto *stored = new QComboBox(&window);
        stored->addItems({u"Demonstration mode"_s, u"Not used"_s});
        auto *captions = new QComboBox(&window);
        captions->setProperty("translateItems", true);
        captions->addItems({u"Monday"_s, u"Weekends only"_s});
        auto *tree = new QTreeWidget(&window);
        tree->setHeaderLabels({u"Name"_s, u"Destination"_s});
        tree->addTopLevelItem(new QTreeWidgetItem(QStringList{u"Cancel"_s, u"Park"_s}));
        auto *grid = new QTableWidget(1, 2, &window);
        grid->setHorizontalHeaderLabels({u"Feature"_s, u"Code"_s});
        grid->setItem(0, 0, new QTableWidgetItem(u"Park"_s));
        auto *menu = new QMenu(u"&Tools"_s, &window);
        auto *action = new QAction(u"Error log..."_s, &window);
        menu->addAction(action);
        auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &window);

        for (int pass = 0; pass < 2; ++pass) {
            TranslateWindow(&window);
            QCOMPARE(window.windowTitle(), u"Konfiguration"_s);
            QCOMPARE((QStringList{label->text(), number->text(), check->text(), group->title()}),
                     (QStringList{u"&Name:"_s, u"201"_s, u"Darf wählen"_s, u"Standortdaten"_s}));
            QCOMPARE((QStringList{edit->text(), edit->placeholderText(), edit->toolTip()}),
                     (QStringList{u"Cancel"_s, u"Nummer, Name oder Abteilung suchen"_s, u"Suchen"_s}));
            QCOMPARE((QStringList{tabs->tabText(0), tabs->tabText(1)}),
                     (QStringList{u"Allgemein"_s, u"Diagnostics"_s}));
            QCOMPARE((QStringList{stored->itemText(0), captions->itemText(0), captions->itemText(1)}),
                     (QStringList{u"Demonstration mode"_s, u"Montag"_s, u"Nur am Wochenende"_s}));
            QCOMPARE((QStringList{tree->headerItem()->text(0), tree->headerItem()->text(1),
                                  tree->topLevelItem(0)->text(0)}),
                     (QStringList{u"Name"_s, u"Ziel"_s, u"Cancel"_s}));
            QCOMPARE((QStringList{grid->horizontalHeaderItem(0)->text(), grid->item(0, 0)->text()}),
                     (QStringList{u"Funktion"_s, u"Park"_s}));
            QCOMPARE((QStringList{menu->title(), action->text(), action->toolTip()}),
                     (QStringList{u"E&xtras"_s, u"Fehlerprotokoll..."_s, u"Fehlerprotokoll"_s}));
            QCOMPARE(buttons->button(QDialogButtonBox::Cancel)->text(), u"Abbrechen"_s);
        }
        QCOMPARE(misses.texts(), QStringList{u"Diagnostics"_s});
        // Texts of the layer's own: a key goes with the text, and a German text met again is no miss.
        Translate(u"QS998"_s, u"Diagnostics"_s);
        Translate(u"Darf wählen"_s);
        QCOMPARE(misses.texts(), (QStringList{u"Diagnostics"_s, u"QS998 Diagnostics"_s}));
    }

    // Each compiled catalogue, as lconvert reads it back, holds every message of its source with its
    // German, none unfinished or empty; each translation keeps its placeholders and accelerator, and
    // none is itself an English text translated otherwise (which a second pass would change again).
    void theCompiledCatalogueIsCompleteAndConsistent_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("the tool") << u"quill_de"_s;
        QTest::newRow("the shipped plug-ins' dialogs") << u"plugins_de"_s;
    }
    void theCompiledCatalogueIsCompleteAndConsistent()
    {
        QFETCH(QString, name);
        const QList<CatalogueMessage> source =
            readCatalogueFile(QStringLiteral(QUILL_TS_DIR) + u'/' + name + u".ts"_s);
        QVERIFY(source.size() > 40);
        QProcess lconvert;
        lconvert.start(QStringLiteral(QUILL_LCONVERT),
                       {u"-i"_s, QStringLiteral(QUILL_QM_DIR) + u'/' + name + u".qm"_s, u"-of"_s, u"ts"_s,
                        u"-o"_s, u"-"_s});
        QVERIFY(lconvert.waitForFinished(60000));
        QCOMPARE(lconvert.exitCode(), 0);
        const QList<CatalogueMessage> compiled = readCatalogue(lconvert.readAllStandardOutput());

        QHash<QString, QString> compiledTranslations;
        for (const CatalogueMessage &message : compiled)
            compiledTranslations.insert(message.context + u'|' + message.source + u'|' + message.comment,
                                        message.unfinished ? QString() : message.translation);
        QHash<QString, QString> texts; // English -> German, of the texts found by their English
        for (const CatalogueMessage &message : source) {
            if (message.context == u"QSConfig"_s)
                texts.insert(message.source, message.translation);
        }
        QStringList faults;
        for (const CatalogueMessage &message : source) {
            const QString id = message.context + u'|' + message.source + u'|' + message.comment;
            const QString english =
                message.comment.isEmpty()
                    ? (message.extraComment.isEmpty() ? message.source : message.extraComment)
                    : message.comment;
            if (message.unfinished || message.translation.trimmed().isEmpty())
                faults << u"unfinished: "_s + id;
            else if (compiledTranslations.value(id) != message.translation)
                faults << u"not compiled as written: "_s + id;
            if (placeholders(message.translation) != placeholders(english.section(u" / "_s, 0, 0)))
                faults << u"placeholders: "_s + id;
            if (accelerators(message.translation) != accelerators(message.source))
                faults << u"accelerator: "_s + id;
            if (message.context == u"QSConfig"_s && texts.contains(message.translation) &&
                texts.value(message.translation) != message.translation)
                faults << u"translated twice: "_s + id;
        }
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
        QCOMPARE(compiled.size(), source.size());
    }
};

QTEST_MAIN(TestPlgTranslate)
#include "tst_plgtranslate.moc"
