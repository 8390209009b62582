#include "kvdcommands.h"

int kvdDump(const QStringList& args);
int kvdExport(const QStringList& args);
int kvdKey(const QStringList& args);
int kvdRender(const QStringList& args);
int kvdSample(const QStringList& args);
int kvdWrite(const QStringList& args);

const QList<KvdCommand>& kvdCommands()
{
    static const QList<KvdCommand> commands{
        {"sample", "write a demo repository of made-up measures", kvdSample},
        {"write", "append a record to a measure, as recording tools do", kvdWrite},
        {"key", "print the record key of a text", kvdKey},
        {"dump", "list the records of a measure data or index file", kvdDump},
        {"render", "draw the chart of a repository into a PNG, SVG or PDF file", kvdRender},
        {"export", "write the curves of a repository's chart as CSV", kvdExport},
    };
    return commands;
}
