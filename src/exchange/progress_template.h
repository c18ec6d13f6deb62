#pragma once

#include "norva/controls.h"

namespace norva {

namespace templates {
DialogTemplate const& Progress4053();
}  // namespace templates

/// Controls of the template 4053. Numbers below 5000 are fixed; the others are this library's own, and a script reaches
/// their controls by label.
namespace ids::Progress {
inline constexpr int kFileLabel = 5000;
inline constexpr int kFileText = 4058;
inline constexpr int kFileBar = 4055;
inline constexpr int kChannelLabel = 5001;
inline constexpr int kChannelText = 4056;
inline constexpr int kChannelBar = 4057;
}  // namespace ids::Progress

}  // namespace norva
