#include "kvdselection.h"
#include "kvdcli.h"
#include "kvdconfig.h"
#include "kvdcurve.h"
#include "kvdheadlesshost.h"
#include "kvdview.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

namespace {

QString listed(QStringList names)
{
    names.removeDuplicates();
    names.sort();
    return names.isEmpty() ? KvdCli::tr("none") : names.join(QLatin1String(", "));
}

} // namespace

KVDSelection::KVDSelection()
    : m_root(QStringLiteral("root"), QString(), QStringLiteral("R")),
      m_view(QStringLiteral("view")),
      m_curve(QStringLiteral("curve"), QString(), QStringLiteral("KEY:USER:FIELD")),
      m_from(QStringLiteral("from"), QString(), QStringLiteral("T")),
      m_to(QStringLiteral("to"), QString(), QStringLiteral("T")),
      m_builtin(QStringLiteral("builtin"), QString(), QStringLiteral("FILE"))
{
}

KVDSelection::~KVDSelection()
{
    // The viewer's code keeps the shell it was given; it must not outlive it.
    if (m_host && KVDShell::current() == m_host.get())
        KVDShell::install(nullptr);
}

QString KVDSelection::optionsHelp()
{
    return KvdCli::tr(
        "  --root R               the repository directory (required)\n"
        "  --view                 the view saved in R/KVD.cfg (the default without --curve)\n"
        "  --curve KEY:USER:FIELD adds field FIELD (from 1) of measure KEY (cov4) of USER,\n"
        "                         as the viewer's field menu does; may be repeated\n"
        "  --from T, --to T       the shown range, YYYY-MM-DD or YYYY-MM-DDTHH:MM:SS, local\n"
        "                         time; a bound left out stays where the chart has it (the\n"
        "                         last 30 days on a chart without curves)\n"
        "  --builtin FILE         measure definitions to use instead of the installed ones\n");
}

void KVDSelection::addOptions(QCommandLineParser& parser) const
{
    parser.addOptions({m_root, m_view, m_curve, m_from, m_to, m_builtin});
}

QDateTime KVDSelection::parseTime(const QString& text)
{
    // Only the two spelled-out forms: ISO's other variants (offsets, no seconds) would
    // quietly mean something else than local time.
    QDateTime time = QDateTime::fromString(text, QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
    if (!time.isValid()) {
        const QDate day = QDate::fromString(text, QStringLiteral("yyyy-MM-dd"));
        if (day.isValid())
            time = QDateTime(day, QTime(0, 0));
    }
    return time;
}

bool KVDSelection::read(const QCommandLineParser& parser, QString* error)
{
    if (!parser.isSet(m_root)) {
        *error = KvdCli::tr("--root R is required");
        return false;
    }
    m_rootPath = QDir::cleanPath(parser.value(m_root));
    const QFileInfo root(m_rootPath);
    if (!root.isDir()) {
        *error = root.exists() ? KvdCli::tr("%1: not a directory").arg(m_rootPath)
                               : KvdCli::tr("%1: no such directory").arg(m_rootPath);
        return false;
    }
    m_builtinPath = parser.value(m_builtin);

    m_curves.clear();
    for (const QString& value : parser.values(m_curve)) {
        // The user sits between the first and the last colon, so it may hold colons.
        const int first = int(value.indexOf(QLatin1Char(':')));
        const int last = int(value.lastIndexOf(QLatin1Char(':')));
        Curve curve;
        bool ok = first > 0 && last > first + 1;
        if (ok) {
            curve.key = value.left(first);
            curve.user = value.mid(first + 1, last - first - 1);
            curve.field = value.mid(last + 1).toInt(&ok, 10);
        }
        if (!ok) {
            *error =
                KvdCli::tr("--curve takes KEY:USER:FIELD, such as cov4:alice:1, not %1").arg(value);
            return false;
        }
        m_curves.append(curve);
    }
    m_savedView = parser.isSet(m_view) || m_curves.isEmpty();

    struct Time
    {
        const QCommandLineOption& option;
        QDateTime* value;
    };
    for (const Time& t : {Time{m_from, &m_start}, Time{m_to, &m_end}}) {
        *t.value = QDateTime();
        if (!parser.isSet(t.option))
            continue;
        *t.value = parseTime(parser.value(t.option));
        if (!t.value->isValid()) {
            *error = KvdCli::tr("--%1 takes YYYY-MM-DD or YYYY-MM-DDTHH:MM:SS, not %2")
                         .arg(t.option.names().constFirst(), parser.value(t.option));
            return false;
        }
    }
    if (m_start.isValid() && m_end.isValid() && m_end <= m_start) {
        *error = KvdCli::tr("--to must lie after --from");
        return false;
    }
    return true;
}

bool KVDSelection::apply(KVDView* view, QString* error)
{
    m_host = std::make_unique<KVDHeadlessHost>(m_builtinPath);
    if (!m_host->isValid(error))
        return false;
    KVDShell::install(m_host.get());

    // Never stored: the repository is only read.
    const QString saved = m_savedView ? m_rootPath + QLatin1String("/KVD.cfg") : QString();
    if (const QString refused = KvdCli::notRegularFile(saved); !refused.isEmpty()) {
        *error = refused;
        return false;
    }
    if (!view->load(m_rootPath, saved, false)) {
        *error = KvdCli::tr("%1 cannot be shown").arg(m_rootPath);
        return false;
    }
    view->datesSet = !view->curves.isEmpty();

    for (const Curve& curve : std::as_const(m_curves))
        if (!addCurve(view, curve, error))
            return false;

    if (m_start.isValid() || m_end.isValid()) {
        // An empty chart is a picture too: it shows the range asked for, and what it
        // shows by itself (the last 30 days) stands for the bound not given.
        const QDateTime now = QDateTime::currentDateTime();
        const QDateTime from = m_start.isValid() ? m_start
                               : view->datesSet  ? view->start
                                                 : now.addDays(-30);
        const QDateTime to = m_end.isValid() ? m_end : view->datesSet ? view->end : now;
        if (!from.isValid() || !to.isValid() || to <= from) {
            *error = KvdCli::tr("the range from %1 to %2 is empty")
                         .arg(from.toString(Qt::ISODate), to.toString(Qt::ISODate));
            return false;
        }
        view->setRange(from, to);
        view->datesSet = true;
    }
    return true;
}

bool KVDSelection::addCurve(KVDView* view, const Curve& curve, QString* error) const
{
    const QString name = QStringLiteral("%1:%2:%3").arg(curve.key, curve.user).arg(curve.field);
    const KVDConfig* config = view->config;
    if (!config->definitions.contains(curve.key)) {
        *error = KvdCli::tr("%1: no measure %2 (measures: %3)")
                     .arg(name, curve.key, listed(config->definitions.keys()));
        return false;
    }
    if (!config->users.contains(curve.user)) {
        *error = KvdCli::tr("%1: no user %2 (users: %3)")
                     .arg(name, curve.user, listed(config->users.keys()));
        return false;
    }
    if (!config->users.value(curve.user).contains(curve.key)) {
        *error = KvdCli::tr("%1: user %2 has no measure %3 (measures: %4)")
                     .arg(name, curve.user, curve.key, listed(config->users.value(curve.user)));
        return false;
    }
    const int fieldCount = int(config->definitions.value(curve.key).size()) - 1;
    if (curve.field < 1 || curve.field > fieldCount) {
        *error = KvdCli::tr("%1: %2 has fields 1 to %3").arg(name, curve.key).arg(fieldCount);
        return false;
    }
    // The viewer shows a field once, whichever user it was chosen for.
    for (const KVDCurve* shown : std::as_const(view->curves)) {
        if (shown->name == curve.key && shown->valueCount == fieldCount &&
            shown->field == curve.field) {
            *error = KvdCli::tr("%1: field %2 of %3 is shown already (for %4)")
                         .arg(name)
                         .arg(curve.field)
                         .arg(curve.key, shown->user);
            return false;
        }
    }
    view->selectedMeasure = curve.key;
    view->fieldCount = fieldCount;
    if (!view->selectMeasure(curve.field, curve.user)) {
        *error = KvdCli::tr("%1: no records to show").arg(name);
        return false;
    }
    return true;
}
