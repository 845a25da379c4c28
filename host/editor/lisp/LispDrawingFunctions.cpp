// Functions of scripts that read and change the drawing and its variables:
// handent, getvar, setvar, entget, entlast and entnext. They call the same SDK
// functions a module calls, so a script sees what a module would see.
#include <climits>

#include "db/ResultBuffers.h"
#include "editor/lisp/LispData.h"
#include "editor/lisp/LispFunctions.h"
#include "editor/lisp/LispResbuf.h"
#include "kcdbfuncs.h"
#include "kced.h"

namespace korva::editor::lisp {

namespace {

using Type = LispValue::Type;

// Owns a chain that an SDK function handed out.
struct OwnedChain {
    resbuf* head = nullptr;
    explicit OwnedChain(resbuf* chain) : head(chain) {}
    ~OwnedChain() { db::releaseResbufs(head); }
    OwnedChain(const OwnedChain&) = delete;
    OwnedChain& operator=(const OwnedChain&) = delete;
};

LispValue nameValue(const kcad_name name) { return LispValue::ofName(Type::EntityName, name); }

bool handent(LispArguments& arguments, LispValue& result) {
    std::wstring handle;
    if (!arguments.expect(1, 1) || !arguments.text(0, handle)) return false;
    kcad_name name = {0, 0};
    result = kcdbHandEnt(handle.c_str(), name) == RTNORM ? nameValue(name) : LispValue::nil();
    return true;
}

bool getvar(LispArguments& arguments, LispValue& result) {
    std::wstring name;
    if (!arguments.expect(1, 1) || !arguments.text(0, name)) return false;
    OwnedChain value(db::newResbuf(RTNONE));
    if (!value.head || kcedGetVar(name.c_str(), value.head) != RTNORM) {
        result = LispValue::nil();  // an unknown variable reads as nil
        return true;
    }
    const resbuf* cursor = value.head;
    std::wstring error;
    if (!valueFromResbufs(cursor, result, error)) return arguments.fail(error);
    return true;
}

// A value as the one record kcedSetVar takes; false for values no variable holds.
bool variableValue(const LispValue& value, db::ResbufChain& chain) {
    bool twoD = false;
    if (const auto point = pointOf(value, &twoD)) {
        chain.appendPoint(twoD ? RTPOINT : RT3DPOINT, *point);
        return true;
    }
    switch (value.type) {
        case Type::Integer:
            if (value.integer >= SHRT_MIN && value.integer <= SHRT_MAX) {
                chain.appendShort(RTSHORT, static_cast<int>(value.integer));
            } else if (value.integer >= INT32_MIN && value.integer <= INT32_MAX) {
                if (resbuf* rb = chain.append(RTLONG)) rb->resval.rlong = static_cast<int32_t>(value.integer);
            } else {
                return false;
            }
            return true;
        case Type::Real: chain.appendReal(RTREAL, value.real); return true;
        case Type::String: chain.appendText(RTSTR, value.text); return true;
        default: return false;
    }
}

bool setvar(LispArguments& arguments, LispValue& result) {
    std::wstring name;
    if (!arguments.expect(2, 2) || !arguments.text(0, name)) return false;
    db::ResbufChain chain;
    if (!variableValue(arguments[1], chain)) return arguments.badType(L"variable value", 1);
    OwnedChain value(chain.release());
    if (!value.head || kcedSetVar(name.c_str(), value.head) != RTNORM)
        return arguments.fail(L"variable setting rejected: \"" + upperName(name) + L"\" " + arguments[1].print());
    result = arguments[1];
    return true;
}

// (entget ename [applications]): the data list, with the extended data of the named applications.
bool entget(LispArguments& arguments, LispValue& result) {
    kcad_name name = {0, 0};
    if (!arguments.expect(1, 2) || !arguments.entityName(0, name)) return false;
    resbuf* list = nullptr;
    if (arguments.size() == 2) {
        if (!isListValue(arguments[1])) return arguments.badType(L"listp", 1);
        std::wstring error;
        OwnedChain applications(argumentsToResbufs(itemsOf(arguments[1]), error));
        if (!error.empty()) return arguments.fail(error);
        list = kcdbEntGetX(name, applications.head);
    } else {
        list = kcdbEntGet(name);
    }
    OwnedChain owned(list);
    result = owned.head ? dxfListFromResbufs(owned.head) : LispValue::nil();
    return true;
}

bool entlast(LispArguments& arguments, LispValue& result) {
    if (!arguments.expect(0, 0)) return false;
    kcad_name name = {0, 0};
    result = kcdbEntLast(name) == RTNORM ? nameValue(name) : LispValue::nil();
    return true;
}

// (entnext) is the first entity of the drawing; (entnext ename) the one after ename.
bool entnext(LispArguments& arguments, LispValue& result) {
    kcad_name from = {0, 0};
    if (!arguments.expect(0, 1)) return false;
    if (arguments.size() == 1 && !arguments.entityName(0, from)) return false;
    kcad_name name = {0, 0};
    result = kcdbEntNext(from, name) == RTNORM ? nameValue(name) : LispValue::nil();
    return true;
}

}  // namespace

void addDrawingFunctions(LispFunctionTable& table) {
    table.add(L"handent", &handent);
    table.add(L"getvar", &getvar);
    table.add(L"setvar", &setvar);
    table.add(L"entget", &entget);
    table.add(L"entlast", &entlast);
    table.add(L"entnext", &entnext);
}

}  // namespace korva::editor::lisp
