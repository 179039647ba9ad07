#pragma once

#include <QtTest/QtTest>

#include <cmath>
#include <initializer_list>
#include <utility>

// Channels of the example profiles as rows of a test table, written down from the public plans: centre frequencies and
// widths in hertz, not the lower edges and gaps that the profiles are made of.
namespace KnownChannels {

constexpr double kHz = 1e3;
constexpr double MHz = 1e6;
constexpr double GHz = 1e9;

using Centres = QList<double>;

// `group` is the label of the range around the channels, empty for the profile itself.
inline void addChannels(const char *file, const char *group, double width,
                        std::initializer_list<std::pair<const char *, Centres>> channels, double tolerance = 0)
{
    for (const auto &[label, centres] : channels) {
        QList<double> begins;
        QList<double> ends;
        for (const double centre : centres) {
            begins.append(centre - width / 2);
            ends.append(centre + width / 2);
        }
        QTest::addRow("%s, %s, %s", file, group, label) << QString::fromLatin1(file) << QString::fromLatin1(group)
                                                        << QString::fromLatin1(label) << begins << ends << tolerance;
    }
}

struct Band
{
    const char *label;
    double begin;
    double end;
};

inline void addBands(const char *file, const char *group, double unit, std::initializer_list<Band> bands)
{
    for (const Band &band : bands) {
        QTest::addRow("%s, %s, %s", file, group, band.label)
            << QString::fromLatin1(file) << QString::fromLatin1(group) << QString::fromLatin1(band.label)
            << QList<double>{std::round(band.begin * unit)} << QList<double>{std::round(band.end * unit)} << 0.0;
    }
}

inline void addColumns()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QList<double>>("begins");
    QTest::addColumn<QList<double>>("ends");
    QTest::addColumn<double>("tolerance");
}

inline void addBroadcasting()
{
    addChannels("am-broadcast", "Long wave", 9000,
                {{"153", {153'000}}, {"162", {162'000}}, {"198", {198'000}}, {"270", {270'000}}, {"279", {279'000}}});
    addChannels(
        "am-broadcast", "Medium wave", 9000,
        {{"531", {531'000}}, {"540", {540'000}}, {"999", {999'000}}, {"1593", {1593'000}}, {"1602", {1602'000}}});
    addChannels("fm-broadcast", "", 200'000,
                {{"876", {87'600'000}},
                 {"877", {87'700'000}},
                 {"885", {88'500'000}},
                 {"1000", {100'000'000}},
                 {"1055", {105'500'000}},
                 {"1079", {107'900'000}}});
    addChannels("fm-broadcast-us", "Reserved for noncommercial use", 200'000,
                {{"201", {88'100'000}}, {"202", {88'300'000}}, {"219", {91'700'000}}, {"220", {91'900'000}}});
    addChannels("fm-broadcast-us", "Unreserved", 200'000,
                {{"221", {92'100'000}}, {"250", {97'900'000}}, {"299", {107'700'000}}, {"300", {107'900'000}}});

    const double block = 1'536'000;
    addChannels("dab-band-iii", "5", block,
                {{"5A", {174'928'000}}, {"5B", {176'640'000}}, {"5C", {178'352'000}}, {"5D", {180'064'000}}});
    addChannels("dab-band-iii", "6", block,
                {{"6A", {181'936'000}}, {"6B", {183'648'000}}, {"6C", {185'360'000}}, {"6D", {187'072'000}}});
    addChannels("dab-band-iii", "7", block,
                {{"7A", {188'928'000}}, {"7B", {190'640'000}}, {"7C", {192'352'000}}, {"7D", {194'064'000}}});
    addChannels("dab-band-iii", "8", block,
                {{"8A", {195'936'000}}, {"8B", {197'648'000}}, {"8C", {199'360'000}}, {"8D", {201'072'000}}});
    addChannels("dab-band-iii", "9", block,
                {{"9A", {202'928'000}}, {"9B", {204'640'000}}, {"9C", {206'352'000}}, {"9D", {208'064'000}}});
    addChannels("dab-band-iii", "10", block,
                {{"10A", {209'936'000}},
                 {"10N", {210'096'000}},
                 {"10B", {211'648'000}},
                 {"10C", {213'360'000}},
                 {"10D", {215'072'000}}});
    addChannels("dab-band-iii", "11", block,
                {{"11A", {216'928'000}},
                 {"11N", {217'088'000}},
                 {"11B", {218'640'000}},
                 {"11C", {220'352'000}},
                 {"11D", {222'064'000}}});
    addChannels("dab-band-iii", "12", block,
                {{"12A", {223'936'000}},
                 {"12N", {224'096'000}},
                 {"12B", {225'648'000}},
                 {"12C", {227'360'000}},
                 {"12D", {229'072'000}}});
    addChannels("dab-band-iii", "13", block,
                {{"13A", {230'784'000}},
                 {"13B", {232'496'000}},
                 {"13C", {234'208'000}},
                 {"13D", {235'776'000}},
                 {"13E", {237'488'000}},
                 {"13F", {239'200'000}}});

    addChannels("uhf-television", "", 8 * MHz,
                {{"21", {474 * MHz}},
                 {"22", {482 * MHz}},
                 {"30", {546 * MHz}},
                 {"38", {610 * MHz}},
                 {"47", {682 * MHz}},
                 {"48", {690 * MHz}}});
}

inline void addMobile()
{
    const double carrier = 200'000;
    addChannels("gsm-900", "P-GSM", carrier,
                {{"1", {890'200'000, 935'200'000}},
                 {"2", {890'400'000, 935'400'000}},
                 {"62", {902'400'000, 947'400'000}},
                 {"123", {914'600'000, 959'600'000}},
                 {"124", {914'800'000, 959'800'000}}});
    addChannels("gsm-900", "E-GSM extension", carrier,
                {{"975", {880'200'000, 925'200'000}},
                 {"1000", {885'200'000, 930'200'000}},
                 {"1023", {889'800'000, 934'800'000}},
                 {"0", {890'000'000, 935'000'000}}});
    addChannels("gsm-900", "GSM-R", carrier,
                {{"955", {876'200'000, 921'200'000}},
                 {"960", {877'200'000, 922'200'000}},
                 {"973", {879'800'000, 924'800'000}}});
    addChannels("gsm-1800", "DCS 1800", carrier,
                {{"512", {1'710'200'000, 1'805'200'000}},
                 {"513", {1'710'400'000, 1'805'400'000}},
                 {"700", {1'747'800'000, 1'842'800'000}},
                 {"885", {1'784'800'000, 1'879'800'000}}});

    const double block = 5 * MHz;
    addChannels("lte-band-20", "Band 20", block,
                {{"1", {793'500'000, 834'500'000}},
                 {"2", {798'500'000, 839'500'000}},
                 {"4", {808'500'000, 849'500'000}},
                 {"6", {818'500'000, 859'500'000}}});
    addChannels("lte-nr-fdd-bands", "Band 1", block,
                {{"1", {1'922'500'000, 2'112'500'000}},
                 {"6", {1'947'500'000, 2'137'500'000}},
                 {"12", {1'977'500'000, 2'167'500'000}}});
    addChannels("lte-nr-fdd-bands", "Band 3", block,
                {{"1", {1'712'500'000, 1'807'500'000}},
                 {"8", {1'747'500'000, 1'842'500'000}},
                 {"15", {1'782'500'000, 1'877'500'000}}});
    addChannels("lte-nr-fdd-bands", "Band 7", block,
                {{"1", {2'502'500'000, 2'622'500'000}},
                 {"7", {2'532'500'000, 2'652'500'000}},
                 {"14", {2'567'500'000, 2'687'500'000}}});
    addChannels(
        "lte-nr-fdd-bands", "Band 8", block,
        {{"1", {882'500'000, 927'500'000}}, {"4", {897'500'000, 942'500'000}}, {"7", {912'500'000, 957'500'000}}});
    addChannels(
        "lte-nr-fdd-bands", "Band 28", block,
        {{"1", {705'500'000, 760'500'000}}, {"6", {730'500'000, 785'500'000}}, {"9", {745'500'000, 800'500'000}}});
    addChannels("dect", "", 1'728'000,
                {{"0", {1'897'344'000}},
                 {"1", {1'895'616'000}},
                 {"5", {1'888'704'000}},
                 {"8", {1'883'520'000}},
                 {"9", {1'881'792'000}}});
}

inline void addVoice()
{
    addChannels("pmr446", "12.5 kHz", 12'500,
                {{"1", {446'006'250}},
                 {"2", {446'018'750}},
                 {"8", {446'093'750}},
                 {"9", {446'106'250}},
                 {"16", {446'193'750}}});
    addChannels("pmr446", "6.25 kHz", 6'250,
                {{"1", {446'003'125}}, {"2", {446'009'375}}, {"17", {446'103'125}}, {"32", {446'196'875}}});

    addChannels("airband", "25 kHz", 25'000,
                {{"118000", {118'000'000}},
                 {"118025", {118'025'000}},
                 {"121500", {121'500'000}},
                 {"127500", {127'500'000}},
                 {"136975", {136'975'000}}});
    const double third = 25'000 / 3.0; // the true pitch
    addChannels("airband", "8.33 kHz", third,
                {{"118005", {118'000'000}},
                 {"118010", {118'000'000 + third}},
                 {"118015", {118'000'000 + 2 * third}},
                 {"118030", {118'025'000}},
                 {"118035", {118'025'000 + third}},
                 {"118040", {118'025'000 + 2 * third}},
                 {"127480", {127'475'000}},
                 {"127485", {127'475'000 + third}},
                 {"132990", {132'975'000 + 2 * third}},
                 {"136980", {136'975'000}},
                 {"136985", {136'975'000 + third}},
                 {"136990", {136'975'000 + 2 * third}}},
                1.0);
    addChannels("airband", "", 25'000, {{"Emergency", {121'500'000}}});

    const double channel = 25'000;
    addChannels("marine-vhf", "Duplex 1-7, 60-66", channel,
                {{"1", {156'050'000, 160'650'000}},
                 {"5", {156'250'000, 160'850'000}},
                 {"7", {156'350'000, 160'950'000}},
                 {"60", {156'025'000, 160'625'000}},
                 {"66", {156'325'000, 160'925'000}}});
    addChannels("marine-vhf", "Duplex 18-28, 78-86", channel,
                {{"18", {156'900'000, 161'500'000}},
                 {"20", {157'000'000, 161'600'000}},
                 {"28", {157'400'000, 162'000'000}},
                 {"78", {156'925'000, 161'525'000}},
                 {"86", {157'325'000, 161'925'000}}});
    addChannels("marine-vhf", "Simplex", channel,
                {{"6", {156'300'000}},
                 {"8", {156'400'000}},
                 {"13", {156'650'000}},
                 {"15", {156'750'000}},
                 {"16", {156'800'000}},
                 {"17", {156'850'000}},
                 {"67", {156'375'000}},
                 {"69", {156'475'000}},
                 {"70", {156'525'000}},
                 {"71", {156'575'000}},
                 {"72", {156'625'000}},
                 {"77", {156'875'000}},
                 {"87", {157'375'000}},
                 {"88", {157'425'000}}});
    addChannels("marine-vhf", "", channel, {{"AIS 1", {161'975'000}}, {"AIS 2", {162'025'000}}});

    addChannels("cb-radio", "", 10'000,
                {{"1", {26'965'000}},  {"3", {26'985'000}},   {"3A", {26'995'000}}, {"4", {27'005'000}},
                 {"7", {27'035'000}},  {"7A", {27'045'000}},  {"8", {27'055'000}},  {"9", {27'065'000}},
                 {"11", {27'085'000}}, {"11A", {27'095'000}}, {"12", {27'105'000}}, {"15", {27'135'000}},
                 {"16", {27'155'000}}, {"15A", {27'145'000}}, {"19", {27'185'000}}, {"19A", {27'195'000}},
                 {"20", {27'205'000}}, {"22", {27'225'000}},  {"23", {27'255'000}}, {"24", {27'235'000}},
                 {"25", {27'245'000}}, {"26", {27'265'000}},  {"30", {27'305'000}}, {"40", {27'405'000}}});
    addChannels("amateur-2m", "FM simplex (V)", 12'500,
                {{"17", {145'212'500}}, {"18", {145'225'000}}, {"40", {145'500'000}}, {"45", {145'562'500}}});
    addChannels("amateur-2m", "FM repeaters (RV)", 12'500,
                {{"48", {145'000'000, 145'600'000}},
                 {"49", {145'012'500, 145'612'500}},
                 {"56", {145'100'000, 145'700'000}},
                 {"63", {145'187'500, 145'787'500}}});
}

inline void addLicenceFree()
{
    addChannels("lpd433", "", 25'000,
                {{"1", {433'075'000}},
                 {"2", {433'100'000}},
                 {"18", {433'500'000}},
                 {"34", {433'900'000}},
                 {"69", {434'775'000}}});
    addBands("srd-868", "Non-specific", MHz,
             {{"863-865", 863, 865},
              {"865-868", 865, 868},
              {"868-868.6", 868, 868.6},
              {"868.7-869.2", 868.7, 869.2},
              {"869.4-869.65", 869.4, 869.65},
              {"869.7-870", 869.7, 870}});
    addBands("srd-868", "Alarms", MHz,
             {{"868.6-868.7", 868.6, 868.7},
              {"869.2-869.25", 869.2, 869.25},
              {"869.25-869.3", 869.25, 869.3},
              {"869.3-869.4", 869.3, 869.4},
              {"869.65-869.7", 869.65, 869.7}});
    addBands("ism-bands", "", kHz, {{"6.78 MHz", 6765, 6795}, {"13.56 MHz", 13553, 13567}, {"27 MHz", 26957, 27283}});
    addBands("ism-bands", "", MHz,
             {{"40.68 MHz", 40.66, 40.70},
              {"433 MHz", 433.05, 434.79},
              {"915 MHz", 902, 928},
              {"2.45 GHz", 2400, 2500},
              {"5.8 GHz", 5725, 5875}});
    addBands("ism-bands", "", GHz,
             {{"24 GHz", 24, 24.25}, {"61 GHz", 61, 61.5}, {"122 GHz", 122, 123}, {"245 GHz", 244, 246}});

    addChannels(
        "wlan-2g4", "Channels 1-13", 22 * MHz,
        {{"1", {2412 * MHz}}, {"2", {2417 * MHz}}, {"6", {2437 * MHz}}, {"11", {2462 * MHz}}, {"13", {2472 * MHz}}});
    addChannels("wlan-2g4", "Japan", 22 * MHz, {{"14", {2484 * MHz}}});

    const double channel = 20 * MHz;
    addChannels("wlan-5g", "U-NII-1", channel,
                {{"36", {5180 * MHz}}, {"40", {5200 * MHz}}, {"44", {5220 * MHz}}, {"48", {5240 * MHz}}});
    addChannels("wlan-5g", "U-NII-2A", channel, {{"52", {5260 * MHz}}, {"60", {5300 * MHz}}, {"64", {5320 * MHz}}});
    addChannels("wlan-5g", "U-NII-2C", channel,
                {{"100", {5500 * MHz}}, {"120", {5600 * MHz}}, {"140", {5700 * MHz}}, {"144", {5720 * MHz}}});
    addChannels("wlan-5g", "U-NII-3", channel, {{"149", {5745 * MHz}}, {"157", {5785 * MHz}}, {"165", {5825 * MHz}}});
    addChannels("wlan-5g", "U-NII-4", channel, {{"169", {5845 * MHz}}, {"173", {5865 * MHz}}, {"177", {5885 * MHz}}});
    addChannels("wlan-6g", "20 MHz", channel, {{"1", {5955 * MHz}}, {"5", {5975 * MHz}}, {"93", {6415 * MHz}}});
    addChannels("wlan-6g", "40 MHz", 40 * MHz, {{"3", {5965 * MHz}}, {"11", {6005 * MHz}}, {"91", {6405 * MHz}}});
    addChannels("wlan-6g", "80 MHz", 80 * MHz, {{"7", {5985 * MHz}}, {"23", {6065 * MHz}}, {"87", {6385 * MHz}}});
    addChannels("wlan-6g", "160 MHz", 160 * MHz, {{"15", {6025 * MHz}}, {"47", {6185 * MHz}}, {"79", {6345 * MHz}}});

    addChannels("bluetooth-le", "Advertising", 2 * MHz,
                {{"37", {2402 * MHz}}, {"38", {2426 * MHz}}, {"39", {2480 * MHz}}});
    addChannels("bluetooth-le", "Data", 2 * MHz,
                {{"0", {2404 * MHz}}, {"10", {2424 * MHz}}, {"11", {2428 * MHz}}, {"36", {2478 * MHz}}});
}

// The ranges that hold channels, each by its label, the profile itself without one.
inline void addRanges()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("label");
    QTest::addColumn<double>("begin");
    QTest::addColumn<double>("end");
    const auto ranges = [](const char *file, double unit, std::initializer_list<Band> list) {
        for (const Band &range : list) {
            QTest::addRow("%s, %s", file, range.label)
                << QString::fromLatin1(file) << QString::fromLatin1(range.label) << std::round(range.begin * unit)
                << std::round(range.end * unit);
        }
    };
    ranges("airband", MHz, {{"", 117.975, 137}, {"25 kHz", 117.975, 137}, {"8.33 kHz", 117.975, 137}});
    ranges("am-broadcast", kHz, {{"", 148.5, 1606.5}, {"Long wave", 148.5, 283.5}, {"Medium wave", 526.5, 1606.5}});
    ranges("amateur-2m", MHz,
           {{"", 144, 146}, {"FM simplex (V)", 145.20625, 145.56875}, {"FM repeaters (RV)", 145.59375, 145.79375}});
    ranges("bluetooth-le", MHz, {{"", 2400, 2483.5}, {"Advertising", 2401, 2481}, {"Data", 2403, 2479}});
    ranges("cb-radio", MHz, {{"", 26.96, 27.41}});
    ranges("dab-band-iii", MHz,
           {{"", 174, 240},
            {"5", 174, 181},
            {"6", 181, 188},
            {"7", 188, 195},
            {"8", 195, 202},
            {"9", 202, 209},
            {"10", 209, 216},
            {"11", 216, 223},
            {"12", 223, 230},
            {"13", 230, 240}});
    ranges("dect", MHz, {{"", 1880, 1900}});
    ranges("fm-broadcast", MHz, {{"", 87.5, 108}});
    ranges("fm-broadcast-us", MHz,
           {{"", 88, 108}, {"Reserved for noncommercial use", 88, 92}, {"Unreserved", 92, 108}});
    ranges("gsm-1800", MHz, {{"", 1710, 1880}, {"DCS 1800", 1710, 1785}});
    ranges("gsm-900", MHz, {{"", 876, 960}, {"GSM-R", 876, 880}, {"E-GSM extension", 880, 890.1}, {"P-GSM", 890, 915}});
    ranges("ism-bands", MHz, {{"", 6.765, 246000}});
    ranges("lpd433", MHz, {{"", 433.05, 434.79}});
    ranges("lte-band-20", MHz, {{"", 791, 862}, {"Band 20", 832, 862}});
    ranges("lte-nr-fdd-bands", MHz,
           {{"", 703, 2690},
            {"Band 1", 1920, 1980},
            {"Band 3", 1710, 1785},
            {"Band 7", 2500, 2570},
            {"Band 8", 880, 915},
            {"Band 28", 703, 748}});
    ranges("marine-vhf", MHz,
           {{"", 156, 162.05},
            {"Duplex 1-7, 60-66", 156.0125, 156.3625},
            {"Duplex 18-28, 78-86", 156.8875, 157.4125},
            {"Simplex", 156.2875, 157.4375}});
    ranges("pmr446", MHz, {{"", 446, 446.2}, {"12.5 kHz", 446, 446.2}, {"6.25 kHz", 446, 446.2}});
    ranges("srd-868", MHz, {{"", 863, 870}, {"Non-specific", 863, 870}, {"Alarms", 868.6, 869.7}});
    ranges("uhf-television", MHz, {{"", 470, 694}});
    ranges("wlan-2g4", MHz, {{"", 2400, 2497}, {"Channels 1-13", 2400, 2483.5}, {"Japan", 2471, 2497}});
    ranges("wlan-5g", MHz,
           {{"", 5150, 5895},
            {"U-NII-1", 5150, 5250},
            {"U-NII-2A", 5250, 5350},
            {"U-NII-2C", 5470, 5725},
            {"U-NII-3", 5725, 5850},
            {"U-NII-4", 5850, 5895}});
    ranges("wlan-6g", MHz,
           {{"", 5945, 6425},
            {"20 MHz", 5945, 6425},
            {"40 MHz", 5945, 6425},
            {"80 MHz", 5945, 6425},
            {"160 MHz", 5945, 6425}});
}

} // namespace KnownChannels
