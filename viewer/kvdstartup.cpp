#include "kvdstartup.h"
#include "kvdconfig.h"
#include "kvdview.h"
#include "qakvd.h"
#include "studiointerface.h"

#include <QDir>
#include <QFileDialog>

#include <cstdlib>

KVDStartup::KVDStartup(KVDView& view, QWidget* window) : m_view(view), m_window(window) {}

KVDStartup::~KVDStartup()
{
    // The variable was set from the directory dialog for this window only.
    if (m_rootFromDialog)
        putenv(const_cast<char*>("ZANTH_KVD_ROOT"));
}

bool KVDStartup::load()
{
    delete m_view.config;
    m_view.config = nullptr;
    ProjectInterface* project = nullptr;
    if (StudioInterface* host = QAKVD::iface()) {
        QUnknownInterface* answer = nullptr;
        host->queryObject(QStringLiteral("Project"), IID_ProjectInterface, &answer);
        project = static_cast<ProjectInterface*>(answer);
    }

    if (project && project->isOpen())
        m_view.root = project->directory();
    else if (m_view.perUserView)
        m_view.root = QString();
    if (!m_view.root.isNull()) {
        KVDConfig probe({}, m_view.perUserView);
        if (!probe.ScanRepository(m_view.root, false))
            m_view.root = QString();
    }

    if (m_view.root.isNull()) {
        const char* variable = std::getenv("ZANTH_KVD_ROOT");
        QString value = variable ? QString::fromLocal8Bit(variable) : QString();
        if (value.isNull()) {
            QAKVD::warningBox(QAKVD::tr("ZANTH_KVD_ROOT not set.\n"));
            value = QFileDialog::getExistingDirectory(m_window, QString(), QString(),
                                                      QFileDialog::ShowDirsOnly);
            if (value.isNull())
                return false;
            // Deliberately the chosen path itself, without a variable name, as the
            // environment entry; the destructor takes it back.
            static QByteArray entry;
            entry = value.toLocal8Bit();
            putenv(entry.data());
            m_rootFromDialog = true;
        }
        m_view.root = QDir::cleanPath(value);
    }
    return m_view.load(m_view.root, m_view.configPath(), true);
}

void KVDStartup::reload()
{
    m_view.load(m_view.root, m_view.configPath(), true, false);
}
