#ifndef KVDCSVEXPORT_H
#define KVDCSVEXPORT_H

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

class KVDCurve;

// The shown curves as spreadsheet rows: one row per instant at which some curve has a
// point, from the earliest first point to just before the view end; the first column a
// date-time formula, then one column per curve with its value(s) at that instant.
class KVDCsvExport
{
public:
    // The whole file; empty when no curve has a point.
    static QByteArray rows(const QList<KVDCurve*>& curves, const QDateTime& start, const QDateTime& end);
    // Writes rows() to path; false when the file cannot be created (nothing is written).
    static bool write(const QString& path, const QList<KVDCurve*>& curves, const QDateTime& start,
                      const QDateTime& end);
    // "=DATE(y;m;d)+TEMPS(h;m;s)": the separators and function names of a French-language
    // spreadsheet are required as they are.
    static QByteArray formula(const QDateTime& instant);
};

#endif
