#include "fakestudio.h"
#include "recordingshell.h"
#include "kvdcsvexport.h"
#include "kvdview.h"
#include "qakvd.h"
#include "samplerepository.h"
#include "testenv.h"

#include <QCryptographicHash>
#include <QProcess>
#include <QSvgRenderer>
#include <QtTest>

// kvd render and kvd export: the viewer's own picture and CSV of a repository, which they
// only ever read.
class TstRender : public QObject
{
    Q_OBJECT

private:
    FakeStudio m_host;
    RecordingShell m_shell{&m_host};
    SampleRepository m_plain; // no saved view
    SampleRepository m_saved; // a saved view of two curves
    QTemporaryDir m_out;
    QByteArray m_csv;      // the viewer's export of the saved view
    QByteArray m_rangeCsv; // the same from 2024-06-01 to 2024-06-20 12:00

    QByteArray snapshot() const
    {
        QCryptographicHash hash(QCryptographicHash::Md5);
        for (const QString& root : {m_plain.root(), m_saved.root()})
            for (const QFileInfo& info : QDir(root).entryInfoList(QDir::Files | QDir::Hidden)) {
                QFile file(info.filePath());
                hash.addData(info.fileName().toUtf8() +
                             (file.open(QIODevice::ReadOnly) ? file.readAll() : ""));
            }
        return hash.result();
    }

private slots:
    void initTestCase()
    {
        TestEnv::pin();
        m_host.dataDirectory = TestEnv::built(QStringLiteral("share/kavendi"));
        m_host.install();
        m_shell.use();
        KVDSampleWriter::Options options;
        options.end = QDate(2024, 6, 30);
        QVERIFY2(m_plain.fill(options) && m_saved.fill(options), qPrintable(m_plain.error()));
        // Two choices from the viewer's menus, saved as the viewer saves them.
        KVDView view;
        QVERIFY(view.load(m_saved.root(), QString(), false));
        view.selectField(QStringLiteral("Coverage"));
        QVERIFY(view.selectMeasure(2, QStringLiteral("bob")));
        view.selectField(QStringLiteral("Test runs"));
        QVERIFY(view.selectMeasure(1, QStringLiteral("alice")));
        view.storeView();
        m_csv = KVDCsvExport::rows(view.curves, view.start, view.end);
        view.setRange(QDateTime(QDate(2024, 6, 1), QTime()),
                      QDateTime(QDate(2024, 6, 20), QTime(12, 0)));
        m_rangeCsv = KVDCsvExport::rows(view.curves, view.start, view.end);
        QVERIFY2(m_csv.count('\n') > 5 && m_rangeCsv.count('\n') > 5 && m_csv != m_rangeCsv,
                 "distinct exports");
    }

    void run_data()
    {
        // R, S: the repository without and with a saved view; E: an empty directory;
        // O.x: a file in the output directory.
        QTest::addColumn<QString>("args");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("expect"); // what is in O.x, or on standard error
        const QString two = " --curve cov4:bob:2 --curve tests2:alice:1";
        const QString range = " --from 2024-06-01 --to 2024-06-20T12:00:00";
        QTest::newRow("png") << "render --root R --size 640x400 -o O.png" + two << 0 << "curves";
        QTest::newRow("png, no saved view")
            << "render --root R --size 640x400 -o O.png" << 0 << "none";
        QTest::newRow("png, saved view")
            << "render --root S --size 640x400 -o O.png" << 0 << "curves";
        QTest::newRow("svg") << "render --root R --size 640x400 -o O.svg" + two << 0 << "svg";
        QTest::newRow("pdf") << "render --root R --size 640x400 -o O.pdf" + two << 0 << "pdf";
        QTest::newRow("csv, saved view") << "export --root S -o O.csv" << 0 << "csv";
        QTest::newRow("csv, saved view, range")
            << "export --root S --view -o O.csv" + range << 0 << "range";
        QTest::newRow("csv, same curves") << "export --root R -o O.csv" + two << 0 << "csv";
        QTest::newRow("csv, same curves, range")
            << "export --root R -o O.csv" + two + range << 0 << "range";
        QTest::newRow("no root") << "render -o O.png" << 2 << "--root R is required";
        QTest::newRow("missing root") << "render --root /none -o O.png" << 2 << "no such directory";
        QTest::newRow("no measures") << "render --root E -o O.png" << 1 << "cannot be shown";
        QTest::newRow("no field") << "render --root R --curve cov4:al -o O.png" << 2 << "KEY:USER";
        QTest::newRow("measure") << "render --root R --curve x4:al:1 -o O.png" << 1 << "no measure";
        QTest::newRow("user") << "export --root R --curve cov4:zed:1 -o O.csv" << 1 << "no user";
        QTest::newRow("field") << "render --root R --curve cov4:alice:5 -o O.png" << 1 << "1 to 4";
        QTest::newRow("size") << "render --root R --size 640x -o O.png" << 2 << "--size takes";
        QTest::newRow("small") << "render --root R --size 300x100 -o O.png" << 2 << "--size takes";
        QTest::newRow("extension") << "render --root R -o O.gif" << 2 << ".png, .svg or .pdf";
        QTest::newRow("date") << "export --root R --from 2024-02-30 -o O.csv" << 2 << "--from";
        QTest::newRow("definitions") << "render --root R --builtin /x -o O.png" << 1 << "no such";
        QTest::newRow("empty export") << "export --root R -o O.csv" << 1 << "no curve to export";
    }

    void run()
    {
        QFETCH(QString, args);
        QFETCH(int, status);
        QFETCH(QString, expect);
        QTemporaryDir empty;
        QStringList words = args.split(' ');
        for (QString& w : words)
            w = w == "R"             ? m_plain.root()
                : w == "S"           ? m_saved.root()
                : w == "E"           ? empty.path()
                : w.startsWith("O.") ? m_out.filePath(w)
                                     : w;
        const QByteArray before = snapshot();
        QProcess kvd;
        kvd.start(TestEnv::built(QStringLiteral("bin/kvd")), words);
        QVERIFY(kvd.waitForFinished(60000) && kvd.exitStatus() == QProcess::NormalExit);
        const QByteArray err = kvd.readAllStandardError();
        QCOMPARE(kvd.exitCode(), status);
        QVERIFY2(snapshot() == before,
                 "the repositories are left as they were, no view file added");
        const QStringList written = QDir(m_out.path()).entryList(QDir::Files);
        if (status != 0) {
            QVERIFY2(err.contains(expect.toUtf8()), err.constData());
            QVERIFY2(written.isEmpty(), "nothing written");
            return;
        }
        QCOMPARE(written.size(), 1);
        QFile out(m_out.filePath(written[0]));
        QVERIFY(out.open(QIODevice::ReadOnly));
        const QByteArray bytes = out.readAll();
        out.remove();
        if (expect == "csv" || expect == "range") {
            QCOMPARE(bytes, expect == "csv" ? m_csv : m_rangeCsv);
        } else if (expect == "pdf" || expect == "svg") {
            QVERIFY2(expect == "pdf"
                         ? bytes.startsWith("%PDF-") && bytes.contains("/MediaBox [0 0 640")
                         : QSvgRenderer(bytes).viewBox() == QRect(0, 0, 640, 400),
                     "one 640 x 400 page or picture");
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
};

QTEST_MAIN(TstRender)
#include "tst_render.moc"
