#ifndef FUZZSHELL_H
#define FUZZSHELL_H

#include "kvdshell.h"
#include "studiointerface.h"

#include <QCoreApplication>
#include <QString>
#include <QTemporaryDir>

#include <ctime>

// What the configuration code needs around it when a fuzzer drives it: an application
// object, a host whose data directory is a private temporary directory, and a shell that
// counts messages instead of showing them. One per fuzzer process.
class FuzzShell : public StudioInterface, public KVDShell
{
public:
    FuzzShell()
    {
        static int argc = 1;
        static char name[] = "fuzz";
        static char* argv[] = {name, nullptr};
        // Stored dates are wall-clock counts read back as UTC: a fixed zone keeps runs alike.
        qputenv("TZ", "UTC");
        tzset();
        if (!QCoreApplication::instance())
            new QCoreApplication(argc, argv); // lives as long as the process
        install(this);
    }
    ~FuzzShell() override { install(nullptr); }

    QString dir() const { return m_dir.path(); }

    bool queryInterface(const QUuid&, QUnknownInterface** iface) override
    {
        *iface = nullptr;
        return false;
    }
    QMainWindow* mainWindow() const override { return nullptr; }
    QString title() const override { return QStringLiteral("Fuzz"); }
    bool queryObject(const QString&, const QUuid&, QUnknownInterface** object) override
    {
        *object = nullptr;
        return false;
    }
    int insertMenu(const QString&, QMenu*) override { return -1; }
    void removeMenu(int) override {}
    void progressStart(int, const QString&, const QString&, QObject*, int) override {}
    void progressStep(int) override {}
    void progressEnd() override {}
    QString directory() const override { return m_dir.path(); }

    StudioInterface* studio() const override { return const_cast<FuzzShell*>(this); }
    void warning(const QString&) override { ++messages; }
    void critical(const QString&) override { ++messages; }
    QString currentUser() const override { return QStringLiteral("alice"); }

    int messages = 0;

private:
    QTemporaryDir m_dir;
};

#endif
