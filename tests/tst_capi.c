/* A recording tool written in C: it needs nothing but kvdstore.h and libkavendi.so. */
#include "kvdstore.h"

#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

static int failures = 0;

static void check(int ok, const char* what)
{
    if (!ok) {
        fprintf(stderr, "FAIL: %s\n", what);
        ++failures;
    }
}

int main(void)
{
    char root[] = "/tmp/kvd-capi-XXXXXX", data[256], index[256];
    uint32_t values[4] = {812, 95, 40, 17}, key = 0, offset = 0, words[21] = {0};
    FILE* file;

    if (!mkdtemp(root))
        return 1;
    setenv("ZANTH_KVD_ROOT", root, 1);
    snprintf(data, sizeof data, "%s/cov.alice.4.kvd", root);
    snprintf(index, sizeof index, "%s/cov.alice.4.idx", root);
    check(File_Key("suite/test_parser.c", &key) == 0, "File_Key of a file name");
    check(Write_Measure("cov", "alice", key, 1104537600u, 4, values) == 0, "first write");
    check(Create_Data_Base("/no/c.u.1.kvd", "/no/c.u.1.idx", 1, 1, 1, values) &&
              Update_Data_Base(data, "/no/i", 1, 1, 1, values) &&
              Seek_In_KVD("/no", 8, 1, values, 0) &&
              Append_In_KVD("/no/c.u.1.kvd", 1, 1, 1, values, &offset),
          "each building block answers 1 when its files cannot be opened");
    check(Append_In_KVD(data, 7, 9, 1, values, &offset) == 0 && offset == 40,
          "an append at the end");
    file = fopen(data, "rb");
    check(file && Endian_Read(words, 21, file) == 14, "a record of 40 bytes, one of 16");
    check(words[0] == 1104537600u && words[1] == key && words[2] == 812 && words[3] == 812 &&
              words[9] == 17 && words[10] == 7 && words[11] == 9 && words[13] == 95,
          "date, key, then each value with its total");
    check(file && !Endian_Read(words, 0, file) && !Endian_Write(words, -1, file), "no word");
    if (file)
        fclose(file);
    unlink(data);
    unlink(index);
    rmdir(root);
    return failures ? 1 : 0;
}
