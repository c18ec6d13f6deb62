#pragma once

#include "norva/dialog.h"
#include "platform/file_percent.h"

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

    enum class Bar { File, Channel };
    /// What WM_PROGRESS_TEXT with `text`, a percentage of this bar, does.
    void SetPercent(Bar bar, std::string_view text, int percent);
    /// Moves the bar without a progress text: no script and no trace tells of it.
    void ShowPercent(Bar bar, int percent);

private:
    void RefreshTexts();

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
        if (percent != m_file.percent) Send(CProgressDlg::Bar::File, m_file, percent);
    }
    void ChannelPercent(long long percent) {
        if (percent != m_channel.percent) Send(CProgressDlg::Bar::Channel, m_channel, percent);
    }
    void ChannelName(std::string_view name);
    /// To be called for every row of a long stretch without a percentage.
    void Row() {
        if (++m_rows % kRowsATurn == 0) m_window.StillWorking();
    }
    CProgressDlg& Window() { return m_window; }

private:
    static constexpr unsigned kRowsATurn = 16384;

    /// The last percentage of a key, with the text that told it.
    struct Percentage {
        char text[40];  ///< the key with its blank, and room for any number
        std::size_t keySize;
        long long percent = INT64_MIN;
    };

    void Send(CProgressDlg::Bar bar, Percentage& last, long long percent);

    CProgressDlg& m_window;
    Percentage m_file{"FilePercent ", 12};
    Percentage m_channel{"ChannelPercent ", 15};
    unsigned m_rows = 0;
    std::string m_text;
};

/// A progress window that is shown for as long as it lives, and the reporter of what is done meanwhile.
class CProgressWindow {
public:
    /// `text` names what is worked on: a path, of which the file name is shown.
    explicit CProgressWindow(std::string title, std::string_view text = "Please wait a second");
    CProgressWindow(CProgressWindow const&) = delete;
    CProgressWindow& operator=(CProgressWindow const&) = delete;

    /// The next step of the same operation, with both bars at their start.
    void StartStep(std::string title, std::string_view text = "Please wait a second");
    CProgressDlg& Dialog() { return m_dialog; }
    CProgressReporter& Reporter() { return m_reporter; }

private:
    CProgressDlg m_dialog;
    CProgressReporter m_reporter{m_dialog};
};

/// How far a scan of a file is that sends no progress texts: the bar moves, and the toolkit gets its turn to stop it.
class CScanProgress {
public:
    CScanProgress(CProgressDlg& window, std::uint64_t length) : m_window(window), m_percent(length, 1) {}

    /// To be called for every line, with the offset of its end.
    void At(std::uint64_t offset) {
        if (m_percent.Changed(offset))
            m_window.ShowPercent(CProgressDlg::Bar::File, static_cast<int>(m_percent.Value()));
    }

private:
    CProgressDlg& m_window;
    CFilePercent m_percent;
};

}  // namespace norva
