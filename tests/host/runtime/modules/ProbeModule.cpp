// A small extension module for the runtime tests, built against the SDK only.
// It behaves like a real module (resource library, unlock, MDI aware, a
// service, a command group, LISP functions defined per document) and writes
// every message it gets to the log file named by PROBE_LOG, one line each:
//   attach / detach          DllMain
//   msg 1 / msg 2 / msg 8    entry-point messages
//   msg 3 <document title>   the document current while the message is sent
//   msg 5 code=<n> args=<k>  a LISP call
// plus a few result lines (greeting, add, removeGroup, free). PROBE_MODE
// changes message 1: "fail-init" answers 3, "throw-init" throws, "stay-locked"
// does not unlock.
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "kcap.h"
#include "kcdbfuncs.h"
#include "kced.h"
#include "kcedcommands.h"
#include "kcmfc.h"
#include "kcut.h"
#include "kcwindows.h"

namespace {

constexpr const wchar_t* kGroup = L"PROBE_COMMANDS";
constexpr const wchar_t* kService = L"ProbeService";
constexpr UINT kGreetingId = 100;
constexpr UINT kHelloLocalNameId = 101;
constexpr UINT kJoinLocalNameId = 102;

HINSTANCE resources = nullptr;
void* moduleHandle = nullptr;

std::string narrow(const std::wstring& text) {
    std::string out;
    for (wchar_t c : text) out += c < 0x80 ? static_cast<char>(c) : '?';
    return out;
}

void log(const std::string& line) {
    const char* path = std::getenv("PROBE_LOG");
    if (!path || !*path) return;
    if (std::FILE* file = std::fopen(path, "a")) {
        std::fprintf(file, "%s\n", line.c_str());
        std::fclose(file);
    }
}

std::string mode() {
    const char* value = std::getenv("PROBE_MODE");
    return value ? value : "";
}

std::wstring loadString(HINSTANCE from, UINT id) {
    wchar_t buffer[256];
    return LoadStringW(from, id, buffer, 256) > 0 ? std::wstring(buffer) : std::wstring();
}

KcEdCommandStack* commandStack() { return KcEdCommandStack::cast(kcrxSysRegistry()->at(L"KCAD_REGISTERED_COMMANDS")); }
KcRxDynamicLinker* linker() { return KcRxDynamicLinker::cast(kcrxSysRegistry()->at(L"DynamicLinker")); }

// --- commands ------------------------------------------------------------------

void probeHello() {
    // As a module's commands do: the module's resources are current while it runs.
    kcDocManagerPtr()->pushResourceHandle(resources);
    kcutPrintf(L"Probe says: %ls\n", loadString(AfxGetResourceHandle(), kGreetingId).c_str());
    kcDocManagerPtr()->popResourceHandle();
}
void probeDupFirst() { kcutPrintf(L"first registration ran\n"); }
void probeDupSecond() { kcutPrintf(L"second registration ran\n"); }
void probeEmpty() { kcutPrintf(L"empty local name ran\n"); }
void probeThrow() { throw std::runtime_error("probe command failure"); }
void probeUnloadSelf() {
    const bool unloaded = linker()->unloadModule(L"ProbeModule.krx");
    kcutPrintf(L"unload under itself: %ls\n", unloaded ? L"unloaded" : L"refused");
}

void probeLoadSibling() {
    // A bare name: the linker finds it beside this module.
    const bool loaded = linker()->loadModule(L"ProbeSibling.krx", true);
    kcutPrintf(L"sibling: %ls\n", loaded ? L"loaded" : L"not loaded");
}

// Opens a drawing as another document in the application context, then makes
// the document current again that was current before, as a comparison does.
void openInApplicationContext(void* path) {
    KcApDocManager* manager = kcDocManagerPtr();
    const int status = manager->isApplicationContext()
                           ? static_cast<int>(manager->appContextOpenDocument(static_cast<const wchar_t*>(path)))
                           : -1;
    kcutPrintf(L"open status %d\n", status);
}
void probeOpen() {
    wchar_t path[1024];
    if (kcedGetString(1, L"Drawing to open: ", path, 1024) != RTNORM) return;
    KcApDocManager* manager = kcDocManagerPtr();
    KcApDocument* previous = manager->curDocument();
    manager->executeInApplicationContext(openInApplicationContext, path);
    wchar_t keep[8];
    if (kcedGetString(0, L"Keep it current? ", keep, 8) == RTNORM && keep[0] != L'Y' && keep[0] != L'y') {
        manager->setCurDocument(previous);
    }
    kcutPrintf(L"documents %d, current %ls\n", manager->documentCount(), manager->curDocument()->docTitle());
}

void addCommand(const wchar_t* global, const wchar_t* local, KcRxFunctionPtr handler) {
    const Kcad::ErrorStatus status = commandStack()->addCommand(kGroup, global, local, KcRx::kCmdModal, handler);
    log("add " + narrow(global) + " " + std::to_string(static_cast<int>(status)));
}

void initApp() {
    if (!kcrxServiceIsRegistered(kService)) kcrxRegisterService(kService);
    addCommand(L"PROBEHELLO", loadString(resources, kHelloLocalNameId).c_str(), probeHello);
    addCommand(L"PROBEDUP", L"PROBEDUP", probeDupFirst);
    addCommand(L"PROBEDUP", L"PROBEDUP", probeDupSecond);
    addCommand(L"PROBEEMPTY", L"", probeEmpty);
    addCommand(L"PROBETHROW", L"PROBETHROW", probeThrow);
    addCommand(L"PROBEUNLOADSELF", L"PROBEUNLOADSELF", probeUnloadSelf);
    addCommand(L"PROBELOADSIBLING", L"PROBELOADSIBLING", probeLoadSibling);
    addCommand(L"PROBEOPEN", L"PROBEOPEN", probeOpen);
}

void unloadApp() {
    if (kcrxServiceIsRegistered(kService)) {
        KcRxDictionary* services = KcRxDictionary::cast(kcrxSysRegistry()->at(L"ServiceDictionary"));
        delete services->remove(kService);
    }
    log("removeGroup " + std::to_string(static_cast<int>(commandStack()->removeGroup(kGroup))));
}

// --- LISP functions --------------------------------------------------------------

// (probe_sum n ...): the sum, an integer unless a real takes part.
void sum(const resbuf* args) {
    long long whole = 0;
    double real = 0.0;
    bool anyReal = false;
    for (const resbuf* rb = args; rb; rb = rb->rbnext) {
        if (rb->restype == RTSHORT) {
            whole += rb->resval.rint;
        } else if (rb->restype == RTLONG) {
            whole += rb->resval.rlong;
        } else if (rb->restype == RTREAL) {
            real += rb->resval.rreal;
            anyReal = true;
        } else {
            kcdbFail(L"probe_sum takes numbers");
            kcedRetNil();
            return;
        }
    }
    if (anyReal) kcedRetReal(real + static_cast<double>(whole));
    else kcedRetInt(static_cast<int>(whole));
}

// (probe_join "a" "b" ...): the strings joined with "+".
void join(const resbuf* args) {
    std::wstring text;
    for (const resbuf* rb = args; rb; rb = rb->rbnext) {
        if (rb->restype != RTSTR) continue;
        text += (text.empty() ? L"" : L"+") + std::wstring(rb->resval.rstring);
    }
    kcedRetStr(text.c_str());
}

void dispatch() {
    const int code = kcedGetFunCode();
    resbuf* args = kcedGetArgs();
    int count = 0;
    for (const resbuf* rb = args; rb; rb = rb->rbnext) ++count;
    log("msg 5 code=" + std::to_string(code) + " args=" + std::to_string(count));
    switch (code) {
        case 0: sum(args); break;
        case 1: kcedRetList(args); break;  // (probe_echo ...): its arguments as a list
        case 2: break;                     // (probe_quiet): sets no result
        case 3: kcutRelRb(args); throw std::runtime_error("probe function failure");
        case 4: join(args); break;
        default: kcdbFail(L"Incorrect function code.");
    }
    kcutRelRb(args);
}

void defineFunctions() {
    kcedDefunEx(L"probe_sum", L"probe_sum", 0);
    kcedDefunEx(L"probe_echo", L"probe_echo", 1);
    kcedDefunEx(L"probe_quiet", L"probe_quiet", 2);
    kcedDefunEx(L"probe_throw", L"probe_throw", 3);
    kcedDefunEx(L"probe_join", loadString(resources, kJoinLocalNameId).c_str(), 4);
    kcedDefunEx(L"probe_bad", L"probe_bad", 7);
}

std::string currentTitle() {
    const KcApDocument* document = kcDocManagerPtr()->curDocument();
    return document ? narrow(document->docTitle()) : "(none)";
}

KcRx::AppRetCode initialize(void* packet) {
    if (mode() == "fail-init") return KcRx::kRetError;
    if (mode() == "throw-init") throw std::runtime_error("probe initialisation failure");
    // A real module refuses to start without this pseudo-module.
    if (!GetModuleHandleW(L"KvUInfo.dll")) return KcRx::kRetError;
    resources = loadResourceDll(L"ProbeModuleRes.dll");
    if (!resources) return KcRx::kRetError;
    log("greeting " + narrow(loadString(resources, kGreetingId)));
    if (mode() != "stay-locked") linker()->unlockApplication(packet);
    kcrxRegisterAppMDIAware(packet);
    initApp();
    return KcRx::kRetOK;
}

}  // namespace

extern "C" int DllMain(void* hModule, unsigned long reason, void*) {
    if (reason == 1) moduleHandle = hModule;
    log(reason == 1 ? "attach" : "detach");
    return 1;
}

extern "C" KcRx::AppRetCode kcrxEntryPoint(KcRx::AppMsgCode message, void* packet) {
    switch (message) {
        case KcRx::kInitAppMsg: log("msg 1"); return initialize(packet);
        case KcRx::kUnloadAppMsg:
            log("msg 2");
            unloadApp();
            if (resources) log(std::string("free ") + (FreeLibrary(resources) ? "1" : "0"));
            resources = nullptr;
            break;
        case KcRx::kLoadDwgMsg: log("msg 3 " + currentTitle()); defineFunctions(); break;
        case KcRx::kUnloadDwgMsg: log("msg 4 " + currentTitle()); break;
        case KcRx::kInvkSubrMsg: dispatch(); break;
        case KcRx::kQuitMsg: log("msg 8"); unloadApp(); break;
        default: log("msg " + std::to_string(static_cast<int>(message))); break;
    }
    return KcRx::kRetOK;
}

// An export for GetProcAddress, with the module handle DllMain was given.
extern "C" void* probeModuleHandle() { return moduleHandle; }
