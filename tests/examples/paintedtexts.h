#pragma once

#include <QtCore/QVector>
#include <QtGui/QPaintDevice>
#include <QtGui/QPaintEngine>
#include <QtGui/QPainter>
#include <QtWidgets/QWidget>

// The texts that are painted, with their places: what a picture can't be asked.

struct PaintedText
{
    QString text;
    QRectF rect;
};

namespace paintedtexts {

class Recorder : public QPaintEngine
{
public:
    Recorder()
        : QPaintEngine(AllFeatures)
    {}

    bool begin(QPaintDevice * /*device*/) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState & /*state*/) override {}
    void drawPixmap(const QRectF & /*target*/, const QPixmap & /*pixmap*/, const QRectF & /*source*/) override {}
    void drawImage(const QRectF & /*target*/, const QImage & /*image*/, const QRectF & /*source*/,
                   Qt::ImageConversionFlags /*flags*/) override
    {}
    void drawPath(const QPainterPath & /*path*/) override {}
    void drawPolygon(const QPointF * /*points*/, int /*count*/, PolygonDrawMode /*mode*/) override {}
    Type type() const override { return User; }

    void drawTextItem(const QPointF &place, const QTextItem &item) override
    {
        const QPointF onDevice = painter()->combinedTransform().map(place);
        texts.append({item.text(), QRectF(onDevice.x(), onDevice.y() - item.ascent(), item.width(),
                                          item.ascent() + item.descent())});
    }

    QVector<PaintedText> texts;
};

class Device : public QPaintDevice
{
public:
    explicit Device(const QSize &size)
        : m_size(size)
    {}

    QPaintEngine *paintEngine() const override { return &recorder; }

    mutable Recorder recorder;

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        constexpr int kDotsPerInch = 96;
        switch (metric) {
        case PdmWidth:
            return m_size.width();
        case PdmHeight:
            return m_size.height();
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return kDotsPerInch;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        default:
            return 0;
        }
    }

private:
    QSize m_size;
};

} // namespace paintedtexts

template<typename Paint>
QVector<PaintedText> textsPaintedBy(const QSize &size, const Paint &paint)
{
    paintedtexts::Device device(size);
    QPainter painter(&device);
    paint(&painter);
    painter.end();
    return device.recorder.texts;
}

inline QVector<PaintedText> textsPaintedBy(QWidget &widget)
{
    paintedtexts::Device device(widget.size());
    widget.render(&device);
    return device.recorder.texts;
}
