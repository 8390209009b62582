#ifndef STUDIOPLUGINLOADER_H
#define STUDIOPLUGINLOADER_H

#include <QCoreApplication>
#include <QString>

class QAStViewerPlugin;

// Loads a viewer plug-in library through its two entry points, ucm_instantiate and
// qt_ucm_query_verification_data, and checks its verification record against the
// host's own toolkit.
class StudioPluginLoader
{
    Q_DECLARE_TR_FUNCTIONS(StudioPluginLoader)

public:
    // The plug-in object, owned by the library, or null with the reason in *error.
    static QAStViewerPlugin* load(const QString& path, QString* error);
};

#endif
