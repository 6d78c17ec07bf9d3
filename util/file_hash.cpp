/* SPDX-License-Identifier: Apache-2.0 */
#define _FILE_OFFSET_BITS 64 /* files of more than 2 GiB where the word has 32 bits */
#include <stdio.h>
#include <sys/stat.h>

#include <pubsecplatform.h>
#include <pubsecstack/helpers.h>

#include "core/log.h"
#include "util/md5.h"

constexpr size_t PUBSEC_FILE_BLOCK = 1024;
constexpr u32 PUBSEC_NO_FILE = 0xFFFFFFFF;

/* What a message shows for a path that is not there. */
static const char* ShownPath(const char* pchPath)
{
    return pchPath == nullptr ? "(null)" : pchPath;
}

static FILE* OpenFile(const char* pchPath)
{
    return pchPath == nullptr ? nullptr : fopen(pchPath, "rb");
}

/* A read that fails ends the file. */
static void DigestFile(FILE* ptFile, char* pchText)
{
    TPubSecMd5 tMd5;
    u8 abyBlock[PUBSEC_FILE_BLOCK];

    PubSecMd5Init(&tMd5);
    size_t taken = fread(abyBlock, 1, sizeof(abyBlock), ptFile);
    while (taken != 0)
    {
        PubSecMd5Update(&tMd5, abyBlock, taken);
        taken = fread(abyBlock, 1, sizeof(abyBlock), ptFile);
    }
    PubSecMd5FinalText(&tMd5, pchText);
}

static void DigestBytes(const u8* pbyData, u32 dwLen, char* pchText)
{
    TPubSecMd5 tMd5;
    PubSecMd5Init(&tMd5);
    PubSecMd5Update(&tMd5, pbyData, dwLen);
    PubSecMd5FinalText(&tMd5, pchText);
}

char* PSMDFile(const char* pchPath)
{
    static char achMD5[PUBSEC_MD5_TEXT_SIZE];

    FILE* ptFile = OpenFile(pchPath);
    if (ptFile == nullptr)
    {
        printf("%s can't be opened.\n", ShownPath(pchPath));
        return nullptr;
    }
    DigestFile(ptFile, achMD5);
    printf(" %s\n", pchPath);
    fclose(ptFile);
    return achMD5;
}

u32 PSMDFileEx(const char* pchPath, char* pchOut, u16 wOutLen)
{
    if (pchPath == nullptr || pchOut == nullptr || wOutLen < PUBSEC_FILE_HASH_SIZE)
    {
        return 0;
    }
    FILE* ptFile = OpenFile(pchPath);
    if (ptFile == nullptr)
    {
        return 0;
    }
    DigestFile(ptFile, pchOut);
    fclose(ptFile);
    return 1;
}

char* PSMDString(const u8* pbyData, u32 dwLen)
{
    static char achMD5[PUBSEC_MD5_TEXT_SIZE];

    DigestBytes(pbyData, pbyData == nullptr ? 0 : dwLen, achMD5);
    return achMD5;
}

u32 PSMD5(const u8* pbyData, u32 dwLen, char* pchOut, u32 dwOutLen)
{
    if (pbyData == nullptr || pchOut == nullptr || dwOutLen < PUBSEC_MD5_TEXT_SIZE)
    {
        return 0;
    }
    AppMemzero(pchOut, dwOutLen);
    DigestBytes(pbyData, dwLen, pchOut);
    return 1;
}

u32 PubSecStackCreat_FileHash(const char* pchFile, char* pchHash, u16 wHashLen)
{
    if (PSMDFileEx(pchFile, pchHash, wHashLen) == 0)
    {
        PUBSEC_ERR("PSMDFileEx file=%s failed.", ShownPath(pchFile));
        return PUBSEC_ERR_FAILED;
    }
    PUBSEC_DBG("FileHash:%s", pchHash);
    return PUBSEC_OK;
}

u32 PubSecStackGet_FileSize(const char* pchFile)
{
    struct stat tStat;
    if (pchFile == nullptr || stat(pchFile, &tStat) != 0)
    {
        return PUBSEC_NO_FILE;
    }
    return static_cast<u32>(tStat.st_size);
}
