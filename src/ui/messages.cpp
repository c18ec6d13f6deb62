#include "ui/messages.h"

#include "platform/last_error.h"
#include "platform/text.h"

#include <utility>

namespace norva {

void ShowMessage(std::string const& text) {
    SetLastErrorText(text);
    MessageRequest request;
    request.text = text;
    request.caption = kMessageCaption;
    CurrentToolkit().ShowMessage(request);
}

Status ShowFailure(Status status, std::string const& text) {
    SetLastErrorText(status.Text());
    ShowMessage(text.empty() ? status.Text() : text);
    return std::move(status).Silent();
}

bool AskYesNo(std::string const& text) {
    MessageRequest request;
    request.text = text;
    request.caption = kMessageCaption;
    request.buttons = MessageButtons::YesNo;
    request.icon = MessageIcon::Question;
    return CurrentToolkit().ShowMessage(request) == MessageAnswer::Yes;
}

void ShowSystemError(int error) {
    MessageRequest request;
    request.text = SystemErrorText(error);
    request.caption = "Error";
    request.icon = MessageIcon::Information;
    SetLastErrorText(request.text);
    CurrentToolkit().ShowMessage(request);
}

void ShowHelpTopic(std::string const& format) {
    std::string const& path = HelpFilePath();
    if (!Contains(ToUpper(path), "NORVATOOL.CHM")) return;
    CurrentToolkit().ShowHelp(ReplaceAll(format, "%s", path));
}

CWaitCursor::CWaitCursor() {
    CurrentToolkit().SetCursor(CursorShape::Wait);
}

CWaitCursor::~CWaitCursor() {
    CurrentToolkit().SetCursor(CursorShape::Arrow);
}

void SendOwnerNotice(CWindow* owner, std::string const& first, std::string const& second) {
    CurrentToolkit().OwnerNotice(first, second);
    if (owner != nullptr) {
        owner->SendMessage(WM_OWNER_NOTICE, TextParameter(first.c_str()), TextParameter(second.c_str()));
    }
}

}  // namespace norva
