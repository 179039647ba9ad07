#pragma once

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtTest/QtTest>
#include <QtWidgets/QAbstractItemDelegate>
#include <QtWidgets/QApplication>
#include <QtWidgets/QProxyStyle>
#include <QtWidgets/QStyleOption>

// The application's style, which draws as Fusion does and keeps what it was asked to draw.
class RecordingStyle : public QProxyStyle
{
    Q_OBJECT

public:
    struct Call
    {
        QString element; // "CC_SpinBox", "CC_ComboBox", "CE_ComboBoxLabel", "CE_CheckBox", "text", "item"
        QRect rect;
        QStyle::State state;
        QString text;
        QPalette palette;
        Qt::LayoutDirection direction = Qt::LeftToRight;
        int flags = 0;                              // of a text
        QPalette::ColorRole role = QPalette::Light; // of a text
        bool enabled = false;                       // of a text
    };

    RecordingStyle()
        : QProxyStyle(QStringLiteral("fusion"))
    {}

    static RecordingStyle *install() // the application owns it
    {
        auto *style = new RecordingStyle;
        QApplication::setStyle(style);
        return style;
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override
    {
        Call call = callOf(option);
        call.element = control == CC_SpinBox    ? QStringLiteral("CC_SpinBox")
                       : control == CC_ComboBox ? QStringLiteral("CC_ComboBox")
                                                : QStringLiteral("other");
        if (const auto *box = qstyleoption_cast<const QStyleOptionComboBox *>(option))
            call.text = box->currentText;
        calls << call;
        const bool wasInside = std::exchange(m_isInside, true);
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        m_isInside = wasInside;
    }

    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override
    {
        Call call = callOf(option);
        if (const auto *box = qstyleoption_cast<const QStyleOptionComboBox *>(option))
            call.text = box->currentText;
        if (const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option))
            call.text = button->text;
        if (const auto *item = qstyleoption_cast<const QStyleOptionViewItem *>(option))
            call.text = item->text;
        call.element = element == CE_ComboBoxLabel  ? QStringLiteral("CE_ComboBoxLabel")
                       : element == CE_CheckBox     ? QStringLiteral("CE_CheckBox")
                       : element == CE_ItemViewItem ? QStringLiteral("item")
                                                    : QStringLiteral("other");
        if (!m_isInside)
            calls << call;
        const bool wasInside = std::exchange(m_isInside, true);
        QProxyStyle::drawControl(element, option, painter, widget);
        m_isInside = wasInside;
    }

    void drawItemText(QPainter *painter, const QRect &rect, int flags, const QPalette &palette, bool enabled,
                      const QString &text, QPalette::ColorRole role) const override
    {
        if (!m_isInside) {
            Call call;
            call.element = QStringLiteral("text");
            call.rect = rect;
            call.text = text;
            call.palette = palette;
            call.flags = flags;
            call.role = role;
            call.enabled = enabled;
            calls << call;
        }
        QProxyStyle::drawItemText(painter, rect, flags, palette, enabled, text, role);
    }

    QStringList elements() const
    {
        QStringList names;
        for (const Call &call : qAsConst(calls))
            names << call.element;
        return names;
    }

    // The calls must be those for a number in a spin box that can't be edited. The text is given the default palette,
    // whatever that of the cell is.
    void compareToAReadOnlySpinBox(const QRect &cell, State state) const
    {
        QCOMPARE(elements(), (QStringList{"CC_SpinBox", "text"}));
        QCOMPARE(calls.at(0).rect, cell);
        QCOMPARE(calls.at(0).state, state | State_Enabled | State_ReadOnly);
        QCOMPARE(calls.at(1).rect, cell);
        QCOMPARE(calls.at(1).flags, 132);
        QCOMPARE(calls.at(1).palette, QPalette());
        QCOMPARE(calls.at(1).enabled, true);
        QCOMPARE(calls.at(1).role, QPalette::NoRole);
    }

    mutable QVector<Call> calls; // those from outside, not what an element is made of

private:
    static Call callOf(const QStyleOption *option)
    {
        Call call;
        call.rect = option->rect;
        call.state = option->state;
        call.palette = option->palette;
        call.direction = option->direction;
        return call;
    }

    mutable bool m_isInside = false;
};

// Has a delegate paint a cell into a picture that is larger than it, with a palette, a pen and a brush that can be
// told. The painter must come back as it went.
struct PaintedCell
{
    PaintedCell()
        : image(200, 60, QImage::Format_RGB32)
    {
        image.fill(Qt::white);
        option.rect = QRect(20, 10, 150, 30);
        option.state = QStyle::State_Active;
        option.palette = QPalette(Qt::darkGreen, Qt::darkBlue);
    }

    bool paint(const QAbstractItemDelegate &delegate, const QModelIndex &index)
    {
        QPainter painter(&image);
        painter.setPen(pen);
        painter.setBrush(brush);
        painter.setFont(option.font);
        delegate.paint(&painter, option, index);
        return painter.pen() == pen && painter.brush() == brush && painter.font() == option.font &&
               !painter.hasClipping() && painter.transform().isIdentity();
    }

    bool isUntouchedOutside() const
    {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (!option.rect.contains(x, y) && image.pixelColor(x, y) != Qt::white)
                    return false;
            }
        }
        return true;
    }

    QImage image;
    QStyleOptionViewItem option;
    QPen pen = QPen(Qt::darkRed);
    QBrush brush = Qt::NoBrush;
};
