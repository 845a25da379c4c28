// The module's command table: every command it registers in the group
// "KV_EXTEND_COMMANDS", in registration order, with its handler, flags and the
// resource id of its local name.
#pragma once

#include <cstddef>
#include <span>

#include "kcedcommands.h"

struct KvCommandRow {
    const wchar_t* globalName;
    KcRxFunctionPtr handler;
    Kcad::Int32 flags;
    // Resource id of the local name; 0: the global name serves as the local name.
    unsigned int localNameId;
};

constexpr const wchar_t* kKvCommandGroup = L"KV_EXTEND_COMMANDS";
constexpr const wchar_t* kKvServiceName = L"KvExtendService";

// The 88 rows of the table, in order.
std::span<const KvCommandRow> kvCommandTable();
// The commands registered after the table.
std::span<const KvCommandRow> kvExtraCommands();
