#include "gallery.h"

#include <core/asettings.h>
#include <core/atranslator.h>
#include <datamanager/adatamanager.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QTableView>

#include <algorithm>
#include <cstring>

namespace {

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
}

// For the layout, and for what comes from the event loop, as the attached devices do.
void settle()
{
    constexpr int kSettleMs = 150;
    QEventLoop loop;
    QTimer::singleShot(kSettleMs, &loop, &QEventLoop::quit);
    loop.exec();
}

// All tabs, line by line.
QImage pictureOf(QTabWidget *window)
{
    constexpr int kColumns = 3;
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
        const QPointF place(tab % kColumns * window->width(), tab / kColumns * window->height());
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
    ATranslator translator;
    if (translator.setLanguage(ASettings::language()))
        QApplication::installTranslator(&translator);

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
        gallery::tellError(parser.positionalArguments().constFirst() +
                           QStringLiteral(": no such argument is expected"));
        return 2;
    }
    if (!QDir(parser.value(data)).exists(QStringLiteral("profiles"))) {
        gallery::tellError(parser.value(data) +
                           QStringLiteral(": no example data, expected a directory with \"profiles\""));
        return 1;
    }
    QObject::connect(ADataManager::instance(), &ADataManager::error, &gallery::tellError);

    int status = 0;
    {
        QTabWidget window;
        window.setWindowTitle(Gallery::tr("Gallery"));
        window.resize(1000, 460);
        fillWindow(&window, parser.value(data));
        window.show();
        if (!parser.isSet(screenshot)) {
            status = QApplication::exec();
        } else if (!pictureOf(&window).save(parser.value(screenshot), "PNG")) {
            gallery::tellError(parser.value(screenshot) + QStringLiteral(": can't be written"));
        }
    }
    // The registry leaves its profiles alone when it goes, and clearing them leaves the objects to the event loop.
    ADataManager::instance()->clearProfiles();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    delete ADataManager::instance();
    return gallery::errorCount > 0 ? std::max(status, 1) : status;
}
