#ifndef KVDMEASUREFILE_H
#define KVDMEASUREFILE_H

#include <QString>
#include <QtGlobal>

#include <cstdio>
#include <vector>

// Reader of a measure data file: the one place that knows the record layout.
//
// A data file is a plain sequence of records of equal size, no header, no padding, in
// the order written. Every word is a 32-bit unsigned number in the writer's native byte
// order. With N fields a record is 2N + 2 words (8 + 8N bytes):
//   word 0        date   seconds since 1970-01-01 00:00:00 UTC
//   word 1        key    source that contributed the record
//   word 2 + 2k   value  of field k (k = 0 .. N-1) written by this record
//   word 3 + 2k   total  of field k over every key after this record
// A trailing partial record is ignored. The index file beside it (".idx") holds 8-byte
// entries, key then byte offset of that key's latest record, in order of first
// appearance. Files are named root/M.U.N.kvd (".idx", ".lck" for the others).
class KVDMeasureFile
{
public:
    static constexpr int MaxFields = 9999;

    // The parts of a file name M.U.N.ext as readers split it.
    struct Name
    {
        QString measure;      // text before the first "."
        QString user;         // text between the first and the second "."
        int fieldCount = 0;   // text between the second and third "." as a number, else 0
        bool numeric = false; // that text was a decimal number
        // The measure key: measure followed by the field count in decimal (cov8).
        QString key() const { return measure + QString::number(fieldCount); }
    };

    // Splits the last component of fileName (a directory part is ignored). M and U hold
    // no "."; a name with more dots is split all the same, as every reader does.
    static Name splitName(const QString& fileName);
    // root + separator + M.U.N + extension (".kvd", ".idx" or ".lck").
    static QString path(const QString& root, const QString& measure, const QString& user,
                        int fieldCount, const char* extension = ".kvd");
    static int recordWords(int fieldCount) { return 2 * fieldCount + 2; }
    // False with *error set when fieldCount is negative or above MaxFields.
    static bool checkFieldCount(int fieldCount, QString* error);

    // Word accessors on a record returned by next(); field numbers n count from 1.
    static quint32 date(const quint32* record) { return record[0]; }
    static quint32 key(const quint32* record) { return record[1]; }
    static quint32 value(const quint32* record, int k) { return record[2 + 2 * k]; }
    static quint32 total(const quint32* record, int k) { return record[3 + 2 * k]; }
    static quint32 fieldTotal(const quint32* record, int n) { return record[2 * n + 1]; }

    KVDMeasureFile() = default;
    ~KVDMeasureFile();
    KVDMeasureFile(const KVDMeasureFile&) = delete;
    KVDMeasureFile& operator=(const KVDMeasureFile&) = delete;

    // Read: curves only read, so a read-only repository can still be charted. ReadWrite:
    // the record dialogs, whose records may be deleted next, refuse a file the user may
    // not change when they list it rather than when a deletion is tried.
    enum class Access { Read, ReadWrite };

    // Opens a data file of fieldCount fields; records are only ever read through it. False,
    // with a message for the user in *error, when the count is out of range or the path is
    // not a regular file that opens with that access; nothing is allocated for a refused
    // count.
    bool open(const QString& path, int fieldCount, QString* error = nullptr,
              Access access = Access::Read);
    void close();
    bool isOpen() const { return m_file != nullptr; }
    int fieldCount() const { return m_fieldCount; }
    qint64 size() const { return m_size; }
    // Whole records in the file.
    qint64 recordCount() const;

    // The next whole record, or null at the end of the file. The words stay valid until
    // the next call of next(), seek() or close().
    const quint32* next()
    {
        if (m_next >= m_records && !refill())
            return nullptr;
        m_offset = m_bufferOffset + qint64(m_next) * 4 * m_recordWords;
        return m_buffer.data() + m_next++ * size_t(m_recordWords);
    }
    // Reads records first.. into words (room for count records) without moving next(), so
    // that several threads may read parts of one file at once. Answers the whole records
    // read: fewer than count at the end of the file or when a read fails.
    qint64 readAt(qint64 first, quint32* words, qint64 count) const;
    // Byte offset of the record next() returned last.
    qint64 offset() const { return m_offset; }
    // Makes next() continue with the record at byteOffset.
    bool seek(qint64 byteOffset);

private:
    // Loads the records following the buffer; false at the end of the file or when none
    // is open.
    bool refill();

    std::FILE* m_file = nullptr;
    int m_fieldCount = 0;
    int m_recordWords = 0;
    qint64 m_size = 0;
    std::vector<quint32> m_buffer;
    qint64 m_bufferOffset = 0; // file offset of m_buffer[0]
    size_t m_records = 0;      // whole records in the buffer
    size_t m_next = 0;         // index of the record next() answers
    qint64 m_offset = -1;
};

#endif
