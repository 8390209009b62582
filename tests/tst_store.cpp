#include "kvdsamplewriter.h"
#include "kvdstore.h"
#include "samplerepository.h"
#include "stderrcapture.h"
#include "testenv.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QProcess>
#include <QtTest>

#include <ctime>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

using Words = QList<quint32>;
Q_DECLARE_METATYPE(KVDSampleWriter::Options)

namespace {

const QByteArray UnableToRead = "Quillon - Kavendi: Unable to read DataBase file\n";

Words wordsOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    Words words(bytes.size() / 4);
    memcpy(words.data(), bytes.constData(), size_t(words.size()) * 4);
    return words;
}

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Every test that writes through the store names its own repository (null: none).
void useRoot(const QString& root)
{
    if (root.isNull())
        qunsetenv("ZANTH_KVD_ROOT");
    else
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(root));
}

// Checks a data file against its index with a computation of its own: every total is the
// sum, over keys, of each key's latest value; the index lists keys in order of first
// appearance with the offset of their latest record. Answers what is wrong, or nothing.
QString checkPair(const QString& dataPath, int fieldCount)
{
    const Words data = wordsOf(dataPath);
    const int recordWords = 2 * fieldCount + 2;
    if (data.isEmpty() || data.size() % recordWords)
        return QStringLiteral("%1 holds %2 words").arg(dataPath).arg(data.size());
    QHash<quint32, int> latest, entry; // key -> first word of its latest record, index entry
    Words index;
    for (int at = 0; at < data.size(); at += recordWords) {
        const quint32 key = data[at + 1];
        if (!entry.contains(key)) {
            entry[key] = int(index.size());
            index << key << 0;
        }
        latest[key] = at;
        index[entry[key] + 1] = quint32(at * 4);
        for (int k = 0; k < fieldCount; ++k) {
            quint32 sum = 0;
            for (int record : std::as_const(latest))
                sum += data[record + 2 + 2 * k];
            if (data[at + 3 + 2 * k] != sum)
                return QStringLiteral("word %1: total %2, sum of latest values %3")
                    .arg(at + 3 + 2 * k)
                    .arg(data[at + 3 + 2 * k])
                    .arg(sum);
        }
    }
    const QString indexPath = dataPath.chopped(4) + QStringLiteral(".idx");
    return wordsOf(indexPath) == index ? QString() : indexPath + " does not list latest records";
}

} // namespace

// The measure store as recording tools use it, and the pairs the sample writer makes.
class TstStore : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TestEnv::pin(); }

    void firstWrite_data()
    {
        QTest::addColumn<quint32>("key");
        QTest::addColumn<quint32>("date"); // 0: the time of writing
        QTest::addColumn<Words>("values");
        QTest::newRow("one field") << 7u << 1104537600u << Words{42};
        QTest::newRow("four fields") << 0x94949494u << 1700000000u << Words{812, 95, 40, 17};
        QTest::newRow("extreme words") << 0xFFFFFFFFu << 0xFFFFFFFFu << Words{0, 0xFFFFFFFF, 1};
        QTest::newRow("date zero means now") << 9u << 0u << Words{3};
        QTest::newRow("one second after 1970") << 9u << 1u << Words{3};
        Words many;
        for (quint32 i = 0; i < 9999; ++i)
            many << i * 2654435761u;
        QTest::newRow("9999 fields, the most allowed") << 3u << 1u << many;
    }

    // A first write creates the pair: one record whose totals are its values, and an index
    // entry pointing at offset 0.
    void firstWrite()
    {
        QFETCH(quint32, key);
        QFETCH(quint32, date);
        QFETCH(Words, values);
        SampleRepository repo;
        QVERIFY2(repo.isValid(), "a temporary directory is needed");
        useRoot(repo.root());
        const int n = int(values.size());

        const quint32 before = quint32(std::time(nullptr));
        StderrCapture capture;
        const unsigned int result = Write_Measure("cov", "alice", key, date, n, values.constData());
        const QByteArray messages = capture.text();
        const quint32 after = quint32(std::time(nullptr));
        QVERIFY2(result == 0, messages.constData());
        QVERIFY2(messages.isEmpty(), messages.constData());

        Words words = wordsOf(repo.path("cov", "alice", n));
        QVERIFY2(!words.isEmpty() && (date || (words[0] >= before && words[0] <= after)),
                 "date 0 should become the time of writing");
        Words expected{date ? date : words.value(0), key};
        for (quint32 v : values)
            expected << v << v;
        QVERIFY2(words == expected, "the record is not date, key, then each value twice");
        QVERIFY2(wordsOf(repo.path("cov", "alice", n, ".idx")) == (Words{key, 0}),
                 "the index is not the single entry (key, 0)");
        QVERIFY2(!QFile::exists(repo.path("cov", "alice", n, ".lck")), "the lock was left behind");
        QCOMPARE(QDir(repo.root()).entryList(QDir::Files).size(), 2);
    }

    void refusedWrite_data()
    {
        QTest::addColumn<bool>("withRoot");
        QTest::addColumn<int>("count");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("10000 fields") << true << 10000 << QByteArray("Too many measure values");
        QTest::newRow("negative count") << true << -1 << QByteArray("Unable to allocate memory");
        QTest::newRow("far negative")
            << true << -2000000000 << QByteArray("Unable to allocate memory");
        // Without a repository the write fails silently.
        QTest::newRow("repository unset") << false << 1 << QByteArray();
    }

    // Writes the store cannot take are refused before any file or lock is made.
    void refusedWrite()
    {
        QFETCH(bool, withRoot);
        QFETCH(int, count);
        QFETCH(QByteArray, message);
        SampleRepository repo;
        useRoot(withRoot ? repo.root() : QString());
        std::vector<uint32_t> values(size_t(std::max(count, 0)), 5);
        StderrCapture capture;
        QCOMPARE(Write_Measure("cov", "alice", 1, 1, count, values.data()), 1u);
        QCOMPARE(capture.text(),
                 message.isEmpty() ? message : "Quillon - Kavendi: " + message + "\n");
        QVERIFY2(QDir(repo.root()).isEmpty(), "a refused write left files");
    }

    void secondWriteRefused_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<quint32>("secondKey");
        QTest::addColumn<bool>("samplePair");
        QTest::newRow("same key, one field") << 1 << 5u << false;
        QTest::newRow("same key, four fields") << 4 << 5u << false;
        QTest::newRow("new key, one field") << 1 << 6u << false;
        QTest::newRow("key of a sample pair") << 4 << 5u << true;
        QTest::newRow("new key on a sample pair") << 4 << 0xABCDu << true;
    }

    // Once a pair's index exists, writing to it fails while positioning from the end of
    // the data file, and neither file changes.
    void secondWriteRefused()
    {
        QFETCH(int, count);
        QFETCH(quint32, secondKey);
        QFETCH(bool, samplePair);
        SampleRepository repo;
        useRoot(repo.root());
        Words values;
        for (int k = 0; k < count; ++k)
            values << quint32(10 * k + 1);
        if (samplePair) {
            QList<KVDSampleWriter::Record> records;
            for (quint32 r = 0; r < 6; ++r)
                records << KVDSampleWriter::Record{1000 + r, 5 + r % 3, values};
            QVERIFY2(repo.writePair("cov", "alice", count, records), qPrintable(repo.error()));
        } else {
            QCOMPARE(Write_Measure("cov", "alice", 5, 1000, count, values.constData()), 0u);
        }
        const QByteArray data = bytesOf(repo.path("cov", "alice", count));
        const QByteArray index = bytesOf(repo.path("cov", "alice", count, ".idx"));

        StderrCapture capture;
        const unsigned int result =
            Write_Measure("cov", "alice", secondKey, 2000, count, values.constData());
        QCOMPARE(capture.text(), UnableToRead);
        QCOMPARE(result, 1u);
        QVERIFY2(bytesOf(repo.path("cov", "alice", count)) == data, "the data file changed");
        QVERIFY2(bytesOf(repo.path("cov", "alice", count, ".idx")) == index, "the index changed");
        QVERIFY2(!QFile::exists(repo.path("cov", "alice", count, ".lck")),
                 "the lock must be released after a failed write");
    }

    void fileKey_data()
    {
        QTest::addColumn<QByteArray>("text"); // null: no text at all
        QTest::addColumn<bool>("refused");
        QTest::addColumn<quint32>("key");
        // Worked by hand: h starts at 4A4A4A4A; each group g gives h = (g ^ h) << 1.
        // "": one zero group: 4A4A4A4A << 1 = 94949494.
        QTest::newRow("empty") << QByteArray("") << false << 0x94949494u;
        // "abc\0": 61626300 ^ 4A4A4A4A = 2B28294A, << 1 = 56505294.
        QTest::newRow("three letters") << QByteArray("abc") << false << 0x56505294u;
        // "abcd": 61626364 ^ 4A4A4A4A = 2B28292E, << 1 = 5650525C; then the zero group:
        // 5650525C << 1 = ACA0A4B8.
        QTest::newRow("four letters") << QByteArray("abcd") << false << 0xACA0A4B8u;
        // "abcde": after abcd 5650525C; "e\0\0\0" = 65000000, ^ = 3350525C, << 1 = 66A0A4B8.
        QTest::newRow("five letters") << QByteArray("abcde") << false << 0x66A0A4B8u;
        // "a\xff\0\0" with signed bytes: (97 * 256 - 1) * 65536 = 60FF0000 (not 61FF0000);
        // ^ 4A4A4A4A = 2AB54A4A, << 1 = 556A9494.
        QTest::newRow("byte above 0x7f") << QByteArray("a\xff") << false << 0x556A9494u;
        // Four 0x80 bytes are -128 each: -128 * 01010101 = -80808080 = 7F7F7F80 in 32 bits;
        // ^ 4A4A4A4A = 353535CA, << 1 = 6A6A6B94; zero group: << 1 = D4D4D728.
        QTest::newRow("four bytes 0x80") << QByteArray("\x80\x80\x80\x80") << false << 0xD4D4D728u;
        // The length is a 16-bit quantity: 65540 bytes hash as their first 4, "abcd".
        QTest::newRow("length past 65535")
            << (QByteArray("abcd") + QByteArray(65536, 'x')) << false << 0xACA0A4B8u;
        // Only the last 32 groups leave a trace: 8190 of "kkkk", then "kkk\0", give 4DB24D64.
        QTest::newRow("32763 bytes, the longest before the size wraps")
            << QByteArray(32763, 'k') << false << 0x4DB24D64u;
        QTest::newRow("no text") << QByteArray() << true << 0x12345678u;
        QTest::newRow("32764 bytes, rounded size wraps")
            << QByteArray(32764, 'k') << true << 0x12345678u;
        QTest::newRow("32767 bytes") << QByteArray(32767, 'k') << true << 0x12345678u;
        QTest::newRow("40000 bytes, negative length")
            << QByteArray(40000, 'k') << true << 0x12345678u;
    }

    // A refused text is reported and leaves the key alone.
    void fileKey()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, refused);
        QFETCH(quint32, key);
        uint32_t result = 0x12345678;
        StderrCapture capture;
        QCOMPARE(File_Key(text.isNull() ? nullptr : text.constData(), &result), refused ? 1u : 0u);
        QCOMPARE(capture.text(),
                 refused ? QByteArray("Quillon - Kavendi: Unable to allocate memory\n") : "");
        QCOMPARE(QString::number(result, 16), QString::number(key, 16));
    }

    void storeFailures_data()
    {
        QTest::addColumn<int>("operation");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("create in a missing directory")
            << 0 << QByteArray("Unable to create KVD file");
        QTest::newRow("update without index") << 1 << QByteArray("Unable to open index file");
        QTest::newRow("totals of a missing file")
            << 2 << QByteArray("Unable to open DataBase file");
        QTest::newRow("append in a missing directory")
            << 3 << QByteArray("Unable to open DataBase file");
        QTest::newRow("totals past the last record")
            << 4 << QByteArray("Unable to read DataBase file");
    }

    // The building blocks report their own failures and answer 1.
    void storeFailures()
    {
        QFETCH(int, operation);
        QFETCH(QByteArray, message);
        SampleRepository repo;
        const QByteArray missing = QFile::encodeName(repo.root() + "/missing/cov.a.1.kvd");
        const QByteArray data = QFile::encodeName(repo.path("cov", "a", 1));
        const QByteArray index = QFile::encodeName(repo.path("cov", "a", 1, ".idx"));
        QVERIFY(repo.writePair("cov", "b", 1, {{1, 1, {4}}}));
        const QByteArray existing = QFile::encodeName(repo.path("cov", "b", 1));
        uint32_t values[2] = {4, 4};
        uint32_t offset = 0;
        StderrCapture capture;
        unsigned int result = 0;
        switch (operation) {
        case 0:
            result = Create_Data_Base(missing, missing + ".idx", 1, 1, 1, values);
            break;
        case 1:
            result = Update_Data_Base(data, index, 1, 1, 1, values);
            break;
        case 2:
            result = Seek_In_KVD(data, 16, 1, values, 0);
            break;
        case 3:
            result = Append_In_KVD(missing, 1, 1, 1, values, &offset);
            break;
        case 4:
            result = Seek_In_KVD(existing, 16, 1, values, 1);
            break;
        }
        QCOMPARE(capture.text(), "Quillon - Kavendi: " + message + "\n");
        QCOMPARE(result, 1u);
    }

    void writePairTotals_data()
    {
        QTest::addColumn<QList<KVDSampleWriter::Record>>("records");
        QTest::addColumn<Words>("totals");
        QTest::newRow("one record") << QList<KVDSampleWriter::Record>{{10, 1, {5}}} << Words{5};
        QTest::newRow("second key adds")
            << QList<KVDSampleWriter::Record>{{10, 1, {5}}, {11, 2, {7}}} << Words{5, 12};
        QTest::newRow("a key replaces its own value")
            << QList<KVDSampleWriter::Record>{{10, 1, {10}}, {11, 2, {5}}, {12, 1, {3}}}
            << Words{10, 15, 8};
        QTest::newRow("wraps at 2^32")
            << QList<KVDSampleWriter::Record>{{10, 1, {0xFFFFFFF0}}, {11, 2, {0x20}}}
            << Words{0xFFFFFFF0, 0x10};
        QTest::newRow("dates out of order are kept in order written")
            << QList<KVDSampleWriter::Record>{{50, 3, {1}}, {20, 4, {2}}, {30, 3, {0}}}
            << Words{1, 3, 2};
    }

    // Pairs written from explicit records carry the totals of the store's rule.
    void writePairTotals()
    {
        QFETCH(QList<KVDSampleWriter::Record>, records);
        QFETCH(Words, totals);
        SampleRepository repo;
        QVERIFY2(repo.writePair("m", "u", 1, records), qPrintable(repo.error()));
        const Words words = wordsOf(repo.path("m", "u", 1));
        QCOMPARE(words.size(), records.size() * 4);
        Words read;
        for (int r = 0; r < records.size(); ++r) {
            QCOMPARE(words[4 * r], records[r].date);
            read << words[4 * r + 3];
        }
        QCOMPARE(read, totals);
        const QString wrong = checkPair(repo.path("m", "u", 1), 1);
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
    }

    // The sample writer and the store lay out a first record identically.
    void writerMatchesStore()
    {
        SampleRepository repo;
        useRoot(repo.root());
        const Words values{3, 1, 4, 1, 5, 9};
        QCOMPARE(Write_Measure("cov", "store", 0xC0FFEE, 1234567, 6, values.constData()), 0u);
        QVERIFY(repo.writePair("cov", "writer", 6, {{1234567, 0xC0FFEE, values}}));
        QCOMPARE(bytesOf(repo.path("cov", "writer", 6)), bytesOf(repo.path("cov", "store", 6)));
        QCOMPARE(bytesOf(repo.path("cov", "writer", 6, ".idx")),
                 bytesOf(repo.path("cov", "store", 6, ".idx")));
    }

    void sampleRepository_data()
    {
        QTest::addColumn<KVDSampleWriter::Options>("options");
        QTest::newRow("defaults") << KVDSampleWriter::Options{3, 90, 4, 1, QDate(2024, 3, 31)};
        QTest::newRow("one day, one record")
            << KVDSampleWriter::Options{1, 1, 1, 9, QDate(1970, 1, 1)};
        QTest::newRow("many users, busy days")
            << KVDSampleWriter::Options{14, 20, 50, 77, QDate(2030, 6, 15)};
    }

    // Every pair of a sample repository holds the records asked for, dated within the
    // range, with the totals and index of the store's rule and figures that make sense.
    void sampleRepository()
    {
        QFETCH(KVDSampleWriter::Options, options);
        SampleRepository repo;
        QStringList files;
        QVERIFY2(repo.fill(options, &files), qPrintable(repo.error()));
        QCOMPARE(files.size(), 3 * options.users);
        const QDateTime first(options.end.addDays(1 - options.days), QTime(0, 0), Qt::UTC);
        const qint64 last = first.addDays(options.days).toSecsSinceEpoch();
        const qsizetype records = qsizetype(options.days) * options.perDay;
        for (const QString& user : KVDSampleWriter::userNames(options.users)) {
            for (const auto& [measure, n] : {std::pair{"cov", 4}, {"cov", 8}, {"tests", 2}}) {
                QCOMPARE(wordsOf(repo.path(measure, user, n)).size(), records * (2 * n + 2));
                const QString wrong = checkPair(repo.path(measure, user, n), n);
                QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
            }
            const Words cov4 = wordsOf(repo.path("cov", user, 4));
            const Words cov8 = wordsOf(repo.path("cov", user, 8));
            for (qsizetype r = 0; r < records; ++r) {
                const quint32* c8 = cov8.constData() + r * 18;
                QVERIFY2(c8[0] >= first.toSecsSinceEpoch() && c8[0] < last, "dated out of range");
                QVERIFY2(r == 0 || c8[0] >= c8[-18], "records are not in date order");
                for (int k = 0; k < 4; ++k) {
                    QVERIFY2(c8[2 + 2 * k] <= c8[10 + 2 * k], "more covered than there is");
                    QVERIFY2(c8[3 + 2 * k] <= c8[11 + 2 * k], "covered total above the total");
                    QCOMPARE(cov4[r * 10 + 2 + 2 * k], c8[2 + 2 * k]);
                }
            }
            if (options.days >= 20)
                QVERIFY2(cov8[(records - 1) * 18 + 3] > cov8[3], "coverage should grow");
        }
    }

    // The same options give the same bytes; another seed or end day gives others.
    void sampleDeterministic()
    {
        const KVDSampleWriter::Options options{2, 30, 3, 42, QDate(2025, 1, 10)};
        KVDSampleWriter::Options seed = options, end = options;
        seed.seed = 43;
        end.end = options.end.addDays(1);
        QList<QByteArray> made;
        for (const KVDSampleWriter::Options& o : {options, options, seed, end}) {
            SampleRepository repo;
            QVERIFY(repo.fill(o));
            made << bytesOf(repo.path("cov", "bob", 8));
        }
        QCOMPARE(made[0], made[1]);
        QVERIFY2(made[2] != made[0], "the seed changes nothing");
        QVERIFY2(made[3] != made[0], "the end day changes nothing");
    }

    // A lock left behind keeps a writer waiting until it goes.
    void staleLock()
    {
        SampleRepository repo;
        const QString lock = repo.path("cov", "alice", 2, ".lck");
        QFile stale(lock);
        QVERIFY(stale.open(QIODevice::WriteOnly));
        stale.close();
        QProcess writer;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("ZANTH_KVD_ROOT", repo.root());
        env.insert("XDG_RUNTIME_DIR", QDir::tempPath());
        writer.setProcessEnvironment(env);
        writer.start(TestEnv::built("bin/kvd"), {"write", "cov", "alice", "1", "0", "10", "20"});
        QVERIFY2(writer.waitForStarted(), "kvd did not start");
        QVERIFY2(!writer.waitForFinished(1500), "the writer did not wait for the lock");
        QVERIFY2(!QFile::exists(repo.path("cov", "alice", 2)), "written while locked");
        QVERIFY(QFile::remove(lock));
        QVERIFY2(writer.waitForFinished(30000), "the writer did not go on once the lock went");
        QCOMPARE(writer.exitCode(), 0);
        QCOMPARE(wordsOf(repo.path("cov", "alice", 2)).size(), 6);
        QVERIFY2(!QFile::exists(lock), "the writer left its lock");
    }

    void racingProcesses_data()
    {
        QTest::addColumn<bool>("sameKey");
        QTest::newRow("same key") << true;
        QTest::newRow("a key each") << false;
    }

    // The same race, many times over, with the writers released together: whatever the
    // interleaving, each new pair ends with one record and one index entry.
    void racingProcesses()
    {
        QFETCH(bool, sameKey);
        SampleRepository repo;
        useRoot(repo.root());
        const int rounds = 25;
        const int writers = 8;
        for (int round = 0; round < rounds; ++round) {
            int gate[2];
            QVERIFY(pipe(gate) == 0);
            std::vector<pid_t> children;
            const QByteArray user = "r" + QByteArray::number(round);
            for (int i = 0; i < writers; ++i) {
                const pid_t pid = fork();
                QVERIFY2(pid >= 0, "fork failed");
                if (pid == 0) {
                    close(gate[1]);
                    char c;
                    while (read(gate[0], &c, 1) > 0) {
                    }
                    // The losers' messages are expected; keep the log readable.
                    if (FILE* null = freopen("/dev/null", "w", stderr))
                        (void)null;
                    const uint32_t values[2] = {uint32_t(i), 7};
                    _exit(int(Write_Measure("cov", user.constData(), sameKey ? 1 : 100 + i, 0, 2,
                                            values)));
                }
                children.push_back(pid);
            }
            close(gate[0]);
            close(gate[1]); // every writer starts now
            int succeeded = 0, failed = 0;
            for (pid_t pid : children) {
                int status = 0;
                QVERIFY(waitpid(pid, &status, 0) == pid);
                QVERIFY2(WIFEXITED(status), "a writer died");
                WEXITSTATUS(status) == 0 ? ++succeeded : ++failed;
            }
            QCOMPARE(succeeded, 1);
            QCOMPARE(failed, writers - 1);
            const Words data = wordsOf(repo.path("cov", user, 2));
            QCOMPARE(data.size(), 6);
            QCOMPARE(wordsOf(repo.path("cov", user, 2, ".idx")), (Words{data[1], 0}));
            QVERIFY2(!QFile::exists(repo.path("cov", user, 2, ".lck")), "a lock was left behind");
        }
    }
};

QTEST_GUILESS_MAIN(TstStore)
#include "tst_store.moc"
