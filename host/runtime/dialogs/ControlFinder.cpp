// The three steps of label matching, over the widgets of one dialog window.
#include "runtime/dialogs/ControlFinder.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTabBar>
#include <QTextEdit>

#include <algorithm>
#include <vector>

#include "runtime/dialogs/ControlAccess.h"
#include "runtime/dialogs/DialogEnvironment.h"

namespace korva::runtime {

namespace {

// Parts of compound widgets (the edit of a spin box, the arrows of a tab bar)
// are reached through the compound widget.
bool isPartOfCompound(const QWidget* widget) {
    for (const QWidget* parent = widget->parentWidget(); parent; parent = parent->parentWidget()) {
        if (qobject_cast<const QComboBox*>(parent) || qobject_cast<const QAbstractSpinBox*>(parent) ||
            qobject_cast<const QTabBar*>(parent)) {
            return true;
        }
    }
    return false;
}

bool isActionable(const QWidget* widget) {
    if (isPartOfCompound(widget)) return false;
    if (auto* group = qobject_cast<const QGroupBox*>(widget)) return group->isCheckable();
    return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const QAbstractSpinBox*>(widget) || qobject_cast<const QLineEdit*>(widget) ||
           qobject_cast<const QAbstractItemView*>(widget) || qobject_cast<const QPlainTextEdit*>(widget) ||
           qobject_cast<const QTextEdit*>(widget);
}

bool isShownIn(const QWidget* widget, const QDialog& dialog) {
    return widget->window() == &dialog && widget->isVisibleTo(&dialog);
}

bool sameLabel(const QString& text, const QString& label) {
    return text.compare(label, Qt::CaseInsensitive) == 0;
}

// The visible text of a button or a checkable group box.
QString buttonText(const QWidget* widget) {
    if (auto* button = qobject_cast<const QAbstractButton*>(widget)) return withoutMnemonic(button->text());
    if (auto* group = qobject_cast<const QGroupBox*>(widget)) return withoutMnemonic(group->title());
    return {};
}

QString usableObjectName(const QWidget* widget) {
    const QString name = widget->objectName();
    return name.startsWith(QLatin1String("qt_")) ? QString() : name;
}

struct DialogControls {
    std::vector<QWidget*> controls;                    // actionable and visible, in the form's order
    std::vector<std::pair<QString, QWidget*>> labels;  // visible label text -> its buddy
};

DialogControls collect(QDialog& dialog) {
    DialogControls found;
    for (QWidget* widget : dialog.findChildren<QWidget*>()) {
        if (!isShownIn(widget, dialog)) continue;
        if (isActionable(widget)) found.controls.push_back(widget);
        auto* label = qobject_cast<QLabel*>(widget);
        if (label && label->buddy() && isShownIn(label->buddy(), dialog)) {
            found.labels.emplace_back(withoutMnemonic(label->text()), label->buddy());
        }
    }
    return found;
}

void addOnce(std::vector<QWidget*>& list, QWidget* widget) {
    if (std::find(list.begin(), list.end(), widget) == list.end()) list.push_back(widget);
}

std::wstring quoted(const QString& text) { return L"\"" + wideText(text) + L"\""; }

}  // namespace

std::wstring dialogName(const QDialog& dialog) {
    if (!dialog.windowTitle().isEmpty()) return wideText(dialog.windowTitle());
    if (!dialog.objectName().isEmpty()) return wideText(dialog.objectName());
    return L"Dialog";
}

std::wstring describeControl(const QWidget* control) {
    if (!control) return L"nothing";
    std::wstring kind = L"control";
    if (qobject_cast<const QCheckBox*>(control)) kind = L"check box";
    else if (qobject_cast<const QRadioButton*>(control)) kind = L"radio button";
    else if (qobject_cast<const QAbstractButton*>(control)) kind = L"button";
    else if (qobject_cast<const QComboBox*>(control)) kind = L"combo box";
    else if (qobject_cast<const QAbstractSpinBox*>(control)) kind = L"spin box";
    else if (qobject_cast<const QLineEdit*>(control)) kind = L"line edit";
    else if (qobject_cast<const QAbstractItemView*>(control)) kind = L"list";
    else if (qobject_cast<const QPlainTextEdit*>(control) || qobject_cast<const QTextEdit*>(control)) kind = L"text box";
    else if (qobject_cast<const QGroupBox*>(control)) kind = L"group box";
    std::wstring text = kind;
    const QString shown = buttonText(control);
    if (!shown.isEmpty()) text += L" " + quoted(shown);
    const QString name = usableObjectName(control);
    if (!name.isEmpty()) text += L" (" + wideText(name) + L")";
    return text;
}

std::wstring candidateLabels(QDialog& dialog) {
    const DialogControls found = collect(dialog);
    std::wstring list;
    for (QWidget* control : found.controls) {
        if (!control->isEnabled()) continue;
        std::vector<QString> texts;
        if (const QString shown = buttonText(control); !shown.isEmpty()) texts.push_back(shown);
        for (const auto& [text, buddy] : found.labels) {
            if (buddy == control && !text.isEmpty()) texts.push_back(text);
        }
        std::wstring entry = wideText(usableObjectName(control));
        std::wstring alternatives;
        for (const QString& text : texts) alternatives += (alternatives.empty() ? L"" : L", ") + quoted(text);
        if (entry.empty()) entry = alternatives;
        else if (!alternatives.empty()) entry += L" (" + alternatives + L")";
        if (entry.empty()) continue;
        list += (list.empty() ? L"" : L"; ") + entry;
    }
    return list.empty() ? L"none" : list;
}

ControlLookup findControlByLabel(QDialog& dialog, std::wstring_view label) {
    const QString wanted = withoutMnemonic(qtText(label));
    const DialogControls found = collect(dialog);

    std::vector<std::vector<QWidget*>> steps(3);
    for (QWidget* control : found.controls) {
        const QString name = usableObjectName(control);
        if (!name.isEmpty() && sameLabel(name, wanted)) addOnce(steps[0], control);
        const QString shown = buttonText(control);
        if (!shown.isEmpty() && sameLabel(shown, wanted)) addOnce(steps[1], control);
    }
    for (const auto& [text, buddy] : found.labels) {
        QString withoutColon = text;
        if (withoutColon.endsWith(QLatin1Char(':'))) withoutColon = withoutColon.chopped(1).trimmed();
        if (sameLabel(text, wanted) || sameLabel(withoutColon, wanted)) addOnce(steps[2], buddy);
    }

    const std::wstring where = L" of the dialog \"" + dialogName(dialog) + L"\"";
    for (const std::vector<QWidget*>& matches : steps) {
        if (matches.empty()) continue;
        std::vector<QWidget*> enabled;
        for (QWidget* control : matches) {
            if (control->isEnabled()) enabled.push_back(control);
        }
        if (enabled.size() == 1) return {enabled.front(), {}};
        if (enabled.empty()) {
            return {nullptr, L"The control \"" + std::wstring(label) + L"\"" + where + L" is disabled: " +
                                 describeControl(matches.front()) + L"."};
        }
        std::wstring named;
        for (QWidget* control : enabled) named += (named.empty() ? L"" : L", ") + describeControl(control);
        return {nullptr, L"The label \"" + std::wstring(label) + L"\" is ambiguous in the dialog \"" + dialogName(dialog) +
                             L"\": it names " + named + L". Labels: " + candidateLabels(dialog)};
    }
    return {nullptr, L"There is no control \"" + std::wstring(label) + L"\"" + where + L". Labels: " + candidateLabels(dialog)};
}

}  // namespace korva::runtime
