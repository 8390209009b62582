#include "kvdmenu.h"
#include "kvdconfig.h"
#include "kvdview.h"
#include "qakvd.h"
#include "studiointerface.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>

namespace {

const QLatin1String EditedMetric("_EDITED_METRIC_");

} // namespace

KVDMenu::~KVDMenu()
{
    if (m_menuId != -1 && QAKVD::iface())
        QAKVD::iface()->removeMenu(m_menuId);
    delete m_menu;
}

void KVDMenu::remove()
{
    StudioInterface* host = QAKVD::iface();
    if (!host || m_menuId == -1)
        return;
    host->removeMenu(m_menuId);
    if (m_menu)
        m_menu->clear();
    m_menuId = -1;
}

QAction* KVDMenu::item(int id) const
{
    if (!m_menu || id == 0)
        return nullptr;
    QList<QMenu*> pending{m_menu};
    while (!pending.isEmpty()) {
        QMenu* menu = pending.takeFirst();
        for (QAction* action : menu->actions()) {
            if (action->data().isValid() && action->data().toInt() == id)
                return action;
            if (action->menu())
                pending.append(action->menu());
        }
    }
    return nullptr;
}

void KVDMenu::checkScale(int id)
{
    if (m_checkedScale != 0) {
        if (QAction* previous = item(m_checkedScale))
            previous->setChecked(false);
        m_checkedScale = id;
    } else if (QAction* scale = item(id)) {
        // Checked in the menu but deliberately not recorded.
        scale->setChecked(true);
    }
    if (QAction* scale = id != 0 ? item(id) : nullptr)
        scale->setChecked(true);
}

void KVDMenu::setExportEnabled(bool enabled)
{
    if (QAction* exportItem = item(m_exportId))
        exportItem->setEnabled(enabled);
}

bool KVDMenu::build(QAKVD* window, const KVDView& view, const QString& user)
{
    StudioInterface* host = QAKVD::iface();
    if (!host || m_menuId != -1 || !view.config)
        return false;
    if (!m_menu)
        m_menu = new QMenu(host->mainWindow());
    // The submenus of an earlier build go with its items.
    m_menu->clear();
    qDeleteAll(m_menu->findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly));
    m_menuId = host->insertMenu(QAKVD::tr("&Kavendi", "Menu Item"), m_menu);

    // "Monitoring": one submenu per measure the current user may see.
    auto* monitoring = new QMenu(QAKVD::tr("Monitoring", "Menu Item"), m_menu);
    const KVDConfig& config = *view.config;
    const auto userIt = config.users.constFind(user);
    QString previousTitle;
    int measures = 0;
    for (auto it = config.definitions.cbegin(); it != config.definitions.cend(); ++it) {
        if (userIt == config.users.constEnd()) {
            QAKVD::warningBox(QAKVD::tr("Nothing to display for user %1\n").arg(user));
            delete monitoring;
            return false;
        }
        const QStringList& userMeasures = userIt.value();
        const QString& key = it.key();
        bool visible = userMeasures.contains(key);
        if (key.left(EditedMetric.size()) == EditedMetric &&
            userMeasures.contains(key.mid(EditedMetric.size())))
            visible = true;
        if (!visible)
            continue;
        // The array of measure submenus had a fixed room of 500; beyond it measures are
        // left out rather than overflowing.
        if (++measures > 500)
            break;
        const KVDDefinition& definition = it.value();
        auto* submenu = new QMenu(monitoring);
        QString title = previousTitle;
        if (!definition.isEmpty()) {
            title = definition.value(0);
            for (int i = 1; i < int(definition.size()); ++i) {
                QAction* field = submenu->addAction(definition.value(i));
                field->setData(i);
                QObject::connect(field, &QAction::triggered, window,
                                 [window, i] { window->SelectMeasure(i); });
            }
        }
        previousTitle = title;
        submenu->setTitle(title);
        QAction* entry = monitoring->addMenu(submenu);
        entry->setData(newMenuId());
        monitoring->setObjectName(key);
        // Deliberately one connection per visible measure: SelectField runs once per
        // visible measure on each highlight.
        QObject::connect(monitoring, &QMenu::hovered, window, [window](QAction* action) {
            if (action->data().isValid())
                window->SelectField(action->data().toInt());
        });
    }
    m_menu->addMenu(monitoring);

    // Each item hands its own id to its slot.
    auto wire = [this, window](QAction* action, void (QAKVD::*slot)(int)) {
        action->setData(newMenuId());
        QObject::connect(action, &QAction::triggered, window,
                         [window, action, slot] { (window->*slot)(action->data().toInt()); });
        return action;
    };
    wire(m_menu->addAction(QAKVD::tr("Custom Curves", "Menu Item")), &QAKVD::CustomCurveMenu);

    auto* scale = new QMenu(QAKVD::tr("Scale", "Menu Item"), m_menu);
    auto addScale = [this, window, scale](const QString& text, void (QAKVD::*slot)(int)) {
        QAction* scaleItem = scale->addAction(text);
        scaleItem->setCheckable(true);
        scaleItem->setData(newMenuId());
        QObject::connect(scaleItem, &QAction::triggered, window, [window, scaleItem, slot] {
            // The scale slots move the check mark themselves; undo the action's own toggle.
            scaleItem->setChecked(!scaleItem->isChecked());
            (window->*slot)(scaleItem->data().toInt());
        });
        return scaleItem;
    };
    QAction* year = addScale(QAKVD::tr("Year", "Menu Item"), &QAKVD::ScaleYear);
    QAction* month = addScale(QAKVD::tr("Month", "Menu Item"), &QAKVD::ScaleMonth);
    QAction* hour = addScale(QAKVD::tr("Hour", "Menu Item"), &QAKVD::ScaleHour);
    scale->addSeparator();
    QAction* customize = addScale(QAKVD::tr("Customize", "Menu Item"), &QAKVD::ScaleCustom);
    m_menu->addMenu(scale);

    wire(m_menu->addAction(QAKVD::tr("Events", "Menu Item")), &QAKVD::CallCreateEvent);

    auto* deletion = new QMenu(QAKVD::tr("Delete Record", "Menu Item"), m_menu);
    wire(deletion->addAction(QAKVD::tr("Custom Delete", "Menu Item")), &QAKVD::CustomDeletion);
    wire(deletion->addAction(QAKVD::tr("Range Delete", "Menu Item")), &QAKVD::RangeDeletion);
    m_menu->addMenu(deletion);
    m_menu->addSeparator();

    QAction* exportItem = m_menu->addAction(QAKVD::tr("Export", "Menu Item"));
    m_exportId = newMenuId();
    exportItem->setData(m_exportId);
    exportItem->setEnabled(!view.curves.isEmpty());
    QObject::connect(exportItem, &QAction::triggered, window,
                     [this, window] { window->ImportFile(m_exportId); });

    // "Month" is checked on insertion; the span of the view then decides.
    month->setChecked(true);
    QAction* checked = month;
    if (view.start.isValid() && view.end.isValid()) {
        const qint64 span = view.start.secsTo(view.end);
        checked = span == 31536000  ? year
                  : span == 2592000 ? month
                  : span == 100800  ? hour
                                    : customize;
    }
    for (QAction* scaleItem : {year, month, hour, customize})
        scaleItem->setChecked(scaleItem == checked);
    m_checkedScale = checked->data().toInt();
    return true;
}
