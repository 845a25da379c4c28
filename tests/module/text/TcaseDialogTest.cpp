// The TCASE dialog itself, offscreen: a watcher in the test process looks at
// the real dialog when it is shown (after its start-up) and records its name,
// title, controls with their ids, labels and object names, and which mode
// button is checked; plus the way scripts name its controls.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QRadioButton>

#include <string>
#include <vector>

#include "TcaseTestSupport.h"
#include "runtime/dialogs/ControlAccess.h"

namespace korva {
namespace {

using test::ScriptRun;
using test::tcase::storeMode;
using test::tcase::tcaseScript;
using test::tcase::textEntity;
using test::tcase::textOf;

struct ShownButton {
    int id = 0;
    std::string text;
    std::string objectName;
    bool radio = false;
    bool checked = false;
};

struct ShownDialog {
    int shows = 0;
    std::string objectName;
    std::string title;
    std::vector<ShownButton> buttons;  // in the order of the form

    int checkedRadioId() const {
        int id = 0;
        int checked = 0;
        for (const ShownButton& button : buttons) {
            if (button.radio && button.checked) {
                id = button.id;
                ++checked;
            }
        }
        return checked == 1 ? id : -checked;  // -n: n buttons checked
    }
};

// Records the TCASE dialog each time it is shown.
class DialogWatcher : public QObject {
public:
    DialogWatcher() { QApplication::instance()->installEventFilter(this); }
    ~DialogWatcher() override { QApplication::instance()->removeEventFilter(this); }
    DialogWatcher(const DialogWatcher&) = delete;
    DialogWatcher& operator=(const DialogWatcher&) = delete;

    const ShownDialog& shown() const { return shown_; }

    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* dialog = qobject_cast<QDialog*>(watched);
        if (event->type() != QEvent::Show || !dialog || dialog->windowTitle() != QString(test::tcase::kDialogTitle)) {
            return false;
        }
        ++shown_.shows;
        shown_.objectName = dialog->objectName().toStdString();
        shown_.title = dialog->windowTitle().toStdString();
        shown_.buttons.clear();
        for (QAbstractButton* button : dialog->findChildren<QAbstractButton*>()) {
            ShownButton seen;
            seen.id = runtime::controlIdOf(button);
            seen.text = button->text().toStdString();
            seen.objectName = button->objectName().toStdString();
            seen.radio = qobject_cast<QRadioButton*>(button) != nullptr;
            seen.checked = button->isChecked();
            shown_.buttons.push_back(seen);
        }
        return false;
    }

private:
    ShownDialog shown_;
};

ScriptRun oneTextRun() { return test::tcase::sceneRun({textEntity("TEXT", "100", "Some Text"), {}, {}, {}}); }

// The form has the five mode buttons with their control ids and labels, then OK and Cancel.
TEST(TcaseDialog, ShowsTheFiveModesAndOkAndCancelWithTheirIds) {
    storeMode('S');
    DialogWatcher watcher;
    ScriptRun run = oneTextRun();
    run.run(tcaseScript({"100"}, "@press Cancel\n"));
    const ShownDialog& shown = watcher.shown();
    ASSERT_EQ(shown.shows, 1);
    EXPECT_EQ(shown.objectName, "TCaseDialog");
    EXPECT_EQ(shown.title, "TCASE-change text case");
    const struct {
        int id;
        const char* text;
        bool radio;
    } expected[] = {
        {2005, "&Sentence case", true}, {2006, "&lowercase", true}, {2021, "&UPPERCASE", true},
        {2022, "&Title", true},         {2023, "tO&GGLE cASE", true}, {IDOK, "&OK", false},
        {IDCANCEL, "&Cancel", false},
    };
    ASSERT_EQ(shown.buttons.size(), std::size(expected));
    for (size_t i = 0; i < shown.buttons.size(); ++i) {
        SCOPED_TRACE(expected[i].text);
        EXPECT_EQ(shown.buttons[i].id, expected[i].id);
        EXPECT_EQ(shown.buttons[i].text, expected[i].text);
        EXPECT_EQ(shown.buttons[i].radio, expected[i].radio);
        EXPECT_FALSE(shown.buttons[i].objectName.empty()) << "scripts can name every control";
    }
}

// The stored mode checks its button; any other value checks Sentence case, and exactly one button is checked.
TEST(TcaseDialog, TheStoredModeChecksItsButton) {
    const struct {
        int stored;
        int checkedId;
    } cases[] = {
        {'S', 2005}, {'L', 2006}, {'U', 2021}, {'T', 2022}, {'G', 2023}, {0, 2005}, {'s', 2005}, {1000, 2005}, {-1, 2005},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.stored);
        if (c.stored == -1) test::tcase::forgetMode();
        else storeMode(c.stored);
        DialogWatcher watcher;
        ScriptRun run = oneTextRun();
        run.run(tcaseScript({"100"}, "@press Cancel\n"));
        ASSERT_EQ(watcher.shown().shows, 1);
        EXPECT_EQ(watcher.shown().checkedRadioId(), c.checkedId);
    }
}

// Scripts reach the controls by object name as well as by label, and every action is echoed after the title.
TEST(TcaseDialog, ScriptsNameControlsByObjectNameOrLabel) {
    storeMode('S');
    DialogWatcher probe;
    {
        ScriptRun run = oneTextRun();
        run.run(tcaseScript({"100"}, "@press Cancel\n"));
    }
    std::string upperName, okName;
    for (const ShownButton& button : probe.shown().buttons) {
        if (button.id == 2021) upperName = button.objectName;
        if (button.id == IDOK) okName = button.objectName;
    }
    ASSERT_FALSE(upperName.empty());
    ScriptRun run = oneTextRun();
    ASSERT_TRUE(run.run(tcaseScript({"100"}, "@check " + upperName + "\n@press " + okName + "\n"))) << run.outputUtf8();
    EXPECT_EQ(textOf(run, "100"), L"SOME TEXT");
    EXPECT_TRUE(run.outputContains(db::utf8ToWide("TCASE-change text case: @check " + upperName))) << run.outputUtf8();
}

// An unknown label stops the script, lists the dialog's controls and cancels: nothing changes.
TEST(TcaseDialog, AnUnknownLabelCancelsAndListsTheControls) {
    storeMode('L');
    ScriptRun run = oneTextRun();
    EXPECT_FALSE(run.run(tcaseScript({"100"}, "@check Shout\n@press OK\n")));
    for (const wchar_t* label : {L"Sentence case", L"lowercase", L"UPPERCASE", L"Title", L"tOGGLE cASE", L"OK", L"Cancel"}) {
        EXPECT_TRUE(run.outputContains(std::wstring(L"\"") + label + L"\"")) << label;
    }
    EXPECT_EQ(textOf(run, "100"), L"Some Text");
    EXPECT_EQ(test::tcase::storedMode(), 'L');
}

}  // namespace
}  // namespace korva
