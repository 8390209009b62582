#include "kvdmeasurefile.h"
#include "samplerepository.h"
#include "testenv.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QtTest>

#include <sys/stat.h>

// The one reader of measure data files, on good files, on damaged ones and on names
// that do not follow the layout; and kvd, which reads and writes through the same code.
class TstMeasureFile : public QObject
{
    Q_OBJECT

private:
    QString kvd() const { return TestEnv::built(QStringLiteral("bin/kvd")); }

    // Runs kvd with args; answers the exit code, or -1 when it did not finish.
    int run(const QStringList& args, QByteArray* out = nullptr, QByteArray* err = nullptr,
            const QString& root = QString())
    {
        QProcess process;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("ZANTH_KVD_ROOT"));
        if (!root.isNull())
            env.insert(QStringLiteral("ZANTH_KVD_ROOT"), root);
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), QDir::tempPath());
        process.setProcessEnvironment(env);
        process.start(kvd(), args);
        if (!process.waitForFinished(60000)) {
            process.kill();
            process.waitForFinished();
            return -1;
        }
        if (out)
            *out = process.readAllStandardOutput();
        if (err)
            *err = process.readAllStandardError();
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

private slots:
    void initTestCase() { TestEnv::pin(); }

    void splitName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("count");
        QTest::addColumn<bool>("numeric");
        QTest::addColumn<QString>("measureUser"); // measure|user
        QTest::newRow("plain") << "cov.alice.4.kvd" << 4 << true << "cov|alice";
        QTest::newRow("in a directory with dots")
            << "/repo.v2/x.y/cov.alice.8.kvd" << 8 << true << "cov|alice";
        QTest::newRow("negative count") << "cov.alice.-3.kvd" << -3 << true << "cov|alice";
        QTest::newRow("count above the limit") << "cov.a.10000.kvd" << 10000 << true << "cov|a";
        QTest::newRow("count not a number") << "cov.alice.abc.kvd" << 0 << false << "cov|alice";
        QTest::newRow("count missing") << "cov.alice.kvd" << 0 << false << "cov|alice";
        QTest::newRow("user missing") << "cov.kvd" << 0 << false << "cov|kvd";
        QTest::newRow("no dot") << "cov" << 0 << false << "cov|";
        QTest::newRow("dot in the measure") << "a.b.c.4.kvd" << 0 << false << "a|b";
        QTest::newRow("empty") << "" << 0 << false << "|";
    }

    void splitName()
    {
        QFETCH(QString, name);
        QFETCH(int, count);
        QFETCH(bool, numeric);
        QFETCH(QString, measureUser);
        const KVDMeasureFile::Name parts = KVDMeasureFile::splitName(name);
        QCOMPARE(parts.measure + '|' + parts.user, measureUser);
        QCOMPARE(parts.fieldCount, count);
        QCOMPARE(parts.numeric, numeric);
    }

    void fixtures_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("opens");
        QTest::addColumn<int>("records");
        QTest::addColumn<int>("trailingBytes");
        QTest::newRow("whole") << "cov.whole.4.kvd" << true << 4 << 0;
        QTest::newRow("half a record at the end") << "cov.trunc.4.kvd" << true << 3 << 20;
        QTest::newRow("size not a multiple of 4") << "tests.odd.2.kvd" << true << 1 << 3;
        QTest::newRow("empty") << "cov.empty.4.kvd" << true << 0 << 0;
        QTest::newRow("negative count") << "cov.neg.-3.kvd" << false << 0 << 0;
        QTest::newRow("count of 10000") << "cov.huge.10000.kvd" << false << 0 << 0;
        // Names whose count is not a number read as records of no field (8 bytes).
        QTest::newRow("count not a number") << "cov.word.abc.kvd" << true << 20 << 0;
        QTest::newRow("no count, no user") << "nodots.kvd" << true << 20 << 0;
        QTest::newRow("dots in the names") << "cov.dots.in.name.4.kvd" << true << 20 << 0;
    }

    // Damaged files and absurd names read safely: whole records only, refused counts
    // with a message naming the count.
    void fixtures()
    {
        QFETCH(QString, file);
        QFETCH(bool, opens);
        QFETCH(int, records);
        QFETCH(int, trailingBytes);
        const QString path = TestEnv::dataFile(QStringLiteral("measure/") + file);
        const int count = KVDMeasureFile::splitName(file).fieldCount;
        KVDMeasureFile reader;
        QString error;
        QCOMPARE(reader.open(path, count, &error), opens);
        if (!opens) {
            QVERIFY2(error.contains(QString::number(count)), qPrintable(error));
            QVERIFY2(reader.next() == nullptr, "a refused file has no records");
            return;
        }
        QCOMPARE(reader.recordCount(), qint64(records));
        const qint64 recordBytes = 4 * KVDMeasureFile::recordWords(count);
        QCOMPARE(reader.size() - reader.recordCount() * recordBytes, qint64(trailingBytes));

        // The records read are the leading whole records of the file, at their offsets.
        QFile raw(path);
        QVERIFY(raw.open(QIODevice::ReadOnly));
        const QByteArray bytes = raw.readAll();
        int read = 0;
        while (const quint32* record = reader.next()) {
            QCOMPARE(reader.offset(), read * recordBytes);
            QVERIFY2(memcmp(record, bytes.constData() + read * recordBytes, size_t(recordBytes)) ==
                         0,
                     "a record differs from the bytes of the file");
            ++read;
        }
        QCOMPARE(read, records);
        QVERIFY2(reader.next() == nullptr, "reading past the end must keep answering null");
    }

    void refusedPaths_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("missing file") << "missing";
        QTest::newRow("directory") << "directory";
        QTest::newRow("named pipe") << "fifo";
    }

    // What is not a regular file is refused with a message, and never waited on.
    void refusedPaths()
    {
        QFETCH(QString, kind);
        SampleRepository repo;
        const QString path = repo.path("cov", "alice", 4);
        if (kind == QLatin1String("directory"))
            QVERIFY(QDir().mkdir(path));
        else if (kind == QLatin1String("fifo"))
            QVERIFY(mkfifo(QFile::encodeName(path).constData(), 0600) == 0);
        KVDMeasureFile reader;
        QString error;
        QVERIFY2(!reader.open(path, 4, &error), "opened what is not a data file");
        QVERIFY2(error.contains(path), qPrintable(error));
        QVERIFY(!reader.isOpen());
    }

    // Offsets found in the index lead seek() to that key's latest record.
    void seekThroughIndex()
    {
        SampleRepository repo;
        QVERIFY2(repo.fill({1, 10, 5, 3, QDate(2024, 5, 1)}), qPrintable(repo.error()));
        QFile index(repo.path("cov", "alice", 8, ".idx"));
        QVERIFY(index.open(QIODevice::ReadOnly));
        const QByteArray entries = index.readAll();
        QVERIFY2(entries.size() >= 16, "the sample pair should have several keys");
        KVDMeasureFile reader;
        QVERIFY(reader.open(repo.path("cov", "alice", 8), 8));
        for (int e = 0; e < entries.size() / 8; ++e) {
            quint32 entry[2];
            memcpy(entry, entries.constData() + 8 * e, 8);
            QVERIFY(reader.seek(entry[1]));
            const quint32* record = reader.next();
            QVERIFY2(record, "an index offset points past the records");
            QCOMPARE(reader.offset(), qint64(entry[1]));
            QCOMPARE(KVDMeasureFile::key(record), entry[0]);
            // Total of field n is word 2n + 1; value of field k is word 2 + 2k.
            QCOMPARE(KVDMeasureFile::fieldTotal(record, 1), KVDMeasureFile::total(record, 0));
            QCOMPARE(KVDMeasureFile::value(record, 7), record[16]);
        }
        QVERIFY(reader.seek(reader.size()));
        QVERIFY2(reader.next() == nullptr, "nothing lies past the end");
        QVERIFY2(!reader.seek(-1), "a negative offset is refused");
    }

    void commands_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("out"); // a regular expression
        QTest::addColumn<bool>("withRoot");
        QTest::addColumn<QString>("err"); // a piece of the standard error, or none of "kvd"
        const QStringList write{"write", "cov", "u", "1", "0", "5"};
        const QString data = TestEnv::dataFile("measure/");
        QTest::newRow("key of abcd")
            << QStringList{"key", "abcd"} << 0 << "^0xaca0a4b8\n$" << false << "";
        QTest::newRow("key without text")
            << QStringList{"key"} << 2 << "^$" << false << "kvd key: ";
        QTest::newRow("write without repository")
            << write << 1 << "^$" << false << "ZANTH_KVD_ROOT is not set";
        QTest::newRow("write, repository missing")
            << write << 1 << "^$" << true << "not a writable directory";
        QTest::newRow("write, bad key") << QStringList{"write", "cov", "u", "k1", "0", "5"} << 2
                                        << "^$" << false << "KEY is not a 32-bit number";
        QTest::newRow("write, value too big")
            << QStringList{"write", "cov", "u", "1", "0", "4294967296"} << 2 << "^$" << false
            << "VALUE is not a 32-bit number";
        QTest::newRow("write, slash in a name") << QStringList{"write", "a/b", "u", "1", "0", "5"}
                                                << 2 << "^$" << false << "cannot hold";
        QTest::newRow("dump, missing file") << QStringList{"dump", "/nonexistent/c.u.4.kvd"} << 1
                                            << "^$" << false << "Can't open file";
        QTest::newRow("dump, no count in the name")
            << QStringList{"dump", data + "nodots.kvd"} << 2 << "^$" << false << "--fields";
        QTest::newRow("dump, partial record")
            << QStringList{"dump", data + "cov.trunc.4.kvd"} << 0
            << "^(\\d+ \\d+ \\S+Z 0x[0-9a-f]{8}( \\d+/\\d+){4}\n){3}$" << false << "20 bytes";
        QTest::newRow("dump, count of 10000")
            << QStringList{"dump", data + "cov.huge.10000.kvd"} << 1 << "^$" << false << "10000";
        QTest::newRow("sample, no user") << QStringList{"sample", "/tmp/x", "--users", "0"} << 2
                                         << "^$" << false << "--users takes 1 to 1000";
        QTest::newRow("sample, bad end") << QStringList{"sample", "/tmp/x", "--end", "2024-13-01"}
                                         << 2 << "^$" << false << "--end";
        QTest::newRow("sample, before 1970")
            << QStringList{"sample", "/tmp/x", "--end", "1970-01-05", "--days", "10"} << 1 << "^$"
            << false << "32-bit dates";
        QTest::newRow("sample, unknown option") << QStringList{"sample", "/tmp/x", "--colour"} << 2
                                                << "^$" << false << "Unknown option";
        for (const char* command : {"sample", "write", "key", "dump"})
            QTest::newRow(qPrintable(QStringLiteral("%1 --help").arg(command)))
                << QStringList{command, "--help"} << 0
                << QStringLiteral("^Usage: kvd %1 ").arg(command) << false << "";
    }

    // kvd's subcommands: output, messages on standard error and exit status.
    void commands()
    {
        QFETCH(QStringList, args);
        QFETCH(bool, withRoot);
        QFETCH(int, status);
        QFETCH(QString, out);
        QFETCH(QString, err);
        QByteArray stdOut, stdErr;
        const QString root = withRoot ? QDir::tempPath() + "/no-such-kvd-repository" : QString();
        QCOMPARE(run(args, &stdOut, &stdErr, root), status);
        QVERIFY2(QRegularExpression(out).match(QString::fromUtf8(stdOut)).hasMatch(),
                 stdOut.constData());
        if (err.isEmpty())
            QVERIFY2(!stdErr.contains("kvd"), stdErr.constData());
        else
            QVERIFY2(stdErr.contains(err.toUtf8()), stdErr.constData());
    }

    // kvd sample makes a repository that kvd dump lists line for record, with the values
    // and totals the reader sees; kvd write adds a pair that dump lists too.
    void sampleThenDump()
    {
        SampleRepository repo;
        const QString root = repo.root() + "/made";
        QByteArray out, err;
        QCOMPARE(run({"sample", root, "--users", "2", "--days", "7", "--per-day", "3", "--end",
                      "2024-02-29", "--seed", "5"},
                     &out, &err),
                 0);
        QVERIFY2(out.startsWith("126 records in 6 measure files"), out.constData());
        const QStringList files = QDir(root).entryList({"*.kvd"}, QDir::Files, QDir::Name);
        QCOMPARE(files, (QStringList{"cov.alice.4.kvd", "cov.alice.8.kvd", "cov.bob.4.kvd",
                                     "cov.bob.8.kvd", "tests.alice.2.kvd", "tests.bob.2.kvd"}));
        for (const QString& file : files) {
            const int count = KVDMeasureFile::splitName(file).fieldCount;
            QCOMPARE(run({"dump", root + "/" + file}, &out, &err), 0);
            const QList<QByteArray> lines = out.trimmed().split('\n');
            QCOMPARE(lines.size(), 21);
            KVDMeasureFile reader;
            QVERIFY(reader.open(root + "/" + file, count));
            for (const QByteArray& line : lines) {
                const quint32* record = reader.next();
                QVERIFY(record);
                const QList<QByteArray> columns = line.split(' ');
                QCOMPARE(columns.size(), 4 + count);
                QCOMPARE(columns[1].toLongLong(), reader.offset());
                QCOMPARE(columns[2], QDateTime::fromSecsSinceEpoch(record[0], Qt::UTC)
                                         .toString(Qt::ISODate)
                                         .toUtf8());
                QVERIFY2(columns[2].startsWith("2024-02-2"), "dated outside the week asked for");
                for (int k = 0; k < count; ++k)
                    QCOMPARE(columns[4 + k],
                             QByteArray::number(KVDMeasureFile::value(record, k)) + '/' +
                                 QByteArray::number(KVDMeasureFile::total(record, k)));
            }
        }

        QCOMPARE(run({"write", "cov", "dora", "0x2a", "2024-03-01T10:00:00", "3", "4"}, &out, &err,
                     root),
                 0);
        QCOMPARE(run({"dump", root + "/cov.dora.2.kvd"}, &out, &err), 0);
        QCOMPARE(out, QByteArray("0 0 2024-03-01T10:00:00Z 0x0000002a 3/3 4/4\n"));
        QCOMPARE(run({"dump", root + "/cov.dora.2.idx"}, &out, &err), 0);
        QCOMPARE(out, QByteArray("0 0x0000002a 0\n"));
    }
};

QTEST_GUILESS_MAIN(TstMeasureFile)
#include "tst_measurefile.moc"
