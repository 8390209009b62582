#ifndef FAKESTUDIO_H
#define FAKESTUDIO_H

#include "qakvd.h"
#include "studiointerface.h"

#include <QMainWindow>
#include <QString>

// A host for tests: a real main window and title, a data directory, and a progress
// display that only counts. install() makes it the viewer's host, uninstall() leaves the
// viewer without one; one instance per test program.
class FakeStudio : public StudioInterface
{
public:
    ~FakeStudio() override
    {
        if (QAKVD::iface() == this)
            uninstall();
    }

    void install() { QAKVD::initialize(nullptr, this); }
    static void uninstall() { QAKVD::initialize(nullptr, nullptr); }

    bool queryInterface(const QUuid& iid, QUnknownInterface** iface) override
    {
        *iface = iid == IID_StudioInterface ? this : nullptr;
        return *iface != nullptr;
    }
    QMainWindow* mainWindow() const override { return const_cast<QMainWindow*>(&m_window); }
    QString title() const override { return QStringLiteral("Test Studio"); }
    bool queryObject(const QString&, const QUuid&, QUnknownInterface** object) override
    {
        *object = nullptr;
        return false;
    }
    int insertMenu(const QString&, QMenu*) override { return ++m_menus; }
    void removeMenu(int) override {}
    void progressStart(int total, const QString& text, const QString& cancel, QObject* parent,
                       int) override
    {
        ++starts;
        steps = lastStep = 0;
        totalSteps = total;
        label = text;
        cancelText = cancel;
        progressParent = parent;
    }
    void progressStep(int progress) override
    {
        ++steps;
        lastStep = progress;
    }
    void progressEnd() override { ++ends; }
    QString directory() const override { return dataDirectory; }

    QString dataDirectory;
    int starts = 0;
    int steps = 0;
    int lastStep = 0;
    int ends = 0;
    int totalSteps = 0;
    QString label;
    QString cancelText;
    QObject* progressParent = nullptr;

private:
    QMainWindow m_window;
    int m_menus = 0;
};

#endif
