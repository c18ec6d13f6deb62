#pragma once

#include "norva/api.h"
#include "norva/toolkit.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace norva {

/// Writes what happens during an operation as JSON Lines, one event a line ("docs/automation.md").
class NORVA_API CTrace {
public:
    using Sink = std::function<void(std::string_view line)>;
    using Argument = std::variant<std::string, long long, double>;

    /// `sink` gets every line with its line feed.
    explicit CTrace(Sink sink, bool withBytes = false);

    void DialogOpened(CDialog const& dialog);
    void DialogClosed(CDialog const& dialog);
    void Message(MessageRequest const& request, MessageAnswer answer);
    /// `path` null when cancelled.
    void FileOpened(FileRequest const& request, std::string const* path);
    void FileSaved(FileRequest const& request, std::string const* path, std::string_view extension);
    void Window(CDialog const& window, std::string_view state);
    /// `event` is "progress", "file-text" or "channel-text".
    void Text(std::string_view event, std::string_view text);
    void Notice(std::string_view first, std::string_view second);
    void Cursor(CursorShape shape);
    void Help(std::string_view topic);
    void StoreCall(std::string_view call, std::vector<Argument> const& arguments, long long result);
    void StoreWriteHuge(void const* buffer, std::size_t byteCount, long long result);
    void Result(int value, std::string_view store);

private:
    void Begin(std::string_view event);
    void BeginFile(std::string_view event, FileRequest const& request, std::string const* path);
    void Emit();

    Sink m_sink;
    bool m_withBytes;
    std::string m_line;
};

}  // namespace norva
