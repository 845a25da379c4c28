// Interned DXF type names ("LINE", "LAYER", "DICTIONARY", ...). Records carry a
// small id instead of a string; the names every part of the host tests for
// have fixed ids.
#pragma once

#include <cstdint>
#include <string_view>

namespace korva::db {

using TypeId = uint16_t;

namespace Type {
// Keep in the order of the name table in ObjectType.cpp.
enum : TypeId {
    Unknown = 0,
    // structure
    Table, BlockBegin, BlockEnd, SeqEnd,
    // symbol table records
    Layer, Ltype, Style, DimStyle, BlockRecord, AppId, Ucs, Vport, View,
    // entities
    Line, Point, Circle, Arc, Text, MText, AttDef, Attrib, Insert, Solid, Trace, Face3d, Polyline,
    Vertex, LwPolyline, Ellipse, Spline, Ray, Xline, Shape, Dimension, ArcDimension,
    LargeRadialDimension, Leader, MLeader, Region, Body, Solid3d, Surface, MLine, Hatch, Image, Wipeout,
    Ole2Frame, OleFrame, Tolerance, Viewport, AcadTable, Mesh, Helix, Light, Underlay,
    // objects
    Dictionary, DictionaryWithDefault, Xrecord, Group, Layout, Scale, DictionaryVar, SortEntsTable,
    PlaceHolder, ImageDef, ImageDefReactor, RasterVariables, Field, IdBuffer, LayerFilter, LayerIndex,
    SpatialFilter, SpatialIndex, PlotSettings, MLineStyle, MLeaderStyle, TableStyle, VisualStyle,
    Material, WipeoutVariables, DimAssoc, XrefPanelObject,
    FirstDynamic
};
}  // namespace Type

// The id of a DXF type name (registers new names on first sight).
TypeId typeIdOf(std::string_view dxfName);
std::string_view typeName(TypeId id);

bool isEntityType(TypeId id);
bool isSymbolTableRecordType(TypeId id);

}  // namespace korva::db
