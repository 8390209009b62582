/* Fault injection for tests. An executable that links this library defines the C library
 * calls below itself, so every call that the product makes to them, from any of its
 * libraries or from Qt, passes here first and is then forwarded to the real one.
 *
 * Only calls that concern the watched directory count: a path under it, or a stream or
 * descriptor opened on such a path; and the allocations that code inside one chosen
 * library makes with malloc directly. Counted calls are numbered from 1 and described
 * ("fwrite cov.alice.2.idx"); the armed one fails with the armed errno instead of running
 * (fclose and close do close, then report the failure, as a failing close does).
 *
 * Counted: fopen fread fwrite fseeko fclose remove rename open open64 write close, and
 * malloc except in sanitizer builds, whose allocator must not be bypassed. */
#ifndef KVDFAULTS_H
#define KVDFAULTS_H

#ifdef __cplusplus
extern "C" {
#endif

/* Starts counting calls under dir (an absolute path) from 0, with nothing armed. */
void kvdfaults_watch(const char* dir);
/* Stops counting; what was counted stays readable. */
void kvdfaults_stop(void);
/* The call numbered call fails with error, and with onward every counted call after it
 * too, as on a disk that stays full; 0 arms nothing. */
void kvdfaults_arm(int call, int error, int onward);
/* How many calls were counted, and the description of call number i (1-based), or "". */
int kvdfaults_count(void);
const char* kvdfaults_call(int i);
/* Counts the direct malloc calls of the library that holds function; 1 when allocations
 * can be counted in this build. */
int kvdfaults_count_allocations_of(const void* function);

#ifdef __cplusplus
}
#endif

#endif
