// Feeds the built-in definitions reader arbitrary definition files. It either refuses the
// file with its message or yields definitions, each with a label at entry 0 or none.
#include "fuzzshell.h"
#include "kvdconfig.h"

#include <QByteArray>
#include <QFile>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static FuzzShell shell;
    QFile file(shell.directory() + QLatin1String("/KVD_built_in.cfg"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        file.write(reinterpret_cast<const char*>(data), qint64(size)) != qint64(size))
        std::abort();
    file.close();

    const int before = shell.messages;
    KVDConfig config;
    const bool read = config.ReadConfigBuiltIn();
    if (read == (shell.messages != before)) {
        std::fprintf(stderr, "fuzz_builtin: %s\n",
                     read ? "a message although the file was read" : "a refusal without a message");
        std::abort();
    }
    if (!read && !config.definitions.isEmpty()) {
        std::fprintf(stderr, "fuzz_builtin: definitions kept from a refused file\n");
        std::abort();
    }
    return 0;
}
