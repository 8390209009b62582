#include "kvdview.h"
#include "kvdchart.h"
#include "kvdconfig.h"
#include "kvdcurve.h"
#include "kvdshell.h"

#include <QDir>
#include <QFile>

namespace {

const QLatin1String EditedMetric("_EDITED_METRIC_");
constexpr qint64 Day = 86400;
constexpr qint64 Month = 30 * Day;

// The colour that follows `colour` in the cycle of new curves; anything outside the
// cycle, and yellow, is followed by red.
QColor nextColor(const QColor& colour)
{
    static const QColor cycle[] = {Qt::red, Qt::green, Qt::blue, Qt::cyan, Qt::magenta, Qt::yellow};
    for (int k = 0; k < 5; ++k)
        if (colour == cycle[k])
            return cycle[k + 1];
    return Qt::red;
}

} // namespace

KVDView::~KVDView()
{
    delete config;
    qDeleteAll(curves);
}

bool KVDView::load(const QString& repository, const QString& configFile, bool store, bool check)
{
    root = repository;
    delete config;
    config = new KVDConfig(questions, perUserView);
    bool ok = config->ReadConfigBuiltIn() || !check;
    const bool saved = QFile::exists(configFile);
    if (ok && saved)
        ok = config->ReadConfig(root, &curves, &start, &end, &zoom, &firstScale, &secondScale,
                                &events.items()) ||
             !check;
    ok = ok && (config->ScanRepository(root, true) || !check);
    if (ok && store)
        storeView();
    if (ok && saved)
        lastColor = config->color;
    return ok;
}

QString KVDView::configPath() const
{
    if (!perUserView)
        return root + QDir::separator() + QLatin1String("KVD.cfg");
    return root + QDir::separator() + QLatin1String("KVD") + KVDShell::user() +
           QLatin1String(".cfg");
}

KVDChart KVDView::chart()
{
    KVDChart chart;
    chart.start = start;
    chart.end = end;
    chart.datesSet = datesSet;
    chart.eventsHidden = events.eventsHidden();
    chart.curves = &curves;
    chart.events = &events.items();
    chart.leftScale = firstScale;
    chart.rightScale = secondScale;
    chart.definitions = config ? &config->definitions : nullptr;
    return chart;
}

void KVDView::storeView()
{
    if (config)
        config->StoreConfig(root, &curves, start, end, zoom, firstScale, secondScale,
                            &events.items());
}

void KVDView::clean()
{
    qDeleteAll(curves);
    curves.clear();
    datesSet = false;
    zoom = 0;
    end = QDateTime::currentDateTime();
    start = end.addSecs(-Month);
    // Deliberately set again: the emptied view keeps a 30-day range.
    datesSet = true;
    firstScale = nullptr;
    secondScale = nullptr;
}

void KVDView::selectField(const QString& text)
{
    if (!config)
        return;
    // Matching never stops early: the last match in iteration order wins.
    for (auto it = config->definitions.cbegin(); it != config->definitions.cend(); ++it) {
        for (const QString& entry : it.value()) {
            if (entry == text) {
                selectedMeasure = it.key();
                fieldCount = int(it.value().size()) - 1;
            }
        }
    }
}

KVDCurve* KVDView::selectMeasure(int id, const QString& user)
{
    QDateTime rememberedStart = start;
    QDateTime rememberedEnd = end;
    if (id == 0)
        return nullptr;
    if (!datesSet) {
        end = QDateTime::currentDateTime();
        start = end.addSecs(-Month);
        datesSet = true;
        rememberedStart = start;
        rememberedEnd = end;
    }
    selectedField = id;

    // The user name is deliberately not compared: a field shown for one user is not added
    // again for another.
    bool duplicate = false;
    for (const KVDCurve* curve : std::as_const(curves))
        if (curve->name == selectedMeasure && curve->valueCount == fieldCount &&
            curve->field == selectedField && !curve->user.isNull())
            duplicate = true;

    KVDCurve* curve = nullptr;
    if (!duplicate) {
        if (selectedMeasure.size() > EditedMetric.size() &&
            selectedMeasure.startsWith(EditedMetric)) {
            // A ratio of two fields of one file: the stripped key's label names the file.
            selectedMeasure = selectedMeasure.mid(EditedMetric.size());
            const QString fileKey =
                config ? config->definitions.value(selectedMeasure).value(0) : QString();
            curve = new KVDCurve(root, fileKey, selectedField, 2 * fieldCount, user, start, end);
            const KVDCurve denominator(root, fileKey, selectedField + fieldCount, 2 * fieldCount,
                                       user, start, end);
            curve->DIV(denominator);
            curve->fixedScale = true;
        } else {
            curve =
                new KVDCurve(root, selectedMeasure, selectedField, fieldCount, user, start, end);
        }
        curve->hasColor = true;
        curve->color = nextColor(lastColor);
        lastColor = curve->color;
        if (curve->hasPoints())
            firstScale = curve;
    }

    // The new curve's load may have moved the start to its first record: existing curves
    // follow.
    timeOffset = int(rememberedStart.secsTo(start));
    for (KVDCurve* c : std::as_const(curves)) {
        c->MoveX(-qint64(timeOffset));
        c->firstDate = start;
        c->endDate = end;
    }

    const bool added = curve && curve->hasPoints();
    if (added) {
        curves.append(curve);
    } else {
        delete curve;
        curve = nullptr;
    }

    if (floating) {
        // The calendar stays put; the curves move instead.
        const qint64 d = rememberedStart.secsTo(start);
        start = rememberedStart;
        end = rememberedEnd;
        const double span = double(start.secsTo(end));
        for (KVDCurve* c : std::as_const(curves)) {
            c->MoveX(d);
            c->firstDate = start;
            c->endDate = end;
            c->span = span;
        }
    }
    return curve;
}

void KVDView::rebase(bool updateSpan)
{
    const double span = double(start.secsTo(end));
    for (KVDCurve* curve : std::as_const(curves)) {
        if (!curve->hasPoints())
            continue;
        curve->MoveX(-m_appliedShift);
        curve->firstDate = start;
        curve->endDate = end;
        if (updateSpan)
            curve->span = span;
    }
}

bool KVDView::zoomIn()
{
    if (!datesSet)
        return false;
    const QDateTime old = start;
    const qint64 days = start.daysTo(end);
    if (days > 60) {
        const QDateTime newStart = start.addSecs(Month);
        const QDateTime newEnd = end.addSecs(-Month);
        if (newEnd >= newStart) {
            start = newStart;
            end = newEnd;
        }
    } else {
        // One finer step below the 60-day limit: down to the middle day or two.
        if (zoomStep != 0)
            return false;
        zoomStep = int(days / 2 * Day);
        start = start.addSecs(zoomStep);
        end = end.addSecs((1 - days / 2) * Day);
        if (end < start) {
            start = start.addSecs(-10 * Day);
            end = end.addSecs(10 * Day);
        }
    }
    m_appliedShift = old.secsTo(start);
    rebase(true);
    return true;
}

bool KVDView::zoomOut()
{
    if (!datesSet || start.daysTo(end) > 799)
        return false;
    const QDateTime old = start;
    if (zoomStep != 0) {
        start = start.addSecs(-zoomStep);
        end = end.addSecs(zoomStep - Day);
        zoomStep = 0;
    } else {
        start = start.addSecs(-Month);
        end = end.addSecs(Month);
    }
    m_appliedShift = old.secsTo(start);
    rebase(true);
    return true;
}

void KVDView::setScale(qint64 before, qint64 after)
{
    const QDateTime old = start;
    const QDateTime mid = start.addSecs(start.secsTo(end) / 2);
    start = mid.addSecs(-before);
    end = mid.addSecs(after);
    m_appliedShift = old.secsTo(start);
}

void KVDView::setRange(const QDate& from, const QDate& to)
{
    setRange(QDateTime(from, QTime(0, 0)), QDateTime(to, QTime(0, 0)));
}

void KVDView::setRange(const QDateTime& from, const QDateTime& to)
{
    const QDateTime old = start;
    start = from;
    end = to;
    m_appliedShift = old.secsTo(start);
    if (datesSet)
        rebase(true);
}

void KVDView::drag(qint64 seconds)
{
    start = start.addSecs(seconds);
    end = end.addSecs(seconds);
    m_appliedShift = seconds;
    rebase(false);
}
