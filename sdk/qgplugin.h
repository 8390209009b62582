#ifndef QGPLUGIN_H
#define QGPLUGIN_H

#include "qunknowninterface.h"

#include <QObject>

#include <memory>

class QGPlugin;

// What the component interface of a plug-in answers for IID_QGPlugin.
class QGPluginInterface : public QUnknownInterface
{
public:
    virtual QGPlugin* plugin() const = 0;
};

// A component plug-in object. The host reaches it through iface(), which the
// plug-in's ucm_instantiate entry point returns.
class QGPlugin : public QObject
{
    Q_OBJECT

public:
    explicit QGPlugin(QObject* parent = nullptr);
    ~QGPlugin() override;

    // The component interface of this plug-in, owned by it and valid as long as it
    // lives. It answers IID_QUnknown with itself and IID_QGPlugin with a
    // QGPluginInterface leading back to this object.
    QUnknownInterface* iface();

private:
    std::unique_ptr<QGPluginInterface> m_iface;
};

#endif
