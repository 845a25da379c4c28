// Editor services of the host: prompts on the command line, entity picks,
// selection sets, scripted host commands, redraw, coordinate transformation,
// text boxes, draw order and system variables.
#pragma once

#include "kcdb.h"

// kcedInitGet flag bits.
constexpr int RSG_NONULL = 1;   // Enter is not accepted
constexpr int RSG_NOZERO = 2;   // zero is not accepted
constexpr int RSG_NONEG = 4;    // negative values are not accepted
constexpr int RSG_NOLIM = 8;    // drawing limits are not checked
constexpr int RSG_GETZ = 16;    // 3D points
constexpr int RSG_DASH = 32;    // dashed rubber band
constexpr int RSG_2D = 64;      // 2D distances
constexpr int RSG_OTHER = 128;  // arbitrary input is returned as RTKWORD

// --- prompts -----------------------------------------------------------------
int kcedInitGet(int flags, const wchar_t* keywordList);
int kcedGetPoint(const kcad_point base, const wchar_t* prompt, kcad_point result);
int kcedGetCorner(const kcad_point base, const wchar_t* prompt, kcad_point result);
int kcedGetDist(const kcad_point base, const wchar_t* prompt, double* result);
int kcedGetAngle(const kcad_point base, const wchar_t* prompt, double* result);
int kcedGetOrient(const kcad_point base, const wchar_t* prompt, double* result);
int kcedGetInt(const wchar_t* prompt, int* result);
int kcedGetReal(const wchar_t* prompt, double* result);
int kcedGetString(int allowSpaces, const wchar_t* prompt, wchar_t* result, size_t resultLength);
int kcedGetKword(const wchar_t* prompt, wchar_t* result, size_t resultLength);
int kcedGetInput(wchar_t* result, size_t resultLength);
int kcedPrompt(const wchar_t* text);

// --- picks -------------------------------------------------------------------
int kcedEntSel(const wchar_t* prompt, kcad_name entity, kcad_point pickPoint);
int kcedNEntSel(const wchar_t* prompt, kcad_name entity, kcad_point pickPoint, kcad_point xform[4],
                resbuf** containers);
int kcedNEntSelP(const wchar_t* prompt, kcad_name entity, kcad_point pickPoint, int pickFlag, kcad_matrix xform,
                 resbuf** containers);

// --- selection sets ------------------------------------------------------------
int kcedSSGet(const wchar_t* mode, const void* arg1, const void* arg2, const resbuf* filter, kcad_name selectionSet);
int kcedSSLength(const kcad_name set, Kcad::Int32* length);
int kcedSSName(const kcad_name set, Kcad::Int32 index, kcad_name entity);
int kcedSSAdd(const kcad_name entity, const kcad_name set, kcad_name result);
int kcedSSDel(const kcad_name entity, const kcad_name set);
int kcedSSMemb(const kcad_name entity, const kcad_name set);
int kcedSSFree(const kcad_name set);
int kcedSSSetFirst(const kcad_name pickFirstSet, const kcad_name unused);
int kcedSSGetFirst(resbuf** gripSet, resbuf** pickFirstSet);
using KcEdSSKwordCallback = resbuf* (*)(const wchar_t* keyword);
int kcedSSSetKwordCallbackPtr(KcEdSSKwordCallback callback);
int kcedSSGetKwordCallbackPtr(KcEdSSKwordCallback* callback);

// --- scripted host commands ------------------------------------------------------
// Pairs (type, value) ended by RTNONE (or 0): RTSTR ("" is Enter), RTSHORT, RTLONG,
// RTREAL, RTANG, RTPOINT and RT3DPOINT (const double*, UCS), RTENAME and RTPICKS.
int kcedCommand(int resultType, ...);

// --- display ---------------------------------------------------------------------
int kcedRedraw(const kcad_name entity, int mode);

// --- coordinates and text ------------------------------------------------------------
int kcedTrans(const kcad_point point, const resbuf* from, const resbuf* to, int displacement, kcad_point result);
Kcad::ErrorStatus kcedGetCurrentUCS(KcGeMatrix3d& ucsToWcs);
int kcedTextBox(const resbuf* textEntityList, kcad_point lowerLeft, kcad_point upperRight);

// --- draw order ----------------------------------------------------------------------
enum KcGiDrawOrderCmdType { kDrawOrderNone = 0, kDrawOrderBottom = 1, kDrawOrderTop = 2, kDrawOrderBelow = 3, kDrawOrderAbove = 4 };
Kcad::ErrorStatus kcedDrawOrderInherit(KcDbObjectId parent, const KcDbObjectIdArray& children, KcGiDrawOrderCmdType command);

// --- viewports -------------------------------------------------------------------------
KcDbObjectId kcedGetCurViewportObjectId();

// --- system variables --------------------------------------------------------------------
int kcedGetVar(const wchar_t* name, resbuf* result);
int kcedSetVar(const wchar_t* name, const resbuf* value);

// --- dialogs -------------------------------------------------------------------------------
// The colour dialog, starting on colorIndex: true with the chosen index (1-255; 0 BYBLOCK and
// 256 BYLAYER only when allowed), false on cancel. currentLayerColor 0 or 256: none shown.
bool kcedSetColorDialog(int& colorIndex, bool allowByLayerByBlock, int currentLayerColor);
// The RGB of an index colour, packed 0x00BBGGRR.
unsigned long kcedGetRGB(int colorIndex);
// The file dialog: extensions are ";"-separated without dots; flag bit 1 asks for a file to
// save (overwriting confirmed). RTNORM with one RTSTR record (released by the caller), RTCAN.
int kcedGetFileNavDialog(const wchar_t* title, const wchar_t* defaultName, const wchar_t* extensions,
                         const wchar_t* dialogName, int flags, resbuf** result);
