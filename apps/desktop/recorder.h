#pragma once

#include "norva/toolkit.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace norva {

/// Writes a person's answers down as a script ("docs/automation.md"), file names as {input} and {output}.
class CRecorder {
public:
    explicit CRecorder(bool isImport);

    /// Starts the answer to a dialog; the number is for Act.
    std::size_t BeginDialog(CDialog const& dialog);
    /// Adds what the person did, told before the dialog acts on it.
    void Act(std::size_t entry, CDialog const& dialog, DialogEvent const& event);
    void Message(MessageRequest const& request, MessageAnswer answer);
    void Open(std::string const* path);
    void Save(std::string const* path, std::string_view extension);

    /// The script as text.
    std::string Text() const;

private:
    nlohmann::ordered_json m_script;
};

}  // namespace norva
