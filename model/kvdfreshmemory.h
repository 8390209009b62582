#ifndef KVDFRESHMEMORY_H
#define KVDFRESHMEMORY_H

#include <QtGlobal>

// Memory about to be written whole for the first time. Touching fresh memory one small
// page at a time costs several times what reading it from a file does: on a virtual
// machine every 4 KiB page is a trap to the host. Huge pages take 2 MiB at a time, but only
// where a block covers whole, aligned ones. Where the system lacks a request, nothing
// changes and the memory behaves as before.
namespace KVDFreshMemory {

// Asks the system to back the whole 2 MiB pages inside the bytes at data with huge pages.
void adviseHugePages(void* data, qint64 bytes);
// Prepares the bytes at data, not yet touched and about to be written whole: huge pages
// for blocks of many megabytes, and every page of blocks from 64 KiB on mapped in with one
// request. Smaller blocks are left alone.
void prepare(void* data, qint64 bytes);

} // namespace KVDFreshMemory

#endif
