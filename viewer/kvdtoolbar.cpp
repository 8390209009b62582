#include "kvdtoolbar.h"
#include "getpix.h"
#include "kvdicons.h"
#include "qakvd.h"

#include <QAction>
#include <QMainWindow>
#include <QPointer>
#include <QToolBar>
#include <QToolButton>

namespace {

QPointer<QToolBar> Bar;

struct ToolButtonInfo
{
    const char* icon;
    const char* const* const* xpm;
    const char* tip;
    const char* whatsThis;
    bool toggle;
    void (QAKVD::*slot)();
};

const ToolButtonInfo ToolButtons[] = {
    {"kvd_clear_xpm", &kvd_clear_xpm_data, QT_TRANSLATE_NOOP("QAKVD", "Clear"),
     QT_TRANSLATE_NOOP("QAKVD", "<b> Clear </b><br>Clears all graphics from the viewer window"),
     false, &QAKVD::clean},
    {"kvd_hide_xpm", &kvd_hide_xpm_data, QT_TRANSLATE_NOOP("QAKVD", "Hide Events"),
     QT_TRANSLATE_NOOP("QAKVD",
                       "<b> Hide Events </b><br>Hides all events markers in the viewer window"),
     false, &QAKVD::EventHide},
    {"kvd_float_xpm", &kvd_float_xpm_data, QT_TRANSLATE_NOOP("QAKVD", "Floating Schedule"),
     QT_TRANSLATE_NOOP("QAKVD", "<b> Floating Schedule </b><br>Toggles positioning of the calendar "
                                "depending on displayed values"),
     true, &QAKVD::FloatSc},
};

QToolButton* addToolButton(const ToolButtonInfo& info)
{
    auto* button = new QToolButton(Bar);
    button->setIcon(GETPIX(info.icon, *info.xpm));
    button->setToolTip(QAKVD::tr(info.tip));
    button->setWhatsThis(QAKVD::tr(info.whatsThis));
    button->setCheckable(info.toggle);
    Bar->addWidget(button);
    return button;
}

} // namespace

void KVDToolBar::create(QMainWindow* mainWindow)
{
    Bar = new QToolBar(QAKVD::tr("Kavendi"), mainWindow);
    Bar->setObjectName(QStringLiteral("kavendi-toolbar"));
    mainWindow->addToolBar(Qt::TopToolBarArea, Bar);
    reset();
}

void KVDToolBar::reset()
{
    if (!Bar)
        return;
    for (const ToolButtonInfo& info : ToolButtons)
        addToolButton(info)->setEnabled(false);
}

void KVDToolBar::attach(QAKVD* window)
{
    if (!Bar)
        return;
    // clear() hands the previous buttons back without a parent; they go with their actions.
    const QList<QAction*> previous = Bar->actions();
    Bar->clear();
    qDeleteAll(previous);
    Bar->setEnabled(true);
    for (const ToolButtonInfo& info : ToolButtons)
        QObject::connect(addToolButton(info), &QToolButton::clicked, window, info.slot);
}

void KVDToolBar::setEnabled(bool enabled)
{
    if (Bar)
        Bar->setEnabled(enabled);
}

QToolBar* KVDToolBar::bar()
{
    return Bar;
}
