#include "kvdcurve.h"

// Placeholder until the loader lands: a curve that has read nothing, as for a file that
// cannot be opened.
KVDCurve::KVDCurve(const QString&, const QString&, int, int, const QString&, QDateTime&, QDateTime&)
{
}

KVDCurve::~KVDCurve()
{
    delete points;
}
