#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// What a command tells the person: results on stdout, messages and progress on stderr.
class CConsole {
public:
    explicit CConsole(bool quiet);

    bool Quiet() const { return m_quiet; }
    /// A line about what is being done or was done; left out when quiet.
    void Say(std::string_view text);
    /// A message on stderr, quiet or not.
    void Complain(std::string_view text);

    /// Progress of the running job: a bar when stderr is a terminal, else one line when it begins.
    void BeginJob(std::string title);
    void JobPercent(int percent);
    bool ShowsBar() const { return m_terminal && !m_quiet; }
    void EndJob();

    /// From now on keeps what is said, and shows no progress.
    void Hold();
    bool IsHeld() const { return m_isHeld; }
    /// Prints what was kept, in order.
    void Release();

private:
    struct Text {
        bool isComplaint = false;
        std::string text;
    };

    void ClearBar();

    bool m_quiet;
    bool m_terminal;
    std::string m_job;
    int m_percent = -1;
    bool m_isHeld = false;
    std::vector<Text> m_kept;
};

/// From now on Ctrl-C, a closed terminal and SIGTERM let the running command clean up: ThrowIfInterrupted() then
/// throws. So it does once what is printed has no reader any more.
void CatchInterrupts();
void ThrowIfInterrupted();
bool WasInterrupted();
bool IsReaderGone();

}  // namespace norva
