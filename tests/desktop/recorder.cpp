// The program that the tests of the desktop services have started. It writes the name that it was called by and its
// arguments, each with a zero byte behind it, into the file that AVELDORAN_RECORD names, whole or not at all.

#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argc, char **argv)
{
    const char *record = std::getenv("AVELDORAN_RECORD");
    if (!record)
        return 2;
    const std::string part = std::string(record) + ".part";
    std::FILE *file = std::fopen(part.c_str(), "wb");
    if (!file)
        return 1;
    for (int i = 0; i < argc; ++i)
        std::fwrite(argv[i], 1, std::string(argv[i]).size() + 1, file);
    return std::fclose(file) == 0 && std::rename(part.c_str(), record) == 0 ? 0 : 1;
}
