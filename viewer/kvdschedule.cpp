#include "kvdschedule.h"
#include "kvddevice.h"

#include <QDate>
#include <QFontMetrics>
#include <QLocale>
#include <QPainter>
#include <QRect>
#include <QTime>

#include <climits>
#include <cmath>

using KVDDevice::outline;
using KVDDevice::toInt;

namespace {

// Granularity of the fine row; the coarse row follows from it.
enum class Grain { Hours, Days, Weeks, Months, HourBand };

// Where one cell lands: x0 is its start in device units from the plot's left edge, w its
// exact width and e the correction that makes its floor-rounded width reach the floor of
// the next cell's start, so that neighbours never leave a one-unit gap.
struct Placement
{
    double x0;
    double w;
    double e;
};

// Places a cell of `length` seconds and exact width w starting `offset` seconds after the
// view start, k device units per second, and moves offset on to the next cell.
Placement place(double k, qint64& offset, qint64 length, double w)
{
    const double x0 = k * double(offset);
    const double a = std::floor(x0);
    const double b = std::floor(w);
    offset += length;
    const double c = std::floor(k * double(offset));
    const double e = (c == a + b) ? 0.0 : c - (a + b);
    return {x0, w, e};
}

bool isOdd(int n)
{
    return (n % 2) != 0;
}

// What an unlabelled fine cell and its stripe cover, in device units.
struct Footprint
{
    int x;
    int w;
    int stripeX;
    int stripeW;
    bool odd;

    bool operator==(const Footprint& o) const
    {
        return x == o.x && w == o.w && stripeX == o.stripeX && stripeW == o.stripeW && odd == o.odd;
    }
};

// True when painting the same opaque, aliased shapes a second time leaves every pixel as
// the first time left it, so that a repeat can be left out.
bool repaintsIdentically(const QPainter* p)
{
    if (p->renderHints() & QPainter::Antialiasing)
        return false;
    if (p->compositionMode() != QPainter::CompositionMode_SourceOver || p->opacity() != 1.0)
        return false;
    const QPen pen = p->pen();
    if (pen.style() != Qt::NoPen && !pen.brush().isOpaque())
        return false;
    const QBrush brush = p->brush();
    return brush.style() == Qt::NoBrush || brush.isOpaque();
}

} // namespace

KVDSchedule::KVDSchedule() = default;

void KVDSchedule::drawElem(QPainter* p, double x, double y, int w, int h, QColor colour,
                           QString label, bool framed)
{
    const int xi = toInt(std::floor(x));
    const double yf = std::floor(y);
    p->fillRect(xi, toInt(yf + 1), w - 1, h, colour);
    if (framed)
        outline(p, xi, toInt(yf), w, h);
    if (!label.isEmpty())
        p->drawText(QRect(xi, toInt(yf), w, h), Qt::AlignCenter, label);
}

void KVDSchedule::Build(QPainter* p, double width, QDateTime start, QDateTime end, double sx,
                        double sy)
{
    const QRect viewport = p->viewport();
    const double H = viewport.bottom() - viewport.top() + 1;
    const qint64 N = start.daysTo(end);
    const qint64 S = start.secsTo(end);
    // A span of zero seconds has no scale at all; nothing can be placed on it.
    if (S == 0)
        return;
    const double k = width / double(S);
    const QDate yearMark(start.date().year(), 1, 1);
    const QLocale locale = QLocale::system();

    Grain grain;
    if (N <= 2)
        grain = Grain::Hours;
    else if (N <= 33)
        grain = Grain::Days;
    else if (N <= 123)
        grain = Grain::Weeks;
    else if (N <= 1000)
        grain = Grain::Months;
    else
        grain = Grain::HourBand;

    QDateTime fine = start;
    QDateTime coarse = start;
    qint64 fineOffset = 0;
    qint64 coarseOffset = 0;
    int week = 0;
    bool longWeeks = true;
    const QTime midnight(0, 0);
    switch (grain) {
    case Grain::Hours:
        fineOffset = start.secsTo(QDateTime(start.date(), QTime(start.time().hour(), 0)));
        coarse = QDateTime(start.date(), midnight);
        coarseOffset = start.secsTo(coarse);
        break;
    case Grain::Days:
        fine = QDateTime(start.date(), midnight);
        coarse = QDateTime(QDate(start.date().year(), start.date().month(), 1), midnight);
        break;
    case Grain::Weeks: {
        // Week numbers count from the week that holds 1 January when that day is a Monday
        // to Thursday; otherwise the days before the first Monday still belong to the
        // previous year's last week.
        const qint64 d = yearMark.daysTo(start.date());
        const int j = yearMark.dayOfWeek();
        qint64 shift;
        if (j < 5) {
            const qint64 m = d - 1 + j;
            if (m < 7) {
                week = 0;
                shift = 1 - d - j;
            } else {
                week = int(m / 7);
                shift = qint64(week - 1) * 7 + 8 - j - d;
            }
        } else {
            const qint64 m = d - 8 + j;
            if (m < 0) {
                week = 52;
                shift = 1 - d - j;
            } else {
                week = int(m / 7);
                shift = qint64(week) * 7 + 8 - j - d;
            }
        }
        fine = QDateTime(start.date(), midnight).addDays(shift);
        const QDate monday = fine.date();
        coarse = QDateTime(QDate(monday.year(), monday.month(), 1), midnight);
        longWeeks =
            p->fontMetrics().horizontalAdvance(QStringLiteral("aaaaaaa")) <= toInt(k * 168 * 3600);
        break;
    }
    case Grain::Months:
        fine = QDateTime(QDate(start.date().year(), start.date().month(), 1), midnight);
        coarse = QDateTime(yearMark, midnight);
        break;
    case Grain::HourBand:
        break;
    }
    if (grain != Grain::Hours && grain != Grain::HourBand) {
        fineOffset = start.secsTo(fine);
        coarseOffset = start.secsTo(coarse);
    }

    const double fineTop = H + sy * 55 - sy * 40 - sy * 100;
    const int fineHeight = int(20 * sy);
    const double coarseTop = H - sy * 21 - sy * 100 + sy * 55;
    const int coarseHeight = int(21 * sy);
    const int stripeTop = int(sy * 50 - sy * 10);
    const int stripeHeight = toInt(H - sy * 50 - sy * 100 + sy * 24);
    const QColor oddColour(Qt::lightGray);
    const QColor evenColour(Qt::gray);
    const QColor oddStripe(250, 250, 250);
    const QColor evenStripe(240, 240, 240);
    // Over years the hour band puts dozens of identical cells on each device column;
    // drawing one of each run gives the same picture.
    const bool skipRepeats = repaintsIdentically(p);
    Footprint previous{0, 0, 0, 0, false};
    bool previousBlank = false;

    while (fineOffset < S) {
        QString label;
        bool odd = true;
        qint64 length = 3600;
        int hours = 1;
        switch (grain) {
        case Grain::Hours: {
            const int hour = fine.time().hour();
            label = QString::number(hour);
            odd = isOdd(hour);
            break;
        }
        case Grain::Days: {
            const int day = fine.date().day();
            label = QString::number(day);
            odd = isOdd(day);
            length = 86400;
            hours = 24;
            break;
        }
        case Grain::Weeks:
            ++week;
            if (week >= 53) {
                // The week that runs into January is the last week of the old year when
                // the new year's first Monday comes before the 5th, else week 1. Both
                // keep the odd colour.
                week = fine.addSecs(604800).date().day() < 5 ? 53 : 1;
                odd = true;
            } else {
                odd = isOdd(week);
            }
            label = longWeeks ? tr("Week %1", "Calendar axis cell").arg(week)
                              : tr("W %1", "Calendar axis cell, short form of Week %1").arg(week);
            length = 604800;
            hours = 168;
            break;
        case Grain::Months: {
            const QDate day = fine.date();
            label = locale.monthName(day.month(), QLocale::ShortFormat);
            odd = isOdd(day.month());
            length = qint64(day.daysInMonth()) * 86400;
            hours = day.daysInMonth() * 24;
            break;
        }
        case Grain::HourBand:
            // One unlabelled hour cell after the other: over years they merge into one
            // solid band, which is what this granularity is meant to look like.
            odd = false;
            break;
        }

        const Placement cell = place(k, fineOffset, length, k * hours * 3600);
        const double x = 55 * sx + cell.x0;
        const Footprint footprint{toInt(std::floor(x)), toInt(cell.w + cell.e + 1.0),
                                  toInt(toInt(cell.x0 + 1.0) + 55 * sx), toInt(cell.w + cell.e),
                                  odd};
        if (!(skipRepeats && previousBlank && label.isEmpty() && footprint == previous)) {
            drawElem(p, x, fineTop, footprint.w, fineHeight, odd ? oddColour : evenColour, label,
                     true);
            p->fillRect(footprint.stripeX, stripeTop, footprint.stripeW, stripeHeight,
                        odd ? oddStripe : evenStripe);
            previous = footprint;
            previousBlank = label.isEmpty();
        }
        // The hour band reads nothing from its cursor.
        if (grain != Grain::HourBand)
            fine = fine.addSecs(length);
    }

    while (coarseOffset < S) {
        const QDate day = coarse.date();
        qint64 days;
        QString label;
        bool odd;
        switch (grain) {
        case Grain::Hours:
            days = 1;
            label = locale.dayName(day.dayOfWeek(), QLocale::ShortFormat) + QLatin1Char(' ') +
                    QString::number(day.day()) + QLatin1Char(' ') +
                    locale.monthName(day.month(), QLocale::ShortFormat) + QLatin1Char(' ') +
                    QString::number(day.year());
            odd = true;
            break;
        case Grain::Days:
        case Grain::Weeks:
            days = day.daysInMonth();
            label = locale.monthName(day.month(), QLocale::ShortFormat) + QLatin1Char(' ') +
                    QString::number(day.year());
            odd = isOdd(day.month());
            break;
        case Grain::Months:
        case Grain::HourBand:
        default:
            days = day.daysInYear();
            label = QString::number(day.year());
            odd = isOdd(day.year());
            break;
        }
        const Placement cell = place(k, coarseOffset, days * 86400, k * double(days) * 3600 * 24);
        drawElem(p, 55 * sx + cell.x0, coarseTop, toInt(cell.w + cell.e + 1.0), coarseHeight,
                 odd ? oddColour : evenColour, label, true);
        coarse = QDateTime(day.addDays(days), midnight);
    }
}
