#include "kvdheapsetup.h"

#include <cstdint>
#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace KvdHeapSetup {

void prepare()
{
#if defined(__GLIBC__) && defined(MADV_HUGEPAGE)
    constexpr int MiB = 1 << 20;
    constexpr std::uintptr_t Huge = std::uintptr_t(2) * MiB;
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
    const std::uintptr_t begin = (std::uintptr_t(probe) + Huge - 1) & ~(Huge - 1);
    const std::uintptr_t end = std::uintptr_t(sbrk(0)) & ~(Huge - 1);
    std::free(probe);
    if (probe && end > begin)
        madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#endif
}

} // namespace KvdHeapSetup
