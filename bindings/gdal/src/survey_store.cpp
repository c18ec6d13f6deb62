#include "survey_store.h"

#include "norva/import_export.h"

#include <algorithm>
#include <cstring>

#include <strings.h>

namespace norva::gdal {

namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

template <typename Value>
double Widened(std::byte const* bytes, Value noData) {
    Value value;
    std::memcpy(&value, bytes, sizeof value);
    return value == noData ? kNoNumber : static_cast<double>(value);
}

std::size_t WidthOf(int dataType) {
    if (dataType == DataType::kDouble) return 8;
    if (dataType == DataType::kShort) return 2;
    return dataType == DataType::kText ? 1 : 4;
}

}  // namespace

double SurveyChannel::Number(std::int64_t location, std::size_t element) const {
    std::size_t const at = static_cast<std::size_t>(location) * elements + element;
    std::byte const* const bytes = values.data() + at * WidthOf(dataType);
    switch (dataType) {
        case DataType::kFloat:
            return Widened<float>(bytes, kNoDataFloat);
        case DataType::kDouble:
            return Widened<double>(bytes, kNoDataDouble);
        case DataType::kShort:
            return Widened<std::int16_t>(bytes, kNoDataShort);
        default:
            return Widened<std::int32_t>(bytes, kNoDataLong);
    }
}

bool SurveyChannel::Text(std::int64_t location, std::string_view& text) const {
    auto const* const bytes = reinterpret_cast<char const*>(values.data());
    text = {bytes + static_cast<std::size_t>(location) * elements, elements};
    std::size_t const last = text.find_last_not_of(' ');
    text = text.substr(0, last == std::string_view::npos ? 0 : last + 1);
    return text != "*";
}

bool CSurveyStore::Open(std::string const& path, std::string& reason) {
    CNorvaFileUtil store;
    if (store.SetFileName(path, kReopenStore, nullptr) == 0) {
        reason = GetLastErrorText();
        return false;
    }
    for (int number = 0; number < store.ProfileCount; ++number) {
        SurveyLine line;
        long count = 0;
        int flag = 0;
        store.GetProfileInfo(number, line.name, count, flag);
        line.first = m_locations;
        line.count = count;
        line.kept = store.GetProfileLocationNum(number, 1);
        line.isShown = flag == 0;
        m_locations += line.count;
        m_kept += line.kept;
        m_lines.push_back(std::move(line));
    }
    if (m_kept != m_locations) {
        m_deleted.resize(static_cast<std::size_t>(m_locations));
        for (int number = 0; number < store.ProfileCount; ++number) {
            SurveyLine const& line = m_lines[static_cast<std::size_t>(number)];
            for (std::int64_t at = 0; at < line.count; ++at) {
                if (store.IsLocMarkedToDelete(number, at) != 0)
                    m_deleted[static_cast<std::size_t>(line.first + at)] = true;
            }
        }
    }
    for (int number = 0; number < store.ChannelCount; ++number) {
        SurveyChannel channel;
        channel.name = store.GetChannelName(number);
        channel.units = store.GetChannelUnits(number);
        channel.dataType = store.GetChannelDataType(number);
        channel.displayFormat = store.GetChannelDisplayFormat(number);
        channel.isArray = store.GetChannelRecordType(number) == 1 && !channel.IsText();
        channel.elements = store.GetChannelValueSize(number) / WidthOf(channel.dataType);
        if (store.MapColumn(number, m_owners.emplace_back(), channel.values) == 0) {
            reason = GetLastErrorText();
            return false;
        }
        m_channels.push_back(std::move(channel));
    }
    return true;
}

int CSurveyStore::FindChannel(std::string_view name) const {
    auto const isNamed = [&](SurveyChannel const& channel) {
        return channel.name.size() == name.size() && strncasecmp(channel.name.data(), name.data(), name.size()) == 0;
    };
    auto const found = std::find_if(m_channels.begin(), m_channels.end(), isNamed);
    return found == m_channels.end() ? -1 : static_cast<int>(found - m_channels.begin());
}

SurveyLine const& CSurveyStore::LineOf(std::int64_t location) const {
    auto const isAfter = [](std::int64_t at, SurveyLine const& line) { return at < line.first; };
    // The last of the lines that start there: those before it are empty.
    return *std::prev(std::upper_bound(m_lines.begin(), m_lines.end(), location, isAfter));
}

}  // namespace norva::gdal
