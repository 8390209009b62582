// Feeds the view configuration reader arbitrary KVD.cfg files. Whatever it accepts must be
// stored again as a file that reads back to the same view.
#include "fuzzshell.h"
#include "kvdconfig.h"
#include "kvdcurve.h"
#include "kvdevent.h"

#include <QByteArray>
#include <QFile>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

struct View
{
    QList<KVDCurve*> curves;
    QList<KVDEvent*> events;
    QDateTime start, end;
    int zoom = 0;
    KVDCurve* first = nullptr;
    KVDCurve* second = nullptr;

    ~View()
    {
        qDeleteAll(curves);
        qDeleteAll(events);
    }
    bool read(const QString& dir)
    {
        KVDConfig config;
        return config.ReadConfig(dir, &curves, &start, &end, &zoom, &first, &second, &events);
    }
    void store(const QString& dir)
    {
        KVDConfig config;
        config.StoreConfig(dir, &curves, start, end, zoom, first, second, &events);
    }
};

QByteArray get(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void put(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static FuzzShell shell;
    const QString dir = shell.dir();
    put(dir + QLatin1String("/KVD.cfg"),
        QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)));

    View view;
    if (!view.read(dir))
        return 0;
    // Dates are written as signed and read as unsigned 32-bit counts, so one trip through
    // the file may move a date past 2038 to 1970; from the second trip on nothing changes.
    view.store(dir);
    View second;
    if (!second.read(dir)) {
        std::fprintf(stderr, "fuzz_viewconfig: a stored view does not read back:\n%s\n",
                     get(dir + QLatin1String("/KVD.cfg")).constData());
        std::abort();
    }
    second.store(dir);
    const QByteArray stored = get(dir + QLatin1String("/KVD.cfg"));
    View third;
    if (!third.read(dir) || third.curves.size() != view.curves.size() ||
        third.events.size() != view.events.size()) {
        std::fprintf(stderr, "fuzz_viewconfig: a view lost curves or events:\n%s\n",
                     stored.constData());
        std::abort();
    }
    third.store(dir);
    const QByteArray restored = get(dir + QLatin1String("/KVD.cfg"));
    if (restored != stored) {
        std::fprintf(stderr, "fuzz_viewconfig: a view changed on its way through a file:\n%s\n%s\n",
                     stored.constData(), restored.constData());
        std::abort();
    }
    return 0;
}
