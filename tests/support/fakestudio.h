#ifndef FAKESTUDIO_H
#define FAKESTUDIO_H

#include "studiointerface.h"

#include <QMainWindow>
#include <QString>

// A host for tests: a real main window and title, a data directory, and a progress
// display that only counts. install() makes it the viewer's host, uninstall() leaves the
// viewer without one; one instance per test program.
class FakeStudio : public StudioInterface
{
public:
    FakeStudio();
    ~FakeStudio() override;

    void install();
    static void uninstall();

    bool queryInterface(const QUuid& iid, QUnknownInterface** iface) override;
    QMainWindow* mainWindow() const override { return const_cast<QMainWindow*>(&m_window); }
    QString title() const override { return QStringLiteral("Test Studio"); }
    bool queryObject(const QString&, const QUuid&, QUnknownInterface** object) override;
    int insertMenu(const QString&, QMenu*) override { return ++m_menus; }
    void removeMenu(int) override {}
    void progressStart(int totalSteps, const QString& label, const QString& cancelText,
                       QObject* parent, int flags) override;
    void progressStep(int progress) override;
    void progressEnd() override { ++ends; }
    QString directory() const override { return dataDirectory; }

    QString dataDirectory;
    int starts = 0;
    int steps = 0;
    int lastStep = 0;
    int ends = 0;
    int totalSteps = 0;
    int flags = 0;
    QString label;
    QString cancelText;
    QObject* progressParent = nullptr;

private:
    QMainWindow m_window;
    int m_menus = 0;
};

#endif
