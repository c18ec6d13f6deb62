#pragma once

#include "norva/toolkit.h"

#include <deque>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace norva {

class CTrace;

/// A control named in a script: by number or by label.
using ControlName = std::variant<int, std::string>;

/// One act of a dialog answer.
struct ScriptAction {
    enum class Kind { Click, Set, SelectRow, SelectRows, SelectColumn, DoubleClick, EditCell, Tick, Close };

    Kind kind = Kind::Click;
    ControlName control = 0;
    int row = -1;
    std::vector<int> rows{};
    int column = -1;
    bool on = true;
    std::variant<std::string, int, bool> value{};  ///< of Set and EditCell (text)
    DialogEvent::Modifier modifier = DialogEvent::Modifier::None;
    std::string source{};  ///< as the script has it, for messages
};

/// One answer; answers are used up in the order in which things are shown.
struct ScriptAnswer {
    enum class Kind { Dialog, Message, Open, Save };

    Kind kind = Kind::Dialog;
    int dialog = 0;
    std::vector<ScriptAction> actions{};
    std::string text{};  ///< message: the exact text
    MessageAnswer answer = MessageAnswer::Ok;
    std::optional<std::string> path{};  ///< open, save: none cancels
    std::string extension{};            ///< save: of the filter picked, may be empty
    std::string source{};               ///< as the script has it, for messages
};

/// Finds the control that a script names, or null with the reason in `why`.
NORVA_API CControl const* ResolveControl(CDialog const& dialog, ControlName const& name, std::string& why);

/// Turns an action into the events a person would cause, in order; false with the reason when that is impossible.
NORVA_API bool EventsOf(CDialog const& dialog, ScriptAction const& action, std::vector<DialogEvent>& events,
                        std::string& why);

/// Hands out the answers of a script; shared by every toolkit that plays one.
///
/// The first thing that does not fit is kept as the failure; from then on nothing fits, and a toolkit cancels all
/// that is shown so that the operation comes to its end.
class NORVA_API CScriptPlayer {
public:
    CScriptPlayer(std::vector<ScriptAnswer> answers, bool defaults);

    /// The next answer if it is of that kind (and for a dialog that template, for a message that text), used up;
    /// none when the default is to be used or the script has failed. `shown` describes what is shown.
    std::optional<ScriptAnswer> Take(ScriptAnswer::Kind kind, int dialog, std::string_view text,
                                     std::string const& shown);
    void Fail(std::string message);
    bool Failed() const { return m_failed; }
    bool Defaults() const { return m_defaults; }
    /// What did not fit, answers left over included (call it at the end). Empty when all fitted.
    std::string Failure() const;

private:
    std::deque<ScriptAnswer> m_answers;
    bool m_defaults;
    bool m_failed = false;
    std::string m_failure;
};

/// Headless skin: a script answers, a trace (may be null) records.
class NORVA_API CScriptedToolkit : public CToolkit {
public:
    CScriptedToolkit(std::vector<ScriptAnswer> answers, bool defaults, CTrace* trace);
    ~CScriptedToolkit() override;

    /// See CScriptPlayer::Failure.
    std::string Failure() const override { return m_player.Failure(); }

    int RunModal(CDialog& dialog) override;
    MessageAnswer ShowMessage(MessageRequest const& request) override;
    bool ChooseFileToOpen(FileRequest const& request, std::string& path) override;
    bool ChooseFileToSave(FileRequest const& request, std::string& path, std::string& extension) override;
    void WindowCreated(CModelessDialog& window) override;
    void WindowTitled(CModelessDialog& window) override;
    void WindowShown(CModelessDialog& window) override;
    void WindowChanged(CModelessDialog& window, bool now) override;
    void WindowDestroyed(CModelessDialog& window) override;
    void ProgressText(std::string_view text) override;
    void FileText(std::string_view text) override;
    void ChannelText(std::string_view text) override;
    void OwnerNotice(std::string_view first, std::string_view second) override;
    void SetCursor(CursorShape shape) override;
    void ShowHelp(std::string const& topic) override;

protected:
    // For a skin that has windows to show; the base does without.
    virtual void DialogShown(CDialog& dialog);
    /// Does one act of a script as a person would; false, with the reason, when a person could not.
    virtual bool Act(CDialog& dialog, DialogEvent const& event, std::string& why);
    virtual void DialogGone(CDialog& dialog);

private:
    /// Does the acts of the script, or of the default; ends early when the script fails.
    void Answer(CDialog& dialog);
    bool ChooseFile(ScriptAnswer::Kind kind, FileRequest const& request, std::string& path, std::string& extension);

    CScriptPlayer m_player;
    CTrace* m_trace;
};

}  // namespace norva
