#include "qastkvdplugin.h"
#include "qakvd.h"
#include "qatranslation.h"
#include "qucmverification.h"
#include "studiointerface.h"

#include <QToolBar>

StudioInterface* QAStKvdPlugin::studioIFace = nullptr;

QAStKvdPlugin::QAStKvdPlugin()
{
    // A host that has put our catalogue in already answers its language here; any other
    // host gets the catalogue of the user's language now, before the first text is asked.
    if (tr("en", "Language code of this catalogue") == QLatin1String("en"))
        QATranslation::install(QStringLiteral("kavendi"), QStringLiteral(":/i18n"));
}

QString QAStKvdPlugin::name() const
{
    return QStringLiteral("Kvd");
}

QString QAStKvdPlugin::description() const
{
    return tr("The Kavendi", "KVD Plugin Description");
}

QString QAStKvdPlugin::author() const
{
    return tr("Orvane Quillon Gui Team", "KVD Plugin Author");
}

// version() and pluginVersion() deliberately answer different numbers; hosts show both.
QString QAStKvdPlugin::version() const
{
    return tr("Version 1.0.0", "KVD Plugin Version");
}

void QAStKvdPlugin::initialize(QUnknownInterface* unknown, QARes* res)
{
    if (unknown) {
        QUnknownInterface* answer = nullptr;
        unknown->queryInterface(IID_StudioInterface, &answer);
        studioIFace = static_cast<StudioInterface*>(answer);
    }
    QAKVD::initialize(res, studioIFace);
}

QStringList QAStKvdPlugin::accept() const
{
    return {};
}

QStringList QAStKvdPlugin::filters() const
{
    return {};
}

QAStViewerWindow* QAStKvdPlugin::create(QStringList& files, QWidget* parent, const char* name)
{
    return create(files, true, parent, name);
}

QAStViewerWindow* QAStKvdPlugin::create(QStringList&, bool activate, QWidget* parent,
                                        const char* name)
{
    return new QAKVD(parent, name, WDestructiveClose, activate);
}

void QAStKvdPlugin::exportHTML(const QString&, const QString&) {}

QAStViewerWindow* QAStKvdPlugin::openedWindow(const QString&)
{
    return nullptr;
}

void QAStKvdPlugin::connectAccepted() {}

void QAStKvdPlugin::connectRejected() {}

QWidget* QAStKvdPlugin::preferenceSettings()
{
    return nullptr;
}

QString QAStKvdPlugin::pluginName() const
{
    return tr("Orvane Quillon Kavendi", "Plugin Name");
}

QString QAStKvdPlugin::pluginIcon() const
{
    return QString();
}

QString QAStKvdPlugin::pluginDescription() const
{
    return tr("Orvane Quillon Kavendi Description", "Plugin Description");
}

QString QAStKvdPlugin::pluginCompanyName() const
{
    return tr("Orvane", "Plugin Company Name");
}

QString QAStKvdPlugin::pluginCompanyIcon() const
{
    return QStringLiteral("logo_90x90.xpm");
}

QString QAStKvdPlugin::pluginCompanyDescription() const
{
    return tr("Orvane and Quillon are trademarks of Orvane.", "Plugin Company Description");
}

QString QAStKvdPlugin::pluginCopyRight() const
{
    return tr("Orvane", "Plugin CopyRight");
}

QString QAStKvdPlugin::pluginVersion() const
{
    return tr("Version 1.1.0", "Plugin Version");
}

QDate QAStKvdPlugin::pluginCreation() const
{
    return QDate::currentDate();
}

QList<QToolBar*> QAStKvdPlugin::toolbars()
{
    return {};
}

// Entry points the host resolves by name.
extern "C" Q_DECL_EXPORT QUnknownInterface* ucm_instantiate()
{
    // One plug-in object per process; it lives as long as the library is loaded.
    static QAStKvdPlugin* plugin = new QAStKvdPlugin;
    return plugin->iface();
}

extern "C" Q_DECL_EXPORT const char* qt_ucm_query_verification_data()
{
    return QUCM_VERIFICATION_DATA;
}
