#ifndef KVDPNGWRITER_H
#define KVDPNGWRITER_H

#include <QImage>
#include <QSize>
#include <QString>

class QIODevice;

// The PNG side of kvd render, built for a picture drawn once and written once.
//
// A chart is large flat areas crossed by thin lines. The toolkit's own PNG writer tries
// every row filter on every row and compresses hard, which costs several times the
// drawing; here every row is stored as its difference from the row above, and compressed
// only by writing what repeats as runs. The file is larger (up to about twice) and reads
// back to exactly the same pixels.
class KVDPngWriter
{
public:
    // A white RGB32 picture of size whose memory the system may back with huge pages:
    // touching megabytes of fresh memory one small page at a time costs more than drawing
    // a chart into them. A null image when the memory cannot be had.
    static QImage canvas(const QSize& size);

    // Writes image as an 8-bit RGB PNG (alpha, if any, is not kept) with the image's
    // resolution. False with *error set when the device refuses a write or the image is
    // null.
    static bool write(const QImage& image, QIODevice* device, QString* error = nullptr);
};

#endif
