#include "kvdpopups.h"
#include "kvdconfig.h"
#include "kvdcurve.h"
#include "kvdcurvesummary.h"
#include "kvdevent.h"
#include "kvdeventset.h"
#include "kvdview.h"
#include "qakvd.h"
#include "studiointerface.h"

#include <QColorDialog>
#include <QInputDialog>
#include <QMenu>

#include <algorithm>
#include <array>
#include <cmath>

KVDPopups::KVDPopups(KVDView& view, QWidget* window) : m_view(view), m_window(window) {}

void KVDPopups::rightClick(const QPoint& pos, const QPoint& globalPos, double paperWidth)
{
    const double plotWidth = paperWidth - 305;
    const qint64 fromEpoch = QDateTime(QDate(1970, 1, 1), QTime(0, 0)).secsTo(m_view.start);
    const qint64 pointerTime = qint64(double(fromEpoch) + double(m_view.start.secsTo(m_view.end)) /
                                                              plotWidth * (pos.x() - 55));
    const QDateTime pointer = QDateTime::fromSecsSinceEpoch(pointerTime);

    bool shown = false;
    for (int index = int(m_view.curves.size()) - 1; index >= 0; --index) {
        if (index >= m_view.curves.size())
            continue;
        KVDCurve* curve = m_view.curves[index];
        if (!curve->hasPoints() || !curveHit(curve, pos))
            continue;
        shown = true;
        if (runCurvePopup(index, globalPos, pointer))
            break;
    }
    if (!shown)
        runChartPopup(globalPos, pointer);
}

bool KVDPopups::createEvent(unsigned int time)
{
    KVDEventSet dialog(m_window, nullptr, 0, time);
    if (dialog.exec() == QDialog::Rejected)
        return false;
    return m_view.events.add(dialog.eventDate(), dialog.label());
}

bool KVDPopups::curveHit(const KVDCurve* curve, const QPoint& pos)
{
    const double top = curve->displayMax;
    const double bottom = curve->minValue;
    const bool fromZero = curve->fixedScale || top == bottom;
    if (fromZero && top == 0)
        return false;
    const double band = curve->paperHeight - 150;
    const double sx = (curve->paperWidth - 305) / curve->span;
    auto deviceX = [&](const QPoint& p) { return p.x() * sx + 55; };
    auto deviceY = [&](const QPoint& p) {
        const double v = -double(p.y());
        return fromZero ? curve->paperHeight - 100 - v * band / top
                        : 50 + (top - v) * band / (top - bottom);
    };
    const double px = pos.x();
    const double py = pos.y();
    int previous = -1;
    bool hit = false;
    // One segment is tested: the first one that spans the pointer.
    auto step = [&](int i) {
        const QPoint point = curve->pointAt(i);
        const double x1 = deviceX(point);
        if (x1 < px) {
            previous = i;
            return true;
        }
        if (!(x1 > px) || previous < 0)
            return true;
        const QPoint before = curve->pointAt(previous);
        const double y1 = deviceY(point);
        const double x0 = deviceX(before);
        const double y0 = deviceY(before);
        const double low = std::min(y1 - 2, y0 + 2);
        const double high = std::max(y1 - 2, y0 + 2);
        if (!(low < py && py < high))
            return false;
        const double numerator = (px - x0) * (y1 - y0) - (py - y0) * (x1 - x0);
        const double denominator = (x1 - x0) * (x1 - x0) + (y1 - y0) * (y1 - y0);
        const double d =
            denominator != 0 ? numerator * numerator / denominator : numerator * numerator;
        if (i >= 2) {
            const QPoint twoBack = curve->pointAt(i - 2);
            const double x2 = deviceX(twoBack);
            const double y2 = deviceY(twoBack);
            const double n2 = (px - x2) * (y0 - y2) - (py - y2) * (x0 - x2);
            const double d2den = (x0 - x2) * (x0 - x2) + (y0 - y2) * (y0 - y2);
            const double d2 = d2den != 0 ? n2 * n2 / d2den : 1000.0;
            if (!(x2 > px) && d2 < 25) {
                hit = true;
                return false;
            }
        }
        hit = d < 25;
        return false;
    };
    // Runs wholly left of the pointer only move the previous point to their last; runs
    // none of whose points lies left of it change nothing until a previous point exists,
    // and a run all on the pointer's x never does. With a finite scale x grows or shrinks
    // with the stored x, so a run's extremes bound it.
    const bool monotone = std::isfinite(sx);
    const quint32 shift = curve->pendingShift();
    auto node = [&](const KVDCurveSummary::Node& run, int, int end) {
        qint32 a = 0;
        qint32 b = 0;
        if (!monotone || !KVDCurveSummary::shiftedX(run, shift, &a, &b))
            return KVDCurveSummary::Visit::Descend;
        const double low = std::min(a * sx + 55, b * sx + 55);
        const double high = std::max(a * sx + 55, b * sx + 55);
        if (high < px) {
            previous = end - 1;
            return KVDCurveSummary::Visit::Skip;
        }
        if (low >= px && (previous < 0 || high == px))
            return KVDCurveSummary::Visit::Skip;
        return KVDCurveSummary::Visit::Descend;
    };
    curve->summary().walk(0, curve->pointCount(), node, step);
    return hit;
}

namespace {

// The event submenu both pop-ups end with: set, delete and hide, in that order.
std::array<QAction*, 3> addEventMenu(QMenu& popup, const QString& title)
{
    QMenu* menu = popup.addMenu(title);
    return {menu->addAction(QAKVD::tr("Set Event", "Menu Item")),
            menu->addAction(QAKVD::tr("Delete Event", "Menu Item")),
            menu->addAction(QAKVD::tr("Hide Event", "Menu Item"))};
}

} // namespace

bool KVDPopups::runCurvePopup(int& index, const QPoint& globalPos, const QDateTime& pointer)
{
    KVDCurve* curve = m_view.curves[index];
    QMenu popup(m_window);
    QMenu* properties = popup.addMenu(QAKVD::tr("Curve Properties", "Menu Item"));
    QAction* color = properties->addAction(QAKVD::tr("Change Curve Color", "Menu Item"));
    QAction* hide = properties->addAction(QAKVD::tr("Hide Curve", "Menu Item"));
    QAction* max = properties->addAction(QAKVD::tr("Set Max Value", "Menu Item"));
    QAction* label = properties->addAction(QAKVD::tr("Change Label", "Menu Item"));
    QAction* right = properties->addAction(QAKVD::tr("Scale Right", "Menu Item"));
    QAction* left = properties->addAction(QAKVD::tr("Scale Left", "Menu Item"));
    popup.addSeparator();
    const auto [setEvent, deleteEvent, hideEvent] =
        addEventMenu(popup, QAKVD::tr("Event Properties", "Menu Item"));
    const QDate day = pointer.date();
    if (m_view.events.IsNearTag(day)) {
        setEvent->setEnabled(false);
    } else {
        deleteEvent->setEnabled(false);
        hideEvent->setEnabled(false);
    }

    QAction* chosen = popup.exec(globalPos);
    if (!chosen)
        return false;
    const QString caption = QAKVD::iface() ? QAKVD::iface()->title()
                                           : QAKVD::tr("Kavendi", "Default title for message box");
    if (chosen == color) {
        const QColor picked = QColorDialog::getColor(curve->color, m_window);
        if (picked.isValid())
            curve->color = picked;
        curve->hasColor = true;
        return true;
    }
    if (chosen == left) {
        m_view.firstScale = curve;
        return true;
    }
    if (chosen == right) {
        m_view.secondScale = curve;
        return true;
    }
    if (chosen == hide) {
        if (m_view.firstScale == curve)
            m_view.firstScale = nullptr;
        if (m_view.secondScale == curve)
            m_view.secondScale = nullptr;
        m_view.curves.removeAt(index);
        delete curve;
        // The list cursor after a removal rests on the curve that followed, or on the new
        // last one. Two steps back from there give the new left-scale curve; when the
        // first step finds none, the first curve takes the scale and the cursor is lost.
        int cursor = index < m_view.curves.size() ? index : int(m_view.curves.size()) - 1;
        if (cursor >= 0)
            --cursor;
        if (cursor >= 0) {
            --cursor;
            m_view.firstScale = cursor >= 0 ? m_view.curves[cursor] : nullptr;
        } else {
            m_view.firstScale = m_view.curves.isEmpty() ? nullptr : m_view.curves.first();
            cursor = -1;
        }
        // The scan of the remaining curves goes on backwards from the cursor.
        index = cursor;
        return false;
    }
    if (chosen == max) {
        bool ok = false;
        const int bottom = int(curve->minValue);
        const int value =
            QInputDialog::getInt(m_window, caption, QStringLiteral("Enter the maximum value"),
                                 bottom, bottom, 1000000000, 1, &ok);
        if (ok) {
            curve->displayMax = value;
            curve->fixedScale = true;
        }
        return false;
    }
    if (chosen == label && m_view.config) {
        auto definition = m_view.config->definitions.find(curve->name);
        const QString current = definition != m_view.config->definitions.end()
                                    ? definition->value(curve->field)
                                    : QString();
        bool ok = false;
        const QString text = QInputDialog::getText(m_window, caption, QAKVD::tr("Enter new label"),
                                                   QLineEdit::Normal, current, &ok);
        if (ok && definition != m_view.config->definitions.end())
            definition->insert(curve->field, text);
        return false;
    }
    if (chosen == setEvent) {
        createEvent(uint(pointer.toSecsSinceEpoch()));
        return false;
    }
    if (KVDEvent* event = m_view.events.on(day)) {
        if (chosen == hideEvent) {
            event->visible = false;
        } else if (chosen == deleteEvent) {
            m_view.events.items().removeOne(event);
            delete event;
        }
    }
    return false;
}

void KVDPopups::runChartPopup(const QPoint& globalPos, const QDateTime& pointer)
{
    QMenu popup(m_window);
    QMenu* properties = popup.addMenu(QAKVD::tr("Curve Properties", "Menu Item"));
    properties->setEnabled(false);
    popup.addSeparator();
    // Deliberately spelt with a small "p" here.
    const auto [setEvent, deleteEvent, hideEvent] =
        addEventMenu(popup, QAKVD::tr("Event properties", "Menu Item"));
    const QDate day = pointer.date();
    KVDEvent* existing = m_view.events.on(day);
    if (existing) {
        setEvent->setText(QAKVD::tr("Edit Event", "Menu Item"));
    } else {
        deleteEvent->setEnabled(false);
        hideEvent->setEnabled(false);
    }

    QAction* chosen = popup.exec(globalPos);
    if (!chosen)
        return;
    if (chosen == setEvent) {
        // The day's event steps aside while the dialog runs, and comes back at the end of
        // the list when no new one replaces it.
        if (existing)
            m_view.events.items().removeOne(existing);
        if (!createEvent(uint(pointer.toSecsSinceEpoch()))) {
            if (existing)
                m_view.events.items().append(existing);
        } else {
            delete existing;
        }
    } else if (existing && chosen == hideEvent) {
        existing->visible = false;
    } else if (existing && chosen == deleteEvent) {
        m_view.events.items().removeOne(existing);
        delete existing;
    }
}
