// The Qt dialog behind a CDialog. Whatever ends the dialog goes through the
// CDialog's virtual handlers, as in its model: Escape and the window's close
// button call OnCancel, accept() (a button box's OK) calls OnOK, and done()
// becomes EndDialog. EndDialog then closes the window with finish().
#pragma once

#include <QDialog>

class CDialog;

namespace korva::runtime {

class HostedDialog : public QDialog {
public:
    HostedDialog(CDialog& owner, QWidget* parent);

    void accept() override;
    void reject() override;
    void done(int result) override;

    // Closes the window with the result (what EndDialog asks for).
    void finish(int result);
    // The CDialog is going away: the window no longer calls it.
    void detach() { owner_ = nullptr; }

private:
    CDialog* owner_;
};

}  // namespace korva::runtime
