/* The smallest recording tool: one record of measure argv[1] for user "ci" under
 * ZANTH_KVD_ROOT, dated 2005-01-01T00:00:00Z, keyed by a file name. Built out of tree
 * against an installed Kavendi, with pkg-config and with CMake. */
#include <kvdstore.h>

int main(int argc, char** argv)
{
    uint32_t values[4] = {812, 95, 40, 17}, key = 0;

    if (argc != 2 || File_Key("suite/test_parser.c", &key) != 0)
        return 1;
    return Write_Measure(argv[1], "ci", key, 1104537600u, 4, values) != 0;
}
