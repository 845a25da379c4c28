// Colours of metafile shapes.
#include "commands/wmf/WmfColors.h"

#include "kcdbtables.h"

namespace korva::commands::wmf {

namespace {

constexpr int kPaperInk = 7;  // white on screen, black on paper
const db::Rgb kBlack{0, 0, 0};

}  // namespace

db::Rgb paperColorOfIndex(int index) { return index == kPaperInk ? kBlack : db::rgbOfIndexColor(index); }

db::Rgb resolveColor(const KcCmColor& color, const db::Rgb& layerColor, const db::Rgb& blockColor) {
    if (color.isByLayer()) return layerColor;
    if (color.isByBlock()) return blockColor;
    if (color.isByColor()) return {color.red(), color.green(), color.blue()};
    return paperColorOfIndex(color.colorIndex());
}

const LayerLook::Look& LayerLook::of(const std::wstring& layer) {
    if (const auto known = looks_.find(layer); known != looks_.end()) return known->second;
    Look look{kBlack, true};
    KcDbLayerTable* table = nullptr;
    if (database_ && database_->getLayerTable(table, KcDb::kForRead) == Kcad::eOk) {
        KcDbLayerTableRecord* record = nullptr;
        if (table->getAt(layer.c_str(), record, KcDb::kForRead) == Kcad::eOk) {
            look.color = resolveColor(record->color(), kBlack, kBlack);
            look.shown = !record->isOff() && !record->isFrozen();
            record->close();
        }
        table->close();
    }
    return looks_.emplace(layer, look).first->second;
}

KcCmColor importedColor(const db::Rgb& pen, const KcCmColor& layerColor) {
    KcCmColor color;
    if (resolveColor(layerColor, kBlack, kBlack) == pen) return color;  // BYLAYER
    color.setRGB(pen.red, pen.green, pen.blue);
    return color;
}

}  // namespace korva::commands::wmf
