// The options of -LAYER, each reading its own answers, and what they share:
// the layer table of the current drawing, name lists, and changes made through
// the layer records' open protocol. An option returns false when the user
// cancelled, which ends the command.
#pragma once

#include <optional>
#include <string>

#include "commands/NamePatterns.h"
#include "db/Drawing.h"
#include "db/ObjectAccess.h"
#include "kcdbdatabase.h"

namespace korva::commands::layer {

bool listLayers(db::Drawing& drawing);
bool makeLayer(db::Drawing& drawing);
bool setCurrentLayer(db::Drawing& drawing);
bool newLayers(db::Drawing& drawing);
bool turnOn(db::Drawing& drawing);
bool turnOff(db::Drawing& drawing);
bool freeze(db::Drawing& drawing);
bool thaw(db::Drawing& drawing);
bool lock(db::Drawing& drawing);
bool unlock(db::Drawing& drawing);
bool setColor(db::Drawing& drawing);
bool setLinetype(db::Drawing& drawing);
bool setLineweight(db::Drawing& drawing);

// CLAYER as the user sees it.
std::wstring currentLayerName();
bool isCurrentLayer(const db::ObjectRecord& layer);
std::wstring layerName(const db::ObjectRecord& layer);
// A colour index as listings show it: "1 (red)", "8".
std::wstring colorIndexText(int index);

// Asks for a name list ("" takes the default); nothing when cancelled. Patterns
// that name no layer are reported, and the command goes on.
std::optional<NamePatterns::TableMatch> askLayers(db::Drawing& drawing, const std::wstring& prompt,
                                                  const std::wstring& defaultList);

// Opens a layer record for write and applies change (a function of
// KcDbLayerTableRecord& returning a status); false when either step fails.
template <class Change>
bool changeLayer(db::ObjectRecord& record, Change&& change) {
    KcDbLayerTableRecord* layer = nullptr;
    if (kcdbOpenObject(layer, db::ObjectAccess::id(&record), KcDb::kForWrite) != Kcad::eOk) return false;
    const Kcad::ErrorStatus status = change(*layer);
    layer->close();
    return status == Kcad::eOk;
}

}  // namespace korva::commands::layer
