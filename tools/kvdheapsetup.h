#ifndef KVDHEAPSETUP_H
#define KVDHEAPSETUP_H

// How kvd takes its memory. A command runs once and touches most of what it allocates
// (a curve's points, the picture, the compressor) right away, so fresh pages are what it
// pays for (KVDFreshMemory); huge pages help only where a block is aligned to them, which
// separately mapped large blocks never are.
namespace KvdHeapSetup {

// Call first in main. Takes blocks up to 32 MiB from the heap rather than from mappings
// of their own, grows the heap 64 MiB at a time and keeps what is freed, and asks the
// system to back the heap grown here with huge pages where it has them. Nothing changes
// where the C library or the system lacks a request: the memory is then as before.
void prepare();

} // namespace KvdHeapSetup

#endif
