#pragma once

#include "norva/tki_file_read.h"
#include "platform/files.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The text header of a TKI file: descriptor lines between one with "BEGIN" and one with "END", then the end mark.
namespace norva {

inline constexpr char kTkiHeaderEnd = '\x1A';

/// One descriptor line. False, with the reason in `why`, when its type or its count cannot be used.
bool ParseTkiDescriptor(std::string_view line, TkiChannelDesc& channel, std::string& why);

/// Reads the descriptors. False when the file cannot be read, or when a descriptor cannot be used: `problem` then
/// says which line it is and what is wrong.
bool ReadTkiDescriptors(std::string const& path, std::vector<TkiChannelDesc>& channels, std::string& problem);

/// Number of bytes before the end mark; false when there is none, or the file cannot be read.
bool FindTkiHeaderEnd(CFile& file, std::uint64_t& length);

}  // namespace norva
