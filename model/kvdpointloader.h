#ifndef KVDPOINTLOADER_H
#define KVDPOINTLOADER_H

#include <QPoint>
#include <QtGlobal>

#include <functional>

class KVDCurveSummary;
class KVDMeasureFile;

// Turns the records of a data file into a curve's points: x is the record's date in
// seconds after the first record's, y minus the field's total, both wrapped to 32 bits.
//
// A large file is cut into chunks that every core converts at once, each chunk read with
// its own positional reads, so a load runs at about the rate the file can be read. The
// points come out in file order all the same, and a file cut short while it is read
// keeps the records before the first one missing, as a reader going from the start would.
class KVDPointLoader
{
public:
    struct Result
    {
        qint64 count = 0;      // points written
        quint32 firstDate = 0; // date of the first record, seconds since 1970 (when count > 0)
        quint32 lowTotal = 0;  // the field's lowest and highest total (when count > 0)
        quint32 highTotal = 0;
    };
    // Called on the loading thread with the records converted so far.
    using Progress = std::function<void(qint64 done)>;

    // Converts the records of file (open, read from the start) for field n (1 to its
    // field count) into points, which has room for file.recordCount() points, and gives
    // summary, already started for that count, a leaf for every run of the points
    // written; the caller finishes it with the result's count. threads is the most
    // threads to use, the caller's included; 0 takes one a core.
    static Result load(const KVDMeasureFile& file, int field, QPoint* points,
                       KVDCurveSummary& summary, const Progress& progress = Progress(),
                       int threads = 0);
};

#endif
