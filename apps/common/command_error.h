#pragma once

#include <stdexcept>

namespace norva {

/// Exit statuses of the command line.
enum ExitStatus : int {
    kExitDone = 0,
    kExitFailed = 1,    ///< something asked for was not done
    kExitUsage = 2,     ///< unusable arguments or script
    kExitMismatch = 3,  ///< a script did not fit what was shown
    kExitLoss = 4,      ///< imported, but not all of it as it stands in the source (--strict)
    kExitDiffers = 5,   ///< source, report and store do not agree
    kExitInterrupted = 130,
    kExitReaderGone = 141,  ///< nobody reads what is printed any more
};

/// A command cannot go on; the text says what, where and why.
class CommandError : public std::runtime_error {
public:
    explicit CommandError(std::string const& text, ExitStatus status = kExitFailed)
        : std::runtime_error(text), m_status(status) {}
    ExitStatus Status() const { return m_status; }

private:
    ExitStatus m_status;
};

/// The user pressed Ctrl-C.
struct Interrupted {};

}  // namespace norva
