// Feeds the measure file reader a file name and file contents of the fuzzer's choosing:
// the input's first line is the name, the rest the bytes of the file. Whatever the name
// says, the reader must refuse or read whole records only, exactly as they are on disk.
#include "kvdmeasurefile.h"
#include "kvdstore.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <sys/mman.h>
#include <unistd.h>

namespace {

void require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "fuzz_measurefile: %s\n", what);
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const uint8_t* newline = static_cast<const uint8_t*>(std::memchr(data, '\n', size));
    const size_t nameLength = newline ? size_t(newline - data) : size;
    const QByteArray name(reinterpret_cast<const char*>(data), qsizetype(nameLength));
    const uint8_t* content = newline ? newline + 1 : data + size;
    const size_t contentSize = size_t(data + size - content);

    uint32_t key = 0;
    File_Key(name.constData(), &key);

    const KVDMeasureFile::Name parts = KVDMeasureFile::splitName(QString::fromLocal8Bit(name));
    const int count = parts.fieldCount;

    // The file lives in memory; the reader sees it through its /proc path.
    const int fd = memfd_create("measure", 0);
    if (fd < 0)
        return 0;
    if (contentSize && write(fd, content, contentSize) != ssize_t(contentSize)) {
        close(fd);
        return 0;
    }
    char path[64];
    std::snprintf(path, sizeof path, "/proc/self/fd/%d", fd);

    KVDMeasureFile reader;
    QString error;
    const bool opened = reader.open(QString::fromLatin1(path), count, &error);
    require(opened == (count >= 0 && count <= KVDMeasureFile::MaxFields),
            "a count was refused or accepted against the limits");
    require(opened || !error.isEmpty(), "a refusal without a message");
    if (opened) {
        const qint64 recordBytes = 4 * qint64(KVDMeasureFile::recordWords(count));
        require(reader.size() == qint64(contentSize), "the size is not the file's");
        require(reader.recordCount() == qint64(contentSize) / recordBytes,
                "the record count is not the whole records");
        qint64 read = 0;
        while (const quint32* record = reader.next()) {
            require(reader.offset() == read * recordBytes, "a record at the wrong offset");
            require(std::memcmp(record, content + read * recordBytes, size_t(recordBytes)) == 0,
                    "a record differs from the file");
            ++read;
        }
        require(read == reader.recordCount(), "not every whole record was read");

        // From any record boundary the rest of the file reads the same.
        if (read > 0) {
            const qint64 from = qint64(key % quint32(read));
            require(reader.seek(from * recordBytes), "a seek within the file failed");
            qint64 again = from;
            while (const quint32* record = reader.next()) {
                require(std::memcmp(record, content + again * recordBytes, size_t(recordBytes)) ==
                            0,
                        "a record after a seek differs from the file");
                ++again;
            }
            require(again == read, "reading after a seek lost records");
        }
    }
    reader.close();
    close(fd);
    return 0;
}
