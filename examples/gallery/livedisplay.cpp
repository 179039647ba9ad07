#include "gallery.h"

#include <core/asimulateddevice.h>
#include <display/acolorlookuptable.h>
#include <display/adisplayvaluecache.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtWidgets/QWidget>

#include <cstring>

namespace {

constexpr int kPoints = 2001;    // of a sweep: more than a display has columns
constexpr int kLines = 100;      // of the waterfall
constexpr int kIntervalMs = 100; // between sweeps
constexpr int kBeginMHz = 88;
constexpr int kEndMHz = 108;
constexpr int kFrequencyStepMHz = 2;
constexpr int kLowest = -120; // dBm
constexpr int kHighest = -20;
constexpr int kLevelStep = 20;
constexpr int kEntriesPerDecibel = 10;  // of the table of colours, so that its ramp has no visible steps
constexpr double kSpectrumShare = 0.55; // of the height; the waterfall has the rest

// Spectrum and waterfall of a simulated analyser, which measures while the tab is seen.
class LiveDisplay : public QWidget
{
public:
    LiveDisplay()
        : m_colors(nullptr, (kHighest - kLowest) * kEntriesPerDecibel, QColor(0x15, 0x0a, 0x33),
                   QColor(0xff, 0xee, 0x66))
    {
        AFrequency begin;
        AFrequency end;
        begin.setValue(kBeginMHz, AFrequency::MHz);
        end.setValue(kEndMHz, AFrequency::MHz);
        m_device.setRange(begin, end, kPoints);
        setMinimumSize(320, 240);
        connect(&m_device, &ASweepProcessor::sweepFinished, this, [this](const ASweep &sweep) {
            ++m_next;
            take(sweep);
            update();
        });
    }

protected:
    void resizeEvent(QResizeEvent * /*event*/) override
    {
        const QFontMetrics metrics = fontMetrics();
        const int left = metrics.horizontalAdvance(levelText(kLowest)) + 2 * metrics.averageCharWidth();
        const int right = metrics.horizontalAdvance(frequencyText(kEndMHz));
        const QRect plot = rect().adjusted(left, metrics.height(), -right, -2 * metrics.height());
        m_spectrumRect = plot.adjusted(0, 0, 0, -qRound(plot.height() * (1 - kSpectrumShare)));
        m_waterfallRect = QRect(m_spectrumRect.bottomLeft() + QPoint(0, metrics.height() / 2), plot.bottomRight());

        m_cache.resize(qBound(1, plot.width(), kPoints)); // a column a pixel; with fewer points they are stretched
        if (m_waterfall.isNull()) {
            m_waterfall = QImage(m_cache.count(), kLines, QImage::Format_RGB32);
            m_waterfall.fill(m_colors.begin());
        } else {
            m_waterfall = m_waterfall.scaled(m_cache.count(), kLines);
        }
        if (m_next > 0)
            m_cache.update(m_sweep.values, 0, m_sweep.values.size() - 1);
    }

    void showEvent(QShowEvent * /*event*/) override
    {
        while (m_next < kLines) // the first time: as if it had been running
            take(m_device.sweep(m_next++));
        m_device.start(m_next, -1, kIntervalMs);
    }

    void hideEvent(QHideEvent * /*event*/) override { m_device.stop(); }

    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.fillRect(m_spectrumRect, m_colors.begin());
        paintGrid(&painter);
        paintCurve(&painter);
        painter.drawImage(m_waterfallRect, m_waterfall);
        paintPeak(&painter);
    }

private:
    void take(const ASweep &sweep)
    {
        m_sweep = sweep;
        m_cache.update(sweep.values, 0, sweep.values.size() - 1);
        std::memmove(m_waterfall.scanLine(1), m_waterfall.constScanLine(0),
                     static_cast<size_t>(m_waterfall.bytesPerLine()) * (kLines - 1));
        auto *line = reinterpret_cast<QRgb *>(m_waterfall.scanLine(0));
        for (int x = 0; x < m_cache.count(); ++x)
            line[x] = colorOf(m_cache.at(x).level).rgb();
    }

    const QColor &colorOf(double level) const
    {
        const double top = m_colors.dynamic(); // colorAt() doesn't clamp
        return m_colors.colorAt(static_cast<float>(qBound(0.0, (level - kLowest) * kEntriesPerDecibel, top)));
    }

    static QString levelText(int level) { return Gallery::tr("%1 dBm").arg(level); }

    static QString frequencyText(int megahertz) { return Gallery::tr("%1 MHz").arg(megahertz); }

    double xOf(int column) const
    {
        return m_spectrumRect.left() + (column + 0.5) * m_spectrumRect.width() / m_cache.count();
    }

    double yOf(double level) const
    {
        const double share = (kHighest - level) / (kHighest - kLowest);
        return m_spectrumRect.top() + qBound(0.0, share, 1.0) * (m_spectrumRect.height() - 1);
    }

    // The step between labels, a multiple of `step`, so that those of the given length stand apart.
    static int labelStep(int step, int range, int pixels, int length)
    {
        int shown = step;
        while (shown < range && pixels * shown < length * range)
            shown += step;
        return shown;
    }

    void paintGrid(QPainter *painter) const
    {
        const int height = fontMetrics().height();
        const int levelStep = labelStep(kLevelStep, kHighest - kLowest, m_spectrumRect.height(), height);
        const int frequencyStep =
            labelStep(kFrequencyStepMHz, kEndMHz - kBeginMHz, m_spectrumRect.width(),
                      fontMetrics().horizontalAdvance(frequencyText(kEndMHz) + QStringLiteral("  ")));
        const QColor gridColor(255, 255, 255, 50);
        for (int level = kLowest; level <= kHighest; level += levelStep) {
            const int y = qRound(yOf(level));
            painter->setPen(gridColor);
            painter->drawLine(m_spectrumRect.left(), y, m_spectrumRect.right(), y);
            painter->setPen(palette().color(QPalette::WindowText));
            painter->drawText(
                QRect(0, y - height / 2, m_spectrumRect.left() - fontMetrics().averageCharWidth(), height),
                Qt::AlignRight | Qt::AlignVCenter, levelText(level));
        }
        for (int megahertz = kBeginMHz; megahertz <= kEndMHz; megahertz += frequencyStep) {
            const int x =
                m_spectrumRect.left() + (m_spectrumRect.width() - 1) * (megahertz - kBeginMHz) / (kEndMHz - kBeginMHz);
            painter->setPen(gridColor);
            painter->drawLine(x, m_spectrumRect.top(), x, m_spectrumRect.bottom());
            painter->setPen(palette().color(QPalette::WindowText));
            const QString text = frequencyText(megahertz);
            painter->drawText(x - fontMetrics().horizontalAdvance(text) / 2,
                              m_waterfallRect.bottom() + fontMetrics().height() * 5 / 4, text);
        }
    }

    void paintCurve(QPainter *painter) const
    {
        QPolygonF curve;
        for (int column = 0; column < m_cache.count(); ++column)
            curve << QPointF(xOf(column), yOf(m_cache.at(column).level));
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(m_colors.end(), 1.2));
        painter->drawPolyline(curve);
    }

    // The highest column, with the frequency of the point that it stands for.
    void paintPeak(QPainter *painter) const
    {
        int highest = 0;
        for (int column = 1; column < m_cache.count(); ++column) {
            if (m_cache.at(column).level > m_cache.at(highest).level)
                highest = column;
        }
        const AMeasurementValue &peak = m_cache.at(highest);
        const QString frequency = peak.frequency.formatString(QStringLiteral("%L1 %2"), AFrequency::NoUnit, 0, 'f',
                                                              QLocale::FloatingPointShortest);
        const QString text = Gallery::tr("%1 at %2").arg(peak.formatValueString(true), frequency);
        const double radius = fontMetrics().averageCharWidth() / 2.0;
        const QPointF place(xOf(highest), yOf(peak.level));
        painter->setPen(Qt::white);
        painter->drawEllipse(place, radius, radius);
        QRectF box(QPointF(), QSizeF(fontMetrics().horizontalAdvance(text), fontMetrics().height()));
        box.moveTop(qMax(place.y() - 4 * radius, qreal(m_spectrumRect.top())));
        if (place.x() < m_spectrumRect.center().x())
            box.moveLeft(qMin(place.x() + 3 * radius, m_spectrumRect.right() - box.width()));
        else
            box.moveRight(qMax(place.x() - 3 * radius, m_spectrumRect.left() + box.width()));
        painter->drawText(box, Qt::AlignCenter | Qt::TextDontClip, text);
    }

    ASimulatedDevice m_device;
    ADisplayValueCache m_cache;
    AColorLookupTable m_colors;
    ASweep m_sweep;
    QImage m_waterfall; // a column of the cache a pixel, the newest line on top
    int m_next = 0;     // the number of the next sweep
    QRect m_spectrumRect;
    QRect m_waterfallRect;
};

} // namespace

QWidget *gallery::makeLiveDisplayTab()
{
    return new LiveDisplay;
}
