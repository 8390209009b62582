#include "kvdsamplewriter.h"
#include "kvdmeasurefile.h"
#include "kvdrandom.h"
#include "kvdstore.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

constexpr size_t FlushWords = 1 << 18;
constexpr quint64 MaxDataBytes = quint64(1) << 32; // index offsets are 32-bit

const char* const UserNames[] = {"alice", "bob",   "carol", "dave", "erin",    "frank",
                                 "grace", "heidi", "ivan",  "judy", "mallory", "oscar"};

const char* const TestFiles[] = {
    "tests/unit/test_parser.c",         "tests/unit/test_lexer.c",
    "tests/unit/test_symbols.c",        "tests/unit/test_eval.c",
    "tests/unit/test_strings.c",        "tests/unit/test_hash.c",
    "tests/unit/test_dates.c",          "tests/unit/test_units.c",
    "tests/unit/test_export.c",         "tests/integration/test_cli.c",
    "tests/integration/test_config.c",  "tests/integration/test_io.c",
    "tests/integration/test_network.c", "tests/regress/test_bug_1042.c",
    "tests/regress/test_bug_1177.c",    "tests/perf/test_alloc.c"};
constexpr int TestFileCount = int(sizeof TestFiles / sizeof TestFiles[0]);

// One test file of a user's project: when it appears and how the code it exercises and
// its coverage of that code grow over the following days.
struct Source
{
    quint32 key = 0;
    int firstDay = 0;
    double statements = 0; // statements reached when the file appears
    double branchesPerStatement = 0;
    double statementsPerFunction = 0;
    double ratioStart = 0;
    double ratioEnd = 0;
    double casesStart = 0;
    double casesGrowth = 0;
};

// Days since 1970-01-01 of date.
qint64 epochDay(const QDate& date)
{
    return date.toJulianDay() - QDate(1970, 1, 1).toJulianDay();
}

quint32 count(double x)
{
    return x <= 0 ? 0u : quint32(std::lround(x));
}

} // namespace

KVDSampleWriter::~KVDSampleWriter()
{
    if (m_data)
        std::fclose(m_data);
}

void KVDSampleWriter::fail(const QString& message)
{
    if (m_error.isEmpty())
        m_error = message;
}

bool KVDSampleWriter::create(const QString& root, const QString& measure, const QString& user,
                             int fieldCount, QString* error)
{
    if (m_data)
        std::fclose(m_data);
    m_data = nullptr;
    m_error.clear();
    m_out.clear();
    m_totals.clear();
    m_index.clear();
    m_latest.clear();
    m_slots.clear();
    std::fill(std::begin(m_recent), std::end(m_recent), Recent());
    m_offset = 0;
    m_recordCount = 0;
    if (!KVDMeasureFile::checkFieldCount(fieldCount, error))
        return false;
    if (measure.contains(QLatin1Char('/')) || user.contains(QLatin1Char('/'))) {
        if (error)
            *error = QCoreApplication::translate(
                         "KVDSampleWriter", "A measure or user name cannot hold \"/\": %1, %2\n")
                         .arg(measure, user);
        return false;
    }
    m_fieldCount = fieldCount;
    m_recordWords = KVDMeasureFile::recordWords(fieldCount);
    m_dataPath = KVDMeasureFile::path(root, measure, user, fieldCount, ".kvd");
    m_indexPath = KVDMeasureFile::path(root, measure, user, fieldCount, ".idx");
    // An index left from an earlier pair must not outlive the data it described.
    QFile::remove(m_indexPath);
    m_data = std::fopen(QFile::encodeName(m_dataPath).constData(), "wb");
    if (!m_data) {
        if (error)
            *error = QCoreApplication::translate("KVDSampleWriter", "Can't create file: %1\n",
                                                 "%1 is a file name")
                         .arg(m_dataPath);
        return false;
    }
    std::setvbuf(m_data, nullptr, _IONBF, 0);
    m_out.resize(FlushWords + size_t(m_recordWords));
    m_used = 0;
    m_totals.assign(size_t(fieldCount), 0);
    return true;
}

bool KVDSampleWriter::append(quint32 date, quint32 key, const quint32* values)
{
    if (!m_data || !m_error.isEmpty())
        return false;
    const quint64 recordBytes = 4 * quint64(m_recordWords);
    if (m_offset + recordBytes > MaxDataBytes) {
        fail(QCoreApplication::translate("KVDSampleWriter",
                                         "%1 would outgrow 4 GiB, the most its index can address\n",
                                         "%1 is a file name")
                 .arg(m_dataPath));
        return false;
    }

    Recent& recent = m_recent[(key * 0x9E3779B1u) >> (32 - RecentBits)];
    int slot = recent.slot;
    if (slot < 0 || recent.key != key) {
        const auto found = m_slots.constFind(key);
        if (found == m_slots.cend()) {
            slot = int(m_index.size() / 2);
            m_slots.insert(key, slot);
            m_index.push_back(key);
            m_index.push_back(0);
            m_latest.resize(m_latest.size() + size_t(m_fieldCount), 0);
        } else {
            slot = *found;
        }
        recent = Recent{key, slot};
    }
    m_index[2 * size_t(slot) + 1] = quint32(m_offset);

    // Total of a field = sum over keys of each key's latest value: the record's own value
    // replaces the previous one of its key (none for a new key, which counts as 0).
    const int fields = m_fieldCount;
    quint32* __restrict latest = m_latest.data() + size_t(slot) * size_t(fields);
    quint32* __restrict totals = m_totals.data();
    quint32* __restrict out = m_out.data() + m_used;
    out[0] = date;
    out[1] = key;
    for (int k = 0; k < fields; ++k) {
        const quint32 value = values[k];
        const quint32 total = totals[k] + value - latest[k];
        totals[k] = total;
        latest[k] = value;
        out[2 + 2 * k] = value;
        out[3 + 2 * k] = total;
    }
    m_used += size_t(m_recordWords);
    m_offset += recordBytes;
    ++m_recordCount;
    return m_used < FlushWords || flush();
}

bool KVDSampleWriter::flush()
{
    if (m_used && std::fwrite(m_out.data(), 4, m_used, m_data) != m_used)
        fail(QCoreApplication::translate("KVDSampleWriter", "Can't write file: %1\n",
                                         "%1 is a file name")
                 .arg(m_dataPath));
    m_used = 0;
    return m_error.isEmpty();
}

bool KVDSampleWriter::finish(QString* error)
{
    if (m_data) {
        flush();
        if (std::fclose(m_data) != 0)
            fail(QCoreApplication::translate("KVDSampleWriter", "Can't write file: %1\n",
                                             "%1 is a file name")
                     .arg(m_dataPath));
        m_data = nullptr;
        if (m_error.isEmpty()) {
            std::FILE* index = std::fopen(QFile::encodeName(m_indexPath).constData(), "wb");
            const bool written =
                index && (m_index.empty() ||
                          std::fwrite(m_index.data(), 4, m_index.size(), index) == m_index.size());
            if (!index || std::fclose(index) != 0 || !written)
                fail(QCoreApplication::translate("KVDSampleWriter", "Can't write file: %1\n",
                                                 "%1 is a file name")
                         .arg(m_indexPath));
        }
    } else {
        fail(QCoreApplication::translate("KVDSampleWriter", "No measure file is being written\n"));
    }
    if (!m_error.isEmpty() && error)
        *error = m_error;
    return m_error.isEmpty();
}

bool KVDSampleWriter::writePair(const QString& root, const QString& measure, const QString& user,
                                int fieldCount, const QList<Record>& records, QString* error)
{
    KVDSampleWriter writer;
    if (!writer.create(root, measure, user, fieldCount, error))
        return false;
    for (const Record& record : records) {
        if (record.values.size() != fieldCount) {
            if (error)
                *error = QCoreApplication::translate(
                             "KVDSampleWriter",
                             "A record of %1 values cannot go to a measure of %2 values\n")
                             .arg(record.values.size())
                             .arg(fieldCount);
            return false;
        }
        if (!writer.append(record.date, record.key, record.values.constData()))
            break;
    }
    return writer.finish(error);
}

QStringList KVDSampleWriter::userNames(int count)
{
    QStringList names;
    const int known = int(sizeof UserNames / sizeof UserNames[0]);
    for (int i = 0; i < count; ++i)
        names << (i < known ? QString::fromLatin1(UserNames[i])
                            : QStringLiteral("user%1").arg(i + 1));
    return names;
}

bool KVDSampleWriter::writeRepository(const QString& root, const Options& options,
                                      QStringList* files, qint64* records, QString* error)
{
    auto refuse = [error](const QString& message) {
        if (error)
            *error = message;
        return false;
    };
    if (options.users < 1 || options.users > 1000)
        return refuse(QCoreApplication::translate(
                          "KVDSampleWriter", "The number of users must be from 1 to 1000, not %1\n")
                          .arg(options.users));
    if (options.days < 1 || options.days > 36500)
        return refuse(QCoreApplication::translate(
                          "KVDSampleWriter", "The number of days must be from 1 to 36500, not %1\n")
                          .arg(options.days));
    if (options.perDay < 1 || options.perDay > 10000)
        return refuse(
            QCoreApplication::translate(
                "KVDSampleWriter", "The number of records a day must be from 1 to 10000, not %1\n")
                .arg(options.perDay));
    const QDate end = options.end.isNull() ? QDateTime::currentDateTimeUtc().date() : options.end;
    const qint64 lastDay = epochDay(end);
    const qint64 firstDay = lastDay - options.days + 1;
    // Dates are 32-bit seconds since 1970: the whole range must fit.
    if (!end.isValid() || firstDay < 0 || (lastDay + 1) * 86400 > qint64(0xFFFFFFFFu))
        return refuse(QCoreApplication::translate(
                          "KVDSampleWriter",
                          "Records from %1 to %2 do not fit in 32-bit dates (1970 to 2106)\n")
                          .arg(end.addDays(1 - options.days).toString(Qt::ISODate),
                               end.toString(Qt::ISODate)));
    if (!QDir().mkpath(root))
        return refuse(QCoreApplication::translate("KVDSampleWriter", "Can't create directory: %1\n",
                                                  "%1 is a directory")
                          .arg(root));

    if (files)
        files->clear();
    qint64 written = 0;
    const QStringList users = userNames(options.users);
    for (int u = 0; u < users.size(); ++u) {
        KVDRandom random(quint64(options.seed) * 0x100000001B3ull + quint64(u) * 0x9E3779B9ull + 1);

        // The user's project: a handful of test files, three from the start and the others
        // added along the way, each exercising more code and covering more of it over time.
        int order[TestFileCount];
        for (int i = 0; i < TestFileCount; ++i)
            order[i] = i;
        for (int i = TestFileCount - 1; i > 0; --i)
            std::swap(order[i], order[random.below(i + 1)]);
        std::vector<Source> sources(size_t(5 + random.below(6)));
        for (size_t i = 0; i < sources.size(); ++i) {
            Source& s = sources[i];
            File_Key(TestFiles[order[i]], &s.key);
            s.firstDay = i < 3 ? 0 : random.below(std::max(1, options.days * 7 / 10));
            s.statements = 150 + random.below(900);
            s.branchesPerStatement = 0.25 + 0.1 * random.uniform();
            s.statementsPerFunction = 12 + random.below(8);
            s.ratioStart = 0.25 + 0.25 * random.uniform();
            s.ratioEnd = std::min(0.97, s.ratioStart + 0.3 + 0.2 * random.uniform());
            s.casesStart = 5 + random.below(40);
            s.casesGrowth = 0.5 + random.uniform();
        }
        std::sort(sources.begin(), sources.end(),
                  [](const Source& a, const Source& b) { return a.firstDay < b.firstDay; });

        // Every run of a test file records its coverage twice (covered counts alone, and
        // covered counts with the totals) and its test results.
        KVDSampleWriter cov4, cov8, tests;
        if (!cov4.create(root, QStringLiteral("cov"), users[u], 4, error) ||
            !cov8.create(root, QStringLiteral("cov"), users[u], 8, error) ||
            !tests.create(root, QStringLiteral("tests"), users[u], 2, error))
            return false;

        std::vector<quint32> times(size_t(options.perDay));
        for (int day = 0; day < options.days; ++day) {
            size_t available = 0;
            while (available < sources.size() && sources[available].firstDay <= day)
                ++available;
            // Runs happen in working hours, 08:00 to 18:00 UTC.
            const quint32 dayStart = quint32((firstDay + day) * 86400 + 8 * 3600);
            for (quint32& t : times)
                t = dayStart + quint32(random.below(10 * 3600));
            std::sort(times.begin(), times.end());
            for (quint32 date : times) {
                const Source& s = sources[size_t(random.below(int(available)))];
                const double q = double(day - s.firstDay) / std::max(1, options.days - s.firstDay);
                const double rise = (1 - std::exp(-3 * q)) / (1 - std::exp(-3.0));
                const double ratio = s.ratioStart + (s.ratioEnd - s.ratioStart) * rise;
                const double noise = 1 + 0.02 * (random.uniform() - 0.5);

                const double statements = s.statements * (1 + 0.25 * q);
                const double branches = statements * s.branchesPerStatement;
                const double functions = statements / s.statementsPerFunction;
                const double conditions = branches * 1.4;
                quint32 values[8];
                values[4] = count(statements);
                values[5] = count(branches);
                values[6] = count(functions);
                values[7] = count(conditions);
                for (int k = 0; k < 4; ++k) {
                    // Functions are reached more easily than branches and conditions.
                    const double reach = k == 2   ? std::min(1.0, ratio * 1.15)
                                         : k == 0 ? ratio
                                                  : ratio * 0.85;
                    values[k] = std::min(values[4 + k], count(values[4 + k] * reach * noise));
                }

                const quint32 cases = count(s.casesStart * (1 + s.casesGrowth * q));
                const double chance = random.uniform();
                quint32 failed = chance < 0.7    ? 0
                                 : chance < 0.95 ? 1 + random.below(3)
                                                 : 4 + random.below(8);
                failed = std::min(failed, cases);
                const quint32 results[2] = {cases - failed, failed};

                if (!cov4.append(date, s.key, values) || !cov8.append(date, s.key, values) ||
                    !tests.append(date, s.key, results))
                    break;
            }
        }
        for (KVDSampleWriter* writer : {&cov4, &cov8, &tests}) {
            if (!writer->finish(error))
                return false;
            written += writer->recordCount();
            if (files)
                files->append(writer->dataPath());
        }
    }
    if (records)
        *records = written;
    return true;
}
