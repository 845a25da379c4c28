// The TCASE dialog (dialog resource 2366): a modal host dialog around the Qt
// form KVUI::TcaseDlg. It starts on the mode remembered in the profile
// ("TcaseDialog"/"LastChoiced"), converts every text of the selection it was
// given when OK is pressed, and stores the mode; Cancel changes nothing.
#pragma once

#include <memory>

#include "kcadstd.h"
#include "kcdb.h"
#include "kcmfc.h"

namespace KVUI {
class TcaseDlg;
}

class TcaseDlg : public CDialog {
public:
    static constexpr UINT IDD = 2366;

    // Control ids of the five mode buttons.
    static constexpr int IDC_RADIO_SENTENCE = 2005;
    static constexpr int IDC_RADIO_LOWER = 2006;
    static constexpr int IDC_RADIO_UPPER = 2021;
    static constexpr int IDC_RADIO_TITLE = 2022;
    static constexpr int IDC_RADIO_TOGGLE = 2023;

    // The selection stays the caller's: the dialog keeps a copy of its name.
    TcaseDlg(CWnd* parent, const kcad_name selectionSet);
    ~TcaseDlg() override;
    TcaseDlg(const TcaseDlg&) = delete;
    TcaseDlg& operator=(const TcaseDlg&) = delete;

    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;

    // The radio handlers: Sentence case, lowercase, UPPERCASE, Title, tOGGLE cASE.
    void OnRadio1();
    void OnRadio2();
    void OnRadio3();
    void OnRadio4();
    void OnRadio5();

    // True when the text holds one of the special symbols the dialog knows; no mode consults it.
    bool includeSymbol(const wchar_t* text) const;

private:
    // Converts the text of one selected entity in the current mode and writes it back;
    // an entity that cannot be opened for write, or holds fields, stays as it is.
    Kcad::ErrorStatus convertEntity(const kcad_name entity) const;

    kcad_name m_selectionSet = {0, 0};
    int m_mode;
    CWnd* m_checkedRadio = nullptr;  // the button checked at start
    std::unique_ptr<KVUI::TcaseDlg> m_form;
};
