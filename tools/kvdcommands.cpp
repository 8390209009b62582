#include "kvdcommands.h"

#include <QtGlobal>

int kvdDump(const QStringList& args);
int kvdExport(const QStringList& args);
int kvdKey(const QStringList& args);
int kvdRender(const QStringList& args);
int kvdSample(const QStringList& args);
int kvdWrite(const QStringList& args);

const QList<KvdCommand>& kvdCommands()
{
    static const QList<KvdCommand> commands{
        {"sample", QT_TRANSLATE_NOOP("kvd", "write a demo repository of made-up measures"),
         kvdSample},
        {"write", QT_TRANSLATE_NOOP("kvd", "append a record to a measure, as recording tools do"),
         kvdWrite},
        {"key", QT_TRANSLATE_NOOP("kvd", "print the record key of a text"), kvdKey},
        {"dump", QT_TRANSLATE_NOOP("kvd", "list the records of a measure data or index file"),
         kvdDump},
        {"render",
         QT_TRANSLATE_NOOP("kvd", "draw the chart of a repository into a PNG, SVG or PDF file"),
         kvdRender},
        {"export", QT_TRANSLATE_NOOP("kvd", "write the curves of a repository's chart as CSV"),
         kvdExport},
    };
    return commands;
}
