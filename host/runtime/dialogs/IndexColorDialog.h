// The colour dialog of kcedSetColorDialog: the 255 index colours as swatches in
// the standard layout (the nine standard colours, the grid of 10-249 with the
// saturated shades above and the pale ones below, the greys 250-255), ByLayer and
// ByBlock buttons when those are allowed, an edit with the chosen number or name,
// the current layer colour when there is one, OK and Cancel. Every widget has a
// stable object name (docs/dialogs.md).
#pragma once

#include <QDialog>

#include <optional>
#include <string>

class QAbstractButton;
class QLabel;
class QLineEdit;
class QVBoxLayout;

namespace korva::runtime {

class IndexColorDialog : public QDialog {
public:
    // initialIndex is shown first (1-255, or 0/256 when allowed); a current layer
    // colour of 0 or 256 (or any non-colour) shows none.
    IndexColorDialog(int initialIndex, bool allowByLayerByBlock, int currentLayerColor, QWidget* parent = nullptr);

    // The colour chosen (valid after the dialog was accepted).
    int chosenIndex() const { return chosen_; }
    bool allowsByLayerByBlock() const { return allowByLayerByBlock_; }
    // The swatch of colour 1-255, or the ByLayer (256) / ByBlock (0) button; null
    // when the dialog has none for it.
    QAbstractButton* buttonFor(int index) const;

    // Why a typed colour cannot be chosen here (empty when it can).
    static std::wstring refusalOf(const std::wstring& typed, bool allowByLayerByBlock);

    // OK: the edit's colour when it is one; otherwise a message and the dialog stays.
    void accept() override;

private:
    void buildSwatches(QVBoxLayout& layout);
    void buildChoiceRow(QVBoxLayout& layout);
    void select(int index);
    void showColor(std::optional<int> index);

    bool allowByLayerByBlock_;
    int chosen_;
    QLineEdit* edit_ = nullptr;
    QLabel* preview_ = nullptr;
    QLabel* rgbText_ = nullptr;
};

}  // namespace korva::runtime
