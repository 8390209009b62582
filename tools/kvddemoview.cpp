#include "kvddemoview.h"
#include "kvdcli.h"
#include "kvdcurve.h"
#include "kvdheadlesshost.h"
#include "kvdsamplewriter.h"
#include "kvdshell.h"
#include "kvdview.h"

#include <QColor>
#include <QDateTime>

namespace {

const QString Lines = QStringLiteral("lines2");
const QString LinesRatio = QStringLiteral("_EDITED_METRIC_lines2");

// One record a day: the code base grows and its tests catch up with it, with a dip now
// and then, so that the ratio has something to tell.
QList<KVDSampleWriter::Record> linesRecords(int days, const QDate& end, int user)
{
    QList<KVDSampleWriter::Record> records;
    const QDateTime first(end.addDays(1 - days), QTime(18, 0), Qt::UTC);
    for (int d = 0; d < days; ++d) {
        const quint32 total = quint32(6000 + 40 * d + 700 * user);
        const quint32 percent =
            quint32(52 + 30 * d / qMax(1, days - 1) - (d % 17 == 5 ? 6 : 0) - 4 * user);
        records.append(
            {quint32(first.addDays(d).toSecsSinceEpoch()), 1, {total * percent / 100, total}});
    }
    return records;
}

struct Pick
{
    const char* measure; // a label or field name that selects the measure
    int field;
    int user; // index into the users
    QColor color;
};

} // namespace

bool KVDDemoView::write(const QString& root, const QStringList& users, int days, const QDate& end,
                        QString* error)
{
    const int shown = qMin(2, int(users.size()));
    for (int u = 0; u < users.size(); ++u)
        if (!KVDSampleWriter::writePair(root, QStringLiteral("lines"), users[u], 2,
                                        linesRecords(days, end, u), error))
            return false;

    KVDHeadlessHost host{QString()};
    if (!host.isValid(error))
        return false;
    KVDShell* before = KVDShell::current();
    KVDShell::install(&host);
    KVDView view;
    bool ok = view.load(root, QString(), false);
    if (ok) {
        // The scan gave the lines measure numbered fields; the ratio needs its key as label.
        auto& definitions = view.config->definitions;
        definitions.remove(Lines);
        definitions.insert(
            Lines,
            {{0, Lines}, {1, QStringLiteral("Lines covered")}, {2, QStringLiteral("Lines")}});
        definitions.insert(LinesRatio, {{0, QStringLiteral("Line coverage (%)")},
                                        {1, QStringLiteral("Covered of all lines")}});
        // The view opens on the last three months; a curve's load may move the start to its
        // first record, so the range is set again once they are all there.
        const QDateTime to(end.addDays(1), QTime(0, 0));
        const QDateTime from = to.addDays(-qMin(days, 91));
        view.start = from;
        view.end = to;
        view.datesSet = true;
        // One field of a measure shows once whatever the user: the users show different ones.
        const Pick picks[] = {{"Coverage", 1, 0, QColor(31, 119, 180)},
                              {"Coverage", 2, 1, QColor(255, 127, 14)},
                              {"Test runs", 1, 0, QColor(44, 160, 44)},
                              {"Test runs", 2, 1, QColor(214, 39, 40)},
                              {"Line coverage (%)", 1, 0, QColor(148, 103, 189)}};
        QList<KVDCurve*> added;
        for (const Pick& pick : picks) {
            if (pick.user >= shown)
                continue;
            view.selectField(QString::fromLatin1(pick.measure));
            KVDCurve* curve = view.selectMeasure(pick.field, users[pick.user]);
            if (!curve) {
                ok = false;
                *error = KvdCli::tr("the demo curve %1 of %2 has no records")
                             .arg(QString::fromLatin1(pick.measure), users[pick.user]);
                break;
            }
            curve->color = pick.color;
            added << curve;
        }
        if (ok) {
            view.setRange(from, to);
            view.firstScale = added.value(0);
            view.secondScale = added.value(2, added.value(0));
            view.events.add(from.date().addDays(20), QStringLiteral("Release 2.3"));
            view.events.add(from.date().addDays(48), QStringLiteral("Parser tests added"));
            view.events.add(from.date().addDays(76), QStringLiteral("Release 2.4"));
            view.lastColor = added.last()->color;
            view.storeView();
        }
    }
    KVDShell::install(before);
    if (!ok && error->isEmpty())
        *error = KvdCli::tr("%1 cannot be loaded").arg(root);
    return ok;
}
