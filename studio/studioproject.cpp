#include "studioproject.h"

StudioProject::StudioProject(const QString& directory) : m_directory(directory) {}

bool StudioProject::queryInterface(const QUuid& iid, QUnknownInterface** iface)
{
    if (!iface)
        return false;
    *iface = (iid == IID_QUnknown || iid == IID_ProjectInterface) ? this : nullptr;
    return *iface != nullptr;
}

bool StudioProject::isOpen() const
{
    return !m_directory.isEmpty();
}

QString StudioProject::directory() const
{
    return m_directory;
}
