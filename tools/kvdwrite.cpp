#include "kvdcli.h"
#include "kvdmeasurefile.h"
#include "kvdstore.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <cstdlib>
#include <vector>

namespace {

const char Usage[] =
    "Usage: kvd write MEASURE USER KEY DATE VALUE...\n"
    "\n"
    "Appends one record to the measure MEASURE of USER in the repository named by\n"
    "ZANTH_KVD_ROOT, exactly as a recording tool calling Write_Measure does; the exit\n"
    "status is its result (0 written, 1 not written, 2 bad arguments).\n"
    "\n"
    "  KEY    record key, a 32-bit number in decimal or 0x hexadecimal (see kvd key)\n"
    "  DATE   seconds since 1970-01-01 UTC, 0 for now, or YYYY-MM-DD[THH:MM:SS] in UTC\n"
    "  VALUE  one unsigned 32-bit number per field; their count names the file pair\n"
    "\n"
    "The pair is ZANTH_KVD_ROOT/MEASURE.USER.N.kvd (and .idx), N the number of values.\n"
    "A writer waits for as long as the pair's .lck file exists.\n";

// DATE as seconds: a number, or an ISO date and time read in UTC.
bool toDate(const QString& text, quint32* date)
{
    if (KvdCli::toWord(text, date))
        return true;
    QDateTime time = QDateTime::fromString(text, Qt::ISODate);
    if (!time.isValid()) {
        const QDate day = QDate::fromString(text, Qt::ISODate);
        if (!day.isValid())
            return false;
        time = QDateTime(day, QTime(0, 0));
    }
    time.setTimeSpec(Qt::UTC);
    const qint64 seconds = time.toSecsSinceEpoch();
    if (seconds <= 0 || seconds > qint64(0xFFFFFFFFu))
        return false;
    *date = quint32(seconds);
    return true;
}

} // namespace

int kvdWrite(const QStringList& args)
{
    QCommandLineParser parser;
    if (const int status = KvdCli::parse(parser, "write", args, Usage); status >= 0)
        return status;
    const QStringList words = parser.positionalArguments();
    if (words.size() < 5)
        return KvdCli::fail("write", QStringLiteral("expects MEASURE USER KEY DATE VALUE..."), 2);
    const QString measure = words[0];
    const QString user = words[1];
    if (measure.contains(QLatin1Char('/')) || user.contains(QLatin1Char('/')))
        return KvdCli::fail("write", QStringLiteral("a measure or user name cannot hold \"/\""), 2);
    quint32 key = 0;
    if (!KvdCli::toWord(words[2], &key))
        return KvdCli::fail("write", QStringLiteral("KEY is not a 32-bit number: %1").arg(words[2]),
                            2);
    quint32 date = 0;
    if (!toDate(words[3], &date))
        return KvdCli::fail(
            "write", QStringLiteral("DATE is neither seconds nor a date: %1").arg(words[3]), 2);
    std::vector<uint32_t> values;
    for (const QString& word : words.mid(4)) {
        quint32 value = 0;
        if (!KvdCli::toWord(word, &value))
            return KvdCli::fail("write",
                                QStringLiteral("VALUE is not a 32-bit number: %1").arg(word), 2);
        values.push_back(value);
    }
    const int count = int(values.size());

    // The store waits for its lock without end, also when the lock cannot be created at
    // all; a repository that is missing or read-only is refused here instead.
    const char* root = std::getenv("ZANTH_KVD_ROOT");
    if (!root)
        return KvdCli::fail("write", QStringLiteral("ZANTH_KVD_ROOT is not set"));
    const QFileInfo dir(QFile::decodeName(root));
    if (!dir.isDir() || !dir.isWritable())
        return KvdCli::fail(
            "write",
            QStringLiteral("ZANTH_KVD_ROOT is not a writable directory: %1").arg(dir.filePath()));
    if (measure.contains(QLatin1Char('.')) || user.contains(QLatin1Char('.')))
        KvdCli::fail("write", QStringLiteral("warning: a \".\" in the measure or user name makes "
                                             "readers split the file name wrongly"));
    const QString lock = KVDMeasureFile::path(dir.filePath(), measure, user, count, ".lck");
    if (QFileInfo::exists(lock))
        KvdCli::fail("write", QStringLiteral("waiting for %1 to disappear").arg(lock));

    return int(Write_Measure(measure.toLocal8Bit().constData(), user.toLocal8Bit().constData(), key,
                             date, count, values.data()));
}
