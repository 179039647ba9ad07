#include "core/nmearecords.h"

#include "core/angles.h"
#include "core/orientation.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double kHectopascalPerBar = 1000.0;
constexpr double kHectopascalPerPascal = 0.01;
constexpr int kHalfDayMs = Nmea::kMsPerDay / 2;
constexpr int kClockSetBackMs = 60 * 60 * 1000;
constexpr int kStragglerMs = 60 * 1000;
constexpr int kMaximumQuality = 8;
constexpr int kQualityUnknown = 1;

constexpr qint64 kUnixEpoch = 2440588; // 1970-01-01 as a Julian day

// The time of a sentence that has one.
bool timeOf(const Nmea::Sentence &sentence, int *msOfDay) noexcept
{
    switch (sentence.kind) {
    case Nmea::Kind::Rmc:
    case Nmea::Kind::Gga:
    case Nmea::Kind::Zda:
        return Nmea::readTime(sentence.field(1), msOfDay);
    case Nmea::Kind::Gll:
        return Nmea::readTime(sentence.field(5), msOfDay);
    default:
        return false;
    }
}

bool isVoid(const Nmea::Sentence &sentence) noexcept
{
    return (sentence.kind == Nmea::Kind::Rmc && sentence.field(2).is('V')) ||
           (sentence.kind == Nmea::Kind::Gll && sentence.field(6).is('V'));
}

// The date of a sentence that has one, and what it is worth.
NmeaCalendar::Certainty dateOf(const Nmea::Sentence &sentence, QDate *date)
{
    const bool isRead = sentence.kind == Nmea::Kind::Rmc
                            ? Nmea::readDate(sentence.field(9), date)
                            : sentence.kind == Nmea::Kind::Zda &&
                                  Nmea::readDate(sentence.field(2), sentence.field(3), sentence.field(4), date);
    if (!isRead)
        return NmeaCalendar::Unknown;
    return isVoid(sentence) ? NmeaCalendar::WithoutFix : NmeaCalendar::Stated;
}

} // namespace

bool NmeaCalendar::set(qint64 julianDay, int msOfDay, Certainty certainty) noexcept
{
    if (certainty < m_certainty || certainty == Unknown)
        return false;
    m_certainty = certainty;
    m_julianDay = julianDay;
    m_msOfDay = msOfDay;
    return true;
}

qint64 NmeaCalendar::advance(int msOfDay)
{
    if (m_certainty == Unknown) {
        m_certainty = Assumed;
        m_julianDay = QDateTime::currentDateTimeUtc().date().toJulianDay();
    } else if (msOfDay < m_msOfDay - kClockSetBackMs) {
        ++m_julianDay;
    } else if (msOfDay > m_msOfDay + Nmea::kMsPerDay - kStragglerMs) {
        --m_julianDay;
    }
    m_msOfDay = msOfDay;
    return m_julianDay;
}

qint64 NmeaCalendar::nearest(int msOfDay) const noexcept
{
    if (msOfDay < m_msOfDay - kHalfDayMs)
        return m_julianDay + 1;
    return msOfDay > m_msOfDay + kHalfDayMs ? m_julianDay - 1 : m_julianDay;
}

bool NmeaDateSearch::add(const Nmea::Sentence &sentence)
{
    int msOfDay = 0;
    if (!timeOf(sentence, &msOfDay))
        return true;
    if (m_firstTime < 0) {
        m_firstTime = msOfDay;
        m_days.set(0, msOfDay, NmeaCalendar::Assumed);
    }
    const qint64 daysFromBegin = m_days.advance(msOfDay);

    QDate date;
    const NmeaCalendar::Certainty certainty = dateOf(sentence, &date);
    if (certainty > m_certainty) {
        m_certainty = certainty;
        m_firstDay = date.toJulianDay() - daysFromBegin;
    }
    return m_certainty != NmeaCalendar::Stated;
}

void NmeaDateSearch::setBegin(NmeaCalendar *calendar) const
{
    calendar->set(m_firstDay, m_firstTime, m_certainty);
}

NmeaRecords::NmeaRecords(const NmeaCalendar &calendar)
    : m_calendar(calendar)
{}

bool NmeaRecords::add(const Nmea::Sentence &sentence, AGeoData *record)
{
    using Nmea::Kind;
    if (sentence.kind == Kind::Hdg || sentence.kind == Kind::Xdr) {
        addSensors(sentence);
        return false;
    }
    int msOfDay = 0;
    if (!timeOf(sentence, &msOfDay))
        return false;
    // The date alone: receivers state it for the full second, beside fixes of its fractions.
    if (sentence.kind == Kind::Zda) {
        addZda(sentence);
        return false;
    }

    bool isCompleted = false;
    if (msOfDay != m_fix.msOfDay || isOfAnotherDay(sentence)) {
        dateBack(sentence, msOfDay);
        isCompleted = take(record);
        begin(msOfDay);
    }
    if (sentence.kind == Kind::Rmc)
        addRmc(sentence);
    else if (sentence.kind == Kind::Gga)
        addGga(sentence);
    else
        addGll(sentence);
    return isCompleted;
}

// The date that a sentence sets, if it does so.
bool NmeaRecords::statesDay(const Nmea::Sentence &sentence, qint64 *julianDay) const
{
    QDate date;
    const NmeaCalendar::Certainty certainty = dateOf(sentence, &date);
    *julianDay = date.toJulianDay();
    return certainty != NmeaCalendar::Unknown && certainty >= m_calendar.certainty();
}

// A log may hold the same time of several days, one after the other.
bool NmeaRecords::isOfAnotherDay(const Nmea::Sentence &sentence) const
{
    qint64 julianDay = 0;
    return m_fix.isDated && statesDay(sentence, &julianDay) && julianDay != m_fix.julianDay;
}

// The first date that is stated dates the fix before it too, which had to do with the current one.
void NmeaRecords::dateBack(const Nmea::Sentence &sentence, int msOfDay)
{
    qint64 julianDay = 0;
    if (m_calendar.certainty() != NmeaCalendar::Assumed || !statesDay(sentence, &julianDay))
        return;
    NmeaCalendar assumed = m_calendar;
    m_fix.julianDay += julianDay - assumed.advance(msOfDay);
}

bool NmeaRecords::awaitsDate() const noexcept
{
    return m_fix.isPending && m_isFirstTime && m_calendar.certainty() == NmeaCalendar::Assumed;
}

bool NmeaRecords::take(AGeoData *record)
{
    m_fix.isTaken = true;
    if (!std::exchange(m_fix.isPending, false) || m_fix.isVoid)
        return false;

    *record = AGeoData();
    record->recordTime =
        QDateTime::fromMSecsSinceEpoch((m_fix.julianDay - kUnixEpoch) * Nmea::kMsPerDay + m_fix.msOfDay, Qt::UTC);
    record->latitude = m_fix.latitude;
    record->longitude = m_fix.longitude;
    record->fix = static_cast<quint8>(m_fix.quality);
    record->speed = static_cast<float>(m_fix.speed);
    record->course = static_cast<float>(m_fix.course);
    record->altitude = static_cast<float>(m_fix.altitude);
    if (m_sensors.present)
        setSensors(m_sensors, record);
    return true;
}

void NmeaRecords::begin(int msOfDay)
{
    m_isFirstTime = m_fix.msOfDay < 0;
    m_fix = {};
    m_fix.msOfDay = msOfDay;
    m_fix.julianDay = m_calendar.advance(msOfDay);
    m_sensors = m_nextSensors;
    m_nextSensors = {};
}

void NmeaRecords::setPosition(const Nmea::Sentence &sentence, int firstField)
{
    float latitude = 0.0F;
    float longitude = 0.0F;
    if (!Nmea::readLatitude(sentence.field(firstField), sentence.field(firstField + 1), &latitude) ||
        !Nmea::readLongitude(sentence.field(firstField + 2), sentence.field(firstField + 3), &longitude))
        return;
    m_fix.latitude = latitude;
    m_fix.longitude = longitude;
    m_fix.quality = std::max(m_fix.quality, kQualityUnknown);
    m_fix.isPending = true;
    m_fix.isTaken = false;
}

void NmeaRecords::addRmc(const Nmea::Sentence &sentence)
{
    QDate date;
    const NmeaCalendar::Certainty certainty = dateOf(sentence, &date);
    if (m_calendar.set(date.toJulianDay(), m_fix.msOfDay, certainty)) {
        m_fix.julianDay = date.toJulianDay();
        m_fix.isDated = true;
    }
    if (isVoid(sentence)) {
        m_fix.isVoid = true;
        return;
    }
    setPosition(sentence, 3);
    Nmea::readNumber(sentence.field(7), &m_fix.speed);
    Nmea::readNumber(sentence.field(8), &m_fix.course);
}

void NmeaRecords::addGga(const Nmea::Sentence &sentence)
{
    double quality = 0.0;
    const bool saysQuality = Nmea::readNumber(sentence.field(6), &quality);
    if (saysQuality && quality < 1.0) {
        m_fix.isVoid = true;
        return;
    }
    setPosition(sentence, 2);
    if (saysQuality)
        m_fix.quality = static_cast<int>(std::min(quality, static_cast<double>(kMaximumQuality)));
    if (sentence.field(10).is('M'))
        Nmea::readNumber(sentence.field(9), &m_fix.altitude);
}

void NmeaRecords::addGll(const Nmea::Sentence &sentence)
{
    if (isVoid(sentence))
        m_fix.isVoid = true;
    else
        setPosition(sentence, 1);
}

void NmeaRecords::addZda(const Nmea::Sentence &sentence)
{
    QDate date;
    int msOfDay = 0;
    if (!timeOf(sentence, &msOfDay) || dateOf(sentence, &date) != NmeaCalendar::Stated)
        return;
    m_calendar.set(date.toJulianDay(), msOfDay, NmeaCalendar::Stated);
    if (!m_fix.isDated && m_fix.msOfDay >= 0)
        m_fix.julianDay = m_calendar.nearest(m_fix.msOfDay);
}

void NmeaRecords::addSensors(const Nmea::Sentence &sentence)
{
    Sensors *sensors = m_fix.msOfDay < 0 || m_fix.isTaken ? &m_nextSensors : &m_sensors;
    if (sentence.kind == Nmea::Kind::Hdg) {
        if (Nmea::readNumber(sentence.field(1), &sensors->heading))
            sensors->present |= Sensors::Heading;
        return;
    }
    Nmea::Text rest = sentence.data;
    Nmea::Transducer transducer;
    while (Nmea::nextTransducer(&rest, &transducer))
        addTransducer(transducer, sensors);
}

void NmeaRecords::addTransducer(const Nmea::Transducer &transducer, Sensors *sensors)
{
    if (transducer.type == '\0')
        return;
    if (transducer.type == 'P') {
        if (transducer.unit != 'B' && transducer.unit != 'P')
            return;
        sensors->airPressure = transducer.value * (transducer.unit == 'B' ? kHectopascalPerBar : kHectopascalPerPascal);
        sensors->present |= Sensors::Other;
        return;
    }
    if (Nmea::isName(transducer.name, "PITCH") || Nmea::isName(transducer.name, "PTCH")) {
        sensors->pitch = transducer.value;
        sensors->present |= Sensors::Tilt;
        return;
    }
    if (Nmea::isName(transducer.name, "ROLL")) {
        sensors->roll = transducer.value;
        sensors->present |= Sensors::Tilt;
        return;
    }

    struct Axis
    {
        const char *name;
        float (Sensors::*vector)[3];
        int index;
        Sensors::Flag flag;
    };
    static constexpr Axis kAxes[] = {
        {"ACCX", &Sensors::accelerometer, 0, Sensors::Accelerometer},
        {"ACCY", &Sensors::accelerometer, 1, Sensors::Accelerometer},
        {"ACCZ", &Sensors::accelerometer, 2, Sensors::Accelerometer},
        {"MAGX", &Sensors::magnetometer, 0, Sensors::Magnetometer},
        {"MAGY", &Sensors::magnetometer, 1, Sensors::Magnetometer},
        {"MAGZ", &Sensors::magnetometer, 2, Sensors::Magnetometer},
        {"GYRX", &Sensors::gyroscope, 0, Sensors::Other},
        {"GYRY", &Sensors::gyroscope, 1, Sensors::Other},
        {"GYRZ", &Sensors::gyroscope, 2, Sensors::Other},
    };
    for (const Axis &axis : kAxes) {
        if (!Nmea::isName(transducer.name, axis.name))
            continue;
        const bool isInDegrees = axis.vector == &Sensors::gyroscope && transducer.unit != 'R';
        (sensors->*axis.vector)[axis.index] =
            static_cast<float>(transducer.value * (isInDegrees ? kRadiansPerDegree : 1.0));
        sensors->present |= axis.flag;
        return;
    }
}

// A heading and a tilt become the vectors that sensors in that position would see.
void NmeaRecords::setSensors(const Sensors &sensors, AGeoData *record)
{
    std::copy_n(sensors.accelerometer, 3, record->accelerometer);
    std::copy_n(sensors.magnetometer, 3, record->magnetometer);
    std::copy_n(sensors.gyroscope, 3, record->gyroscope);
    record->airPressure = static_cast<float>(sensors.airPressure);

    Orientation orientation{sensors.heading * kRadiansPerDegree, sensors.pitch * kRadiansPerDegree,
                            sensors.roll * kRadiansPerDegree};
    if (sensors.present & Sensors::Tilt) {
        setGravity(orientation, record->accelerometer);
    } else if (sensors.present & Sensors::Accelerometer) {
        const QVector3D tilt = record->convertTiltToDegree();
        orientation.pitch = static_cast<double>(tilt.x()) * kRadiansPerDegree;
        orientation.roll = static_cast<double>(tilt.y()) * kRadiansPerDegree;
    }
    if (sensors.present & Sensors::Heading)
        setMagneticField(orientation, record->magnetometer);
}
