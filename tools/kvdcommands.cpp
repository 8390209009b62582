#include "kvdcommands.h"

const QList<KvdCommand>& kvdCommands()
{
    static const QList<KvdCommand> commands{
    };
    return commands;
}
