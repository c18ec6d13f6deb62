#pragma once

#include <string>
#include <string_view>

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

private:
    void ClearBar();

    bool m_quiet;
    bool m_terminal;
    std::string m_job;
    int m_percent = -1;
};

/// From now on Ctrl-C, a closed terminal and SIGTERM let the running command clean up: ThrowIfInterrupted() then
/// throws.
void CatchInterrupts();
void ThrowIfInterrupted();
bool WasInterrupted();

}  // namespace norva
