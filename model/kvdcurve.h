#ifndef KVDCURVE_H
#define KVDCURVE_H

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
    // `points` stays null. The file is opened read-only.
    KVDCurve(const QString& repository, const QString& measure, int field, int valueCount,
             const QString& user, QDateTime& start, QDateTime& end);
    ~KVDCurve() override;

    // Turns this curve into the percentage this/other, pairing points by index; a missing
    // or zero point of other gives 0.
    void DIV(const KVDCurve& other);

    // Adds seconds to every point's x (negative moves the points left). Coordinates are
    // 32-bit: a result outside that range wraps rather than overflowing.
    void MoveX(qint64 seconds);

    // The measure name a curve of valueCount values reads: measure cut at the last
    // occurrence of the decimal valueCount (abc88 with 8 gives abc8), or measure whole
    // when that text does not occur.
    static QString FileMeasure(const QString& measure, int valueCount);

    QPolygon* points = nullptr; // owned; null when the file could not be opened
    double span = 0.0;          // seconds of the view span the x values were made for
    double displayMax = 0.0;    // top of the value scale
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
};

#endif
