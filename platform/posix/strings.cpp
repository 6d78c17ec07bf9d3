/* SPDX-License-Identifier: Apache-2.0 */
/* Strings and memory: the C library's functions under the names of the host interface. */
#include "platform/posix/posix_platform.h"

#include <stdio.h>
#include <string.h>

PLATFORM_FUNCTION s32 AppStrcmp(const char* pchLeft, const char* pchRight)
{
    return strcmp(pchLeft, pchRight);
}

PLATFORM_FUNCTION char* AppStrncpy(char* pchDest, const char* pchSrc, size_t size)
{
    return strncpy(pchDest, pchSrc, size);
}

PLATFORM_FUNCTION char* AppStrstr(const char* pchText, const char* pchPart)
{
    return const_cast<char*>(strstr(pchText, pchPart));
}

PLATFORM_FUNCTION char* AppStrchr(const char* pchText, s32 nChar)
{
    return const_cast<char*>(strchr(pchText, nChar));
}

PLATFORM_FUNCTION size_t AppStrlen(const char* pchText)
{
    return strlen(pchText);
}

PLATFORM_FUNCTION s32 AppSnprintf(char* pchDest, size_t size, const char* pchFormat, ...)
{
    va_list arguments;
    va_start(arguments, pchFormat);
    const s32 length = vsnprintf(pchDest, size, pchFormat, arguments);
    va_end(arguments);
    return length;
}

PLATFORM_FUNCTION void* AppMemcpy(void* pvDest, const void* pvSrc, size_t size)
{
    return size == 0 ? pvDest : memcpy(pvDest, pvSrc, size);
}

PLATFORM_FUNCTION s32 AppMemcmp(const void* pvLeft, const void* pvRight, size_t size)
{
    return size == 0 ? 0 : memcmp(pvLeft, pvRight, size);
}

PLATFORM_FUNCTION void AppMemzero(void* pvDest, size_t size)
{
    if (size != 0)
    {
        memset(pvDest, 0, size);
    }
}
