#include "entry/progress_dlg.h"

#include "norva/toolkit.h"
#include "platform/numbers.h"
#include "platform/paths.h"
#include "ui/control_ids.h"

#include <algorithm>
#include <charconv>

namespace norva {

namespace {

using namespace ids::Progress;

}  // namespace

CProgressDlg::CProgressDlg() : CModelessDialog(4053), m_fileBar(Change(kFileBar)), m_channelBar(Change(kChannelBar)) {}

void CProgressDlg::ResetBars() {
    for (CControl* const bar : {&m_fileBar, &m_channelBar}) {
        bar->position = 0;
        ++bar->revision;
    }
    Changed();
}

void CProgressDlg::ShowFileName(std::string_view text) {
    m_fileText = FileNameOf(text);
    RefreshTexts();
    CurrentToolkit().FileText(m_fileText);
    UpdateWindow();
}

void CProgressDlg::ShowChannelName(std::string_view text) {
    m_channelText = text;
    RefreshTexts();
    CurrentToolkit().ChannelText(m_channelText);
    Changed();
}

void CProgressDlg::RefreshTexts() {
    SetText(kFileText, m_fileText);
    SetText(kChannelText, m_channelText);
}

void CProgressDlg::SetBar(CControl& bar, std::string_view value) {
    bar.position = std::clamp(ReadInt(value), 0, 100);
    ++bar.revision;
    Changed();
}

std::intptr_t CProgressDlg::SendMessage(unsigned message, std::intptr_t first, std::intptr_t second) {
    if (message != WM_PROGRESS_TEXT) return CModelessDialog::SendMessage(message, first, second);
    if (second == 0 || !IsCreated()) return 0;
    std::string_view const text = reinterpret_cast<char const*>(second);
    CurrentToolkit().ProgressText(text);
    // What follows the key; the most frequent keys come first.
    auto const valueOf = [text](std::string_view key, std::string_view& value) {
        if (!text.starts_with(key)) return false;
        value = text.substr(key.size() - 1);
        return true;
    };
    std::string_view value;
    if (valueOf("ChannelPercent ", value)) {
        SetBar(m_channelBar, value);
    } else if (valueOf("FilePercent ", value)) {
        SetBar(m_fileBar, value);
    } else if (valueOf("ChannelName ", value)) {
        ShowChannelName(value);
    } else if (valueOf("FileName ", value)) {
        ShowWindow();
        ShowFileName(value);
    }
    return 0;
}

void CProgressReporter::ChannelName(std::string_view name) {
    m_text = "ChannelName ";
    m_text += name;
    Send(m_text.c_str());
}

void CProgressReporter::SendPercent(std::string_view key, long long percent) {
    // Some files send one for every value.
    char text[48];
    char* const end = std::to_chars(text + key.copy(text, key.size()), text + sizeof text - 1, percent).ptr;
    *end = '\0';
    Send(text);
}

void CProgressReporter::Send(char const* text) {
    m_window.SendMessage(WM_PROGRESS_TEXT, 0, TextParameter(text));
}

}  // namespace norva
