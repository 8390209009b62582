#ifndef STUDIOPROJECT_H
#define STUDIOPROJECT_H

#include "studiointerface.h"

// The host's "Project" object: open when the host was started with a project directory.
class StudioProject : public ProjectInterface
{
public:
    explicit StudioProject(const QString& directory = QString());

    bool queryInterface(const QUuid& iid, QUnknownInterface** iface) override;
    bool isOpen() const override;
    QString directory() const override;

    void setDirectory(const QString& directory) { m_directory = directory; }

private:
    QString m_directory;
};

#endif
