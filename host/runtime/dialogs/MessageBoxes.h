// Message boxes (AfxMessageBox, MessageBoxW, CWnd::MessageBox): shown to a person
// at a display; otherwise printed as "** text" ("** caption: text") and
// answered as a person would most often answer: OK, or Yes for a question.
#pragma once

#include <string_view>

#include "kcwindows.h"

class QWidget;

namespace korva::runtime {

// The answer: IDOK, IDCANCEL, IDYES or IDNO. An empty caption is none.
int showMessageBox(QWidget* parent, std::wstring_view text, std::wstring_view caption, UINT type);

}  // namespace korva::runtime
