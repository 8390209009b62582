/* A recording tool written in C: it needs nothing but kvdstore.h and libkavendi.so. */
#include "kvdstore.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

static int failures = 0;

static void check(int ok, const char* what)
{
    if (!ok) {
        fprintf(stderr, "FAIL: %s\n", what);
        ++failures;
    }
}

static long fileSize(const char* path)
{
    struct stat info;
    return stat(path, &info) == 0 ? (long)info.st_size : -1;
}

int main(void)
{
    char root[] = "/tmp/kvd-capi-XXXXXX";
    char data[256], index[256], lock[256];
    uint32_t values[4] = {812, 95, 40, 17};
    uint32_t key = 0;
    uint32_t words[10];
    FILE* file;

    if (!mkdtemp(root)) {
        perror("mkdtemp");
        return 1;
    }
    setenv("ZANTH_KVD_ROOT", root, 1);
    snprintf(data, sizeof data, "%s/cov.alice.4.kvd", root);
    snprintf(index, sizeof index, "%s/cov.alice.4.idx", root);
    snprintf(lock, sizeof lock, "%s/cov.alice.4.lck", root);

    check(File_Key("", &key) == 0 && key == 0x94949494u, "File_Key of the empty text");
    check(File_Key("suite/test_parser.c", &key) == 0, "File_Key of a file name");
    check(Write_Measure("cov", "alice", key, 1104537600u, 4, values) == 0, "first write");
    check(fileSize(data) == 40, "a record of four fields is 40 bytes");
    check(fileSize(index) == 8, "the index holds one entry");
    check(access(lock, F_OK) != 0, "the lock is released");

    file = fopen(data, "rb");
    check(file && Endian_Read(words, 10, file) == 10, "the record reads back");
    if (file)
        fclose(file);
    check(words[0] == 1104537600u && words[1] == key && words[2] == 812 && words[3] == 812 &&
              words[8] == 17 && words[9] == 17,
          "date, key, then each value with its total");

    unlink(data);
    unlink(index);
    rmdir(root);
    return failures ? 1 : 0;
}
