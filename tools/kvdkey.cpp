#include "kvdcli.h"
#include "kvdstore.h"

#include <cstdio>

namespace {

const char Usage[] = QT_TRANSLATE_NOOP(
    "kvd", "Usage: kvd key TEXT\n"
           "\n"
           "Prints the record key File_Key derives from TEXT (a test file name, say),\n"
           "as 0x%08x. TEXT is taken as the bytes of its local 8-bit encoding.\n");

} // namespace

int kvdKey(const QStringList& args)
{
    QCommandLineParser parser;
    if (const int status = KvdCli::parse(parser, "key", args, KvdCli::tr(Usage)); status >= 0)
        return status;
    const QStringList words = parser.positionalArguments();
    if (words.size() != 1)
        return KvdCli::fail("key", KvdCli::tr("expects one TEXT, got %1").arg(words.size()), 2);
    uint32_t key = 0;
    if (File_Key(words[0].toLocal8Bit().constData(), &key) != 0)
        return 1; // the store has said why
    std::printf("0x%08x\n", key);
    return 0;
}
