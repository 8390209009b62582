#include "kvdheapsetup.h"
#include "kvdfreshmemory.h"

#include <cstdint>
#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#include <unistd.h>
#endif

namespace KvdHeapSetup {

void prepare()
{
#ifdef __GLIBC__
    constexpr int MiB = 1 << 20;
    constexpr int Step = 64 * MiB;
    // 32 MiB is the most the C library lets come from the heap on a 64-bit system; larger
    // blocks keep their own mappings (and the curve's loader asks for huge pages there).
    if (!mallopt(M_MMAP_THRESHOLD, 32 * MiB) || !mallopt(M_TOP_PAD, Step) ||
        !mallopt(M_TRIM_THRESHOLD, 2 * Step))
        return;
    // A block of a quarter step comes from the heap, which grows by it and the step when
    // it has less room left; freed, it stays there. From it to the heap's end is memory
    // nothing has touched yet.
    void* probe = std::malloc(Step / 4);
    const qint64 untouched = qint64(std::uintptr_t(sbrk(0)) - std::uintptr_t(probe));
    if (probe)
        KVDFreshMemory::adviseHugePages(probe, untouched);
    std::free(probe);
#endif
}

} // namespace KvdHeapSetup
