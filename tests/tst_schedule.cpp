#include "kvdschedule.h"
#include "testenv.h"

#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QtTest>

#include <cmath>

namespace {

// Keeps every cell Build hands to drawElem, and draws it.
class RecordingSchedule : public KVDSchedule
{
public:
    struct Cell
    {
        double x;
        double y;
        int w;
        int h;
        QColor colour;
        QString label;
    };

    void drawElem(QPainter* p, double x, double y, int w, int h, QColor colour, QString label,
                  bool framed) override
    {
        cells.append({x, y, w, h, colour, label});
        KVDSchedule::drawElem(p, x, y, w, h, colour, label, framed);
    }

    // The cells of the row whose top is y.
    QList<Cell> row(double y) const
    {
        QList<Cell> found;
        for (const Cell& c : cells)
            if (c.y == y)
                found.append(c);
        return found;
    }

    QStringList labels(double y) const
    {
        QStringList found;
        for (const Cell& c : row(y))
            found.append(c.label);
        return found;
    }

    QList<Cell> cells;
};

const QColor lightGray(192, 192, 192);
const QColor gray(160, 160, 164);
const QColor black(0, 0, 0);

QDateTime at(int y, int m, int d, int hour = 0)
{
    return QDateTime(QDate(y, m, d), QTime(hour, 0));
}

// An image of the given size, white, with the axis of start..end built on it over a plot
// of `width` units.
QImage axisImage(RecordingSchedule& schedule, int w, int h, double width, const QDateTime& start,
                 const QDateTime& end)
{
    QImage image(w, h, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    schedule.Build(&painter, width, start, end, 1.0, 1.0);
    return image;
}

} // namespace

// The calendar axis: granularity by span, first cells, week numbers, label forms, and
// cells that tile the plot without gaps.
class TstSchedule : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TestEnv::pin(); }

    void granularity_data()
    {
        QTest::addColumn<QDateTime>("start");
        QTest::addColumn<int>("days");
        QTest::addColumn<QStringList>("fine");  // the first two fine labels
        QTest::addColumn<QColor>("fineColour"); // of the first fine cell
        QTest::addColumn<QString>("coarse");    // the first coarse label
        QTest::addColumn<QColor>("coarseColour");

        const QDateTime monday = at(2009, 1, 5, 10);
        QTest::newRow("2 days: hours over days")
            << monday << 2 << QStringList{"10", "11"} << gray << "Mon 5 Jan 2009" << lightGray;
        QTest::newRow("3 days: days over months")
            << monday << 3 << QStringList{"5", "6"} << lightGray << "Jan 2009" << lightGray;
        QTest::newRow("33 days: still days")
            << monday << 33 << QStringList{"5", "6"} << lightGray << "Jan 2009" << lightGray;
        QTest::newRow("34 days: weeks over months")
            << monday << 34 << QStringList{"Week 2", "Week 3"} << gray << "Jan 2009" << lightGray;
        QTest::newRow("123 days: still weeks")
            << monday << 123 << QStringList{"Week 2", "Week 3"} << gray << "Jan 2009" << lightGray;
        QTest::newRow("124 days: months over years")
            << at(2010, 2, 5) << 124 << QStringList{"Feb", "Mar"} << gray << "2010" << gray;
        QTest::newRow("1000 days: still months")
            << at(2010, 2, 5) << 1000 << QStringList{"Feb", "Mar"} << gray << "2010" << gray;
        QTest::newRow("1001 days: unlabelled hour band over years")
            << at(2009, 3, 1) << 1001 << QStringList{"", ""} << gray << "2009" << lightGray;
    }

    void granularity()
    {
        QFETCH(QDateTime, start);
        QFETCH(int, days);
        QFETCH(QStringList, fine);
        QFETCH(QColor, fineColour);
        QFETCH(QString, coarse);
        QFETCH(QColor, coarseColour);

        RecordingSchedule schedule;
        axisImage(schedule, 1600, 300, 1295, start, start.addDays(days));
        const QList<RecordingSchedule::Cell> fineRow = schedule.row(300 - 85);
        const QList<RecordingSchedule::Cell> coarseRow = schedule.row(300 - 66);
        QVERIFY2(fineRow.size() >= 2 && !coarseRow.isEmpty(), "both rows have cells");
        QCOMPARE(QStringList({fineRow[0].label, fineRow[1].label}), fine);
        QCOMPARE(fineRow[0].colour, fineColour);
        QCOMPARE(coarseRow[0].label, coarse);
        QCOMPARE(coarseRow[0].colour, coarseColour);
        QVERIFY2(fineRow[0].x <= 55 && coarseRow[0].x <= 55,
                 "the first cells begin at or before the start");
        QCOMPARE(fineRow[0].h, 20);
        QCOMPARE(coarseRow[0].h, 21);
        for (const RecordingSchedule::Cell& c : fineRow)
            QVERIFY2(c.x < 55 + 1295, "no fine cell starts after the end");
    }

    void weekNumbers_data()
    {
        QTest::addColumn<QDateTime>("start");
        QTest::addColumn<QStringList>("labels");
        QTest::addColumn<QList<QColor>>("colours");

        QTest::newRow("29 Dec 2008 starts week 1")
            << at(2008, 12, 1)
            << QStringList{"Week 49", "Week 50", "Week 51", "Week 52", "Week 1", "Week 2"}
            << QList<QColor>{lightGray, gray, lightGray, gray, lightGray, gray};
        QTest::newRow("28 Dec 2009 is week 53")
            << at(2009, 12, 1)
            << QStringList{"Week 49", "Week 50", "Week 51", "Week 52", "Week 53", "Week 1"}
            << QList<QColor>{lightGray, gray, lightGray, gray, lightGray, lightGray};
        QTest::newRow("Saturday 2 Jan 2010 opens in week 53")
            << at(2010, 1, 2)
            << QStringList{"Week 53", "Week 1", "Week 2", "Week 3", "Week 4", "Week 5", "Week 6"}
            << QList<QColor>{lightGray, lightGray, gray, lightGray, gray, lightGray, gray};
        QTest::newRow("mid-year, year opening on a Thursday")
            << at(2009, 3, 11)
            << QStringList{"Week 11", "Week 12", "Week 13", "Week 14", "Week 15", "Week 16"}
            << QList<QColor>{lightGray, gray, lightGray, gray, lightGray, gray};
        QTest::newRow("mid-year, year opening on a Friday")
            << at(2010, 3, 10)
            << QStringList{"Week 10", "Week 11", "Week 12", "Week 13", "Week 14", "Week 15"}
            << QList<QColor>{gray, lightGray, gray, lightGray, gray, lightGray};
    }

    void weekNumbers()
    {
        QFETCH(QDateTime, start);
        QFETCH(QStringList, labels);
        QFETCH(QList<QColor>, colours);

        RecordingSchedule schedule;
        axisImage(schedule, 1600, 300, 1295, start, start.addDays(38));
        const QList<RecordingSchedule::Cell> fineRow = schedule.row(300 - 85);
        QCOMPARE(schedule.labels(300 - 85), labels);
        for (int i = 0; i < fineRow.size(); ++i)
            QVERIFY2(fineRow[i].colour == colours[i], qPrintable(fineRow[i].label));
    }

    void weekLabelForm_data()
    {
        QTest::addColumn<double>("slack"); // plot width beyond 5 weeks of "aaaaaaa"
        QTest::addColumn<QString>("first");

        QTest::newRow("wide plot") << 2000.0 << "Week 2";
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
        // 35 days: the plot holds exactly five weeks.
        RecordingSchedule schedule;
        const QDateTime start = at(2009, 1, 5);
        schedule.Build(&painter, 5 * sevenAs + slack, start, start.addDays(35), 1.0, 1.0);
        const QStringList labels = schedule.labels(300 - 85);
        QVERIFY2(!labels.isEmpty(), "weeks are drawn");
        QCOMPARE(labels.first(), first);
    }

    // Cells tile the plot: the fine row shows only borders and fills with no doubled
    // border, and the stripes behind the plot leave no white column.
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

        const int H = 300;
        RecordingSchedule schedule;
        const QImage image =
            axisImage(schedule, 1000, H, width, start, start.addSecs(qint64(days * 86400)));
        const int right = int(55 + width);
        // The first unit under each row's top border, above any label.
        for (int row : {H - 85 + 1, H - 66 + 1}) {
            bool previousBorder = false;
            for (int x = 56; x < right; ++x) {
                const QColor c = image.pixelColor(x, row);
                QVERIFY2(
                    c == black || c == lightGray || c == gray,
                    qPrintable(
                        QStringLiteral("row %1, x %2 shows %3").arg(row).arg(x).arg(c.name())));
                QVERIFY2(
                    !(previousBorder && c == black),
                    qPrintable(QStringLiteral("doubled border at row %1, x %2").arg(row).arg(x)));
                previousBorder = c == black;
            }
        }
        for (const RecordingSchedule::Cell& cell : schedule.cells) {
            const int border = int(std::floor(cell.x));
            if (border > 55 && border < right)
                QVERIFY2(image.pixelColor(border, int(cell.y) + 1) == black,
                         "each cell's left border is where the cell starts");
        }
        for (int x = 56; x < right; ++x) {
            const QColor c = image.pixelColor(x, 100);
            QVERIFY2(c == QColor(250, 250, 250) || c == QColor(240, 240, 240),
                     qPrintable(QStringLiteral("stripe gap at x %1: %2").arg(x).arg(c.name())));
        }
    }

    void stripes()
    {
        // Days 5 to 8 of January: odd days get the lighter stripe.
        RecordingSchedule schedule;
        const QImage image = axisImage(schedule, 500, 300, 400, at(2009, 1, 5), at(2009, 1, 9));
        const QList<QColor> expected{QColor(250, 250, 250), QColor(240, 240, 240),
                                     QColor(250, 250, 250), QColor(240, 240, 240)};
        for (int day = 0; day < 4; ++day)
            QCOMPARE(image.pixelColor(55 + day * 100 + 50, 150), expected[day]);
        QCOMPARE(image.pixelColor(100, 300 - 86), QColor(Qt::white)); // between stripe and row
    }

    void hourBand()
    {
        // Over years the unlabelled hour cells merge into one solid band over a uniform
        // stripe.
        RecordingSchedule schedule;
        const QImage image = axisImage(schedule, 400, 200, 95, at(2008, 6, 1), at(2011, 6, 1));
        for (int x = 56; x < 55 + 95; ++x) {
            QCOMPARE(image.pixelColor(x, 200 - 75), black);
            QCOMPARE(image.pixelColor(x, 100), QColor(240, 240, 240));
        }
        QVERIFY2(schedule.labels(200 - 66) == QStringList({"2008", "2009", "2010"}),
                 qPrintable(schedule.labels(200 - 66).join(',')));
    }

    // Leaving out repeated hour cells must not change a pixel: compare with every hour
    // drawn one after the other.
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

        const int H = 300;
        const QDateTime start = at(2005, 3, 1, 5);
        RecordingSchedule built;
        const QImage image = axisImage(built, 1100, H, width, start, start.addDays(days));

        QImage reference(1100, H, QImage::Format_RGB32);
        reference.fill(Qt::white);
        QPainter painter(&reference);
        KVDSchedule cells;
        const qint64 S = start.secsTo(start.addDays(days));
        const double k = width / double(S);
        for (qint64 offset = 0; offset < S; offset += 3600) {
            const double x0 = k * double(offset);
            const double w = k * 3600;
            const double e = std::floor(k * double(offset + 3600)) - std::floor(x0) - std::floor(w);
            cells.drawElem(&painter, 55 + x0, H - 85, int(w + e + 1.0), 20, gray, QString(), true);
            painter.fillRect(int(int(x0 + 1.0) + 55), 40, int(w + e), H - 126,
                             QColor(240, 240, 240));
        }
        painter.end();
        // Above the coarse row, which only Build draws.
        const QImage top = image.copy(0, 0, 1100, H - 66);
        QVERIFY2(top == reference.copy(0, 0, 1100, H - 66), "same pixels as every hour drawn");
    }

    void cellGeometry_data()
    {
        QTest::addColumn<bool>("framed");
        QTest::newRow("framed") << true;
        QTest::newRow("unframed") << false;
    }

    void cellGeometry()
    {
        QFETCH(bool, framed);
        QImage image(60, 60, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        KVDSchedule().drawElem(&painter, 10.7, 20.2, 30, 15, Qt::red, QString(), framed);
        painter.end();
        const QColor edge = framed ? black : QColor(Qt::red);
        QCOMPARE(image.pixelColor(10, 20), framed ? black : QColor(Qt::white)); // frame corner
        QCOMPARE(image.pixelColor(10, 28), edge); // left border over the fill
        QCOMPARE(image.pixelColor(39, 28), framed ? black : QColor(Qt::white)); // right border
        QCOMPARE(image.pixelColor(25, 28), QColor(Qt::red));                    // inside
        QCOMPARE(image.pixelColor(25, 35), QColor(Qt::red)); // fill one unit below the frame
        QCOMPARE(image.pixelColor(25, 36), QColor(Qt::white));
        QCOMPARE(image.pixelColor(40, 28), QColor(Qt::white));
    }

    void scaledRows()
    {
        RecordingSchedule schedule;
        QImage image(1500, 1000, QImage::Format_RGB32);
        QPainter painter(&image);
        schedule.Build(&painter, 1000, at(2009, 1, 5), at(2009, 1, 10), 2.0, 2.0);
        const QList<RecordingSchedule::Cell> fineRow = schedule.row(1000 - 170);
        const QList<RecordingSchedule::Cell> coarseRow = schedule.row(1000 - 132);
        QVERIFY2(!fineRow.isEmpty() && !coarseRow.isEmpty(), "rows move up with the scale");
        QCOMPARE(fineRow.first().h, 40);
        QCOMPARE(coarseRow.first().h, 42);
        QCOMPARE(fineRow.first().x, 110.0);
    }

    void emptySpans_data()
    {
        QTest::addColumn<QDateTime>("start");
        QTest::addColumn<QDateTime>("end");
        QTest::addColumn<bool>("drawn");

        QTest::newRow("zero seconds") << at(2009, 1, 5, 10) << at(2009, 1, 5, 10) << false;
        QTest::newRow("end a day before") << at(2009, 1, 5, 10) << at(2009, 1, 4, 10) << false;
        QTest::newRow("end within the first hour")
            << QDateTime(QDate(2009, 1, 5), QTime(10, 40))
            << QDateTime(QDate(2009, 1, 5), QTime(10, 30)) << true;
    }

    void emptySpans()
    {
        QFETCH(QDateTime, start);
        QFETCH(QDateTime, end);
        QFETCH(bool, drawn);
        RecordingSchedule schedule;
        axisImage(schedule, 600, 300, 295, start, end);
        QCOMPARE(!schedule.cells.isEmpty(), drawn);
    }
};

QTEST_MAIN(TstSchedule)
#include "tst_schedule.moc"
