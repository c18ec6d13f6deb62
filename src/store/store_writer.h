#pragma once

#include "store/store_output.h"
#include "store/store_spool.h"
#include "store/store_structure.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

namespace norva {

/// Takes the values of a new store in the order of its channels, in pieces of any size, and cuts arrays into their
/// first elements, which stand in the column, and all elements. After a failure everything further fails, and
/// Reason() keeps the first reason.
class CStoreWriter {
public:
    bool Open(std::string const& path);
    /// `structure` is arranged and stays as it is, and where it is, until the end.
    bool Start(CStoreStructure const& structure);
    /// Packed bytes.
    bool Append(void const* data, std::size_t size);
    /// One value (of a text, one character).
    bool AppendValue(int dataType, void const* value) {
        if (dataType != m_plainType || static_cast<std::size_t>(m_limit - m_cursor) < m_plainWidth) {
            return AppendValueSlowly(dataType, value);
        }
        PutValue(m_cursor, dataType, value);
        m_cursor += m_plainWidth;
        return true;
    }
    /// Refuses when not exactly the described bytes were handed over.
    bool Finish();
    void Fail(std::string reason);
    std::string const& Reason() const { return m_reason; }

private:
    static constexpr std::size_t kBufferSize = 256 * 1024;
    /// More than any room: no value goes straight into the buffer.
    static constexpr std::size_t kNoWidth = SIZE_MAX;

    static void PutValue(char* to, int dataType, void const* value);
    bool AppendValueSlowly(int dataType, void const* value);
    StoreChannel const* Current() const;
    std::uint64_t TotalLeft();
    void Settle();
    void Aim();
    bool Flush();
    bool AppendColumn(char const* data, std::size_t size);
    bool AppendArray(char const* data, std::size_t size);
    bool EndElements();
    bool FailOutput();

    CStoreOutput m_output;
    CStoreSpool m_elements;
    CStoreStructure const* m_structure = nullptr;
    std::string m_reason;

    std::unique_ptr<char[]> m_buffer;
    char* m_cursor = nullptr;
    /// Up to where values of the current channel go straight into the buffer; at the cursor when they may not.
    char* m_limit = nullptr;
    char* m_settled = nullptr;  ///< up to here the bytes in the buffer are counted in m_left
    std::size_t m_plainWidth = kNoWidth;
    int m_plainType = 0;

    std::size_t m_channel = 0;
    std::uint64_t m_left = 0;       ///< bytes that the current channel still needs
    std::uint64_t m_leftAfter = 0;  ///< bytes of the channels after it
};

}  // namespace norva
