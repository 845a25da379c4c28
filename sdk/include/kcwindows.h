// The host's system-compatibility layer: the Win32 types, the registry store
// under which the user profile lives, file functions, loaded modules and their
// string resources, and message boxes. Paths accept "\" and "/" alike.
#pragma once

#include <cstdint>
#include <cwchar>

typedef int BOOL;
typedef unsigned char BYTE;
typedef uint16_t WORD;
typedef uint32_t DWORD;
typedef int32_t LONG;
typedef unsigned int UINT;
typedef DWORD REGSAM;
typedef BYTE* LPBYTE;
typedef DWORD* LPDWORD;
typedef wchar_t* LPWSTR;
typedef const wchar_t* LPCWSTR;
typedef const char* LPCSTR;
typedef uintptr_t WPARAM;
typedef intptr_t LPARAM;
typedef intptr_t INT_PTR;
typedef void* HANDLE;
typedef void* LPSECURITY_ATTRIBUTES;

struct HKEY__;
typedef HKEY__* HKEY;
typedef HKEY* PHKEY;
struct HINSTANCE__;
typedef HINSTANCE__* HINSTANCE;
typedef HINSTANCE HMODULE;
struct HWND__;
typedef HWND__* HWND;
typedef intptr_t (*FARPROC)();

constexpr BOOL TRUE = 1;
constexpr BOOL FALSE = 0;

// Registry.
#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(static_cast<uintptr_t>(0x80000001u)))
constexpr LONG ERROR_SUCCESS = 0;
constexpr LONG ERROR_FILE_NOT_FOUND = 2;
constexpr LONG ERROR_PATH_NOT_FOUND = 3;
constexpr LONG ERROR_ACCESS_DENIED = 5;
constexpr LONG ERROR_INVALID_HANDLE = 6;
constexpr LONG ERROR_SHARING_VIOLATION = 32;
constexpr LONG ERROR_FILE_EXISTS = 80;
constexpr LONG ERROR_INVALID_PARAMETER = 87;
constexpr LONG ERROR_ALREADY_EXISTS = 183;
constexpr LONG ERROR_MORE_DATA = 234;
// An open key that was deleted (by another process) since.
constexpr LONG ERROR_KEY_DELETED = 1018;
constexpr DWORD REG_NONE = 0;
constexpr DWORD REG_SZ = 1;
constexpr DWORD REG_DWORD = 4;
constexpr REGSAM KEY_QUERY_VALUE = 0x0001;
constexpr REGSAM KEY_SET_VALUE = 0x0002;
constexpr REGSAM KEY_CREATE_SUB_KEY = 0x0004;
constexpr REGSAM KEY_READ = 0x20019;
constexpr REGSAM KEY_WRITE = 0x20006;
constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;
constexpr DWORD REG_OPTION_NON_VOLATILE = 0;
constexpr DWORD REG_CREATED_NEW_KEY = 1;
constexpr DWORD REG_OPENED_EXISTING_KEY = 2;

LONG RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD options, REGSAM access, PHKEY result);
LONG RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD reserved, LPWSTR className, DWORD options, REGSAM access,
                     LPSECURITY_ATTRIBUTES security, PHKEY result, LPDWORD disposition);
LONG RegQueryValueExW(HKEY key, LPCWSTR valueName, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD dataSize);
// REG_SZ data are wide characters including the terminating null; REG_DWORD data are 4 bytes.
LONG RegSetValueExW(HKEY key, LPCWSTR valueName, DWORD reserved, DWORD type, const BYTE* data, DWORD dataSize);
LONG RegDeleteValueW(HKEY key, LPCWSTR valueName);
LONG RegCloseKey(HKEY key);

// Files.
#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<intptr_t>(-1)))
constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFFu;
constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x01;
constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
constexpr DWORD GENERIC_READ = 0x80000000u;
constexpr DWORD GENERIC_WRITE = 0x40000000u;
constexpr DWORD FILE_SHARE_READ = 1;
constexpr DWORD FILE_SHARE_WRITE = 2;
constexpr DWORD CREATE_NEW = 1;
constexpr DWORD CREATE_ALWAYS = 2;
constexpr DWORD OPEN_EXISTING = 3;
constexpr DWORD OPEN_ALWAYS = 4;
constexpr DWORD TRUNCATE_EXISTING = 5;

// The temporary folder with a trailing separator; its length, the size needed when
// the buffer is too small, or 0 on failure.
DWORD GetTempPathW(DWORD bufferLength, LPWSTR buffer);
BOOL CopyFileW(LPCWSTR existingFile, LPCWSTR newFile, BOOL failIfExists);
HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD shareMode, LPSECURITY_ATTRIBUTES security, DWORD creation,
                   DWORD flags, HANDLE templateFile);
BOOL CloseHandle(HANDLE handle);
BOOL DeleteFileW(LPCWSTR path);
DWORD GetFileAttributesW(LPCWSTR path);
// The calling thread's last error of the functions above.
DWORD GetLastError();

// Modules and resources. A null module name or handle stands for the host program.
HMODULE GetModuleHandleW(LPCWSTR moduleName);
// The module's full path with "/" separators; its length, or 0 for an unknown module.
DWORD GetModuleFileNameW(HMODULE module, LPWSTR buffer, DWORD size);
FARPROC GetProcAddress(HMODULE module, LPCSTR exportName);
BOOL FreeLibrary(HMODULE module);
// Copies string `id` of a resource library, cut to bufferMax - 1 characters; the number
// of characters copied, or 0 when the id is missing.
int LoadStringW(HINSTANCE instance, UINT id, LPWSTR buffer, int bufferMax);
// Loads a resource library found beside the calling module, the copy in a folder named
// after the user's locale first; null when there is none.
HINSTANCE loadResourceDll(const wchar_t* libraryName);

// Message boxes: shown, or during a script printed and answered OK.
constexpr UINT MB_OK = 0x0;
constexpr UINT MB_OKCANCEL = 0x1;
constexpr UINT MB_YESNO = 0x4;
constexpr UINT MB_ICONERROR = 0x10;
constexpr UINT MB_ICONWARNING = 0x30;
constexpr UINT MB_ICONINFORMATION = 0x40;
constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDYES = 6;
constexpr int IDNO = 7;
int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type);

constexpr UINT WM_COMMAND = 273;
