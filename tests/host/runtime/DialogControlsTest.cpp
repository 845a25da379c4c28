// The window functions of CDialog and CWnd over a form's widgets, used directly
// as module code uses them: controls by id, their texts and check states, data
// exchange of numbers, the frame, and how the window's own closing ends a dialog.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialog>
#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include <thread>

#include "ScriptRun.h"
#include "kcmfc.h"
#include "runtime/dialogs/HostFrame.h"

namespace korva::test {
namespace {

enum ControlId : int {
    kFirstRadio = 10,
    kSecondRadio = 11,
    kThirdRadio = 12,
    kTriState = 20,
    kEdit = 30,
    kLabel = 31,
    kButton = 32,
    kCombo = 33,
    kEditableCombo = 34,
    kSpin = 35,
    kRealSpin = 36,
    kNumberEdit = 37,
};

// A form with one control of each kind; DoDataExchange reads kNumberEdit as an integer.
class ControlsDialog : public CDialog {
public:
    ControlsDialog() : CDialog(77) {
        QDialog* dialog = qtDialog();
        auto* layout = new QVBoxLayout(dialog);
        auto add = [&](QWidget* widget, int id) {
            SetControlId(widget, id);
            layout->addWidget(widget);
        };
        for (int id = kFirstRadio; id <= kThirdRadio; ++id) add(new QRadioButton(QStringLiteral("R%1").arg(id), dialog), id);
        auto* triState = new QCheckBox(QStringLiteral("Mixed"), dialog);
        triState->setTristate(true);
        add(triState, kTriState);
        add(new QLineEdit(dialog), kEdit);
        add(new QLabel(dialog), kLabel);
        add(new QPushButton(dialog), kButton);
        auto* combo = new QComboBox(dialog);
        combo->addItems({QStringLiteral("a"), QStringLiteral("b")});
        add(combo, kCombo);
        auto* editable = new QComboBox(dialog);
        editable->setEditable(true);
        add(editable, kEditableCombo);
        auto* spin = new QSpinBox(dialog);
        spin->setRange(-100, 100);
        add(spin, kSpin);
        add(new QDoubleSpinBox(dialog), kRealSpin);
        add(new QLineEdit(dialog), kNumberEdit);
    }
    void DoDataExchange(CDataExchange* exchange) override { DDX_Text(exchange, kNumberEdit, number); }
    void OnCancel() override {
        ++cancels;
        CDialog::OnCancel();
    }
    int number = 5;
    int cancels = 0;
};

class DialogControls : public ::testing::Test {
protected:
    ScriptRun run_;  // captures the command line
    ControlsDialog dialog_;
};

TEST_F(DialogControls, CheckRadioButtonChecksOneOfTheRangeOrNone) {
    dialog_.CheckRadioButton(kFirstRadio, kThirdRadio, kSecondRadio);
    EXPECT_EQ(dialog_.GetCheckedRadioButton(kFirstRadio, kThirdRadio), kSecondRadio);
    dialog_.CheckRadioButton(kFirstRadio, kThirdRadio, kThirdRadio);
    EXPECT_EQ(dialog_.GetCheckedRadioButton(kFirstRadio, kThirdRadio), kThirdRadio);
    EXPECT_EQ(dialog_.IsDlgButtonChecked(kSecondRadio), BST_UNCHECKED);
    // An id outside the range unchecks them all, even though they are exclusive.
    dialog_.CheckRadioButton(kFirstRadio, kThirdRadio, 0);
    EXPECT_EQ(dialog_.GetCheckedRadioButton(kFirstRadio, kThirdRadio), 0);
}

TEST_F(DialogControls, ButtonStatesRoundTripIncludingIndeterminate) {
    for (UINT state : {BST_CHECKED, 2u, BST_UNCHECKED}) {
        dialog_.CheckDlgButton(kTriState, state);
        EXPECT_EQ(dialog_.IsDlgButtonChecked(kTriState), state);
    }
}

TEST_F(DialogControls, ItemTextsGoToWhatEachKindOfControlShows) {
    const struct {
        int id;
        const wchar_t* set;
        const wchar_t* read;
    } cases[] = {
        {kEdit, L"abc", L"abc"},       {kLabel, L"Label", L"Label"},     {kButton, L"Go", L"Go"},
        {kCombo, L"b", L"b"},          {kCombo, L"zzz", L"b"},           // no such item: unchanged
        {kEditableCombo, L"free", L"free"}, {kSpin, L"7", L"7"},         {kSpin, L"x", L"7"},
        {kRealSpin, L"2.5", L"2.50"},  {kEdit, L"", L""},
    };
    for (const auto& c : cases) {
        dialog_.SetDlgItemText(c.id, c.set);
        CString text;
        EXPECT_EQ(dialog_.GetDlgItemText(c.id, text), static_cast<int>(std::wcslen(c.read))) << c.id;
        EXPECT_EQ(text, CString(c.read)) << c.id << " after " << QString::fromWCharArray(c.set).toStdString();
    }
}

TEST_F(DialogControls, ItemIntegersAreTranslatedOnlyWhenTheTextIsANumberThatFits) {
    const struct {
        const wchar_t* text;
        BOOL isSigned;
        BOOL translated;
        UINT value;
    } cases[] = {
        {L"42", TRUE, TRUE, 42},
        {L" -5 ", TRUE, TRUE, static_cast<UINT>(-5)},
        {L"-5", FALSE, FALSE, 0},
        {L"12abc", TRUE, FALSE, 0},
        {L"", TRUE, FALSE, 0},
        {L"4294967295", FALSE, TRUE, 4294967295u},
        {L"2147483648", TRUE, FALSE, 0},
    };
    for (const auto& c : cases) {
        dialog_.SetDlgItemText(kEdit, c.text);
        BOOL translated = !c.translated;
        EXPECT_EQ(dialog_.GetDlgItemInt(kEdit, &translated, c.isSigned), c.value) << QString::fromWCharArray(c.text).toStdString();
        EXPECT_EQ(translated, c.translated) << QString::fromWCharArray(c.text).toStdString();
    }
    dialog_.SetDlgItemInt(kEdit, static_cast<UINT>(-3), TRUE);
    CString text;
    dialog_.GetDlgItemText(kEdit, text);
    EXPECT_EQ(text, CString(L"-3"));
    dialog_.SetDlgItemInt(kSpin, 9);
    EXPECT_EQ(dialog_.GetDlgItemInt(kSpin), 9u);
}

TEST_F(DialogControls, GetDlgItemGivesOneWindowPerIdOverItsWidget) {
    CWnd* item = dialog_.GetDlgItem(kEdit);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(dialog_.GetDlgItem(kEdit), item);
    EXPECT_EQ(item->GetDlgCtrlID(), kEdit);
    EXPECT_EQ(dialog_.GetDlgItem(999), nullptr);
    EXPECT_EQ(item->EnableWindow(FALSE), FALSE);  // was enabled
    EXPECT_EQ(item->IsWindowEnabled(), FALSE);
    EXPECT_EQ(item->EnableWindow(TRUE), TRUE);  // was disabled
    item->SetWindowText(L"via window");
    CString text;
    dialog_.GetDlgItemText(kEdit, text);
    EXPECT_EQ(text, CString(L"via window"));
    dialog_.SetWindowText(L"Title");
    EXPECT_EQ(dialog_.qtDialog()->windowTitle(), QStringLiteral("Title"));
}

TEST_F(DialogControls, ABadIntegerFailsTheExchangeWithAMessageAndKeepsTheMember) {
    dialog_.SetDlgItemText(kNumberEdit, L"12x");
    EXPECT_EQ(dialog_.UpdateData(TRUE), FALSE);
    EXPECT_EQ(dialog_.number, 5);
    EXPECT_TRUE(run_.outputContains(L"** Please enter an integer."));
    dialog_.SetDlgItemText(kNumberEdit, L" 12 ");
    EXPECT_EQ(dialog_.UpdateData(TRUE), TRUE);
    EXPECT_EQ(dialog_.number, 12);
    dialog_.number = -4;
    EXPECT_EQ(dialog_.UpdateData(FALSE), TRUE);
    CString text;
    dialog_.GetDlgItemText(kNumberEdit, text);
    EXPECT_EQ(text, CString(L"-4"));
}

TEST_F(DialogControls, EscapeAndTheCloseButtonCallTheVirtualOnCancel) {
    QDialog* window = dialog_.qtDialog();
    window->setAttribute(Qt::WA_DontShowOnScreen, true);
    window->show();
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &escape);
    EXPECT_EQ(dialog_.cancels, 1);
    EXPECT_FALSE(window->isVisible());
    window->show();
    window->close();
    EXPECT_EQ(dialog_.cancels, 2);
    EXPECT_EQ(window->result(), IDCANCEL);
}

TEST_F(DialogControls, TheFrameRecordsPostedMessagesAndHasNoWindowWithoutADisplay) {
    CWnd* frame = kcedGetKcadFrame();
    ASSERT_NE(frame, nullptr);
    runtime::clearPostedFrameMessages();
    EXPECT_EQ(frame->PostMessage(WM_COMMAND, 10683, 0), TRUE);
    EXPECT_EQ(frame->PostMessage(WM_COMMAND, 7, -1), TRUE);
    const std::vector<runtime::PostedMessage> expected = {{WM_COMMAND, 10683, 0}, {WM_COMMAND, 7, -1}};
    EXPECT_EQ(runtime::postedFrameMessages(), expected);
    EXPECT_EQ(frame->widget(), nullptr);
    CDialog child(5, frame);
    EXPECT_EQ(child.qtDialog()->parentWidget(), nullptr);
}

TEST_F(DialogControls, DoModalRefusesAThreadThatCannotUseQt) {
    INT_PTR result = 0;
    std::thread other([&result] {
        CDialog dialog(8);
        result = dialog.DoModal();
    });
    other.join();
    EXPECT_EQ(result, IDCANCEL);
    EXPECT_TRUE(run_.outputContains(L"cannot be shown from this thread"));
}

}  // namespace
}  // namespace korva::test
