#include "kvdmeasurefile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
// Reads are as fast from a buffer this size as from a larger one, and it stays in the
// cache; each megabyte of fresh buffer would cost 256 page faults at every open.
constexpr size_t BufferBytes = 64 * 1024;
} // namespace

KVDMeasureFile::Name KVDMeasureFile::splitName(const QString& fileName)
{
    // Only the last path component is a file name; a directory may hold dots too.
    const QString base = fileName.mid(fileName.lastIndexOf(QLatin1Char('/')) + 1);
    Name name;
    name.measure = base.section(QLatin1Char('.'), 0, 0);
    name.user = base.section(QLatin1Char('.'), 1, 1);
    name.fieldCount = base.section(QLatin1Char('.'), 2, 2).toInt(&name.numeric);
    return name;
}

QString KVDMeasureFile::path(const QString& root, const QString& measure, const QString& user,
                             int fieldCount, const char* extension)
{
    return root + QDir::separator() + measure + QLatin1Char('.') + user + QLatin1Char('.') +
           QString::number(fieldCount) + QLatin1String(extension);
}

bool KVDMeasureFile::checkFieldCount(int fieldCount, QString* error)
{
    if (fieldCount >= 0 && fieldCount <= MaxFields)
        return true;
    if (error)
        *error = QCoreApplication::translate("KVDMeasureFile",
                                             "Invalid number of measure values: %1 (0 to %2)\n")
                     .arg(fieldCount)
                     .arg(MaxFields);
    return false;
}

KVDMeasureFile::~KVDMeasureFile()
{
    close();
}

bool KVDMeasureFile::open(const QString& path, int fieldCount, QString* error, Access access)
{
    close();
    if (!checkFieldCount(fieldCount, error))
        return false;
    // Opened without blocking so that a pipe or device named like a data file cannot hang
    // the reader; only regular files are read (a directory would open too).
    const int mode = access == Access::ReadWrite ? O_RDWR : O_RDONLY;
    const int fd = ::open(QFile::encodeName(path).constData(), mode | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        if (error)
            *error = QCoreApplication::translate("KVDMeasureFile", "Can't open file: %1\n",
                                                 "%1 is a file name")
                         .arg(path);
        return false;
    }
    struct stat info;
    if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode) ||
        !(m_file = fdopen(fd, access == Access::ReadWrite ? "r+b" : "rb"))) {
        ::close(fd);
        if (error)
            *error = QCoreApplication::translate("KVDMeasureFile", "Not a measure data file: %1\n",
                                                 "%1 is a file name")
                         .arg(path);
        return false;
    }
    // Reads go straight into the record buffer; stdio buffering would only copy twice.
    std::setvbuf(m_file, nullptr, _IONBF, 0);
    m_fieldCount = fieldCount;
    m_recordWords = recordWords(fieldCount);
    m_size = qint64(info.st_size);
    const size_t perBuffer = std::max<size_t>(1, BufferBytes / (4 * size_t(m_recordWords)));
    m_buffer.resize(perBuffer * size_t(m_recordWords));
    m_bufferOffset = 0;
    m_records = m_next = 0;
    m_offset = -1;
    return true;
}

void KVDMeasureFile::close()
{
    if (m_file)
        std::fclose(m_file);
    m_file = nullptr;
    m_buffer.clear();
    m_buffer.shrink_to_fit();
    m_fieldCount = m_recordWords = 0;
    m_size = 0;
    m_bufferOffset = 0;
    m_records = m_next = 0;
    m_offset = -1;
}

qint64 KVDMeasureFile::recordCount() const
{
    return m_recordWords ? m_size / (4 * qint64(m_recordWords)) : 0;
}

bool KVDMeasureFile::refill()
{
    if (!m_file)
        return false;
    m_bufferOffset += qint64(m_records) * 4 * m_recordWords;
    m_next = 0;
    const size_t words = std::fread(m_buffer.data(), 4, m_buffer.size(), m_file);
    // Words of a partial record at the end of the file are dropped here.
    m_records = words / size_t(m_recordWords);
    return m_records > 0;
}

qint64 KVDMeasureFile::readAt(qint64 first, quint32* words, qint64 count) const
{
    if (!m_file || first < 0 || count <= 0)
        return 0;
    const qint64 recordBytes = 4 * qint64(m_recordWords);
    const qint64 wanted = count * recordBytes;
    char* into = reinterpret_cast<char*>(words);
    qint64 got = 0;
    while (got < wanted) {
        const ssize_t n = pread(fileno(m_file), into + got, size_t(wanted - got),
                                off_t(first * recordBytes + got));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        got += n;
    }
    return got / recordBytes;
}

bool KVDMeasureFile::seek(qint64 byteOffset)
{
    if (!m_file || byteOffset < 0 || fseeko(m_file, byteOffset, SEEK_SET) != 0)
        return false;
    m_bufferOffset = byteOffset;
    m_records = m_next = 0;
    return true;
}
