#ifndef KVDHEADLESSHOST_H
#define KVDHEADLESSHOST_H

#include "kvdshell.h"
#include "studiointerface.h"

#include <QString>
#include <QTemporaryDir>

#include <memory>

// The host services and the shell for kvd: no window, no menus, no progress display; the
// host data directory holds the built-in definitions the command reads. What the viewer
// would show in a message box goes to standard error, and no question is ever asked.
class KVDHeadlessHost : public StudioInterface, public KVDShell
{
public:
    // builtin: a definitions file to use instead of the installed one (any name), or empty.
    explicit KVDHeadlessHost(const QString& builtin);

    // False, with the reason, when the definitions file cannot be used.
    bool isValid(QString* error) const;

    bool queryInterface(const QUuid& iid, QUnknownInterface** iface) override;
    QMainWindow* mainWindow() const override { return nullptr; }
    QString title() const override { return QStringLiteral("Kavendi"); }
    bool queryObject(const QString& name, const QUuid& iid, QUnknownInterface** object) override;
    int insertMenu(const QString&, QMenu*) override { return -1; }
    void removeMenu(int) override {}
    void progressStart(int, const QString&, const QString&, QObject*, int) override {}
    void progressStep(int) override {}
    void progressEnd() override {}
    QString directory() const override { return m_directory; }

    StudioInterface* studio() const override { return const_cast<KVDHeadlessHost*>(this); }
    void warning(const QString& text) override;
    void critical(const QString& text) override { warning(text); }
    QString currentUser() const override { return QString(); }

private:
    QString m_directory;
    QString m_error;
    std::unique_ptr<QTemporaryDir> m_copy;
};

#endif
