#ifndef KVDCLI_H
#define KVDCLI_H

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QtGlobal>

// What the subcommands of kvd share: option parsing with --help, error reporting, and
// the translation of kvd's texts (KvdCli::tr, in the context "kvd").
class KvdCli
{
    Q_DECLARE_TR_FUNCTIONS(kvd)

public:
    // Parses args (the words after the subcommand) with parser, to which a --help option is
    // added. Answers -1 to go on, otherwise the exit status: 0 after printing usage on
    // standard output for --help, 2 after printing the parse error and usage on standard
    // error.
    static int parse(QCommandLineParser& parser, const char* command, const QStringList& args,
                     const QString& usage);
    // Prints "kvd COMMAND: message" on standard error and answers status.
    static int fail(const char* command, const QString& message, int status = 1);
    // Empty when path names a regular file (through any links) or nothing at all; otherwise
    // the message that refuses it, naming path and what it is. Looks without opening: an
    // open of a pipe for reading waits for a writer.
    static QString notRegularFile(const QString& path);
    // An unsigned 32-bit number in decimal or, with a 0x prefix, hexadecimal.
    static bool toWord(const QString& text, quint32* word);
    // A count in decimal, within [low, high].
    static bool toCount(const QString& text, int low, int high, int* count);
};

#endif
