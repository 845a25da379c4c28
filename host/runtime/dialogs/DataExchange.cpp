// Data exchange between a dialog's members and its controls. A value that does
// not read (a bad number) shows a message, as its model does, and fails the
// exchange: the remaining DDX calls of that exchange do nothing and UpdateData
// answers FALSE. The failure is kept per thread for the exchange running there.
#include <QAbstractButton>
#include <QButtonGroup>
#include <QComboBox>
#include <QLocale>
#include <QWidget>

#include <cmath>
#include <vector>

#include "kcmfc.h"
#include "runtime/dialogs/ControlAccess.h"
#include "runtime/dialogs/DialogEnvironment.h"

namespace {

thread_local const CDataExchange* t_failedExchange = nullptr;

bool failed(const CDataExchange* exchange) { return exchange == nullptr || exchange == t_failedExchange; }

void fail(CDataExchange* exchange, QWidget* control, const wchar_t* message) {
    AfxMessageBox(message, MB_ICONWARNING);
    if (control) control->setFocus();
    t_failedExchange = exchange;
}

QWidget* controlOf(CDataExchange* exchange, int id) {
    CWnd* window = exchange->m_pDlgWnd ? exchange->m_pDlgWnd->GetDlgItem(id) : nullptr;
    return window ? window->widget() : nullptr;
}

// The radio buttons of the group that starts with `first`: those of its button
// group, or the auto-exclusive buttons beside it, in the form's order from it on.
std::vector<QAbstractButton*> radioGroupFrom(QAbstractButton* first) {
    std::vector<QAbstractButton*> members;
    if (QButtonGroup* group = first->group()) {
        for (QAbstractButton* button : group->buttons()) members.push_back(button);
    } else if (QWidget* parent = first->parentWidget()) {
        for (QObject* child : parent->children()) {
            auto* button = qobject_cast<QAbstractButton*>(child);
            if (button && button->isCheckable() && button->autoExclusive() && !button->group()) members.push_back(button);
        }
    }
    for (size_t i = 0; i < members.size(); ++i) {
        if (members[i] == first) return {members.begin() + static_cast<std::ptrdiff_t>(i), members.end()};
    }
    return {first};
}

// Numbers are read in the C locale whatever the user's locale is (scripts stay portable).
QString controlString(QWidget* control) { return korva::runtime::controlText(control).trimmed(); }

}  // namespace

BOOL CDialog::UpdateData(BOOL saveAndValidate) {
    if (!qtDialog()) return FALSE;
    CDataExchange exchange(this, saveAndValidate);
    const CDataExchange* outer = t_failedExchange;
    t_failedExchange = nullptr;
    DoDataExchange(&exchange);
    const bool ok = t_failedExchange != &exchange;
    t_failedExchange = outer;
    return ok ? TRUE : FALSE;
}

void DDX_Check(CDataExchange* exchange, int id, int& value) {
    if (failed(exchange)) return;
    auto* button = qobject_cast<QAbstractButton*>(controlOf(exchange, id));
    if (!button) return;
    if (exchange->m_bSaveAndValidate) {
        const Qt::CheckState state = korva::runtime::buttonCheckState(button);
        value = state == Qt::Checked ? 1 : state == Qt::PartiallyChecked ? 2 : 0;
    } else {
        korva::runtime::setButtonCheckState(button, value == 0 ? Qt::Unchecked : value == 1 ? Qt::Checked : Qt::PartiallyChecked);
    }
}

void DDX_Radio(CDataExchange* exchange, int firstId, int& index) {
    if (failed(exchange)) return;
    auto* first = qobject_cast<QAbstractButton*>(controlOf(exchange, firstId));
    if (!first) return;
    const std::vector<QAbstractButton*> group = radioGroupFrom(first);
    if (exchange->m_bSaveAndValidate) {
        index = -1;
        for (size_t i = 0; i < group.size(); ++i) {
            if (group[i]->isChecked()) {
                index = static_cast<int>(i);
                break;
            }
        }
        return;
    }
    if (index >= 0 && static_cast<size_t>(index) < group.size()) {
        korva::runtime::setButtonCheckState(group[static_cast<size_t>(index)], Qt::Checked);
    } else {
        for (QAbstractButton* button : group) korva::runtime::setButtonCheckState(button, Qt::Unchecked);
    }
}

void DDX_Text(CDataExchange* exchange, int id, CString& value) {
    if (failed(exchange)) return;
    QWidget* control = controlOf(exchange, id);
    if (!control) return;
    if (exchange->m_bSaveAndValidate) value = korva::runtime::wideText(korva::runtime::controlText(control));
    else korva::runtime::setControlText(control, korva::runtime::qtText(value.str()));
}

void DDX_Text(CDataExchange* exchange, int id, int& value) {
    if (failed(exchange)) return;
    QWidget* control = controlOf(exchange, id);
    if (!control) return;
    if (!exchange->m_bSaveAndValidate) {
        korva::runtime::setControlText(control, QString::number(value));
        return;
    }
    bool ok = false;
    const int number = QLocale::c().toInt(controlString(control), &ok);
    if (!ok) return fail(exchange, control, L"Please enter an integer.");
    value = static_cast<int>(number);
}

void DDX_Text(CDataExchange* exchange, int id, double& value) {
    if (failed(exchange)) return;
    QWidget* control = controlOf(exchange, id);
    if (!control) return;
    if (!exchange->m_bSaveAndValidate) {
        korva::runtime::setControlText(control, QString::number(value, 'g', 15));  // the precision of its model
        return;
    }
    bool ok = false;
    const double number = QLocale::c().toDouble(controlString(control), &ok);
    if (!ok || !std::isfinite(number)) return fail(exchange, control, L"Please enter a number.");
    value = number;
}

void DDX_CBIndex(CDataExchange* exchange, int id, int& index) {
    if (failed(exchange)) return;
    auto* combo = qobject_cast<QComboBox*>(controlOf(exchange, id));
    if (!combo) return;
    if (exchange->m_bSaveAndValidate) index = combo->currentIndex();
    else combo->setCurrentIndex(index);
}
