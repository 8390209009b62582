#ifndef TESTENV_H
#define TESTENV_H

#include <QFile>
#include <QLocale>
#include <QString>

#include <cstdlib>
#include <ctime>

// Shared set-up of the test executables.
namespace TestEnv {

// Pins the time zone and locale the suites assume unless a test sets its own.
inline void pin()
{
    if (!std::getenv("TZ"))
        qputenv("TZ", "UTC");
    tzset();
    QLocale::setDefault(QLocale::c());
}
// A file under tests/data.
inline QString dataFile(const QString& name)
{
    return QStringLiteral(KVD_TEST_DATA "/") + name;
}
// A built artefact relative to the build directory (bin/kvd, lib/libkavendi.so...).
inline QString built(const QString& relative)
{
    return QStringLiteral(KVD_BINARY_DIR "/") + relative;
}
// A file's bytes; none when it cannot be read.
inline QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace TestEnv

#endif
