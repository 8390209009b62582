#ifndef KVDHEADLESSHOST_H
#define KVDHEADLESSHOST_H

#include "studiointerface.h"

#include <QString>
#include <QTemporaryDir>

#include <memory>

// The host services for kvd: no window, no menus, no progress display; the host data
// directory holds the built-in definitions the command reads.
class KVDHeadlessHost : public StudioInterface
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

private:
    QString m_directory;
    QString m_error;
    std::unique_ptr<QTemporaryDir> m_copy;
};

#endif
