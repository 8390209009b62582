#include "kvdmeasurefile.h"
#include "kvdsamplewriter.h"
#include "kvdstore.h"
#include "samplerepository.h"
#include "stderrcapture.h"
#include "testenv.h"

#include <QDir>
#include <QProcess>
#include <QtTest>

#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using Words = QList<quint32>;
using Options = KVDSampleWriter::Options;

namespace {

const QByteArray Prefix = "Quillon - Kavendi: ";

Words wordsOf(const QString& path)
{
    const QByteArray bytes = TestEnv::contents(path);
    Words words(bytes.size() / 4);
    memcpy(words.data(), bytes.constData(), size_t(words.size()) * 4);
    return words;
}

// The files of a directory with their words: what a refused write must leave as it was.
QMap<QString, Words> snapshot(const QString& dir)
{
    QMap<QString, Words> files;
    for (const QString& name : QDir(dir).entryList(QDir::Files))
        files[name] = wordsOf(dir + '/' + name);
    return files;
}

// Checks a pair against the store's rule, worked out here: a total is the sum over keys of
// each key's latest value; the index lists keys in order of first appearance with the
// offset of their latest record. Answers what is wrong, or nothing.
QString checkPair(const QString& dataPath, int n)
{
    const Words data = wordsOf(dataPath);
    QHash<quint32, int> latest; // key -> first word of its latest record
    Words sums(n), keys, index;
    for (int at = 0; at + 2 * n + 2 <= data.size(); at += 2 * n + 2) {
        const quint32 key = data[at + 1];
        const int was = latest.value(key, -1);
        for (int k = 0; k < n; ++k) {
            sums[k] += data[at + 2 + 2 * k] - (was < 0 ? 0 : data[was + 2 + 2 * k]);
            if (data[at + 3 + 2 * k] != sums[k])
                return dataPath + ": wrong total at word " + QString::number(at + 3 + 2 * k);
        }
        if (was < 0)
            keys << key;
        latest[key] = at;
    }
    for (quint32 key : std::as_const(keys))
        index << key << quint32(latest[key] * 4);
    return wordsOf(dataPath.chopped(4) + ".idx") == index ? QString() : dataPath + ": wrong index";
}

struct Write
{
    quint32 key, date; // date 0: the time of writing
    int count;
    QByteArray message; // null: written; empty: refused silently
};

struct Sample
{
    Options options;
    QString outcome;      // the last user's name, or a piece of the error
    QString blocker = {}; // made first: NAME a directory, NAME>TARGET a link
};

// What kvd dump prints for count records of n fields.
QString dumped(int n, int count)
{
    return QString::asprintf("(\\d+ \\d+ \\S+Z 0x[0-9a-f]{8}( \\d+/\\d+){%d}\n){%d}", n, count);
}

// A script for sh in a fresh repository ($D: the fixtures), its exit status, a regular
// expression for its whole output, and a piece of its standard error (null: nothing of kvd).
using Command = std::tuple<QString, int, QString, QString>;

void command(const char* name, const QString& script, int status, const QString& out,
             const QString& err = QString())
{
    QTest::newRow(name) << Command{script, status, out, err};
}

} // namespace

// The measure store as recording tools use it, its file reader, the sample writer, and
// kvd's commands that read and write through them.
class TstStore : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TestEnv::pin(); }

    void write_data()
    {
        QTest::addColumn<Write>("row");
        QTest::newRow("one field") << Write{7, 1104537600, 1, {}};
        QTest::newRow("date zero means now") << Write{~0u, 0, 4, {}};
        QTest::newRow("one second after 1970") << Write{9, 1, 2, {}};
        QTest::newRow("no field") << Write{3, ~0u, 0, {}};
        QTest::newRow("9999 fields, the most") << Write{3, 1, 9999, {}};
        QTest::newRow("negative count") << Write{3, 1, -1, "Unable to allocate memory"};
        QTest::newRow("repository unset") << Write{3, 1, 1, ""};
    }

    // A first write makes the pair: one record whose totals are its values and the index
    // entry (key, 0). Refused writes change nothing and leave no lock.
    void write()
    {
        QFETCH(Write, row);
        SampleRepository repo;
        const QString data = repo.path("cov", "alice", row.count);
        !row.message.isNull() && row.message.isEmpty()
            ? qunsetenv("ZANTH_KVD_ROOT")
            : qputenv("ZANTH_KVD_ROOT", QFile::encodeName(repo.root()));
        Words values(std::max(row.count, 0));
        for (int k = 0; k < values.size(); ++k)
            values[k] = row.key ^ (quint32(k) * 2654435761u);
        const auto before = snapshot(repo.root());

        const quint32 start = quint32(std::time(nullptr));
        StderrCapture capture;
        QCOMPARE(Write_Measure("cov", "alice", row.key, row.date, row.count, values.constData()),
                 row.message.isNull() ? 0u : 1u);
        QCOMPARE(capture.text(), row.message.isEmpty() ? "" : Prefix + row.message + "\n");
        QVERIFY2(row.message.isNull() || snapshot(repo.root()) == before, "a refused write wrote");
        if (!row.message.isNull())
            return;
        QCOMPARE(snapshot(repo.root()).size(), 2); // no lock left
        const Words words = wordsOf(data);
        const quint32 end = quint32(std::time(nullptr)); // date 0 stands for a time in the call
        Words expected{row.date ? row.date : qBound(start, words.value(0), end), row.key};
        for (quint32 v : std::as_const(values))
            expected << v << v;
        QVERIFY2(words == expected, "the record is not date, key, then each value twice");
        QCOMPARE(wordsOf(repo.path("cov", "alice", row.count, ".idx")), (Words{row.key, 0}));
    }

    void fileKey_data()
    {
        QTest::addColumn<QByteArray>("text"); // null: no text at all
        QTest::addColumn<qint64>("key");      // -1: refused
        // Worked by hand: h starts at 4A4A4A4A; each group g gives h = (g ^ h) << 1.
        // "": one zero group: 4A4A4A4A << 1 = 94949494.
        QTest::newRow("empty") << QByteArray("") << 0x94949494ll;
        // "abcd": 61626364 ^ 4A4A4A4A = 2B28292E, << 1 = 5650525C; then the zero group:
        // 5650525C << 1 = ACA0A4B8.
        QTest::newRow("four letters") << QByteArray("abcd") << 0xACA0A4B8ll;
        // "a\xff\0\0" with signed bytes: (97 * 256 - 1) * 65536 = 60FF0000 (not 61FF0000);
        // ^ 4A4A4A4A = 2AB54A4A, << 1 = 556A9494.
        QTest::newRow("byte above 0x7f") << QByteArray("a\xff") << 0x556A9494ll;
        // Four 0x80 bytes are -128 each: -128 * 01010101 = -80808080 = 7F7F7F80 in 32 bits;
        // ^ 4A4A4A4A = 353535CA, << 1 = 6A6A6B94; zero group: << 1 = D4D4D728.
        QTest::newRow("four bytes 0x80") << QByteArray("\x80\x80\x80\x80") << 0xD4D4D728ll;
        // The length is a 16-bit quantity: 65540 bytes hash as their first 4, "abcd".
        QTest::newRow("65540 bytes") << QByteArray("abcd") + QByteArray(65536, 'x') << 0xACA0A4B8ll;
        // Only the last 32 groups leave a trace: 8190 of "kkkk", then "kkk\0", give 4DB24D64.
        QTest::newRow("32763 bytes, the longest") << QByteArray(32763, 'k') << 0x4DB24D64ll;
        QTest::newRow("no text") << QByteArray() << -1ll;
        QTest::newRow("32764 bytes, rounded size wraps") << QByteArray(32764, 'k') << -1ll;
        QTest::newRow("65535 bytes, length -1") << QByteArray(65535, 'k') << -1ll;
    }

    // A refused text is reported and leaves the key alone.
    void fileKey()
    {
        QFETCH(QByteArray, text);
        QFETCH(qint64, key);
        uint32_t result = 0x12345678;
        StderrCapture capture;
        QCOMPARE(File_Key(text.isNull() ? nullptr : text.constData(), &result), key < 0 ? 1u : 0u);
        QCOMPARE(capture.text(), key < 0 ? Prefix + "Unable to allocate memory\n" : "");
        QCOMPARE(QString::number(result, 16), QString::number(key < 0 ? 0x12345678 : key, 16));
    }

    // Names split at their first dots; index offsets lead seek() to each key's latest
    // record; a refused open leaves nothing of the file read before; a pipe named like a
    // data file is refused at once.
    void reader()
    {
        const KVDMeasureFile::Name name = KVDMeasureFile::splitName("/r.v2/x.y/cov.al.-3.kvd");
        QCOMPARE(name.key() + '|' + name.user, "cov-3|al");
        QCOMPARE(KVDMeasureFile::splitName("a.b.c.4.kvd").key(), "a0"); // misread, as by all
        SampleRepository repo;
        QVERIFY2(repo.fill({1, 10, 5, 3, QDate(2024, 5, 1)}), qPrintable(repo.error()));
        const QString cov8 = repo.path("cov", "alice", 8);
        const Words index = wordsOf(cov8.chopped(3) + "idx");
        KVDMeasureFile reader;
        QVERIFY(index.size() > 4 && reader.open(cov8, 8));
        for (int e = 0; e < index.size(); e += 2) {
            const quint32* record = reader.seek(index[e + 1]) ? reader.next() : nullptr;
            QVERIFY2(record && reader.offset() == index[e + 1], "an index offset is not a record");
            QCOMPARE(KVDMeasureFile::key(record), index[e]);
            QCOMPARE(KVDMeasureFile::fieldTotal(record, 8), record[17]);
            QCOMPARE(KVDMeasureFile::value(record, 7), record[16]);
        }
        QVERIFY2(reader.seek(0) && reader.next() && !reader.offset(), "no record at 0");
        QVERIFY2(reader.seek(reader.size()) && !reader.next(), "a record past the end");
        QVERIFY2(!reader.seek(-1) && reader.recordCount() == 50, "a negative offset is taken");
        QString error;
        QVERIFY(!reader.open(cov8, 10000, &error) && error.contains("10000"));
        QVERIFY2(!reader.isOpen() && !reader.fieldCount() && !reader.size() &&
                     !reader.recordCount() && reader.offset() == -1 && !reader.next(),
                 "the file read before still shows");
        const QString fifo = repo.path("cov", "bob", 4);
        QVERIFY(mkfifo(QFile::encodeName(fifo).constData(), 0600) == 0);
        QVERIFY2(!reader.open(fifo, 4, &error) && error.contains(fifo), qPrintable(error));
    }

    void sample_data()
    {
        QTest::addColumn<Sample>("row");
        const Options one{1, 1, 1, 1, QDate(2024, 1, 1)};
        QTest::newRow("many users") << Sample{{14, 20, 50, 77, QDate(2030, 6, 15)}, "user14"};
        QTest::newRow("36500 days") << Sample{{1, 36500, 1, 5, QDate(2099, 12, 31)}, "alice"};
        QTest::newRow("10000 a day") << Sample{{1, 1, 10000, 2, QDate(2024, 2, 29)}, "alice"};
        QTest::newRow("from 1970-01-01") << Sample{{1, 5, 2, 9, QDate(1970, 1, 5)}, "alice"};
        QTest::newRow("to the last 32-bit day") << Sample{{2, 1, 1, 9, QDate(2106, 2, 6)}, "bob"};
        QTest::newRow("before 1970") << Sample{{1, 6, 1, 9, QDate(1970, 1, 5)}, "32-bit dates"};
        QTest::newRow("past 2106-02-06") << Sample{{1, 1, 1, 9, QDate(2106, 2, 7)}, "32-bit dates"};
        QTest::newRow("1001 users") << Sample{{1001, 1, 1, 1, {}}, "users must be from 1 to 1000"};
        QTest::newRow("no day") << Sample{{1, 0, 1, 1, {}}, "days must be from 1 to 36500"};
        QTest::newRow("10001 a day") << Sample{{1, 1, 10001, 1, {}}, "day must be from 1 to 10000"};
        QTest::newRow("4-field file a directory") << Sample{one, "Can't create", "cov.alice.4.kvd"};
        QTest::newRow("8-field file a directory") << Sample{one, "Can't create", "cov.alice.8.kvd"};
        QTest::newRow("index a directory") << Sample{one, "Can't write", "cov.alice.4.idx"};
        QTest::newRow("full disk") << Sample{one, "Can't write", "cov.alice.4.kvd>/dev/full"};
    }

    // Every pair of a sample repository holds the records asked for, in date order within
    // the days asked for, with the totals and index of the store's rule.
    void sample()
    {
        QFETCH(Sample, row);
        const Options& o = row.options;
        SampleRepository repo;
        const QString block = repo.root() + '/' + row.blocker.section('>', 0, 0);
        if (!row.blocker.isEmpty())
            QVERIFY(row.blocker.contains('>') ? QFile::link(row.blocker.section('>', 1), block)
                                              : QDir().mkpath(block));
        QStringList files;
        QString error;
        const bool made = KVDSampleWriter::writeRepository(repo.root(), o, &files, nullptr, &error);
        const bool refused = row.outcome.contains(' ');
        QVERIFY2(made != refused && error.contains(refused ? row.outcome : ""), qPrintable(error));
        QCOMPARE(files.size(), made ? 3 * o.users : 0);
        QCOMPARE(files.value(files.size() - 1), made ? repo.path("tests", row.outcome, 2) : "");
        const qint64 first = QDate(1970, 1, 1).daysTo(o.end.addDays(1 - o.days)) * 86400;
        for (const QString& file : std::as_const(files)) {
            const int n = KVDMeasureFile::splitName(file).fieldCount;
            const Words words = wordsOf(file);
            QCOMPARE(words.size(), qsizetype(o.days) * o.perDay * (2 * n + 2));
            QCOMPARE(checkPair(file, n), QString());
            for (qsizetype at = 0, last = first; at < words.size();
                 last = words[at], at += 2 * n + 2)
                QVERIFY2(words[at] >= last && words[at] < first + 86400LL * o.days,
                         "a date is out of order or out of the days asked for");
        }
    }

    // The writer refuses a record of the wrong size and a name that would make a path. Its
    // totals wrap past 2^32; keys 1 and 0x0E8B2F52 share a slot of its cache of recent keys.
    void writer()
    {
        SampleRepository repo;
        QList<KVDSampleWriter::Record> records;
        for (quint32 r = 0; r < 7; ++r)
            records << KVDSampleWriter::Record{2000 - r,
                                               QList<quint32>{5, 1, 0x0E8B2F52}[r % 3],
                                               {0xABCD ^ (r * 2654435761u), 0xF0000000u}};
        QVERIFY(repo.writePair("cov", "alice", 2, records));
        QCOMPARE(checkPair(repo.path("cov", "alice", 2), 2), QString());
        QVERIFY(!repo.writePair("m", "u", 2, {{1, 1, {5}}}) &&
                repo.error().contains("of 1 values"));
        QVERIFY(!repo.writePair("m", "a/b", 1, {{1, 1, {5}}}) && repo.error().contains("hold \"/"));
    }

    // Writers that a lock left behind holds all wait until it goes, then race for the pair:
    // whatever the interleaving, one record and one index entry.
    void racingWriters()
    {
        SampleRepository repo;
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(repo.root()));
        for (int round = 0; round < 6; ++round) {
            const QByteArray user = "r" + QByteArray::number(round);
            const QString data = repo.path("cov", user, 2), lock = data.chopped(3) + "lck";
            QVERIFY(QFile(lock).open(QIODevice::WriteOnly));
            QList<pid_t> writers;
            for (int i = 0; i < 8; ++i) {
                if ((writers << fork()).last() == 0) {
                    alarm(60);                            // no writer outlives a failed test
                    dup2(open("/dev/null", O_WRONLY), 2); // the losers' messages are expected
                    const uint32_t values[2] = {uint32_t(i), 7};
                    _exit(int(Write_Measure("cov", user.constData(), 100 + i, 0, 2, values)));
                }
            }
            QThread::msleep(round ? 100 : 1000);
            int status = 0, written = 0;
            const bool waited = waitpid(-1, &status, WNOHANG) == 0 && !QFile::exists(data);
            QVERIFY(QFile::remove(lock)); // they all go for the pair now
            QVERIFY2(waited, "a writer did not wait for the lock left behind");
            for (pid_t pid : std::as_const(writers))
                written += waitpid(pid, &status, 0) == pid && status == 0;
            QCOMPARE(written, 1);
            QCOMPARE(snapshot(repo.root()).size(), 2 * round + 2); // no lock left
            QCOMPARE(wordsOf(data).size(), 6);
            QCOMPARE(wordsOf(data.chopped(3) + "idx"), (Words{wordsOf(data).value(1), 0}));
        }
    }

    void commands_data()
    {
        QTest::addColumn<Command>("c");
        for (const QString c : {"sample", "write", "key", "dump"})
            command(qPrintable(c + " usage"), "kvd " + c + " -h", 0,
                    "Usage: kvd " + c + " (.|\n)*");
        command("key", "kvd key abcd", 0, "0xaca0a4b8\n");
        command("write, bad key", "kvd write c u k1 0 5", 2, "", "KEY is not a 32-bit number");
        command("write, slash in user", "kvd write c u/v 1 0 5", 2, "", "cannot hold");
        command("write, bad date", "kvd write c u 1 soon 5", 2, "", "DATE is neither");
        command("write, 1970-01-01", "kvd write c u 1 1970-01-01 5", 2, "", "DATE is neither");
        command(
            "write, first and last 32-bit seconds",
            "kvd write c u 2 2106-02-07T06:28:15 5 && kvd write c v 3 1970-01-01T00:00:01 6 && "
            "kvd dump c.u.1.kvd && kvd dump c.v.1.kvd",
            0,
            "0 0 2106-02-07T06:28:15Z 0x00000002 5/5\n0 0 1970-01-01T00:00:01Z 0x00000003 6/6\n");
        command("write a day",
                "kvd write c u 42 2024-03-01 3 4 && kvd dump c.u.2.kvd && kvd dump c.u.2.idx", 0,
                "0 0 2024-03-01T00:00:00Z 0x0000002a 3/3 4/4\n0 0x0000002a 0\n");
        command("write, dot in user", "kvd write c u.v 1 0 5", 0, "", "warning");
        command(
            "write, UTC offsets and Z",
            "kvd write c u 1 2026-03-29T01:30:00+02:00 5 && "
            "kvd write c v 2 2024-12-31T22:00:00-05:30 6 && "
            "kvd write c w 3 2024-02-29T12:00:00Z 7 && for f in c.?.1.kvd; do kvd dump $f; done",
            0,
            "0 0 2026-03-28T23:30:00Z 0x00000001 5/5\n0 0 2025-01-01T03:30:00Z 0x00000002 6/6\n"
            "0 0 2024-02-29T12:00:00Z 0x00000003 7/7\n");
        command("write, offset past the last 32-bit second",
                "kvd write c u 1 2106-02-07T06:28:15-00:01 5", 2, "", "2106-02-07T06:28:15Z:");
        // The store would read any of them as "now".
        command("write, 0 seconds spelled otherwise",
                "for d in 00 0x0 1970-01-01T00:00:00Z 1970-01-01T02:00:00+02:00; do "
                "kvd write c u 1 $d 5; echo $?; done; ls",
                0, "2\n2\n2\n2\n", "0 for now");
        command("write usage, later writes fail", "kvd write --help", 0,
                "Usage: kvd write (.|\n)*Only the first write of a pair succeeds(.|\n)*"
                "Unable to read DataBase(.|\n)*");
        command("dump, no file", "kvd dump c.u.4.kvd", 1, "", "Can't open file: c.u.4.kvd");
        command("dump, no count", "kvd dump $D/nodots.kvd", 2, "", "give it with --fields");
        command("dump, pipe as data file", "mkfifo c.u.4.kvd && kvd dump c.u.4.kvd", 1, "",
                "c.u.4.kvd is a pipe, not a regular file");
        command("render, pipe as definitions",
                "mkfifo b && kvd render --root . --builtin b -o o.png", 1, "",
                "b is a pipe, not a regular file");
        command("render, wider than the drawing limit",
                "kvd sample . --days 2 >/dev/null && "
                "kvd render --root . --size 4249x200 -o a.png 2>&1 | grep -c 'drawing limit'; "
                "kvd render --root . --size 4250x200 -o b.png",
                0, "0\n", "the plot reaches x = 4000, the chart's drawing limit");
        command("no toolkit notice without a runtime directory",
                "unset XDG_RUNTIME_DIR; kvd key abcd 2>&1 && "
                "QT_QPA_PLATFORM=offscreen kavendi-studio --screenshot s.png 2>&1",
                0, "0xaca0a4b8\nscreenshot s.png\n");
        command("the host, without a window system, opens a viewer and saves its picture",
                "kvd sample . --days 2 >/dev/null && "
                "QT_QPA_PLATFORM=offscreen kavendi-studio --open --screenshot s.png 2>/dev/null",
                0, "screenshot s.png\n");
        // kvd, the store and the host speak the user's language; Qt's own texts included.
        const QString french = "export LANG=fr_FR.UTF-8 LC_ALL= LANGUAGE=; ";
        command("in French, kvd", french + "kvd dump", 2, "", "kvd dump : attend un FICHIER");
        command("in French, the store", french + "kvd write c u 1 0 5 && kvd write c u 1 0 5", 1,
                "", "Quillon - Kavendi : Impossible de lire le fichier de données\n");
        command("in French, the host", french + "QT_QPA_PLATFORM=offscreen kavendi-studio --help",
                0, "(.|\n)*\nOptions :\n(.|\n)*Ouvre un visualiseur au démarrage\\.\n(.|\n)*");
        command("dump, 0 fields", "kvd dump --fields 0 $D/nodots.kvd", 0, dumped(0, 20));
        command("dump, 10000 fields", "kvd dump --fields 10000 $D/nodots.kvd", 2, "", "0 to 9999");
        command("dump, 9999 fields", "kvd dump --fields 9999 $D/nodots.kvd", 0, "", "160 bytes");
        command("dump, partial record", "kvd dump $D/cov.trunc.4.kvd", 0, dumped(4, 3), "20 bytes");
        command("dump, partial word", "kvd dump $D/tests.odd.2.kvd", 0, dumped(2, 1), "1 bytes");
        command("sample, no user", "kvd sample . --users 0", 2, "", "--users takes 1 to 1000");
        command("sample, 1000 users", "kvd sample . --users 1000 --days 1 --per-day 1", 0,
                "3000 records in 3000 measure files under .\n");
        const QString sample = TestEnv::contents(TestEnv::dataFile("measure/sample.dump"));
        command("sample, then dump",
                "kvd sample . --users 2 --days 5 --per-day 2 --seed 7 --end 2024-02-29 && "
                "for f in *.bob.*; do kvd dump $f; done",
                0, QRegularExpression::escape(sample));
    }

    // kvd's store commands: output, messages on standard error and exit status.
    void commands()
    {
        QFETCH(Command, c);
        const auto& [script, status, out, err] = c;
        SampleRepository repo;
        QProcess shell; // a kvd that hangs is killed with the shell
        shell.setWorkingDirectory(repo.root());
        const QString setUp = QString("export PATH='%1':$PATH D='%2' ZANTH_KVD_ROOT=.; ")
                                  .arg(TestEnv::built("bin"), TestEnv::dataFile("measure"));
        shell.start("timeout", {"-s", "KILL", "150", "sh", "-c", setUp + script});
        QCOMPARE(shell.waitForFinished(180000) ? shell.exitCode() : -1, status);
        const QString shown = shell.readAllStandardOutput(), said = shell.readAllStandardError();
        QVERIFY2(QRegularExpression("\\A(?:" + out + ")\\z").match(shown).hasMatch(),
                 qPrintable(shown));
        QVERIFY2(err.isNull() ? !said.contains("kvd") : said.contains(err), qPrintable(said));
    }
};

QTEST_GUILESS_MAIN(TstStore)
#include "tst_store.moc"
