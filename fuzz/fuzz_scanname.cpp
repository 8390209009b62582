// Puts a data file of an arbitrary name into an empty repository and scans it. The scan
// must file the name under the user its parser finds, or refuse it, never anything else.
#include "fuzzshell.h"
#include "kvdconfig.h"
#include "kvdmeasurefile.h"

#include <QByteArray>
#include <QDir>
#include <QFile>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static FuzzShell shell;
    // A name the file system takes: no separator, no NUL, within NAME_MAX with ".kvd".
    QByteArray raw(reinterpret_cast<const char*>(data), qsizetype(qMin(size, size_t(200))));
    raw.replace('/', '_').replace('\0', '_');
    const QString name = QFile::decodeName(raw + ".kvd");
    if (name == QLatin1String(".kvd"))
        return 0;

    const QString repo = shell.dir() + QLatin1String("/repo");
    QDir(repo).removeRecursively();
    QDir().mkpath(repo);
    QFile file(repo + QLatin1Char('/') + name);
    if (!file.open(QIODevice::WriteOnly))
        return 0;
    file.close();
    const QStringList listed = QDir(repo).entryList(QDir::Files);
    if (listed.size() != 1)
        return 0;

    const KVDMeasureFile::Name parts = KVDMeasureFile::splitName(listed.first());
    if (parts.measure.contains(QLatin1Char('.')) || parts.user.contains(QLatin1Char('.'))) {
        std::fprintf(stderr, "fuzz_scanname: a dot inside a name part of %s\n", raw.constData());
        std::abort();
    }
    KVDConfig config;
    config.ScanRepository(repo, true);
    const bool filed = config.users.contains(parts.user);
    const bool valid = KVDMeasureFile::checkFieldCount(parts.fieldCount, nullptr);
    if (filed != valid || (filed && !config.definitions.contains(parts.key()))) {
        std::fprintf(stderr, "fuzz_scanname: %s was %s\n", raw.constData(),
                     filed ? "filed without a valid field count or definition" : "not filed");
        std::abort();
    }
    return 0;
}
