#include "support/temporary_folder.h"
#include "target.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

using namespace norva;

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

/// Longer than any damaged file may take, even under sanitizers on a busy machine.
constexpr std::chrono::seconds kLongest(10);

class CReplay {
public:
    void Run(fuzz::Target target, std::string_view bytes, std::string const& what) {
        Clock::time_point const start = Clock::now();
        m_running = what;
        target(bytes);
        Clock::duration const took = Clock::now() - start;
        if (took > m_slowest) {
            m_slowest = took;
            m_slowestName = what;
        }
        if (took > kLongest) fuzz::Broken("time is bounded: " + what);
        ++m_count;
    }

    /// The file cut at every byte, and with every byte changed once: one bit, all bits or to another character in
    /// turn. Of a file with more than `most` bytes, only about so many cuts and changes.
    void Damage(fuzz::Target target, std::string const& bytes, std::string const& name, std::size_t most) {
        std::size_t const step = bytes.size() / most + 1;
        for (std::size_t at = m_damaged % step; at < bytes.size(); at += step) {
            Run(target, std::string_view(bytes).substr(0, at), name + " cut at " + std::to_string(at));
        }
        static constexpr unsigned kChanges[] = {0x01, 0xFF, 0x80, 0x10, 0x07};
        std::string changed = bytes;
        for (std::size_t at = m_damaged++ % step; at < bytes.size(); at += step) {
            changed[at] = static_cast<char>(static_cast<unsigned char>(bytes[at]) ^ kChanges[at % std::size(kChanges)]);
            Run(target, changed, name + " changed at " + std::to_string(at));
            changed[at] = bytes[at];
        }
    }

    void PrintRunning() const { std::cerr << "while running " << m_running << std::endl; }

    void Print(std::string_view target) const {
        auto const ms = std::chrono::duration_cast<std::chrono::milliseconds>(m_slowest).count();
        std::cout << target << ": " << m_count << " runs, the slowest " << ms << " ms (" << m_slowestName << ")\n";
    }

    std::size_t Count() const { return m_count; }

private:
    std::size_t m_count = 0;
    std::size_t m_damaged = 0;
    Clock::duration m_slowest{};
    std::string m_slowestName;
    std::string m_running;
};

CReplay* current = nullptr;

}  // namespace

/// norva_replay [--damage MOST] FOLDER...: runs every file of FOLDER/NAME through the target NAME once, or damaged in
/// every way; of longer files than MOST bytes, in about MOST places.
int main(int argc, char** argv) {
    std::size_t most = 0;
    int first = 1;
    if (argc > 2 && std::string_view(argv[1]) == "--damage") {
        most = std::max(1UL, std::strtoul(argv[2], nullptr, 10));
        first = 3;
    }
    // Targets change the current folder.
    std::vector<fs::path> folders;
    for (int i = first; i < argc; ++i) folders.push_back(fs::absolute(argv[i]));
    std::signal(SIGABRT, [](int) {
        if (current != nullptr) current->PrintRunning();
    });
    std::size_t count = 0;
    for (fs::path const& folder : folders) {
        for (fs::directory_entry const& entry : fs::directory_iterator(folder)) {
            fuzz::Target const target = fuzz::FindTarget(entry.path().filename().string());
            if (target == nullptr) {
                std::cerr << entry.path() << ": no such target\n";
                return 1;
            }
            CReplay replay;
            current = &replay;
            for (fs::directory_entry const& file : fs::directory_iterator(entry.path())) {
                std::string const name = file.path().string();
                std::string const bytes = test::ReadWholeFile(name);
                most == 0 ? replay.Run(target, bytes, name) : replay.Damage(target, bytes, name, most);
            }
            replay.Print(entry.path().filename().string());
            count += replay.Count();
            current = nullptr;
        }
    }
    return count > 0 ? 0 : 1;
}
