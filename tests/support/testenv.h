#ifndef TESTENV_H
#define TESTENV_H

#include <QString>

// Shared set-up of the test executables.
namespace TestEnv {

// Pins the time zone and locale the suites assume unless a test sets its own.
void pin();
// A file under tests/data.
QString dataFile(const QString& name);
// A built artefact relative to the build directory (bin/kvd, lib/libkavendi.so...).
QString built(const QString& relative);

} // namespace TestEnv

#endif
