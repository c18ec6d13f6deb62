#pragma once

#include "norva/dialog.h"

#include <string>
#include <string_view>

namespace norva {

enum class MessageButtons { Ok, YesNo };
enum class MessageIcon { None, Information, Question, Exclamation };
enum class MessageAnswer { Ok, Yes, No };
enum class CursorShape { Arrow, Wait };

/// A message box.
struct MessageRequest {
    std::string text{};
    std::string caption{};
    MessageButtons buttons = MessageButtons::Ok;
    MessageIcon icon = MessageIcon::Exclamation;
    CWindow* owner = nullptr;
};

/// A file dialog. `filter` is pairs of description and pattern separated by vertical bars.
struct FileRequest {
    std::string title{};
    std::string filter{};
    unsigned flags = 0;
    std::string initial{};
};

/// What a toolkit throws from any of its calls to end the running operation as cancelled. The library lets it through
/// to its exported edge, which leaves everything as it was and gives 0.
struct OperationCancelled {};

/// A skin: shows the library's windows to a person, or lets a script answer them.
class NORVA_API CToolkit {
public:
    virtual ~CToolkit();

    /// Runs a dialog (Open, then Perform until it has ended) and returns its result.
    virtual int RunModal(CDialog& dialog) = 0;
    virtual MessageAnswer ShowMessage(MessageRequest const& request) = 0;
    /// False when the user cancelled; else `path` is a full path.
    virtual bool ChooseFileToOpen(FileRequest const& request, std::string& path) = 0;
    /// As above; `extension` is what ReportedExtension gives.
    virtual bool ChooseFileToSave(FileRequest const& request, std::string& path, std::string& extension) = 0;

    virtual void WindowCreated(CModelessDialog& window) = 0;
    virtual void WindowTitled(CModelessDialog& window) = 0;
    virtual void WindowShown(CModelessDialog& window) = 0;
    /// Some control changed; `now` asks for the repaint before the call returns.
    virtual void WindowChanged(CModelessDialog& window, bool now) = 0;
    virtual void WindowDestroyed(CModelessDialog& window) = 0;

    /// What follows is for those who listen; showing it is the windows' matter.
    virtual void ProgressText(std::string_view text);
    virtual void FileText(std::string_view text);
    virtual void ChannelText(std::string_view text);
    virtual void OwnerNotice(std::string_view first, std::string_view second);

    virtual void SetCursor(CursorShape shape) = 0;
    /// Opens a page of the host's help file; `topic` is "path::/html/page.htm". The base uses the system's viewer.
    virtual void ShowHelp(std::string const& topic);

    /// What of its script did not fit what was shown; empty when all fitted, or when it plays none.
    virtual std::string Failure() const;
};

/// Makes `toolkit` the one that shows this thread's windows; returns the one before. With none, every dialog is
/// cancelled, every message answered by OK or No.
NORVA_API CToolkit* SetToolkit(CToolkit* toolkit);
NORVA_API CToolkit& CurrentToolkit();

/// Makes a toolkit the current one for as long as it lives.
class CToolkitScope {
public:
    explicit CToolkitScope(CToolkit& toolkit) : m_before(SetToolkit(&toolkit)) {}
    CToolkitScope(CToolkitScope const&) = delete;
    CToolkitScope& operator=(CToolkitScope const&) = delete;
    ~CToolkitScope() { SetToolkit(m_before); }

private:
    CToolkit* m_before;
};

/// Path of the host's help file, for this thread's dialogs. Help buttons work only when it contains "NORVATOOL.CHM" in
/// any case.
NORVA_API void SetHelpFilePath(std::string path);
NORVA_API std::string const& HelpFilePath();

/// The extension that a save dialog reports, without its dot: that of the file name when it has one, else `picked`,
/// else that of the first pattern of `filter`.
NORVA_API std::string ReportedExtension(std::string_view path, std::string_view picked, std::string_view filter);

}  // namespace norva
