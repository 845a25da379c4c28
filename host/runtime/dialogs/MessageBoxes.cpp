// The message boxes of the SDK over QMessageBox, or the command line.
#include "runtime/dialogs/MessageBoxes.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#include "kcmfc.h"
#include "runtime/dialogs/DialogEnvironment.h"
#include "runtime/dialogs/HostFrame.h"

namespace korva::runtime {

namespace {

// The button sets of message box types (the low four bits).
constexpr UINT kTypeMask = 0x0F;
constexpr UINT kYesNoCancel = 0x3;
constexpr UINT kIconMask = 0xF0;
constexpr UINT kIconQuestion = 0x20;

bool asksYesOrNo(UINT type) {
    const UINT buttons = type & kTypeMask;
    return buttons == MB_YESNO || buttons == kYesNoCancel;
}

QMessageBox::StandardButtons buttonsOf(UINT type) {
    switch (type & kTypeMask) {
        case MB_OKCANCEL: return QMessageBox::Ok | QMessageBox::Cancel;
        case kYesNoCancel: return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        case MB_YESNO: return QMessageBox::Yes | QMessageBox::No;
        default: return QMessageBox::Ok;
    }
}

QMessageBox::Icon iconOf(UINT type) {
    switch (type & kIconMask) {
        case MB_ICONERROR: return QMessageBox::Critical;
        case kIconQuestion: return QMessageBox::Question;
        case MB_ICONWARNING: return QMessageBox::Warning;
        case MB_ICONINFORMATION: return QMessageBox::Information;
        default: return QMessageBox::NoIcon;
    }
}

int answerOf(QMessageBox::StandardButton button, UINT type) {
    switch (button) {
        case QMessageBox::Ok: return IDOK;
        case QMessageBox::Cancel: return IDCANCEL;
        case QMessageBox::Yes: return IDYES;
        case QMessageBox::No: return IDNO;
        default: return (type & kTypeMask) == MB_OK ? IDOK : IDCANCEL;  // closed without a button
    }
}

int showToPerson(QWidget* parent, std::wstring_view text, std::wstring_view caption, UINT type) {
    QMessageBox box(iconOf(type), caption.empty() ? QStringLiteral("Korva") : qtText(caption), qtText(text),
                    buttonsOf(type), parent);
    box.setObjectName(QStringLiteral("MessageBox"));
    box.exec();
    return answerOf(box.standardButton(box.clickedButton()), type);
}

// Only a live widget can be a parent: an owner handle may be anything.
QWidget* liveWidget(HWND owner) {
    auto* widget = reinterpret_cast<QWidget*>(owner);
    if (!widget || !canUseWidgets()) return nullptr;
    return QApplication::allWidgets().contains(widget) ? widget : nullptr;
}

}  // namespace

int showMessageBox(QWidget* parent, std::wstring_view text, std::wstring_view caption, UINT type) {
    if (personAtDisplay()) return showToPerson(parent ? parent : frameWidget(), text, caption, type);
    std::wstring line = L"** ";
    if (!caption.empty()) line.append(caption).append(L": ");
    line.append(text);
    printDialogMessage(line);
    return asksYesOrNo(type) ? IDYES : IDOK;
}

}  // namespace korva::runtime

int AfxMessageBox(LPCWSTR text, UINT type, UINT /*helpId*/) {
    return korva::runtime::showMessageBox(nullptr, text ? text : L"", {}, type);
}

int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type) {
    return korva::runtime::showMessageBox(korva::runtime::liveWidget(owner), text ? text : L"", caption ? caption : L"",
                                          type);
}

int CWnd::MessageBox(LPCWSTR text, LPCWSTR caption, UINT type) {
    return korva::runtime::showMessageBox(m_widget, text ? text : L"", caption ? caption : L"", type);
}
