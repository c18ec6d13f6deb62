#pragma once

#include "norva/dialog.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace norva {

/// The progress window (template 4053), driven by WM_PROGRESS_TEXT.
class CProgressDlg : public CModelessDialog {
public:
    CProgressDlg();

    void ResetBars();
    /// Shows the part of the text after its last separator.
    void ShowFileName(std::string_view text);
    void ShowChannelName(std::string_view text);
    /// Gives the toolkit a turn: to paint, or to stop the work by an exception.
    void StillWorking() { Changed(); }

    std::intptr_t SendMessage(unsigned message, std::intptr_t first, std::intptr_t second) override;

private:
    void RefreshTexts();
    void SetBar(CControl& bar, std::string_view value);

    CControl& m_fileBar;
    CControl& m_channelBar;
    std::string m_channelText;
    std::string m_fileText;
};

/// Sends the progress texts of a worker to its window. A percentage goes out when it differs from the last one of
/// its key; the first always does.
class CProgressReporter {
public:
    explicit CProgressReporter(CProgressDlg& window) : m_window(window) {}

    void FilePercent(long long percent) {
        if (percent != m_file) SendPercent("FilePercent ", m_file = percent);
    }
    void ChannelPercent(long long percent) {
        if (percent != m_channel) SendPercent("ChannelPercent ", m_channel = percent);
    }
    void ChannelName(std::string_view name);
    /// To be called for every row of a long stretch without a percentage.
    void Row() {
        if (++m_rows % kRowsATurn == 0) m_window.StillWorking();
    }
    CProgressDlg& Window() { return m_window; }

private:
    static constexpr unsigned kRowsATurn = 16384;

    /// `key` ends with its blank.
    void SendPercent(std::string_view key, long long percent);
    void Send(char const* text);

    CProgressDlg& m_window;
    long long m_file = INT64_MIN;
    long long m_channel = INT64_MIN;
    unsigned m_rows = 0;
    std::string m_text;
};

}  // namespace norva
