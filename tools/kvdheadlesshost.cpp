#include "kvdheadlesshost.h"
#include "kvdcli.h"
#include "kvdtoolkitsetup.h"

#include <QFile>
#include <QFileInfo>

#include <cstdio>

KVDHeadlessHost::KVDHeadlessHost(const QString& builtin)
{
    if (builtin.isEmpty()) {
        m_directory = KvdToolkitSetup::dataDirectory();
        return;
    }
    // The viewer reads the definitions under a fixed name in the host directory; a file
    // of another name is copied there.
    m_error = KvdCli::notRegularFile(builtin);
    if (m_error.isEmpty() && !QFileInfo::exists(builtin))
        m_error = KvdCli::tr("%1: no such file").arg(builtin);
    if (!m_error.isEmpty())
        return;
    m_copy = std::make_unique<QTemporaryDir>();
    m_directory = m_copy->path();
    if (!QFile::copy(builtin, m_directory + QLatin1String("/KVD_built_in.cfg")))
        m_error = KvdCli::tr("%1: cannot be read").arg(builtin);
}

bool KVDHeadlessHost::isValid(QString* error) const
{
    if (error)
        *error = m_error;
    return m_error.isEmpty();
}

bool KVDHeadlessHost::queryInterface(const QUuid& iid, QUnknownInterface** iface)
{
    if (!iface)
        return false;
    *iface = (iid == IID_QUnknown || iid == IID_StudioInterface) ? this : nullptr;
    return *iface != nullptr;
}

void KVDHeadlessHost::warning(const QString& text)
{
    const QString line = text.endsWith(QLatin1Char('\n')) ? text : text + QLatin1Char('\n');
    std::fputs(line.toLocal8Bit().constData(), stderr);
}

bool KVDHeadlessHost::queryObject(const QString&, const QUuid&, QUnknownInterface** object)
{
    if (object)
        *object = nullptr;
    return false;
}
