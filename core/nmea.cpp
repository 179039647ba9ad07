#include "core/nmea.h"

#include <cstring>

namespace Nmea {

namespace {

constexpr int kAddressLength = 5; // two letters for the talker, three for the kind
constexpr int kChecksumLength = 3;
constexpr int kFirstYearOf1900s = 80;
constexpr int kLatitudeLimit = 90; // degrees
constexpr int kLongitudeLimit = 180;

bool isDigit(char character) noexcept
{
    return character >= '0' && character <= '9';
}

const char *find(const char *begin, const char *end, char character) noexcept
{
    return begin == end
               ? nullptr
               : static_cast<const char *>(std::memchr(begin, character, static_cast<std::size_t>(end - begin)));
}

const char *endOfSentence(const char *position, const char *end) noexcept
{
    while (position != end && *position != '\r' && *position != '\n' && *position != '$')
        ++position;
    return position;
}

int hexDigit(char character) noexcept
{
    if (isDigit(character))
        return character - '0';
    const char lower = static_cast<char>(character | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

bool checksumIsRight(const char *begin, const char *star, const char *end) noexcept
{
    if (end - star < kChecksumLength)
        return false;
    const unsigned char sum = checksum(begin, star);
    return hexDigit(star[1]) == sum >> 4 && hexDigit(star[2]) == (sum & 0x0f);
}

bool isPrintable(const char *begin, const char *end) noexcept
{
    for (const char *byte = begin; byte != end; ++byte) {
        if (*byte < 0x20 || *byte > 0x7e)
            return false;
    }
    return true;
}

// The comma behind the address at the latest is its end.
const char *withoutWhiteSpaceAtEnd(const Text &text) noexcept
{
    const char *end = text.end;
    while (end[-1] == ' ' || end[-1] == '\t')
        --end;
    return end;
}

Kind kindOf(const char *address) noexcept
{
    struct Name
    {
        char letters[4];
        Kind kind;
    };
    static constexpr Name kNames[] = {{"RMC", Kind::Rmc}, {"GGA", Kind::Gga}, {"GLL", Kind::Gll},
                                      {"ZDA", Kind::Zda}, {"HDG", Kind::Hdg}, {"XDR", Kind::Xdr}};
    if (address[0] == 'P') // "$PGRMC" is a maker's own
        return Kind::Other;
    for (const Name &name : kNames) {
        if (std::memcmp(address + 2, name.letters, 3) == 0)
            return name.kind;
    }
    return Kind::Other;
}

// Takes the text up to the next comma; `data` is empty after the last one.
Text takeField(Text *data) noexcept
{
    const char *comma = find(data->begin, data->end, ',');
    const Text field{data->begin, comma ? comma : data->end};
    data->begin = comma ? comma + 1 : data->end;
    return field;
}

// `count` digits.
bool readDigits(const char *text, int count, int *number) noexcept
{
    int result = 0;
    for (int i = 0; i < count; ++i) {
        if (!isDigit(text[i]))
            return false;
        result = result * 10 + (text[i] - '0');
    }
    *number = result;
    return true;
}

bool readWhole(const Text &text, int *number) noexcept
{
    return !text.isEmpty() && text.size() <= 4 && readDigits(text.begin, static_cast<int>(text.size()), number);
}

// Digits with at most one decimal sign, without a sign. What a double can't hold of them is passed over.
bool readDecimal(const Text &text, double *number) noexcept
{
    static constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                                         1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};
    constexpr int kMaximumDigits = 18;

    quint64 mantissa = 0;
    int digits = 0;
    int decimals = 0;
    bool any = false;
    bool inFraction = false;
    for (const char *character = text.begin; character != text.end; ++character) {
        if (*character == '.') {
            if (inFraction)
                return false;
            inFraction = true;
            continue;
        }
        if (!isDigit(*character))
            return false;
        any = true;
        if (digits == kMaximumDigits && !inFraction)
            return false;
        if (digits == kMaximumDigits || decimals == kMaximumDigits)
            continue;
        mantissa = mantissa * 10 + static_cast<quint64>(*character - '0');
        digits += mantissa != 0;
        decimals += inFraction;
    }
    if (!any)
        return false;
    *number = static_cast<double>(mantissa) / kPowers[decimals];
    return true;
}

bool readCoordinate(const Text &text, const Text &hemisphere, char positive, char negative, int limit,
                    float *coordinate) noexcept
{
    double value = 0.0;
    if (!(hemisphere.is(positive) || hemisphere.is(negative)) || !readDecimal(text, &value))
        return false;
    if (value > limit * 100.0)
        return false;
    const int wholeDegrees = static_cast<int>(value) / 100;
    if (value - wholeDegrees * 100.0 >= 60.0)
        return false;
    *coordinate = static_cast<float>(hemisphere.is(negative) && value != 0.0 ? -value : value);
    return true;
}

} // namespace

bool nextSentence(const char *&position, const char *end, bool endOfInput, Text *sentence) noexcept
{
    for (;;) {
        const char *dollar = find(position, end, '$');
        if (!dollar) {
            position = end;
            return false;
        }
        const char *begin = dollar + 1;
        const char *stop = endOfSentence(begin, end);
        const bool tooLong = static_cast<std::size_t>(stop - begin) > kMaximumSentence;
        if (stop == end && !endOfInput) {
            position = tooLong ? end : dollar;
            return false;
        }
        position = stop;
        const bool wasCut = stop != end && *stop == '$' && !find(begin, stop, '*');
        if (!tooLong && !wasCut) {
            *sentence = {begin, stop};
            return true;
        }
    }
}

bool endsWithChecksum(const Text &text) noexcept
{
    return text.size() > kChecksumLength && *(text.end - kChecksumLength) == '*';
}

bool readSentence(const Text &text, Sentence *sentence) noexcept
{
    if (text.size() <= kAddressLength || text.begin[kAddressLength] != ',')
        return false;
    const Kind kind = kindOf(text.begin);
    if (kind == Kind::Other)
        return false;
    const char *star = find(text.begin, text.end, '*');
    const char *end = star ? star : withoutWhiteSpaceAtEnd(text);
    if (star ? !checksumIsRight(text.begin, star, text.end) : !isPrintable(text.begin, end))
        return false;

    sentence->kind = kind;
    sentence->data = {text.begin + kAddressLength + 1, end};
    if (kind == Kind::Xdr) // may have any number of fields, which are taken one by one
        return true;
    Text rest = sentence->data;
    for (Text &field : sentence->fields)
        field = takeField(&rest);
    return true;
}

unsigned char checksum(const char *begin, const char *end) noexcept
{
    unsigned char sum = 0;
    for (const char *byte = begin; byte != end; ++byte)
        sum = static_cast<unsigned char>(sum ^ static_cast<unsigned char>(*byte));
    return sum;
}

bool readNumber(const Text &text, double *number) noexcept
{
    Text unsignedText = text;
    const bool isNegative = !text.isEmpty() && *text.begin == '-';
    if (isNegative || (!text.isEmpty() && *text.begin == '+'))
        ++unsignedText.begin;
    double value = 0.0;
    if (!readDecimal(unsignedText, &value))
        return false;
    *number = isNegative && value != 0.0 ? -value : value;
    return true;
}

bool readTime(const Text &text, int *msOfDay) noexcept
{
    int hour = 0;
    int minute = 0;
    int second = 0;
    if (text.size() < 6 || !readDigits(text.begin, 2, &hour) || !readDigits(text.begin + 2, 2, &minute) ||
        !readDigits(text.begin + 4, 2, &second))
        return false;
    if (hour > 23 || minute > 59 || second > 60) // a leap second is the first of the next minute
        return false;

    int milliseconds = 0;
    if (text.size() > 6) {
        if (text.begin[6] != '.')
            return false;
        int weight = 100;
        for (const char *digit = text.begin + 7; digit != text.end; ++digit) {
            if (!isDigit(*digit))
                return false;
            milliseconds += weight * (*digit - '0');
            weight /= 10;
        }
    }
    *msOfDay = ((hour * 60 + minute) * 60 + second) * 1000 + milliseconds;
    return true;
}

bool readDate(const Text &text, QDate *date) noexcept
{
    int day = 0;
    int month = 0;
    int year = 0;
    if (text.size() != 6 || !readDigits(text.begin, 2, &day) || !readDigits(text.begin + 2, 2, &month) ||
        !readDigits(text.begin + 4, 2, &year))
        return false;
    const int fullYear = year + (year < kFirstYearOf1900s ? 2000 : 1900);
    if (!QDate::isValid(fullYear, month, day))
        return false;
    *date = QDate(fullYear, month, day);
    return true;
}

bool readDate(const Text &day, const Text &month, const Text &year, QDate *date) noexcept
{
    int dayNumber = 0;
    int monthNumber = 0;
    int yearNumber = 0;
    if (year.size() != 4 || !readWhole(day, &dayNumber) || !readWhole(month, &monthNumber) ||
        !readWhole(year, &yearNumber) || !QDate::isValid(yearNumber, monthNumber, dayNumber))
        return false;
    *date = QDate(yearNumber, monthNumber, dayNumber);
    return true;
}

bool readLatitude(const Text &text, const Text &hemisphere, float *latitude) noexcept
{
    return readCoordinate(text, hemisphere, 'N', 'S', kLatitudeLimit, latitude);
}

bool readLongitude(const Text &text, const Text &hemisphere, float *longitude) noexcept
{
    return readCoordinate(text, hemisphere, 'E', 'W', kLongitudeLimit, longitude);
}

bool nextTransducer(Text *data, Transducer *transducer) noexcept
{
    if (data->isEmpty())
        return false;
    const Text type = takeField(data);
    const Text value = takeField(data);
    const Text unit = takeField(data);
    transducer->name = takeField(data);
    const bool isRead = type.size() == 1 && readNumber(value, &transducer->value);
    transducer->type = isRead ? *type.begin : '\0';
    transducer->unit = unit.isEmpty() ? '\0' : *unit.begin;
    return true;
}

bool isName(const Text &text, const char *name) noexcept
{
    const char *character = text.begin;
    for (; character != text.end && *name != '\0'; ++character, ++name) {
        const bool isLower = *character >= 'a' && *character <= 'z';
        if ((isLower ? static_cast<char>(*character & ~0x20) : *character) != *name)
            return false;
    }
    return character == text.end && *name == '\0';
}

} // namespace Nmea
