#include "gallery.h"

#include <core/asettings.h>
#include <core/atranslator.h>
#include <datamanager/adatamanager.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QEventLoop>
#include <QtCore/QLibraryInfo>
#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QTabWidget>

#include <algorithm>
#include <cstring>

namespace {

// Texts and numbers in the language of the settings.
void installLanguage(const QString &language)
{
    auto *texts = new ATranslator(qApp);
    if (texts->setLanguage(language))
        QApplication::installTranslator(texts);
    auto *textsOfQt = new QTranslator(qApp); // of editors' menus, and of --help
    if (textsOfQt->load(QLocale(language), QStringLiteral("qtbase"), QStringLiteral("_"),
                        QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(textsOfQt);

    QLocale numbers; // of the system, with what its user changed in it
    if (numbers.language() != QLocale(language).language())
        numbers = QLocale(language);
    numbers.setNumberOptions(QLocale::OmitGroupSeparator); // "2.400 MHz" means two things
    QLocale::setDefault(numbers);
}

void fillWindow(QTabWidget *window, const QString &dataDir)
{
    window->addTab(gallery::makeChannelPlanTab(dataDir), Gallery::tr("Channels"));
    window->addTab(gallery::makeLimitsTab(dataDir), Gallery::tr("Limits"));
    window->addTab(gallery::makeCalibrationsTab(dataDir), Gallery::tr("Calibration"));
    window->addTab(gallery::makeMarkersTab(), Gallery::tr("Markers"));
    window->addTab(gallery::makeLiveDisplayTab(), Gallery::tr("Live"));
    window->addTab(gallery::makeVariablesTab(), Gallery::tr("Settings"));
    window->addTab(gallery::makeBookmarksTab(), Gallery::tr("Bookmarks"));
    window->addTab(gallery::makeTriggersTab(), Gallery::tr("Triggers"));
    window->addTab(gallery::makeDevicesTab(), Gallery::tr("Devices"));

    // Cells that look like editors want the height of one.
    const QList<QTableView *> tables = window->findChildren<QTableView *>();
    for (QTableView *table : tables)
        table->verticalHeader()->setDefaultSectionSize(QSpinBox().sizeHint().height());

    // For sizeHint().
    const QList<QAbstractItemView *> views = window->findChildren<QAbstractItemView *>();
    for (QAbstractItemView *view : views)
        view->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
}

// Wide enough for its tables, but for the comments of the channels, which are longer than a screen.
QSize sizeOf(const QTabWidget &window)
{
    constexpr QSize kLeast(1000, 460);
    constexpr int kMost = 1366; // of a small screen
    return {qBound(kLeast.width(), window.sizeHint().width(), kMost), kLeast.height()};
}

// For the layout, and for what comes from the event loop, as the attached devices do.
void settle()
{
    constexpr int kSettleMs = 150;
    QEventLoop loop;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    timer.start(kSettleMs);
    loop.exec();
}

// All tabs, line by line.
QImage pictureOf(QTabWidget *window)
{
    constexpr int kColumns = 2;
    const int lines = (window->count() + kColumns - 1) / kColumns;
    QImage picture;
    for (int tab = 0; tab < window->count(); ++tab) {
        window->setCurrentIndex(tab);
        settle();
        const QImage part = window->grab().toImage();
        if (picture.isNull()) {
            picture = QImage(part.width() * kColumns, part.height() * lines, QImage::Format_RGB32);
            picture.setDevicePixelRatio(part.devicePixelRatio());
            picture.fill(window->palette().color(QPalette::Window));
        }
        const QPoint place(tab % kColumns * window->width(), tab / kColumns * window->height());
        QPainter(&picture).drawImage(place, part);
    }
    return picture;
}

bool wantsScreenshot(int argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strncmp(argv[i], "--screenshot", std::strlen("--screenshot")) == 0)
            return true;
    }
    return false;
}

} // namespace

int main(int argc, char **argv)
{
    if (wantsScreenshot(argc, argv))
        qputenv("QT_QPA_PLATFORM", "offscreen"); // a picture needs no display
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("aveldoran-gallery"));
    installLanguage(ASettings::language());

    QCommandLineParser parser;
    parser.setApplicationDescription(Gallery::tr("Every model and delegate of the library, with live data."));
    parser.addHelpOption();
    const QCommandLineOption data(QStringLiteral("data"), Gallery::tr("The example data."), QStringLiteral("DIR"),
                                  QStringLiteral(GALLERY_DATA_DIR));
    const QCommandLineOption screenshot(
        QStringLiteral("screenshot"), Gallery::tr("Draw all tabs into a picture and end."), QStringLiteral("FILE.png"));
    parser.addOptions({data, screenshot});
    parser.process(application);

    if (!parser.positionalArguments().isEmpty()) {
        gallery::tellError(
            Gallery::tr("%1: no such argument is expected").arg(parser.positionalArguments().constFirst()));
        return 2;
    }
    if (!QDir(parser.value(data)).exists(QStringLiteral("profiles"))) {
        gallery::tellError(
            Gallery::tr("%1: no example data, expected a directory with \"profiles\"").arg(parser.value(data)));
        return 1;
    }
    QObject::connect(ADataManager::instance(), &ADataManager::error, &gallery::tellError);

    int status = 0;
    {
        QTabWidget window;
        window.setWindowTitle(Gallery::tr("Gallery"));
        fillWindow(&window, parser.value(data));
        window.resize(sizeOf(window));
        window.show();
        if (!parser.isSet(screenshot)) {
            status = QApplication::exec();
        } else if (!pictureOf(&window).save(parser.value(screenshot), "PNG")) {
            gallery::tellError(Gallery::tr("%1: can't be written").arg(parser.value(screenshot)));
        }
    }
    // The registry leaves its profiles alone when it goes, and clearing them leaves the objects to the event loop.
    ADataManager::instance()->clearProfiles();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    delete ADataManager::instance();
    return gallery::errorCount > 0 ? std::max(status, 1) : status;
}
