#define _GNU_SOURCE
#include "kvdfaults.h"

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <link.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <sys/types.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
#define KVDFAULTS_NO_MALLOC 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KVDFAULTS_NO_MALLOC 1
#endif
#endif

enum { MaxCalls = 8192, MaxOpen = 64, NameSize = 96 };

static char watched[4096];
static size_t watchedLength;
static int watching;
static int counted;
static int failAt;
static int failError;
static int failOnward;
static char calls[MaxCalls][NameSize];
static uintptr_t allocLow, allocHigh;
/* Set while this library works, so that its own calls are never counted. */
static __thread int busy;

/* Streams and descriptors opened on watched paths, with the file's name. */
static FILE* streams[MaxOpen];
static char streamNames[MaxOpen][NameSize];
static int descriptors[MaxOpen];
static char descriptorNames[MaxOpen][NameSize];

static const char* baseName(const char* path)
{
    const char* slash = strrchr(path, '/');
    return slash ? slash + 1 : path;
}

static int isWatched(const char* path)
{
    return watching && !busy && path && strncmp(path, watched, watchedLength) == 0 &&
           path[watchedLength] == '/';
}

/* Counts one call; 1 when it is the armed one, with errno set. */
static int fails(const char* function, const char* name, const char* detail)
{
    ++counted;
    if (counted <= MaxCalls)
        snprintf(calls[counted - 1], NameSize, "%s %s%s%s", function, name, *detail ? " " : "",
                 detail);
    if (!failAt || counted < failAt || (counted > failAt && !failOnward))
        return 0;
    errno = failError;
    return 1;
}

static const char* streamName(FILE* stream)
{
    for (int i = 0; watching && !busy && stream && i < MaxOpen; ++i)
        if (streams[i] == stream)
            return streamNames[i];
    return NULL;
}

static void forgetStream(FILE* stream)
{
    for (int i = 0; i < MaxOpen; ++i)
        if (streams[i] == stream)
            streams[i] = NULL;
}

static const char* descriptorName(int fd)
{
    for (int i = 0; watching && !busy && fd >= 0 && i < MaxOpen; ++i)
        if (descriptors[i] == fd)
            return descriptorNames[i];
    return NULL;
}

static void forgetDescriptor(int fd)
{
    for (int i = 0; i < MaxOpen; ++i)
        if (descriptors[i] == fd)
            descriptors[i] = -1;
}

#define REAL(result, name, params)                                                                 \
    static result(*real) params;                                                                   \
    if (!real)                                                                                     \
        real = (result(*) params)dlsym(RTLD_NEXT, name);

void kvdfaults_watch(const char* dir)
{
    snprintf(watched, sizeof watched, "%s", dir);
    watchedLength = strlen(watched);
    counted = failAt = 0;
    for (int i = 0; i < MaxOpen; ++i) {
        streams[i] = NULL;
        descriptors[i] = -1;
    }
    watching = 1;
}

void kvdfaults_stop(void)
{
    watching = 0;
    failAt = 0;
}

void kvdfaults_arm(int call, int error, int onward)
{
    failAt = call;
    failError = error;
    failOnward = onward;
}

int kvdfaults_count(void)
{
    return counted;
}

const char* kvdfaults_call(int i)
{
    return i >= 1 && i <= counted && i <= MaxCalls ? calls[i - 1] : "";
}

static int findSegment(struct dl_phdr_info* info, size_t size, void* data)
{
    (void)size;
    const uintptr_t address = (uintptr_t)data;
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        const ElfW(Phdr)* segment = &info->dlpi_phdr[i];
        const uintptr_t low = info->dlpi_addr + segment->p_vaddr;
        if (segment->p_type == PT_LOAD && (segment->p_flags & PF_X) && address >= low &&
            address < low + segment->p_memsz) {
            allocLow = low;
            allocHigh = low + segment->p_memsz;
            return 1;
        }
    }
    return 0;
}

int kvdfaults_count_allocations_of(const void* function)
{
#ifdef KVDFAULTS_NO_MALLOC
    (void)function;
    return 0;
#else
    busy = 1;
    dl_iterate_phdr(findSegment, (void*)function);
    busy = 0;
    return allocHigh != 0;
#endif
}

#ifndef KVDFAULTS_NO_MALLOC
extern void* __libc_malloc(size_t size);

void* malloc(size_t size)
{
    const uintptr_t caller = (uintptr_t)__builtin_return_address(0);
    if (watching && !busy && caller >= allocLow && caller < allocHigh) {
        busy = 1;
        const int failed = fails("malloc", "", "");
        busy = 0;
        if (failed)
            return NULL;
    }
    return __libc_malloc(size);
}
#endif

FILE* fopen(const char* path, const char* mode)
{
    REAL(FILE*, "fopen", (const char*, const char*))
    if (!isWatched(path))
        return real(path, mode);
    if (fails("fopen", baseName(path), mode))
        return NULL;
    FILE* stream = real(path, mode);
    forgetStream(stream);
    for (int i = 0; stream && i < MaxOpen; ++i)
        if (!streams[i]) {
            streams[i] = stream;
            snprintf(streamNames[i], NameSize, "%s", baseName(path));
            break;
        }
    return stream;
}

size_t fread(void* buffer, size_t size, size_t count, FILE* stream)
{
    REAL(size_t, "fread", (void*, size_t, size_t, FILE*))
    const char* name = streamName(stream);
    if (name && fails("fread", name, ""))
        return 0;
    return real(buffer, size, count, stream);
}

size_t fwrite(const void* buffer, size_t size, size_t count, FILE* stream)
{
    REAL(size_t, "fwrite", (const void*, size_t, size_t, FILE*))
    const char* name = streamName(stream);
    if (name && fails("fwrite", name, ""))
        return 0;
    return real(buffer, size, count, stream);
}

int fseeko(FILE* stream, off_t offset, int whence)
{
    REAL(int, "fseeko", (FILE*, off_t, int))
    const char* name = streamName(stream);
    if (name && fails("fseeko", name, ""))
        return -1;
    return real(stream, offset, whence);
}

int fclose(FILE* stream)
{
    REAL(int, "fclose", (FILE*))
    const char* name = streamName(stream);
    const int failed = name && fails("fclose", name, "");
    forgetStream(stream);
    const int result = real(stream);
    if (failed)
        errno = failError;
    return failed ? EOF : result;
}

int remove(const char* path)
{
    REAL(int, "remove", (const char*))
    if (isWatched(path) && fails("remove", baseName(path), ""))
        return -1;
    return real(path);
}

int rename(const char* from, const char* to)
{
    REAL(int, "rename", (const char*, const char*))
    if ((isWatched(from) || isWatched(to)) && fails("rename", baseName(from), baseName(to)))
        return -1;
    return real(from, to);
}

static int openWatched(int (*real)(const char*, int, ...), const char* function, const char* path,
                       int flags, mode_t mode)
{
    if (!isWatched(path))
        return real(path, flags, mode);
    if (fails(function, baseName(path), ""))
        return -1;
    const int fd = real(path, flags, mode);
    forgetDescriptor(fd);
    for (int i = 0; fd >= 0 && i < MaxOpen; ++i)
        if (descriptors[i] < 0) {
            descriptors[i] = fd;
            snprintf(descriptorNames[i], NameSize, "%s", baseName(path));
            break;
        }
    return fd;
}

int open(const char* path, int flags, ...)
{
    REAL(int, "open", (const char*, int, ...))
    va_list args;
    va_start(args, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) ? va_arg(args, mode_t) : 0;
    va_end(args);
    return openWatched(real, "open", path, flags, mode);
}

int open64(const char* path, int flags, ...)
{
    REAL(int, "open64", (const char*, int, ...))
    va_list args;
    va_start(args, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) ? va_arg(args, mode_t) : 0;
    va_end(args);
    return openWatched(real, "open", path, flags, mode);
}

ssize_t write(int fd, const void* buffer, size_t size)
{
    REAL(ssize_t, "write", (int, const void*, size_t))
    const char* name = descriptorName(fd);
    if (name && fails("write", name, ""))
        return -1;
    return real(fd, buffer, size);
}

int close(int fd)
{
    REAL(int, "close", (int))
    const char* name = descriptorName(fd);
    const int failed = name && fails("close", name, "");
    forgetDescriptor(fd);
    const int result = real(fd);
    if (failed)
        errno = failError;
    return failed ? -1 : result;
}
