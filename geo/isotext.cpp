#include "geo/isotext.h"

namespace {

constexpr int kDateLength = 10; // 2024-05-31
constexpr int kTimeLength = 8;  // 12:34:56

void putDigits(QChar *text, int count, int value)
{
    for (int i = count - 1; i >= 0; --i, value /= 10)
        text[i] = QChar('0' + value % 10);
}

// Only of years that have four digits.
void putDate(QChar *text, const QDate &date)
{
    int year = 0;
    int month = 0;
    int day = 0;
    date.getDate(&year, &month, &day);
    putDigits(text, 4, year);
    text[4] = QLatin1Char('-');
    putDigits(text + 5, 2, month);
    text[7] = QLatin1Char('-');
    putDigits(text + 8, 2, day);
}

void putTime(QChar *text, const QTime &time)
{
    putDigits(text, 2, time.hour());
    text[2] = QLatin1Char(':');
    putDigits(text + 3, 2, time.minute());
    text[5] = QLatin1Char(':');
    putDigits(text + 6, 2, time.second());
}

bool hasFourDigitYear(const QDate &date)
{
    const QDate first(1, 1, 1);
    const QDate last(9999, 12, 31);
    return date.isValid() && date >= first && date <= last;
}

} // namespace

QString isoText(const QDate &date)
{
    if (!hasFourDigitYear(date))
        return date.toString(Qt::ISODate);
    QString text(kDateLength, Qt::Uninitialized);
    putDate(text.data(), date);
    return text;
}

QString isoText(const QTime &time)
{
    if (!time.isValid())
        return time.toString(Qt::ISODate);
    QString text(kTimeLength, Qt::Uninitialized);
    putTime(text.data(), time);
    return text;
}

QString isoText(const QDateTime &time)
{
    const QDate date = time.date();
    if (time.timeSpec() != Qt::UTC || !time.isValid() || !hasFourDigitYear(date))
        return time.toString(Qt::ISODate);
    QString text(kDateLength + 1 + kTimeLength + 1, Qt::Uninitialized);
    QChar *const begin = text.data();
    putDate(begin, date);
    begin[kDateLength] = QLatin1Char('T');
    putTime(begin + kDateLength + 1, time.time());
    begin[kDateLength + 1 + kTimeLength] = QLatin1Char('Z');
    return text;
}
