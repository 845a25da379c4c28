// The TCASE dialog: the mode from and to the application profile, the radio
// handlers, and the conversion of the selected texts on OK. A stored mode that
// is none of the five letters checks Sentence case but stays the mode, so OK
// then writes every text back unchanged and stores that value again.
#include "text/TcaseDlg.h"

#include <QDialog>
#include <QPushButton>
#include <QRadioButton>

#include <cwchar>

#include "framework/ModuleResources.h"
#include "kcdbents.h"
#include "kcdbfuncs.h"
#include "kced.h"
#include "text/TextCase.h"
#include "ui/TcaseDlg.h"

namespace {

constexpr const wchar_t* kProfileSection = L"TcaseDialog";
constexpr const wchar_t* kProfileEntry = L"LastChoiced";

// The button of a stored mode; any other value checks Sentence case.
int radioIdOfMode(int mode) {
    switch (mode) {
        case kTcaseToggle: return TcaseDlg::IDC_RADIO_TOGGLE;
        case kTcaseLower: return TcaseDlg::IDC_RADIO_LOWER;
        case kTcaseTitle: return TcaseDlg::IDC_RADIO_TITLE;
        case kTcaseUpper: return TcaseDlg::IDC_RADIO_UPPER;
        default: return TcaseDlg::IDC_RADIO_SENTENCE;
    }
}

// An object open for write, closed when the step ends.
class OpenedForWrite {
public:
    explicit OpenedForWrite(KcDbObjectId id) : m_status(kcdbOpenObject(m_object, id, KcDb::kForWrite)) {
        if (m_status != Kcad::eOk) m_object = nullptr;
    }
    ~OpenedForWrite() {
        if (m_object) m_object->close();
    }
    OpenedForWrite(const OpenedForWrite&) = delete;
    OpenedForWrite& operator=(const OpenedForWrite&) = delete;
    KcDbObject* get() const { return m_object; }
    Kcad::ErrorStatus status() const { return m_status; }

private:
    KcDbObject* m_object = nullptr;
    Kcad::ErrorStatus m_status;
};

// A host string freed when the step ends.
class HostString {
public:
    HostString() = default;
    ~HostString() {
        if (m_text) kcutDelString(m_text);
    }
    HostString(const HostString&) = delete;
    HostString& operator=(const HostString&) = delete;
    wchar_t*& ref() { return m_text; }

private:
    wchar_t* m_text = nullptr;
};

}  // namespace

TcaseDlg::TcaseDlg(CWnd* parent, const kcad_name selectionSet) : CDialog(IDD, parent), m_mode(kTcaseSentence) {
    m_selectionSet[0] = selectionSet[0];
    m_selectionSet[1] = selectionSet[1];
    QDialog* dialog = qtDialog();
    if (!dialog) return;  // no widgets on this thread: DoModal cancels
    m_form = std::make_unique<KVUI::TcaseDlg>(dialog);
    // The caption of dialog resource 2366 from the resource library; the form's own title when it is missing.
    __ResourceString caption(IDD, L"");
    if (const wchar_t* title = caption; title && *title) SetWindowText(title);
    const Ui_TCaseDialog& ui = m_form->ui();
    SetControlId(ui.radioSentenceCase, IDC_RADIO_SENTENCE);
    SetControlId(ui.radioLowercase, IDC_RADIO_LOWER);
    SetControlId(ui.radioUppercase, IDC_RADIO_UPPER);
    SetControlId(ui.radioTitle, IDC_RADIO_TITLE);
    SetControlId(ui.radioToggleCase, IDC_RADIO_TOGGLE);
    SetControlId(ui.okButton, IDOK);
    SetControlId(ui.cancelButton, IDCANCEL);

    QObject::connect(m_form.get(), &KVUI::TcaseDlg::radioClicked, [this](int index) {
        switch (index) {
            case 1: OnRadio1(); break;
            case 2: OnRadio2(); break;
            case 3: OnRadio3(); break;
            case 4: OnRadio4(); break;
            case 5: OnRadio5(); break;
            default: break;
        }
    });
    QObject::connect(m_form.get(), &KVUI::TcaseDlg::okClicked, [this] { OnOK(); });
    QObject::connect(m_form.get(), &KVUI::TcaseDlg::cancelClicked, [this] { OnCancel(); });
}

TcaseDlg::~TcaseDlg() = default;

void TcaseDlg::DoDataExchange(CDataExchange* exchange) { CDialog::DoDataExchange(exchange); }

BOOL TcaseDlg::OnInitDialog() {
    CDialog::OnInitDialog();
    if (CWinApp* app = kcedGetKcadWinApp()) {
        m_mode = static_cast<int>(app->GetProfileInt(kProfileSection, kProfileEntry, kTcaseSentence));
    }
    const int radioId = radioIdOfMode(m_mode);
    CheckRadioButton(IDC_RADIO_SENTENCE, IDC_RADIO_TOGGLE, radioId);
    m_checkedRadio = GetDlgItem(radioId);
    return TRUE;
}

void TcaseDlg::OnOK() {
    Kcad::Int32 length = 0;
    if (kcedSSLength(m_selectionSet, &length) != RTNORM) length = 0;
    for (Kcad::Int32 index = 0; index < length; ++index) {
        kcad_name entity = {0, 0};
        if (kcedSSName(m_selectionSet, index, entity) != RTNORM) continue;
        convertEntity(entity);  // a text that fails is skipped silently; the others are still converted
    }
    if (CWinApp* app = kcedGetKcadWinApp()) app->WriteProfileInt(kProfileSection, kProfileEntry, m_mode);
    CDialog::OnOK();
}

void TcaseDlg::OnCancel() { CDialog::OnCancel(); }

Kcad::ErrorStatus TcaseDlg::convertEntity(const kcad_name entity) const {
    KcDbObjectId id;
    if (const Kcad::ErrorStatus status = kcdbGetObjectId(id, entity); status != Kcad::eOk) return status;
    OpenedForWrite opened(id);
    KcDbObject* object = opened.get();
    if (!object) return opened.status();
    if (object->hasFields()) return Kcad::eOk;  // texts with fields are never converted

    HostString text;
    if (KcDbMText* mtext = KcDbMText::cast(object)) {
        text.ref() = mtext->contents();
        const Kcad::ErrorStatus status = tcase_convert(m_mode, text.ref(), true);
        return status == Kcad::eOk ? mtext->setContents(text.ref()) : status;
    }
    if (KcDbText* single = KcDbText::cast(object)) {  // attribute definitions are texts too
        text.ref() = single->textString();
        const Kcad::ErrorStatus status = tcase_convert(m_mode, text.ref(), false);
        return status == Kcad::eOk ? single->setTextString(text.ref()) : status;
    }
    return Kcad::eNotThatKindOfClass;
}

void TcaseDlg::OnRadio1() { m_mode = kTcaseSentence; }
void TcaseDlg::OnRadio2() { m_mode = kTcaseLower; }
void TcaseDlg::OnRadio3() { m_mode = kTcaseUpper; }
void TcaseDlg::OnRadio4() { m_mode = kTcaseTitle; }
void TcaseDlg::OnRadio5() { m_mode = kTcaseToggle; }

bool TcaseDlg::includeSymbol(const wchar_t* text) const {
    static constexpr wchar_t kSymbols[] = {0x2248, 0x2220, 0xE100, 0x2104, 0x0394, 0x0278, 0xE101, 0x2261, 0xE200,
                                           0xE102, 0x2260, 0x2126, 0x03A9, 0x214A, 0x2082, 0x00B2, 0x00B3};
    if (!text) return false;
    for (wchar_t symbol : kSymbols) {
        if (std::wcschr(text, symbol)) return true;
    }
    return false;
}
