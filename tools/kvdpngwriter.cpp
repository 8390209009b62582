#include "kvdpngwriter.h"

#include <QByteArray>
#include <QIODevice>

#include <cstdlib>
#include <cstring>
#include <vector>

#include <sys/mman.h>
#include <zlib.h>

namespace {

constexpr size_t HugePage = size_t(2) << 20;
// Filtered rows are compressed in batches of about this many bytes, and the file is
// written in pieces of about as many.
constexpr size_t BatchBytes = 64 * 1024;
// Every row is filtered with "Up": its bytes less those of the row above (zeros above the
// first), so that what repeats from row to row becomes runs of zeros.
constexpr uchar Up = 2;

// The fixed codes of a compressed block (RFC 1951, 3.2.6), bits reversed for writing
// least significant first, and for each run length its length code and extra bits.
struct FixedCodes
{
    quint16 code[286];
    quint8 bits[286];
    quint16 lengthSymbol[259];
    quint8 lengthExtra[259];
    quint16 lengthBase[259];

    FixedCodes()
    {
        for (int s = 0; s < 286; ++s) {
            const int n = s < 144 ? 8 : s < 256 ? 9 : s < 280 ? 7 : 8;
            const int c = s < 144   ? 0x30 + s
                          : s < 256 ? 0x190 + s - 144
                          : s < 280 ? s - 256
                                    : 0xc0 + s - 280;
            quint16 reversed = 0;
            for (int k = 0; k < n; ++k)
                reversed = quint16(reversed | (((c >> k) & 1) << (n - 1 - k)));
            code[s] = reversed;
            bits[s] = quint8(n);
        }
        static const quint16 base[29] = {3,  4,  5,  6,   7,   8,   9,   10,  11, 13,
                                         15, 17, 19, 23,  27,  31,  35,  43,  51, 59,
                                         67, 83, 99, 115, 131, 163, 195, 227, 258};
        for (int length = 3, k = 0; length <= 258; ++length) {
            // 258 has a code of its own, one past the range 227 to 257 would give it.
            while (k < 27 && base[k + 1] <= length)
                ++k;
            const int symbol = length == 258 ? 28 : k;
            lengthSymbol[length] = quint16(257 + symbol);
            lengthBase[length] = base[symbol];
            // No extra bits below code 8, then one more every fourth code; none for 258.
            lengthExtra[length] = quint8(symbol < 8 || symbol == 28 ? 0 : (symbol - 4) / 4);
        }
    }
};

const FixedCodes& fixedCodes()
{
    static const FixedCodes codes;
    return codes;
}

// A compressed stream of one block of fixed codes in which every repeat is a run: a byte
// then copies of the byte before (distance 1). On a chart's filtered rows, mostly long
// runs of zeros, this takes a few times less than zlib's fastest mode for a file about a
// third larger.
class RunEncoder
{
public:
    explicit RunEncoder(QByteArray* out) : m_out(out), m_codes(fixedCodes())
    {
        m_out->append("\x78\x01", 2); // deflate, 32 KiB window, fastest
        put(1, 1);                    // the last block
        put(1, 2);                    // of fixed codes
    }

    void add(const uchar* data, size_t size)
    {
        size_t i = 0;
        while (i < size) {
            const uchar byte = data[i];
            symbol(byte);
            sum(byte, 1);
            size_t j = i + 1;
            const quint64 pattern = 0x0101010101010101ull * byte;
            for (quint64 word; j + 8 <= size; j += 8) {
                std::memcpy(&word, data + j, 8);
                if (word != pattern)
                    break;
            }
            while (j < size && data[j] == byte)
                ++j;
            // Runs are 3 to 258 long; one or two copies left over are written as they are.
            size_t copies = j - i - 1;
            sum(byte, copies);
            for (size_t length; copies >= 3; copies -= length) {
                length = copies > 258 ? 258 : copies;
                run(int(length));
            }
            while (copies-- > 0)
                symbol(byte);
            i = j;
        }
    }

    void finish()
    {
        symbol(256); // end of block
        if (m_count > 0)
            m_out->append(char(m_bits));
        m_bits = 0;
        m_count = 0;
        const quint64 adler = m_b << 16 | m_a;
        for (int shift = 24; shift >= 0; shift -= 8)
            m_out->append(char(adler >> shift));
    }

private:
    void put(quint32 value, int count)
    {
        m_bits |= quint64(value) << m_count;
        m_count += count;
        while (m_count >= 8) {
            m_out->append(char(m_bits));
            m_bits >>= 8;
            m_count -= 8;
        }
    }
    void symbol(int s) { put(m_codes.code[s], m_codes.bits[s]); }
    // The stream's checksum (Adler-32) after count more bytes of value byte: a run adds
    // count times the byte to the first sum, and to the second each first sum on the way,
    // so a run of zeros costs one step however long it is.
    void sum(uchar byte, quint64 count)
    {
        constexpr quint64 Base = 65521;
        const quint64 steps = count % Base;
        const quint64 rising = count * (count + 1) / 2 % Base; // 1 + 2 + ... + count
        m_b = (m_b + steps * m_a + byte * rising) % Base;
        m_a = (m_a + steps * byte) % Base;
    }
    void run(int length)
    {
        symbol(m_codes.lengthSymbol[length]);
        if (m_codes.lengthExtra[length] > 0)
            put(quint32(length - m_codes.lengthBase[length]), m_codes.lengthExtra[length]);
        put(0, 5); // distance code 0: one byte back
    }

    QByteArray* m_out;
    const FixedCodes& m_codes;
    quint64 m_bits = 0;
    int m_count = 0;
    quint64 m_a = 1; // the checksum's two sums, each below 65521
    quint64 m_b = 0;
};

void putWord(uchar* at, quint32 word)
{
    at[0] = uchar(word >> 24);
    at[1] = uchar(word >> 16);
    at[2] = uchar(word >> 8);
    at[3] = uchar(word);
}

// Appends a chunk: length, type, data and the CRC of type and data.
void appendChunk(QByteArray& out, const char* type, const uchar* data, size_t length)
{
    uchar head[8];
    putWord(head, quint32(length));
    std::memcpy(head + 4, type, 4);
    uLong crc = crc32(0L, head + 4, 4);
    if (length > 0) // zlib takes a null buffer as a request for the initial value
        crc = crc32(crc, data, uInt(length));
    uchar tail[4];
    putWord(tail, quint32(crc));
    out.append(reinterpret_cast<const char*>(head), 8);
    out.append(reinterpret_cast<const char*>(data), qsizetype(length));
    out.append(reinterpret_cast<const char*>(tail), 4);
}

bool fail(QString* error, const QString& message)
{
    if (error)
        *error = message;
    return false;
}

} // namespace

QImage KVDPngWriter::canvas(const QSize& size)
{
    const qsizetype bytesPerLine = qsizetype(size.width()) * 4;
    const size_t bytes = size_t(bytesPerLine) * size_t(qMax(size.height(), 0));
    const size_t rounded = (bytes + HugePage - 1) / HugePage * HugePage;
    void* data = rounded > 0 ? std::aligned_alloc(HugePage, rounded) : nullptr;
    if (!data) {
        QImage plain(size, QImage::Format_RGB32);
        plain.fill(Qt::white);
        return plain;
    }
#ifdef MADV_HUGEPAGE
    madvise(data, rounded, MADV_HUGEPAGE);
#endif
    QImage image(static_cast<uchar*>(data), size.width(), size.height(), bytesPerLine,
                 QImage::Format_RGB32, std::free, data);
    image.fill(Qt::white);
    return image;
}

bool KVDPngWriter::write(const QImage& source, QIODevice* device, QString* error)
{
    if (source.isNull())
        return fail(error, QStringLiteral("there is no picture to write"));
    const QImage image = source.format() == QImage::Format_RGB32
                             ? source
                             : source.convertToFormat(QImage::Format_RGB32);
    const int width = image.width();
    const int height = image.height();
    const size_t rowBytes = 1 + 3 * size_t(width);

    QByteArray out("\x89PNG\r\n\x1a\n", 8);
    uchar header[13] = {0, 0, 0, 0, 0, 0, 0, 0, 8, 2, 0, 0, 0}; // 8-bit RGB, not interlaced
    putWord(header, quint32(width));
    putWord(header + 4, quint32(height));
    appendChunk(out, "IHDR", header, sizeof header);
    if (image.dotsPerMeterX() > 0 && image.dotsPerMeterY() > 0) {
        uchar physical[9] = {0, 0, 0, 0, 0, 0, 0, 0, 1}; // pixels a metre
        putWord(physical, quint32(image.dotsPerMeterX()));
        putWord(physical + 4, quint32(image.dotsPerMeterY()));
        appendChunk(out, "pHYs", physical, sizeof physical);
    }

    QByteArray packed;
    packed.reserve(qsizetype(2 * BatchBytes));
    RunEncoder encoder(&packed);
    const size_t batchRows = qMax<size_t>(1, BatchBytes / rowBytes);
    std::vector<uchar> batch(batchRows * rowBytes);
    const std::vector<uchar> zeros(rowBytes - 1, 0);
    QImage strip;    // this batch's rows in the file's byte order
    QImage previous; // the last batch's
    for (int y = 0; y < height;) {
        const int rows = int(qMin<size_t>(batchRows, size_t(height - y)));
        // The toolkit converts several pixels at a time, and a whole picture on several
        // threads, whose start costs more than the conversion: a batch is converted alone.
        strip =
            QImage(image.constScanLine(y), width, rows, image.bytesPerLine(), QImage::Format_RGB32)
                .convertToFormat(QImage::Format_RGB888);
        for (int k = 0; k < rows; ++k, ++y) {
            const uchar* __restrict now = strip.constScanLine(k);
            const uchar* __restrict before = k > 0   ? strip.constScanLine(k - 1)
                                             : y > 0 ? previous.constScanLine(previous.height() - 1)
                                                     : zeros.data();
            uchar* __restrict filtered = batch.data() + size_t(k) * rowBytes;
            filtered[0] = Up;
            for (size_t i = 0; i + 1 < rowBytes; ++i)
                filtered[1 + i] = uchar(now[i] - before[i]);
        }
        previous = strip;
        encoder.add(batch.data(), size_t(rows) * rowBytes);
        if (y == height)
            encoder.finish();
        if (packed.size() >= qsizetype(BatchBytes) || y == height) {
            appendChunk(out, "IDAT", reinterpret_cast<const uchar*>(packed.constData()),
                        size_t(packed.size()));
            packed.clear();
        }
        if (out.size() >= qsizetype(BatchBytes) || y == height) {
            if (y == height)
                appendChunk(out, "IEND", nullptr, 0);
            if (device->write(out) != out.size())
                return fail(error, device->errorString());
            out.clear();
        }
    }
    return true;
}
