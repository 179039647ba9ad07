#pragma once

#include <QtCore/QDate>

#include <cstddef>

// Private to core/. NMEA 0183 as bytes: sentences are found in what was read, and their fields are read in place.
// Nothing here allocates or remembers anything.
namespace Nmea {

struct Text
{
    const char *begin = nullptr;
    const char *end = nullptr;

    std::size_t size() const noexcept { return static_cast<std::size_t>(end - begin); }
    bool isEmpty() const noexcept { return begin == end; }
    bool is(char character) const noexcept { return size() == 1 && *begin == character; }
};

enum class Kind
{
    Other,
    Rmc,
    Gga,
    Gll,
    Zda,
    Hdg,
    Xdr,
};

// A sentence of a kind that is read, with its checksum, if it has one, seen to be right.
struct Sentence
{
    static constexpr int kMaximumFields = 16;

    Kind kind = Kind::Other;
    Text data;                   // all fields, without address and checksum
    Text fields[kMaximumFields]; // the first ones; those that the sentence lacks are empty

    // Field 1 is the one behind the address, as in the tables of the standard.
    const Text &field(int number) const noexcept { return fields[number - 1]; }
};

// One quadruple of an XDR sentence.
struct Transducer
{
    char type = 0;
    double value = 0.0;
    char unit = 0;
    Text name;
};

// Longer ones are passed over, so that input without an end of line needs no more memory than this.
constexpr std::size_t kMaximumSentence = 4096;

constexpr int kMsPerDay = 24 * 60 * 60 * 1000;

// Finds the next sentence, without its "$" and its end of line, and moves `position` behind it. A sentence ends with CR
// or LF, with the next "$" (then only if it has a checksum: otherwise it was cut), or at the end of the input. False
// if there is no further one; `position` then is the "$" of one that is not complete yet, or the end.
bool nextSentence(const char *&position, const char *end, bool endOfInput, Text *sentence) noexcept;

// Whether a sentence whose end of line is yet to come has its checksum already.
bool endsWithChecksum(const Text &text) noexcept;

// False for a sentence of another kind, of a maker's own kind ("$P..."), with a wrong checksum, or without one and with
// bytes that no sentence has, but for white space at its end. "GPRMC,...*hh" of any talker.
bool readSentence(const Text &text, Sentence *sentence) noexcept;

// All bytes between "$" and "*", combined by exclusive or.
unsigned char checksum(const char *begin, const char *end) noexcept;

// Each reads one thing, and says whether it could; otherwise the target stays as it is.
bool readNumber(const Text &text, double *number) noexcept;
bool readTime(const Text &text, int *msOfDay) noexcept; // hhmmss and any fraction, cut to milliseconds
bool readDate(const Text &text, QDate *date) noexcept;  // ddmmyy, the years 80 to 99 are of the 1900s
bool readDate(const Text &day, const Text &month, const Text &year, QDate *date) noexcept;
bool readLatitude(const Text &text, const Text &hemisphere, float *latitude) noexcept;   // ddmm.mmmm, south negative
bool readLongitude(const Text &text, const Text &hemisphere, float *longitude) noexcept; // dddmm.mmmm, west negative

// Takes the next quadruple from the front of `data`; false at its end. One whose value is no number has the type 0.
bool nextTransducer(Text *data, Transducer *transducer) noexcept;

// Compares with a name in capitals, in any case.
bool isName(const Text &text, const char *name) noexcept;

} // namespace Nmea
