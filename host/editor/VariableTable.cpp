// Variables by name. Ranges are the values kcedSetVar accepts; the header group
// codes are those DXF files use for each variable.
#include "editor/VariableTable.h"

#include <algorithm>
#include <cwctype>

namespace korva::editor {

namespace {

using T = VarType;
using S = VarStore;

constexpr VariableSpec kVariables[] = {
    // name, type, store, read-only, min, max, default...
    {L"ANGBASE", T::Real, S::Header, false, 1, -1, 0.0, 0, 0, {}, 50},
    {L"ANGDIR", T::Short, S::Header, false, 0, 1, 0, 0, 0, {}, 70},
    {L"APERTURE", T::Short, S::Profile, false, 1, 50, 10},
    {L"ATTDIA", T::Short, S::Header, false, 0, 1, 0, 0, 0, {}, 70},
    {L"ATTMODE", T::Short, S::Header, false, 0, 2, 1, 0, 0, {}, 70},
    {L"ATTREQ", T::Short, S::Header, false, 0, 1, 1, 0, 0, {}, 70},
    {L"AUNITS", T::Short, S::Header, false, 0, 4, 0, 0, 0, {}, 70},
    {L"AUPREC", T::Short, S::Header, false, 0, 8, 0, 0, 0, {}, 70},
    {L"BACKZ", T::Real, S::Viewport, true, 1, -1, 0.0},
    {L"BLIPMODE", T::Short, S::Header, false, 0, 1, 0, 0, 0, {}, 70},
    {L"BLOCKEDITOR", T::Short, S::Session, true, 0, 1, 0},
    {L"CELTSCALE", T::Real, S::Header, false, 1e-300, 1e300, 1.0, 0, 0, {}, 40},
    {L"CELTYPE", T::String, S::Header, false, 1, -1, 0, 0, 0, L"ByLayer", 6},
    {L"CELWEIGHT", T::Short, S::Header, false, -3, 211, -1, 0, 0, {}, 370},
    {L"CLAYER", T::String, S::Header, false, 1, -1, 0, 0, 0, L"0", 8},
    {L"CMDACTIVE", T::Short, S::Session, true, 1, -1, 0},
    {L"CMDECHO", T::Short, S::Session, false, 0, 1, 1},
    {L"CMDNAMES", T::String, S::Session, true, 1, -1, 0},
    {L"CPROFILE", T::String, S::Profile, true, 1, -1, 0, 0, 0, L"Default"},
    {L"CVPORT", T::Short, S::Document, false, 1, 32767, 2},
    {L"DWGCODEPAGE", T::String, S::Header, true, 1, -1, 0, 0, 0, L"ANSI_1252", 3},
    {L"DWGNAME", T::String, S::Document, true, 1, -1, 0, 0, 0, L"Drawing1.dwg"},
    {L"DWGPREFIX", T::String, S::Document, true, 1, -1, 0},
    {L"ELEVATION", T::Real, S::Header, false, 1, -1, 0.0, 0, 0, {}, 40},
    {L"ERRNO", T::Short, S::Session, false, 1, -1, 0},
    {L"EXPERT", T::Short, S::Session, false, 0, 5, 0},
    {L"EXTMAX", T::Point3, S::Header, true, 1, -1, -1e20, -1e20, -1e20, {}, 10},
    {L"EXTMIN", T::Point3, S::Header, true, 1, -1, 1e20, 1e20, 1e20, {}, 10},
    {L"FILEDIA", T::Short, S::Profile, false, 0, 1, 1},
    {L"FILLMODE", T::Short, S::Header, false, 0, 1, 1, 0, 0, {}, 70},
    {L"FRONTZ", T::Real, S::Viewport, true, 1, -1, 0.0},
    {L"GRIDMODE", T::Short, S::Document, false, 0, 1, 0},
    {L"HIGHLIGHT", T::Short, S::Session, false, 0, 1, 1},
    {L"INSBASE", T::Point3, S::Header, false, 1, -1, 0, 0, 0, {}, 10},
    {L"INSUNITS", T::Short, S::Header, false, 0, 24, 0, 0, 0, {}, 70},
    {L"LASTPOINT", T::Point3, S::Document, false, 1, -1, 0},
    {L"LAYLOCKFADECTL", T::Short, S::Profile, false, -90, 90, 50},
    {L"LENSLENGTH", T::Real, S::Viewport, true, 1, -1, 50.0},
    {L"LIMCHECK", T::Short, S::Header, false, 0, 1, 0, 0, 0, {}, 70},
    {L"LIMMAX", T::Point2, S::Header, false, 1, -1, 12.0, 9.0, 0, {}, 10},
    {L"LIMMIN", T::Point2, S::Header, false, 1, -1, 0, 0, 0, {}, 10},
    {L"LTSCALE", T::Real, S::Header, false, 1e-300, 1e300, 1.0, 0, 0, {}, 40},
    {L"LUNITS", T::Short, S::Header, false, 1, 5, 2, 0, 0, {}, 70},
    {L"LUPREC", T::Short, S::Header, false, 0, 8, 4, 0, 0, {}, 70},
    {L"MEASUREMENT", T::Short, S::Header, false, 0, 1, 0, 0, 0, {}, 70},
    {L"MIRRTEXT", T::Short, S::Header, false, 0, 1, 0, 0, 0, {}, 70},
    {L"OBJECTISOLATIONMODE", T::Short, S::Profile, false, 0, 1, 0},
    {L"ORTHOMODE", T::Short, S::Header, false, 0, 1, 0, 0, 0, {}, 70},
    {L"OSMODE", T::Short, S::Profile, false, 0, 32767, 4133},
    {L"PDMODE", T::Short, S::Header, false, 0, 100, 0, 0, 0, {}, 70},
    {L"PDSIZE", T::Real, S::Header, false, 1, -1, 0.0, 0, 0, {}, 40},
    {L"PICKADD", T::Short, S::Profile, false, 0, 2, 2},
    {L"PICKAUTO", T::Short, S::Profile, false, 0, 7, 1},
    {L"PICKBOX", T::Short, S::Profile, false, 0, 50, 3},
    {L"PICKDRAG", T::Short, S::Profile, false, 0, 2, 0},
    {L"PICKFIRST", T::Short, S::Profile, false, 0, 1, 1},
    {L"PICKSTYLE", T::Short, S::Header, false, 0, 3, 1, 0, 0, {}, 70},
    {L"PLINEWID", T::Real, S::Header, false, 0, 1e300, 0.0, 0, 0, {}, 40},
    {L"PSLTSCALE", T::Short, S::Header, false, 0, 1, 1, 0, 0, {}, 70},
    {L"REGENMODE", T::Short, S::Header, false, 0, 1, 1, 0, 0, {}, 70},
    {L"SCREENSIZE", T::Point2, S::Session, true, 1, -1, 1024.0, 768.0},
    {L"SNAPMODE", T::Short, S::Document, false, 0, 1, 0},
    {L"SYSCODEPAGE", T::String, S::Session, true, 1, -1, 0, 0, 0, L"ANSI_1252"},
    {L"TARGET", T::Point3, S::Viewport, true, 1, -1, 0},
    {L"TEMPPREFIX", T::String, S::Session, true, 1, -1, 0},
    {L"TEXTSIZE", T::Real, S::Header, false, 1e-300, 1e300, 2.5, 0, 0, {}, 40},
    {L"TEXTSTYLE", T::String, S::Header, false, 1, -1, 0, 0, 0, L"Standard", 7},
    {L"THICKNESS", T::Real, S::Header, false, 1, -1, 0.0, 0, 0, {}, 40},
    {L"TILEMODE", T::Short, S::Header, false, 0, 1, 1, 0, 0, {}, 70},
    {L"UCSAXISANG", T::Real, S::Profile, false, 1, -1, 1.5707963267948966},
    {L"UCSNAME", T::String, S::Header, true, 1, -1, 0, 0, 0, {}, 2},
    {L"UCSORG", T::Point3, S::Header, true, 1, -1, 0, 0, 0, {}, 10},
    {L"UCSXDIR", T::Point3, S::Header, true, 1, -1, 1, 0, 0, {}, 10},
    {L"UCSYDIR", T::Point3, S::Header, true, 1, -1, 0, 1, 0, {}, 10},
    {L"UNITMODE", T::Short, S::Header, false, 0, 1, 0, 0, 0, {}, 70},
    {L"VIEWCTR", T::Point3, S::Viewport, true, 1, -1, 6.0, 4.5, 0},
    {L"VIEWDIR", T::Point3, S::Viewport, true, 1, -1, 0, 0, 1},
    {L"VIEWMODE", T::Short, S::Viewport, true, 1, -1, 0},
    {L"VIEWSIZE", T::Real, S::Viewport, true, 1, -1, 9.0},
    {L"VIEWTWIST", T::Real, S::Viewport, true, 1, -1, 0.0},
    {L"VISRETAIN", T::Short, S::Header, false, 0, 1, 1, 0, 0, {}, 70},
    {L"WIPEOUTFRAME", T::Short, S::Header, false, 0, 2, 1, 0, 0, {}, 70},
    {L"WORLDUCS", T::Short, S::Document, true, 0, 1, 1},
};

bool equalsIgnoringCase(std::wstring_view a, std::wstring_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](wchar_t x, wchar_t y) {
               return std::towupper(static_cast<wint_t>(x)) == std::towupper(static_cast<wint_t>(y));
           });
}

}  // namespace

const VariableSpec* findVariable(std::wstring_view name) {
    for (const VariableSpec& variable : kVariables) {
        if (equalsIgnoringCase(variable.name, name)) return &variable;
    }
    return nullptr;
}

}  // namespace korva::editor
