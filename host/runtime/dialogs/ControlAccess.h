// Reading and writing controls the way the window functions of the SDK see them:
// a control's id (a dynamic property on its widget), the text it shows, and the
// check state of buttons, set without clicking them.
#pragma once

#include <Qt>
#include <QString>

class QAbstractButton;
class QWidget;

namespace korva::runtime {

// The name of the dynamic property that holds a widget's control id.
inline constexpr const char* kControlIdProperty = "korvaControlId";

int controlIdOf(const QWidget* widget);  // 0 when it has none
void setControlIdOf(QWidget* widget, int id);
// The first widget under `root` (itself included) with the control id, or null.
QWidget* findControlById(QWidget* root, int id);

// The text a control shows: a window's title, a button's or label's text, an
// edit's contents, a combo box's current text, a spin box's value.
QString controlText(const QWidget* widget);
// Sets it; false when the control cannot show that text (a combo box without
// such an item, a spin box given something that is not a number).
bool setControlText(QWidget* widget, const QString& text);

// Checks or unchecks a button without clicking it; the checked radio button of an
// exclusive group can be unchecked too, which leaves the group with none.
void setButtonCheckState(QAbstractButton* button, Qt::CheckState state);
Qt::CheckState buttonCheckState(const QAbstractButton* button);

// A label as it reads: "&" marks removed ("&&" is a literal "&"), blanks trimmed.
QString withoutMnemonic(const QString& text);

}  // namespace korva::runtime
