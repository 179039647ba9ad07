#include "core/regularfile.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <sys/stat.h>
#include <unistd.h>

class TestRegularFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void openingFiles();
    void openingWhatIsNoFile_data();
    void openingWhatIsNoFile();

private:
    QString path(const QString &name) const { return m_directory.filePath(name); }
    void write(const QString &name) const;

    QTemporaryDir m_directory;
};

void TestRegularFile::initTestCase()
{
    QVERIFY(m_directory.isValid());
    write("file");
    QCOMPARE(::symlink("file", QFile::encodeName(path("link")).constData()), 0);
    QCOMPARE(::symlink("nothing", QFile::encodeName(path("dangling")).constData()), 0);
    QCOMPARE(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
}

void TestRegularFile::write(const QString &name) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("content") == 7);
}

void TestRegularFile::openingFiles()
{
    for (const char *name : {"file", "link"}) {
        QFile file(path(name));
        QString reason = "unchanged";
        QVERIFY(openRegularFile(&file, &reason));
        QCOMPARE(reason, QString("unchanged"));
        QCOMPARE(file.openMode(), QIODevice::ReadOnly);
        QCOMPARE(file.readAll(), QByteArray("content"));
    }
}

void TestRegularFile::openingWhatIsNoFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");

    QTest::newRow("missing") << path("nothing") << "No such file or directory";
    QTest::newRow("dangling link") << path("dangling") << "No such file or directory";
    QTest::newRow("pipe") << path("pipe") << "Not a regular file";
    QTest::newRow("device") << "/dev/zero"
                            << "Not a regular file";
    QTest::newRow("directory") << m_directory.path() << "file to open is a directory";
}

void TestRegularFile::openingWhatIsNoFile()
{
    QFETCH(QString, name);
    QFile file(name);
    QString reason;
    QVERIFY(!openRegularFile(&file, &reason));
    QTEST(reason, "reason");
    QVERIFY(!file.isOpen());
}

QTEST_GUILESS_MAIN(TestRegularFile)
#include "tst_regularfile.moc"
