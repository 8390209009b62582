#include "kvdcli.h"

#include <QFile>

#include <cstdio>

#include <sys/stat.h>

namespace KvdCli {

int parse(QCommandLineParser& parser, const char* command, const QStringList& args,
          const char* usage)
{
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    parser.addOption(help);
    if (!parser.parse(QStringList(QStringLiteral("kvd ") + QLatin1String(command)) + args)) {
        std::fprintf(stderr, "kvd %s: %s\n\n%s", command, qPrintable(parser.errorText()), usage);
        return 2;
    }
    if (parser.isSet(help)) {
        std::fputs(usage, stdout);
        return 0;
    }
    return -1;
}

int fail(const char* command, const QString& message, int status)
{
    QString text = message;
    while (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    std::fprintf(stderr, "kvd %s: %s\n", command, qPrintable(text));
    return status;
}

QString notRegularFile(const QString& path)
{
    struct stat info;
    if (stat(QFile::encodeName(path).constData(), &info) != 0 || S_ISREG(info.st_mode))
        return QString();
    const char* kind = S_ISDIR(info.st_mode)    ? "a directory"
                       : S_ISFIFO(info.st_mode) ? "a pipe"
                       : S_ISSOCK(info.st_mode) ? "a socket"
                                                : "a device";
    return QStringLiteral("%1 is %2, not a regular file").arg(path, QLatin1String(kind));
}

bool toWord(const QString& text, quint32* word)
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

bool toCount(const QString& text, int low, int high, int* count)
{
    bool ok = false;
    const int value = text.toInt(&ok, 10);
    if (!ok || value < low || value > high)
        return false;
    *count = value;
    return true;
}

} // namespace KvdCli
