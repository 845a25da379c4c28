// The host's MFC-compatible classes: strings and arrays, windows, the modal
// dialog that hosts a module's Qt form, the application object with its profile
// integers, and text files. A dialog's controls are the widgets of its Qt form,
// each given a control id; during a script the host drives them with dialog
// actions instead of a person.
#pragma once

#include <algorithm>
#include <cstdarg>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "kcwindows.h"

class QDialog;
class QWidget;

// A wide string with the members modules use.
class CString {
public:
    CString() = default;
    CString(const wchar_t* text) : m_text(text ? text : L"") {}  // NOLINT: converts like its model
    CString(std::wstring text) : m_text(std::move(text)) {}      // NOLINT
    CString(wchar_t c, int count) : m_text(count > 0 ? static_cast<size_t>(count) : 0, c) {}

    operator const wchar_t*() const { return m_text.c_str(); }  // NOLINT
    const wchar_t* GetString() const { return m_text.c_str(); }
    const std::wstring& str() const { return m_text; }
    int GetLength() const { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const { return m_text.empty(); }
    void Empty() { m_text.clear(); }
    wchar_t GetAt(int index) const { return m_text.at(static_cast<size_t>(index)); }
    void SetAt(int index, wchar_t c) { m_text.at(static_cast<size_t>(index)) = c; }

    CString& operator=(const wchar_t* text) { m_text = text ? text : L""; return *this; }
    CString& operator+=(const wchar_t* text) { m_text += text ? text : L""; return *this; }
    CString& operator+=(const CString& text) { m_text += text.m_text; return *this; }
    CString& operator+=(wchar_t c) { m_text += c; return *this; }
    friend CString operator+(const CString& a, const CString& b) { return CString(a.m_text + b.m_text); }
    friend CString operator+(const CString& a, const wchar_t* b) { return CString(a.m_text + (b ? b : L"")); }
    friend CString operator+(const wchar_t* a, const CString& b) { return CString((a ? a : L"") + b.m_text); }
    bool operator==(const CString& other) const { return m_text == other.m_text; }
    bool operator==(const wchar_t* other) const { return m_text == (other ? other : L""); }
    bool operator!=(const CString& other) const { return !(*this == other); }
    bool operator<(const CString& other) const { return m_text < other.m_text; }
    int Compare(const wchar_t* other) const { return m_text.compare(other ? other : L""); }
    int CompareNoCase(const wchar_t* other) const;

    int Find(wchar_t c, int start = 0) const { return position(m_text.find(c, clampStart(start))); }
    int Find(const wchar_t* text, int start = 0) const { return position(m_text.find(text ? text : L"", clampStart(start))); }
    int ReverseFind(wchar_t c) const { return position(m_text.rfind(c)); }
    CString Left(int count) const { return CString(m_text.substr(0, clampCount(count))); }
    CString Right(int count) const {
        size_t n = clampCount(count);
        return CString(m_text.substr(m_text.size() - std::min(n, m_text.size())));
    }
    CString Mid(int first) const { return CString(m_text.substr(clampStart(first))); }
    CString Mid(int first, int count) const { return CString(m_text.substr(clampStart(first), clampCount(count))); }
    int Replace(const wchar_t* from, const wchar_t* to);
    CString& MakeUpper();
    CString& MakeLower();
    CString& Trim();
    CString& TrimLeft();
    CString& TrimRight();
    // printf-style formatting; "%s" takes a wide string.
    void Format(const wchar_t* format, ...);
    void FormatV(const wchar_t* format, va_list args);

private:
    size_t clampStart(int start) const { return start < 0 ? 0 : std::min(static_cast<size_t>(start), m_text.size()); }
    static size_t clampCount(int count) { return count < 0 ? 0 : static_cast<size_t>(count); }
    static int position(size_t found) { return found == std::wstring::npos ? -1 : static_cast<int>(found); }

    std::wstring m_text;
};

// A growable array with the members modules use.
template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray {
public:
    int GetSize() const { return static_cast<int>(m_items.size()); }
    int GetCount() const { return GetSize(); }
    bool IsEmpty() const { return m_items.empty(); }
    int GetUpperBound() const { return GetSize() - 1; }
    void SetSize(int size) { m_items.resize(size > 0 ? static_cast<size_t>(size) : 0); }
    int Add(ARG_TYPE item) { m_items.push_back(item); return GetSize() - 1; }
    TYPE GetAt(int index) const { return m_items.at(static_cast<size_t>(index)); }
    TYPE& ElementAt(int index) { return m_items.at(static_cast<size_t>(index)); }
    void SetAt(int index, ARG_TYPE item) { m_items.at(static_cast<size_t>(index)) = item; }
    void InsertAt(int index, ARG_TYPE item, int count = 1) {
        m_items.insert(m_items.begin() + index, count > 0 ? static_cast<size_t>(count) : 0, item);
    }
    void RemoveAt(int index, int count = 1) { m_items.erase(m_items.begin() + index, m_items.begin() + index + count); }
    void RemoveAll() { m_items.clear(); }
    TYPE& operator[](int index) { return m_items.at(static_cast<size_t>(index)); }
    const TYPE& operator[](int index) const { return m_items.at(static_cast<size_t>(index)); }
    TYPE* GetData() { return m_items.data(); }
    const TYPE* GetData() const { return m_items.data(); }

private:
    std::vector<TYPE> m_items;
};

struct MSG {
    HWND hwnd = nullptr;
    UINT message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
};

constexpr int SW_HIDE = 0;
constexpr int SW_SHOW = 5;
constexpr UINT BST_UNCHECKED = 0;
constexpr UINT BST_CHECKED = 1;

// A window: the Qt widget behind it, when there is one.
class CWnd {
public:
    CWnd() = default;
    explicit CWnd(QWidget* widget) : m_widget(widget) {}
    virtual ~CWnd() = default;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;

    QWidget* widget() const { return m_widget; }
    HWND GetSafeHwnd() const { return reinterpret_cast<HWND>(m_widget); }
    // The host's frame records what is posted to it; other windows ignore it.
    virtual BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    BOOL EnableWindow(BOOL enable = TRUE);
    BOOL IsWindowEnabled() const;
    BOOL ShowWindow(int command);
    BOOL IsWindowVisible() const;
    void SetWindowText(LPCWSTR text);
    int GetWindowText(CString& text) const;
    int GetDlgCtrlID() const;
    int MessageBox(LPCWSTR text, LPCWSTR caption = nullptr, UINT type = MB_OK);

protected:
    QWidget* m_widget = nullptr;
};

class CDialog;

// What DoDataExchange is asked to do: move values into the controls, or read them back.
class CDataExchange {
public:
    CDataExchange(CDialog* dialog, BOOL saveAndValidate) : m_bSaveAndValidate(saveAndValidate), m_pDlgWnd(dialog) {}
    BOOL m_bSaveAndValidate;
    CDialog* m_pDlgWnd;
};

// A modal dialog. The module builds its Qt form in the dialog widget (qtDialog()),
// gives controls their ids with SetControlId and wires buttons to its handlers;
// DoModal shows it and returns IDOK or IDCANCEL.
class CDialog : public CWnd {
public:
    explicit CDialog(UINT templateId, CWnd* parent = nullptr);
    ~CDialog() override;

    virtual INT_PTR DoModal();
    virtual BOOL OnInitDialog();
    virtual void OnOK();
    virtual void OnCancel();
    virtual void DoDataExchange(CDataExchange* exchange);
    virtual BOOL PreTranslateMessage(MSG* message);
    void EndDialog(int result);
    BOOL UpdateData(BOOL saveAndValidate = TRUE);

    UINT templateId() const { return m_templateId; }
    CWnd* GetParent() const { return m_parent; }
    // The dialog widget the form lives in, created on first use.
    QDialog* qtDialog();
    void SetControlId(QWidget* control, int id);
    CWnd* GetDlgItem(int id);
    void CheckRadioButton(int firstId, int lastId, int checkId);
    int GetCheckedRadioButton(int firstId, int lastId);
    void CheckDlgButton(int id, UINT check);
    UINT IsDlgButtonChecked(int id);
    void SetDlgItemText(int id, LPCWSTR text);
    int GetDlgItemText(int id, CString& text);
    void SetDlgItemInt(int id, UINT value, BOOL isSigned = TRUE);
    UINT GetDlgItemInt(int id, BOOL* translated = nullptr, BOOL isSigned = TRUE);

private:
    struct Controls;
    UINT m_templateId;
    CWnd* m_parent;
    std::unique_ptr<Controls> m_controls;
};

// Data exchange between members and controls (by control id).
void DDX_Check(CDataExchange* exchange, int id, int& value);
void DDX_Radio(CDataExchange* exchange, int firstId, int& index);
void DDX_Text(CDataExchange* exchange, int id, CString& value);
void DDX_Text(CDataExchange* exchange, int id, int& value);
void DDX_Text(CDataExchange* exchange, int id, double& value);
void DDX_CBIndex(CDataExchange* exchange, int id, int& index);

// The application object: profile integers and strings live in the registry store
// under the product root key, one key per section.
class CWinApp {
public:
    virtual ~CWinApp() = default;
    virtual UINT GetProfileInt(LPCWSTR section, LPCWSTR entry, int defaultValue);
    virtual BOOL WriteProfileInt(LPCWSTR section, LPCWSTR entry, int value);
    virtual CString GetProfileString(LPCWSTR section, LPCWSTR entry, LPCWSTR defaultValue = nullptr);
    virtual BOOL WriteProfileString(LPCWSTR section, LPCWSTR entry, LPCWSTR value);
};

// A text file, UTF-8 without a byte-order mark; no newline translation.
class CStdioFile {
public:
    enum OpenFlags : UINT {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        modeNoTruncate = 0x2000,
        modeCreate = 0x1000,
        typeText = 0x4000,
        typeBinary = 0x8000,
    };
    CStdioFile() = default;
    ~CStdioFile();
    CStdioFile(const CStdioFile&) = delete;
    CStdioFile& operator=(const CStdioFile&) = delete;

    BOOL Open(LPCWSTR path, UINT flags);
    void WriteString(LPCWSTR text);
    // Reads one line without its "\n"; FALSE at the end of the file.
    BOOL ReadString(CString& line);
    void Close();

private:
    void* m_file = nullptr;
};

int AfxMessageBox(LPCWSTR text, UINT type = MB_OK, UINT helpId = 0);
// The current resource handle: the top of the document manager's resource stack, or
// the host's own.
HINSTANCE AfxGetResourceHandle();
// The host's main frame (the parent of module dialogs) and its application object.
CWnd* kcedGetKcadFrame();
CWinApp* kcedGetKcadWinApp();
