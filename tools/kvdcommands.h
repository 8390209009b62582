#ifndef KVDCOMMANDS_H
#define KVDCOMMANDS_H

#include <QStringList>

// A subcommand of kvd: args holds the words after the subcommand's name. Answers the
// process exit status; errors go to standard error.
struct KvdCommand
{
    const char* name;
    const char* summary; // untranslated; kvd --help translates it
    int (*run)(const QStringList& args);
};

// The subcommands, in the order kvd --help lists them.
const QList<KvdCommand>& kvdCommands();

#endif
