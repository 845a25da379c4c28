// System variables: every variable has a type, a default, a place where it
// lives (the drawing header, the current viewport record, the document, the
// session or the user profile), a read-only flag and a range. Every header
// variable a drawing holds is also a variable of the same name, as in CAD hosts.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "kcadstd.h"
#include "kcge.h"

namespace korva::editor {

enum class VarType { Short, Long, Real, String, Point2, Point3 };

struct VarValue {
    VarType type = VarType::Short;
    int64_t integer = 0;
    double real = 0.0;
    std::wstring text;
    KcGePoint3d point;

    static VarValue ofInteger(VarType type, int64_t v) {
        VarValue value;
        value.type = type;
        value.integer = v;
        return value;
    }
    static VarValue ofReal(double v) {
        VarValue value;
        value.type = VarType::Real;
        value.real = v;
        return value;
    }
    static VarValue ofText(std::wstring v) {
        VarValue value;
        value.type = VarType::String;
        value.text = std::move(v);
        return value;
    }
    static VarValue ofPoint(VarType type, const KcGePoint3d& p) {
        VarValue value;
        value.type = type;
        value.point = p;
        return value;
    }
    // As the command line shows it: 1, 2.5000, "Standard", 1.0000,2.0000,0.0000.
    std::wstring display() const;
};

// Values kept in the user profile: the runtime installs a store; without one the
// values live for the session.
struct ProfileVariables {
    std::function<std::optional<VarValue>(std::wstring_view name, VarType type)> read;
    std::function<void(std::wstring_view name, const VarValue& value)> write;
};

class SystemVariables {
public:
    static SystemVariables& instance();

    bool exists(std::wstring_view name) const;
    bool isReadOnly(std::wstring_view name) const;
    // kcedGetVar / kcedSetVar: RTNORM, or RTERROR (unknown, read-only, wrong type, out of range).
    int get(std::wstring_view name, resbuf& result) const;
    int set(std::wstring_view name, const resbuf& value);

    std::optional<VarValue> value(std::wstring_view name) const;
    // Sets a value as the host does (read-only variables included); RTNORM or RTERROR.
    int setValue(std::wstring_view name, const VarValue& value, bool asHost = false);
    // Parses a value typed at "Enter new value for NAME" and sets it.
    int setFromText(std::wstring_view name, std::wstring_view text);

    int64_t integer(std::wstring_view name, int64_t fallback = 0) const;
    double real(std::wstring_view name, double fallback = 0.0) const;
    std::wstring text(std::wstring_view name) const;

    void setProfile(ProfileVariables profile) { profile_ = std::move(profile); }
    // Forgets session and profile values (tests start from defaults).
    void resetSession();

private:
    ProfileVariables profile_;
};

}  // namespace korva::editor
