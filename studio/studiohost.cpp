#include "studiohost.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QProgressDialog>

namespace {
// The progress display appears only for work that lasts, and is redrawn at most this
// often, so that a step per record costs next to nothing.
constexpr int ShowAfterMs = 500;
constexpr int RedrawEveryMs = 50;
} // namespace

StudioHost::StudioHost(QMainWindow* mainWindow, const QString& title, const QString& dataDirectory)
    : m_mainWindow(mainWindow), m_title(title), m_dataDirectory(dataDirectory)
{
}

StudioHost::~StudioHost()
{
    delete m_progress;
}

bool StudioHost::queryInterface(const QUuid& iid, QUnknownInterface** iface)
{
    if (!iface)
        return false;
    *iface = (iid == IID_QUnknown || iid == IID_StudioInterface) ? this : nullptr;
    return *iface != nullptr;
}

QMainWindow* StudioHost::mainWindow() const
{
    return m_mainWindow;
}

QString StudioHost::title() const
{
    return m_title;
}

bool StudioHost::queryObject(const QString& name, const QUuid& iid, QUnknownInterface** object)
{
    if (!object)
        return false;
    *object = nullptr;
    if (name == QLatin1String("Project"))
        return m_project.queryInterface(iid, object);
    return false;
}

int StudioHost::insertMenu(const QString& title, QMenu* menu)
{
    if (!menu)
        return -1;
    menu->setTitle(title);
    const int id = m_nextMenuId++;
    m_menus.insert(id, m_mainWindow->menuBar()->addMenu(menu));
    return id;
}

void StudioHost::removeMenu(int id)
{
    const QPointer<QAction> action = m_menus.take(id);
    if (action)
        m_mainWindow->menuBar()->removeAction(action);
}

void StudioHost::progressStart(int totalSteps, const QString& label, const QString& cancelText,
                               QObject*, int)
{
    progressEnd();
    m_progress = new QProgressDialog(label, cancelText, 0, qMax(totalSteps, 1), m_mainWindow);
    m_progress->setWindowTitle(m_title);
    m_progress->setWindowModality(Qt::WindowModal);
    m_progress->setMinimumDuration(ShowAfterMs);
    m_progress->setAutoClose(false);
    m_progress->setAutoReset(false);
    m_progressValue = 0;
    m_sinceStart.start();
    m_sinceRedraw.start();
}

void StudioHost::progressStep(int progress)
{
    m_progressValue = progress;
    if (!m_progress || m_sinceRedraw.elapsed() < RedrawEveryMs)
        return;
    m_sinceRedraw.restart();
    if (m_sinceStart.elapsed() >= ShowAfterMs)
        m_progress->setValue(qMin(progress, m_progress->maximum()));
}

void StudioHost::progressEnd()
{
    delete m_progress;
    m_progress = nullptr;
}

QString StudioHost::directory() const
{
    return m_dataDirectory;
}
