#include "chartfixture.h"
#include "fakestudio.h"
#include "kvdcsvexport.h"
#include "modalanswerer.h"
#include "qakvd.h"
#include "samplerepository.h"
#include "testenv.h"

#include <QDialog>
#include <QRandomGenerator>
#include <QtTest>

#include <ctime>

// The CSV export of the shown curves: golden files, the rows compared with a scan of
// every point for every row, and the viewer's export command.
using Curves = QList<QPolygon>;

namespace {

// Every row scans every point of every curve, as the rows are defined.
QByteArray scanEveryPoint(const QList<KVDCurve*>& curves, const QDateTime& start,
                          const QDateTime& end)
{
    QDateTime instant;
    for (const KVDCurve* curve : curves)
        if (!curve->points->isEmpty() &&
            (instant.isNull() || start.addSecs(curve->points->first().x()) < instant))
            instant = start.addSecs(curve->points->first().x());
    QByteArray out;
    for (bool more = !instant.isNull(); more;) {
        out += instant.toString("'=DATE('yyyy;M;d')+TEMPS('H;m;s)").toLatin1();
        QDateTime next;
        more = false;
        for (const KVDCurve* curve : curves) {
            out += ',';
            for (const QPoint& point : *curve->points) {
                const QDateTime t = start.addSecs(point.x());
                if (t == instant)
                    out += QByteArray::number(-qint64(point.y()));
                else if (instant < t && t < end && (!more || t < next))
                    next = t, more = true;
            }
        }
        out += '\n';
        instant = next;
    }
    return out;
}

QByteArray read(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TstExport : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    FakeStudio m_host;

    QList<KVDCurve*> curves(const Curves& points)
    {
        QList<KVDCurve*> made;
        for (const QPolygon& p : points)
            made << ChartFixture::curve(m_dir.path(), p, 0.0, 100.0, 0.0);
        return made;
    }

private slots:
    void initTestCase()
    {
        TestEnv::pin();
        m_host.dataDirectory = TestEnv::built("share/kavendi");
        m_host.install();
    }
    void cleanup() { qputenv("TZ", "UTC"), tzset(); }

    void golden_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QDateTime>("start");
        QTest::addColumn<int>("span");
        QTest::addColumn<Curves>("points");
        auto at = [](const char* text) { return QDateTime::fromString(text, Qt::ISODate); };
        QTest::newRow("three rows") << "three_rows" << at("2005-03-07T14:05:00") << 86400
                                    << Curves{{{0, -5}, {3600, -6}, {7200, -7}}};
        QTest::newRow("empty columns") << "empty_columns" << at("2001-01-01T00:00:00") << 86400
                                       << Curves{{{0, -5}, {60, -6}}, {{30, -7}}};
        QTest::newRow("view end") << "view_end" << at("2001-01-01T10:00:00") << 3600
                                  << Curves{{{0, -1}, {3600, -2}}, {{1800, -3}, {3600, -4}}};
        QTest::newRow("first at view end")
            << "first_at_view_end" << at("2001-01-01T10:00:00") << 3600
            << Curves{{{3600, -12}, {3700, -2}}, {{3600, -4}, {3600, -13}}};
        QTest::newRow("before view, unordered")
            << "before_view" << at("2001-06-30T23:59:00") << 3600
            << Curves{{{-120, -1}, {90, -2}, {-60, -3}}};
    }

    void golden()
    {
        QFETCH(QString, name);
        QFETCH(QDateTime, start);
        QFETCH(int, span);
        QFETCH(Curves, points);
        const QList<KVDCurve*> shown = curves(points);
        const QString path = m_dir.filePath(name + ".csv");
        QVERIFY(KVDCsvExport::write(path, shown, start, start.addSecs(span)));
        qDeleteAll(shown);
        QCOMPARE(read(path), read(TestEnv::dataFile("csv/" + name + ".csv")));
    }

    void sameAsScanningEveryPoint_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QString>("start");
        QTest::addColumn<int>("seed");
        for (int seed = 1; seed <= 40; ++seed)
            QTest::addRow("UTC %d", seed) << QByteArray("UTC") << "2001-01-01T23:00:00.250" << seed;
        for (int seed = 1; seed <= 10; ++seed) {
            QTest::addRow("Paris spring %d", seed)
                << QByteArray("Europe/Paris") << "2021-03-28T01:00:00" << seed;
            QTest::addRow("Paris autumn %d", seed)
                << QByteArray("Europe/Paris") << "2021-10-31T01:00:00" << seed;
        }
    }

    // Random curves on a grid of 150 s, so that instants are shared, repeated and found on
    // either side of the view and at its very end (to the millisecond on odd seeds).
    void sameAsScanningEveryPoint()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QString, start);
        QFETCH(int, seed);
        qputenv("TZ", zone), tzset();
        const QDateTime from = QDateTime::fromString(start, Qt::ISODateWithMs);
        QVERIFY2((from.offsetFromUtc() != 0) == (zone != "UTC"), "the zone is in force");
        QRandomGenerator random(seed);
        const QDateTime to = from.addMSecs(150000 * random.bounded(10, 80) + (seed % 2) * 400);
        Curves points(random.bounded(5));
        for (QPolygon& p : points)
            for (int n = random.bounded(40); n > 0; --n)
                p << QPoint(150 * random.bounded(-10, 90), -random.bounded(-1000, 100000));
        const QList<KVDCurve*> shown = curves(points);
        const QByteArray expected = scanEveryPoint(shown, from, to);
        QCOMPARE(KVDCsvExport::rows(shown, from, to), expected);
        qDeleteAll(shown);
    }

    void exportCommand_data()
    {
        QTest::addColumn<QString>("answer"); // the file name typed, or empty to cancel
        QTest::addColumn<bool>("shown");     // a curve is on display
        QTest::addColumn<QByteArray>("written");
        QTest::newRow("written")
            << "out.csv" << true
            << QByteArray("=DATE(2001;1;1)+TEMPS(0;0;0),12\n=DATE(2001;1;1)+TEMPS(0;1;0),3\n");
        QTest::newRow("cancelled") << "" << true << QByteArray();
        QTest::newRow("no curve") << "out.csv" << false << QByteArray();
        QTest::newRow("unwritable") << "/proc/kvd-out.csv" << true << QByteArray();
    }

    void exportCommand()
    {
        QFETCH(QString, answer);
        QFETCH(bool, shown);
        QFETCH(QByteArray, written);
        SampleRepository repository;
        QVERIFY(repository.writePair("tests", "alice", 2, {{978307200, 1, {1, 2}}}));
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(repository.root()));
        QAKVD viewer(nullptr, "export", 0, true);
        viewer.view().start = QDateTime(QDate(2001, 1, 1), QTime(0, 0));
        viewer.view().end = viewer.view().start.addDays(1);
        if (shown)
            viewer.view().curves << curves({{{0, -12}, {60, -3}}});
        QTemporaryDir out;
        const QString path = QDir(out.path()).filePath(answer);
        ModalAnswerer answers;
        auto accept = [](QWidget* dialog) { qobject_cast<QDialog*>(dialog)->accept(); };
        if (shown)
            answers.push(answer.isEmpty() ? ModalAnswerer::click("Cancel")
                                          : ModalAnswerer::type("fileNameEdit", path, accept));
        viewer.ImportFile(0);
        QVERIFY2(answers.unexpected() == 0 && answers.pending() == 0,
                 "the save dialog only, once a curve is shown");
        QCOMPARE(read(path), written);
        QCOMPARE(QDir(out.path()).entryList(QDir::Files).size(), written.isEmpty() ? 0 : 1);
    }
};

QTEST_MAIN(TstExport)
#include "tst_export.moc"
