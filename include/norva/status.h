#pragma once

#include "norva/api.h"

#include <string>
#include <string_view>

namespace norva {

/// Whether an operation succeeded; for one that did not, what failed, with which file, where in it, and why.
///
/// Functions below the exported edge return it. Some texts are fixed and stand in `what` alone.
class [[nodiscard]] NORVA_API Status {
public:
    /// Success.
    Status() = default;
    /// "Couldn't read the header", "survey.xyz", "the file ends in line 3". `path` and `reason` may be empty.
    static Status Failure(std::string what, std::string path = {}, std::string reason = {});
    /// "Couldn't read the file : PATH", with the system's text for an error number as reason; `act` is "read", "write",
    /// "create" or "open".
    static Status FileFailure(std::string_view act, std::string path, int error);
    /// The person or the host gave up; nothing is wrong.
    static Status Cancelled();

    bool IsGood() const { return m_kind == Kind::Good; }
    explicit operator bool() const { return IsGood(); }
    bool IsCancelled() const { return m_kind == Kind::Cancelled; }

    std::string const& What() const { return m_what; }
    std::string const& Path() const { return m_path; }
    std::string const& Place() const { return m_place; }
    std::string const& Reason() const { return m_reason; }
    /// "line 12, column 3", "record 5": where in the file.
    Status At(std::string place) &&;

    /// As a message box shows it: "what : path, place", on the next line the reason. Empty for success.
    std::string Text() const;

    /// A failure that ends its operation without a message box; its text is kept all the same.
    Status Silent() &&;
    bool IsSilent() const { return m_isSilent; }

private:
    enum class Kind { Good, Failed, Cancelled };

    Kind m_kind = Kind::Good;
    bool m_isSilent = false;
    std::string m_what;
    std::string m_path;
    std::string m_place;
    std::string m_reason;
};

}  // namespace norva
