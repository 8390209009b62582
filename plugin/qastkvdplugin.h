#ifndef QASTKVDPLUGIN_H
#define QASTKVDPLUGIN_H

#include "qastviewerplugin.h"

class StudioInterface;

// The plug-in object the host instantiates: metadata, and creation of chart viewers.
class QAStKvdPlugin : public QAStViewerPlugin
{
    Q_OBJECT

public:
    QAStKvdPlugin();

    QString name() const override;
    QString description() const override;
    QString author() const override;
    QString version() const override;
    void initialize(QUnknownInterface* unknown, QARes* res) override;
    QStringList accept() const override;
    QStringList filters() const override;
    QAStViewerWindow* create(QStringList& files, QWidget* parent, const char* name) override;
    QAStViewerWindow* create(QStringList& files, bool activate, QWidget* parent,
                             const char* name) override;
    void exportHTML(const QString& file, const QString& directory) override;
    QAStViewerWindow* openedWindow(const QString& file) override;
    void connectAccepted() override;
    void connectRejected() override;
    QWidget* preferenceSettings() override;
    QString pluginName() const override;
    QString pluginIcon() const override;
    QString pluginDescription() const override;
    QString pluginCompanyName() const override;
    QString pluginCompanyIcon() const override;
    QString pluginCompanyDescription() const override;
    QString pluginCopyRight() const override;
    QString pluginVersion() const override;
    QDate pluginCreation() const override;
    QList<QToolBar*> toolbars() override;

    // The host interface, null until initialize() receives one.
    static StudioInterface* studioIFace;
};

#endif
