#ifndef SAMPLEREPOSITORY_H
#define SAMPLEREPOSITORY_H

#include "kvdsamplewriter.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

// A throw-away measure repository for a test, filled by the writer kvd sample uses. The
// directory and everything in it go when the object does.
class SampleRepository
{
public:
    SampleRepository();

    bool isValid() const { return m_dir.isValid(); }
    QString root() const { return m_dir.path(); }
    // root/measure.user.fieldCount + extension.
    QString path(const QString& measure, const QString& user, int fieldCount,
                 const char* extension = ".kvd") const;
    // Why the last fill() or writePair() failed.
    QString error() const { return m_error; }

    // A demo repository as kvd sample makes it; *files receives the data files.
    bool fill(const KVDSampleWriter::Options& options, QStringList* files = nullptr);
    // One pair holding exactly these records, totals and index worked out.
    bool writePair(const QString& measure, const QString& user, int fieldCount,
                   const QList<KVDSampleWriter::Record>& records);
    // Records of key 1, one a day from firstDate, whose field 1 takes the values given and
    // field f each value times f, so that every field differs.
    static QList<KVDSampleWriter::Record> series(quint32 firstDate, const QList<quint32>& values,
                                                 int fieldCount);

private:
    QTemporaryDir m_dir;
    QString m_error;
};

#endif
