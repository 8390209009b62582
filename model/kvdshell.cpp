#include "kvdshell.h"

#include <cstdio>

namespace {

KVDShell* Current = nullptr;

void toStandardError(const QString& text)
{
    const QString line = text.endsWith(QLatin1Char('\n')) ? text : text + QLatin1Char('\n');
    std::fputs(line.toLocal8Bit().constData(), stderr);
}

} // namespace

KVDShell* KVDShell::current()
{
    return Current;
}

void KVDShell::install(KVDShell* shell)
{
    Current = shell;
}

void KVDShell::warningBox(const QString& text)
{
    if (Current)
        Current->warning(text);
    else
        toStandardError(text);
}

void KVDShell::criticalBox(const QString& text)
{
    if (Current)
        Current->critical(text);
    else
        toStandardError(text);
}

StudioInterface* KVDShell::host()
{
    return Current ? Current->studio() : nullptr;
}

QString KVDShell::user()
{
    return Current ? Current->currentUser() : QString();
}
