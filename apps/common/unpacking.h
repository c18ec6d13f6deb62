#pragma once

#include <cstdint>
#include <string>

/// Files in a wrapper: gzip, and zip with one file in it.
namespace norva {

/// More than any survey holds: a small file that was made to fill the disk stops there.
inline constexpr std::uint64_t kMostUnpackedBytes = std::uint64_t{16} << 30;

/// Whether the file begins as gzip or zip does, whatever it is called.
bool IsPacked(std::string const& path);

/// Writes what the packed file holds into the folder and gives its path, under the name that it has inside, or without
/// the ".gz". Throws CommandError for a damaged or encrypted file, for a zip with more than one file or with none, and
/// beyond `most` bytes; nothing is left then.
std::string Unpack(std::string const& path, std::string const& folder, std::uint64_t most = kMostUnpackedBytes);

}  // namespace norva
