/* A self-extracting patch without the patch, which is appended to this program: the bytes of the patch, their number as
   64 bits, and the mark. Run with " /e TARGET" it writes the patch to TARGET.

   Exit codes: 0 written, 1 wrong words, 2 no patch is appended, 3 the target couldn't be written (nothing is left). */
#include <windows.h>

#include <shellapi.h>

enum
{
    WRITTEN = 0,
    WRONG_WORDS = 1,
    NO_PATCH = 2,
    NOT_WRITTEN = 3,
    MARK_BYTES = 16,
    CHUNK_BYTES = 64 * 1024
};

static const char g_mark[MARK_BYTES + 1] = "ZoltPatchInside1";

struct Trailer
{
    unsigned long long length;
    char mark[MARK_BYTES];
};

static HANDLE OpenOwnFile(void)
{
    static wchar_t path[32768];
    GetModuleFileNameW(NULL, path, ARRAYSIZE(path));
    return CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, NULL, OPEN_EXISTING, 0, NULL);
}

/* Leaves the file at the first byte of the patch. */
static BOOL FindPatch(HANDLE file, unsigned long long* length)
{
    struct Trailer trailer;
    LARGE_INTEGER size;
    LARGE_INTEGER place;
    DWORD read = 0;
    int index;
    if (!GetFileSizeEx(file, &size) || size.QuadPart < (LONGLONG)sizeof(trailer)) {
        return FALSE;
    }
    place.QuadPart = size.QuadPart - (LONGLONG)sizeof(trailer);
    if (!SetFilePointerEx(file, place, NULL, FILE_BEGIN) ||
        !ReadFile(file, &trailer, sizeof(trailer), &read, NULL) || read != sizeof(trailer)) {
        return FALSE;
    }
    for (index = 0; index < MARK_BYTES; ++index) {
        if (trailer.mark[index] != g_mark[index]) {
            return FALSE;
        }
    }
    if (trailer.length > (unsigned long long)place.QuadPart) {
        return FALSE;
    }
    place.QuadPart -= (LONGLONG)trailer.length;
    *length = trailer.length;
    return SetFilePointerEx(file, place, NULL, FILE_BEGIN);
}

static BOOL CopyBytes(HANDLE from, HANDLE to, unsigned long long length)
{
    static char buffer[CHUNK_BYTES];
    while (length > 0) {
        DWORD part = length < sizeof(buffer) ? (DWORD)length : (DWORD)sizeof(buffer);
        DWORD written = 0;
        if (!ReadFile(from, buffer, part, &part, NULL) || part == 0 ||
            !WriteFile(to, buffer, part, &written, NULL) || written != part) {
            return FALSE;
        }
        length -= part;
    }
    return TRUE;
}

static int WritePatch(const wchar_t* target)
{
    unsigned long long length = 0;
    HANDLE to;
    BOOL copied;
    HANDLE from = OpenOwnFile();
    if (from == INVALID_HANDLE_VALUE || !FindPatch(from, &length)) {
        return NO_PATCH;
    }
    to = CreateFileW(target, GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, NULL);
    if (to == INVALID_HANDLE_VALUE) {
        return NOT_WRITTEN;
    }
    copied = CopyBytes(from, to, length);
    if (!CloseHandle(to) || !copied) {
        DeleteFileW(target);
        return NOT_WRITTEN;
    }
    return WRITTEN;
}

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE previous, wchar_t* commandLine, int show)
{
    int count = 0;
    wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
    (void)instance;
    (void)previous;
    (void)commandLine;
    (void)show;
    if (!words || count != 3 || lstrcmpiW(words[1], L"/e") != 0) {
        return WRONG_WORDS;
    }
    return WritePatch(words[2]);
}
