#include "kvdstore.h"
#include "userinfo.h"

#include <QCoreApplication>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

// The file pair most recently opened by the functions below. Each function opens, uses
// and closes its files within one call; on a failure it returns at once and leaves open
// what it had opened (callers only look at the result).
static FILE* Index_File = nullptr;
static FILE* Data_Base = nullptr;

// A failing call leaves its files open, as callers of the store have always seen it; the
// next call that opens the same shared handle closes what is still open there first, so a
// long run of failing writes (a record deletion re-appending thousands of records) holds
// at most two handles instead of exhausting the process's descriptors.
static FILE* openShared(FILE*& handle, const char* path, const char* mode)
{
    if (handle)
        fclose(handle);
    handle = fopen(path, mode);
    return handle;
}

static int closeShared(FILE*& handle)
{
    const int result = fclose(handle);
    handle = nullptr;
    return result;
}

namespace {

// A block of count 32-bit words, or null when the memory is not there. A count that is
// negative or beyond what the word primitives can transfer would have asked malloc for
// an impossible size; it is answered the same way without asking, so that sanitizing
// allocators do not abort.
uint32_t* allocWords(long long count)
{
    if (count < 0 || count > INT_MAX)
        return nullptr;
    return static_cast<uint32_t*>(std::malloc(size_t(count) * 4));
}

// Backward positioning from the end of the data file, computed the way every existing
// file pair was written with: the 32-bit distance is negated in 32 bits and the result is
// widened, as an unsigned number, to the file offset. With 64-bit offsets that lands
// 2^32 - distance bytes past the end, the read that follows finds nothing, and so a write
// to a pair whose index already exists fails before changing either file. Callers rely on
// only the first write of a pair succeeding.
int seekFromEnd(FILE* file, uint32_t distance)
{
    return fseeko(file, off_t(uint32_t(-distance)), SEEK_END);
}

} // namespace

int Endian_Write(uint32_t* words, int count, FILE* file)
{
    // No byte swapping: files keep the writer's byte order.
    return count > 0 ? int(fwrite(words, 4, size_t(count), file)) : 0;
}

int Endian_Read(uint32_t* words, int count, FILE* file)
{
    return count > 0 ? int(fread(words, 4, size_t(count), file)) : 0;
}

int Exist_Index_File(const char* indexPath)
{
    FILE* file = fopen(indexPath, "r+b");
    if (!file)
        return 0;
    fclose(file);
    return 1;
}

unsigned int Write_Measure(const char* measure, const char* user, uint32_t key, uint32_t date,
                           int count, const uint32_t* values)
{
    const char* root = getenv("ZANTH_KVD_ROOT");
    if (!root)
        return 1;

    uint32_t* words = allocWords(2LL * count);
    if (!words) {
        user_info(
            QCoreApplication::translate("Info", "Unable to allocate memory", "Error message"));
        return 1;
    }
    if (date == 0)
        date = uint32_t(time(nullptr));

    if (count > 9999) {
        user_info(QCoreApplication::translate("Info", "Too many measure values", "Error message"));
        return 1;
    }
    // Value and provisional total; the totals are settled by the update.
    for (int k = 0; k < count; ++k)
        words[2 * k] = words[2 * k + 1] = values[k];

    char number[16];
    snprintf(number, sizeof number, "%d", count);
    const size_t capacity = strlen(root) + strlen(measure) + strlen(user) + strlen(number) + 8;
    char* dataPath = static_cast<char*>(malloc(capacity));
    char* indexPath = static_cast<char*>(malloc(capacity));
    if (!dataPath || !indexPath) {
        user_info(
            QCoreApplication::translate("Info", "Unable to allocate memory", "Error message"));
        return 1;
    }
    char* lockPath = static_cast<char*>(malloc(capacity));
    if (!lockPath) {
        // Never seen for a block this small; reported like the two above rather than
        // written through.
        user_info(
            QCoreApplication::translate("Info", "Unable to allocate memory", "Error message"));
        return 1;
    }
    snprintf(dataPath, capacity, "%s/%s.%s.%s.kvd", root, measure, user, number);
    snprintf(indexPath, capacity, "%s/%s.%s.%s.idx", root, measure, user, number);
    snprintf(lockPath, capacity, "%s/%s.%s.%s.lck", root, measure, user, number);

    // The lock: whoever creates the file owns the pair. Writers wait by retrying at once,
    // without pause, limit or looking at why the creation failed; a lock left by a dead
    // writer keeps every later writer of the pair waiting until someone removes it.
    int lock;
    while ((lock = open(lockPath, O_RDWR | O_CREAT | O_EXCL, 0600)) < 0) {
    }

    unsigned int result;
    if (Exist_Index_File(indexPath) == 1)
        result = Update_Data_Base(dataPath, indexPath, date, key, count, words);
    else
        result = Create_Data_Base(dataPath, indexPath, date, key, count, words);
    free(dataPath);
    free(indexPath);
    free(words);

    if (close(lock) != 0) {
        user_info(
            QCoreApplication::translate("Info", "Error locking transaction", "Error message"));
        return 1;
    }
    if (remove(lockPath) != 0) {
        // The system error goes out under this very prefix; log readers look for it.
        perror("toto\n");
        user_info(
            QCoreApplication::translate("Info", "Error locking transaction", "Error message"));
        return 1;
    }
    free(lockPath);
    return result ? 1 : 0;
}

unsigned int Create_Data_Base(const char* dataPath, const char* indexPath, uint32_t date,
                              uint32_t key, int count, uint32_t* values)
{
    openShared(Index_File, indexPath, "a+b");
    if (!Index_File) {
        user_info(
            QCoreApplication::translate("Info", "Unable to create KVD file", "Error message"));
        return 1;
    }
    uint32_t offset = 0;
    if (Endian_Write(&key, 1, Index_File) != 1 || Endian_Write(&offset, 1, Index_File) != 1) {
        user_info(
            QCoreApplication::translate("Info", "Unable to write in Index file", "Error message"));
        return 1;
    }

    openShared(Data_Base, dataPath, "a+b");
    if (!Data_Base) {
        user_info(
            QCoreApplication::translate("Info", "Unable to create DataBase file", "Error message"));
        return 1;
    }
    // The first record's totals are its own values, which the caller already put there.
    if (Endian_Write(&date, 1, Data_Base) != 1 || Endian_Write(&key, 1, Data_Base) != 1 ||
        (count > 0 && Endian_Write(values, 2 * count, Data_Base) != 2 * count)) {
        user_info(QCoreApplication::translate("Info", "Unable to write in DataBase file",
                                              "Error message"));
        return 1;
    }

    if (closeShared(Index_File) != 0) {
        user_info(
            QCoreApplication::translate("Info", "Unable to close Index file", "Error message"));
        return 1;
    }
    if (closeShared(Data_Base) != 0) {
        user_info(
            QCoreApplication::translate("Info", "Unable close DataBase file", "Error message"));
        return 1;
    }
    return 0;
}

unsigned int Update_Data_Base(const char* dataPath, const char* indexPath, uint32_t date,
                              uint32_t key, int count, uint32_t* values)
{
    openShared(Index_File, indexPath, "r+b");
    if (!Index_File) {
        user_info(
            QCoreApplication::translate("Info", "Unable to open index file", "Error message"));
        return 1;
    }

    uint32_t entry[2];
    bool found = false;
    for (;;) {
        if (Endian_Read(entry, 2, Index_File) != 2) {
            if (!feof(Index_File)) {
                user_info(QCoreApplication::translate("Info", "Unable to read index file",
                                                      "Error message"));
                return 1;
            }
            break;
        }
        if (entry[0] == key) {
            found = true;
            break;
        }
    }

    uint32_t offset = 0;
    if (!found) {
        // A new key: its totals continue from the file's last record.
        if (Seek_In_KVD(dataPath, 8u + 8u * uint32_t(count), count, values, 0) != 0)
            return 1;
        if (Append_In_KVD(dataPath, date, key, count, values, &offset) != 0)
            return 1;
        if (fseeko(Index_File, 0, SEEK_END) != 0) {
            user_info(QCoreApplication::translate("Info", "Reposition in DataBase file fail",
                                                  "Error message"));
            return 1;
        }
    } else {
        if (Seek_In_KVD(dataPath, entry[1], count, values, 1) != 0)
            return 1;
        if (Append_In_KVD(dataPath, date, key, count, values, &offset) != 0)
            return 1;
        // Back onto the entry just read, to point it at the new record.
        if (fseeko(Index_File, -8, SEEK_CUR) != 0) {
            user_info(QCoreApplication::translate("Info", "Reposition in DataBase file fail",
                                                  "Error message"));
            return 1;
        }
    }
    if (Endian_Write(&key, 1, Index_File) != 1 || Endian_Write(&offset, 1, Index_File) != 1) {
        user_info(
            QCoreApplication::translate("Info", "Unable to update Index File", "Error message"));
        return 1;
    }
    if (closeShared(Index_File) != 0) {
        user_info(
            QCoreApplication::translate("Info", "Unable to close Index file", "Error message"));
        return 1;
    }
    return 0;
}

unsigned int Seek_In_KVD(const char* dataPath, uint32_t offset, int count, uint32_t* values,
                         int mode)
{
    const long long recordWords = 2LL * count + 2;
    uint32_t* record = allocWords(recordWords);
    if (!record) {
        user_info(
            QCoreApplication::translate("Info", "Unable to allocate memory", "Error message"));
        return 1;
    }
    uint32_t* last = allocWords(recordWords);
    if (!last) {
        user_info(
            QCoreApplication::translate("Info", "Unable to allocate memory", "Error message"));
        return 1;
    }
    openShared(Data_Base, dataPath, "r+b");
    if (!Data_Base) {
        user_info(
            QCoreApplication::translate("Info", "Unable to open DataBase file", "Error message"));
        return 1;
    }

    const int position =
        mode == 0 ? seekFromEnd(Data_Base, offset) : fseeko(Data_Base, off_t(offset), SEEK_SET);
    if (position != 0) {
        user_info(QCoreApplication::translate("Info", "Reposition in DataBase file fail",
                                              "Error message"));
        return 1;
    }
    if (Endian_Read(record, int(recordWords), Data_Base) != int(recordWords)) {
        user_info(
            QCoreApplication::translate("Info", "Unable to read DataBase file", "Error message"));
        return 1;
    }

    if (mode == 0) {
        // record is the file's last one: the new key adds its values to those totals.
        for (int k = 0; k < count; ++k)
            values[2 * k + 1] = values[2 * k] + record[3 + 2 * k];
    } else {
        // record is the key's previous latest one: its value leaves the totals.
        if (seekFromEnd(Data_Base, 8u * (uint32_t(count) + 1u)) != 0) {
            user_info(QCoreApplication::translate("Info", "Reposition in DataBase file fail",
                                                  "Error message"));
            return 1;
        }
        if (Endian_Read(last, int(recordWords), Data_Base) != int(recordWords)) {
            user_info(QCoreApplication::translate("Info", "Unable to read DataBase file",
                                                  "Error message"));
            return 1;
        }
        for (int k = 0; k < count; ++k)
            values[2 * k + 1] = values[2 * k] + last[3 + 2 * k] - record[2 + 2 * k];
    }

    if (closeShared(Data_Base) != 0) {
        user_info(QCoreApplication::translate("Info", "Unable to close DataBase", "Error message"));
        return 1;
    }
    free(record);
    free(last);
    return 0;
}

unsigned int Append_In_KVD(const char* dataPath, uint32_t date, uint32_t key, int count,
                           uint32_t* values, uint32_t* offset)
{
    openShared(Data_Base, dataPath, "a+b");
    if (!Data_Base) {
        user_info(
            QCoreApplication::translate("Info", "Unable to open DataBase file", "Error message"));
        return 1;
    }
    fseeko(Data_Base, 0, SEEK_END);
    *offset = uint32_t(ftello(Data_Base));
    if (Endian_Write(&date, 1, Data_Base) != 1 || Endian_Write(&key, 1, Data_Base) != 1 ||
        (count > 0 && Endian_Write(values, 2 * count, Data_Base) != 2 * count)) {
        user_info(
            QCoreApplication::translate("Info", "Unable to update DataBase file", "Error message"));
        return 1;
    }
    if (closeShared(Data_Base) != 0) {
        user_info(
            QCoreApplication::translate("Info", "Unable close DataBase file", "Error message"));
        return 1;
    }
    return 0;
}

unsigned int File_Key(const char* text, uint32_t* key)
{
    // A missing text is reported as an allocation failure; tools match on that text.
    if (!text) {
        user_info(
            QCoreApplication::translate("Info", "Unable to allocate memory", "Error message"));
        return 1;
    }
    // Length and buffer size are 16-bit signed quantities, as keys already stored in
    // repositories were derived with: a text of 65536 bytes or more is hashed on its length
    // modulo 65536, and one whose size does not fit (a length that reads negative, or one
    // from 32764 to 32767 whose rounded size wraps) gets no buffer.
    const int16_t length = int16_t(strlen(text));
    const int16_t size = int16_t(4 * (length / 4) + 4);
    unsigned char* buffer =
        length >= 0 && size > 0 ? static_cast<unsigned char*>(malloc(size_t(size))) : nullptr;
    if (!buffer) {
        user_info(
            QCoreApplication::translate("Info", "Unable to allocate memory", "Error message"));
        return 1;
    }
    memcpy(buffer, text, size_t(length));
    memset(buffer + length, 0, size_t(size - length));

    // Each byte counts as a signed 8-bit number; the group value keeps the low 32 bits of
    // the signed result.
    uint32_t h = 0x4A4A4A4Au;
    for (int i = 0; i < size; i += 4) {
        const int64_t g = ((int64_t(int8_t(buffer[i])) * 256 + int8_t(buffer[i + 1])) * 256 +
                           int8_t(buffer[i + 2])) *
                              256 +
                          int8_t(buffer[i + 3]);
        h = (uint32_t(g) ^ h) << 1;
    }
    *key = h;
    free(buffer);
    return 0;
}
