#include "input_file.h"

#include "common/unpacking.h"
#include "console.h"

#include <unistd.h>

#include <fstream>
#include <iostream>
#include <vector>

namespace norva {

namespace {

constexpr std::size_t kBlock = std::size_t{1} << 20;

}  // namespace

CInputFile::CInputFile(std::string const& argument) : m_path(argument), m_name(argument) {
    if (argument == kStandardStream) KeepStandardInput();
    if (!IsPacked(m_path)) return;
    if (!m_folder) m_folder.emplace();
    std::filesystem::path const folder = m_folder->Path() / "unpacked";
    std::filesystem::create_directory(folder);
    m_path = WithName([&] { return Unpack(m_path, folder.string()); });
}

void CInputFile::KeepStandardInput() {
    m_name = "standard input";
    m_path = (m_folder.emplace().Path() / "stdin").string();
    std::ofstream out(m_path, std::ios::binary);
    std::vector<char> block(kBlock);
    for (;;) {
        ThrowIfInterrupted();
        ssize_t const got = read(STDIN_FILENO, block.data(), block.size());
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throw CommandError(m_name + ": " + std::strerror(errno));
        if (got == 0) break;
        if (!out.write(block.data(), got)) break;
    }
    if (!out.flush()) throw CommandError(m_name + ": cannot be kept in " + m_path + ": " + std::strerror(errno));
}

std::string WithName(std::string text, std::string const& path, std::string const& name) {
    if (path == name) return text;
    for (std::size_t at = 0; (at = text.find(path, at)) != std::string::npos; at += name.size()) {
        text.replace(at, path.size(), name);
    }
    return text;
}

void CopyToStandardOutput(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    std::vector<char> block(kBlock);
    while (in.read(block.data(), static_cast<std::streamsize>(block.size())) || in.gcount() > 0) {
        std::cout.write(block.data(), in.gcount());
        ThrowIfInterrupted();
    }
    if (!std::cout.flush() || !in.eof()) throw CommandError(std::string("standard output: ") + std::strerror(errno));
}

}  // namespace norva
