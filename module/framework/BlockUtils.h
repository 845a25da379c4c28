// Building anonymous blocks from existing objects and inserting block
// references into the current space.
#pragma once

#include "kcdbdatabase.h"

// Adds a new block record named "*U" (the host makes the name unique) with an empty
// path name to the database's block table. On success record is the new record,
// open for write (the caller closes it), and newId its id; on failure the record
// is deleted and the status returned.
Kcad::ErrorStatus defineNewAnonymousBlock(KcDbBlockTableRecord*& record, KcDbObjectId& newId, KcDbDatabase* database);
// Deep-clones the objects into owner and transforms every primary clone by matrix;
// the first failing status.
Kcad::ErrorStatus cloneAndXformObjects(KcDbDatabase* database, KcDbObjectIdArray& ids, KcDbObjectId owner,
                                       const KcGeMatrix3d& matrix);
// Builds an anonymous block in the working database from the objects, with the
// UCS point basePoint as its base point (the block's axes are the UCS axes).
Kcad::ErrorStatus makeAnonymousBlock(KcDbObjectId& blockId, KcDbObjectIdArray& ids, const KcGePoint3d& basePoint);
// Inserts a reference to the block at position (WCS) with that rotation into model
// space (TILEMODE not 0 or unreadable, or CVPORT >= 2) or else the current paper space.
Kcad::ErrorStatus makeBlockReference(KcDbObjectId blockId, const KcGePoint3d& position, double rotation);
