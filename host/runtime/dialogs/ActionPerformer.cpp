// One function per action kind; each refuses controls it does not fit with a
// message that says what the control is and what the action needs.
#include "runtime/dialogs/ActionPerformer.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QItemSelection>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QListView>
#include <QLocale>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QSpinBox>
#include <QTextEdit>

#include <algorithm>
#include <vector>

#include "runtime/dialogs/ControlAccess.h"
#include "runtime/dialogs/ControlFinder.h"
#include "runtime/dialogs/DialogEnvironment.h"

namespace korva::runtime {

namespace {

std::wstring refusal(const DialogAction& action, const QWidget* control, const std::wstring& needs) {
    return L"@" + std::wstring(actionWord(action.kind)) + L" cannot act on the " + describeControl(control) + L": " +
           needs;
}

// A check box clicked until it shows the state (a tri-state one may need two clicks).
void clickCheckBoxTo(QCheckBox* box, Qt::CheckState wanted) {
    for (int clicks = 0; clicks < 3 && box->checkState() != wanted; ++clicks) box->click();
}

std::wstring check(const DialogAction& action, QWidget* control) {
    const bool checking = action.kind == ActionKind::Check;
    if (auto* box = qobject_cast<QCheckBox*>(control)) {
        clickCheckBoxTo(box, checking ? Qt::Checked : Qt::Unchecked);
        return {};
    }
    if (auto* radio = qobject_cast<QRadioButton*>(control)) {
        if (!checking) return refusal(action, control, L"a radio button is unchecked by checking another one.");
        radio->click();  // clicked again when already checked, as a person may
        return {};
    }
    if (auto* button = qobject_cast<QAbstractButton*>(control); button && button->isCheckable()) {
        if (button->isChecked() != checking) button->click();
        return {};
    }
    if (auto* group = qobject_cast<QGroupBox*>(control); group && group->isCheckable()) {
        if (group->isChecked() != checking) {
            group->setChecked(checking);
            emit group->clicked(checking);
        }
        return {};
    }
    return refusal(action, control, L"it works on check boxes and radio buttons.");
}

std::wstring press(const DialogAction& action, QWidget* control) {
    if (qobject_cast<QCheckBox*>(control) || qobject_cast<QRadioButton*>(control)) {
        return refusal(action, control, L"use @check or @uncheck.");
    }
    auto* button = qobject_cast<QAbstractButton*>(control);
    if (!button) return refusal(action, control, L"it works on buttons.");
    button->click();
    return {};
}

// Text typed into an edit: the edit's signals of typing, then of leaving it.
std::wstring type(const DialogAction& action, QLineEdit* edit, const QString& text) {
    if (edit->isReadOnly()) return refusal(action, edit, L"the edit is read-only.");
    edit->setText(text);
    if (!edit->hasAcceptableInput()) return refusal(action, edit, L"it does not accept \"" + action.value + L"\".");
    emit edit->textEdited(text);
    emit edit->editingFinished();
    return {};
}

int findItem(const QComboBox* combo, const QString& text) {
    const int exact = combo->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
    return exact >= 0 ? exact : combo->findText(text, Qt::MatchFixedString);
}

std::wstring itemList(const QComboBox* combo) {
    std::wstring list;
    for (int i = 0; i < combo->count(); ++i) list += (i ? L", " : L"") + (L"\"" + wideText(combo->itemText(i)) + L"\"");
    return list.empty() ? L"none" : list;
}

std::wstring choose(const DialogAction& action, QComboBox* combo, const QString& text) {
    const int index = findItem(combo, text);
    if (index < 0) {
        if (combo->isEditable() && combo->lineEdit()) return type(action, combo->lineEdit(), text);
        return refusal(action, combo, L"it has no item \"" + action.value + L"\"; its items are " + itemList(combo) + L".");
    }
    combo->setCurrentIndex(index);
    emit combo->activated(index);
    emit combo->textActivated(combo->itemText(index));
    return {};
}

template <class Spin, class Value>
std::wstring setSpinValue(const DialogAction& action, Spin* spin, Value value) {
    if (value < spin->minimum() || value > spin->maximum()) {
        return refusal(action, spin, action.value + L" lies outside " + wideText(QString::number(spin->minimum())) +
                                         L" to " + wideText(QString::number(spin->maximum())) + L".");
    }
    spin->setValue(value);
    emit spin->editingFinished();
    return {};
}

std::wstring set(const DialogAction& action, QWidget* control) {
    const QString text = qtText(action.value);
    if (auto* edit = qobject_cast<QLineEdit*>(control)) return type(action, edit, text);
    if (auto* combo = qobject_cast<QComboBox*>(control)) return choose(action, combo, text);
    bool number = false;
    if (auto* spin = qobject_cast<QSpinBox*>(control)) {
        const int value = QLocale::c().toInt(text, &number);
        if (!number) return refusal(action, control, L"\"" + action.value + L"\" is not a whole number.");
        return setSpinValue(action, spin, value);
    }
    if (auto* spin = qobject_cast<QDoubleSpinBox*>(control)) {
        const double value = QLocale::c().toDouble(text, &number);
        if (!number) return refusal(action, control, L"\"" + action.value + L"\" is not a number.");
        return setSpinValue(action, spin, value);
    }
    if (auto* plain = qobject_cast<QPlainTextEdit*>(control); plain && !plain->isReadOnly()) {
        plain->setPlainText(text);
        return {};
    }
    if (auto* rich = qobject_cast<QTextEdit*>(control); rich && !rich->isReadOnly()) {
        rich->setPlainText(text);
        return {};
    }
    return refusal(action, control, L"it works on line edits, combo boxes and spin boxes.");
}

// The rows of a list, a tree (all levels) or a table, by the text of the shown column.
void collectRows(const QAbstractItemModel& model, const QModelIndex& parent, int column, std::vector<QModelIndex>& rows) {
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, column, parent);
        rows.push_back(index);
        const QModelIndex first = model.index(row, 0, parent);
        if (model.hasChildren(first)) collectRows(model, first, column, rows);
    }
}

int shownColumn(const QAbstractItemView* view) {
    if (auto* list = qobject_cast<const QListView*>(view)) return list->modelColumn();
    return 0;
}

std::wstring pick(const DialogAction& action, QWidget* control) {
    auto* view = qobject_cast<QAbstractItemView*>(control);
    if (!view || !view->model() || !view->selectionModel()) return refusal(action, control, L"it works on lists.");
    if (view->selectionMode() == QAbstractItemView::NoSelection) return refusal(action, control, L"nothing can be selected in it.");
    const bool single = view->selectionMode() == QAbstractItemView::SingleSelection;
    if (single && action.items.size() > 1) return refusal(action, control, L"it takes one item.");

    std::vector<QModelIndex> rows;
    collectRows(*view->model(), view->rootIndex(), shownColumn(view), rows);
    std::vector<QModelIndex> chosen;
    for (const std::wstring& item : action.items) {
        const QString wanted = qtText(item);
        QModelIndex found;
        for (Qt::CaseSensitivity sensitivity : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
            for (const QModelIndex& row : rows) {
                const bool taken = std::find(chosen.begin(), chosen.end(), row) != chosen.end();
                if (!taken && row.data(Qt::DisplayRole).toString().compare(wanted, sensitivity) == 0) {
                    found = row;
                    break;
                }
            }
            if (found.isValid()) break;
        }
        if (!found.isValid()) {
            std::wstring list;
            for (size_t i = 0; i < rows.size() && i < 20; ++i) {
                list += (i ? L", " : L"") + (L"\"" + wideText(rows[i].data(Qt::DisplayRole).toString()) + L"\"");
            }
            if (rows.size() > 20) list += L", ...";
            return refusal(action, control, L"it has no item \"" + item + L"\"; its items are " + (list.empty() ? L"none" : list) + L".");
        }
        chosen.push_back(found);
    }

    QItemSelectionModel* selection = view->selectionModel();
    if (chosen.empty()) {
        selection->clearSelection();
        return {};
    }
    QItemSelection items;
    for (const QModelIndex& index : chosen) items.select(index, index);
    selection->setCurrentIndex(chosen.front(), QItemSelectionModel::NoUpdate);
    selection->select(items, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    return {};
}

}  // namespace

std::wstring performAction(const DialogAction& action, QWidget* control) {
    switch (action.kind) {
        case ActionKind::Check:
        case ActionKind::Uncheck: return check(action, control);
        case ActionKind::Press: return press(action, control);
        case ActionKind::Set: return set(action, control);
        case ActionKind::Pick: return pick(action, control);
    }
    return {};
}

}  // namespace korva::runtime
