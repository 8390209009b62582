#include "studiopluginloader.h"
#include "qastviewerplugin.h"
#include "qucmverification.h"

#include <QFileInfo>
#include <QLibrary>

#include <cstring>

QAStViewerPlugin* StudioPluginLoader::load(const QString& path, QString* error)
{
    auto fail = [error, &path](const QString& why) -> QAStViewerPlugin* {
        if (error)
            *error = tr("%1: %2", "plug-in file, reason it is refused").arg(path, why);
        return nullptr;
    };
    if (!QFileInfo(path).isFile())
        return fail(tr("no such file"));

    // The library stays loaded for the life of the process: its objects are in use.
    QLibrary library(path);
    library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    if (!library.load())
        return fail(tr("not a loadable library (%1)").arg(library.errorString()));

    using Instantiate = QUnknownInterface* (*)();
    using Verification = const char* (*)();
    auto verification =
        reinterpret_cast<Verification>(library.resolve("qt_ucm_query_verification_data"));
    auto instantiate = reinterpret_cast<Instantiate>(library.resolve("ucm_instantiate"));
    if (!verification || !instantiate)
        return fail(tr("not a viewer plug-in (no %1 entry point)")
                        .arg(QLatin1String(verification ? "ucm_instantiate"
                                                        : "qt_ucm_query_verification_data")));
    const char* record = verification();
    if (!record || std::strcmp(record, QUCM_VERIFICATION_DATA) != 0)
        return fail(
            tr("built with another toolkit (%1)")
                .arg((record ? QString::fromLatin1(record) : tr("no record")).simplified()));

    QUnknownInterface* component = instantiate();
    QUnknownInterface* answer = nullptr;
    if (!component || !component->queryInterface(IID_QGPlugin, &answer) || !answer)
        return fail(tr("the component offers no plug-in interface"));
    auto* plugin =
        qobject_cast<QAStViewerPlugin*>(static_cast<QGPluginInterface*>(answer)->plugin());
    if (!plugin)
        return fail(tr("the plug-in is not a viewer plug-in"));
    return plugin;
}
