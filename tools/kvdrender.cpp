#include "kvdchart.h"
#include "kvdcli.h"
#include "kvdconfig.h"
#include "kvdselection.h"
#include "kvdview.h"

#include <QFileInfo>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSvgGenerator>

#include <cstdio>

namespace {

const char Usage[] = QT_TRANSLATE_NOOP(
    "kvd", "Usage: kvd render --root R [--view] [--curve KEY:USER:FIELD]... [--from T] [--to T]\n"
           "                  [--size WxH] [--builtin FILE] -o OUT\n"
           "\n"
           "Draws the chart the viewer would show into OUT: a PNG, SVG or PDF file, by its\n"
           "extension. Nothing in the repository is written.\n"
           "\n");

const char SizeHelp[] = QT_TRANSLATE_NOOP(
    "kvd",
    "  --size WxH             the picture size in pixels (default 1280x800, at least\n"
    "                         400x200); SVG and PDF count 96 pixels an inch as PNG does,\n"
    "                         so text takes the same share of every picture (a PDF page\n"
    "                         of W x H pixels measures 3/4 W x 3/4 H points)\n"
    "  -o OUT                 the file to write (.png, .svg or .pdf)\n"
    "\n"
    "The chart draws no curve point at or right of x = 4000, where the window system's\n"
    "coordinates stop being safe. The plot ends 250 pixels short of the right edge, so from\n"
    "a width of 4250 on it reaches that limit and curves stop short of its right end (kvd\n"
    "says so on standard error).\n");

constexpr int MaxSide = 16384;
// The chart draws no curve point whose device x is at or past DrawingLimit, and its plot
// ends RightStrip short of the picture's right edge.
constexpr int DrawingLimit = 4000;
constexpr int RightStrip = 250;
// The resolution of a PNG (a QImage's default): an SVG or PDF drawn at it has one unit a
// pixel, so that fonts sized in points take the same part of every picture.
constexpr int PixelsPerInch = 96;

bool parseSize(const QString& text, QSize* size)
{
    const QRegularExpressionMatch match =
        QRegularExpression(QStringLiteral("^(\\d{1,5})x(\\d{1,5})$")).match(text);
    if (!match.hasMatch())
        return false;
    const QSize wanted(match.captured(1).toInt(), match.captured(2).toInt());
    // Below this the chart would draw larger than the picture.
    if (wanted != KVDChart::paperSize(wanted.width(), wanted.height()) ||
        wanted.width() > MaxSide || wanted.height() > MaxSide)
        return false;
    *size = wanted;
    return true;
}

void draw(QPainter* painter, KVDView& view, const QSize& size)
{
    KVDChart chart = view.chart();
    chart.paint(painter, size.width(), size.height());
    view.firstScale = chart.leftScale;
    view.secondScale = chart.rightScale;
}

// Paints into file (open) in format; false when the painter cannot start.
bool paintTo(QSaveFile* file, const QString& format, KVDView& view, const QSize& size)
{
    if (format == QLatin1String("png")) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::white);
        {
            QPainter painter(&image);
            draw(&painter, view, size);
        }
        return image.save(file, "PNG");
    }
    QPainter painter;
    if (format == QLatin1String("svg")) {
        QSvgGenerator svg;
        svg.setOutputDevice(file);
        svg.setSize(size);
        svg.setViewBox(QRect(QPoint(0, 0), size));
        svg.setResolution(PixelsPerInch);
        svg.setTitle(QStringLiteral("Kavendi"));
        if (!painter.begin(&svg))
            return false;
        draw(&painter, view, size);
        return painter.end();
    }
    // One page of exactly W x H pixels, without margins.
    QPdfWriter pdf(file);
    pdf.setResolution(PixelsPerInch);
    pdf.setPageLayout(QPageLayout(QPageSize(QSizeF(size) / PixelsPerInch, QPageSize::Inch),
                                  QPageLayout::Portrait, QMarginsF()));
    pdf.setTitle(QStringLiteral("Kavendi"));
    if (!painter.begin(&pdf))
        return false;
    draw(&painter, view, size);
    return painter.end();
}

} // namespace

int kvdRender(const QStringList& args)
{
    QCommandLineParser parser;
    KVDSelection selection;
    selection.addOptions(parser);
    const QCommandLineOption sizeOption(QStringLiteral("size"), QString(), QStringLiteral("WxH"));
    const QCommandLineOption output(QStringLiteral("o"), QString(), QStringLiteral("OUT"));
    parser.addOptions({sizeOption, output});
    const QString usage = KvdCli::tr(Usage) + KVDSelection::optionsHelp() + KvdCli::tr(SizeHelp);
    if (const int status = KvdCli::parse(parser, "render", args, usage); status >= 0)
        return status;
    if (!parser.positionalArguments().isEmpty())
        return KvdCli::fail(
            "render",
            KvdCli::tr("unexpected argument %1").arg(parser.positionalArguments().constFirst()), 2);

    QSize size(1280, 800);
    if (parser.isSet(sizeOption) && !parseSize(parser.value(sizeOption), &size))
        return KvdCli::fail("render",
                            KvdCli::tr("--size takes WxH, 400x200 to %1x%1, not %2")
                                .arg(MaxSide)
                                .arg(parser.value(sizeOption)),
                            2);
    if (!parser.isSet(output))
        return KvdCli::fail("render", KvdCli::tr("-o OUT is required"), 2);
    const QString path = parser.value(output);
    const QString format = QFileInfo(path).suffix().toLower();
    if (format != QLatin1String("png") && format != QLatin1String("svg") &&
        format != QLatin1String("pdf"))
        return KvdCli::fail("render",
                            KvdCli::tr("%1: the name must end in .png, .svg or .pdf").arg(path), 2);
    QString error;
    if (!selection.read(parser, &error))
        return KvdCli::fail("render", error, 2);

    KVDView view;
    if (!selection.apply(&view, &error))
        return KvdCli::fail("render", error);
    if (view.curves.isEmpty())
        KvdCli::fail("render", KvdCli::tr("no curve to show; the chart is empty"));
    if (size.width() - RightStrip >= DrawingLimit)
        KvdCli::fail("render", KvdCli::tr("at a width of %1 the plot reaches x = %2, the chart's "
                                          "drawing limit; curves stop there, short of the "
                                          "plot's right edge")
                                   .arg(size.width())
                                   .arg(DrawingLimit));

    // Written aside and moved into place at the end: a failed render leaves no file.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return KvdCli::fail("render", KvdCli::tr("%1: %2").arg(path, file.errorString()));
    if (!paintTo(&file, format, view, size)) {
        file.cancelWriting();
        return KvdCli::fail("render", KvdCli::tr("%1: the chart could not be drawn").arg(path));
    }
    if (!file.commit())
        return KvdCli::fail("render", KvdCli::tr("%1: %2").arg(path, file.errorString()));
    return 0;
}
