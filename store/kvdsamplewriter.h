#ifndef KVDSAMPLEWRITER_H
#define KVDSAMPLEWRITER_H

#include <QDate>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <cstdio>
#include <vector>

// Writes measure file pairs directly in the measure file layout (see KVDMeasureFile),
// with the running totals and the key index a sequence of store writes would have left.
// Demo repositories, test fixtures and benchmarks are all made with it.
//
// Use: create() a pair, append() records in file order, finish() to flush the data and
// write the index. A pair that is not finished has an incomplete data file and no index;
// the destructor does not finish it.
class KVDSampleWriter
{
public:
    // One record as a recording tool would write it: values holds one word per field.
    struct Record
    {
        quint32 date = 0;
        quint32 key = 0;
        QList<quint32> values;
    };

    // What writeRepository() makes. end is the last day with records (UTC); a null date
    // means today (UTC).
    struct Options
    {
        int users = 3;
        int days = 90;
        int perDay = 4;
        quint32 seed = 1;
        QDate end;
    };

    KVDSampleWriter() = default;
    ~KVDSampleWriter();
    KVDSampleWriter(const KVDSampleWriter&) = delete;
    KVDSampleWriter& operator=(const KVDSampleWriter&) = delete;

    // Starts the pair root/measure.user.fieldCount.{kvd,idx}, replacing any such pair.
    // False with *error set when the count is out of range or the data file cannot be
    // created.
    bool create(const QString& root, const QString& measure, const QString& user, int fieldCount,
                QString* error = nullptr);
    // Appends a record of fieldCount values; its totals follow from the records before.
    // False once the data file would outgrow the 32-bit offsets of the index, or after a
    // write error (finish() then reports it).
    bool append(quint32 date, quint32 key, const quint32* values);
    // Flushes the data file and writes the index. False with *error on any failure.
    bool finish(QString* error = nullptr);

    QString dataPath() const { return m_dataPath; }
    qint64 recordCount() const { return m_recordCount; }

    // A whole pair from an explicit list of records (values.size() must be fieldCount).
    static bool writePair(const QString& root, const QString& measure, const QString& user,
                          int fieldCount, const QList<Record>& records, QString* error = nullptr);
    // A demo repository in root (created if missing): for each of options.users users, a
    // 4-field and an 8-field "cov" measure and a 2-field "tests" measure, each with
    // options.perDay records a day over options.days days. The same options give the same
    // bytes. *files receives the data files written, *records the number of records.
    static bool writeRepository(const QString& root, const Options& options,
                                QStringList* files = nullptr, qint64* records = nullptr,
                                QString* error = nullptr);
    // The user names writeRepository() uses, in order.
    static QStringList userNames(int count);

private:
    bool flush();
    void fail(const QString& message);

    std::FILE* m_data = nullptr;
    QString m_dataPath;
    QString m_indexPath;
    int m_fieldCount = 0;
    int m_recordWords = 0;
    quint64 m_offset = 0; // byte offset of the next record
    qint64 m_recordCount = 0;
    QString m_error;
    std::vector<quint32> m_out;    // words waiting to be written
    size_t m_used = 0;             // words of m_out in use
    std::vector<quint32> m_totals; // running total of each field
    // Index entries in order of first appearance, and each key's latest values.
    std::vector<quint32> m_index;  // key, offset, key, offset...
    std::vector<quint32> m_latest; // fieldCount words per index entry
    QHash<quint32, int> m_slots;   // key -> index entry
    // Recently used keys by a hash of the key, in front of m_slots: most files have few
    // keys, and the lookup is the bulk of the work per record.
    struct Recent
    {
        quint32 key = 0;
        int slot = -1;
    };
    static constexpr int RecentBits = 8;
    Recent m_recent[1 << RecentBits];
};

#endif
