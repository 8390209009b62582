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
// Filtered rows are handed to zlib in batches of about this many bytes.
constexpr size_t BatchBytes = 64 * 1024;
// Every row is filtered with "Up": its bytes less those of the row above (zeros above the
// first), so that what repeats from row to row compresses to runs of zeros.
constexpr uchar Up = 2;

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

    z_stream zip;
    std::memset(&zip, 0, sizeof zip);
    // Runs only: rows that differ little from the row above are mostly zeros.
    if (deflateInit2(&zip, Z_BEST_SPEED, Z_DEFLATED, 15, 8, Z_RLE) != Z_OK)
        return fail(error, QStringLiteral("the compressor cannot be set up"));
    const size_t batchRows = qMax<size_t>(1, BatchBytes / rowBytes);
    std::vector<uchar> batch(batchRows * rowBytes);
    std::vector<uchar> above(3 * size_t(width), 0);
    std::vector<uchar> row(3 * size_t(width));
    std::vector<uchar> packed(BatchBytes);
    bool ok = true;
    for (int y = 0; ok && y < height;) {
        const int rows = int(qMin<size_t>(batchRows, size_t(height - y)));
        for (int k = 0; k < rows; ++k, ++y) {
            const QRgb* pixel = reinterpret_cast<const QRgb*>(image.constScanLine(y));
            uchar* rgb = row.data();
            for (int x = 0; x < width; ++x, rgb += 3) {
                rgb[0] = uchar(qRed(pixel[x]));
                rgb[1] = uchar(qGreen(pixel[x]));
                rgb[2] = uchar(qBlue(pixel[x]));
            }
            uchar* filtered = batch.data() + size_t(k) * rowBytes;
            filtered[0] = Up;
            const uchar* now = row.data();
            const uchar* before = above.data();
            for (size_t i = 0; i + 1 < rowBytes; ++i)
                filtered[1 + i] = uchar(now[i] - before[i]);
            row.swap(above);
        }
        zip.next_in = batch.data();
        zip.avail_in = uInt(size_t(rows) * rowBytes);
        const int flush = y == height ? Z_FINISH : Z_NO_FLUSH;
        int status = Z_OK;
        do {
            zip.next_out = packed.data();
            zip.avail_out = uInt(packed.size());
            status = deflate(&zip, flush);
            const size_t produced = packed.size() - zip.avail_out;
            if (produced > 0)
                appendChunk(out, "IDAT", packed.data(), produced);
            // A full output buffer may leave more to come; the last batch ends the stream.
        } while (flush == Z_FINISH ? status == Z_OK : zip.avail_out == 0 && status == Z_OK);
        ok = flush == Z_FINISH ? status == Z_STREAM_END : status == Z_OK || status == Z_BUF_ERROR;
        if (ok && out.size() >= qsizetype(BatchBytes)) {
            ok = device->write(out) == out.size();
            out.clear();
            if (!ok) {
                deflateEnd(&zip);
                return fail(error, device->errorString());
            }
        }
    }
    deflateEnd(&zip);
    if (!ok)
        return fail(error, QStringLiteral("the picture could not be compressed"));
    appendChunk(out, "IEND", nullptr, 0);
    if (device->write(out) != out.size())
        return fail(error, device->errorString());
    return true;
}
