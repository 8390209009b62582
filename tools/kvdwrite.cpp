#include "kvdcli.h"
#include "kvddate.h"
#include "kvdmeasurefile.h"
#include "kvdstore.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cstdlib>
#include <vector>

#include <unistd.h>

namespace {

const char Usage[] = QT_TRANSLATE_NOOP(
    "kvd", "Usage: kvd write MEASURE USER KEY DATE VALUE...\n"
           "\n"
           "Appends one record to the measure MEASURE of USER in the repository named by\n"
           "ZANTH_KVD_ROOT, exactly as a recording tool calling Write_Measure does; the exit\n"
           "status is its result (0 written, 1 not written, 2 bad arguments).\n"
           "\n"
           "  KEY    record key, a 32-bit number in decimal or 0x hexadecimal (see kvd key)\n"
           "  DATE   0 for now, or one of\n"
           "           SECONDS                    since 1970-01-01 UTC, decimal or 0x hexadecimal\n"
           "           YYYY-MM-DD                 midnight UTC\n"
           "           YYYY-MM-DDTHH:MM:SS        UTC, also with a trailing Z\n"
           "           YYYY-MM-DDTHH:MM:SS+HH:MM  local time HH:MM ahead of UTC (-HH:MM: behind);\n"
           "                                      the record holds that instant in UTC\n"
           "         from 1970-01-01T00:00:01Z to 2106-02-07T06:28:15Z, the 32-bit seconds\n"
           "  VALUE  one unsigned 32-bit number per field; their count names the file pair\n"
           "\n"
           "The pair is ZANTH_KVD_ROOT/MEASURE.USER.N.kvd (and .idx), N the number of values.\n"
           "A writer waits for as long as the pair's .lck file exists.\n"
           "\n"
           "Only the first write of a pair succeeds on this build: it creates the pair. Every\n"
           "later write to the same MEASURE, USER and N fails, changes neither file and exits\n"
           "with 1 after the store's message \"Unable to read DataBase file\". The store does so\n"
           "by design; it is no passing fault, and trying again gives the same.\n");

const char DateForms[] =
    QT_TRANSLATE_NOOP("kvd", "0 for now, SECONDS, YYYY-MM-DD, YYYY-MM-DDTHH:MM:SS, or the latter "
                             "with Z, +HH:MM or -HH:MM");

} // namespace

int kvdWrite(const QStringList& args)
{
    QCommandLineParser parser;
    if (const int status = KvdCli::parse(parser, "write", args, KvdCli::tr(Usage)); status >= 0)
        return status;
    const QStringList words = parser.positionalArguments();
    if (words.size() < 5)
        return KvdCli::fail("write", KvdCli::tr("expects MEASURE USER KEY DATE VALUE..."), 2);
    const QString measure = words[0];
    const QString user = words[1];
    if (measure.contains(QLatin1Char('/')) || user.contains(QLatin1Char('/')))
        return KvdCli::fail("write", KvdCli::tr("a measure or user name cannot hold \"/\""), 2);
    quint32 key = 0;
    if (!KvdCli::toWord(words[2], &key))
        return KvdCli::fail("write", KvdCli::tr("KEY is not a 32-bit number: %1").arg(words[2]), 2);
    std::uint32_t date = 0;
    const QByteArray dateText = words[3].toUtf8();
    const KvdDate::Status read =
        KvdDate::parse({dateText.constData(), size_t(dateText.size())}, &date);
    if (read != KvdDate::Status::Ok)
        return KvdCli::fail(
            "write",
            (read == KvdDate::Status::OutOfRange
                 ? KvdCli::tr("DATE is neither seconds nor a date from 1970-01-01T00:00:01Z to "
                              "2106-02-07T06:28:15Z: %1 (give %2)")
                 : KvdCli::tr("DATE is neither seconds nor a date: %1 (give %2)"))
                .arg(words[3], KvdCli::tr(DateForms)),
            2);
    std::vector<uint32_t> values;
    for (const QString& word : words.mid(4)) {
        quint32 value = 0;
        if (!KvdCli::toWord(word, &value))
            return KvdCli::fail("write", KvdCli::tr("VALUE is not a 32-bit number: %1").arg(word),
                                2);
        values.push_back(value);
    }
    const int count = int(values.size());

    // The store waits for its lock without end, also when the lock cannot be created at
    // all; a repository that is missing or read-only is refused here instead.
    const char* root = std::getenv("ZANTH_KVD_ROOT");
    if (!root)
        return KvdCli::fail("write", KvdCli::tr("ZANTH_KVD_ROOT is not set"));
    const QFileInfo dir(QFile::decodeName(root));
    if (!dir.isDir() || !dir.isWritable())
        return KvdCli::fail(
            "write",
            KvdCli::tr("ZANTH_KVD_ROOT is not a writable directory: %1").arg(dir.filePath()));
    if (measure.contains(QLatin1Char('.')) || user.contains(QLatin1Char('.')))
        KvdCli::fail("write", KvdCli::tr("warning: a \".\" in the measure or user name makes "
                                         "readers split the file name wrongly"));
    const QString lock = KVDMeasureFile::path(dir.filePath(), measure, user, count, ".lck");
    // The same holds for names the file system refuses and for a directory that only
    // claims to be writable (root on a read-only or virtual file system): a trial file
    // tells.
    const long nameMax = pathconf(root, _PC_NAME_MAX);
    const qsizetype nameLength = QFile::encodeName(QFileInfo(lock).fileName()).size();
    if (nameLength > (nameMax > 0 ? nameMax : 255))
        return KvdCli::fail("write", KvdCli::tr("the pair's file names would be %1 bytes long; the "
                                                "file system takes at most %2")
                                         .arg(nameLength)
                                         .arg(nameMax > 0 ? nameMax : 255));
    QTemporaryFile trial(dir.filePath() + QLatin1String("/.kvdwrite-XXXXXX"));
    if (!trial.open())
        return KvdCli::fail("write", KvdCli::tr("no file can be created in %1: %2")
                                         .arg(dir.filePath(), trial.errorString()));
    trial.close();
    if (QFileInfo::exists(lock))
        KvdCli::fail("write", KvdCli::tr("waiting for %1 to disappear").arg(lock));

    return int(Write_Measure(measure.toLocal8Bit().constData(), user.toLocal8Bit().constData(), key,
                             date, count, values.data()));
}
