// Routing of the Qt dialog's endings to the CDialog.
#include "runtime/dialogs/HostedDialog.h"

#include "kcmfc.h"

namespace korva::runtime {

HostedDialog::HostedDialog(CDialog& owner, QWidget* parent) : QDialog(parent), owner_(&owner) {}

void HostedDialog::accept() {
    if (owner_) owner_->OnOK();
    else QDialog::accept();
}

void HostedDialog::reject() {
    if (owner_) owner_->OnCancel();
    else QDialog::reject();
}

void HostedDialog::done(int result) {
    // QDialog's "rejected" is 0, which is no dialog result of the SDK.
    if (owner_) owner_->EndDialog(result == QDialog::Rejected ? IDCANCEL : result);
    else QDialog::done(result);
}

void HostedDialog::finish(int result) { QDialog::done(result); }

}  // namespace korva::runtime
