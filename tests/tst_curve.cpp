#include "fakestudio.h"
#include "kvdcurve.h"
#include "measurefixture.h"
#include "modalanswerer.h"
#include "testenv.h"

#include <QTemporaryDir>
#include <QtTest>

using MeasureFixture::Record;

// Curves loaded from measure files, as the chart and the view file make them.
class TstCurve : public QObject
{
    Q_OBJECT

private:
    FakeStudio m_host;
    static constexpr quint32 D = 1700000000u;

    static QList<Record> records(const QList<uint>& dates, const QList<uint>& keys,
                                 const QList<uint>& values)
    {
        QList<Record> out;
        for (int i = 0; i < dates.size(); ++i)
            out << Record{dates.at(i), keys.at(i), {values.at(i), 2 * values.at(i)}};
        return out;
    }

private slots:
    void initTestCase()
    {
        TestEnv::pin();
        m_host.install();
    }

    void load_data()
    {
        QTest::addColumn<QList<uint>>("dates");
        QTest::addColumn<QList<uint>>("keys");
        QTest::addColumn<QList<uint>>("values");
        QTest::addColumn<int>("field");
        QTest::addColumn<int>("cutBytes");
        QTest::addColumn<QPolygon>("expected");
        QTest::addColumn<double>("minValue");
        QTest::addColumn<double>("maxValue");

        QTest::newRow("empty file") << QList<uint>{} << QList<uint>{} << QList<uint>{} << 1 << 0
                                    << QPolygon() << 0.0 << 0.0;
        QTest::newRow("single record") << QList<uint>{D} << QList<uint>{1} << QList<uint>{7} << 1
                                       << 0 << QPolygon({QPoint(0, -7)}) << 7.0 << 7.0;
        QTest::newRow("dates out of order kept in file order")
            << QList<uint>{D, D - 500, D + 1000} << QList<uint>{1, 1, 1} << QList<uint>{1, 2, 3}
            << 1 << 0 << QPolygon({QPoint(0, -1), QPoint(-500, -2), QPoint(1000, -3)}) << 1.0
            << 3.0;
        QTest::newRow("running total over keys")
            << QList<uint>{D, D + 10, D + 20} << QList<uint>{1, 2, 1} << QList<uint>{5, 3, 4} << 1
            << 0 << QPolygon({QPoint(0, -5), QPoint(10, -8), QPoint(20, -7)}) << 5.0 << 8.0;
        QTest::newRow("second field")
            << QList<uint>{D, D + 10, D + 20} << QList<uint>{1, 2, 1} << QList<uint>{5, 3, 4} << 2
            << 0 << QPolygon({QPoint(0, -10), QPoint(10, -16), QPoint(20, -14)}) << 10.0 << 16.0;
        QTest::newRow("truncated last record")
            << QList<uint>{D, D + 10, D + 20} << QList<uint>{1, 1, 1} << QList<uint>{1, 2, 3} << 1
            << 4 << QPolygon({QPoint(0, -1), QPoint(10, -2)}) << 1.0 << 2.0;
        // 3e9 does not fit a signed 32-bit coordinate: minus 3e9 wraps to 3e9 - 2^32 + 2^32.
        QTest::newRow("total beyond 2^31")
            << QList<uint>{D} << QList<uint>{1} << QList<uint>{3000000000u} << 1 << 0
            << QPolygon({QPoint(0, 1294967296)}) << 3e9 << 3e9;
    }

    void load()
    {
        QFETCH(QList<uint>, dates);
        QFETCH(QList<uint>, keys);
        QFETCH(QList<uint>, values);
        QFETCH(int, field);
        QFETCH(int, cutBytes);
        QFETCH(QPolygon, expected);
        QFETCH(double, minValue);
        QFETCH(double, maxValue);

        QTemporaryDir root;
        QVERIFY2(
            MeasureFixture::write(root.path(), "cov", "alice", 2, records(dates, keys, values)),
            "fixture written");
        if (cutBytes)
            QVERIFY(MeasureFixture::truncateBy(root.path() + "/cov.alice.2.kvd", cutBytes));

        const QDateTime askedStart = QDateTime::fromSecsSinceEpoch(D - 86400 * 60);
        const QDateTime askedEnd = askedStart.addDays(30);
        QDateTime start = askedStart;
        QDateTime end = askedEnd;
        m_host.starts = m_host.ends = 0;
        KVDCurve curve(root.path(), "cov", field, 2, "alice", start, end);

        QVERIFY2(curve.points, "the file exists, so the curve has a point list");
        QCOMPARE(*curve.points, expected);
        QCOMPARE(curve.minValue, minValue);
        QCOMPARE(curve.maxValue, maxValue);
        QCOMPARE(curve.displayMax, maxValue);
        QCOMPARE(curve.name, QString("cov2"));
        QCOMPARE(curve.span, 30.0 * 86400);
        QVERIFY2(!curve.isRatio && !curve.hasColor && !curve.fixedScale && !curve.color.isValid(),
                 "a loaded curve starts without ratio, colour or fixed scale");
        if (expected.isEmpty()) {
            QVERIFY2(curve.firstDate.isNull(), "an empty file has no first date");
            QVERIFY2(start == askedStart && end == askedEnd,
                     "an empty file leaves the range alone");
        } else {
            QCOMPARE(curve.firstDate.toSecsSinceEpoch(), qint64(dates.first()));
            QCOMPARE(start, curve.firstDate);
            QCOMPARE(end, curve.firstDate.addDays(30));
            QCOMPARE(curve.endDate, end);
        }
        // The host's progress display follows every point.
        QCOMPARE(m_host.starts, 1);
        QCOMPARE(m_host.ends, 1);
        QCOMPARE(m_host.totalSteps, int(expected.size()));
        QCOMPARE(m_host.steps, int(expected.size()));
        QCOMPARE(m_host.lastStep, int(expected.size()));
        QCOMPARE(m_host.progressParent, &curve);
        QCOMPARE(m_host.label, QString("KVD Processing..."));
        QCOMPARE(m_host.cancelText, QString("&Stop Loading"));
    }

    void nameCut_data()
    {
        QTest::addColumn<QString>("asked");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("fileMeasure");
        QTest::newRow("abc8 cut at its own 8") << "abc8" << 8 << "abc";
        QTest::newRow("abc88 cut at the last 8") << "abc88" << 8 << "abc8";
        QTest::newRow("no count in the name") << "cov" << 8 << "cov";
        QTest::newRow("other digits kept") << "cov8" << 4 << "cov8";
        QTest::newRow("multi-digit count") << "a12b12" << 12 << "a12b";
    }

    // The file read is that of the name cut at the last occurrence of the count; the curve
    // is named by that file's measure key.
    void nameCut()
    {
        QFETCH(QString, asked);
        QFETCH(int, count);
        QFETCH(QString, fileMeasure);
        QTemporaryDir root;
        QList<Record> one{Record{D, 1, QList<quint32>(count, 3u)}};
        QVERIFY(MeasureFixture::write(root.path(), fileMeasure, "bob", count, one));
        ModalAnswerer answers;
        QDateTime start = QDateTime::currentDateTime(), end = start;
        KVDCurve curve(root.path(), asked, 1, count, "bob", start, end);
        QVERIFY2(curve.points && curve.points->size() == 1,
                 qPrintable("expected the file of " + fileMeasure + " to be read; seen " +
                            answers.seen().join(';')));
        QCOMPARE(curve.name, fileMeasure + QString::number(count));
    }

    void unreadable_data()
    {
        QTest::addColumn<QString>("measure");
        QTest::addColumn<int>("field");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("message");
        QTest::newRow("missing file")
            << "nope" << 1 << 2 << "Can't open file: %1/nope.alice.2.kvd\n";
        QTest::newRow("field 0") << "cov" << 0 << 2 << "";
        QTest::newRow("field past the count") << "cov" << 3 << 2 << "";
        QTest::newRow("absurd count") << "cov" << 1 << 10000 << "";
    }

    void unreadable()
    {
        QFETCH(QString, measure);
        QFETCH(int, field);
        QFETCH(int, count);
        QFETCH(QString, message);
        QTemporaryDir root;
        QVERIFY(MeasureFixture::write(root.path(), "cov", "alice", 2, {Record{D, 1, {1, 2}}}));
        ModalAnswerer answers;
        answers.push(ModalAnswerer::click("OK"));
        QDateTime start = QDateTime::fromSecsSinceEpoch(D), end = start.addDays(1);
        KVDCurve curve(root.path(), measure, field, count, "alice", start, end);
        QVERIFY2(!curve.points, "nothing was loaded");
        QCOMPARE(start, QDateTime::fromSecsSinceEpoch(D));
        QCOMPARE(answers.seen().size(), 1);
        QVERIFY2(answers.seen().first().startsWith("warning|Test Studio|"),
                 qPrintable(answers.seen().first()));
        if (!message.isEmpty())
            QCOMPARE(answers.seen().first(), "warning|Test Studio|" + message.arg(root.path()));
    }

    void div_data()
    {
        QTest::addColumn<QList<uint>>("numerator");
        QTest::addColumn<QList<uint>>("denominator");
        QTest::addColumn<QList<int>>("expectedY");
        QTest::addColumn<double>("minValue");
        QTest::addColumn<double>("maxValue");
        QTest::newRow("percentages") << QList<uint>{1, 2, 3} << QList<uint>{4, 4, 4}
                                     << QList<int>{-25, -50, -75} << 25.0 << 75.0;
        QTest::newRow("truncated toward zero") << QList<uint>{1, 2} << QList<uint>{3, 3}
                                               << QList<int>{-33, -66} << 100.0 / 3 << 200.0 / 3;
        QTest::newRow("zero point gives 0") << QList<uint>{2, 2, 2} << QList<uint>{4, 0, 2}
                                            << QList<int>{-50, 0, -100} << 50.0 << 50.0;
        QTest::newRow("zero maximum")
            << QList<uint>{2, 5} << QList<uint>{0, 0} << QList<int>{0, 0} << 0.0 << 0.0;
        QTest::newRow("shorter other curve") << QList<uint>{1, 2, 3} << QList<uint>{2, 2}
                                             << QList<int>{-50, -100, 0} << 50.0 << 150.0;
    }

    void div()
    {
        QFETCH(QList<uint>, numerator);
        QFETCH(QList<uint>, denominator);
        QFETCH(QList<int>, expectedY);
        QFETCH(double, minValue);
        QFETCH(double, maxValue);
        QTemporaryDir root;
        QVERIFY(MeasureFixture::write(root.path(), "r", "num", 1,
                                      MeasureFixture::series(D, numerator, 1)));
        QVERIFY(MeasureFixture::write(root.path(), "r", "den", 1,
                                      MeasureFixture::series(D, denominator, 1)));
        QDateTime start = QDateTime::fromSecsSinceEpoch(D), end = start.addDays(7);
        KVDCurve curve(root.path(), "r", 1, 1, "num", start, end);
        const KVDCurve other(root.path(), "r", 1, 1, "den", start, end);
        curve.DIV(other);

        QList<int> ys;
        for (const QPoint& p : std::as_const(*curve.points))
            ys << p.y();
        QCOMPARE(ys, expectedY);
        QCOMPARE(curve.points->at(1).x(), 86400);
        QCOMPARE(curve.minValue, minValue);
        QCOMPARE(curve.maxValue, maxValue);
        QCOMPARE(curve.displayMax, 100.0);
        QVERIFY2(curve.isRatio, "a divided curve holds percentages");
    }
};

QTEST_MAIN(TstCurve)
#include "tst_curve.moc"
