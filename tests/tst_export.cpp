#include "chartfixture.h"
#include "fakestudio.h"
#include "kvdcsvexport.h"
#include "kvdoutput.h"
#include "kvdpngwriter.h"
#include "kvdview.h"
#include "modalanswerer.h"
#include "recordingshell.h"
#include "samplerepository.h"
#include "testenv.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDialog>
#include <QPainter>
#include <QProcess>
#include <QRandomGenerator>
#include <QSvgRenderer>
#include <QtTest>

// What leaves the viewer as files: the CSV export (golden files, and every row compared
// with a scan of every point), the window's Export item, and kvd render and kvd export,
// which draw and export a repository they only ever read; with KVD_CALC set, the export
// as LibreOffice Calc evaluates it.
using Curves = QList<QPolygon>;

namespace {

// Every row scans every point of every curve, as the rows are defined.
QByteArray scanEveryPoint(const QList<KVDCurve*>& curves, const QDateTime& start,
                          const QDateTime& end)
{
    QDateTime instant;
    for (const KVDCurve* curve : curves)
        if (!curve->points()->isEmpty() &&
            (instant.isNull() || start.addSecs(curve->points()->first().x()) < instant))
            instant = start.addSecs(curve->points()->first().x());
    QByteArray out;
    for (bool more = !instant.isNull(); more;) {
        out += instant.toString("'=DATE('yyyy;M;d')+TEMPS('H;m;s)").toLatin1();
        QDateTime next;
        more = false;
        for (const KVDCurve* curve : curves) {
            out += ',';
            for (const QPoint& point : *curve->points()) {
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

} // namespace

class TstExport : public QObject
{
    Q_OBJECT

private:
    FakeStudio m_host;
    RecordingShell m_shell{&m_host};
    QTemporaryDir m_dir;
    SampleRepository m_plain; // no saved view
    SampleRepository m_saved; // a saved view of two curves
    QByteArray m_csv;         // the export of the saved view, and of its 2024-06-01 to
    QByteArray m_rangeCsv;    // 2024-06-20 12:00 part
    QString m_savedStart;     // where the saved view starts

    QList<KVDCurve*> curves(const Curves& points)
    {
        QList<KVDCurve*> made;
        for (const QPolygon& p : points)
            made << ChartFixture::curve(m_dir.path(), p, 0.0, 100.0, 0.0);
        return made;
    }
    QByteArray snapshot() const
    {
        QCryptographicHash hash(QCryptographicHash::Md5);
        for (const QString& root : {m_plain.root(), m_saved.root()})
            for (const QFileInfo& info : QDir(root).entryInfoList(QDir::Files | QDir::Hidden))
                hash.addData(info.fileName().toUtf8() + TestEnv::contents(info.filePath()));
        return hash.result();
    }

private slots:
    void initTestCase()
    {
        TestEnv::pin();
        m_host.dataDirectory = TestEnv::built(QStringLiteral("share/kavendi"));
        m_host.install();
        m_shell.use();
        const KVDSampleWriter::Options options{3, 90, 4, 1, QDate(2024, 6, 30)};
        QVERIFY2(m_plain.fill(options) && m_saved.fill(options), qPrintable(m_plain.error()));
        // Two choices from the viewer's menus, saved as the viewer saves them.
        KVDView view;
        QVERIFY(view.load(m_saved.root(), QString(), false));
        view.selectField(QStringLiteral("Coverage"));
        QVERIFY(view.selectMeasure(2, QStringLiteral("bob")));
        view.selectField(QStringLiteral("Test runs"));
        QVERIFY(view.selectMeasure(1, QStringLiteral("alice")));
        view.storeView();
        m_savedStart = view.start.toString("yyyy-MM-ddTHH:mm:ss");
        // A user with one measure of the three.
        QVERIFY(m_plain.writePair("tests", "dora", 2, {{1717200000, 1, {1, 2}}}));
        m_csv = KVDCsvExport::rows(view.curves, view.start, view.end);
        view.setRange(QDateTime(QDate(2024, 6, 1), QTime()),
                      QDateTime(QDate(2024, 6, 20), QTime(12, 0)));
        m_rangeCsv = KVDCsvExport::rows(view.curves, view.start, view.end);
        QVERIFY2(m_csv.count('\n') > 5 && m_rangeCsv.count('\n') > 5 && m_csv != m_rangeCsv,
                 "distinct exports");
    }
    void cleanup() { qputenv("TZ", "UTC"), tzset(); }

    void sameAsScanningEveryPoint_data()
    {
        QTest::addColumn<std::tuple<QByteArray, QString, int>>("c"); // zone, start, seed
        const std::tuple<const char*, const char*, int> runs[] = {
            {"UTC", "2001-01-01T23:00:00.250", 40},
            {"Europe/Paris", "2021-03-28T01:00:00", 10}, // spring forward
            {"Europe/Paris", "2021-10-31T01:00:00", 10}};
        for (const auto& [zone, start, count] : runs)
            for (int seed = 1; seed <= count; ++seed)
                QTest::addRow("%s %s, seed %d", zone, start, seed)
                    << std::tuple<QByteArray, QString, int>{zone, start, seed};
    }

    // Random curves on a grid of 150 s, so that instants are shared, repeated and found on
    // either side of the view and at its very end (to the millisecond on odd seeds).
    void sameAsScanningEveryPoint()
    {
        using Run = std::tuple<QByteArray, QString, int>;
        QFETCH(Run, c);
        const auto& [zone, start, seed] = c;
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

    void exportItem_data()
    {
        QTest::addColumn<QString>("answer"); // the file name typed, or empty to cancel
        QTest::addColumn<bool>("shown");     // a curve is on display
        QTest::addColumn<QByteArray>("written");
        // The first instant has its row even at the view's end, where later ones have none.
        QTest::newRow("written") << "out.csv" << true
                                 << QByteArray("=DATE(2001;1;1)+TEMPS(11;0;0),12,413\n");
        QTest::newRow("cancelled") << "" << true << QByteArray();
        QTest::newRow("no curve: no dialog") << "out.csv" << false << QByteArray();
        QTest::newRow("unwritable, quietly") << "/proc/kvd-out.csv" << true << QByteArray();
    }

    void exportItem()
    {
        QFETCH(QString, answer);
        QFETCH(bool, shown);
        QFETCH(QByteArray, written);
        KVDView view;
        view.start = QDateTime(QDate(2001, 1, 1), QTime(10, 0));
        view.end = view.start.addSecs(3600);
        if (shown)
            view.curves << curves({{{3600, -12}, {3700, -2}}, {{3600, -4}, {3600, -13}}});
        QTemporaryDir out;
        const QString path = QDir(out.path()).filePath(answer);
        ModalAnswerer answers;
        auto accept = [](QWidget* dialog) { qobject_cast<QDialog*>(dialog)->accept(); };
        if (shown)
            answers.push(answer.isEmpty() ? ModalAnswerer::click("Cancel")
                                          : ModalAnswerer::type("fileNameEdit", path, accept));
        KVDOutput(view, nullptr).exportCsv();
        QVERIFY2(answers.unexpected() == 0 && answers.pending() == 0,
                 "the save dialog only, once a curve is shown");
        QCOMPARE(TestEnv::contents(path), written);
        QCOMPARE(QDir(out.path()).entryList(QDir::Files).size(), written.isEmpty() ? 0 : 1);
    }

    // kvd render's PNG files read back to the very pixels drawn: rows are stored as their
    // difference from the row above, handed over in batches and compressed in pieces.
    void png_data()
    {
        QTest::addColumn<QImage>("image");
        QImage one(1, 1, QImage::Format_RGB32);
        one.fill(qRgb(255, 0, 128));
        QImage noise(800, 200, QImage::Format_RGB32); // hardly compresses: many pieces
        QRandomGenerator random(7);
        for (int y = 0; y < noise.height(); ++y)
            for (int x = 0; x < noise.width(); ++x)
                noise.setPixel(x, y, random.generate() | 0xff000000u);
        QImage chart = KVDPngWriter::canvas(QSize(1280, 800));
        QCOMPARE(chart.pixel(1279, 799), qRgb(255, 255, 255));
        QPainter(&chart).drawText(600, 400, "Jan 2024");
        QImage wide(9000, 3, QImage::Format_ARGB32); // rows longer than a batch
        wide.fill(qRgb(10, 200, 30));
        wide.setPixel(8999, 2, qRgb(1, 2, 3));
        QTest::newRow("one pixel") << one;
        QTest::newRow("noise") << noise;
        QTest::newRow("text on a fresh canvas") << chart;
        QTest::newRow("long rows, another format") << wide;
    }

    void png()
    {
        QFETCH(QImage, image);
        QBuffer out;
        out.open(QIODevice::WriteOnly);
        QVERIFY2(KVDPngWriter::write(image, &out), "written");
        const QImage back = QImage::fromData(out.data(), "PNG");
        QVERIFY2(back.convertToFormat(QImage::Format_RGB32) ==
                     image.convertToFormat(QImage::Format_RGB32),
                 "the same pixels");
        QCOMPARE(back.dotsPerMeterX(), image.dotsPerMeterX());
        QFile full("/dev/full");
        QString error;
        QVERIFY(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        QVERIFY2(!KVDPngWriter::write(image, &full, &error) && !error.isEmpty(),
                 "a device that takes nothing is reported");
    }

    void kvd_data()
    {
        // R, S: the repository without and with a saved view; E: an empty directory;
        // O.x: a file in the output directory.
        // The arguments, the exit status, and what is in O.x ("svg L": with axis label L) or
        // on standard error.
        QTest::addColumn<std::tuple<QString, int, QString>>("c");
        auto row = [](const char* name, const QString& args, int status, const char* expect) {
            QTest::newRow(name) << std::tuple<QString, int, QString>{args, status, expect};
        };
        const QString two = " --curve cov4:bob:2 --curve tests2:alice:1";
        const QString png = "render --root R --size 640x400 -o O.png";
        row("png", png + two, 0, "curves");
        row("png, no saved view", png, 0, "none");
        row("svg, saved view", "render --root S --size 640x400 -o O.svg", 0, "svg");
        row("pdf, saved view", "render --root S --size 640x400 -o O.pdf", 0, "pdf");
        row("svg, no curve, the range asked for",
            "render --root R --size 640x400 -o O.svg --from 2001-01-01 --to 2001-03-01", 0,
            "svg Jan 2001");
        row("csv, saved view", "export --root S -o O.csv", 0, "csv");
        row("csv, the same curves chosen, a range",
            "export --root R -o O.csv --from 2024-06-01 --to 2024-06-20T12:00:00" + two, 0,
            "range");
        row("no root", "render -o O.png", 2, "--root R is required");
        row("missing root", "render --root /none -o O.png", 2, "no such directory");
        row("root a file", "export --root /dev/null -o O.csv", 2, "not a directory");
        row("no measures", "render --root E -o O.png", 1, "cannot be shown");
        row("no field", "render --root R --curve cov4:al -o O.png", 2, "KEY:USER");
        row("measure", "render --root R --curve x4:al:1 -o O.png", 1, "no measure");
        row("user", "export --root R --curve cov4:zed:1 -o O.csv", 1, "no user");
        row("field", "render --root R --curve cov4:alice:5 -o O.png", 1, "1 to 4");
        row("last field", png + " --curve cov4:alice:4", 0, "curves");
        row("measure of another user", "export --root R --curve cov4:dora:1 -o O.csv", 1,
            "dora has no measure cov4");
        row("range ending at the view start", "export --root S --view --to VS -o O.csv", 1,
            "is empty");
        row("size", "render --root R --size 640x -o O.png", 2, "--size takes");
        row("extension", "render --root R -o O.gif", 2, ".png, .svg or .pdf");
        row("date", "export --root R --from 2024-02-30 -o O.csv", 2, "--from");
        row("definitions", "render --root R --builtin /x -o O.png", 1, "no such");
        row("empty export", "export --root R -o O.csv", 1, "no curve to export");
    }

    void kvd()
    {
        using Call = std::tuple<QString, int, QString>;
        QFETCH(Call, c);
        const auto& [args, status, expect] = c;
        QTemporaryDir empty, out;
        QStringList words = args.split(' ');
        for (QString& w : words)
            w = w == "R"             ? m_plain.root()
                : w == "S"           ? m_saved.root()
                : w == "E"           ? empty.path()
                : w == "VS"          ? m_savedStart
                : w.startsWith("O.") ? out.filePath(w)
                                     : w;
        const QByteArray before = snapshot();
        QProcess kvd;
        kvd.start(TestEnv::built(QStringLiteral("bin/kvd")), words);
        QVERIFY(kvd.waitForFinished(60000) && kvd.exitStatus() == QProcess::NormalExit);
        const QByteArray err = kvd.readAllStandardError();
        QCOMPARE(kvd.exitCode(), status);
        QVERIFY2(snapshot() == before, "the repositories are left as they were");
        const QStringList written = QDir(out.path()).entryList(QDir::Files);
        const bool usage = expect.startsWith("Usage");
        QCOMPARE(written.size(), status || usage ? 0 : 1);
        if (status != 0 || usage) {
            const QByteArray said = usage ? kvd.readAllStandardOutput() : err;
            QVERIFY2(said.contains(expect.toUtf8()), said.constData());
            return;
        }
        const QByteArray bytes = TestEnv::contents(out.filePath(written[0]));
        if (expect == "csv" || expect == "range") {
            QCOMPARE(bytes, expect == "csv" ? m_csv : m_rangeCsv);
        } else if (expect == "pdf") {
            // 640 x 400 pixels at the PNG's 96 an inch make a page of 480 x 300 points.
            const QRegularExpressionMatch box =
                QRegularExpression("/MediaBox \\[0 0 ([\\d.]+) ([\\d.]+)\\]")
                    .match(QString::fromLatin1(bytes));
            QVERIFY2(bytes.startsWith("%PDF-") && box.captured(1).toDouble() == 480 &&
                         box.captured(2).toDouble() == 300,
                     qPrintable(box.captured()));
        } else if (expect.startsWith("svg")) {
            QCOMPARE(QSvgRenderer(bytes).viewBox(), QRect(0, 0, 640, 400));
            QImage png(1, 1, QImage::Format_RGB32); // its text is as large as a PNG's
            QSet<QString> sizes;
            const QRegularExpression fontSize("font-size=\"([^\"]*)\"");
            for (const QRegularExpressionMatch& m : fontSize.globalMatch(QString::fromUtf8(bytes)))
                sizes << m.captured(1);
            QCOMPARE(sizes, QSet<QString>{QString::number(QPainter(&png).fontInfo().pixelSize())});
            const QByteArray label = '>' + expect.section(' ', 1).toUtf8() + "</text>";
            QVERIFY2(expect == "svg" || bytes.contains(label), "no such axis label");
        } else {
            const QImage image = QImage::fromData(bytes, "PNG");
            QCOMPARE(image.size(), QSize(640, 400));
            int coloured = 0; // curves are the only saturated colour inside the plot
            for (int y = 50; y < 300; ++y)
                for (int x = 55; x < 390; ++x)
                    coloured += QColor(image.pixel(x, y)).hsvSaturation() > 128;
            QVERIFY2((coloured > 100) == (expect == "curves"),
                     qPrintable(QString::number(coloured)));
        }
    }

    // Calc, in French, converts what kvd export wrote with formula evaluation on, and every
    // cell is held against its row. Needs soffice and Calc's French language pack.
    void frenchCalcEvaluates()
    {
        if (!qEnvironmentVariableIsSet("KVD_CALC"))
            QSKIP("KVD_CALC unset: the full scripts/test pass sets it and installs Calc");
        // An afternoon, the other user alone (empty columns), midnight with two records of
        // one curve (5 and 7 written as 57), the range's last second.
        const QList<qint64> rows{1110204300, 1110227415, 1110240000, 1112313599};
        SampleRepository repo;
        QVERIFY(repo.writePair("cov", "alice", 2,
                               {{1110204300, 1, {12, 3}},
                                {1110240000, 1, {5, 40}},
                                {1110240000, 1, {7, 41}},
                                {1112313599, 1, {2000000000, 0}}}) &&
                repo.writePair("tests", "bob", 1, {{1110227415, 1, {9}}}));
        const QString csv = m_dir.filePath("calc.csv");
        QProcess kvd, calc;
        kvd.start(TestEnv::built("bin/kvd"),
                  {"export", "--root", repo.root(), "--curve", "cov2:alice:1", "--curve",
                   "cov2:alice:2", "--curve", "tests1:bob:1", "--from", "2005-03-01", "--to",
                   "2005-04-01", "-o", csv});
        QVERIFY(kvd.waitForFinished(60000) && kvd.exitCode() == 0);
        const QString exported = QString::fromLatin1(TestEnv::contents(csv));
        QVERIFY2(exported.contains("TEMPS(0;0;0),57,4041,\n"), qPrintable(exported));
        // Read: ',' between fields, '"' quotes, UTF-8, French, formulas evaluated (the 13th
        // option). Written: ';' between fields (none in a French number), cells as shown.
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("LC_ALL", "fr_FR.UTF-8");
        calc.setProcessEnvironment(env);
        const QString filter = "Text - txt - csv (StarCalc):";
        calc.start(
            "soffice",
            {"-env:UserInstallation=file://" + m_dir.filePath("profile"), "--headless",
             "--infilter=" + filter + "44,34,76,1,,1036,false,false,false,false,false,-1,true",
             "--convert-to", "csv:" + filter + "59,34,76,1,,1036,false,false,true", "--outdir",
             m_dir.filePath("calc"), csv});
        QVERIFY2(calc.waitForFinished(240000) && calc.exitCode() == 0,
                 qPrintable(calc.errorString() + calc.readAllStandardError()));
        const QString out = QString::fromUtf8(TestEnv::contents(m_dir.filePath("calc/calc.csv")));
        const QStringList wrote = exported.split('\n'), made = out.split('\n');
        QCOMPARE(made.size(), rows.size() + 1);
        for (int r = 0; r < rows.size(); ++r) {
            // A date is days since 1899-12-30 (25569 up to 1970), the time of day their
            // fraction. A formula Calc cannot evaluate stays text or becomes an error: #NAME?
            // means it does not know TEMPS (no French language pack).
            const double days = made[r].section(';', 0, 0).replace(',', '.').toDouble();
            QVERIFY2(qRound64((days - 25569) * 86400) == rows[r],
                     qPrintable(QStringLiteral("Calc made %1 of %2").arg(made[r], wrote[r])));
            QCOMPARE(made[r].section(';', 1), wrote[r].section(',', 1).replace(',', ';'));
        }
    }
};

QTEST_MAIN(TstExport)
#include "tst_export.moc"
