#include "kvdcli.h"

#include <QFile>

#include <cstdio>

#include <sys/stat.h>

namespace {

QString prefixed(const char* command, const QString& message)
{
    return KvdCli::tr("kvd %1: %2", "subcommand, message").arg(QLatin1String(command), message);
}

} // namespace

int KvdCli::parse(QCommandLineParser& parser, const char* command, const QStringList& args,
                  const QString& usage)
{
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    parser.addOption(help);
    if (!parser.parse(QStringList(QStringLiteral("kvd ") + QLatin1String(command)) + args)) {
        std::fprintf(stderr, "%s\n\n%s", qPrintable(prefixed(command, parser.errorText())),
                     qPrintable(usage));
        return 2;
    }
    if (parser.isSet(help)) {
        std::fputs(qPrintable(usage), stdout);
        return 0;
    }
    return -1;
}

int KvdCli::fail(const char* command, const QString& message, int status)
{
    QString text = message;
    while (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    std::fprintf(stderr, "%s\n", qPrintable(prefixed(command, text)));
    return status;
}

QString KvdCli::notRegularFile(const QString& path)
{
    struct stat info;
    if (stat(QFile::encodeName(path).constData(), &info) != 0 || S_ISREG(info.st_mode))
        return QString();
    if (S_ISDIR(info.st_mode))
        return tr("%1 is a directory, not a regular file").arg(path);
    if (S_ISFIFO(info.st_mode))
        return tr("%1 is a pipe, not a regular file").arg(path);
    if (S_ISSOCK(info.st_mode))
        return tr("%1 is a socket, not a regular file").arg(path);
    return tr("%1 is a device, not a regular file").arg(path);
}

bool KvdCli::toWord(const QString& text, quint32* word)
{
    const bool hex = text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    const QString digits = hex ? text.mid(2) : text;
    // toUInt would also take a sign or blanks; a word is digits only.
    const QLatin1String allowed(hex ? "0123456789abcdefABCDEF" : "0123456789");
    for (QChar c : digits)
        if (!QString(allowed).contains(c))
            return false;
    bool ok = false;
    const uint value = digits.toUInt(&ok, hex ? 16 : 10);
    if (ok)
        *word = value;
    return ok;
}

bool KvdCli::toCount(const QString& text, int low, int high, int* count)
{
    bool ok = false;
    const int value = text.toInt(&ok, 10);
    if (!ok || value < low || value > high)
        return false;
    *count = value;
    return true;
}
