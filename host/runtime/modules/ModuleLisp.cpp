// Module LISP functions: definitions per document, the invocation being
// dispatched (its code, arguments and result) and the SDK functions modules
// use during message 5.
#include "runtime/modules/ModuleLisp.h"

#include <algorithm>
#include <cwctype>
#include <map>
#include <memory>
#include <vector>

#include "db/ResultBuffers.h"
#include "editor/CommandLine.h"
#include "editor/Document.h"
#include "editor/lisp/Lisp.h"
#include "editor/lisp/LispResbuf.h"
#include "kcedcommands.h"
#include "runtime/modules/ModuleLoader.h"

namespace korva::runtime {

namespace {

using editor::LispValue;

struct LispDefinition {
    std::wstring globalName;
    std::wstring localName;
    int code = 0;
    LoadedModule* module = nullptr;
};

// One call being dispatched; calls nest when a function evaluates LISP itself.
struct Invocation {
    int code = 0;
    resbuf* arguments = nullptr;  // the host's copy
    LispValue result;
    ~Invocation() { db::releaseResbufs(arguments); }
};

std::map<const editor::Document*, std::vector<LispDefinition>>& definitions() {
    static std::map<const editor::Document*, std::vector<LispDefinition>> byDocument;
    return byDocument;
}

std::vector<std::unique_ptr<Invocation>>& invocations() {
    static std::vector<std::unique_ptr<Invocation>> stack;
    return stack;
}

Invocation* currentInvocation() { return invocations().empty() ? nullptr : invocations().back().get(); }

bool sameName(std::wstring_view a, std::wstring_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](wchar_t x, wchar_t y) {
               return std::towupper(static_cast<wint_t>(x)) == std::towupper(static_cast<wint_t>(y));
           });
}

const LispDefinition* findDefinition(std::wstring_view name) {
    const editor::Document* document = editor::Session::instance().current();
    auto it = definitions().find(document);
    if (!document || it == definitions().end()) return nullptr;
    for (const LispDefinition& definition : it->second) {
        if (sameName(definition.globalName, name) || sameName(definition.localName, name)) return &definition;
    }
    return nullptr;
}

// A record-by-record copy of a chain, strings and binary chunks included.
resbuf* copyChain(const resbuf* chain) {
    db::ResbufChain copy;
    for (const resbuf* item = chain; item; item = item->rbnext) {
        resbuf* rb = copy.append(item->restype);
        if (!rb) break;
        rb->resval = item->resval;
        const db::ItemType type = db::itemTypeOf(item->restype);
        if (type == db::ItemType::Text || type == db::ItemType::HandleText) {
            rb->resval.rstring = item->resval.rstring ? db::duplicateWide(item->resval.rstring) : nullptr;
        } else if (type == db::ItemType::Binary) {
            const short length = item->resval.rbinary.clen;
            rb->resval.rbinary.buf = nullptr;
            if (length > 0 && item->resval.rbinary.buf) {
                rb->resval.rbinary.buf = static_cast<char*>(std::malloc(static_cast<size_t>(length)));
                if (rb->resval.rbinary.buf) std::copy_n(item->resval.rbinary.buf, length, rb->resval.rbinary.buf);
            }
        }
    }
    return copy.release();
}

int setResult(LispValue value) {
    if (Invocation* invocation = currentInvocation()) invocation->result = std::move(value);
    // Outside a function (a command "ending quietly") there is nothing to record.
    return RTNORM;
}

}  // namespace

void installModuleLispFunctions() {
    editor::ExternalLispFunctions functions;
    functions.exists = [](std::wstring_view name) { return isModuleLispFunction(name); };
    functions.call = [](std::wstring_view name, const resbuf* arguments, LispValue& result, std::wstring& error) {
        return callModuleLispFunction(name, arguments, result, error);
    };
    editor::setExternalLispFunctions(std::move(functions));
}

bool isModuleLispFunction(std::wstring_view name) { return findDefinition(name) != nullptr; }

bool callModuleLispFunction(std::wstring_view name, const resbuf* arguments, LispValue& result, std::wstring& error) {
    const LispDefinition* definition = findDefinition(name);
    if (!definition) {
        error = L"no function definition: " + std::wstring(name);
        return false;
    }
    ModuleLoader& loader = ModuleLoader::instance();
    LoadedModule* module = loader.fromPacket(definition->module);
    if (!module) {
        error = L"the module of " + std::wstring(name) + L" is not loaded";
        return false;
    }
    auto invocation = std::make_unique<Invocation>();
    invocation->code = definition->code;
    invocation->arguments = copyChain(arguments);
    invocations().push_back(std::move(invocation));
    const KcRx::AppRetCode status = loader.send(*module, KcRx::kInvkSubrMsg);
    result = std::move(invocations().back()->result);
    invocations().pop_back();
    if (status != KcRx::kRetOK) {
        error = L"the function " + std::wstring(name) + L" failed";
        return false;
    }
    return true;
}

void forgetLispFunctionsOf(const LoadedModule& module) {
    for (auto& [document, list] : definitions()) {
        std::erase_if(list, [&](const LispDefinition& d) { return d.module == &module; });
    }
}

void forgetLispFunctionsOf(const editor::Document& document) { definitions().erase(&document); }

}  // namespace korva::runtime

using korva::runtime::ModuleLoader;
using korva::runtime::currentInvocation;

// Named in the SDK: the caller is found from the return address, so these must
// never be inlined into host code that calls them.
__attribute__((noinline)) int kcedDefunEx(const wchar_t* globalName, const wchar_t* localName, int functionCode) {
    using namespace korva::runtime;
    const void* caller = __builtin_return_address(0);
    if (!globalName || !*globalName) return RTERROR;
    const korva::editor::Document* document = korva::editor::Session::instance().current();
    ModuleLoader& loader = ModuleLoader::instance();
    LoadedModule* module = loader.containing(caller);
    if (!module) module = loader.messageTarget();
    if (!document || !module) return RTERROR;
    auto& list = definitions()[document];
    std::erase_if(list, [&](const LispDefinition& d) { return sameName(d.globalName, globalName); });
    list.push_back({globalName, localName && *localName ? localName : globalName, functionCode, module});
    return RTNORM;
}

int kcedUndef(const wchar_t* name, int functionCode) {
    using namespace korva::runtime;
    const korva::editor::Document* document = korva::editor::Session::instance().current();
    auto it = definitions().find(document);
    if (!name || !document || it == definitions().end()) return RTERROR;
    const size_t removed = std::erase_if(it->second, [&](const LispDefinition& d) {
        return d.code == functionCode && (sameName(d.globalName, name) || sameName(d.localName, name));
    });
    return removed > 0 ? RTNORM : RTERROR;
}

int kcedGetFunCode() {
    const auto* invocation = currentInvocation();
    return invocation ? invocation->code : RTERROR;
}

resbuf* kcedGetArgs() {
    const auto* invocation = currentInvocation();
    return invocation ? korva::runtime::copyChain(invocation->arguments) : nullptr;
}

int kcedRetVoid() { return korva::runtime::setResult(korva::editor::LispValue::nil()); }
int kcedRetNil() { return korva::runtime::setResult(korva::editor::LispValue::nil()); }
int kcedRetT() { return korva::runtime::setResult(korva::editor::LispValue::t()); }
int kcedRetInt(int value) { return korva::runtime::setResult(korva::editor::LispValue::ofInteger(value)); }
int kcedRetReal(double value) { return korva::runtime::setResult(korva::editor::LispValue::ofReal(value)); }

int kcedRetStr(const wchar_t* value) {
    if (!value) return RTERROR;
    return korva::runtime::setResult(korva::editor::LispValue::ofString(value));
}

int kcedRetPoint(const kcad_point value) {
    if (!value) return RTERROR;
    return korva::runtime::setResult(korva::editor::LispValue::ofPoint(KcGePoint3d(value[0], value[1], value[2])));
}

int kcedRetName(const kcad_name value, int type) {
    if (!value || (type != RTENAME && type != RTPICKS)) return RTERROR;
    const auto kind = type == RTENAME ? korva::editor::LispValue::Type::EntityName : korva::editor::LispValue::Type::SelectionSet;
    return korva::runtime::setResult(korva::editor::LispValue::ofName(kind, value));
}

int kcedRetList(const resbuf* list) {
    korva::editor::LispValue value;
    std::wstring error;
    if (!korva::editor::lisp::listFromResbufs(list, value, error)) return RTERROR;
    return korva::runtime::setResult(std::move(value));
}

int kcdbFail(const wchar_t* message) {
    korva::editor::CommandLine::instance().print(std::wstring(L"\nApplication ERROR: ") + (message ? message : L""));
    return RTNORM;
}

int hostInvokeLisp(const wchar_t* functionName, const resbuf* args, resbuf** result) {
    if (result) *result = nullptr;
    if (!functionName || !*functionName) return RTERROR;
    korva::editor::LispValue value;
    std::wstring error;
    if (!korva::runtime::callModuleLispFunction(functionName, args, value, error)) return RTERROR;
    if (result) *result = korva::editor::lisp::argumentsToResbufs({value}, error);
    return RTNORM;
}
