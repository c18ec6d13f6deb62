#pragma once

#include <array>
#include <string_view>
#include <utility>

/// Controls of "Import: Set Channels" (template 4003).
namespace norva::set_channels {

inline constexpr int kTemplate = 4003;
inline constexpr int kHeaderList = 4018;
inline constexpr int kSkipCombo = 4073;
inline constexpr int kDelimiters = 4047;
inline constexpr int kLabelCheck = 4025;
inline constexpr int kWidthEdit = 4061;
inline constexpr int kDateRadio = 4062;
inline constexpr int kDateCombo = 4063;
inline constexpr int kTimeRadio = 4064;
inline constexpr int kTimeCombo = 4065;
inline constexpr char const* kGrid = "Data Preview";
inline constexpr char const* kName = "Name:";
inline constexpr char const* kUnits = "Units:";

/// Types of a column as options and column templates name them, and their radio buttons.
inline constexpr std::array<std::pair<std::string_view, int>, 9> kTypes = {{{"text", 4019},
                                                                            {"float", 4020},
                                                                            {"double", 4021},
                                                                            {"short", 4022},
                                                                            {"long", 4023},
                                                                            {"date", kDateRadio},
                                                                            {"time", kTimeRadio},
                                                                            {"geographic", 4083},
                                                                            {"skip", 4024}}};

/// The type's radio button; 0 for no type.
constexpr int RadioOf(std::string_view type) {
    for (auto const& [name, radio] : kTypes) {
        if (name == type) return radio;
    }
    return 0;
}

}  // namespace norva::set_channels
