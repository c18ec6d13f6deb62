#include "exchange/progress_dlg.h"

#include "exchange/progress_template.h"
#include "norva/toolkit.h"
#include "platform/numbers.h"
#include "platform/paths.h"

#include <algorithm>
#include <charconv>
#include <utility>

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

void CProgressDlg::SetPercent(Bar bar, std::string_view text, int percent) {
    if (!IsCreated()) return;
    Toolkit()->ProgressText(text);
    ShowPercent(bar, percent);
}

void CProgressDlg::ShowPercent(Bar bar, int percent) {
    CControl& control = bar == Bar::File ? m_fileBar : m_channelBar;
    control.position = std::clamp(percent, 0, 100);
    ++control.revision;
    Changed();
}

std::intptr_t CProgressDlg::SendMessage(unsigned message, std::intptr_t first, std::intptr_t second) {
    if (message != WM_PROGRESS_TEXT) return CModelessDialog::SendMessage(message, first, second);
    if (second == 0 || !IsCreated()) return 0;
    std::string_view const text = reinterpret_cast<char const*>(second);
    // What follows the key.
    auto const valueOf = [text](std::string_view key, std::string_view& value) {
        if (!text.starts_with(key)) return false;
        value = text.substr(key.size() - 1);
        return true;
    };
    std::string_view value;
    if (valueOf("ChannelPercent ", value)) {
        SetPercent(Bar::Channel, text, ReadInt(value));
        return 0;
    }
    if (valueOf("FilePercent ", value)) {
        SetPercent(Bar::File, text, ReadInt(value));
        return 0;
    }
    Toolkit()->ProgressText(text);
    if (valueOf("ChannelName ", value)) {
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
    m_window.SendMessage(WM_PROGRESS_TEXT, 0, TextParameter(m_text.c_str()));
}

void CProgressReporter::Send(CProgressDlg::Bar bar, Percentage& last, long long percent) {
    // Some files send one for every value, so the key stays in its place.
    last.percent = percent;
    char const* const end = std::to_chars(last.text + last.keySize, std::end(last.text), percent).ptr;
    m_window.SetPercent(bar, {last.text, static_cast<std::size_t>(end - last.text)}, static_cast<int>(percent));
}

CProgressWindow::CProgressWindow(std::string title, std::string_view text) {
    m_dialog.Create();
    StartStep(std::move(title), text);
}

void CProgressWindow::StartStep(std::string title, std::string_view text) {
    m_dialog.SetWindowTitle(std::move(title));
    m_dialog.ResetBars();
    m_dialog.ShowFileName(text);
}

}  // namespace norva
