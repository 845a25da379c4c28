// A dialog as modules build them, for the dialog tests: a CDialog subclass whose
// Qt form has check boxes, radio buttons with handlers, a line edit, a combo box,
// a spin box, a list, labels with buddies, browse and colour buttons that open
// the host's file and colour dialogs, OK and Cancel. Test commands open it (and
// the host's file and colour dialogs) from scripts run by the real engine; what
// the dialog ended with is kept for the test to inspect.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

#include <functional>
#include <string>
#include <vector>

#include "editor/CommandStack.h"
#include "kcdbfuncs.h"
#include "kced.h"
#include "kcmfc.h"

namespace korva::test {

// Control ids of the sample form.
enum SampleId : int {
    kBoldId = 1001,
    kItalicId = 1002,
    kLeftId = 1011,
    kCenterId = 1012,
    kRightId = 1013,
    kNameId = 1020,
    kUnitId = 1030,
    kCountId = 1040,
    kLayerListId = 1050,
    kWidthId = 1060,
    kOldPathId = 1070,
    kColorTextId = 1080,
};

// The members the form exchanges with DDX, and what the handlers saw.
struct SampleValues {
    int bold = 0;
    int alignment = 0;  // 0 left, 1 centre, 2 right
    CString name;
    int unit = 0;
    int count = 1;
    double width = 1.0;
    bool operator==(const SampleValues& o) const {
        return bold == o.bold && alignment == o.alignment && name == o.name && unit == o.unit && count == o.count &&
               width == o.width;
    }
};

struct SampleRecord {
    int runs = 0;
    INT_PTR result = 0;
    SampleValues values;
    wchar_t alignmentLetter = L'?';  // set by the radio handlers
    int radioClicks = 0;
    int nameEdits = 0;          // textEdited signals
    int nameFinished = 0;       // editingFinished signals
    int unitActivations = 0;    // activated signals of the combo box
    int selectionChanges = 0;   // itemSelectionChanged signals of the list
    int cancels = 0;            // OnCancel calls
    std::vector<std::wstring> pickedLayers;
    std::wstring oldPath;
    std::wstring chosenColor;
    // The controls right after OnInitDialog: what the load direction of DDX showed.
    bool shownBold = false;
    std::wstring shownName;
    int shownUnit = -1;
    int shownCount = -1;
    bool shownRight = false;
};

inline SampleValues& samplePreset() {
    static SampleValues preset;
    return preset;
}
inline SampleRecord& sampleRecord() {
    static SampleRecord record;
    return record;
}

class SampleFormDialog : public CDialog {
public:
    explicit SampleFormDialog(const SampleValues& values) : CDialog(4242, kcedGetKcadFrame()), values_(values) {
        QDialog* dialog = qtDialog();
        dialog->setObjectName(QStringLiteral("SampleForm"));
        dialog->setWindowTitle(QStringLiteral("Sample Form"));
        auto* grid = new QGridLayout(dialog);
        int row = 0;
        auto add = [&](QWidget* widget, int id, int column = 0) {
            if (id) SetControlId(widget, id);
            grid->addWidget(widget, row, column);
            return widget;
        };
        auto labelFor = [&](const QString& text, QWidget* buddy) {
            auto* label = new QLabel(text, dialog);
            label->setBuddy(buddy);
            grid->addWidget(label, row, 1);
        };

        bold_ = new QCheckBox(QStringLiteral("&Bold"), dialog);
        bold_->setObjectName(QStringLiteral("boldCheck"));
        add(bold_, kBoldId);
        auto* italic = new QCheckBox(QStringLiteral("&Italic"), dialog);
        italic->setObjectName(QStringLiteral("italicCheck"));
        add(italic, kItalicId, 1);
        ++row;
        const QString radioTexts[] = {QStringLiteral("&Left"), QStringLiteral("&Center"), QStringLiteral("&Right")};
        const wchar_t letters[] = {L'L', L'C', L'R'};
        for (int i = 0; i < 3; ++i) {
            auto* radio = new QRadioButton(radioTexts[i], dialog);
            radio->setObjectName(QStringLiteral("align%1").arg(i));
            add(radio, kLeftId + i, i);
            const wchar_t letter = letters[i];
            QObject::connect(radio, &QRadioButton::clicked, [letter] {
                sampleRecord().alignmentLetter = letter;
                ++sampleRecord().radioClicks;
            });
        }
        ++row;
        name_ = new QLineEdit(dialog);
        name_->setObjectName(QStringLiteral("nameEdit"));
        add(name_, kNameId, 2);
        labelFor(QStringLiteral("&Name:"), name_);
        QObject::connect(name_, &QLineEdit::textEdited, [] { ++sampleRecord().nameEdits; });
        QObject::connect(name_, &QLineEdit::editingFinished, [] { ++sampleRecord().nameFinished; });
        ++row;
        unit_ = new QComboBox(dialog);
        unit_->setObjectName(QStringLiteral("unitCombo"));
        unit_->addItems({QStringLiteral("Millimeters"), QStringLiteral("Inches"), QStringLiteral("Feet")});
        add(unit_, kUnitId, 2);
        labelFor(QStringLiteral("&Units:"), unit_);
        QObject::connect(unit_, qOverload<int>(&QComboBox::activated), [] { ++sampleRecord().unitActivations; });
        ++row;
        count_ = new QSpinBox(dialog);
        count_->setObjectName(QStringLiteral("countSpin"));
        count_->setRange(1, 10);
        add(count_, kCountId, 2);
        labelFor(QStringLiteral("Count:"), count_);
        ++row;
        layers_ = new QListWidget(dialog);
        layers_->setObjectName(QStringLiteral("layerList"));
        layers_->setSelectionMode(QAbstractItemView::ExtendedSelection);
        layers_->addItems({QStringLiteral("0"), QStringLiteral("Walls"), QStringLiteral("Doors"), QStringLiteral("Windows")});
        add(layers_, kLayerListId, 2);
        labelFor(QStringLiteral("&Layers:"), layers_);
        QObject::connect(layers_, &QListWidget::itemSelectionChanged, [] { ++sampleRecord().selectionChanges; });
        ++row;
        auto* width = new QLineEdit(dialog);
        width->setObjectName(QStringLiteral("widthEdit"));
        add(width, kWidthId, 2);
        labelFor(QStringLiteral("&Width:"), width);
        ++row;
        oldPath_ = new QLineEdit(dialog);
        oldPath_->setObjectName(QStringLiteral("oldPathEdit"));
        add(oldPath_, kOldPathId, 2);
        // Two buttons that read the same, as forms with one "Browse" per field have.
        auto* browseOld = new QPushButton(QStringLiteral("B&rowse"), dialog);
        browseOld->setObjectName(QStringLiteral("browseOldButton"));
        add(browseOld, 0, 0);
        QObject::connect(browseOld, &QPushButton::clicked, [this] { OnBrowse(); });
        auto* browseNew = new QPushButton(QStringLiteral("Bro&wse"), dialog);
        browseNew->setObjectName(QStringLiteral("browseNewButton"));
        add(browseNew, 0, 1);
        ++row;
        colorText_ = new QLabel(dialog);
        colorText_->setObjectName(QStringLiteral("colorText"));
        add(colorText_, kColorTextId, 2);
        auto* colorButton = new QPushButton(QStringLiteral("Co&lor..."), dialog);
        colorButton->setObjectName(QStringLiteral("colorButton"));
        add(colorButton, 0, 0);
        QObject::connect(colorButton, &QPushButton::clicked, [this] { OnColor(); });
        ++row;
        auto* apply = new QPushButton(QStringLiteral("&Apply"), dialog);
        apply->setObjectName(QStringLiteral("applyButton"));
        apply->setEnabled(false);
        add(apply, 0, 0);
        auto* secret = new QPushButton(QStringLiteral("Secret"), dialog);
        secret->setObjectName(QStringLiteral("secretButton"));
        secret->hide();
        add(secret, 0, 1);
        ++row;
        auto* ok = new QPushButton(QStringLiteral("&OK"), dialog);
        ok->setObjectName(QStringLiteral("okButton"));
        add(ok, IDOK, 0);
        QObject::connect(ok, &QPushButton::clicked, [this] { OnOK(); });
        auto* cancel = new QPushButton(QStringLiteral("&Cancel"), dialog);
        cancel->setObjectName(QStringLiteral("cancelButton"));
        add(cancel, IDCANCEL, 1);
        QObject::connect(cancel, &QPushButton::clicked, [this] { OnCancel(); });
    }

    void DoDataExchange(CDataExchange* exchange) override {
        CDialog::DoDataExchange(exchange);
        DDX_Check(exchange, kBoldId, values_.bold);
        DDX_Radio(exchange, kLeftId, values_.alignment);
        DDX_Text(exchange, kNameId, values_.name);
        DDX_CBIndex(exchange, kUnitId, values_.unit);
        DDX_Text(exchange, kCountId, values_.count);
        DDX_Text(exchange, kWidthId, values_.width);
    }

    BOOL OnInitDialog() override {
        CDialog::OnInitDialog();
        SampleRecord& record = sampleRecord();
        record.shownBold = bold_->isChecked();
        record.shownName = name_->text().toStdWString();
        record.shownUnit = unit_->currentIndex();
        record.shownCount = count_->value();
        record.shownRight = IsDlgButtonChecked(kRightId) == BST_CHECKED;
        return TRUE;
    }

    void OnCancel() override {
        ++sampleRecord().cancels;
        CDialog::OnCancel();
    }

    void OnBrowse() {
        resbuf* result = nullptr;
        if (kcedGetFileNavDialog(L"Old drawing", L"", L"dwg;dxf", L"BrowseOld", 0, &result) == RTNORM) {
            SetDlgItemText(kOldPathId, result->resval.rstring);
        }
        kcutRelRb(result);
    }

    void OnColor() {
        int color = 7;
        if (kcedSetColorDialog(color, false, 256)) SetDlgItemInt(kColorTextId, static_cast<UINT>(color));
    }

    const SampleValues& values() const { return values_; }
    std::vector<std::wstring> pickedLayers() const {
        std::vector<std::wstring> picked;
        for (int i = 0; i < layers_->count(); ++i) {
            if (layers_->item(i)->isSelected()) picked.push_back(layers_->item(i)->text().toStdWString());
        }
        return picked;
    }
    QListWidget* layers() const { return layers_; }

private:
    SampleValues values_;
    QCheckBox* bold_ = nullptr;
    QLineEdit* name_ = nullptr;
    QComboBox* unit_ = nullptr;
    QSpinBox* count_ = nullptr;
    QListWidget* layers_ = nullptr;
    QLineEdit* oldPath_ = nullptr;
    QLabel* colorText_ = nullptr;
};

// What the file and colour test commands asked and got.
struct HostDialogCall {
    int fileFlags = 0;
    int fileStatus = 0;
    std::wstring filePath;
    int colorStart = 7;
    bool colorAllowed = false;
    int colorLayer = 256;
    bool colorChosen = false;
    int colorIndex = 0;
};
inline HostDialogCall& hostDialogCall() {
    static HostDialogCall call;
    return call;
}

// SAMPLEFORM opens the sample dialog on samplePreset() with "0" preselected in
// the list; FILEPICK and COLORPICK call the host's file and colour dialogs.
inline void registerDialogTestCommands() {
    static const bool registered = [] {
        auto add = [](const wchar_t* name, std::function<void()> handler) {
            editor::CommandDefinition command;
            command.group = L"KORVA_DIALOG_TESTS";
            command.globalName = name;
            command.localName = name;
            command.handler = std::move(handler);
            editor::CommandStack::instance().add(std::move(command));
        };
        add(L"SAMPLEFORM", [] {
            SampleFormDialog dialog(samplePreset());
            dialog.layers()->item(0)->setSelected(true);
            SampleRecord& record = sampleRecord();
            ++record.runs;
            record.result = dialog.DoModal();
            record.values = dialog.values();
            record.pickedLayers = dialog.pickedLayers();
            CString text;
            dialog.GetDlgItemText(kOldPathId, text);
            record.oldPath = text.str();
            dialog.GetDlgItemText(kColorTextId, text);
            record.chosenColor = text.str();
        });
        add(L"FILEPICK", [] {
            HostDialogCall& call = hostDialogCall();
            resbuf* result = nullptr;
            call.fileStatus = kcedGetFileNavDialog(L"Pick a file", L"", L"svf;scr", L"PickFile", call.fileFlags, &result);
            call.filePath = result && result->restype == RTSTR ? result->resval.rstring : L"";
            kcutRelRb(result);
        });
        add(L"COLORPICK", [] {
            HostDialogCall& call = hostDialogCall();
            call.colorIndex = call.colorStart;
            call.colorChosen = kcedSetColorDialog(call.colorIndex, call.colorAllowed, call.colorLayer);
        });
        return true;
    }();
    (void)registered;
}

// Fresh records before each test.
inline void resetDialogTestRecords() {
    samplePreset() = SampleValues();
    sampleRecord() = SampleRecord();
    hostDialogCall() = HostDialogCall();
}

}  // namespace korva::test
