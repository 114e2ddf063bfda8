// SPDX-License-Identifier: GPL-3.0-or-later
// Texts in English with their placeholders, plurals, and translation through a real translator plug-in.
#include "errorlog.h"
#include "isolation.h"
#include "pluginhost.h"
#include "translate.h"

#include <QFile>
#include <QTest>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {
// A translator whose every call fails, as a broken plug-in would.
class FailingTranslator : public QObject, public ITranslator
{
    Q_OBJECT
    Q_INTERFACES(ITranslator)

public:
    bool TranslateLoad(const QString &) override { return true; }
    QString Translate(const QString &, const QString &, const QString &, const QString &) override
    {
        throw std::runtime_error("Translator failure");
    }
    void TranslateWindow(QObject *) override {}
};

QString readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}
} // namespace

class TestTranslate : public QObject
{
    Q_OBJECT

private:
    TestIsolation m_scratch;
    QString m_log;

    static void usePluginPath(const QString &path)
    {
        qputenv("QUILL_PLUGIN_PATH", path.toUtf8());
        PluginHost::forgetScan();
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
        m_log = m_scratch.logPath();
    }

    void init()
    {
        setTranslator(nullptr);
        QFile::remove(m_log);
    }

    void withoutTranslatorTextsStayEnglishWithPlaceholdersFilled()
    {
        QCOMPARE(Translate(u""_s, u"<1> configuration"_s, u"QuillServer"_s), u"QuillServer configuration"_s);
        QCOMPARE(Translate(u"Extension"_s), u"Extension"_s);
        QCOMPARE(Translate(u"QS001"_s, u"Click to save changes."_s), u"Click to save changes."_s);
        // Every occurrence, "<1>" first; a "<2>" brought in by the first parameter is filled too.
        QCOMPARE(Translate(QString(), u"<1>, <2> and <1>"_s, u"A"_s, u"B"_s), u"A, B and A"_s);
        QCOMPARE(Translate(QString(), u"Delete <1>?"_s, u"<2> of Sales"_s, u"Book"_s),
                 u"Delete Book of Sales?"_s);
        // Placeholders without parameters are emptied; other brackets are left alone.
        QCOMPARE(Translate(u"Call <1> now <3>"_s), u"Call  now <3>"_s);
        // Text of blanks only is empty text.
        QCOMPARE(Translate(u"    "_s), QString());
        QCOMPARE(Translate(u"QS002"_s, u" \t "_s, u"x"_s), u" \t "_s);
        QCOMPARE(Translate(QString()), QString());
    }

    void pluralsFollowTheEnglishRules()
    {
        QCOMPARE(TranslatePlural(1, u"day"_s), u"1 day"_s);
        QCOMPARE(TranslatePlural(2, u"day"_s), u"2 days"_s);
        QCOMPARE(TranslatePlural(2, u"company"_s), u"2 companies"_s);
        QCOMPARE(TranslatePlural(2, u"Search"_s), u"2 Searches"_s);
        QCOMPARE(TranslatePlural(3, u"extension"_s), u"3 extensions"_s);
        QCOMPARE(TranslatePlural(0, u"extension"_s), u"0 extensions"_s);
        QCOMPARE(TranslatePlural(2, u"entry"_s), u"2 entries"_s);
        QCOMPARE(TranslatePlural(2, u"key"_s), u"2 keys"_s);
        QCOMPARE(TranslatePlural(4, u"switch"_s), u"4 switches"_s);
        QCOMPARE(TranslatePlural(2, u"DAY"_s), u"2 DAYs"_s);
        QCOMPARE(TranslatePlural(2, u"MONKEY"_s), u"2 MONKEYs"_s);
        // No other English rule: the translator may correct these.
        QCOMPARE(TranslatePlural(2, u"box"_s), u"2 boxs"_s);
        QCOMPARE(TranslatePlural(2, u"bus"_s), u"2 buss"_s);
        // One-letter words and negative counts take the rules like any other.
        QCOMPARE(TranslatePlural(2, u"y"_s), u"2 ies"_s);
        QCOMPARE(TranslatePlural(-1, u"h"_s), u"-1 hs"_s);
    }

    void theTranslatorPluginTranslatesOnceLoadedForQSConfig()
    {
        usePluginPath(QStringLiteral(QUILL_TEST_PLUGIN_DIR));
        QVERIFY(TranslateLoad(u"QSConfig"_s));
        QVERIFY(translator());

        QCOMPARE(Translate(u"Extension"_s), u"Nebenstelle"_s);
        QCOMPARE(Translate(u""_s, u"<1> configuration"_s, u"QuillServer"_s),
                 u"Konfiguration von QuillServer"_s);
        QCOMPARE(Translate(QString(), u"Delete <1> from <2>?"_s, u"201"_s, u"Sales"_s),
                 u"201 aus Sales loeschen?"_s);
        QCOMPARE(Translate(u"QS001"_s, u"Click to save changes."_s), u"Hilfetext eins"_s);
        // Texts the translator does not know come back in English, placeholders filled.
        QCOMPARE(Translate(QString(), u"Hello <1>"_s, u"admin"_s), u"Hello admin"_s);
        // Blank text never reaches the translator.
        QCOMPARE(Translate(u"   "_s), QString());
        QCOMPARE(TranslatePlural(1, u"day"_s), u"1 Tag"_s);
        QCOMPARE(TranslatePlural(5, u"day"_s), u"5 Tage"_s);
        QCOMPARE(TranslatePlural(3, u"extension"_s), u"3 Nebenstellen"_s);
        QVERIFY(!QFile::exists(m_log));
    }

    void withoutAUsableTranslatorTextsStayEnglishWithoutAWord()
    {
        // A translator that has no translation for this program is dropped.
        usePluginPath(QStringLiteral(QUILL_TEST_PLUGIN_DIR));
        QVERIFY(TranslateLoad(u"QSConfig"_s));
        QVERIFY(!TranslateLoad(u"QSPhone"_s));
        QVERIFY(!translator());
        QCOMPARE(Translate(u"Extension"_s), u"Extension"_s);
        QCOMPARE(TranslatePlural(2, u"day"_s), u"2 days"_s);

        // No translator to be found.
        usePluginPath(m_scratch.filePath(u"no-plugins-here"_s));
        QVERIFY(!TranslateLoad(u"QSConfig"_s));
        QVERIFY(!translator());
        QCOMPARE(Translate(u""_s, u"<1> configuration"_s, u"QuillServer"_s), u"QuillServer configuration"_s);
        QVERIFY(!QFile::exists(m_log));

        // A translator that goes away.
        auto *failing = new FailingTranslator;
        setTranslator(failing);
        delete failing;
        QVERIFY(!translator());
        QCOMPARE(Translate(u"Extension"_s), u"Extension"_s);
    }

    void aFailingTranslatorIsLoggedAndTheTextStaysEnglish()
    {
        FailingTranslator failing;
        setTranslator(&failing);
        QCOMPARE(translator(), &failing);
        QCOMPARE(Translate(QString(), u"<1> configuration"_s, u"QuillServer"_s),
                 u"QuillServer configuration"_s);
        QCOMPARE(TranslatePlural(2, u"company"_s), u"2 companies"_s);
        const QString log = readFile(m_log);
        QCOMPARE(log.count(u"Translator failure  @  Translate\n"_s), 2);

        // An object that is no translator is not used as one.
        QObject notATranslator;
        setTranslator(&notATranslator);
        QVERIFY(!translator());
    }
};

QTEST_GUILESS_MAIN(TestTranslate)
#include "tst_translate.moc"
