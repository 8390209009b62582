#ifndef CHARTFIXTURE_H
#define CHARTFIXTURE_H

#include "kvdcurve.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QPolygon>
#include <QString>

// Curves with chosen points for drawing tests and benchmarks. Each is loaded from an empty
// data file of measure "cov" with two values for user "alice" in `repository` (made when
// missing), so the loader reads nothing and shows nothing, and then given its points and
// scale directly.
namespace ChartFixture {

inline KVDCurve* curve(const QString& repository, const QPolygon& points, double span, double top,
                       double bottom, int field = 1)
{
    // Made when missing, kept otherwise.
    QFile(QDir(repository).filePath(QStringLiteral("cov.alice.2.kvd"))).open(QIODevice::Append);
    QDateTime start, end;
    // Loaded as field 1, which every file has; the field shown is set below.
    auto* c =
        new KVDCurve(repository, QStringLiteral("cov"), 1, 2, QStringLiteral("alice"), start, end);
    c->setPoints(points);
    c->span = span;
    c->displayMax = top;
    c->maxValue = top;
    c->minValue = bottom;
    c->name = QStringLiteral("cov2");
    c->user = QStringLiteral("alice");
    c->field = field;
    return c;
}

} // namespace ChartFixture

#endif
