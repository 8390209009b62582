#include "kvdschedule.h"
#include "testenv.h"

#include <QImage>
#include <QPainter>
#include <QtTest>

#include <cmath>

namespace {

const QColor lightGray(192, 192, 192);
const QColor gray(160, 160, 164);
const QColor black(0, 0, 0);

// Keeps every cell Build hands to drawElem, and draws it.
class RecordingSchedule : public KVDSchedule
{
public:
    struct Cell
    {
        double x, y;
        QColor colour;
        QString label;
    };

    void drawElem(QPainter* p, double x, double y, int w, int h, QColor colour, QString label,
                  bool framed) override
    {
        cells.append({x, y, colour, label});
        KVDSchedule::drawElem(p, x, y, w, h, colour, label, framed);
    }

    QList<Cell> row(double top) const
    {
        QList<Cell> found;
        for (const Cell& c : cells)
            if (c.y == top)
                found.append(c);
        return found;
    }

    // The row's labels, and its colours as L (light grey) or G (grey).
    QStringList labels(double top) const
    {
        QStringList found;
        for (const Cell& c : row(top))
            found.append(c.label);
        return found;
    }
    QString colours(double top) const
    {
        QString found;
        for (const Cell& c : row(top))
            found += c.colour == lightGray ? 'L' : c.colour == gray ? 'G' : '?';
        return found;
    }

    QList<Cell> cells;
};

QDateTime at(int y, int m, int d, int hour = 0)
{
    return QDateTime(QDate(y, m, d), QTime(hour, 0));
}

// A white image of w x 300 with the axis of start..end built over a plot `width` wide:
// the fine row's top is then at 215, the coarse row's at 234.
QImage axis(RecordingSchedule& schedule, int w, double width, const QDateTime& start,
            const QDateTime& end)
{
    QImage image(w, 300, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    schedule.Build(&painter, width, start, end, 1.0, 1.0);
    return image;
}

} // namespace

// The calendar axis: granularity by span, first cells, week numbers and label forms, and
// cells that tile the plot without gaps.
class TstSchedule : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TestEnv::pin(); }

    void granularity_data()
    {
        QTest::addColumn<QDateTime>("start");
        QTest::addColumn<QString>("coarse"); // the first coarse label
        QTest::addColumn<int>("days");
        QTest::addColumn<QStringList>("fine"); // the first two fine labels
        QTest::addColumn<QString>("colours");  // of the first fine and coarse cells

        const QDateTime monday = at(2009, 1, 5, 10);
        const QStringList weeks{"Week 2", "Week 3"}, months{"Feb", "Mar"};
        QTest::newRow("2 days: hours, days")
            << monday << "Mon 5 Jan 2009" << 2 << QStringList{"10", "11"} << "GL";
        QTest::newRow("3 days: days, months")
            << monday << "Jan 2009" << 3 << QStringList{"5", "6"} << "LL";
        QTest::newRow("33 days: days")
            << monday << "Jan 2009" << 33 << QStringList{"5", "6"} << "LL";
        QTest::newRow("34 days: weeks, months") << monday << "Jan 2009" << 34 << weeks << "GL";
        QTest::newRow("123 days: weeks") << monday << "Jan 2009" << 123 << weeks << "GL";
        QTest::newRow("124 days: months, years")
            << at(2010, 2, 5) << "2010" << 124 << months << "GG";
        QTest::newRow("1000 days: months") << at(2010, 2, 5) << "2010" << 1000 << months << "GG";
        QTest::newRow("1001 days: hour band, years")
            << at(2009, 3, 1) << "2009" << 1001 << QStringList{"", ""} << "GL";
    }

    void granularity()
    {
        QFETCH(QDateTime, start);
        QFETCH(QString, coarse);
        QFETCH(int, days);
        QFETCH(QStringList, fine);
        QFETCH(QString, colours);
        RecordingSchedule schedule;
        axis(schedule, 1600, 1295, start, start.addDays(days));
        const QList<RecordingSchedule::Cell> fineRow = schedule.row(215);
        const QList<RecordingSchedule::Cell> coarseRow = schedule.row(234);
        QVERIFY2(fineRow.size() >= 2 && !coarseRow.isEmpty(), "both rows have cells");
        QCOMPARE(schedule.labels(215).mid(0, 2), fine);
        QCOMPARE(coarseRow[0].label, coarse);
        QCOMPARE(QString(schedule.colours(215)[0]) + schedule.colours(234)[0], colours);
        QVERIFY2(fineRow[0].x <= 55 && coarseRow[0].x <= 55, "first cells begin at the start");
        QVERIFY2(fineRow.last().x < 55 + 1295, "no cell starts after the end");
    }

    void weekNumbers_data()
    {
        QTest::addColumn<QString>("labels");
        QTest::addColumn<QDateTime>("start");
        QTest::addColumn<QString>("colours");
        QTest::newRow("29 Dec 2008 is week 1") << "49 50 51 52 1 2" << at(2008, 12, 1) << "LGLGLG";
        QTest::newRow("28 Dec 2009 is week 53")
            << "49 50 51 52 53 1" << at(2009, 12, 1) << "LGLGLL";
        QTest::newRow("Saturday 2 Jan 2010") << "53 1 2 3 4 5 6" << at(2010, 1, 2) << "LLGLGLG";
        QTest::newRow("year from a Thursday") << "11 12 13 14 15 16" << at(2009, 3, 11) << "LGLGLG";
        QTest::newRow("year from a Friday") << "10 11 12 13 14 15" << at(2010, 3, 10) << "GLGLGL";
    }

    void weekNumbers()
    {
        QFETCH(QString, labels);
        QFETCH(QDateTime, start);
        QFETCH(QString, colours);
        RecordingSchedule schedule;
        axis(schedule, 1600, 1295, start, start.addDays(38));
        QCOMPARE(schedule.labels(215).join(' '), "Week " + labels.replace(" ", " Week "));
        QCOMPARE(schedule.colours(215), colours);
    }

    void weekLabelForm_data()
    {
        QTest::addColumn<double>("slack"); // plot width beyond five weeks of "aaaaaaa"
        QTest::addColumn<QString>("first");
        QTest::newRow("seven a's just fit a week") << 0.5 << "Week 2";
        QTest::newRow("one unit short") << -0.5 << "W 2";
        QTest::newRow("narrow plot") << -100.0 << "W 2";
    }

    void weekLabelForm()
    {
        QFETCH(double, slack);
        QFETCH(QString, first);
        QImage image(3000, 300, QImage::Format_RGB32);
        QPainter painter(&image);
        const int sevenAs = painter.fontMetrics().horizontalAdvance(QStringLiteral("aaaaaaa"));
        RecordingSchedule schedule;
        schedule.Build(&painter, 5 * sevenAs + slack, at(2009, 1, 5), at(2009, 2, 9), 1.0, 1.0);
        QCOMPARE(schedule.labels(215).value(0), first);
    }

    // The fine and coarse rows show only borders and fills, never two borders side by
    // side; each stripe has its cell's parity and no column is left white.
    void noGaps_data()
    {
        QTest::addColumn<QDateTime>("start");
        QTest::addColumn<double>("days");
        QTest::addColumn<double>("width");
        QTest::newRow("hours") << at(2009, 1, 5, 7) << 1.7 << 333.0;
        QTest::newRow("days") << at(2009, 1, 5, 7) << 17.0 << 601.0;
        QTest::newRow("weeks") << at(2009, 1, 7, 13) << 100.0 << 777.0;
        QTest::newRow("months") << at(2009, 1, 7, 13) << 400.0 << 509.0;
        QTest::newRow("months, fractional width") << at(2009, 1, 7) << 900.0 << 487.3;
    }

    void noGaps()
    {
        QFETCH(QDateTime, start);
        QFETCH(double, days);
        QFETCH(double, width);
        RecordingSchedule schedule;
        const QImage image =
            axis(schedule, 1000, width, start, start.addSecs(qint64(days * 86400)));
        const int right = int(55 + width);
        for (int row : {216, 235}) { // just under each row's top border, above any label
            bool border = false;
            for (int x = 56; x < right; ++x) {
                const QColor c = image.pixelColor(x, row);
                QVERIFY2(c == black || c == lightGray || c == gray, qPrintable(c.name()));
                QVERIFY2(!(border && c == black),
                         qPrintable(QString("double border at %1").arg(x)));
                border = c == black;
            }
        }
        for (int x = 56; x < right; ++x) {
            const QColor c = image.pixelColor(x, 100);
            QVERIFY2(c == QColor(250, 250, 250) || c == QColor(240, 240, 240),
                     qPrintable(QString("stripe gap at %1").arg(x)));
        }
        const QList<RecordingSchedule::Cell> cells = schedule.row(215);
        for (int i = 0; i + 1 < cells.size(); ++i) {
            const int left = int(std::floor(cells[i].x));
            const int middle = (left + int(std::floor(cells[i + 1].x))) / 2;
            if (left <= 55 || middle >= right)
                continue;
            QCOMPARE(image.pixelColor(left, 216), black); // the border is where the cell starts
            QCOMPARE(image.pixelColor(middle, 100),
                     cells[i].colour == lightGray ? QColor(250, 250, 250) : QColor(240, 240, 240));
        }
    }

    // Runs of identical hour cells are drawn once: the picture must equal every hour drawn,
    // as a painter that may not skip them (one that replaces pixels) draws it.
    void hourBandMatchesEveryHour_data()
    {
        QTest::addColumn<int>("days");
        QTest::addColumn<double>("width");
        QTest::newRow("1001 days, narrow") << 1001 << 95.0;
        QTest::newRow("3 years, odd width") << 1096 << 333.3;
        QTest::newRow("10 years") << 3653 << 975.0;
    }

    void hourBandMatchesEveryHour()
    {
        QFETCH(int, days);
        QFETCH(double, width);
        const QDateTime start = at(2005, 3, 1, 5);
        RecordingSchedule skipping, every;
        const QImage image = axis(skipping, 1100, width, start, start.addDays(days));
        QImage reference(1100, 300, QImage::Format_RGB32);
        reference.fill(Qt::white);
        QPainter painter(&reference);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        every.Build(&painter, width, start, start.addDays(days), 1.0, 1.0);
        painter.end();
        QCOMPARE(every.row(215).size(), qsizetype(days) * 24);
        QVERIFY2(skipping.row(215).size() < every.row(215).size(), "no repeat was skipped");
        QVERIFY2(image.copy(0, 0, 1100, 234) == reference.copy(0, 0, 1100, 234),
                 "above the coarse row, the same pixels as every hour drawn");
        for (int x = 56; x < 55 + int(width); ++x)
            QCOMPARE(image.pixelColor(x, 225), black); // a solid band
    }

    void scaledRows()
    {
        RecordingSchedule schedule;
        QImage image(1500, 1000, QImage::Format_RGB32);
        QPainter painter(&image);
        schedule.Build(&painter, 1000, at(2009, 1, 5), at(2009, 1, 10), 2.0, 2.0);
        QVERIFY2(!schedule.row(1000 - 170).isEmpty() && !schedule.row(1000 - 132).isEmpty(),
                 "rows move up with the vertical scale");
        QCOMPARE(schedule.row(1000 - 170).first().x, 110.0);
    }

    void emptySpans_data()
    {
        QTest::addColumn<QDateTime>("end");
        QTest::addColumn<bool>("drawn");
        QTest::newRow("zero seconds") << at(2009, 1, 5, 10).addSecs(600) << false;
        QTest::newRow("end a day before") << at(2009, 1, 4, 10) << false;
        QTest::newRow("end within the first hour") << at(2009, 1, 5, 10).addSecs(300) << true;
    }

    void emptySpans()
    {
        QFETCH(QDateTime, end);
        QFETCH(bool, drawn);
        RecordingSchedule schedule;
        axis(schedule, 600, 295, at(2009, 1, 5, 10).addSecs(600), end);
        QCOMPARE(!schedule.cells.isEmpty(), drawn);
    }
};

QTEST_MAIN(TstSchedule)
#include "tst_schedule.moc"
