#include "core/afrequency.h"

#include <QtCore/QByteArray>
#include <QtCore/QLocale>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

static_assert(sizeof(AFrequency) == 16 && std::is_trivially_copyable_v<AFrequency>,
              "copied as a plain record and stored in static tables");

namespace {

__extension__ using Int128 = __int128; // holds every intermediate result exactly

constexpr qint64 kMaxHertz = std::numeric_limits<qint64>::max();
constexpr qint64 kMinHertz = std::numeric_limits<qint64>::min();
constexpr long double kHertzRange = 9223372036854775808.0L; // 2^63
constexpr int kCanonicalDecimals = 6;

// From here on a double no longer holds six decimals of a megahertz.
constexpr qint64 kExactDigitsFromHertz = qint64(1) << 52;

constexpr const char *kSuffixes[] = {"", "Hz", "kHz", "MHz", "GHz"};
constexpr qint64 kFactors[] = {1, 1, 1000, 1000000, 1000000000};
constexpr int kExponents[] = {0, 0, 3, 6, 9};

constexpr int unitIndex(AFrequency::Unit unit)
{
    return unit >= AFrequency::NoUnit && unit <= AFrequency::GHz ? unit : 0;
}

struct Parts
{
    qint64 hertz = 0;
    double fraction = 0.0;
};

Parts edgeOfRange(bool negative)
{
    return {negative ? kMinHertz : kMaxHertz, 0.0};
}

// Brings whole + fraction, with |fraction| < 2, to the form in which both have the sign of the value.
Parts normalised(Int128 whole, double fraction)
{
    const double carry = std::trunc(fraction);
    whole += static_cast<int>(carry);
    fraction -= carry;
    if (whole > 0 && fraction < 0.0) {
        whole -= 1;
        fraction += 1.0;
    } else if (whole < 0 && fraction > 0.0) {
        whole += 1;
        fraction -= 1.0;
    }
    if (fraction == 1.0 || fraction == -1.0) { // a fraction below half an ulp of 1 rounds up
        whole += static_cast<int>(fraction);
        fraction = 0.0;
    }
    if (whole > kMaxHertz || whole < kMinHertz)
        return edgeOfRange(whole < 0);
    return {static_cast<qint64>(whole), fraction + 0.0};
}

// A floating-point number of hertz; NaN is zero.
Parts fromHertz(long double hertz)
{
    if (std::isnan(hertz))
        return {};
    if (hertz >= kHertzRange || hertz <= -kHertzRange)
        return edgeOfRange(hertz < 0);
    const long double whole = std::trunc(hertz);
    return normalised(static_cast<Int128>(whole), static_cast<double>(hertz - whole));
}

long double toHertz(qint64 hertz, double fraction)
{
    return static_cast<long double>(hertz) + static_cast<long double>(fraction);
}

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Bytes above ASCII count as letters, so that "5 µHz" has no recognised unit.
bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (static_cast<unsigned char>(c) & 0x80) != 0;
}

// A part of a text, without the blanks around it.
struct Text
{
    const char *begin;
    const char *end;

    Text(const char *from, const char *to)
        : begin(from)
        , end(to)
    {
        while (begin != end && isBlank(*begin))
            ++begin;
        while (begin != end && isBlank(*(end - 1)))
            --end;
    }
};

Text wholeText(const char *text)
{
    const char *whole = text ? text : "";
    return {whole, whole + std::strlen(whole)};
}

const char *beginOfTrailingLetters(const Text &text)
{
    const char *begin = text.end;
    while (begin != text.begin && isLetter(*(begin - 1)))
        --begin;
    return begin;
}

AFrequency::Unit unitNamed(const char *begin, const char *end)
{
    const auto length = static_cast<std::size_t>(end - begin);
    for (int unit = AFrequency::Hz; unit <= AFrequency::GHz; ++unit) {
        if (std::strlen(kSuffixes[unit]) == length && std::memcmp(kSuffixes[unit], begin, length) == 0)
            return static_cast<AFrequency::Unit>(unit);
    }
    return AFrequency::NoUnit;
}

// A decimal number as it was written: its value is 0.DIGITS * 10^pointPosition.
struct Decimal
{
    bool negative = false;
    QByteArray digits; // without leading zeros
    int pointPosition = 0;
};

// [+-] digits, at most one of "." and "," among them, [eE[+-]digits]
bool readDecimal(const Text &text, Decimal *decimal)
{
    constexpr int kExponentLimit = 100000; // far beyond what any result can hold, far below an overflow
    const char *at = text.begin;
    if (at != text.end && (*at == '-' || *at == '+'))
        decimal->negative = *at++ == '-';

    decimal->digits.reserve(static_cast<int>(text.end - at));
    bool anyDigit = false;
    bool inFraction = false;
    qint64 position = 0;
    for (; at != text.end; ++at) {
        if ((*at == '.' || *at == ',') && !inFraction) {
            inFraction = true;
        } else if (isDigit(*at)) {
            anyDigit = true;
            if (*at != '0' || !decimal->digits.isEmpty()) {
                decimal->digits.append(*at);
                position += inFraction ? 0 : 1;
            } else if (inFraction) {
                position -= 1;
            }
        } else {
            break;
        }
    }
    if (!anyDigit)
        return false;

    if (at != text.end && (*at == 'e' || *at == 'E')) {
        ++at;
        bool negativeExponent = false;
        if (at != text.end && (*at == '-' || *at == '+'))
            negativeExponent = *at++ == '-';
        if (at == text.end)
            return false;
        int exponent = 0;
        for (; at != text.end && isDigit(*at); ++at)
            exponent = std::min(exponent * 10 + (*at - '0'), kExponentLimit);
        position += negativeExponent ? -exponent : exponent;
    }
    decimal->pointPosition = static_cast<int>(std::clamp<qint64>(position, -kExponentLimit, kExponentLimit));
    return at == text.end;
}

Parts toParts(const Decimal &decimal, AFrequency::Unit unit)
{
    constexpr int kWholeDigits = 19; // of 2^63
    if (decimal.digits.isEmpty())
        return {};
    const int point = decimal.pointPosition + kExponents[unitIndex(unit)];
    if (point > kWholeDigits)
        return edgeOfRange(decimal.negative);

    quint64 whole = 0; // 19 digits fit
    for (int i = 0; i < point; ++i)
        whole = whole * 10 + static_cast<quint64>(i < decimal.digits.size() ? decimal.digits.at(i) - '0' : 0);

    double fraction = 0.0;
    if (point < decimal.digits.size()) {
        const QByteArray rest = decimal.digits.mid(std::max(point, 0));
        fraction = (QByteArrayLiteral("0.") + rest + 'e' + QByteArray::number(std::min(point, 0))).toDouble();
    }
    const auto sign = decimal.negative ? -1 : 1;
    return normalised(static_cast<Int128>(whole) * sign, fraction * sign);
}

// The number in `unit` with a fixed count of decimals, from integers alone, half to even.
QString exactNumber(qint64 hertz, AFrequency::Unit unit, int decimals, const QLocale &locale)
{
    const int exponent = kExponents[unitIndex(unit)];
    const int kept = std::min(decimals, exponent);
    quint64 divisor = 1;
    for (int i = kept; i < exponent; ++i)
        divisor *= 10;

    const quint64 magnitude = hertz < 0 ? quint64(0) - static_cast<quint64>(hertz) : static_cast<quint64>(hertz);
    quint64 scaled = magnitude / divisor;
    const quint64 twiceRest = magnitude % divisor * 2;
    if (twiceRest > divisor || (twiceRest == divisor && scaled % 2 == 1))
        ++scaled;

    const QByteArray digits = QByteArray::number(scaled).rightJustified(kept + 1, '0');
    const quint64 whole = digits.left(digits.size() - kept).toULongLong();
    QString text = locale.toString(whole);
    if (hertz < 0)
        text.prepend(locale.negativeSign());
    if (decimals > 0) {
        text += locale.decimalPoint();
        const QByteArray fraction = digits.right(kept).leftJustified(decimals, '0');
        for (const char digit : fraction)
            text += QChar(locale.zeroDigit().unicode() + (digit - '0'));
    }
    return text;
}

QLocale plainLocale()
{
    QLocale locale = QLocale::c();
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale;
}

} // namespace

const char *const AFrequency::kHz_Suffix = kSuffixes[AFrequency::kHz];
const char *const AFrequency::MHz_Suffix = kSuffixes[AFrequency::MHz];

AFrequency::AFrequency(const char *text)
{
    const Text whole = wholeText(text);
    const char *suffix = beginOfTrailingLetters(whole);
    const Unit unit = unitNamed(suffix, whole.end);
    const bool hasUnknownUnit = unit == NoUnit && suffix != whole.end;
    Decimal decimal;
    if (hasUnknownUnit || !readDecimal(Text(whole.begin, suffix), &decimal))
        return;
    const auto [hertz, fraction] = toParts(decimal, unit);
    *this = AFrequency(hertz, fraction);
}

void AFrequency::setValue(long long value, Unit unit) noexcept
{
    const auto [hertz, fraction] = normalised(static_cast<Int128>(value) * kFactors[unitIndex(unit)], 0.0);
    *this = AFrequency(hertz, fraction);
}

void AFrequency::setValue(double value, Unit unit)
{
    const auto factor = static_cast<long double>(kFactors[unitIndex(unit)]);
    const long double hertz = value * factor;
    const long double nearest = std::round(hertz);
    Parts parts;
    if (!std::isfinite(value) || std::fabs(hertz) >= kHertzRange || static_cast<double>(nearest / factor) == value) {
        parts = fromHertz(std::isfinite(value) ? nearest : hertz);
    } else {
        const QByteArray shortest = QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
        Decimal decimal;
        readDecimal(wholeText(shortest.constData()), &decimal);
        parts = toParts(decimal, unit);
    }
    *this = AFrequency(parts.hertz, parts.fraction);
}

long long AFrequency::intValue(Unit unit) const noexcept
{
    return m_hertz / kFactors[unitIndex(unit)];
}

double AFrequency::floatValue(Unit unit) const noexcept
{
    return static_cast<double>(toHertz(m_hertz, m_fraction) / static_cast<long double>(kFactors[unitIndex(unit)]));
}

QString AFrequency::toString() const
{
    return QString::number(m_hertz);
}

QString AFrequency::formatString(const QString &format, Unit unit, int fieldWidth, char numberFormat,
                                 int precision) const
{
    const Unit shownUnit = unitIndex(unit) == NoUnit ? autoUnit() : unit;
    const bool localized = format.contains(QLatin1String("%L1"));
    const bool needsExactDigits = m_hertz >= kExactDigitsFromHertz || m_hertz <= -kExactDigitsFromHertz;

    QString text = format;
    if (localized || format.contains(QLatin1String("%1"))) {
        if (numberFormat == 'd') {
            text = text.arg(intValue(shownUnit), fieldWidth);
        } else if (numberFormat == 'f' && needsExactDigits) {
            const int decimals = precision < 0 ? kCanonicalDecimals : precision;
            const QLocale locale = localized ? QLocale() : plainLocale();
            text = text.arg(exactNumber(m_hertz, shownUnit, decimals, locale), fieldWidth);
        } else {
            text = text.arg(floatValue(shownUnit), fieldWidth, numberFormat, precision);
        }
    }
    if (format.contains(QLatin1String("%2")))
        text = text.arg(QLatin1String(suffixForUnit(shownUnit)));
    return text;
}

QString AFrequency::canonicalText() const
{
    return formatString(QStringLiteral("%1 %2"), NoUnit, 0, 'f', -1);
}

AFrequency::Unit AFrequency::autoUnit() const noexcept
{
    const auto isAtLeast = [this](qint64 hertz) { return m_hertz >= hertz || m_hertz <= -hertz; };
    if (isAtLeast(kFactors[MHz]))
        return MHz;
    return isAtLeast(kFactors[kHz]) ? kHz : Hz;
}

const char *AFrequency::suffixForUnit(Unit unit) noexcept
{
    return kSuffixes[unitIndex(unit)];
}

AFrequency::Unit AFrequency::unitForSuffix(const char *text) noexcept
{
    const Text whole = wholeText(text);
    return unitNamed(beginOfTrailingLetters(whole), whole.end);
}

AFrequency &AFrequency::operator+=(const AFrequency &other) noexcept
{
    const auto [hertz, fraction] =
        normalised(static_cast<Int128>(m_hertz) + other.m_hertz, m_fraction + other.m_fraction);
    return *this = AFrequency(hertz, fraction);
}

AFrequency &AFrequency::operator-=(const AFrequency &other) noexcept
{
    const auto [hertz, fraction] =
        normalised(static_cast<Int128>(m_hertz) - other.m_hertz, m_fraction - other.m_fraction);
    return *this = AFrequency(hertz, fraction);
}

AFrequency AFrequency::operator*(double factor) const noexcept
{
    Parts product;
    if (m_fraction == 0.0 && std::trunc(factor) == factor && std::fabs(factor) < static_cast<double>(kHertzRange))
        product = normalised(static_cast<Int128>(m_hertz) * static_cast<qint64>(factor), 0.0);
    else
        product = fromHertz(static_cast<double>(toHertz(m_hertz, m_fraction) * factor));
    return AFrequency(product.hertz, product.fraction);
}

AFrequency AFrequency::operator/(double divisor) const noexcept
{
    const bool isWholeDivisor =
        std::trunc(divisor) == divisor && divisor != 0.0 && std::fabs(divisor) < static_cast<double>(kHertzRange);
    Parts quotient;
    if (m_fraction == 0.0 && isWholeDivisor) {
        const auto whole = static_cast<Int128>(divisor);
        quotient =
            normalised(m_hertz / whole, static_cast<double>(static_cast<long double>(m_hertz % whole) / divisor));
    } else {
        quotient = fromHertz(static_cast<double>(toHertz(m_hertz, m_fraction) / divisor));
    }
    return AFrequency(quotient.hertz, quotient.fraction);
}

double AFrequency::operator/(const AFrequency &other) const noexcept
{
    return static_cast<double>(toHertz(m_hertz, m_fraction) / toHertz(other.m_hertz, other.m_fraction));
}
