#include "kvdfreshmemory.h"

#ifdef Q_OS_LINUX
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace {

constexpr quintptr HugePage = quintptr(2) << 20;

} // namespace

namespace KVDFreshMemory {

void adviseHugePages(void* data, qint64 bytes)
{
#if defined(Q_OS_LINUX) && defined(MADV_HUGEPAGE)
    const quintptr begin = (quintptr(data) + HugePage - 1) & ~(HugePage - 1);
    const quintptr end = (quintptr(data) + quintptr(bytes)) & ~(HugePage - 1);
    if (data && bytes > 0 && end > begin)
        madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#else
    Q_UNUSED(data);
    Q_UNUSED(bytes);
#endif
}

void prepare(void* data, qint64 bytes)
{
    constexpr qint64 Mapped = 64 * 1024;
    if (!data || bytes < Mapped)
        return;
    if (bytes >= qint64(2 * HugePage))
        adviseHugePages(data, bytes);
#if defined(Q_OS_LINUX) && defined(MADV_POPULATE_WRITE)
    // After the advice, so that the pages mapped in are huge where they may be. Only
    // whole pages inside the block; a system without the request ignores it.
    const quintptr page = quintptr(sysconf(_SC_PAGESIZE));
    const quintptr begin = (quintptr(data) + page - 1) & ~(page - 1);
    const quintptr end = (quintptr(data) + quintptr(bytes)) & ~(page - 1);
    if (end > begin)
        madvise(reinterpret_cast<void*>(begin), end - begin, MADV_POPULATE_WRITE);
#endif
}

} // namespace KVDFreshMemory
