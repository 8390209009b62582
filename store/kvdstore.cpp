#include "kvdstore.h"
#include "userinfo.h"

#include <QCoreApplication>

// Word transfer primitives: no byte swapping, files keep the writer's byte order.
int Endian_Write(uint32_t* words, int count, FILE* file)
{
    return count > 0 ? int(fwrite(words, 4, size_t(count), file)) : 0;
}

int Endian_Read(uint32_t* words, int count, FILE* file)
{
    return count > 0 ? int(fread(words, 4, size_t(count), file)) : 0;
}
