/* Measure store: the functions with which recording tools append dated records to the
 * measure files of a repository. Plain C linkage so that C test tools can call them.
 *
 * Every function returning unsigned int answers 0 on success and 1 on failure, and has
 * reported the failure on standard error itself (except Write_Measure when
 * ZANTH_KVD_ROOT is unset, which fails silently). The functions share two process-wide
 * file handles: call them from one thread at a time. Writers of one file pair in
 * different processes exclude each other through its lock file.
 */
#ifndef KVDSTORE_H
#define KVDSTORE_H

#include <stdint.h>
#include <stdio.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Appends one record of count values for measure and user to the repository named by
 * ZANTH_KVD_ROOT; date 0 means now.
 *
 * Only the first write of a file pair succeeds on a 64-bit build: it creates the pair.
 * Every later write to the same measure, user and count positions its read back from
 * the end of the data file with a 32-bit unsigned offset, lands past the file, and fails
 * with "Unable to read DataBase file" before it changes a byte. This is the store's
 * behaviour that existing repositories depend on, not a transient error: write each
 * pair once (one measure name per run, for example) or expect 1 from later calls. */
unsigned int Write_Measure(const char* measure, const char* user, uint32_t key, uint32_t date,
                           int count, const uint32_t* values);
/* 1 when the index file can be opened for update, else 0. Reports nothing. */
int Exist_Index_File(const char* indexPath);
/* values holds 2*count words: value and total of each field. */
unsigned int Create_Data_Base(const char* dataPath, const char* indexPath, uint32_t date,
                              uint32_t key, int count, uint32_t* values);
unsigned int Update_Data_Base(const char* dataPath, const char* indexPath, uint32_t date,
                              uint32_t key, int count, uint32_t* values);
unsigned int Seek_In_KVD(const char* dataPath, uint32_t offset, int count, uint32_t* values,
                         int mode);
unsigned int Append_In_KVD(const char* dataPath, uint32_t date, uint32_t key, int count,
                           uint32_t* values, uint32_t* offset);
/* Derives a record key from a text such as a file name. */
unsigned int File_Key(const char* text, uint32_t* key);
/* Transfer count whole 4-byte words in native byte order; answer the number transferred. */
int Endian_Write(uint32_t* words, int count, FILE* file);
int Endian_Read(uint32_t* words, int count, FILE* file);

#ifdef __cplusplus
}
#endif

#endif
