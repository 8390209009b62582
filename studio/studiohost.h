#ifndef STUDIOHOST_H
#define STUDIOHOST_H

#include "studiointerface.h"
#include "studioproject.h"

#include <QElapsedTimer>
#include <QMap>
#include <QPointer>
#include <QString>

class QAction;
class QProgressDialog;

// The host services handed to plug-ins, bound to one main window.
class StudioHost : public StudioInterface
{
public:
    StudioHost(QMainWindow* mainWindow, const QString& title, const QString& dataDirectory);
    ~StudioHost() override;

    bool queryInterface(const QUuid& iid, QUnknownInterface** iface) override;
    QMainWindow* mainWindow() const override;
    QString title() const override;
    bool queryObject(const QString& name, const QUuid& iid, QUnknownInterface** object) override;
    int insertMenu(const QString& title, QMenu* menu) override;
    void removeMenu(int id) override;
    void progressStart(int totalSteps, const QString& label, const QString& cancelText,
                       QObject* parent, int flags) override;
    void progressStep(int progress) override;
    void progressEnd() override;
    QString directory() const override;

    StudioProject& project() { return m_project; }
    // Menus currently inserted, by id.
    int menuCount() const { return int(m_menus.size()); }

private:
    QMainWindow* m_mainWindow = nullptr;
    QString m_title;
    QString m_dataDirectory;
    StudioProject m_project;
    QMap<int, QPointer<QAction>> m_menus;
    int m_nextMenuId = 1;
    QProgressDialog* m_progress = nullptr;
    QElapsedTimer m_sinceStart;
    QElapsedTimer m_sinceRedraw;
    int m_progressValue = 0;
};

#endif
