#pragma once

#include "norva/file_util.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace norva::gdal {

/// One survey line of the store.
struct SurveyLine {
    std::string name;
    std::int64_t first = 0;  ///< locations of the lines before it
    std::int64_t count = 0;
    std::int64_t kept = 0;  ///< those not marked deleted
    bool isShown = true;
};

/// One channel with its values, in the file mapped into memory.
struct SurveyChannel {
    std::string name;
    std::string units;
    int dataType = DataType::kFloat;
    int displayFormat = DisplayFormat::kFixed;
    bool isArray = false;
    std::size_t elements = 1;  ///< of a location; of a text, its bytes
    std::span<std::byte const> values;

    bool IsText() const { return dataType == DataType::kText; }
    bool IsFloating() const { return dataType == DataType::kFloat || dataType == DataType::kDouble; }
    /// An element, widened; NaN for no-data.
    double Number(std::int64_t location, std::size_t element = 0) const;
    /// Without its trailing blanks; false for no-data.
    bool Text(std::int64_t location, std::string_view& text) const;
};

/// An open store with all its columns at hand. Locations are counted over all lines, from 0.
class CSurveyStore {
public:
    /// False with the reason for what is no sound store.
    bool Open(std::string const& path, std::string& reason);

    std::vector<SurveyLine> const& Lines() const { return m_lines; }
    std::vector<SurveyChannel> const& Channels() const { return m_channels; }
    /// Number of the channel of that name, whatever its case; -1 when there is none.
    int FindChannel(std::string_view name) const;
    std::int64_t Locations() const { return m_locations; }
    std::int64_t Kept() const { return m_kept; }
    bool IsDeleted(std::int64_t location) const {
        return !m_deleted.empty() && m_deleted[static_cast<std::size_t>(location)];
    }
    SurveyLine const& LineOf(std::int64_t location) const;

private:
    std::vector<SurveyLine> m_lines;
    std::vector<SurveyChannel> m_channels;
    std::vector<std::shared_ptr<void const>> m_owners;
    std::vector<bool> m_deleted;  ///< empty while none is marked
    std::int64_t m_locations = 0;
    std::int64_t m_kept = 0;
};

}  // namespace norva::gdal
