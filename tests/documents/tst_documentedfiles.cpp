#include "core/documentedfiles.h"

#include <bootlogo/abootlogodata.h>
#include <core/asettings.h>
#include <core/asweepprocessor.h>
#include <core/aveldorandevicefilter.h>
#include <marker/aspectrummarkerlist.h>

#include <QtCore/QSettings>
#include <QtTest/QtTest>
#include <QtXml/QDomDocument>

// Example files of the documents whose readers' tests don't take them from there.

class TestDocumentedFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLogoLayoutIsTheDefault();
    void theSuppressionFileIsRead();
    void theKmlIsWellFormed();
    void theMarkerSetupIsStoredLikeThat();
    void theUsbIdsAreTaken();

private:
    QString fileOf(const char *name, const QByteArray &content);

    QTemporaryDir m_dir;
};

QString TestDocumentedFiles::fileOf(const char *name, const QByteArray &content)
{
    QFile file(m_dir.filePath(QString::fromLatin1(name)));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        return {};
    return file.fileName();
}

void TestDocumentedFiles::theLogoLayoutIsTheDefault()
{
    const QList<QByteArray> files = documentedFiles("Logo layouts");
    QCOMPARE(files.size(), 1);
    const QSettings layout(fileOf("layout.ini", files.first()), QSettings::IniFormat);
    QCoreApplication::setOrganizationName(QStringLiteral("Documents"));
    QCoreApplication::setApplicationName(QStringLiteral("layout"));
    const ABootlogoData logo; // writes its default layout
    const QSettings defaults;
    const auto layoutOf = [](const QSettings &settings) {
        QStringList lines;
        for (const QString &key : settings.childKeys())
            lines += key + '=' + settings.value(key).toString();
        return lines;
    };
    QVERIFY(!layoutOf(layout).isEmpty());
    QCOMPARE(layoutOf(layout), layoutOf(defaults));
}

void TestDocumentedFiles::theSuppressionFileIsRead()
{
    const QList<QByteArray> files = documentedFiles("Peak suppression files");
    QCOMPARE(files.size(), 1);
    ASweepProcessor processor;
    QString errorText;
    QVERIFY2(processor.setPeakSuppression(fileOf("suppression.txt", files.first()), false, &errorText),
             qPrintable(errorText));
}

void TestDocumentedFiles::theKmlIsWellFormed()
{
    const QList<QByteArray> files = documentedFiles("KML documents");
    QCOMPARE(files.size(), 1);
    QDomDocument document;
    QString message;
    QVERIFY2(document.setContent(files.first(), &message), qPrintable(message));
    QCOMPARE(document.documentElement().tagName(), QStringLiteral("Folder"));
}

void TestDocumentedFiles::theMarkerSetupIsStoredLikeThat()
{
    const QList<QByteArray> files = documentedFiles("Setups", "markers.md");
    QCOMPARE(files.size(), 1);
    const QString name = QStringLiteral("FM band");
    QSettings shown(fileOf("shown.ini", files.first()), QSettings::IniFormat);
    ASpectrumMarkerList markers;
    markers.loadSetup(&shown, name);
    QCOMPARE(markers.listcount(), 2);
    QCOMPARE(markers.at(1)->targetFrequency(), AFrequency("100 MHz"));
    QCOMPARE(markers.at(1)->referenceMarker(), markers.at(0));

    const QString copy = m_dir.filePath(QStringLiteral("copy.ini"));
    {
        QSettings settings(copy, QSettings::IniFormat);
        markers.storeSetup(&settings, name);
    }
    QFile file(copy);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), files.first());
}

void TestDocumentedFiles::theUsbIdsAreTaken()
{
    const QList<QByteArray> files = documentedFiles("List what is attached", "devices.md");
    QCOMPARE(files.size(), 2); // the first is a program
    QSettings settings(fileOf("devices.ini", files.last()), QSettings::IniFormat);
    ASettings::setApplicationSettings(&settings);
    QCOMPARE(AVeldoranDeviceFilter::kindsOf(0x1209, 0x0002), unsigned(AVeldoranDeviceFilter::Analyser));
    QCOMPARE(AVeldoranDeviceFilter::kindsOf(0x067b, 0x2303), unsigned(AVeldoranDeviceFilter::GpsLogger));
    ASettings::setApplicationSettings(nullptr);
    QCOMPARE(AVeldoranDeviceFilter::kindsOf(0x067b, 0x2303), 0U);
}

QTEST_GUILESS_MAIN(TestDocumentedFiles)
#include "tst_documentedfiles.moc"
