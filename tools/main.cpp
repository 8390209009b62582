#include "kvdcli.h"
#include "kvdcommands.h"
#include "kvdheapsetup.h"
#include "qatranslation.h"
#include "kvdtoolkitsetup.h"

#include <QGuiApplication>

#include <cstdio>
#include <cstring>

namespace {

void usage(std::FILE* out)
{
    std::fputs(qPrintable(KvdCli::tr("Usage: kvd COMMAND [ARGS...]\n\n"
                                     "Reads, writes and draws Kavendi measure repositories "
                                     "without a window.\n\n"
                                     "Commands:\n")),
               out);
    for (const KvdCommand& command : kvdCommands())
        std::fprintf(out, "  %-8s %s\n", command.name, qPrintable(KvdCli::tr(command.summary)));
    std::fputs(qPrintable(KvdCli::tr("\nkvd COMMAND --help describes a command.\n")), out);
}

} // namespace

int main(int argc, char** argv)
{
    KvdHeapSetup::prepare();
    // kvd is headless: it never opens a window, whatever display there is.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    KvdToolkitSetup::prepare();
    QGuiApplication app(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("kvd"));
    QATranslation::install(QStringLiteral("kavendi"), QStringLiteral(":/i18n"));

    QStringList args = QCoreApplication::arguments().mid(1);
    if (args.isEmpty()) {
        usage(stderr);
        return 2;
    }
    const QString name = args.takeFirst();
    if (name == QLatin1String("--help") || name == QLatin1String("-h") ||
        name == QLatin1String("help")) {
        usage(stdout);
        return 0;
    }
    if (name == QLatin1String("--version") || name == QLatin1String("-V")) {
        std::printf("kvd %s\n", KVD_VERSION);
        return 0;
    }
    for (const KvdCommand& command : kvdCommands())
        if (name == QLatin1String(command.name))
            return command.run(args);
    std::fprintf(stderr, "%s\n\n", qPrintable(KvdCli::tr("kvd: unknown command '%1'").arg(name)));
    usage(stderr);
    return 2;
}
