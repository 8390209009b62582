#include "fakestudio.h"
#include "qakvd.h"

FakeStudio::FakeStudio() = default;

FakeStudio::~FakeStudio()
{
    if (QAKVD::iface() == this)
        uninstall();
}

void FakeStudio::install()
{
    QAKVD::initialize(nullptr, this);
}

void FakeStudio::uninstall()
{
    QAKVD::initialize(nullptr, nullptr);
}

bool FakeStudio::queryInterface(const QUuid& iid, QUnknownInterface** iface)
{
    *iface = iid == IID_StudioInterface ? this : nullptr;
    return *iface != nullptr;
}

bool FakeStudio::queryObject(const QString&, const QUuid&, QUnknownInterface** object)
{
    *object = nullptr;
    return false;
}

void FakeStudio::progressStart(int total, const QString& text, const QString& cancel,
                               QObject* parent, int how)
{
    ++starts;
    steps = lastStep = 0;
    totalSteps = total;
    label = text;
    cancelText = cancel;
    progressParent = parent;
    flags = how;
}

void FakeStudio::progressStep(int progress)
{
    ++steps;
    lastStep = progress;
}
