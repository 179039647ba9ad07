#include "desktop/desktopsettings.h"

#include <desktop/adesktopservices.h>

#include <QtCore/QFileInfo>
#include <QtCore/QScopeGuard>
#include <QtCore/QTimer>
#include <QtGui/QKeyEvent>
#include <QtTest/QtTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>

#include <memory>

namespace {

constexpr char kXml[] = "XML files (*.xml *.lim);;All files (*)";

// What a user saw of a dialog.
struct Seen
{
    int dialogs = 0;
    QString directory;
    QString name; // as proposed
    QString caption;
    QStringList filters;
    QWidget *parent = nullptr;
    bool opens = false;
    QString chosenFilter; // at first
    int questions = 0;    // such as whether to replace a file
};

// A user in front of a dialog, who sees how it begins and then types a name, or cancels it if there is none to type.
class User : public QObject
{
public:
    explicit User(const QString &typed, const QString &filter = QString())
        : m_typed(typed)
        , m_filter(filter)
    {
        connect(&m_timer, &QTimer::timeout, this, &User::act);
        m_timer.start(10);
    }

    Seen seen;

private:
    void act()
    {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!dialog) {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            QAbstractButton *yes = box ? box->button(QMessageBox::Yes) : nullptr; // to replace a file
            seen.questions += yes ? 1 : 0;
            if (box)
                (yes ? yes : box->button(QMessageBox::Ok))->click();
            return;
        }
        if (++m_attempts > 1) { // it was not content with the name
            if (m_attempts > 100)
                dialog->reject();
            return;
        }
        auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        ++seen.dialogs;
        seen.directory = dialog->directory().absolutePath();
        seen.name = name->text();
        seen.caption = dialog->windowTitle();
        seen.filters = dialog->nameFilters();
        seen.chosenFilter = dialog->findChild<QComboBox *>(QStringLiteral("fileTypeCombo"))->currentText();
        seen.parent = dialog->parentWidget();
        seen.opens = dialog->acceptMode() == QFileDialog::AcceptOpen;
        if (m_typed.isEmpty()) {
            QTest::keyClick(dialog, Qt::Key_Escape);
            return;
        }
        if (!m_filter.isEmpty()) {
            auto *filters = dialog->findChild<QComboBox *>(QStringLiteral("fileTypeCombo"));
            filters->setCurrentText(m_filter);
            Q_EMIT filters->activated(filters->currentIndex());
        }
        name->setFocus();
        name->selectAll();
        for (const QChar c : qAsConst(m_typed)) { // QTest's own clicks know Latin letters alone
            QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(c));
            QApplication::sendEvent(name, &press);
        }
        // From outside this slot, which isn't called again as long as it runs: the dialog may ask a question.
        QTimer::singleShot(0, name, [name] { QTest::keyClick(name, Qt::Key_Return); });
    }

    QString m_typed;
    QString m_filter;
    QTimer m_timer;
    int m_attempts = 0;
};

} // namespace

class TestADesktopServicesDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aChosenFileIsRememberedByItsOwnExtension_data();
    void aChosenFileIsRememberedByItsOwnExtension();
    void theDirectoryIsFoundAgain();
    void anotherExtensionLeavesTheDirectoryOfTheFilter();
    void aCancelledDialogRemembersNothing();
    void whereADialogBegins_data();
    void whereADialogBegins();
    void theDialogShowsWhatItIsGiven_data();
    void theDialogShowsWhatItIsGiven();
    void theChosenFilterIsTold();
    void aFilterIsChosenBeforehand_data();
    void aFilterIsChosenBeforehand();
    void replacingAFileIsAsked();
    void aNameGetsNoExtension();
    void onlyExistingFilesAreOpened();
    void oddNamesAreChosen_data();
    void oddNamesAreChosen();
    void hugeTextsAreShown_data();
    void hugeTextsAreShown();

private:
    QString directoryText(const QString &text) const; // "D" stands for the test's own directory

    std::unique_ptr<DesktopSettings> m_settings;
    QString m_workingDirectory;
};

void TestADesktopServicesDialogs::init()
{
    m_settings = std::make_unique<DesktopSettings>();
    m_workingDirectory = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_settings->makeDirectory("work")));
}

void TestADesktopServicesDialogs::cleanup()
{
    QVERIFY(QDir::setCurrent(m_workingDirectory));
}

void TestADesktopServicesDialogs::aChosenFileIsRememberedByItsOwnExtension_data()
{
    QTest::addColumn<bool>("open");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("extension");
    for (bool open : {false, true}) {
        const char *does = open ? "open" : "save";
        QTest::addRow("%s", does) << open << "a.xml"
                                  << "XML";
        QTest::addRow("%s capitals", does) << open << "A.Xml"
                                           << "XML";
        QTest::addRow("%s another extension than the filter's", does) << open << "a.csv"
                                                                      << "CSV";
        QTest::addRow("%s two dots", does) << open << "a.tar.gz"
                                           << "GZ";
        QTest::addRow("%s no extension", does) << open << "Makefile"
                                               << "";
        QTest::addRow("%s a dot at the end", does) << open << "a."
                                                   << "";
        QTest::addRow("%s beyond Latin", does)
            << open << QString::fromUtf8("\xe2\x82\xac.\xc3\xa4") << QString::fromUtf8("\xc3\x84");
    }
}

void TestADesktopServicesDialogs::aChosenFileIsRememberedByItsOwnExtension()
{
    QFETCH(bool, open);
    QFETCH(QString, name);
    QFETCH(QString, extension);
    const QString directory = m_settings->makeDirectory("data");
    if (open)
        m_settings->makeFile("data/" + name);
    const User user(directory + '/' + name);
    const QString result =
        ADesktopServices::getFilename(open, nullptr, "Choose", QString(), "XML files (*.xml);;All (*)", nullptr);
    QCOMPARE(result, directory + '/' + name);
    QCOMPARE(m_settings->remembered(), QStringList(extension + '=' + directory));
    QCOMPARE(user.seen.dialogs, 1);
}

void TestADesktopServicesDialogs::theDirectoryIsFoundAgain()
{
    const QString directory = m_settings->makeDirectory("data");
    const QString file = m_settings->makeFile("data/a.xml");
    {
        const User user(file);
        QCOMPARE(ADesktopServices::getFilename(true, nullptr, {}, QString(), kXml, nullptr), file);
    }
    const User next(QStringLiteral("b.xml")); // a name alone is one in the dialog's directory
    QCOMPARE(ADesktopServices::getFilename(false, nullptr, {}, QString(), kXml, nullptr), directory + "/b.xml");
    QCOMPARE(next.seen.directory, directory);
}

void TestADesktopServicesDialogs::anotherExtensionLeavesTheDirectoryOfTheFilter()
{
    const QString xml = m_settings->makeDirectory("xml");
    const QString csv = m_settings->makeDirectory("csv");
    m_settings->remember("XML", xml);
    {
        const User user(csv + "/a.csv");
        QCOMPARE(ADesktopServices::getFilename(false, nullptr, {}, QString(), kXml, nullptr), csv + "/a.csv");
    }
    QCOMPARE(m_settings->remembered(), (QStringList{"CSV=" + csv, "XML=" + xml}));
    const User next{QString()};
    ADesktopServices::getFilename(false, nullptr, {}, QString(), kXml, nullptr);
    QCOMPARE(next.seen.directory, xml);
}

void TestADesktopServicesDialogs::aCancelledDialogRemembersNothing()
{
    const QString directory = m_settings->makeDirectory("data");
    for (bool open : {false, true}) {
        const User user{QString()};
        const QString result = ADesktopServices::getFilename(open, nullptr, {}, directory + "/a.xml", kXml, nullptr);
        QCOMPARE(user.seen.dialogs, 1);
        QVERIFY(result.isEmpty());
        QCOMPARE(m_settings->remembered(), QStringList());
    }
}

void TestADesktopServicesDialogs::whereADialogBegins_data()
{
    QTest::addColumn<QString>("remembered"); // for XML; empty: nothing. D is the test's directory, D/work the current
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *title, const char *remembered, const char *path, const char *directory,
                        const char *name) {
        QTest::newRow(title) << QString(remembered) << QString(path) << QString(directory) << QString(name);
    };
    row("a name with a dot", "D/mine", "a.xml", "D/mine", "a.xml");
    row("a name with a dot, nothing remembered", "", "a.xml", "D/work", "a.xml");
    row("a name that exists", "D/mine", "exists.xml", "D/mine", "exists.xml");
    row("a name without a dot is a directory", "D/mine", "plan", "D/mine", "");
    row("a name without a dot that exists is a file", "D/mine", "exists", "D/mine", "exists");
    row("a directory by its name", "D/mine", "sub", "D/mine", "");
    row("a directory by its name, nothing remembered", "", "sub", "D/work/sub", "");
    row("a directory with a dot", "", "sub.d", "D/work/sub.d", "");
    row("the current directory", "", ".", "D/work", "");
    row("the directory above", "", "..", "D", "");
    row("nothing", "D/mine", "", "D/mine", "");
    row("a path with a name", "D/mine", "D/other/a.xml", "D/other", "a.xml");
    row("a path with a name without a dot", "D/mine", "D/other/plan", "D/other", "plan");
    row("a directory with its path", "D/mine", "D/other", "D/other", "");
    row("a directory with a slash", "D/mine", "D/other/", "D/other", "");
    row("a relative path", "D/mine", "sub/a.xml", "D/work/sub", "a.xml");
    row("a relative path above", "D/mine", "../other/a.xml", "D/other", "a.xml");
    row("a name with a line break", "D/mine", "a\nb.xml", "D/mine", "a\nb.xml");
    row("a path with a line break", "D/mine", "D/line\nbreak/a.xml", "D/line\nbreak", "a.xml");
    row("a link to itself is a directory yet to be made", "D/mine", "loop", "D/mine", "");
    row("a link to itself with a dot", "D/mine", "loop.xml", "D/mine", "loop.xml");
    row("a path of links in a circle", "D/mine", "D/circle/a.xml", "D/work", "a.xml"); // what isn't there, Qt replaces
    row("a dot file", "D/mine", ".xml", "D/mine", ".xml");
    row("a remembered directory that is gone", "D/gone", "a.xml", "D/work", "a.xml");
}

QString TestADesktopServicesDialogs::directoryText(const QString &text) const
{
    return text.startsWith("D") ? m_settings->path(QString()).chopped(1) + text.mid(1) : text;
}

void TestADesktopServicesDialogs::whereADialogBegins()
{
    QFETCH(QString, remembered);
    QFETCH(QString, path);
    QFETCH(QString, directory);
    for (const char *name : {"mine", "other", "work/sub", "work/sub.d", "line\nbreak"})
        m_settings->makeDirectory(name);
    const QByteArray home = qgetenv("HOME");
    const auto restoreHome = qScopeGuard([&home] { qputenv("HOME", home); });
    qputenv("HOME", m_settings->makeDirectory("home").toUtf8());
    m_settings->makeDirectory("home/Documents"); // where a dialog would begin without a directory
    m_settings->makeFile("work/exists.xml");
    m_settings->makeFile("work/exists");
    QVERIFY(QFile::link("loop", m_settings->path("work/loop")));
    QVERIFY(QFile::link("loop.xml", m_settings->path("work/loop.xml")));
    QVERIFY(QFile::link("round", m_settings->path("circle")));
    QVERIFY(QFile::link("circle", m_settings->path("round")));
    if (!remembered.isEmpty())
        m_settings->remember("XML", directoryText(remembered));
    const QStringList before = m_settings->remembered();
    for (bool open : {false, true}) {
        const User user{QString()};
        const QString result =
            ADesktopServices::getFilename(open, nullptr, "Choose", directoryText(path), kXml, nullptr);
        QVERIFY(result.isEmpty());
        QCOMPARE(user.seen.dialogs, 1);
        QCOMPARE(user.seen.directory, directoryText(directory));
        QTEST(user.seen.name, "name");
    }
    QCOMPARE(m_settings->remembered(), before);
}

void TestADesktopServicesDialogs::theDialogShowsWhatItIsGiven_data()
{
    QTest::addColumn<bool>("open");
    QTest::newRow("save") << false;
    QTest::newRow("open") << true;
}

void TestADesktopServicesDialogs::theDialogShowsWhatItIsGiven()
{
    QFETCH(bool, open);
    QWidget window;
    window.show();
    const User user{QString()};
    ADesktopServices::getFilename(open, &window, "Where to?", QString(), kXml, nullptr);
    QCOMPARE(user.seen.opens, open);
    QCOMPARE(user.seen.parent, &window);
    QCOMPARE(user.seen.caption, QStringLiteral("Where to?"));
    QCOMPARE(user.seen.filters, (QStringList{"XML files (*.xml *.lim)", "All files (*)"}));
}

void TestADesktopServicesDialogs::theChosenFilterIsTold()
{
    const QString file = m_settings->makeDirectory("data") + "/a.txt";
    QString selected;
    const User user(file, "All files (*)");
    QCOMPARE(ADesktopServices::getFilename(false, nullptr, {}, QString(), kXml, &selected), file);
    QCOMPARE(selected, QStringLiteral("All files (*)"));
}

void TestADesktopServicesDialogs::aFilterIsChosenBeforehand_data()
{
    theDialogShowsWhatItIsGiven_data();
}

void TestADesktopServicesDialogs::aFilterIsChosenBeforehand()
{
    QFETCH(bool, open);
    const QString file = m_settings->makeDirectory("data") + "/a.txt";
    if (open)
        m_settings->makeFile("data/a.txt");
    QString selected = QStringLiteral("All files (*)");
    const User user(file);
    QCOMPARE(ADesktopServices::getFilename(open, nullptr, {}, QString(), kXml, &selected), file);
    QCOMPARE(user.seen.chosenFilter, QStringLiteral("All files (*)"));
    QCOMPARE(selected, QStringLiteral("All files (*)"));
}

void TestADesktopServicesDialogs::replacingAFileIsAsked()
{
    const QString file = (m_settings->makeDirectory("data"), m_settings->makeFile("data/a.xml"));
    const User user(file);
    QCOMPARE(ADesktopServices::getFilename(false, nullptr, {}, QString(), kXml, nullptr), file);
    QCOMPARE(user.seen.questions, 1);
}

void TestADesktopServicesDialogs::aNameGetsNoExtension()
{
    const QString directory = m_settings->makeDirectory("data");
    const User user(directory + "/plan");
    QCOMPARE(ADesktopServices::getFilename(false, nullptr, {}, QString(), "XML (*.xml)", nullptr), directory + "/plan");
    QCOMPARE(m_settings->remembered(), QStringList('=' + directory));
}

void TestADesktopServicesDialogs::onlyExistingFilesAreOpened()
{
    const User user(m_settings->makeDirectory("data") + "/missing.xml");
    QVERIFY(ADesktopServices::getFilename(true, nullptr, {}, QString(), kXml, nullptr).isEmpty());
    QCOMPARE(m_settings->remembered(), QStringList());
}

void TestADesktopServicesDialogs::oddNamesAreChosen_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("remembered"); // without the directory
    QTest::newRow("blanks") << " a b .x ml"
                            << "X ML";
    QTest::newRow("an equals sign") << "a.x=y"
                                    << "X=Y";
    QTest::newRow("a percent sign") << "a.%2f"
                                    << "%2F";
    QTest::newRow("a bracket") << "a.(x)"
                               << "(X)";
    QTest::newRow("a long extension") << "a." + QString(240, 'x') << QString(240, 'X');
}

void TestADesktopServicesDialogs::oddNamesAreChosen()
{
    QFETCH(QString, name);
    QFETCH(QString, remembered);
    const QString directory = m_settings->makeDirectory("data");
    const User user(directory + '/' + name);
    QCOMPARE(ADesktopServices::getFilename(false, nullptr, {}, QString(), kXml, nullptr), directory + '/' + name);
    QCOMPARE(m_settings->remembered(), QStringList(remembered + '=' + directory));
}

void TestADesktopServicesDialogs::hugeTextsAreShown_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("filter");
    constexpr int kMillion = 1000000;
    QTest::newRow("a filter without brackets") << "a.xml" << QString(kMillion, 'x');
    QTest::newRow("nested brackets") << "a.xml" << QString(kMillion / 2, '(') + QString(kMillion / 2, ')');
    QTest::newRow("a long pattern") << "a.xml"
                                    << "XML (*." + QString(kMillion, 'x') + ')';
    QTest::newRow("a long name") << QString(kMillion, 'x') + ".xml" << kXml;
    QTest::newRow("a long path") << "/" + QString("x/").repeated(kMillion / 2) + "a.xml" << kXml;
}

void TestADesktopServicesDialogs::hugeTextsAreShown()
{
    QFETCH(QString, path);
    QFETCH(QString, filter);
    const User user{QString()};
    QVERIFY(ADesktopServices::getFilename(false, nullptr, {}, path, filter, nullptr).isEmpty());
    QCOMPARE(user.seen.dialogs, 1);
    QCOMPARE(m_settings->remembered(), QStringList());
}

QTEST_MAIN(TestADesktopServicesDialogs)
#include "tst_adesktopservices_dialogs.moc"
