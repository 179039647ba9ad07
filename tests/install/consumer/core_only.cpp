#include <core/afrequency.h>

#include <cstdio>

int main()
{
    const AFrequency sum = AFrequency("88.1 MHz") + AFrequency("100 kHz");
    std::puts(qPrintable(sum.formatString(QStringLiteral("%1 %2"), AFrequency::NoUnit, 0, 'f', -1)));
    return 0;
}
