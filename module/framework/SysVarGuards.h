// Scope guards and helpers that save, set and restore system variables, so a
// command restores what it changed on every way out (error, cancel, normal
// end). Guards restore in their destructors, in reverse order of creation.
#pragma once

#include <string>

#include "kcadstd.h"

// Sets PICKFIRST to 0 for its lifetime, so selection prompts ignore a pre-selection.
class AutoSysVar_PICKFIRST {
public:
    AutoSysVar_PICKFIRST();
    ~AutoSysVar_PICKFIRST();
    AutoSysVar_PICKFIRST(const AutoSysVar_PICKFIRST&) = delete;
    AutoSysVar_PICKFIRST& operator=(const AutoSysVar_PICKFIRST&) = delete;

private:
    resbuf m_value{};
    short m_saved = 0;
    bool m_read = false;
};

// Sets CMDECHO to 0 for its lifetime, the old value kept in the caller's integer
// (written back from that integer on destruction). Used around scripted host
// commands so that they are not echoed.
class PrepareCmdEcho {
public:
    explicit PrepareCmdEcho(int& savedCmdEcho);
    ~PrepareCmdEcho();
    PrepareCmdEcho(const PrepareCmdEcho&) = delete;
    PrepareCmdEcho& operator=(const PrepareCmdEcho&) = delete;

private:
    resbuf m_value{};
    int& m_saved;
    bool m_read = false;
};

// Keeps the 16-bit value of one integer variable and writes it back on
// destruction. An empty name makes the holder inert (SetValue gives RTERROR).
class IntVarHolder {
public:
    explicit IntVarHolder(const wchar_t* name);
    ~IntVarHolder();
    IntVarHolder(const IntVarHolder&) = delete;
    IntVarHolder& operator=(const IntVarHolder&) = delete;

    // Writes a new value (the variable is read first for its record type); the host's status.
    int SetValue(short value);
    short savedValue() const { return m_saved; }

private:
    resbuf m_value{};
    std::wstring m_name;
    short m_saved = 0;
    bool m_read = false;
};

// Copies a string variable into buffer (at most size characters, always
// terminated when size > 0); 1, or 0 when the variable cannot be read.
int get_acad_str_var(const wchar_t* name, wchar_t* buffer, size_t size);
// Sets a string variable; 1, or 0 for a null/empty name, a null value or a failure.
int set_acad_str_var(const wchar_t* name, const wchar_t* value);
// Sets an integer variable (keeping its record type); 1, or 0 on failure.
int set_acad_int_var(const wchar_t* name, int value);
