// System-variable guards and helpers. A variable is always read before it is
// written, so the value goes back in the record type the host gave.
#include "framework/SysVarGuards.h"

#include <cstdlib>
#include <cwchar>

#include "kced.h"

namespace {

// The integer value of a variable record, whatever its integer type.
int integerValue(const resbuf& value) { return value.restype == RTLONG ? value.resval.rlong : value.resval.rint; }

void setIntegerValue(resbuf& value, int integer) {
    if (value.restype == RTLONG) value.resval.rlong = integer;
    else value.resval.rint = static_cast<short>(integer);
}

bool isIntegerRecord(const resbuf& value) { return value.restype == RTSHORT || value.restype == RTLONG; }

// Reads an integer variable into value; false when it cannot be read or is not an integer.
bool readInteger(const wchar_t* name, resbuf& value) {
    value = resbuf{};
    if (kcedGetVar(name, &value) != RTNORM) return false;
    if (isIntegerRecord(value)) return true;
    if (value.restype == RTSTR) std::free(value.resval.rstring);
    value = resbuf{};
    return false;
}

wchar_t* duplicateWithMalloc(const wchar_t* text) {
    const size_t length = std::wcslen(text);
    auto* copy = static_cast<wchar_t*>(std::malloc((length + 1) * sizeof(wchar_t)));
    if (copy) std::wmemcpy(copy, text, length + 1);
    return copy;
}

}  // namespace

AutoSysVar_PICKFIRST::AutoSysVar_PICKFIRST() {
    m_read = readInteger(L"PICKFIRST", m_value);
    if (!m_read) return;
    m_saved = static_cast<short>(integerValue(m_value));
    setIntegerValue(m_value, 0);
    kcedSetVar(L"PICKFIRST", &m_value);
}

AutoSysVar_PICKFIRST::~AutoSysVar_PICKFIRST() {
    if (!m_read) return;
    setIntegerValue(m_value, m_saved);
    kcedSetVar(L"PICKFIRST", &m_value);
}

PrepareCmdEcho::PrepareCmdEcho(int& savedCmdEcho) : m_saved(savedCmdEcho) {
    m_read = readInteger(L"CMDECHO", m_value);
    if (!m_read) return;
    m_saved = integerValue(m_value);
    setIntegerValue(m_value, 0);
    kcedSetVar(L"CMDECHO", &m_value);
}

PrepareCmdEcho::~PrepareCmdEcho() {
    if (!m_read) return;
    setIntegerValue(m_value, m_saved);
    kcedSetVar(L"CMDECHO", &m_value);
}

IntVarHolder::IntVarHolder(const wchar_t* name) : m_name(name ? name : L"") {
    if (m_name.empty()) return;
    m_read = readInteger(m_name.c_str(), m_value);
    if (m_read) m_saved = static_cast<short>(integerValue(m_value));
}

IntVarHolder::~IntVarHolder() {
    if (m_name.empty() || !m_read) return;
    // The kept 16-bit value, widened when the variable is a 32-bit one.
    setIntegerValue(m_value, static_cast<int>(m_saved));
    kcedSetVar(m_name.c_str(), &m_value);
}

int IntVarHolder::SetValue(short value) {
    if (m_name.empty()) return RTERROR;
    resbuf record{};
    if (!readInteger(m_name.c_str(), record)) return RTERROR;
    setIntegerValue(record, value);
    return kcedSetVar(m_name.c_str(), &record);
}

int get_acad_str_var(const wchar_t* name, wchar_t* buffer, size_t size) {
    if (!name || !buffer) return 0;
    resbuf value{};
    if (kcedGetVar(name, &value) != RTNORM || value.restype != RTSTR) return 0;
    if (size > 0) {
        const wchar_t* text = value.resval.rstring ? value.resval.rstring : L"";
        std::wcsncpy(buffer, text, size - 1);
        buffer[size - 1] = L'\0';
    }
    std::free(value.resval.rstring);
    return 1;
}

int set_acad_str_var(const wchar_t* name, const wchar_t* value) {
    if (!name || !*name || !value) return 0;
    resbuf record{};
    if (kcedGetVar(name, &record) != RTNORM) return 0;
    if (record.restype != RTSTR) return 0;
    std::free(record.resval.rstring);
    record.resval.rstring = duplicateWithMalloc(value);
    if (!record.resval.rstring) return 0;
    const int status = kcedSetVar(name, &record);
    std::free(record.resval.rstring);
    return status == RTNORM ? 1 : 0;
}

int set_acad_int_var(const wchar_t* name, int value) {
    if (!name || !*name) return 0;
    resbuf record{};
    if (!readInteger(name, record)) return 0;
    setIntegerValue(record, value);
    return kcedSetVar(name, &record) == RTNORM ? 1 : 0;
}
