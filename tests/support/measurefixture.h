#ifndef MEASUREFIXTURE_H
#define MEASUREFIXTURE_H

#include <QList>
#include <QString>
#include <QtGlobal>

// Measure files for tests, written by the same writer as kvd sample: records in the order
// given, each field's running total over the latest record of every key, and the index of
// each key's latest record.
namespace MeasureFixture {

struct Record
{
    quint32 date = 0;
    quint32 key = 0;
    QList<quint32> values; // one per field
};

// Writes root/measure.user.fieldCount.kvd and .idx; a record's missing values count as 0,
// values past fieldCount are left out.
// False when a file cannot be written.
bool write(const QString& root, const QString& measure, const QString& user, int fieldCount,
           const QList<Record>& records);
// Records of one key whose values are the given field-1 values, one record a day from
// firstDate; the other fields get value * field number, so each field is distinct.
QList<Record> series(quint32 firstDate, const QList<quint32>& values, int fieldCount);
// Removes bytes from the end of a file, as a write torn by a crash leaves it.
bool truncateBy(const QString& path, qint64 bytes);

} // namespace MeasureFixture

#endif
