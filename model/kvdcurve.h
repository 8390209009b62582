#ifndef KVDCURVE_H
#define KVDCURVE_H

#include "kvdcurvesummary.h"

#include <QColor>
#include <QDateTime>
#include <QObject>
#include <QPolygon>
#include <QString>
#include <QTransform>

// One plotted series: one field of one measure of one user, loaded whole from its data
// file. Point x is seconds from the view start to the record's date, y the plotted value
// (the field's running total) negated so that larger values lie higher on screen.
// The viewer moves every x when the view start changes instead of reloading.
//
// A move is not applied to the points at once: it joins a pending shift that points()
// applies the next time the list is read. Painting and hit tests read through pointAt()
// and summary() instead, so a pan costs nothing per point.
class KVDCurve : public QObject
{
    Q_OBJECT

public:
    // Loads field `field` (from 1) of the data file of measure `measure`, user `user`,
    // `valueCount` values per record, in directory `repository`. `measure` may end with
    // the decimal value count; it is cut at the last occurrence of that text. `start` and
    // `end` give the wanted span: on return start is the first record's date and end
    // start + span (both unchanged for a file without records). When the file cannot be
    // read, or field is not within 1..valueCount, the shell's warning says so and
    // the curve has no point list. The file is opened read-only.
    KVDCurve(const QString& repository, const QString& measure, int field, int valueCount,
             const QString& user, QDateTime& start, QDateTime& end);
    ~KVDCurve() override;

    // Turns this curve into the percentage this/other, pairing points by index; a missing
    // or zero point of other gives 0.
    void DIV(const KVDCurve& other);

    // Adds seconds to every point's x (negative moves the points left). Coordinates are
    // 32-bit: a result outside that range wraps rather than overflowing. Constant time: the
    // move is kept pending, and wrapping makes the sum of pending moves give each point
    // exactly what the moves one by one would have.
    void MoveX(qint64 seconds);

    // The points, every move applied; null when the file could not be read. Applies a
    // pending shift first, in time proportional to the points. The list stays valid
    // until the next MoveX, setPoints or DIV.
    const QPolygon* points() const;
    bool hasPoints() const { return m_points && !m_points->isEmpty(); }
    int pointCount() const { return m_points ? int(m_points->size()) : 0; }
    // Point i (0 <= i < pointCount()) as points() would give it, without applying the
    // pending shift to the others.
    QPoint pointAt(int i) const
    {
        const QPoint p = m_points->at(i);
        return QPoint(int(quint32(p.x()) + m_shift), p.y());
    }
    // The shift pointAt() adds to every stored x, and the summary of the stored points
    // (their x without that shift).
    quint32 pendingShift() const { return m_shift; }
    const KVDCurveSummary& summary() const { return m_summary; }
    // Gives the curve these points in place of what it read.
    void setPoints(const QPolygon& points);

    // The measure name a curve of valueCount values reads: measure cut at the last
    // occurrence of the decimal valueCount (abc88 with 8 gives abc8), or measure whole
    // when that text does not occur.
    static QString FileMeasure(const QString& measure, int valueCount);

    double span = 0.0;       // seconds of the view span the x values were made for
    double displayMax = 0.0; // top of the value scale
    double minValue = 0.0;
    double maxValue = 0.0;
    double paperWidth = 0.0; // paper size at the last paint, for hit tests
    double paperHeight = 0.0;
    QTransform matrix; // point space to paper, kept by painting
    QString name;      // measure key: measure + value count (cov8)
    int valueCount = 0;
    int field = 0;
    QString user;
    QString repository;
    QDateTime firstDate;
    QDateTime endDate;
    bool isRatio = false;
    QColor color;
    bool hasColor = false;
    bool fixedScale = false;

private:
    QPolygon* m_points = nullptr; // owned; null when the file could not be opened
    mutable quint32 m_shift = 0;  // added to every stored x, modulo 2^32
    mutable KVDCurveSummary m_summary;
};

#endif
