#include "measurefixture.h"
#include "kvdsamplewriter.h"

#include <QFile>

namespace MeasureFixture {

bool write(const QString& root, const QString& measure, const QString& user, int fieldCount,
           const QList<Record>& records)
{
    QList<KVDSampleWriter::Record> fitted;
    for (const Record& record : records) {
        QList<quint32> values = record.values.mid(0, fieldCount);
        values.resize(fieldCount); // missing values count as 0
        fitted.append({record.date, record.key, values});
    }
    return KVDSampleWriter::writePair(root, measure, user, fieldCount, fitted);
}

QList<Record> series(quint32 firstDate, const QList<quint32>& values, int fieldCount)
{
    QList<Record> records;
    for (int i = 0; i < values.size(); ++i) {
        Record record;
        record.date = firstDate + quint32(i) * 86400u;
        record.key = 1;
        for (int field = 1; field <= fieldCount; ++field)
            record.values << values.at(i) * quint32(field);
        records << record;
    }
    return records;
}

bool truncateBy(const QString& path, qint64 bytes)
{
    QFile file(path);
    return file.size() >= bytes && file.resize(file.size() - bytes);
}

} // namespace MeasureFixture
