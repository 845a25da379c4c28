// The C-level entity, table and result-buffer functions. Entity lists carry
// DXF group codes in DXF order, points as single records and angles in radians.
#pragma once

#include "kcdb.h"

// Data list of an entity, object or table record; null for an erased or unknown name.
resbuf* kcdbEntGet(const kcad_name ent);
// As kcdbEntGet, followed by (-3) and the extended data of the named applications ("*" for all).
resbuf* kcdbEntGetX(const kcad_name ent, const resbuf* appNames);
int kcdbEntMod(const resbuf* list);
int kcdbEntMake(const resbuf* list);
int kcdbEntMakeX(const resbuf* list, kcad_name result);
int kcdbEntDel(const kcad_name ent);
int kcdbEntNext(const kcad_name ent, kcad_name result);
int kcdbEntLast(kcad_name result);
int kcdbEntUpd(const kcad_name ent);
resbuf* kcdbTblSearch(const wchar_t* tableName, const wchar_t* symbolName, int setNext = 0);
resbuf* kcdbTblNext(const wchar_t* tableName, int rewind);
int kcdbTblObjName(const wchar_t* tableName, const wchar_t* symbolName, kcad_name result);
int kcdbHandEnt(const wchar_t* handle, kcad_name result);
Kcad::ErrorStatus kcdbGetObjectId(KcDbObjectId& id, const kcad_name ent);
Kcad::ErrorStatus kcdbGetKdsName(kcad_name& ent, KcDbObjectId id);
int kcdbRegApp(const wchar_t* appName);
// The host's symbol-name test: RTNORM when valid.
int kcdbSNValid(const wchar_t* name, int pipeTest);

resbuf* kcutNewRb(int type);
int kcutRelRb(resbuf* chain);
// Builds a chain from (code, value) pairs ended by 0 or RTNONE; RTDXF0 stands for group 0.
resbuf* kcutBuildList(int code, ...);
// Relative equality: when |b| <= e, |a| <= e; otherwise |a - b| <= |b * e|.
bool kcutRealEqual(double a, double b, double e);
