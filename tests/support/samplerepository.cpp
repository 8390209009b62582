#include "samplerepository.h"
#include "kvdmeasurefile.h"

SampleRepository::SampleRepository() = default;

QString SampleRepository::path(const QString& measure, const QString& user, int fieldCount,
                               const char* extension) const
{
    return KVDMeasureFile::path(root(), measure, user, fieldCount, extension);
}

bool SampleRepository::fill(const KVDSampleWriter::Options& options, QStringList* files)
{
    m_error.clear();
    return KVDSampleWriter::writeRepository(root(), options, files, nullptr, &m_error);
}

bool SampleRepository::writePair(const QString& measure, const QString& user, int fieldCount,
                                 const QList<KVDSampleWriter::Record>& records)
{
    m_error.clear();
    return KVDSampleWriter::writePair(root(), measure, user, fieldCount, records, &m_error);
}

QList<KVDSampleWriter::Record>
SampleRepository::series(quint32 firstDate, const QList<quint32>& values, int fieldCount)
{
    QList<KVDSampleWriter::Record> records;
    for (int i = 0; i < values.size(); ++i) {
        records.append({firstDate + quint32(i) * 86400u, 1, {}});
        for (int field = 1; field <= fieldCount; ++field)
            records.last().values << values.at(i) * quint32(field);
    }
    return records;
}
