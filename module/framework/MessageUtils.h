// Localized strings and messages: loading a string by id from the current
// resource library, message boxes and command-line error prompts, and case
// conversions that report a failure instead of throwing.
#pragma once

#include <string>

#include "kcmfc.h"
#include "kcwindows.h"

// The string of that id in the current resource library; when it is missing, the
// message box "loadstring error! check string id is right!" and an empty string.
CString StringFromID(UINT id);
// Shows the string of that id in a message box.
void alertWithResourceId(UINT id);
// The string of that id (empty when missing): mode 0 prints "\n%s\n" on the
// command line, mode 1 shows a message box, any other mode does nothing.
void kcedErrorPrompt(UINT id, int mode);
// printf-style formatting into a wide string with the host's rules ("%s" takes a wide string).
std::wstring formatWide(const wchar_t* format, ...);

// Case conversions in place; on failure the text is restored and false returned.
class KvErrorEat {
public:
    static bool strMakeUpper(CString& text);
    static bool strMakeLower(CString& text);
    static bool strMakeUpper(std::wstring& text);
    static bool strMakeLower(std::wstring& text);
};
