// The SDK's prompt, variable, scripted-command and printing functions.
#include <cmath>
#include <cstdarg>
#include <optional>
#include <string>
#include <vector>

#include "db/ResultBuffers.h"
#include "db/WideFormat.h"
#include "editor/CommandLine.h"
#include "editor/CommandLoop.h"
#include "editor/Prompts.h"
#include "editor/SystemVariables.h"
#include "kced.h"
#include "kcut.h"

using namespace korva::editor;

int kcedInitGet(int flags, const wchar_t* keywordList) {
    PromptState::instance().set(flags, keywordList);
    return RTNORM;
}

int kcedGetPoint(const kcad_point base, const wchar_t* prompt, kcad_point result) { return promptPoint(base, prompt, result); }
int kcedGetCorner(const kcad_point base, const wchar_t* prompt, kcad_point result) { return promptCorner(base, prompt, result); }
int kcedGetDist(const kcad_point base, const wchar_t* prompt, double* result) { return promptDistance(base, prompt, result); }
int kcedGetAngle(const kcad_point base, const wchar_t* prompt, double* result) { return promptAngle(base, prompt, result, false); }
int kcedGetOrient(const kcad_point base, const wchar_t* prompt, double* result) { return promptAngle(base, prompt, result, true); }
int kcedGetInt(const wchar_t* prompt, int* result) { return promptInteger(prompt, result); }
int kcedGetReal(const wchar_t* prompt, double* result) { return promptReal(prompt, result); }

int kcedGetString(int allowSpaces, const wchar_t* prompt, wchar_t* result, size_t resultLength) {
    return promptString(allowSpaces != 0, prompt, result, resultLength);
}

int kcedGetKword(const wchar_t* prompt, wchar_t* result, size_t resultLength) {
    return promptKeyword(prompt, result, resultLength);
}

int kcedGetInput(wchar_t* result, size_t resultLength) {
    if (!result || resultLength == 0) return RTERROR;
    const std::wstring& input = PromptState::instance().lastInput;
    const size_t n = std::min(input.size(), resultLength - 1);
    std::wmemcpy(result, input.data(), n);
    result[n] = L'\0';
    return RTNORM;
}

int kcedPrompt(const wchar_t* text) {
    if (text) CommandLine::instance().print(text);
    return RTNORM;
}

int kcedGetVar(const wchar_t* name, resbuf* result) {
    if (!name || !result) return RTERROR;
    return SystemVariables::instance().get(name, *result);
}

int kcedSetVar(const wchar_t* name, const resbuf* value) {
    if (!name || !value) return RTERROR;
    return SystemVariables::instance().set(name, *value);
}

int kcedCommand(int resultType, ...) {
    va_list args;
    va_start(args, resultType);
    std::vector<InputToken> tokens;
    bool valid = true;
    for (int type = resultType; type != RTNONE && type != 0 && valid; type = va_arg(args, int)) {
        switch (type) {
            case RTSTR: {
                const wchar_t* text = va_arg(args, const wchar_t*);
                tokens.push_back(text && *text ? InputToken::ofText(text) : InputToken::enter());
                break;
            }
            case RTSHORT:
            case RTLONG: tokens.push_back(InputToken::ofValue(LispValue::ofInteger(va_arg(args, int)))); break;
            case RTREAL:
            case RTANG: tokens.push_back(InputToken::ofValue(LispValue::ofReal(va_arg(args, double)))); break;
            case RTPOINT:
            case RT3DPOINT: {
                const double* p = va_arg(args, const double*);
                if (!p) {
                    valid = false;
                    break;
                }
                tokens.push_back(InputToken::ofValue(
                    LispValue::ofPoint({p[0], p[1], type == RTPOINT ? 0.0 : p[2]}, type == RTPOINT)));
                break;
            }
            case RTENAME:
            case RTPICKS: {
                const int64_t* name = va_arg(args, const int64_t*);
                if (!name) {
                    valid = false;
                    break;
                }
                tokens.push_back(InputToken::ofValue(
                    LispValue::ofName(type == RTENAME ? LispValue::Type::EntityName : LispValue::Type::SelectionSet, name)));
                break;
            }
            default: valid = false; break;
        }
    }
    va_end(args);
    if (!valid) return RTERROR;
    return CommandLoop::instance().scripted(std::move(tokens));
}

// --- printing and point utilities --------------------------------------------

int kcutPrintf(const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    const std::optional<std::wstring> text = korva::db::formatWideV(format, args);
    va_end(args);
    if (!text) return RTERROR;
    CommandLine::instance().print(*text);
    return RTNORM;
}

double kcutAngle(const kcad_point from, const kcad_point to) {
    const double dx = to[0] - from[0], dy = to[1] - from[1];
    if (dx == 0.0 && dy == 0.0) return 0.0;
    double angle = std::atan2(dy, dx);
    if (angle < 0) angle += 2 * 3.14159265358979323846;
    return angle;
}

double kcutDistance(const kcad_point a, const kcad_point b) {
    return std::sqrt((b[0] - a[0]) * (b[0] - a[0]) + (b[1] - a[1]) * (b[1] - a[1]) + (b[2] - a[2]) * (b[2] - a[2]));
}

void kcutPolar(const kcad_point origin, double angle, double distance, kcad_point result) {
    const double x = origin[0] + distance * std::cos(angle);
    const double y = origin[1] + distance * std::sin(angle);
    result[2] = origin[2];
    result[0] = x;
    result[1] = y;
}

double _wtof(const wchar_t* text) { return text ? std::wcstod(text, nullptr) : 0.0; }

int _wtoi(const wchar_t* text) { return text ? static_cast<int>(std::wcstol(text, nullptr, 10)) : 0; }
