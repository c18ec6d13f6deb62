#pragma once

#include "scratch_folder.h"

#include <optional>
#include <string>

namespace norva {

/// The argument that stands for standard input or output.
inline constexpr char const* kStandardStream = "-";
inline constexpr char const* kStandardOutput = "standard output";

/// The text with a path replaced by what a person calls it.
std::string WithName(std::string text, std::string const& path, std::string const& name);

/// What `work` gives; its CommandError speaks of `name` where it names the path.
template <typename Work>
auto Naming(std::string const& path, std::string const& name, Work const& work) {
    try {
        return work();
    } catch (CommandError const& error) {
        throw CommandError(WithName(error.what(), path, name), error.Status());
    }
}

/// What a command reads: a file where it stands; for "-" standard input, and for a packed file what it holds, in a
/// temporary file that goes with this object. Throws CommandError when that cannot be read or kept.
class CInputFile {
public:
    explicit CInputFile(std::string const& argument);

    std::string const& Path() const { return m_path; }
    /// As a person calls it.
    std::string const& Name() const { return m_name; }
    /// What `work` gives; a CommandError is about Name().
    template <typename Work>
    auto WithName(Work const& work) const {
        return Naming(m_path, m_name, work);
    }

private:
    void KeepStandardInput();

    std::optional<CScratchFolder> m_folder;
    std::string m_path;
    std::string m_name;
};

/// Copies a file to standard output.
void CopyToStandardOutput(std::string const& path);

}  // namespace norva
