#include "kvdcli.h"
#include "kvdmeasurefile.h"

#include <QFile>

#include <cstdio>
#include <ctime>

namespace {

const char Usage[] = QT_TRANSLATE_NOOP(
    "kvd",
    "Usage: kvd dump [--fields N] FILE\n"
    "\n"
    "Lists a measure data file (.kvd), one line a record:\n"
    "  INDEX OFFSET DATE KEY VALUE/TOTAL...\n"
    "with the byte offset of the record, its date in ISO 8601 (UTC), its key in hexadecimal\n"
    "and the value and running total of each field. The number of fields comes from the\n"
    "file name (MEASURE.USER.N.kvd) unless --fields gives it. An index file (.idx) is\n"
    "listed as INDEX KEY OFFSET, one line an entry. A FILE that is not a regular file (a\n"
    "pipe, a device, a directory) is refused unread.\n"
    "\n"
    "  --fields N   the number of fields, 0 to 9999\n");

// ISO 8601 in UTC of 32-bit seconds since 1970.
void formatDate(quint32 date, char* out, size_t size)
{
    const time_t seconds = time_t(date);
    struct tm utc;
    gmtime_r(&seconds, &utc);
    std::strftime(out, size, "%Y-%m-%dT%H:%M:%SZ", &utc);
}

int dumpIndex(const QString& path)
{
    std::FILE* file = std::fopen(QFile::encodeName(path).constData(), "rb");
    if (!file)
        return KvdCli::fail("dump", KvdCli::tr("Can't open file: %1").arg(path));
    quint32 entry[2];
    qint64 index = 0;
    size_t words;
    while ((words = std::fread(entry, 4, 2, file)) == 2)
        std::printf("%lld 0x%08x %u\n", index++, entry[0], entry[1]);
    const bool broken = std::ferror(file);
    std::fclose(file);
    if (broken)
        return KvdCli::fail("dump", KvdCli::tr("Can't read file: %1").arg(path));
    if (words)
        KvdCli::fail("dump", KvdCli::tr("a partial entry at the end was ignored"));
    return 0;
}

} // namespace

int kvdDump(const QStringList& args)
{
    QCommandLineParser parser;
    const QCommandLineOption fields(QStringLiteral("fields"), QString(), QStringLiteral("N"));
    parser.addOption(fields);
    if (const int status = KvdCli::parse(parser, "dump", args, KvdCli::tr(Usage)); status >= 0)
        return status;
    const QStringList words = parser.positionalArguments();
    if (words.size() != 1)
        return KvdCli::fail("dump", KvdCli::tr("expects one FILE, got %1").arg(words.size()), 2);
    const QString path = words[0];
    if (const QString refused = KvdCli::notRegularFile(path); !refused.isEmpty())
        return KvdCli::fail("dump", refused);
    if (path.endsWith(QLatin1String(".idx")))
        return dumpIndex(path);

    const KVDMeasureFile::Name name = KVDMeasureFile::splitName(path);
    int count = name.fieldCount;
    if (parser.isSet(fields)) {
        if (!KvdCli::toCount(parser.value(fields), 0, KVDMeasureFile::MaxFields, &count))
            return KvdCli::fail(
                "dump", KvdCli::tr("--fields takes 0 to 9999, not %1").arg(parser.value(fields)),
                2);
    } else if (!name.numeric) {
        return KvdCli::fail("dump",
                            KvdCli::tr("the number of fields is not in the name %1; "
                                       "give it with --fields")
                                .arg(path),
                            2);
    }

    KVDMeasureFile file;
    QString error;
    if (!file.open(path, count, &error))
        return KvdCli::fail("dump", error);
    char date[32];
    qint64 index = 0;
    while (const quint32* record = file.next()) {
        formatDate(KVDMeasureFile::date(record), date, sizeof date);
        std::printf("%lld %lld %s 0x%08x", index++, file.offset(), date,
                    KVDMeasureFile::key(record));
        for (int k = 0; k < count; ++k)
            std::printf(" %u/%u", KVDMeasureFile::value(record, k),
                        KVDMeasureFile::total(record, k));
        std::putchar('\n');
    }
    const qint64 rest = file.size() - file.recordCount() * 4 * KVDMeasureFile::recordWords(count);
    if (rest > 0)
        KvdCli::fail("dump",
                     KvdCli::tr("%1 bytes of a partial record at the end were ignored").arg(rest));
    return 0;
}
