#include "kvdcurve.h"
#include "kvdfreshmemory.h"
#include "kvdmeasurefile.h"
#include "kvdpointloader.h"
#include "kvdshell.h"
#include "studiointerface.h"

#include <QArrayDataPointer>
#include <QCoreApplication>

#include <climits>

namespace {

// Points are 32-bit; values and second counts beyond that range wrap instead of being
// undefined, so a total of 2^31 or more still loads.
int wrap32(qint64 value)
{
    return static_cast<int>(static_cast<quint32>(static_cast<quint64>(value)));
}

} // namespace

QString KVDCurve::FileMeasure(const QString& measure, int valueCount)
{
    const int at = measure.lastIndexOf(QString::number(valueCount));
    return at < 0 ? measure : measure.left(at);
}

KVDCurve::KVDCurve(const QString& repository, const QString& measure, int field, int valueCount,
                   const QString& user, QDateTime& start, QDateTime& end)
{
    const QString fileMeasure = FileMeasure(measure, valueCount);
    const QString path = KVDMeasureFile::path(repository, fileMeasure, user, valueCount);

    QString error;
    if (!KVDMeasureFile::checkFieldCount(valueCount, &error)) {
        KVDShell::warningBox(error);
        return;
    }
    // The field's total is word 2 * field + 1; any other field number would read past
    // the record or plot the key.
    if (field < 1 || field > valueCount) {
        KVDShell::warningBox(tr("Field %1 does not exist in %2 (1 to %3)\n",
                                "%1 is a field number, %2 a file name, %3 the field count")
                                 .arg(field)
                                 .arg(path)
                                 .arg(valueCount));
        return;
    }
    // Read-only: a repository the user may not write to must still display.
    KVDMeasureFile file;
    if (!file.open(path, valueCount)) {
        KVDShell::warningBox(tr("Can't open file: %1\n", "%1 is a file name").arg(path));
        return;
    }

    // Room for one point per record, taken without filling it first: every point is
    // written by the load, and filling tens of megabytes would cost as much again. Points
    // are counted in int, which bounds the records a curve can hold.
    const qint64 records = file.recordCount();
    QArrayDataPointer<QPoint> storage(
        QTypedArrayData<QPoint>::allocate(records <= INT_MAX ? records : 0));
    if (records > 0 && !storage.data()) {
        KVDShell::warningBox(
            tr("Cannot hold the %1 records of %2 in memory\n", "%1 is a count, %2 a file name")
                .arg(records)
                .arg(path));
        return;
    }
    name = fileMeasure + QString::number(valueCount);
    this->user = user;
    this->repository = repository;
    this->valueCount = valueCount;
    this->field = field;
    span = double(start.secsTo(end));

    // The cancel button is not consulted: a curve always holds every record of its file.
    StudioInterface* host = KVDShell::host();
    if (host)
        host->progressStart(int(records), tr("KVD Processing...", "Progress Message"),
                            tr("&Stop Loading"), this, 1);
    KVDFreshMemory::prepare(storage.data(), records * qint64(sizeof(QPoint)));
    m_summary.start(records);
    KVDPointLoader::Progress progress;
    if (host)
        progress = [host](qint64 done) { host->progressStep(int(done)); };
    const KVDPointLoader::Result loaded =
        KVDPointLoader::load(file, field, storage.data(), m_summary, progress);
    const int count = int(loaded.count);
    m_summary.finish(count);
    storage.size = count;
    m_points = new QPolygon(QList<QPoint>(storage));
    const qint64 originSecs = loaded.firstDate;
    minValue = double(loaded.lowTotal);
    maxValue = double(loaded.highTotal);

    if (count > 0) {
        firstDate = QDateTime::fromSecsSinceEpoch(originSecs);
        start = firstDate;
        end = firstDate.addSecs(qint64(span));
        endDate = end;
    }
    // An empty file leaves the caller's range as it was: the curve has no origin to
    // anchor it to, and a null range would blank the chart.
    displayMax = maxValue;
    file.close();
    if (host)
        host->progressEnd();
}

KVDCurve::~KVDCurve()
{
    delete m_points;
}

void KVDCurve::DIV(const KVDCurve& other)
{
    // Points are paired by index, not by date; a point the other curve lacks counts as 0.
    // Only y changes, so a pending shift of x stays pending.
    if (m_points) {
        const int otherCount = other.pointCount();
        for (int i = 0; i < m_points->size(); ++i) {
            QPoint& p = (*m_points)[i];
            const int b = i < otherCount ? other.pointAt(i).y() : 0;
            if (b == 0) {
                p.setY(0);
                continue;
            }
            const double percent = double(p.y()) / double(b) * 100.0;
            p.setY(wrap32(-qint64(percent)));
        }
        m_summary.build(*m_points);
    }
    // Both limits are divided by the other curve's maximum; the scale of a ratio curve
    // is always 0 to 100.
    if (other.maxValue == 0.0) {
        maxValue = 0.0;
        minValue = 0.0;
    } else {
        maxValue = maxValue / other.maxValue * 100.0;
        minValue = minValue / other.maxValue * 100.0;
    }
    isRatio = true;
    displayMax = 100.0;
}

void KVDCurve::MoveX(qint64 seconds)
{
    if (m_points)
        m_shift += quint32(quint64(seconds));
}

const QPolygon* KVDCurve::points() const
{
    if (m_points && m_shift != 0) {
        for (QPoint& p : *m_points)
            p.setX(int(quint32(p.x()) + m_shift));
        m_shift = 0;
        m_summary.build(*m_points);
    }
    return m_points;
}

void KVDCurve::setPoints(const QPolygon& points)
{
    if (m_points)
        *m_points = points;
    else
        m_points = new QPolygon(points);
    m_shift = 0;
    m_summary.build(*m_points);
}
