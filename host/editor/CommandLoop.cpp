#include "editor/CommandLoop.h"

#include <cwctype>

#include "editor/CommandFiber.h"
#include "editor/CommandLine.h"
#include "editor/Document.h"
#include "editor/InputQueue.h"
#include "editor/Prompts.h"
#include "editor/SystemVariables.h"

namespace korva::editor {

namespace {

std::wstring upperName(std::wstring_view name) {
    std::wstring out(name);
    for (wchar_t& c : out) c = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
    return out;
}

}  // namespace

CommandLoop& CommandLoop::instance() {
    static CommandLoop loop;
    return loop;
}

CommandLoop::~CommandLoop() = default;

void CommandLoop::stopScript(const std::wstring& reason) {
    if (!reason.empty()) CommandLine::instance().print(L"\n" + reason + L"\n");
    stopped_ = true;
    InputQueue::instance().clear();
}

bool CommandLoop::run() {
    stopped_ = false;
    while (!stopped_) {
        const InputToken answer = readAnswer(L"\nCommand: ", false, true);
        if (answer.kind == InputToken::Kind::EndOfInput) break;
        if (answer.kind == InputToken::Kind::Cancel) continue;
        if (answer.kind == InputToken::Kind::Enter) {
            if (!last_.empty()) runTyped(last_);
            continue;
        }
        if (answer.kind == InputToken::Kind::Value) {
            CommandLine::instance().print(answer.value.print() + L"\n");
            continue;
        }
        runTyped(answer.text);
    }
    CommandLine::instance().print(L"\n");
    return !stopped_;
}

bool CommandLoop::runTyped(std::wstring_view typed) {
    if (const CommandDefinition* command = CommandStack::instance().find(typed)) {
        last_ = typed;
        // A copy: the command may add or remove commands (a module loading or unloading).
        const CommandDefinition definition = *command;
        runCommand(definition);
        return true;
    }
    if (SystemVariables::instance().exists(typed)) return handleVariable(typed);
    stopScript(L"Unknown command \"" + upperName(typed) + L"\".  Press F1 for help.");
    return false;
}

// A variable's name at the command prompt shows its value and asks for a new one.
bool CommandLoop::handleVariable(std::wstring_view name) {
    SystemVariables& variables = SystemVariables::instance();
    const std::wstring upper = upperName(name);
    const auto value = variables.value(name);
    if (!value) return false;
    if (variables.isReadOnly(name)) {
        CommandLine::instance().print(L"\n" + upper + L" = " + value->display() + L" (read only)\n");
        return true;
    }
    // Names (layers, styles) may hold spaces; numbers and points end at a space.
    const bool text = value->type == VarType::String;
    const InputToken answer = readAnswer(L"\nEnter new value for " + upper + L" <" + value->display() + L">: ", text);
    if (answer.kind != InputToken::Kind::Text) return true;
    if (variables.setFromText(name, answer.text) != RTNORM) {
        CommandLine::instance().print(L"\nInvalid value for " + upper + L".\n");
    }
    return true;
}

bool CommandLoop::refusedByFlags(const CommandDefinition& command) {
    SystemVariables& variables = SystemVariables::instance();
    if ((command.flags & kCmdNoTileMode) && variables.integer(L"TILEMODE", 1) == 1) {
        CommandLine::instance().print(L"\n** Command not allowed in Model Tab **\n");
        return true;
    }
    if ((command.flags & kCmdNoPerspective) && (variables.integer(L"VIEWMODE", 0) & 1)) {
        CommandLine::instance().print(L"\n** That command may not be invoked in a perspective view **\n");
        return true;
    }
    if ((command.flags & kCmdNoBlockEditor) && variables.integer(L"BLOCKEDITOR", 0) == 1) {
        CommandLine::instance().print(L"\n** Command not allowed in the block editor **\n");
        return true;
    }
    return false;
}

void CommandLoop::runCommand(const CommandDefinition& command) {
    if (refusedByFlags(command)) return;
    Document* document = Session::instance().current();
    // Without the pick-first flag a command starts with nothing preselected.
    if (document && !(command.flags & kCmdUsePickSet) && depth_ == 0) document->pickFirst().clear();
    const std::wstring outer = current_;
    const int32_t outerFlags = flags_;
    current_ = command.globalName;
    flags_ = command.flags;
    ++depth_;
    try {
        command.handler();
    } catch (...) {
        CommandLine::instance().print(L"\n** The command ended with an internal error **\n");
    }
    --depth_;
    current_ = outer;
    flags_ = outerFlags;
    if (depth_ == 0) endCommand();
}

void CommandLoop::endCommand() {
    if (pending_) {
        pending_->cancel();
        pending_.reset();
    }
    for (const auto& hook : endHooks_) hook();
}

int CommandLoop::scripted(std::vector<InputToken> arguments) {
    const bool echo = SystemVariables::instance().integer(L"CMDECHO", 1) == 1;
    auto runFiber = [&](std::vector<InputToken> input) {
        if (!echo) CommandLine::instance().suppress();
        const CommandFiber::Outcome outcome = pending_->run(std::move(input));
        if (!echo) CommandLine::instance().unsuppress();
        switch (outcome) {
            case CommandFiber::Outcome::Waiting: return RTNORM;
            case CommandFiber::Outcome::Finished:
                pending_.reset();
                return RTNORM;
            case CommandFiber::Outcome::Cancelled:
                pending_.reset();
                return RTCAN;
            case CommandFiber::Outcome::Refused:
                pending_->cancel();
                pending_.reset();
                return RTERROR;
        }
        return RTERROR;
    };
    if (pending_ && pending_->isWaiting()) return runFiber(std::move(arguments));
    if (arguments.empty()) return RTNORM;
    if (arguments.front().kind != InputToken::Kind::Text) return RTERROR;
    const CommandDefinition* command = CommandStack::instance().find(arguments.front().text);
    if (!command) {
        CommandLine::instance().print(L"\nUnknown command \"" + upperName(arguments.front().text) + L"\".\n");
        return RTERROR;
    }
    arguments.erase(arguments.begin());
    const CommandDefinition definition = *command;
    pending_ = std::make_unique<CommandFiber>([this, definition] {
        if (refusedByFlags(definition)) return;
        definition.handler();
    });
    return runFiber(std::move(arguments));
}

}  // namespace korva::editor
