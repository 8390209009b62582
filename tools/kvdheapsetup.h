#ifndef KVDHEAPSETUP_H
#define KVDHEAPSETUP_H

// How kvd takes its memory. A command runs once and touches most of what it allocates
// (a curve's points, the picture, the compressor) right away, and on a virtual machine
// every fresh 4 KiB page costs a trap to the host: a 250,000-point curve's 2 MB took
// longer to map in than to read from its file. Huge pages take 2 MB at a time, but only
// where a block is aligned to them, which separately mapped large blocks never are.
namespace KvdHeapSetup {

// Call first in main. Takes blocks up to 32 MiB from the heap rather than from mappings
// of their own, grows the heap 64 MiB at a time and keeps what is freed, and asks the
// system to back the heap grown here with huge pages where it has them. Nothing changes
// where the C library or the system lacks a request: the memory is then as before.
void prepare();

} // namespace KvdHeapSetup

#endif
