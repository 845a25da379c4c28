// Small database helpers shared by the commands: the extents of an entity, and
// appending a new entity to model space, paper space or the current space.
#pragma once

#include "kcdbdatabase.h"

// The world extents of the entity behind id (opened for read and closed again).
Kcad::ErrorStatus getEntityExtents(KcDbObjectId id, KcDbExtents& extents);
// The same for an entity name.
Kcad::ErrorStatus getEntityExtents(const kcad_name entity, KcDbExtents& extents);
// The world extents of an open entity.
Kcad::ErrorStatus getEntityExtents(const KcDbEntity* entity, KcDbExtents& extents);

// Appends a new entity to "*Model_Space" (toModelSpace true) or "*Paper_Space" of the
// working database. On success id names it and the entity stays open for write (the
// caller closes it); on failure the caller still owns (and deletes) the entity.
Kcad::ErrorStatus addEntityToDb(KcDbObjectId& id, KcDbEntity* entity, bool toModelSpace);
// Appends a new entity to the working database's current space (same ownership rules).
Kcad::ErrorStatus addEntityToCurrentSpace(KcDbObjectId& id, KcDbEntity* entity);
