#pragma once

#include "norva/status.h"

#include <cstdint>
#include <string>

namespace norva {

/// Free bytes on the disk that takes a file of that path; a number no file reaches when the system does not tell.
std::uint64_t FreeBytesFor(std::string const& path);
/// Whether files of these two paths share the space of one disk.
bool IsSameDisk(std::string const& first, std::string const& second);

/// Fails with what is needed and what is free when `needed` bytes do not fit. `needed` may be rough, above 2^53.
Status HasRoomFor(std::string const& path, double needed);

}  // namespace norva
