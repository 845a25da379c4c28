// Control ids, texts and check states over the Qt widget classes a form uses.
#include "runtime/dialogs/ControlAccess.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTextEdit>
#include <QVariant>

namespace korva::runtime {

int controlIdOf(const QWidget* widget) {
    if (!widget) return 0;
    const QVariant id = widget->property(kControlIdProperty);
    return id.isValid() ? id.toInt() : 0;
}

void setControlIdOf(QWidget* widget, int id) {
    if (widget) widget->setProperty(kControlIdProperty, id);
}

QWidget* findControlById(QWidget* root, int id) {
    if (!root) return nullptr;
    if (controlIdOf(root) == id) return root;
    for (QWidget* child : root->findChildren<QWidget*>()) {
        if (controlIdOf(child) == id) return child;
    }
    return nullptr;
}

QString controlText(const QWidget* widget) {
    if (!widget) return {};
    if (widget->isWindow()) return widget->windowTitle();
    if (auto* button = qobject_cast<const QAbstractButton*>(widget)) return button->text();
    if (auto* label = qobject_cast<const QLabel*>(widget)) return label->text();
    if (auto* edit = qobject_cast<const QLineEdit*>(widget)) return edit->text();
    if (auto* combo = qobject_cast<const QComboBox*>(widget)) return combo->currentText();
    if (auto* spin = qobject_cast<const QSpinBox*>(widget)) return QString::number(spin->value());
    if (auto* spin = qobject_cast<const QDoubleSpinBox*>(widget)) return QString::number(spin->value(), 'f', spin->decimals());
    if (auto* spin = qobject_cast<const QAbstractSpinBox*>(widget)) return spin->text();
    if (auto* group = qobject_cast<const QGroupBox*>(widget)) return group->title();
    if (auto* text = qobject_cast<const QPlainTextEdit*>(widget)) return text->toPlainText();
    if (auto* text = qobject_cast<const QTextEdit*>(widget)) return text->toPlainText();
    return widget->windowTitle();
}

bool setControlText(QWidget* widget, const QString& text) {
    if (!widget) return false;
    if (widget->isWindow()) {
        widget->setWindowTitle(text);
    } else if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        button->setText(text);
    } else if (auto* label = qobject_cast<QLabel*>(widget)) {
        label->setText(text);
    } else if (auto* edit = qobject_cast<QLineEdit*>(widget)) {
        edit->setText(text);
    } else if (auto* combo = qobject_cast<QComboBox*>(widget)) {
        if (combo->isEditable()) {
            combo->setEditText(text);
        } else {
            const int index = combo->findText(text, Qt::MatchExactly);
            if (index < 0) return false;
            combo->setCurrentIndex(index);
        }
    } else if (auto* intSpin = qobject_cast<QSpinBox*>(widget)) {
        bool ok = false;
        const int value = QLocale::c().toInt(text.trimmed(), &ok);
        if (!ok) return false;
        intSpin->setValue(value);
    } else if (auto* realSpin = qobject_cast<QDoubleSpinBox*>(widget)) {
        bool ok = false;
        const double value = QLocale::c().toDouble(text.trimmed(), &ok);
        if (!ok) return false;
        realSpin->setValue(value);
    } else if (auto* group = qobject_cast<QGroupBox*>(widget)) {
        group->setTitle(text);
    } else if (auto* plain = qobject_cast<QPlainTextEdit*>(widget)) {
        plain->setPlainText(text);
    } else if (auto* rich = qobject_cast<QTextEdit*>(widget)) {
        rich->setPlainText(text);
    } else {
        widget->setWindowTitle(text);
    }
    return true;
}

void setButtonCheckState(QAbstractButton* button, Qt::CheckState state) {
    if (!button) return;
    if (auto* box = qobject_cast<QCheckBox*>(button)) {
        box->setCheckState(box->isTristate() ? state : (state == Qt::Unchecked ? Qt::Unchecked : Qt::Checked));
        return;
    }
    const bool checked = state != Qt::Unchecked;
    if (checked || !button->isChecked()) {
        button->setChecked(checked);
        return;
    }
    // Exclusive buttons refuse to uncheck the checked one; lift the rule for the moment.
    QButtonGroup* group = button->group();
    if (group && group->exclusive()) {
        group->setExclusive(false);
        button->setChecked(false);
        group->setExclusive(true);
    } else if (button->autoExclusive()) {
        button->setAutoExclusive(false);
        button->setChecked(false);
        button->setAutoExclusive(true);
    } else {
        button->setChecked(false);
    }
}

Qt::CheckState buttonCheckState(const QAbstractButton* button) {
    if (!button) return Qt::Unchecked;
    if (auto* box = qobject_cast<const QCheckBox*>(button)) return box->checkState();
    return button->isChecked() ? Qt::Checked : Qt::Unchecked;
}

QString withoutMnemonic(const QString& text) {
    QString out;
    out.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        if (text[i] == QLatin1Char('&')) {
            if (i + 1 < text.size() && text[i + 1] == QLatin1Char('&')) {
                out += QLatin1Char('&');
                ++i;
            }
            continue;
        }
        out += text[i];
    }
    return out.trimmed();
}

}  // namespace korva::runtime
