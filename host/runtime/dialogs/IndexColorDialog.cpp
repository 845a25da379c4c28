// The colour dialog's widgets and choice. Swatches are checkable tool buttons of
// one exclusive group, coloured with a style sheet; a click chooses the colour.
#include "runtime/dialogs/IndexColorDialog.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "db/IndexColors.h"
#include "runtime/dialogs/DialogEnvironment.h"
#include "runtime/dialogs/MessageBoxes.h"

namespace korva::runtime {

namespace {

constexpr int kSwatchSize = 14;
constexpr int kHues = 24;
constexpr int kShadesPerHalf = 5;

QString cssColor(int index) {
    const db::Rgb rgb = db::rgbOfIndexColor(index);
    return QStringLiteral("rgb(%1, %2, %3)").arg(int{rgb.red}).arg(int{rgb.green}).arg(int{rgb.blue});
}

QString swatchStyle(int index) {
    return QStringLiteral("QToolButton { background-color: %1; border: 1px solid gray; }"
                          "QToolButton:checked { border: 2px solid black; }")
        .arg(cssColor(index));
}

// How a colour is written in the edit: its name (1-7, ByLayer, ByBlock) or number.
QString colorText(int index) {
    const std::wstring_view name = db::nameOfIndexColor(index);
    return name.empty() ? QString::number(index) : qtText(name);
}

QLabel* colorPatch(const QString& objectName, QWidget* parent) {
    auto* patch = new QLabel(parent);
    patch->setObjectName(objectName);
    patch->setFixedSize(3 * kSwatchSize, kSwatchSize + 4);
    patch->setFrameShape(QFrame::Box);
    return patch;
}

}  // namespace

IndexColorDialog::IndexColorDialog(int initialIndex, bool allowByLayerByBlock, int currentLayerColor, QWidget* parent)
    : QDialog(parent), allowByLayerByBlock_(allowByLayerByBlock), chosen_(initialIndex) {
    setObjectName(QStringLiteral("IndexColorDialog"));
    setWindowTitle(QStringLiteral("Select Color"));
    auto* layout = new QVBoxLayout(this);
    layout->setObjectName(QStringLiteral("dialogLayout"));
    buildSwatches(*layout);
    buildChoiceRow(*layout);

    if (db::isIndexColor(currentLayerColor)) {
        auto* row = new QHBoxLayout;
        auto* text = new QLabel(QStringLiteral("Layer color: %1").arg(colorText(currentLayerColor)), this);
        text->setObjectName(QStringLiteral("layerColorText"));
        QLabel* patch = colorPatch(QStringLiteral("layerColorSwatch"), this);
        patch->setStyleSheet(QStringLiteral("background-color: %1;").arg(cssColor(currentLayerColor)));
        row->addWidget(text);
        row->addWidget(patch);
        row->addStretch();
        layout->addLayout(row);
    }

    auto* buttons = new QHBoxLayout;
    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("okButton"));
    ok->setDefault(true);
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    cancel->setObjectName(QStringLiteral("cancelButton"));
    connect(ok, &QPushButton::clicked, this, &IndexColorDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &IndexColorDialog::reject);
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);

    const bool allowed = db::isIndexColor(initialIndex) ||
                         (allowByLayerByBlock && (initialIndex == db::kColorByLayer || initialIndex == db::kColorByBlock));
    if (allowed) select(initialIndex);
    else showColor(std::nullopt);
}

// The grid (saturated shades above the middle, pale ones below, the brightest
// next to the middle), then the standard colours and the greys.
void IndexColorDialog::buildSwatches(QVBoxLayout& layout) {
    auto* group = new QButtonGroup(this);
    group->setObjectName(QStringLiteral("swatchGroup"));
    group->setExclusive(true);
    auto makeSwatch = [this, group](int index, QWidget* parent) {
        auto* swatch = new QToolButton(parent);
        swatch->setObjectName(QStringLiteral("color%1").arg(index));
        swatch->setCheckable(true);
        swatch->setFixedSize(kSwatchSize, kSwatchSize);
        swatch->setToolTip(QStringLiteral("Index color: %1").arg(index));
        swatch->setStyleSheet(swatchStyle(index));
        group->addButton(swatch, index);
        connect(swatch, &QToolButton::clicked, this, [this, index] { select(index); });
        return swatch;
    };

    auto* grid = new QWidget(this);
    grid->setObjectName(QStringLiteral("colorGrid"));
    auto* gridLayout = new QGridLayout(grid);
    gridLayout->setSpacing(1);
    for (int hue = 0; hue < kHues; ++hue) {
        for (int row = 0; row < kShadesPerHalf; ++row) {
            const int saturated = 10 + hue * 10 + (kShadesPerHalf - 1 - row) * 2;
            gridLayout->addWidget(makeSwatch(saturated, grid), row, hue);
            const int pale = 11 + hue * 10 + row * 2;
            gridLayout->addWidget(makeSwatch(pale, grid), kShadesPerHalf + row, hue);
        }
    }
    layout.addWidget(grid);

    auto* rows = new QHBoxLayout;
    auto* standard = new QWidget(this);
    standard->setObjectName(QStringLiteral("standardColors"));
    auto* standardLayout = new QHBoxLayout(standard);
    standardLayout->setSpacing(2);
    for (int index = 1; index <= 9; ++index) standardLayout->addWidget(makeSwatch(index, standard));
    auto* greys = new QWidget(this);
    greys->setObjectName(QStringLiteral("greyColors"));
    auto* greyLayout = new QHBoxLayout(greys);
    greyLayout->setSpacing(2);
    for (int index = 250; index <= 255; ++index) greyLayout->addWidget(makeSwatch(index, greys));
    rows->addWidget(standard);
    rows->addStretch();
    rows->addWidget(greys);
    layout.addLayout(rows);
}

// ByLayer and ByBlock (when allowed), the edit with its label, the preview and the RGB.
void IndexColorDialog::buildChoiceRow(QVBoxLayout& layout) {
    auto* row = new QHBoxLayout;
    if (allowByLayerByBlock_) {
        auto* byLayer = new QPushButton(QStringLiteral("ByLayer"), this);
        byLayer->setObjectName(QStringLiteral("byLayerButton"));
        byLayer->setAutoDefault(false);
        connect(byLayer, &QPushButton::clicked, this, [this] { select(db::kColorByLayer); });
        auto* byBlock = new QPushButton(QStringLiteral("ByBlock"), this);
        byBlock->setObjectName(QStringLiteral("byBlockButton"));
        byBlock->setAutoDefault(false);
        connect(byBlock, &QPushButton::clicked, this, [this] { select(db::kColorByBlock); });
        row->addWidget(byLayer);
        row->addWidget(byBlock);
    }
    auto* label = new QLabel(QStringLiteral("&Color:"), this);
    label->setObjectName(QStringLiteral("colorLabel"));
    edit_ = new QLineEdit(this);
    edit_->setObjectName(QStringLiteral("colorEdit"));
    label->setBuddy(edit_);
    connect(edit_, &QLineEdit::textEdited, this, [this](const QString& text) {
        const std::wstring typed = wideText(text);
        showColor(refusalOf(typed, allowByLayerByBlock_).empty() ? db::parseIndexColor(typed) : std::nullopt);
    });
    preview_ = colorPatch(QStringLiteral("colorPreview"), this);
    rgbText_ = new QLabel(this);
    rgbText_->setObjectName(QStringLiteral("rgbText"));
    row->addStretch();
    row->addWidget(label);
    row->addWidget(edit_);
    row->addWidget(preview_);
    row->addWidget(rgbText_);
    layout.addLayout(row);
}

QAbstractButton* IndexColorDialog::buttonFor(int index) const {
    if (index == db::kColorByLayer) return findChild<QAbstractButton*>(QStringLiteral("byLayerButton"));
    if (index == db::kColorByBlock) return findChild<QAbstractButton*>(QStringLiteral("byBlockButton"));
    if (!db::isIndexColor(index)) return nullptr;
    return findChild<QAbstractButton*>(QStringLiteral("color%1").arg(index));
}

void IndexColorDialog::select(int index) {
    chosen_ = index;
    edit_->setText(colorText(index));
    showColor(index);
}

// The preview, the RGB and the checked swatch of a colour (none for ByLayer and ByBlock).
void IndexColorDialog::showColor(std::optional<int> index) {
    const bool isColor = index && db::isIndexColor(*index);
    preview_->setStyleSheet(isColor ? QStringLiteral("background-color: %1;").arg(cssColor(*index)) : QString());
    if (isColor) {
        const db::Rgb rgb = db::rgbOfIndexColor(*index);
        rgbText_->setText(QStringLiteral("Index color: %1  Red, Green, Blue: %2, %3, %4")
                              .arg(*index).arg(int{rgb.red}).arg(int{rgb.green}).arg(int{rgb.blue}));
    } else {
        rgbText_->setText(index ? colorText(*index) : QString());
    }
    auto* group = findChild<QButtonGroup*>(QStringLiteral("swatchGroup"));
    if (isColor) {
        if (QAbstractButton* swatch = buttonFor(*index)) swatch->setChecked(true);
    } else if (group && group->checkedButton()) {
        group->setExclusive(false);
        group->checkedButton()->setChecked(false);
        group->setExclusive(true);
    }
}

std::wstring IndexColorDialog::refusalOf(const std::wstring& typed, bool allowByLayerByBlock) {
    const std::wstring choices = allowByLayerByBlock ? L"a color number from 1 to 255, BYLAYER or BYBLOCK"
                                                     : L"a color number from 1 to 255";
    const std::optional<int> index = db::parseIndexColor(typed);
    if (!index) return L"\"" + trimmed(typed) + L"\" is not a color: enter " + choices + L".";
    if (*index < db::kColorByBlock || *index > db::kColorByLayer) {
        return L"There is no color " + trimmed(typed) + L": enter " + choices + L".";
    }
    if (!db::isIndexColor(*index) && !allowByLayerByBlock) {
        return std::wstring(*index == db::kColorByLayer ? L"BYLAYER" : L"BYBLOCK") + L" is not allowed here: enter " +
               choices + L".";
    }
    return {};
}

void IndexColorDialog::accept() {
    const std::wstring typed = wideText(edit_->text());
    const std::wstring refusal = refusalOf(typed, allowByLayerByBlock_);
    if (!refusal.empty()) {
        showMessageBox(this, refusal, wideText(windowTitle()), MB_ICONWARNING);
        return;
    }
    chosen_ = *db::parseIndexColor(typed);
    QDialog::accept();
}

}  // namespace korva::runtime
