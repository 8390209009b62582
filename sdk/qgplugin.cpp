#include "qgplugin.h"

namespace {

class Component : public QGPluginInterface
{
public:
    explicit Component(QGPlugin* plugin) : m_plugin(plugin) {}

    bool queryInterface(const QUuid& iid, QUnknownInterface** iface) override
    {
        if (!iface)
            return false;
        *iface = (iid == IID_QUnknown || iid == IID_QGPlugin) ? this : nullptr;
        return *iface != nullptr;
    }
    QGPlugin* plugin() const override { return m_plugin; }

private:
    QGPlugin* m_plugin = nullptr;
};

} // namespace

QGPlugin::QGPlugin(QObject* parent) : QObject(parent), m_iface(std::make_unique<Component>(this)) {}

QGPlugin::~QGPlugin() = default;

QUnknownInterface* QGPlugin::iface()
{
    return m_iface.get();
}
