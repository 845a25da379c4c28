#include "editor/Prompts.h"

#include <charconv>
#include <cmath>
#include <cwchar>
#include <vector>

#include "db/Utf8.h"
#include "editor/CommandLine.h"
#include "editor/Document.h"
#include "editor/InputQueue.h"
#include "editor/SystemVariables.h"
#include "kced.h"

namespace korva::editor {

namespace {

constexpr double kPi = 3.14159265358979323846;

std::wstring promptText(const wchar_t* prompt, const wchar_t* fallback) { return prompt ? prompt : fallback; }

// A refused answer: the host's message, and the input learns that the prompt asks again.
void message(const wchar_t* text) {
    CommandLine::instance().print(std::wstring(L"\n") + text + L"\n");
    InputQueue::instance().rejected();
}

KcGePoint3d lastPoint() {
    Document* document = Session::instance().current();
    return document ? document->lastPoint() : KcGePoint3d();
}

void rememberPoint(const KcGePoint3d& p) {
    if (Document* document = Session::instance().current()) document->lastPoint() = p;
}

void store(const KcGePoint3d& p, kcad_point out) {
    out[0] = p.x;
    out[1] = p.y;
    out[2] = p.z;
}

// An answer as a point: typed text, or a point value of a LISP expression.
std::optional<KcGePoint3d> pointOf(const InputToken& answer) {
    if (answer.kind == InputToken::Kind::Value && answer.value.type == LispValue::Type::Point) return answer.value.point;
    if (answer.kind == InputToken::Kind::Text) return parsePoint(answer.text, lastPoint());
    return std::nullopt;
}

std::optional<double> numberOf(const InputToken& answer) {
    if (answer.kind == InputToken::Kind::Value && answer.value.isNumber()) return answer.value.number();
    if (answer.kind == InputToken::Kind::Text) return parseNumber(answer.text);
    return std::nullopt;
}

// Cancel and the end of input end every prompt.
bool isCancel(const InputToken& answer) {
    return answer.kind == InputToken::Kind::Cancel || answer.kind == InputToken::Kind::EndOfInput;
}

// Zero and negative values where the restrictions forbid them; false (after the message) when refused.
bool acceptsNumber(double value, int flags) {
    if ((flags & RSG_NOZERO) && (flags & RSG_NONEG) && value <= 0.0) {
        message(L"Value must be positive and nonzero.");
        return false;
    }
    if ((flags & RSG_NOZERO) && value == 0.0) {
        message(L"Value must be nonzero.");
        return false;
    }
    if ((flags & RSG_NONEG) && value < 0.0) {
        message(L"Value must be positive.");
        return false;
    }
    return true;
}

void copyOut(const std::wstring& text, wchar_t* result, size_t resultLength) {
    if (!result || resultLength == 0) return;
    const size_t n = std::min(text.size(), resultLength - 1);
    std::wmemcpy(result, text.data(), n);
    result[n] = L'\0';
}

// The angle typed in degrees (AUNITS 0) or radians (AUNITS 3), as radians.
double typedAngle(double value) {
    return SystemVariables::instance().integer(L"AUNITS", 0) == 3 ? value : value * kPi / 180.0;
}

double angleBetween(const KcGePoint3d& from, const KcGePoint3d& to) {
    double a = std::atan2(to.y - from.y, to.x - from.x);
    if (a < 0) a += 2 * kPi;
    return a;
}

}  // namespace

PromptState& PromptState::instance() {
    static PromptState state;
    return state;
}

void PromptState::set(int flags, const wchar_t* keywords) {
    pending_.flags = flags;
    pending_.keywords = Keywords(keywords ? keywords : L"");
}

InputRestrictions PromptState::take() {
    InputRestrictions taken = std::move(pending_);
    pending_ = {};
    return taken;
}

InputToken readAnswer(const std::wstring& prompt, bool allowSpaces, bool commandPrompt) {
    CommandLine& line = CommandLine::instance();
    const bool interactive = InputQueue::instance().isInteractive();
    if (!interactive) line.prompt(prompt);
    InputRequest request;
    request.prompt = prompt;
    request.allowSpaces = allowSpaces;
    InputToken answer = InputQueue::instance().next(request);
    if (interactive) line.prompt(prompt);  // the transcript records the prompt too
    switch (answer.kind) {
        case InputToken::Kind::Text: line.echoInput(answer.text); break;
        case InputToken::Kind::Value: line.echoInput(answer.text.empty() ? answer.value.print() : answer.text); break;
        case InputToken::Kind::Enter: line.echoInput(L""); break;
        case InputToken::Kind::Cancel: line.echoInput(L"*Cancel*"); break;
        case InputToken::Kind::EndOfInput: line.echoInput(commandPrompt ? L"" : L"*Cancel*"); break;
    }
    return answer;
}

std::optional<double> parseNumber(std::wstring_view text) {
    const std::string utf8 = db::wideToUtf8(text);
    std::string_view s = utf8;
    if (!s.empty() && s.front() == '+') s.remove_prefix(1);
    double value = 0.0;
    auto [ptr, ec] = std::from_chars(s.data(), s.data() + s.size(), value);
    if (ec != std::errc() || ptr != s.data() + s.size() || s.empty() || !std::isfinite(value)) return std::nullopt;
    return value;
}

std::optional<KcGePoint3d> parsePoint(std::wstring_view text, const KcGePoint3d& last) {
    bool relative = false;
    if (!text.empty() && text.front() == L'@') {
        relative = true;
        text.remove_prefix(1);
        if (text.empty()) return last;  // "@" alone is the last point
    }
    const KcGePoint3d base = relative ? last : KcGePoint3d::kOrigin;
    if (const size_t angleAt = text.find(L'<'); angleAt != std::wstring_view::npos) {
        const auto distance = parseNumber(text.substr(0, angleAt));
        const auto degrees = parseNumber(text.substr(angleAt + 1));
        if (!distance || !degrees) return std::nullopt;
        const double angle = typedAngle(*degrees);
        return KcGePoint3d(base.x + *distance * std::cos(angle), base.y + *distance * std::sin(angle), base.z);
    }
    std::vector<double> xyz;
    size_t start = 0;
    while (true) {
        const size_t comma = text.find(L',', start);
        const auto value = parseNumber(text.substr(start, comma == std::wstring_view::npos ? std::wstring_view::npos : comma - start));
        if (!value) return std::nullopt;
        xyz.push_back(*value);
        if (comma == std::wstring_view::npos) break;
        start = comma + 1;
    }
    if (xyz.size() < 2 || xyz.size() > 3) return std::nullopt;
    const double z = xyz.size() == 3 ? xyz[2] : 0.0;
    return KcGePoint3d(base.x + xyz[0], base.y + xyz[1], relative ? base.z + z : z);
}

std::optional<int> keywordAnswer(const InputToken& answer, const InputRestrictions& restrictions) {
    if (answer.kind != InputToken::Kind::Text) return std::nullopt;
    if (auto keyword = restrictions.keywords.match(answer.text)) {
        PromptState::instance().lastInput = *keyword;
        return RTKWORD;
    }
    if (restrictions.flags & RSG_OTHER) {
        PromptState::instance().lastInput = answer.text;
        return RTKWORD;
    }
    return std::nullopt;
}

namespace {

int readPoint(const kcad_point base, const std::wstring& prompt, kcad_point result) {
    const InputRestrictions restrictions = PromptState::instance().take();
    while (true) {
        const InputToken answer = readAnswer(prompt);
        if (isCancel(answer)) return RTCAN;
        if (answer.kind == InputToken::Kind::Enter) {
            if (restrictions.flags & RSG_NONULL) continue;
            return RTNONE;
        }
        if (auto point = pointOf(answer)) {
            KcGePoint3d p = *point;
            // ORTHOMODE keeps the point on a horizontal or vertical line through the base.
            if (base && SystemVariables::instance().integer(L"ORTHOMODE", 0) == 1) {
                if (std::fabs(p.x - base[0]) >= std::fabs(p.y - base[1])) p.y = base[1];
                else p.x = base[0];
            }
            rememberPoint(p);
            store(p, result);
            return RTNORM;
        }
        if (auto keyword = keywordAnswer(answer, restrictions)) return *keyword;
        message(L"Point or option keyword required.");
    }
}

}  // namespace

int promptPoint(const kcad_point base, const wchar_t* prompt, kcad_point result) {
    return readPoint(base, promptText(prompt, L"\nSpecify point: "), result);
}

int promptCorner(const kcad_point base, const wchar_t* prompt, kcad_point result) {
    return readPoint(base, promptText(prompt, L"\nSpecify opposite corner: "), result);
}

int promptDistance(const kcad_point base, const wchar_t* prompt, double* result) {
    const InputRestrictions restrictions = PromptState::instance().take();
    while (true) {
        const InputToken answer = readAnswer(promptText(prompt, L"\nSpecify distance: "));
        if (isCancel(answer)) return RTCAN;
        if (answer.kind == InputToken::Kind::Enter) {
            if (restrictions.flags & RSG_NONULL) continue;
            return RTNONE;
        }
        std::optional<double> distance = numberOf(answer);
        if (!distance) {
            if (auto keyword = keywordAnswer(answer, restrictions)) return *keyword;
            // A point: the distance from the base, or to a second point.
            if (auto first = pointOf(answer)) {
                KcGePoint3d from = base ? KcGePoint3d(base[0], base[1], base[2]) : *first;
                KcGePoint3d to = *first;
                if (!base) {
                    const InputToken second = readAnswer(L"\nSpecify second point: ");
                    if (isCancel(second)) return RTCAN;
                    auto p = pointOf(second);
                    if (!p) {
                        message(L"Requires numeric distance, second point, or option keyword.");
                        continue;
                    }
                    to = *p;
                }
                if (restrictions.flags & RSG_2D) from.z = to.z;
                distance = from.distanceTo(to);
                rememberPoint(to);
            }
        }
        if (!distance) {
            message(L"Requires numeric distance, second point, or option keyword.");
            continue;
        }
        if (!acceptsNumber(*distance, restrictions.flags)) continue;
        *result = *distance;
        return RTNORM;
    }
}

int promptAngle(const kcad_point base, const wchar_t* prompt, double* result, bool orientation) {
    const InputRestrictions restrictions = PromptState::instance().take();
    while (true) {
        const InputToken answer = readAnswer(promptText(prompt, L"\nSpecify angle: "));
        if (isCancel(answer)) return RTCAN;
        if (answer.kind == InputToken::Kind::Enter) {
            if (restrictions.flags & RSG_NONULL) continue;
            return RTNONE;
        }
        std::optional<double> angle;
        if (auto typed = numberOf(answer)) angle = typedAngle(*typed);
        if (!angle) {
            if (auto keyword = keywordAnswer(answer, restrictions)) return *keyword;
            if (auto first = pointOf(answer)) {
                if (base) {
                    angle = angleBetween(KcGePoint3d(base[0], base[1], base[2]), *first);
                } else {
                    const InputToken second = readAnswer(L"\nSpecify second point: ");
                    if (isCancel(second)) return RTCAN;
                    if (auto p = pointOf(second)) angle = angleBetween(*first, *p);
                }
            }
        }
        if (!angle) {
            message(L"Requires valid numeric angle or second point.");
            continue;
        }
        if (!acceptsNumber(*angle, restrictions.flags)) continue;
        // Orientations are measured from east whatever ANGBASE says; angles from ANGBASE.
        double value = *angle;
        if (!orientation) value -= SystemVariables::instance().real(L"ANGBASE", 0.0);
        value = std::fmod(value, 2 * kPi);
        if (value < 0) value += 2 * kPi;
        *result = value;
        return RTNORM;
    }
}

int promptInteger(const wchar_t* prompt, int* result) {
    const InputRestrictions restrictions = PromptState::instance().take();
    while (true) {
        const InputToken answer = readAnswer(promptText(prompt, L"\nEnter an integer: "));
        if (isCancel(answer)) return RTCAN;
        if (answer.kind == InputToken::Kind::Enter) {
            if (restrictions.flags & RSG_NONULL) continue;
            return RTNONE;
        }
        const std::optional<double> number = numberOf(answer);
        if (number && *number == std::floor(*number) && *number >= -32768 && *number <= 32767) {
            if (!acceptsNumber(*number, restrictions.flags)) continue;
            *result = static_cast<int>(*number);
            return RTNORM;
        }
        if (auto keyword = keywordAnswer(answer, restrictions)) return *keyword;
        message(L"Requires an integer between -32768 and 32767.");
    }
}

int promptReal(const wchar_t* prompt, double* result) {
    const InputRestrictions restrictions = PromptState::instance().take();
    while (true) {
        const InputToken answer = readAnswer(promptText(prompt, L"\nEnter a real value: "));
        if (isCancel(answer)) return RTCAN;
        if (answer.kind == InputToken::Kind::Enter) {
            if (restrictions.flags & RSG_NONULL) continue;
            return RTNONE;
        }
        if (const auto number = numberOf(answer)) {
            if (!acceptsNumber(*number, restrictions.flags)) continue;
            *result = *number;
            return RTNORM;
        }
        if (auto keyword = keywordAnswer(answer, restrictions)) return *keyword;
        message(L"Requires numeric value.");
    }
}

int promptString(bool allowSpaces, const wchar_t* prompt, wchar_t* result, size_t resultLength) {
    const InputRestrictions restrictions = PromptState::instance().take();
    while (true) {
        const InputToken answer = readAnswer(promptText(prompt, L"\nEnter text: "), allowSpaces);
        if (isCancel(answer)) return RTCAN;
        std::wstring text;
        if (answer.kind == InputToken::Kind::Text) text = answer.text;
        else if (answer.kind == InputToken::Kind::Value)
            text = answer.value.type == LispValue::Type::String ? answer.value.text : answer.value.print();
        // Enter gives an empty string, unless kcedInitGet(1) refused it.
        if (text.empty() && (restrictions.flags & RSG_NONULL)) continue;
        copyOut(text, result, resultLength);
        return RTNORM;
    }
}

int promptKeyword(const wchar_t* prompt, wchar_t* result, size_t resultLength) {
    const InputRestrictions restrictions = PromptState::instance().take();
    while (true) {
        const InputToken answer = readAnswer(promptText(prompt, L"\nEnter an option: "));
        if (isCancel(answer)) return RTCAN;
        if (answer.kind == InputToken::Kind::Enter) {
            if (restrictions.flags & RSG_NONULL) continue;
            copyOut(L"", result, resultLength);
            return RTNONE;
        }
        if (answer.kind == InputToken::Kind::Text) {
            if (auto keyword = restrictions.keywords.match(answer.text)) {
                copyOut(*keyword, result, resultLength);
                PromptState::instance().lastInput = *keyword;
                return RTNORM;
            }
            if (restrictions.flags & RSG_OTHER) {
                copyOut(answer.text, result, resultLength);
                PromptState::instance().lastInput = answer.text;
                return RTNORM;
            }
        }
        message(L"Invalid option keyword.");
    }
}

}  // namespace korva::editor
