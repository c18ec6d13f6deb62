#include "console.h"

#include "common/command_error.h"

#include <unistd.h>
#include <csignal>
#include <cstdio>
#include <iostream>

namespace norva {

namespace {

std::sig_atomic_t volatile g_interrupted = 0;

std::sig_atomic_t volatile g_readerGone = 0;

void OnBrokenPipe(int /*signal*/) {
    g_readerGone = 1;
}

void OnInterrupt(int /*signal*/) {
    g_interrupted = 1;
}

constexpr int kBarWidth = 40;

}  // namespace

CConsole::CConsole(bool quiet) : m_quiet(quiet), m_terminal(isatty(STDERR_FILENO) == 1) {}

void CConsole::Say(std::string_view text) {
    if (m_quiet) return;
    if (m_isHeld) {
        m_kept.push_back({false, std::string(text)});
        return;
    }
    ClearBar();
    std::cout << text << '\n' << std::flush;
}

void CConsole::Complain(std::string_view text) {
    if (m_isHeld) {
        m_kept.push_back({true, std::string(text)});
        return;
    }
    ClearBar();
    std::cerr << "norva: " << text.substr(0, text.find_last_not_of('\n') + 1) << '\n';
}

void CConsole::BeginJob(std::string title) {
    m_job = std::move(title);
    m_percent = -1;
    if (m_quiet || m_isHeld) return;
    if (m_terminal) {
        JobPercent(0);
    } else {
        std::cerr << m_job << '\n';
    }
}

void CConsole::JobPercent(int percent) {
    if (!ShowsBar() || m_job.empty() || percent == m_percent) return;
    m_percent = percent;
    int const filled = percent * kBarWidth / 100;
    std::string bar(static_cast<std::size_t>(kBarWidth), ' ');
    for (int i = 0; i < filled && i < kBarWidth; ++i) bar[static_cast<std::size_t>(i)] = '=';
    std::fprintf(stderr, "\r%s [%s] %3d%%", m_job.c_str(), bar.c_str(), percent);
    std::fflush(stderr);
}

void CConsole::EndJob() {
    ClearBar();
    m_job.clear();
}

void CConsole::ClearBar() {
    if (m_percent < 0 || !m_terminal) return;
    std::fprintf(stderr, "\r\033[K");
    std::fflush(stderr);
    m_percent = -1;
}

void CConsole::Hold() {
    m_isHeld = true;
    m_terminal = false;
}

void CConsole::Release() {
    m_isHeld = false;
    for (Text const& one : m_kept) one.isComplaint ? Complain(one.text) : Say(one.text);
    m_kept.clear();
}

void CatchInterrupts() {
    struct sigaction action {};
    action.sa_handler = OnInterrupt;
    action.sa_flags = static_cast<int>(SA_RESETHAND);  // a second Ctrl-C ends the program at once
    for (int const signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before {};
        // A program that was started by nohup goes on when its terminal hangs up.
        if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_IGN) continue;
        sigaction(signal, &action, nullptr);
    }
    // What is temporary is to be removed first.
    struct sigaction broken {};
    broken.sa_handler = OnBrokenPipe;
    sigaction(SIGPIPE, &broken, nullptr);
    // A file that grows beyond the limit is then an error of writing like any other.
    std::signal(SIGXFSZ, SIG_IGN);
}

bool WasInterrupted() {
    return g_interrupted != 0 || g_readerGone != 0;
}

bool IsReaderGone() {
    return g_readerGone != 0;
}

void ThrowIfInterrupted() {
    if (WasInterrupted()) throw Interrupted{};
}

}  // namespace norva
