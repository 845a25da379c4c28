// CWnd over its widget: enabling, showing, the text and the control id. A window
// without a widget (the frame without a display) answers as an empty one.
#include <QWidget>

#include "kcmfc.h"
#include "runtime/dialogs/ControlAccess.h"
#include "runtime/dialogs/DialogEnvironment.h"

using korva::runtime::controlIdOf;
using korva::runtime::controlText;
using korva::runtime::qtText;
using korva::runtime::wideText;

BOOL CWnd::PostMessage(UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/) { return m_widget ? TRUE : FALSE; }

// Nonzero when the window was disabled before, as its model answers.
BOOL CWnd::EnableWindow(BOOL enable) {
    if (!m_widget) return FALSE;
    const BOOL wasDisabled = m_widget->isEnabled() ? FALSE : TRUE;
    m_widget->setEnabled(enable != FALSE);
    return wasDisabled;
}

BOOL CWnd::IsWindowEnabled() const { return m_widget && m_widget->isEnabled() ? TRUE : FALSE; }

// Nonzero when the window itself was shown before (whatever its parents are).
BOOL CWnd::ShowWindow(int command) {
    if (!m_widget) return FALSE;
    const BOOL wasShown = m_widget->isHidden() ? FALSE : TRUE;
    m_widget->setVisible(command != SW_HIDE);
    return wasShown;
}

BOOL CWnd::IsWindowVisible() const { return m_widget && m_widget->isVisible() ? TRUE : FALSE; }

void CWnd::SetWindowText(LPCWSTR text) {
    if (m_widget) korva::runtime::setControlText(m_widget, qtText(text ? text : L""));
}

int CWnd::GetWindowText(CString& text) const {
    text = wideText(controlText(m_widget));
    return text.GetLength();
}

int CWnd::GetDlgCtrlID() const { return controlIdOf(m_widget); }
