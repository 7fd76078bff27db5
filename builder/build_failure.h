// Why a build stopped, in words. Thrown inside the builder alone and caught once, where the build ends.
#pragma once

#include "base/string.h"

// Codes of the system and of the installer that the builder names itself.
enum BuildCode : unsigned int
{
    BUILD_OK = 0,
    BUILD_FILE_NOT_FOUND = 2,
    BUILD_PATH_NOT_FOUND = 3,
    BUILD_ACCESS_DENIED = 5,
    BUILD_OUT_OF_MEMORY = 8,
    BUILD_WRITE_FAULT = 29,
    BUILD_READ_FAULT = 30,
    BUILD_SHARING_VIOLATION = 32,
    BUILD_HANDLE_DISK_FULL = 39,
    BUILD_INVALID_PARAMETER = 87,
    BUILD_DISK_FULL = 112,
    BUILD_INVALID_NAME = 123,
    BUILD_BUSY = 170,
    BUILD_ALREADY_EXISTS = 183,
    BUILD_BAD_PATH_NAME = 161,
    BUILD_FILE_TOO_LARGE = 223,
    BUILD_NOT_A_FOLDER = 267,
    BUILD_FILE_CHANGED = 1006,
    BUILD_NO_TRANSLATION = 1113,
    BUILD_CANCELLED = 1602,
    BUILD_INSTALLER_FAILED = 1603,
    BUILD_DATABASE_DAMAGED = 1620,
    BUILD_PATCH_DAMAGED = 1636,
    BUILD_PATCH_NOT_APPLICABLE = 1642,
};

struct BuildFailure
{
    unsigned int code = 0;
    CString message; // what failed, with which thing, why, and what to do
};

// What can be done about a code; a sentence, never empty.
[[nodiscard]] CString RemedyOf(unsigned int code);

// "Writing X failed: <system's text> (code 112). <remedy>"
[[nodiscard]] CString DescribeFailure(const CString& operation, const CString& path, unsigned int code,
                                      const CString& systemText);
