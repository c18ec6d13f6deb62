#include "common/unpacking.h"

#include "common/command_error.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <vector>

namespace norva {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kBlock = std::size_t{1} << 18;
constexpr std::string_view kGzip = "\x1F\x8B";
constexpr std::string_view kZip = "PK\x03\x04";
constexpr std::string_view kZipEntry = "PK\x01\x02";
constexpr std::string_view kZipEnd = "PK\x05\x06";
/// Of the record at the end of a zip; a comment of up to 64 KiB stands behind it.
constexpr std::size_t kZipEndSize = 22;
constexpr std::size_t kLongestComment = 65535;

std::string BytesAt(std::istream& in, std::uint64_t offset, std::size_t count) {
    std::string bytes(count, '\0');
    in.clear();
    in.seekg(static_cast<std::streamoff>(offset));
    in.read(bytes.data(), static_cast<std::streamsize>(count));
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    return bytes;
}

std::uint32_t NumberAt(std::string const& bytes, std::size_t at, std::size_t width) {
    std::uint32_t number = 0;
    for (std::size_t i = width; i-- > 0;) number = number << 8 | static_cast<unsigned char>(bytes.at(at + i));
    return number;
}

/// Where a zip's only file stands, by the list at its end.
struct ZipEntry {
    std::string name;
    std::uint32_t method = 0;
    std::uint32_t crc = 0;
    std::uint64_t packed = 0;
    std::uint64_t unpacked = 0;
    std::uint64_t start = 0;
};

class CUnpacker {
public:
    CUnpacker(std::string const& path, std::string const& folder, std::uint64_t most)
        : m_path(path), m_folder(folder), m_most(most), m_in(path, std::ios::binary) {
        if (!m_in) Fail(std::strerror(errno));
    }

    std::string Run() {
        try {
            if (BytesAt(m_in, 0, kZip.size()) == kZip) {
                Zip();
            } else {
                Gzip();
            }
            if (!m_out.flush()) FailToWrite();
        } catch (...) {
            std::error_code error;
            if (!m_target.empty()) fs::remove(m_target, error);
            throw;
        }
        return m_target;
    }

private:
    [[noreturn]] void Fail(std::string const& why) const { throw CommandError(m_path + ": " + why); }
    [[noreturn]] void FailToWrite() const { Fail("cannot be unpacked into " + m_target + ": " + std::strerror(errno)); }

    void Open(fs::path const& name) {
        // What a zip calls its file is not to lead out of the folder.
        fs::path const last = name.filename();
        bool const isName = !last.empty() && last != "." && last != "..";
        m_target = (fs::path(m_folder) / (isName ? last : fs::path("unpacked"))).string();
        m_out.open(m_target, std::ios::binary | std::ios::trunc);
        if (!m_out) FailToWrite();
    }

    void Write(char const* bytes, std::size_t count) {
        m_written += count;
        if (m_written > m_most) {
            Fail("holds more than " + std::to_string(m_most) + " bytes unpacked; unpack it by hand if that is right");
        }
        if (!m_out.write(bytes, static_cast<std::streamsize>(count))) FailToWrite();
    }

    void Gzip() {
        fs::path name = fs::path(m_path).filename();
        if (name.extension() == ".gz" || name.extension() == ".GZ") name.replace_extension();
        Open(name);
        m_in.clear();
        m_in.seekg(0);
        Inflate(16 + MAX_WBITS, UINT64_MAX);
    }

    void Zip() {
        ZipEntry const entry = FindEntry();
        Open(entry.name);
        m_in.clear();
        m_in.seekg(static_cast<std::streamoff>(entry.start));
        m_crc = static_cast<std::uint32_t>(crc32(0, nullptr, 0));
        if (entry.method == 8) {
            Inflate(-MAX_WBITS, entry.packed);
        } else {
            Copy(entry.packed);
        }
        if (m_written != entry.unpacked || m_crc != entry.crc) Fail("is damaged: its checksum does not fit");
    }

    ZipEntry FindEntry() {
        std::uint64_t const size = fs::file_size(m_path);
        std::uint64_t const tailSize = std::min<std::uint64_t>(size, kZipEndSize + kLongestComment);
        std::string const tail = BytesAt(m_in, size - tailSize, static_cast<std::size_t>(tailSize));
        std::size_t const end = tail.rfind(kZipEnd);
        if (end == std::string::npos || tail.size() - end < kZipEndSize)
            Fail("is a damaged ZIP archive: the list of its files is missing");
        std::uint32_t const count = NumberAt(tail, end + 10, 2);
        std::uint64_t const listSize = NumberAt(tail, end + 12, 4);
        std::uint64_t const listStart = NumberAt(tail, end + 16, 4);
        constexpr std::uint64_t mostOfList = std::uint64_t{1} << 24;
        if (listStart + listSize > size || listSize > mostOfList) Fail("is damaged, or a zip of more than 4 GB");
        std::string const list = BytesAt(m_in, listStart, static_cast<std::size_t>(listSize));
        std::vector<ZipEntry> files;
        std::size_t at = 0;
        for (std::uint32_t i = 0; i < count; ++i) {
            constexpr std::size_t headSize = 46;
            if (list.size() < at + headSize || list.compare(at, kZipEntry.size(), kZipEntry) != 0) {
                Fail("is damaged: its list of files does not read");
            }
            std::size_t const nameSize = NumberAt(list, at + 28, 2);
            std::size_t const next = at + headSize + nameSize + NumberAt(list, at + 30, 2) + NumberAt(list, at + 32, 2);
            if (next > list.size()) Fail("is damaged: its list of files does not read");
            ZipEntry entry;
            entry.name = list.substr(at + headSize, nameSize);
            entry.method = NumberAt(list, at + 10, 2);
            entry.crc = NumberAt(list, at + 16, 4);
            entry.packed = NumberAt(list, at + 20, 4);
            entry.unpacked = NumberAt(list, at + 24, 4);
            entry.start = NumberAt(list, at + 42, 4);
            bool const isEncrypted = (NumberAt(list, at + 8, 2) & 1) != 0;
            at = next;
            if (entry.name.ends_with('/') || entry.name.starts_with("__MACOSX/")) continue;
            if (isEncrypted) Fail(entry.name + " in it is encrypted");
            files.push_back(std::move(entry));
        }
        if (files.size() != 1) {
            Fail("is a ZIP archive of " + std::to_string(files.size()) +
                 " files; unpack it first, and give the one that is meant");
        }
        ZipEntry entry = std::move(files.front());
        if (entry.method != 0 && entry.method != 8)
            Fail("is packed in a way that is not known (" + std::to_string(entry.method) + ")");
        constexpr std::size_t localSize = 30;
        std::string const local = BytesAt(m_in, entry.start, localSize);
        if (local.size() < localSize || !local.starts_with(kZip))
            Fail("is damaged: " + entry.name + " is not where it should be");
        entry.start += localSize + NumberAt(local, 26, 2) + NumberAt(local, 28, 2);
        return entry;
    }

    void Copy(std::uint64_t rest) {
        std::vector<char> block(kBlock);
        while (rest > 0) {
            m_in.read(block.data(), static_cast<std::streamsize>(std::min<std::uint64_t>(rest, block.size())));
            auto const got = static_cast<std::size_t>(m_in.gcount());
            if (got == 0) Fail("is cut short: its packed data end too early");
            rest -= got;
            Write(block.data(), got);
            m_crc = static_cast<std::uint32_t>(
                crc32(m_crc, reinterpret_cast<Bytef const*>(block.data()), static_cast<uInt>(got)));
        }
    }

    /// Inflates up to `rest` bytes of the file; gzip may hold several parts one after the other.
    void Inflate(int windowBits, std::uint64_t rest) {
        z_stream stream{};
        if (inflateInit2(&stream, windowBits) != Z_OK) Fail("cannot be unpacked: out of memory");
        struct CEnd {
            z_stream& stream;
            ~CEnd() { inflateEnd(&stream); }
        } const atEnd{stream};
        std::vector<char> packed(kBlock);
        std::vector<char> block(kBlock);
        bool isWhole = false;
        while (rest > 0) {
            m_in.read(packed.data(), static_cast<std::streamsize>(std::min<std::uint64_t>(rest, packed.size())));
            auto const got = static_cast<std::size_t>(m_in.gcount());
            if (got == 0) break;
            rest -= got;
            stream.next_in = reinterpret_cast<Bytef*>(packed.data());
            stream.avail_in = static_cast<uInt>(got);
            do {
                if (isWhole) {
                    // Zeros behind the last part fill a block of a tape.
                    bool const isNext = windowBits > 0 && stream.avail_in > 0 && *stream.next_in == 0x1F;
                    if (!isNext) return;
                    inflateReset(&stream);
                    isWhole = false;
                }
                stream.next_out = reinterpret_cast<Bytef*>(block.data());
                stream.avail_out = static_cast<uInt>(block.size());
                int const result = inflate(&stream, Z_NO_FLUSH);
                if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR) Fail("is damaged");
                std::size_t const count = block.size() - stream.avail_out;
                m_crc = static_cast<std::uint32_t>(
                    crc32(m_crc, reinterpret_cast<Bytef const*>(block.data()), static_cast<uInt>(count)));
                Write(block.data(), count);
                isWhole = result == Z_STREAM_END;
            } while (stream.avail_in > 0 || stream.avail_out == 0);
        }
        if (!isWhole) Fail("is cut short: its packed data end too early");
    }

    std::string const& m_path;
    std::string const& m_folder;
    std::uint64_t m_most;
    std::ifstream m_in;
    std::ofstream m_out;
    std::string m_target;
    std::uint64_t m_written = 0;
    std::uint32_t m_crc = 0;
};

}  // namespace

bool IsPacked(std::string const& path) {
    std::error_code error;
    if (!fs::is_regular_file(path, error)) return false;  // looking into a pipe takes what it holds
    std::ifstream in(path, std::ios::binary);
    std::string const start = BytesAt(in, 0, kZip.size());
    return start.starts_with(kGzip) || start == kZip;
}

std::string Unpack(std::string const& path, std::string const& folder, std::uint64_t most) {
    return CUnpacker(path, folder, most).Run();
}

}  // namespace norva
