#include "core/alimit.h"
#include "core/atranslator.h"
#include "core/atriggeraction.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>
#include <QtXml/QDomDocument>

#include <algorithm>

namespace {

QStringList placeholders(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("%L?[0-9]+|%n"));
    QStringList found;
    for (auto matches = pattern.globalMatch(text); matches.hasNext();)
        found += matches.next().captured();
    std::sort(found.begin(), found.end());
    return found;
}

QString missingFileText()
{
    QString text;
    QList<const ALimit *> limits;
    ALimit::readAll(QStringLiteral("/nowhere/%2 at all.xml"), limits, &text);
    return text;
}

} // namespace

class TestATranslator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void textsChangeWithTheLanguage();
    void languagesAreFound_data();
    void languagesAreFound();
    void otherLanguagesKeepTheTexts_data();
    void otherLanguagesKeepTheTexts();
    void everyLanguageIsListed();
    void everyTextIsTranslatedWithItsPlaceholders_data();
    void everyTextIsTranslatedWithItsPlaceholders();

private:
    ATranslator m_translator;
};

void TestATranslator::cleanup()
{
    QCoreApplication::removeTranslator(&m_translator);
}

void TestATranslator::textsChangeWithTheLanguage()
{
    QCOMPARE(ATriggerAction::actionNames().at(1), QStringLiteral("Show Message"));
    QCOMPARE(missingFileText(), QStringLiteral("File '/nowhere/%2 at all.xml' does not exist"));

    QVERIFY(m_translator.setLanguage(QStringLiteral("de")));
    QVERIFY(QCoreApplication::installTranslator(&m_translator));
    QCOMPARE(ATriggerAction::actionNames().at(1), QStringLiteral("Meldung zeigen"));
    QCOMPARE(missingFileText(), QStringLiteral("Die Datei '/nowhere/%2 at all.xml' existiert nicht"));

    QVERIFY(!m_translator.setLanguage(QStringLiteral("en")));
    QCOMPARE(ATriggerAction::actionNames().at(1), QStringLiteral("Show Message"));
}

void TestATranslator::languagesAreFound_data()
{
    QTest::addColumn<QString>("language");
    for (const char *language : {"de", "de_DE", "de_AT", "de_CH"})
        QTest::newRow(language) << QString::fromLatin1(language);
}

void TestATranslator::languagesAreFound()
{
    QFETCH(QString, language);
    QVERIFY(m_translator.setLanguage(language));
    QCoreApplication::installTranslator(&m_translator);
    QCOMPARE(ATriggerAction::actionNames().at(0), QStringLiteral("Keine"));
}

void TestATranslator::otherLanguagesKeepTheTexts_data()
{
    QTest::addColumn<QString>("language");
    for (const char *language : {"", "C", "en", "en_GB", "tlh", "../de", "not a language"})
        QTest::newRow(language) << QString::fromLatin1(language);
}

void TestATranslator::otherLanguagesKeepTheTexts()
{
    QFETCH(QString, language);
    QVERIFY(!m_translator.setLanguage(language));
    QVERIFY(m_translator.isEmpty());
    QCoreApplication::installTranslator(&m_translator);
    QCOMPARE(ATriggerAction::actionNames().at(0), QStringLiteral("None"));
}

void TestATranslator::everyLanguageIsListed()
{
    const QDir directory(QStringLiteral(AVELDORAN_SOURCE_DIR "/translations"));
    QStringList sources = directory.entryList({QStringLiteral("*.ts")}, QDir::Files, QDir::Name);
    for (QString &source : sources)
        source = source.mid(int(qstrlen("aveldoran_"))).section(QLatin1Char('.'), 0, 0);
    QVERIFY(!sources.isEmpty());
    QCOMPARE(ATranslator::languages(), sources);
}

void TestATranslator::everyTextIsTranslatedWithItsPlaceholders_data()
{
    QTest::addColumn<QString>("language");
    for (const QString &language : ATranslator::languages())
        QTest::newRow(qPrintable(language)) << language;
}

// What lupdate finds in the sources is all in the file, and nothing else.
void TestATranslator::everyTextIsTranslatedWithItsPlaceholders()
{
    QFETCH(QString, language);
    const QString name = QStringLiteral("aveldoran_%1.ts").arg(language);
    const QString kept = QStringLiteral(AVELDORAN_SOURCE_DIR "/translations/") + name;
    const QTemporaryDir directory;
    const QString updated = directory.filePath(name);
    QVERIFY(QFile::copy(kept, updated));

    QStringList command = QStringLiteral(AVELDORAN_LUPDATE).split(QLatin1Char(' '));
    QProcess lupdate;
    lupdate.setWorkingDirectory(QStringLiteral(AVELDORAN_SOURCE_DIR));
    lupdate.start(command.takeFirst(), command + QStringList{updated});
    QVERIFY(lupdate.waitForFinished(120000));
    QCOMPARE(lupdate.exitCode(), 0);

    QFile file(updated);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QDomDocument document;
    QVERIFY(document.setContent(&file));
    const QDomNodeList messages = document.elementsByTagName(QStringLiteral("message"));
    QVERIFY(messages.size() > 50);
    for (int i = 0; i < messages.size(); ++i) {
        const QDomElement message = messages.at(i).toElement();
        const QString source = message.firstChildElement(QStringLiteral("source")).text();
        const QDomElement translation = message.firstChildElement(QStringLiteral("translation"));
        QVERIFY2(!translation.hasAttribute(QStringLiteral("type")), qPrintable("Not translated: " + source));
        QVERIFY2(!translation.text().isEmpty(), qPrintable("Not translated: " + source));
        QCOMPARE(placeholders(translation.text()), placeholders(source));
    }
    QFile keptFile(kept);
    QVERIFY(keptFile.open(QIODevice::ReadOnly));
    QDomDocument keptDocument;
    QVERIFY(keptDocument.setContent(&keptFile));
    QCOMPARE(keptDocument.elementsByTagName(QStringLiteral("message")).size(), messages.size());
}

QTEST_GUILESS_MAIN(TestATranslator)
#include "tst_atranslator.moc"
