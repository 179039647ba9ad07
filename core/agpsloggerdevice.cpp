#include "core/agpsloggerdevice.h"

#include "core/nmea.h"
#include "core/nmearecords.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtCore/QSocketNotifier>
#include <QtCore/QTimer>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::size_t kBufferSize = std::size_t(64) * 1024; // read at once
constexpr int kPauseMs = 200;     // longer than receivers rest between the sentences of one time
constexpr int kDateWaitMs = 1000; // how much longer the first record waits for a date
constexpr qint64 kLongestTurnMs = 1000;

// What was read and is not parsed yet: whole sentences, and at the end one of which a part is still to come.
class Input
{
public:
    char *freeBegin()
    {
        if (m_begin != 0) {
            std::memmove(m_bytes.data(), m_bytes.data() + m_begin, m_end - m_begin);
            m_end -= m_begin;
            m_begin = 0;
        }
        m_bytes.resize(kBufferSize);
        return m_bytes.data() + m_end;
    }
    // Never 0: what stays behind is shorter than the longest sentence.
    std::size_t freeSize() const noexcept { return kBufferSize - m_end; }
    void addRead(std::size_t size) noexcept { m_end += size; }
    void clear() noexcept { m_begin = m_end = 0; }

    bool takeSentence(bool endOfInput, Nmea::Text *sentence) noexcept
    {
        const char *position = m_bytes.data() + m_begin;
        const bool found = Nmea::nextSentence(position, m_bytes.data() + m_end, endOfInput, sentence);
        m_begin = static_cast<std::size_t>(position - m_bytes.data());
        return found;
    }

    bool endsWithChecksum() const noexcept
    {
        return Nmea::endsWithChecksum({m_bytes.data() + m_begin, m_bytes.data() + m_end});
    }

private:
    std::vector<char> m_bytes;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
};

// A terminal or a pipe with a place in the file system. QFile knows only once it is open.
bool isTerminalOrPipe(const QFileDevice *file)
{
    if (file->isOpen())
        return file->isSequential();
    struct stat status = {};
    return ::stat(QFile::encodeName(file->fileName()).constData(), &status) == 0 &&
           (S_ISFIFO(status.st_mode) || S_ISCHR(status.st_mode));
}

// A terminal or a pipe on disk is opened without waiting for its other side.
bool openWithoutWaiting(QFile *file)
{
    constexpr int kAccess = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    const int descriptor = ::open(QFile::encodeName(file->fileName()).constData(), kAccess);
    if (descriptor < 0)
        return false;
    if (file->open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle))
        return true;
    ::close(descriptor);
    return false;
}

bool openForReading(QIODevice *io)
{
    if (auto *file = qobject_cast<QFile *>(io); file && isTerminalOrPipe(file))
        return openWithoutWaiting(file);
    if (qobject_cast<QFileDevice *>(io))
        return io->open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    if (io->inherits("QAbstractSocket")) // only the application knows where it leads to
        return false;
    // Both ways if possible, for loadFile().
    return (io->isSequential() && io->open(QIODevice::ReadWrite)) || io->open(QIODevice::ReadOnly);
}

// What is waited for before a receiver counts as pausing.
enum class PauseStage
{
    Resting, // further sentences
    Polling, // bytes that came while the event loop was blocked, and have to pass through it
    Dating,  // the date of the first record
};

enum class ReadResult
{
    Data,
    NothingYet,
    End,
};

} // namespace

struct AGpsLoggerDevice::Private
{
    QPointer<QIODevice> io;
    AVeldoranChipInformation chipInformation;
    std::optional<bool> streaming; // as it was set
    bool isInitialised = false;
    bool isInTurn = false;
    bool hasDelivered = false; // in this turn
    bool isEnding = false;     // no further data comes, what is buffered is still to be read
    bool isEnded = false;
    bool isConnecting = false; // perhaps: a socket of which nothing was read yet
    QTimer connectionFailed;
    std::unique_ptr<QSocketNotifier> notifier; // of a file that is a terminal or a pipe
    QTimer turns;
    QTimer pause;
    int restMs = kPauseMs;
    PauseStage pauseStage = PauseStage::Resting;

    Input input;
    NmeaRecords records;
    std::optional<NmeaDateSearch> dateSearch; // while a file is searched ahead
    qint64 beginOfFile = 0;

    // What comes as it comes, in contrast to what stands still while nobody reads.
    bool isLive() const { return io && io->isSequential(); }
    bool isHalted(const AGpsLoggerDevice *logger) const { return io && !isLive() && !logger->isStreaming(); }
    void scheduleTurns();
    ReadResult read();
    ReadResult readDescriptor();
    void turn(AGpsLoggerDevice *logger);
    bool step(AGpsLoggerDevice *logger);
    void searchDate();
    bool deliver(AGpsLoggerDevice *logger, const AGeoData &record);
    bool parse(AGpsLoggerDevice *logger, bool endOfInput);
    void watchConnection();
    void beginPause(PauseStage stage);
    void endPause(AGpsLoggerDevice *logger);
    void end(AGpsLoggerDevice *logger);
};

void AGpsLoggerDevice::Private::scheduleTurns()
{
    if (isInitialised && !isEnded && !turns.isActive())
        turns.start();
}

// One read alone, since QFile's own would wait for all that it was asked for.
ReadResult AGpsLoggerDevice::Private::readDescriptor()
{
    const auto *file = static_cast<const QFileDevice *>(io.data());
    pollfd wanted{file->handle(), POLLIN, 0};
    if (::poll(&wanted, 1, 0) <= 0)
        return ReadResult::NothingYet;
    const ssize_t size = ::read(file->handle(), input.freeBegin(), input.freeSize());
    if (size < 0 && (errno == EAGAIN || errno == EINTR))
        return ReadResult::NothingYet;
    if (size <= 0)
        return ReadResult::End;
    input.addRead(static_cast<std::size_t>(size));
    return ReadResult::Data;
}

ReadResult AGpsLoggerDevice::Private::read()
{
    if (!io || !io->isReadable())
        return ReadResult::End;
    if (notifier && io->bytesAvailable() == 0)
        return readDescriptor();
    char *target = input.freeBegin();
    const auto wanted = static_cast<qint64>(input.freeSize());
    const qint64 size = io->read(target, notifier ? std::min(wanted, io->bytesAvailable()) : wanted);
    if (size > 0) {
        input.addRead(static_cast<std::size_t>(size));
        return ReadResult::Data;
    }
    isConnecting = isConnecting && size < 0 && !isEnding;
    if (isConnecting)
        return ReadResult::NothingYet;
    return size < 0 || isEnding || !isLive() ? ReadResult::End : ReadResult::NothingYet;
}

bool AGpsLoggerDevice::Private::deliver(AGpsLoggerDevice *logger, const AGeoData &record)
{
    const QPointer<AGpsLoggerDevice> alive(logger);
    hasDelivered = true;
    Q_EMIT logger->gpsRecordRead(record);
    return alive;
}

// False if a receiver of the signal has deleted the logger.
bool AGpsLoggerDevice::Private::parse(AGpsLoggerDevice *logger, bool endOfInput)
{
    Nmea::Text text;
    Nmea::Sentence sentence;
    AGeoData record;
    isInTurn = true;
    while (!isHalted(logger) && input.takeSentence(endOfInput, &text)) {
        if (!Nmea::readSentence(text, &sentence) || !records.add(sentence, &record) || !logger->isStreaming())
            continue;
        if (!deliver(logger, record))
            return false;
    }
    isInTurn = false;
    return true;
}

void AGpsLoggerDevice::Private::searchDate()
{
    const ReadResult result = read();
    Nmea::Text text;
    Nmea::Sentence sentence;
    bool isSearching = result == ReadResult::Data;
    while (isSearching && input.takeSentence(false, &text))
        isSearching = !Nmea::readSentence(text, &sentence) || dateSearch->add(sentence);
    if (isSearching)
        return;
    if (result == ReadResult::End && input.takeSentence(true, &text) && Nmea::readSentence(text, &sentence))
        dateSearch->add(sentence);

    NmeaCalendar calendar;
    dateSearch->setBegin(&calendar);
    dateSearch.reset();
    records = NmeaRecords(calendar);
    input.clear();
    if (io)
        io->seek(beginOfFile);
}

// What stands still is read up to a record, so that a long way to it isn't taken for silence.
void AGpsLoggerDevice::Private::turn(AGpsLoggerDevice *logger)
{
    if (isInTurn || isEnded) // a receiver of a record may run an event loop of its own
        return;
    QElapsedTimer clock;
    clock.start();
    hasDelivered = false;
    while (step(logger)) {
        if (isLive() || hasDelivered || clock.elapsed() >= kLongestTurnMs)
            return;
    }
}

// False if there is nothing more to do for now, or a receiver of the signal has deleted the logger.
bool AGpsLoggerDevice::Private::step(AGpsLoggerDevice *logger)
{
    if (dateSearch && !isHalted(logger)) {
        searchDate();
        return true;
    }
    if (!parse(logger, false)) // what a halt has left
        return false;
    if (isHalted(logger)) {
        turns.stop();
        return false;
    }
    const ReadResult result = read();
    if (!parse(logger, result == ReadResult::End))
        return false;
    if (result == ReadResult::End && !isHalted(logger)) {
        end(logger);
        return false;
    }
    if (result == ReadResult::NothingYet || notifier)
        turns.stop();
    if (isLive() && result == ReadResult::Data)
        beginPause(PauseStage::Resting);
    return true;
}

void AGpsLoggerDevice::Private::beginPause(PauseStage stage)
{
    pauseStage = stage;
    pause.start(stage == PauseStage::Resting ? restMs : stage == PauseStage::Dating ? kDateWaitMs : 0);
}

void AGpsLoggerDevice::Private::endPause(AGpsLoggerDevice *logger)
{
    if (isEnded)
        return;
    if (isInTurn) { // in the event loop of a receiver of a record
        beginPause(PauseStage::Resting);
        return;
    }
    const ReadResult result = read();
    if (result == ReadResult::Data) {
        beginPause(PauseStage::Resting);
        parse(logger, false);
        return;
    }
    if (result == ReadResult::End) {
        scheduleTurns();
        return;
    }
    if (pauseStage == PauseStage::Resting) {
        beginPause(PauseStage::Polling);
        return;
    }
    // The end of line of a last sentence may come with the next one.
    if (input.endsWithChecksum() && !parse(logger, true))
        return;
    if (pauseStage == PauseStage::Polling && records.awaitsDate()) {
        beginPause(PauseStage::Dating);
        return;
    }
    AGeoData record;
    if (!records.take(&record) || !logger->isStreaming())
        return;
    isInTurn = true;
    if (deliver(logger, record))
        isInTurn = false;
}

// A socket that is looking up its host or connecting can't be read, like one that has ended. An attempt that fails
// tells so by its error alone; a later error, such as a wait of the application that timed out, means nothing. By name,
// since the library isn't linked with QtNetwork.
void AGpsLoggerDevice::Private::watchConnection()
{
    const bool isLocal = io->inherits("QLocalSocket");
    if (!isLocal && !io->inherits("QAbstractSocket"))
        return;
    isConnecting = true;
    QObject::connect(io,
                     isLocal ? SIGNAL(errorOccurred(QLocalSocket::LocalSocketError))
                             : SIGNAL(errorOccurred(QAbstractSocket::SocketError)),
                     &connectionFailed, SLOT(start()));
}

void AGpsLoggerDevice::Private::end(AGpsLoggerDevice *logger)
{
    isEnded = true;
    turns.stop();
    pause.stop();
    if (notifier)
        notifier->setEnabled(false);
    AGeoData record;
    if (records.take(&record) && logger->isStreaming() && !deliver(logger, record))
        return;
    Q_EMIT logger->finished();
}

AGpsLoggerDevice::AGpsLoggerDevice(QObject *parent, QIODevice *io)
    : QObject(parent)
    , d(std::make_unique<Private>())
{
    d->io = io;
    if (io && !io->parent())
        io->setParent(this);

    d->turns.setInterval(0);
    connect(&d->turns, &QTimer::timeout, this, [this] { d->turn(this); });
    d->pause.setSingleShot(true);
    connect(&d->pause, &QTimer::timeout, this, [this] { d->endPause(this); });
    d->connectionFailed.setSingleShot(true);
    connect(&d->connectionFailed, &QTimer::timeout, this, [this] {
        d->isConnecting = false;
        d->scheduleTurns();
    });
}

AGpsLoggerDevice::~AGpsLoggerDevice() = default;

bool AGpsLoggerDevice::init()
{
    if (d->isInitialised)
        return true;
    QIODevice *io = d->io;
    if (!io)
        return false;
    if (!io->isOpen() && !openForReading(io))
        return false;
    if (!io->isReadable())
        return false;

    d->isInitialised = true;
    d->watchConnection();
    if (!io->isSequential()) {
        d->beginOfFile = io->pos();
        d->dateSearch.emplace();
    } else if (const auto *file = qobject_cast<QFileDevice *>(io); file && file->handle() >= 0) {
        d->notifier = std::make_unique<QSocketNotifier>(file->handle(), QSocketNotifier::Read);
        connect(d->notifier.get(), &QSocketNotifier::activated, this, [this] { d->turn(this); });
    }
    connect(io, &QIODevice::readyRead, this, [this] { d->scheduleTurns(); });
    const auto endInput = [this] {
        d->isEnding = true;
        if (d->notifier) // the descriptor is about to become another's
            d->notifier->setEnabled(false);
        d->scheduleTurns();
    };
    connect(io, &QIODevice::readChannelFinished, this, endInput);
    connect(io, &QIODevice::aboutToClose, this, endInput);
    connect(io, &QObject::destroyed, this, endInput);
    d->scheduleTurns();
    return true;
}

bool AGpsLoggerDevice::loadFile(int number)
{
    if (number < 1 || ioIsFile() || !d->io || !d->io->isWritable())
        return false;
    const QByteArray body = "PAVLOAD," + QByteArray::number(number);
    const unsigned int checksum = Nmea::checksum(body.cbegin(), body.cend());
    const QByteArray command =
        '$' + body + '*' + QByteArray::number(checksum, 16).toUpper().rightJustified(2, '0') + "\r\n";
    return d->io->write(command) == command.size();
}

bool AGpsLoggerDevice::ioIsFile() const
{
    const auto *file = qobject_cast<const QFileDevice *>(d->io.data());
    return file && !isTerminalOrPipe(file);
}

void AGpsLoggerDevice::setStreaming(bool streaming)
{
    AGeoData passedOver;
    if (streaming && !isStreaming() && d->isLive())
        d->records.take(&passedOver);
    d->streaming = streaming;
    if (streaming)
        d->scheduleTurns();
}

bool AGpsLoggerDevice::isStreaming() const
{
    return d->streaming.value_or(d->isInitialised && !ioIsFile());
}

int AGpsLoggerDevice::pause() const
{
    return d->restMs;
}

void AGpsLoggerDevice::setPause(int milliseconds)
{
    d->restMs = qMax(milliseconds, 0);
}

AVeldoranChipInformation AGpsLoggerDevice::chipinfo() const
{
    return d->chipInformation;
}

void AGpsLoggerDevice::setChipinfo(const AVeldoranChipInformation &chipInformation)
{
    d->chipInformation = chipInformation;
}
