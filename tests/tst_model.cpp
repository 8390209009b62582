#include "fakestudio.h"
#include "kvdcurve.h"
#include "kvdcurvesummary.h"
#include "kvdevent.h"
#include "kvdeventlist.h"
#include "kvdmeasurefile.h"
#include "kvdpointloader.h"
#include "recordingshell.h"
#include "samplerepository.h"
#include "testenv.h"

#include <QtTest>

#include <memory>

using Records = QList<KVDSampleWriter::Record>;
static const auto series = &SampleRepository::series;
static constexpr quint32 D = 1700000000u;
static const QDate May(2024, 5, 1), June(2024, 6, 1);

// A curve's points, value range and scale top ("0,-5 10,-8 / 5..8 top 8"), or "no points".
static QString shapeOf(const KVDCurve& curve)
{
    QStringList points;
    for (const QPoint& p : curve.points() ? *curve.points() : QPolygon())
        points << QString("%1,%2").arg(p.x()).arg(p.y());
    const QString range = QString(" / %1..%2 top %3").arg(curve.minValue).arg(curve.maxValue);
    return curve.points() ? points.join(' ') + range.arg(curve.displayMax) : "no points";
}

// The first node of summary that does not hold its points' extremes and the first points
// at the extreme heights, as "begin..end", or "" when all do; every node is looked at.
static QString wrongNode(const KVDCurveSummary& summary, const QPolygon& points)
{
    QString wrong;
    int nodes = 0;
    summary.walk(
        0, int(points.size()),
        [&](const KVDCurveSummary::Node& node, int begin, int end) {
            ++nodes;
            const auto first = points.begin() + begin, last = points.begin() + end;
            auto byX = [](QPoint a, QPoint b) { return a.x() < b.x(); };
            auto byY = [](QPoint a, QPoint b) { return a.y() < b.y(); };
            const auto x = std::minmax_element(first, last, byX);
            const auto low = std::min_element(first, last, byY);
            const auto high = std::max_element(first, last, byY);
            const QList<int> want{x.first->x(),
                                  x.second->x(),
                                  low->y(),
                                  high->y(),
                                  int(low - points.begin()),
                                  int(high - points.begin())};
            if (want ==
                QList<int>{node.minX, node.maxX, node.minY, node.maxY, node.lowAt, node.highAt})
                return KVDCurveSummary::Visit::Descend;
            wrong = QString("%1..%2").arg(begin).arg(end);
            return KVDCurveSummary::Visit::Stop;
        },
        [](int) { return true; });
    return wrong.isEmpty() && nodes < points.size() / KVDCurveSummary::LeafPoints ? "too few nodes"
                                                                                  : wrong;
}

// A curve asked of a repository holding cov.alice.2.kvd with records, cut bytes short: what
// it shows, then the messages; a ratio curve shows after the division.
struct Load
{
    Records records;
    QString shows;
    qint64 cut = 0;           // negative: grown by so many bytes
    QString measure = "cov2"; // named with its count, as the menus name it
    int field = 1;
    int count = 2;
    int over = 0; // a ratio curve: the field divided by this one
};

// The chart model: curves loaded from measure files, ratio curves, and the event list.
class TstModel : public QObject
{
    Q_OBJECT

private:
    FakeStudio m_host; // counts the progress display
    RecordingShell m_shell{&m_host};

private slots:
    void initTestCase() { TestEnv::pin(); }
    void init()
    {
        m_shell.use();
        m_shell.messages.clear();
        m_host.starts = m_host.ends = m_host.lastStep = 0;
    }

    void load_data()
    {
        QTest::addColumn<Load>("c");
        const Records shuffled{{D, 1, {1, 0}}, {D - 500, 1, {2, 0}}, {D + 1000, 1, {3, 0}}};
        const Records one = series(D, {1}, 2);
        const QString open = "no points; warning|Can't open file: ROOT/%1.alice.%2.kvd\n";
        const QString bad =
            "no points; warning|Invalid number of measure values: 10000 (0 to 9999)\n";
        const QString none =
            "no points; warning|Field %1 does not exist in ROOT/cov.alice.2.kvd (1 to 2)\n";
        QTest::newRow("empty file") << Load{{}, " / 0..0 top 0"};
        QTest::newRow("dates out of order kept in file order")
            << Load{shuffled, "0,-1 -500,-2 1000,-3 / 1..3 top 3"};
        // Field 2 holds twice field 1.
        QTest::newRow("last field, smallest total later")
            << Load{series(D, {3, 1, 2}, 2), "0,-6 86400,-2 172800,-4 / 2..6 top 6", 0, "cov2", 2};
        QTest::newRow("truncated last record")
            << Load{series(D, {1, 2, 3}, 2), "0,-1 86400,-2 / 1..2 top 2", 4};
        // Minus 3e9 does not fit a signed 32-bit coordinate: it wraps to 2^32 - 3e9.
        QTest::newRow("total beyond 2^31")
            << Load{series(D, {3000000000u}, 2), "0,1294967296 / 3e+09..3e+09 top 3e+09"};
        QTest::newRow("missing file") << Load{one, open.arg("nope").arg(2), 0, "nope"};
        // The name is cut at the last occurrence of the count, digits and all.
        QTest::newRow("a12b1212 cut at the last 12")
            << Load{one, open.arg("a12b12").arg(12), 0, "a12b1212", 1, 12};
        QTest::newRow("count at the start leaves nothing")
            << Load{one, open.arg("").arg(8), 0, "8abc", 1, 8};
        // Sparse: more records than a curve counts, refused before anything is read.
        QTest::newRow("a terabyte of records")
            << Load{one,
                    "no points; warning|Cannot hold the 45812984491 records of "
                    "ROOT/cov.alice.2.kvd in memory\n",
                    -(qint64(1) << 40)};
        QTest::newRow("field 0") << Load{one, none.arg(0), 0, "cov", 0};
        QTest::newRow("field past the count") << Load{one, none.arg(3), 0, "cov", 3};
        QTest::newRow("count past the largest") << Load{one, bad, 0, "cov", 1, 10000};
        // Ratios pair points by index and divide both limits by the other curve's maximum:
        // field 1 over field 2, 1/3, 2/3, 3/4, then 2/4, 2/0, 2/2.
        const Records thirds{{D, 1, {1, 3}}, {D + 10, 1, {2, 3}}, {D + 20, 1, {3, 4}}};
        const Records zero{{D, 1, {2, 4}}, {D + 10, 1, {2, 0}}, {D + 20, 1, {2, 2}}};
        QTest::newRow("ratio truncated toward zero")
            << Load{thirds, "0,-33 10,-66 20,-75 / 25..75 top 100", 0, "cov2", 1, 2, 2};
        QTest::newRow("ratio with a zero point")
            << Load{zero, "0,-50 10,0 20,-100 / 50..50 top 100", 0, "cov2", 1, 2, 2};
        QTest::newRow("ratio over a field that cannot be read")
            << Load{series(D, {1, 2}, 2), "0,0 86400,0 / 0..0 top 100", 0, "cov2", 1, 2, 3};
    }

    void load()
    {
        QFETCH(Load, c);
        SampleRepository root;
        QVERIFY(root.writePair("cov", "alice", 2, c.records));
        QFile data(root.path("cov", "alice", 2));
        QVERIFY(data.resize(data.size() - c.cut)); // a write torn by a crash
        const QDateTime asked = QDateTime::fromSecsSinceEpoch(D - 86400 * 60);
        QDateTime start = asked, end = asked.addDays(30);
        std::unique_ptr<KVDCurve> other(
            c.over ? new KVDCurve(root.root(), "cov2", c.over, 2, "alice", start, end) : nullptr);
        init();
        KVDCurve curve(root.root(), c.measure, c.field, c.count, "alice", start, end);
        if (other)
            curve.DIV(*other);
        const QStringList shows = QStringList(shapeOf(curve)) + m_shell.messages;
        QCOMPARE(shows.join("; ").replace(root.root(), "ROOT"), c.shows);
        // The range keeps its length but starts at the first record; no record, no change.
        const bool anchored = curve.hasPoints();
        const QDateTime first = anchored ? QDateTime::fromSecsSinceEpoch(D) : QDateTime();
        QCOMPARE(curve.firstDate, first);
        QCOMPARE(start, anchored ? first : asked);
        QCOMPARE(end, start.addDays(30));
        QCOMPARE(curve.endDate, anchored ? end : QDateTime());
        const int loaded = curve.points() != nullptr, n = curve.pointCount();
        QCOMPARE(QList<int>({m_host.starts, m_host.ends, m_host.lastStep}),
                 QList<int>({loaded, loaded, n}));
        QVERIFY2(loaded ? curve.name == "cov2" && curve.span == 30 * 86400 &&
                              curve.isRatio == bool(other) && m_host.progressParent == &curve
                        : curve.name.isEmpty() && curve.valueCount + curve.field == 0,
                 "named by its measure key, for the asked span; or nothing at all");
        curve.MoveX(60);
        QVERIFY2(!anchored || curve.points()->first().x() == 60, "moved right by a minute");
    }

    // Summaries of crafted points: heights repeated (the first wins), x values equal to
    // the extreme heights, the extremes of 32 bits, and a short last run.
    void summary_data()
    {
        QTest::addColumn<QPolygon>("points");
        QPolygon repeated, crossed, extremes;
        for (int i = 0; i < 100; ++i) {
            repeated << QPoint(i, i % 3 == 1 ? -5 : i % 7 == 2 ? 9 : 0);
            crossed << QPoint(i % 2 ? -5 : 9, i % 5 == 3 ? 9 : i % 5 == 4 ? -5 : i);
            extremes << QPoint(i % 11 ? i : INT_MIN, i % 13 == 6 ? INT_MAX : i % 13 ? -i : INT_MIN);
        }
        QTest::newRow("repeated heights") << repeated;
        QTest::newRow("x at the extreme heights") << crossed;
        QTest::newRow("32-bit extremes") << extremes;
        QTest::newRow("one run and one point") << QPolygon(extremes.first(33));
    }

    void summary()
    {
        QFETCH(QPolygon, points);
        KVDCurveSummary summary;
        summary.build(points);
        QCOMPARE(wrongNode(summary, points), QString());
    }

    // A file cut into chunks that threads convert at once loads as a reader going record by
    // record would: the points in file order, the field's range, and a summary whose every
    // node holds its points' extremes and the first points at the extreme heights. A file
    // cut short after it was opened keeps the records before the cut.
    void chunkedLoad_data()
    {
        QTest::addColumn<int>("threads");
        QTest::addColumn<int>("keep"); // records left by a cut after opening, or -1
        QTest::newRow("one thread") << 1 << -1;
        QTest::newRow("three threads") << 3 << -1;
        QTest::newRow("one a core, through the curve") << 0 << -1;
        QTest::newRow("cut inside the third chunk") << 3 << 150001;
        QTest::newRow("cut to nothing") << 2 << 0;
    }

    void chunkedLoad()
    {
        QFETCH(int, threads);
        QFETCH(int, keep);
        // Dates step back now and then; field 2 wanders, sometimes past 2^31.
        constexpr int N = 300017;
        QRandomGenerator random(7);
        QPolygon expected(N);
        QList<quint32> totals(N);
        SampleRepository root;
        KVDSampleWriter writer;
        QVERIFY(writer.create(root.root(), "big", "alice", 2));
        quint32 date = D;
        quint32 level = 1000;
        for (int i = 0; i < N; ++i) {
            date += random.bounded(50) == 0 ? -7u : 3u;
            level += random.bounded(9) - 4 + (random.bounded(20000) == 0 ? 2147483648u : 0);
            const quint32 values[2] = {i % 2 ? level : 7u, level};
            QVERIFY(writer.append(date, 1, values));
            totals[i] = level;
            expected[i] = QPoint(int(date - (D + 3)), int(0u - level));
        }
        QVERIFY(writer.finish());
        const QString path = root.path("big", "alice", 2);
        KVDMeasureFile file;
        QVERIFY(file.open(path, 2));
        if (keep >= 0)
            QVERIFY(QFile::resize(path, qint64(keep) * 24 + 5));
        const int count = keep < 0 ? N : keep;
        QPolygon points(N);
        KVDCurveSummary summary;
        summary.start(N);
        QList<qint64> steps;
        const KVDPointLoader::Result got = KVDPointLoader::load(
            file, 2, points.data(), summary, [&](qint64 done) { steps << done; }, threads);
        summary.finish(int(got.count));
        points.resize(got.count);
        QCOMPARE(got.count, qint64(count));
        QVERIFY2(points == expected.first(count), "every point in file order");
        const auto range = std::minmax_element(totals.begin(), totals.begin() + count);
        QCOMPARE(QList<quint32>({got.firstDate, got.lowTotal, got.highTotal}),
                 count ? QList<quint32>({D + 3, *range.first, *range.second})
                       : QList<quint32>({0, 0, 0}));
        QVERIFY2(std::is_sorted(steps.begin(), steps.end()) &&
                     (steps.isEmpty() ? count == 0 : steps.last() == count),
                 "progress only grows, to the records loaded");
        QCOMPARE(wrongNode(summary, points), QString());
        if (threads == 0) {
            QDateTime start = QDateTime::fromSecsSinceEpoch(D), end = start.addDays(1);
            KVDCurve curve(root.root(), "big2", 2, 2, "alice", start, end);
            QVERIFY2(curve.pointCount() == count && *curve.points() == expected,
                     "the curve holds the same points");
            QCOMPARE(QList<double>({curve.minValue, curve.maxValue}),
                     QList<double>({double(*range.first), double(*range.second)}));
        }
    }

    void eventList_data()
    {
        // A list of events on 1 June and twice on 1 May; found: the index of the event on the
        // day, -1 for none, so that the day is free.
        QTest::addColumn<QDate>("day");
        QTest::addColumn<int>("found");
        QTest::newRow("exact day") << June << 0;
        QTest::newRow("day before, same text") << May.addDays(-1) << -1;
        QTest::newRow("first of two on a day") << May << 1;
    }

    void eventList()
    {
        QFETCH(QDate, day);
        QFETCH(int, found);
        KVDEventList list;
        for (const QDate& date : {June, May, May})
            list.items().append(new KVDEvent(date, "Release", true));
        const bool free = found < 0;
        QCOMPARE(list.on(day), free ? nullptr : list.items().at(found));
        QCOMPARE(list.IsNearTag(day), !free);
        QCOMPARE(list.add(day, "Release"), free);
        QCOMPARE(list.items().size(), free ? 4 : 3);
        const QStringList refused{"warning|An Event already exists for this date\n"};
        QCOMPARE(m_shell.messages, free ? QStringList() : refused);
        const KVDEvent* last = list.items().last();
        QVERIFY2(!free || (last->date == day && last->text == "Release" && last->visible &&
                           !last->hasColor && !last->color.isValid() && list.on(day) == last),
                 "a new event is visible, has no colour, and is found on its day");

        list.items().append(new KVDEvent(QDate(2030, 1, 1), "hidden", false));
        list.EventHide();
        QVERIFY2(list.eventsHidden() && list.items()[0]->visible && !list.items().last()->visible,
                 "hiding all leaves each event's own flag alone");
        list.EventHide();
        QVERIFY2(!list.eventsHidden() && list.items().last()->visible,
                 "showing all again makes every event visible");
    }
};

QTEST_MAIN(TstModel)
#include "tst_model.moc"
