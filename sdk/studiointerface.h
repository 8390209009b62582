#ifndef STUDIOINTERFACE_H
#define STUDIOINTERFACE_H

#include "qunknowninterface.h"

#include <QString>

class QMainWindow;
class QMenu;
class QObject;

// The host's project, found through StudioInterface::queryObject("Project", IID_ProjectInterface).
class ProjectInterface : public QUnknownInterface
{
public:
    virtual bool isOpen() const = 0;
    virtual QString directory() const = 0;
};

// What the host offers its plug-ins. Obtained from the unknown interface handed to
// QAStViewerPlugin::initialize with IID_StudioInterface; owned by the host and valid
// for as long as the plug-in is loaded.
class StudioInterface : public QUnknownInterface
{
public:
    // The host's main window: parent of message boxes and home of tool bars.
    virtual QMainWindow* mainWindow() const = 0;
    // Caption of the host's message boxes and dialogs.
    virtual QString title() const = 0;
    // Looks up a named host object offering the interface iid; false and a null
    // *object when there is none. The host keeps ownership.
    virtual bool queryObject(const QString& name, const QUuid& iid, QUnknownInterface** object) = 0;
    // Puts menu into the host's menu bar under title and answers an id for removeMenu.
    // The caller keeps ownership of menu.
    virtual int insertMenu(const QString& title, QMenu* menu) = 0;
    virtual void removeMenu(int id) = 0;
    // The host's progress display: one at a time. step() may be called once per record,
    // so it must be cheap; the display shows itself only for long work.
    virtual void progressStart(int totalSteps, const QString& label, const QString& cancelText,
                               QObject* parent, int flags) = 0;
    virtual void progressStep(int progress) = 0;
    virtual void progressEnd() = 0;
    // The host's data directory (the built-in measure definitions live there).
    virtual QString directory() const = 0;
};

#endif
