#ifndef KVDCSVEXPORT_H
#define KVDCSVEXPORT_H

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

class KVDCurve;

// The shown curves as spreadsheet rows. The first row is at the earliest first point of
// any curve (even outside the view); then one row for every later instant at which some
// curve has a point, strictly before the view end. Each row is a date-time formula, then
// for each curve a "," and its values at that instant back to back (nothing when it has
// none). Instants are start + x; values are -y. Curves without points take part only as
// empty columns; with no point at all there are no rows.
class KVDCsvExport
{
public:
    // The whole file; empty when no curve has a point.
    static QByteArray rows(const QList<KVDCurve*>& curves, const QDateTime& start,
                           const QDateTime& end);
    // Writes rows() to path, truncating it. Nothing is created when there are no rows;
    // false when the file cannot be written.
    static bool write(const QString& path, const QList<KVDCurve*>& curves, const QDateTime& start,
                      const QDateTime& end);
    // "=DATE(y;m;d)+TEMPS(h;m;s)": the separators and function names of a French-language
    // spreadsheet are required as they are.
    static QByteArray formula(const QDateTime& instant);
};

#endif
