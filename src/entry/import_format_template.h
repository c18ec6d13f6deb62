#pragma once

#include "norva/controls.h"

namespace norva {

namespace templates {
DialogTemplate const& ImportFormats4063();
}  // namespace templates

/// Controls of the template 4063. Numbers below 5000 are fixed; the others are this library's own, and a script reaches
/// their controls by label.
namespace ids::ImportFormats {
inline constexpr int kFormats = 5000;
}  // namespace ids::ImportFormats

}  // namespace norva
