/* stormwriter ROOT ID START COUNT: once the file START exists, writes COUNT records under
 * ROOT, in turn to the pair own<ID>.w.2 and to the pair shared.w.2, and prints how many
 * writes succeeded. */
#include "kvdstore.h"

#include <stdio.h>
#include <stdlib.h>
#include <time.h>
#include <unistd.h>

int main(int argc, char** argv)
{
    if (argc != 5) {
        fprintf(stderr, "usage: stormwriter ROOT ID START COUNT\n");
        return 2;
    }
    setenv("ZANTH_KVD_ROOT", argv[1], 1);
    char own[64];
    snprintf(own, sizeof own, "own%s", argv[2]);
    const int count = atoi(argv[4]);
    const struct timespec pause = {0, 200000};
    while (access(argv[3], F_OK) != 0)
        nanosleep(&pause, NULL);
    int written = 0;
    for (int i = 0; i < count; ++i) {
        const uint32_t values[2] = {(uint32_t)i, (uint32_t)atoi(argv[2])};
        written += Write_Measure(i % 2 ? "shared" : own, "w", (uint32_t)i, 1000000000u + i, 2,
                                 values) == 0;
    }
    printf("%d\n", written);
    return 0;
}
