#include "norva/toolkit.h"

#include "platform/paths.h"
#include "platform/system.h"

#include <utility>

namespace norva {

namespace {

/// Stands in while no toolkit is set: nobody sees anything, so nothing is agreed to.
class CNobodyToolkit : public CToolkit {
public:
    int RunModal(CDialog& dialog) override {
        dialog.Open();
        if (!dialog.IsEnded()) dialog.Abandon();
        return dialog.Result();
    }
    MessageAnswer ShowMessage(MessageRequest const& request) override {
        return request.buttons == MessageButtons::Ok ? MessageAnswer::Ok : MessageAnswer::No;
    }
    bool ChooseFileToOpen(FileRequest const& /*request*/, std::string& /*path*/) override { return false; }
    bool ChooseFileToSave(FileRequest const& /*request*/, std::string& /*path*/, std::string& /*extension*/) override {
        return false;
    }
    void WindowCreated(CModelessDialog& /*window*/) override {}
    void WindowTitled(CModelessDialog& /*window*/) override {}
    void WindowShown(CModelessDialog& /*window*/) override {}
    void WindowChanged(CModelessDialog& /*window*/, bool /*now*/) override {}
    void WindowDestroyed(CModelessDialog& /*window*/) override {}
    void SetCursor(CursorShape /*shape*/) override {}
    void ShowHelp(std::string const& /*topic*/) override {}
};

thread_local CToolkit* t_toolkit = nullptr;

std::string& HelpFilePathOfThread() {
    thread_local std::string path;
    return path;
}

/// The extension of "*.xyz", "*.gbn*" or "xyz"; empty for "*.*".
std::string_view BareExtension(std::string_view pattern) {
    std::size_t const dot = pattern.rfind('.');
    if (dot != std::string_view::npos) pattern.remove_prefix(dot + 1);
    while (!pattern.empty() && (pattern.back() == '*' || pattern.back() == ' ')) pattern.remove_suffix(1);
    return pattern;
}

}  // namespace

CToolkit::~CToolkit() = default;
void CToolkit::ProgressText(std::string_view /*text*/) {}
void CToolkit::FileText(std::string_view /*text*/) {}
void CToolkit::ChannelText(std::string_view /*text*/) {}
void CToolkit::OwnerNotice(std::string_view /*first*/, std::string_view /*second*/) {}
void CToolkit::CallEnded() {}

void CToolkit::ShowHelp(std::string const& topic) {
    ShowInHelpViewer(topic);
}

std::string CToolkit::Failure() const {
    return {};
}

CToolkit* SetToolkit(CToolkit* toolkit) {
    return std::exchange(t_toolkit, toolkit);
}

CToolkit& CurrentToolkit() {
    if (t_toolkit != nullptr) return *t_toolkit;
    static CNobodyToolkit nobody;
    return nobody;
}

void SetHelpFilePath(std::string path) {
    HelpFilePathOfThread() = std::move(path);
}

std::string const& HelpFilePath() {
    return HelpFilePathOfThread();
}

std::string ReportedExtension(std::string_view path, std::string_view picked, std::string_view filter) {
    std::string_view extension = ExtensionOf(path);
    if (extension.empty()) extension = BareExtension(picked);
    if (extension.empty()) {
        std::size_t const bar = filter.find('|');
        std::string_view const patterns = bar == std::string_view::npos ? "" : filter.substr(bar + 1);
        extension = BareExtension(patterns.substr(0, patterns.find_first_of("|;")));
    }
    return std::string(extension);
}

}  // namespace norva
