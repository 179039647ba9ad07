// Runs a fuzz target over files, and over the files of directories, in builds without libFuzzer: the corpus as a test,
// or one finding under a debugger. Fails if something can't be read or there was no input at all.

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QStringList>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int *argc, char ***argv); // a target need not have one

namespace {

QStringList filesAt(const QString &path)
{
    if (!QFileInfo(path).isDir())
        return {path};
    QStringList files;
    const QFileInfoList entries = QDir(path).entryInfoList(QDir::Files | QDir::Hidden, QDir::Name);
    for (const QFileInfo &entry : entries)
        files.append(entry.filePath());
    return files;
}

bool runFile(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(name), qPrintable(file.errorString()));
        return false;
    }
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(name), qPrintable(file.errorString()));
        return false;
    }
    // A buffer of exactly this size: a byte read behind it is seen by AddressSanitizer.
    const std::vector<std::uint8_t> bytes(content.begin(), content.end());
    std::printf("%s: %zu bytes\n", qPrintable(name), bytes.size());
    std::fflush(stdout); // the last line names the input of a crash
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    if (LLVMFuzzerInitialize)
        LLVMFuzzerInitialize(&argc, &argv);
    int count = 0;
    int failures = 0;
    for (int i = 1; i < argc; ++i) {
        const QStringList files = filesAt(QFile::decodeName(argv[i]));
        for (const QString &file : files) {
            ++count;
            failures += runFile(file) ? 0 : 1;
        }
    }
    std::printf("%d inputs, %d could not be read\n", count, failures);
    if (count == 0)
        std::fprintf(stderr, "%s: no input; expected files or directories with files\n", argv[0]);
    return count > 0 && failures == 0 ? 0 : 1;
}
