// kcedSetColorDialog and kcedGetRGB. Without a person at a display the dialog is
// answered by the next input line (a number, a colour name, BYLAYER or BYBLOCK):
// the answer is clicked on the dialog's own swatch or button and OK is pressed,
// so that the dialog's code decides as it would for a person.
#include <QAbstractButton>
#include <QCoreApplication>

#include "db/IndexColors.h"
#include "kced.h"
#include "runtime/dialogs/ControlFinder.h"
#include "runtime/dialogs/DialogEnvironment.h"
#include "runtime/dialogs/HostFrame.h"
#include "runtime/dialogs/IndexColorDialog.h"

namespace korva::runtime {

namespace {

std::optional<int> answerFromInput(IndexColorDialog& dialog) {
    const std::wstring prompt = dialogName(dialog) + (dialog.allowsByLayerByBlock() ? L" (1-255, BYLAYER or BYBLOCK): "
                                                                                    : L" (1-255): ");
    std::wstring answer;
    if (!readDialogAnswer(prompt, answer) || trimmed(answer).empty()) return std::nullopt;
    const std::wstring refusal = IndexColorDialog::refusalOf(answer, dialog.allowsByLayerByBlock());
    if (!refusal.empty()) {
        printDialogMessage(refusal);
        return std::nullopt;
    }
    QAbstractButton* choice = dialog.buttonFor(*db::parseIndexColor(answer));
    auto* ok = dialog.findChild<QAbstractButton*>(QStringLiteral("okButton"));
    if (!choice || !ok) return std::nullopt;
    QuietOffscreenWarnings quiet;
    dialog.setAttribute(Qt::WA_DontShowOnScreen, true);
    dialog.show();
    choice->click();
    ok->click();
    QCoreApplication::processEvents();
    dialog.hide();
    if (dialog.result() != QDialog::Accepted) return std::nullopt;
    return dialog.chosenIndex();
}

}  // namespace

}  // namespace korva::runtime

bool kcedSetColorDialog(int& colorIndex, bool allowByLayerByBlock, int currentLayerColor) {
    using namespace korva::runtime;
    if (!canUseWidgets()) {
        printDialogMessage(L"** The color dialog cannot be shown from this thread; it is cancelled.");
        return false;
    }
    IndexColorDialog dialog(colorIndex, allowByLayerByBlock, currentLayerColor, frameWidget());
    std::optional<int> chosen;
    if (personAtDisplay()) {
        if (dialog.exec() == QDialog::Accepted) chosen = dialog.chosenIndex();
    } else {
        chosen = answerFromInput(dialog);
    }
    if (!chosen) return false;
    colorIndex = *chosen;
    return true;
}

unsigned long kcedGetRGB(int colorIndex) { return korva::db::packedRgbOfIndexColor(colorIndex); }
