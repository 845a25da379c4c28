// CDialog: the Qt dialog it owns, its controls by id, and the modal run. With a
// person at a display DoModal shows the dialog and waits; otherwise the dialog
// answers the input's dialog actions (see ScriptedDialog.h).
#include <QAbstractButton>
#include <QCheckBox>
#include <QPointer>

#include <cstdint>
#include <map>
#include <string>

#include "kcmfc.h"
#include "runtime/dialogs/ControlAccess.h"
#include "runtime/dialogs/DialogEnvironment.h"
#include "runtime/dialogs/HostFrame.h"
#include "runtime/dialogs/HostedDialog.h"
#include "runtime/dialogs/ScriptedDialog.h"

using korva::runtime::HostedDialog;

namespace {

// The window GetDlgItem hands out for an id; it follows the widget that has the id now.
class ControlWindow final : public CWnd {
public:
    void attach(QWidget* widget) { m_widget = widget; }
};

QAbstractButton* buttonOf(CWnd* window) { return window ? qobject_cast<QAbstractButton*>(window->widget()) : nullptr; }

}  // namespace

struct CDialog::Controls {
    QPointer<HostedDialog> dialog;
    std::map<int, std::unique_ptr<ControlWindow>> windows;
    bool running = false;
    bool ended = false;
    int result = IDCANCEL;
};

CDialog::CDialog(UINT templateId, CWnd* parent)
    : m_templateId(templateId), m_parent(parent), m_controls(std::make_unique<Controls>()) {}

CDialog::~CDialog() {
    if (HostedDialog* dialog = m_controls->dialog) {
        dialog->detach();
        delete dialog;
    }
}

QDialog* CDialog::qtDialog() {
    if (!m_controls->dialog && korva::runtime::canUseWidgets()) {
        QWidget* parent = m_parent && m_parent->widget() ? m_parent->widget() : korva::runtime::frameWidget();
        // No object name: a form's generated set-up names the dialog only while it has none.
        m_controls->dialog = new HostedDialog(*this, parent);
        m_widget = m_controls->dialog;
    }
    return m_controls->dialog;
}

INT_PTR CDialog::DoModal() {
    if (!korva::runtime::canUseWidgets()) {
        korva::runtime::printDialogMessage(L"** A dialog cannot be shown from this thread; it is cancelled.");
        return IDCANCEL;
    }
    if (m_controls->running) return IDCANCEL;  // already open
    QDialog* dialog = qtDialog();
    m_controls->running = true;
    m_controls->ended = false;
    m_controls->result = IDCANCEL;

    const bool person = korva::runtime::personAtDisplay();
    OnInitDialog();
    if (!m_controls->ended) {
        if (person) {
            dialog->setAttribute(Qt::WA_DontShowOnScreen, false);
            dialog->exec();
        } else {
            // Shown, so that the form is laid out and visible as for a person, but never on a screen.
            korva::runtime::QuietOffscreenWarnings quiet;
            dialog->setAttribute(Qt::WA_DontShowOnScreen, true);
            dialog->show();
            korva::runtime::DialogHooks hooks;
            hooks.ended = [this] { return m_controls->ended; };
            hooks.cancel = [this] {
                OnCancel();
                // A dialog whose OnCancel keeps it open would wait for ever: input ended.
                if (!m_controls->ended) EndDialog(IDCANCEL);
            };
            korva::runtime::answerDialogFromInput(*dialog, hooks);
        }
    }
    if (m_controls->dialog) m_controls->dialog->hide();
    m_controls->running = false;
    return m_controls->result;
}

BOOL CDialog::OnInitDialog() {
    UpdateData(FALSE);
    return TRUE;
}

void CDialog::OnOK() {
    if (!UpdateData(TRUE)) return;
    EndDialog(IDOK);
}

void CDialog::OnCancel() { EndDialog(IDCANCEL); }

void CDialog::DoDataExchange(CDataExchange* /*exchange*/) {}

BOOL CDialog::PreTranslateMessage(MSG* /*message*/) { return FALSE; }

void CDialog::EndDialog(int result) {
    m_controls->ended = true;
    m_controls->result = result;
    if (m_controls->dialog) m_controls->dialog->finish(result);
}

void CDialog::SetControlId(QWidget* control, int id) { korva::runtime::setControlIdOf(control, id); }

CWnd* CDialog::GetDlgItem(int id) {
    QWidget* control = korva::runtime::findControlById(qtDialog(), id);
    if (!control) return nullptr;
    std::unique_ptr<ControlWindow>& window = m_controls->windows[id];
    if (!window) window = std::make_unique<ControlWindow>();
    window->attach(control);
    return window.get();
}

void CDialog::CheckRadioButton(int firstId, int lastId, int checkId) {
    // The one to check first: exclusive buttons uncheck the others themselves.
    if (QAbstractButton* button = buttonOf(GetDlgItem(checkId)); button && checkId >= firstId && checkId <= lastId) {
        korva::runtime::setButtonCheckState(button, Qt::Checked);
    }
    for (int id = firstId; id <= lastId; ++id) {
        if (id == checkId) continue;
        if (QAbstractButton* button = buttonOf(GetDlgItem(id))) korva::runtime::setButtonCheckState(button, Qt::Unchecked);
    }
}

int CDialog::GetCheckedRadioButton(int firstId, int lastId) {
    for (int id = firstId; id <= lastId; ++id) {
        if (QAbstractButton* button = buttonOf(GetDlgItem(id)); button && button->isChecked()) return id;
    }
    return 0;
}

void CDialog::CheckDlgButton(int id, UINT check) {
    const Qt::CheckState state = check == BST_UNCHECKED ? Qt::Unchecked
                                 : check == BST_CHECKED ? Qt::Checked
                                                        : Qt::PartiallyChecked;
    if (QAbstractButton* button = buttonOf(GetDlgItem(id))) korva::runtime::setButtonCheckState(button, state);
}

UINT CDialog::IsDlgButtonChecked(int id) {
    switch (korva::runtime::buttonCheckState(buttonOf(GetDlgItem(id)))) {
        case Qt::Checked: return BST_CHECKED;
        case Qt::PartiallyChecked: return 2;  // indeterminate
        default: return BST_UNCHECKED;
    }
}

void CDialog::SetDlgItemText(int id, LPCWSTR text) {
    if (CWnd* window = GetDlgItem(id)) korva::runtime::setControlText(window->widget(), korva::runtime::qtText(text ? text : L""));
}

int CDialog::GetDlgItemText(int id, CString& text) {
    CWnd* window = GetDlgItem(id);
    text = window ? korva::runtime::wideText(korva::runtime::controlText(window->widget())) : std::wstring();
    return text.GetLength();
}

void CDialog::SetDlgItemInt(int id, UINT value, BOOL isSigned) {
    const std::wstring text = isSigned ? std::to_wstring(static_cast<int>(value)) : std::to_wstring(value);
    SetDlgItemText(id, text.c_str());
}

// Blanks around the number are allowed; anything else, or a value that does not
// fit, is no number (translated = FALSE, 0).
UINT CDialog::GetDlgItemInt(int id, BOOL* translated, BOOL isSigned) {
    if (translated) *translated = FALSE;
    CString text;
    GetDlgItemText(id, text);
    const std::wstring digits = korva::runtime::trimmed(text.str());
    if (digits.empty()) return 0;
    size_t used = 0;
    long long value = 0;
    try {
        value = std::stoll(digits, &used, 10);
    } catch (...) {
        return 0;
    }
    if (used != digits.size()) return 0;
    if (isSigned ? (value < INT32_MIN || value > INT32_MAX) : (value < 0 || value > UINT32_MAX)) return 0;
    if (!isSigned && digits.front() == L'-') return 0;
    if (translated) *translated = TRUE;
    return static_cast<UINT>(value);
}
