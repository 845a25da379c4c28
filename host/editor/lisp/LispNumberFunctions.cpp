// Arithmetic and text functions of scripts: + - * / on integers and reals
// (integers stay integers until a real joins in, and integer division
// truncates), strcat, itoa, rtos (decimal mode 2), atof and atoi.
#include <cmath>
#include <cwchar>
#include <functional>

#include "editor/SystemVariables.h"
#include "editor/lisp/LispFunctions.h"

namespace korva::editor::lisp {

namespace {

using Type = LispValue::Type;

// Integers are 32 bits wide, as in CAD LISPs, and wrap around on overflow.
int64_t wrap32(int64_t value) { return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint64_t>(value))); }

// Folds the arguments left to right; the result is a real once any argument is.
bool arithmetic(LispArguments& arguments, LispValue& result, const std::function<int64_t(int64_t, int64_t)>& onIntegers,
                const std::function<double(double, double)>& onReals) {
    for (size_t i = 0; i < arguments.size(); ++i) {
        if (!arguments[i].isNumber()) return arguments.badType(L"numberp:", i);
    }
    if (arguments.size() == 0) {
        result = LispValue::ofInteger(0);
        return true;
    }
    result = arguments[0];
    for (size_t i = 1; i < arguments.size(); ++i) {
        const LispValue& next = arguments[i];
        if (result.type == Type::Integer && next.type == Type::Integer) result = LispValue::ofInteger(wrap32(onIntegers(wrap32(result.integer), wrap32(next.integer))));
        else result = LispValue::ofReal(onReals(result.number(), next.number()));
    }
    return true;
}

bool add(LispArguments& arguments, LispValue& result) {
    return arithmetic(arguments, result, std::plus<int64_t>(), std::plus<double>());
}

bool subtract(LispArguments& arguments, LispValue& result) {
    if (arguments.size() == 1 && arguments[0].isNumber()) {  // (- x) negates
        result = arguments[0].type == Type::Integer ? LispValue::ofInteger(wrap32(-wrap32(arguments[0].integer))) : LispValue::ofReal(-arguments[0].real);
        return true;
    }
    return arithmetic(arguments, result, std::minus<int64_t>(), std::minus<double>());
}

bool multiply(LispArguments& arguments, LispValue& result) {
    return arithmetic(arguments, result, std::multiplies<int64_t>(), std::multiplies<double>());
}

bool divide(LispArguments& arguments, LispValue& result) {
    for (size_t i = 1; i < arguments.size(); ++i) {
        if (arguments[i].isNumber() && arguments[i].number() == 0.0) return arguments.fail(L"divide by zero");
    }
    return arithmetic(arguments, result, std::divides<int64_t>(), std::divides<double>());
}

bool strcat(LispArguments& arguments, LispValue& result) {
    std::wstring joined;
    for (size_t i = 0; i < arguments.size(); ++i) {
        std::wstring part;
        if (!arguments.text(i, part)) return false;
        joined += part;
    }
    result = LispValue::ofString(std::move(joined));
    return true;
}

bool itoa(LispArguments& arguments, LispValue& result) {
    int64_t value = 0;
    if (!arguments.expect(1, 1) || !arguments.integer(0, value)) return false;
    result = LispValue::ofString(std::to_wstring(value));
    return true;
}

// Decimal text with the given number of places; DIMZIN bit 8 drops trailing zeros.
std::wstring decimalText(double value, int64_t precision) {
    wchar_t buffer[512];
    std::swprintf(buffer, 512, L"%.*f", static_cast<int>(precision), value);
    std::wstring text(buffer);
    if ((SystemVariables::instance().integer(L"DIMZIN", 0) & 8) && text.find(L'.') != std::wstring::npos) {
        while (text.back() == L'0') text.pop_back();
        if (text.back() == L'.') text.pop_back();
    }
    if (text[0] == L'-' && text.find_first_not_of(L"-0.") == std::wstring::npos) text.erase(0, 1);  // no "-0.00"
    return text;
}

// (rtos number [mode [precision]]): mode and precision default to LUNITS and LUPREC.
bool rtos(LispArguments& arguments, LispValue& result) {
    double value = 0.0;
    if (!arguments.expect(1, 3) || !arguments.number(0, value)) return false;
    int64_t mode = SystemVariables::instance().integer(L"LUNITS", 2);
    int64_t precision = SystemVariables::instance().integer(L"LUPREC", 4);
    if (arguments.size() > 1 && !arguments.integer(1, mode)) return false;
    if (arguments.size() > 2 && !arguments.integer(2, precision)) return false;
    if (mode != 2) return arguments.fail(L"rtos: only the decimal mode 2 is available");
    if (precision < 0 || precision > 8) return arguments.fail(L"rtos: the precision must lie between 0 and 8");
    if (!std::isfinite(value)) return arguments.badType(L"numberp:", 0);
    result = LispValue::ofString(decimalText(value, precision));
    return true;
}

bool atof(LispArguments& arguments, LispValue& result) {
    std::wstring text;
    if (!arguments.expect(1, 1) || !arguments.text(0, text)) return false;
    result = LispValue::ofReal(std::wcstod(text.c_str(), nullptr));
    return true;
}

bool atoi(LispArguments& arguments, LispValue& result) {
    std::wstring text;
    if (!arguments.expect(1, 1) || !arguments.text(0, text)) return false;
    result = LispValue::ofInteger(static_cast<int32_t>(std::wcstol(text.c_str(), nullptr, 10)));
    return true;
}

}  // namespace

void addNumberFunctions(LispFunctionTable& table) {
    table.add(L"+", &add);
    table.add(L"-", &subtract);
    table.add(L"*", &multiply);
    table.add(L"/", &divide);
    table.add(L"strcat", &strcat);
    table.add(L"itoa", &itoa);
    table.add(L"rtos", &rtos);
    table.add(L"atof", &atof);
    table.add(L"atoi", &atoi);
}

}  // namespace korva::editor::lisp
