#pragma once

#include <string_view>

namespace norva {

/// What kind of file it is, by its first bytes, that only looks like binary records; empty for none known.
std::string_view KnownKind(std::string_view start);

}  // namespace norva
