#pragma once

#include "platform/files.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace norva {

/// Bytes that a GbnFile reads.
class GbnSource {
public:
    virtual ~GbnSource() = default;
    virtual std::uint64_t Length() const = 0;
    /// Up to `count` bytes; `got` is less only at the end. False after a read error.
    virtual bool Read(char* buffer, std::size_t count, std::size_t& got) = 0;
    /// The next Read begins there.
    virtual bool Seek(std::uint64_t offset) = 0;
};

/// Where a GbnFile writes.
class GbnSink {
public:
    virtual ~GbnSink() = default;
    virtual bool Write(void const* data, std::size_t size) = 0;
};

class GbnMemorySource final : public GbnSource {
public:
    /// `bytes` is not copied.
    explicit GbnMemorySource(std::string_view bytes) : m_bytes(bytes) {}

    std::uint64_t Length() const override { return m_bytes.size(); }
    bool Read(char* buffer, std::size_t count, std::size_t& got) override {
        got = std::min(count, m_bytes.size() - m_next);
        if (got > 0) std::memcpy(buffer, m_bytes.data() + m_next, got);
        m_next += got;
        return true;
    }
    bool Seek(std::uint64_t offset) override {
        m_next = static_cast<std::size_t>(std::min<std::uint64_t>(offset, m_bytes.size()));
        return true;
    }

private:
    std::string_view m_bytes;
    std::size_t m_next = 0;
};

class GbnOpenFileSource final : public GbnSource {
public:
    /// `file` is open for reading and stays the caller's; `length` is its size.
    GbnOpenFileSource(CFile& file, std::uint64_t length) : m_file(file), m_length(length) {}

    std::uint64_t Length() const override { return m_length; }
    bool Read(char* buffer, std::size_t count, std::size_t& got) override { return m_file.Read(buffer, count, got); }
    bool Seek(std::uint64_t offset) override { return m_file.Seek(offset); }

private:
    CFile& m_file;
    std::uint64_t m_length;
};

class GbnMemorySink final : public GbnSink {
public:
    bool Write(void const* data, std::size_t size) override {
        m_bytes.append(static_cast<char const*>(data), size);
        return true;
    }
    std::string const& Bytes() const { return m_bytes; }

private:
    std::string m_bytes;
};

class GbnReplacementFileSink final : public GbnSink {
public:
    /// `file` is open and stays the caller's, who also commits it.
    explicit GbnReplacementFileSink(CReplacementFile& file) : m_file(file) {}

    bool Write(void const* data, std::size_t size) override { return m_file.Write(data, size); }

private:
    CReplacementFile& m_file;
};

}  // namespace norva
