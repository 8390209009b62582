#ifndef QASTVIEWERPLUGIN_H
#define QASTVIEWERPLUGIN_H

#include "qgplugin.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>

class QARes;
class QAStViewerWindow;
class QToolBar;
class QWidget;

// A viewer plug-in as the host sees it: metadata, initialisation with the host
// interface, and creation of viewer windows. Windows created by create() belong to the
// parent the host gives them and delete themselves when closed.
class QAStViewerPlugin : public QGPlugin
{
    Q_OBJECT

public:
    QAStViewerPlugin();
    ~QAStViewerPlugin() override;

    virtual QString name() const = 0;
    virtual QString description() const = 0;
    virtual QString author() const = 0;
    virtual QString version() const = 0;
    // Called once, before any create(); unknown may be null when there is no host.
    virtual void initialize(QUnknownInterface* unknown, QARes* res) = 0;
    // File names and filters the viewer claims; empty for a viewer opened by command.
    virtual QStringList accept() const = 0;
    virtual QStringList filters() const = 0;
    virtual QAStViewerWindow* create(QStringList& files, QWidget* parent, const char* name) = 0;
    virtual QAStViewerWindow* create(QStringList& files, bool activate, QWidget* parent,
                                     const char* name) = 0;
    virtual void exportHTML(const QString& file, const QString& directory);
    virtual QAStViewerWindow* openedWindow(const QString& file) = 0;
    virtual void connectAccepted();
    virtual void connectRejected();
    // A preference page, or null; the caller owns it.
    virtual QWidget* preferenceSettings() = 0;
    virtual QString pluginName() const = 0;
    virtual QString pluginIcon() const = 0;
    virtual QString pluginDescription() const = 0;
    virtual QString pluginCompanyName() const = 0;
    virtual QString pluginCompanyIcon() const = 0;
    virtual QString pluginCompanyDescription() const = 0;
    virtual QString pluginCopyRight() const = 0;
    virtual QString pluginVersion() const = 0;
    virtual QDate pluginCreation() const = 0;
    // Tool bars the host should show for this plug-in; the host owns them.
    virtual QList<QToolBar*> toolbars() = 0;
};

#endif
