// The letter-case conversions of TCASE: the five case modes (an ASCII letter
// each, kept as an integer in the dialog and in the profile) and their routines.
// A routine replaces a host-allocated text with its converted copy; backslash
// code pairs of multiline texts are protected as each mode describes, while
// the arguments of formatting codes and "%%" codes change case like any text.
#pragma once

#include "kcdb.h"

// The case modes by their stored letter.
enum TcaseMode : int {
    kTcaseSentence = 'S',  // 83
    kTcaseLower = 'L',     // 76
    kTcaseUpper = 'U',     // 85
    kTcaseTitle = 'T',     // 84
    kTcaseToggle = 'G',    // 71
};

// Each routine converts the text (allocated with kcutNewString, null taken as
// empty) into a new host string and frees the old one. When the new string
// cannot be allocated the text is left as it was and the status is returned.
Kcad::ErrorStatus tcase_sentence(wchar_t*& text, bool isMText);
Kcad::ErrorStatus tcase_lower(wchar_t*& text, bool isMText);
Kcad::ErrorStatus tcase_upper(wchar_t*& text, bool isMText);
Kcad::ErrorStatus tcase_title(wchar_t*& text, bool isMText);
Kcad::ErrorStatus tcase_change(wchar_t*& text, bool isMText);

// Runs the routine of a mode. Only lower and upper case see isMText; the other
// routines always scan for code pairs. A value that is not one of the five
// letters leaves the text as it is (eOk).
Kcad::ErrorStatus tcase_convert(int mode, wchar_t*& text, bool isMText);
