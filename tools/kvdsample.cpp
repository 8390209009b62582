#include "kvdcli.h"
#include "kvddemoview.h"
#include "kvdsamplewriter.h"

#include <QDate>
#include <QDateTime>

#include <cstdio>

namespace {

const char Usage[] = QT_TRANSLATE_NOOP(
    "kvd",
    "Usage: kvd sample ROOT [--users N] [--days D] [--per-day R] [--seed S] [--end DATE]\n"
    "                       [--view]\n"
    "\n"
    "Writes a demo repository into ROOT (created if missing): for each user a 4-field and an\n"
    "8-field cov measure (covered counts; covered counts then totals) and a 2-field tests\n"
    "measure (passed, failed), R records a day over the D days ending on DATE, with the\n"
    "running totals and indexes the store keeps. Existing pairs of those names are\n"
    "replaced. The same options give the same bytes.\n"
    "\n"
    "  --users N     users, 1 to 1000 (default 3: alice, bob, carol)\n"
    "  --days D      days with records, 1 to 36500 (default 90)\n"
    "  --per-day R   records a day in each file, 1 to 10000 (default 4)\n"
    "  --seed S      32-bit seed of the made-up figures (default 1)\n"
    "  --end DATE    last day, YYYY-MM-DD (default today, UTC)\n"
    "  --view        also a saved view (KVD.cfg) to open on: curves of the first two users\n"
    "                on both value scales, three events, the last three months, and the\n"
    "                line coverage ratio of a 2-field lines measure written for it\n");

} // namespace

int kvdSample(const QStringList& args)
{
    QCommandLineParser parser;
    const QCommandLineOption users(QStringLiteral("users"), QString(), QStringLiteral("N"));
    const QCommandLineOption days(QStringLiteral("days"), QString(), QStringLiteral("D"));
    const QCommandLineOption perDay(QStringLiteral("per-day"), QString(), QStringLiteral("R"));
    const QCommandLineOption seed(QStringLiteral("seed"), QString(), QStringLiteral("S"));
    const QCommandLineOption end(QStringLiteral("end"), QString(), QStringLiteral("DATE"));
    const QCommandLineOption view(QStringLiteral("view"));
    parser.addOptions({users, days, perDay, seed, end, view});
    if (const int status = KvdCli::parse(parser, "sample", args, KvdCli::tr(Usage)); status >= 0)
        return status;
    const QStringList words = parser.positionalArguments();
    if (words.size() != 1)
        return KvdCli::fail("sample", KvdCli::tr("expects one ROOT, got %1").arg(words.size()), 2);

    KVDSampleWriter::Options options;
    struct Count
    {
        const QCommandLineOption& option;
        int* value;
        int high;
    };
    for (const Count& c : {Count{users, &options.users, 1000}, Count{days, &options.days, 36500},
                           Count{perDay, &options.perDay, 10000}}) {
        if (parser.isSet(c.option) && !KvdCli::toCount(parser.value(c.option), 1, c.high, c.value))
            return KvdCli::fail("sample",
                                KvdCli::tr("--%1 takes 1 to %2, not %3")
                                    .arg(c.option.names().constFirst())
                                    .arg(c.high)
                                    .arg(parser.value(c.option)),
                                2);
    }
    if (parser.isSet(seed) && !KvdCli::toWord(parser.value(seed), &options.seed))
        return KvdCli::fail(
            "sample", KvdCli::tr("--seed takes a 32-bit number, not %1").arg(parser.value(seed)),
            2);
    if (parser.isSet(end)) {
        options.end = QDate::fromString(parser.value(end), Qt::ISODate);
        if (!options.end.isValid())
            return KvdCli::fail(
                "sample",
                KvdCli::tr("--end takes a date YYYY-MM-DD, not %1").arg(parser.value(end)), 2);
    }

    QStringList files;
    qint64 records = 0;
    QString error;
    if (!KVDSampleWriter::writeRepository(words[0], options, &files, &records, &error))
        return KvdCli::fail("sample", error);
    const QDate last = options.end.isValid() ? options.end : QDateTime::currentDateTimeUtc().date();
    if (parser.isSet(view) &&
        !KVDDemoView::write(words[0], KVDSampleWriter::userNames(options.users), options.days, last,
                            &error))
        return KvdCli::fail("sample", error);
    std::printf("%s\n", qPrintable(KvdCli::tr("%1 records in %2 measure files under %3")
                                       .arg(records)
                                       .arg(files.size())
                                       .arg(words[0])));
    return 0;
}
