#include "measurefixture.h"

#include <QDir>
#include <QFile>
#include <QMap>

namespace MeasureFixture {

namespace {

bool writeWords(const QString& path, const QList<quint32>& words)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    const qint64 bytes = qint64(words.size()) * 4;
    return file.write(reinterpret_cast<const char*>(words.constData()), bytes) == bytes;
}

} // namespace

bool write(const QString& root, const QString& measure, const QString& user, int fieldCount,
           const QList<Record>& records)
{
    const QString base = root + QLatin1Char('/') + measure + QLatin1Char('.') + user +
                         QLatin1Char('.') + QString::number(fieldCount);
    QList<quint32> data;
    QList<quint32> index;
    QMap<quint32, QList<quint32>> latest; // key -> values of its latest record
    QMap<quint32, int> indexEntry;        // key -> position of its offset in index
    for (const Record& record : records) {
        latest[record.key] = record.values;
        const quint32 offset = quint32(data.size() * 4);
        if (!indexEntry.contains(record.key)) {
            indexEntry.insert(record.key, int(index.size()) + 1);
            index << record.key << offset;
        } else {
            index[indexEntry.value(record.key)] = offset;
        }
        data << record.date << record.key;
        for (int k = 0; k < fieldCount; ++k) {
            quint32 total = 0; // unsigned arithmetic wraps, as the store's does
            for (const QList<quint32>& values : std::as_const(latest))
                total += values.value(k);
            data << record.values.value(k) << total;
        }
    }
    return writeWords(base + QLatin1String(".kvd"), data) &&
           writeWords(base + QLatin1String(".idx"), index);
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
