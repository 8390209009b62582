// Writes one set of made-up figures twice, for bench/peers.sh: as a Kavendi repository
// (measure cov4 of user "peer", written by the sample writer) and as the XML dump of a
// round-robin database of one row per step, for `rrdtool restore`. Both hold the same
// four series, value for value and second for second.
//
// Usage: peerdata DIR [POINTS] [STEP] [START]
//   DIR/repo/cov4.peer.4.{kvd,idx} and DIR/peer.xml; POINTS per series (default
//   250000), STEP seconds apart (default 126) from the first multiple of STEP at or after
//   START (seconds since 1970, default 2023-01-01 00:00 UTC).
#include "kvdrandom.h"
#include "kvdsamplewriter.h"

#include <QDir>
#include <QFile>
#include <QString>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int Series = 4;
const char* const Names[Series] = {"statements", "branches", "functions", "conditions"};

// Series k at point i: a slow rise, a daily swing and a random walk, whole and positive,
// so that the database's doubles hold exactly what the measure file's words do.
struct Generator
{
    KVDRandom random{13};
    double walk[Series] = {};

    void values(qint64 i, quint32 date, quint32* out)
    {
        const double day = std::fmod(double(date), 86400.0) / 86400.0;
        for (int k = 0; k < Series; ++k) {
            walk[k] += (random.uniform() - 0.5) * 400.0 * (k + 1);
            walk[k] = std::fmax(-20000.0, std::fmin(20000.0, walk[k]));
            const double rise = double(i) * (0.4 + 0.2 * k);
            const double swing = 3000.0 * (k + 1) * std::sin(2 * M_PI * day + k);
            out[k] = quint32(std::lround(40000.0 * (k + 1) + rise + swing + walk[k]));
        }
    }
};

bool writeXmlHead(std::FILE* xml, int step, quint32 last)
{
    std::fprintf(xml,
                 "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<rrd>\n\t<version>0003</version>\n"
                 "\t<step>%d</step>\n\t<lastupdate>%u</lastupdate>\n",
                 step, last);
    for (const char* name : Names)
        std::fprintf(xml,
                     "\t<ds>\n\t\t<name> %s </name>\n\t\t<type> GAUGE </type>\n"
                     "\t\t<minimal_heartbeat>%d</minimal_heartbeat>\n\t\t<min>NaN</min>\n"
                     "\t\t<max>NaN</max>\n\t\t<last_ds>U</last_ds>\n"
                     "\t\t<value>0.0000000000e+00</value>\n\t\t<unknown_sec> 0 </unknown_sec>\n"
                     "\t</ds>\n",
                     name, 2 * step);
    std::fprintf(xml, "\t<rra>\n\t\t<cf>AVERAGE</cf>\n\t\t<pdp_per_row>1</pdp_per_row>\n"
                      "\t\t<params><xff>5.0000000000e-01</xff></params>\n\t\t<cdp_prep>\n");
    for (int k = 0; k < Series; ++k)
        std::fprintf(xml, "\t\t\t<ds><primary_value>NaN</primary_value>"
                          "<secondary_value>NaN</secondary_value><value>NaN</value>"
                          "<unknown_datapoints>0</unknown_datapoints></ds>\n");
    return std::fprintf(xml, "\t\t</cdp_prep>\n\t\t<database>\n") > 0;
}

int fail(const QString& message)
{
    std::fprintf(stderr, "peerdata: %s\n", qPrintable(message));
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 5) {
        std::fprintf(stderr, "Usage: peerdata DIR [POINTS] [STEP] [START]\n");
        return 2;
    }
    const QString dir = QString::fromLocal8Bit(argv[1]);
    const qint64 points = argc > 2 ? std::atoll(argv[2]) : 250000;
    const int step = argc > 3 ? std::atoi(argv[3]) : 126;
    const qint64 from = argc > 4 ? std::atoll(argv[4]) : 1672531200;
    const qint64 first = (from + step - 1) / step * step;
    const qint64 last = first + (points - 1) * step;
    if (points < 1 || step < 1 || from < 0 || last > qint64(UINT32_MAX))
        return fail(QStringLiteral("POINTS and STEP must be positive and the dates 32-bit"));
    if (!QDir().mkpath(dir + QLatin1String("/repo")))
        return fail(QStringLiteral("%1/repo: cannot be created").arg(dir));

    KVDSampleWriter writer;
    QString error;
    if (!writer.create(dir + QLatin1String("/repo"), QStringLiteral("cov"), QStringLiteral("peer"),
                       Series, &error))
        return fail(error);
    const QString xmlPath = dir + QLatin1String("/peer.xml");
    std::FILE* xml = std::fopen(QFile::encodeName(xmlPath).constData(), "w");
    if (!xml || !writeXmlHead(xml, step, quint32(last)))
        return fail(QStringLiteral("%1: cannot be written").arg(xmlPath));

    // One key throughout: each total is then the record's own value, which is what the
    // chart plots and what the database holds.
    Generator generator;
    quint32 values[Series];
    for (qint64 i = 0; i < points; ++i) {
        const quint32 date = quint32(first + i * step);
        generator.values(i, date, values);
        if (!writer.append(date, 0x5045u, values))
            break;
        std::fprintf(xml, "\t\t\t<row><v>%u</v><v>%u</v><v>%u</v><v>%u</v></row>\n", values[0],
                     values[1], values[2], values[3]);
    }
    const bool written = std::fprintf(xml, "\t\t</database>\n\t</rra>\n</rrd>\n") > 0;
    if (std::fclose(xml) != 0 || !written)
        return fail(QStringLiteral("%1: cannot be written").arg(xmlPath));
    if (!writer.finish(&error))
        return fail(error);
    std::printf("%lld points of %d series, %lld to %lld, every %d s\n", points, Series, first, last,
                step);
    return 0;
}
