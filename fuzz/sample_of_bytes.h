#pragma once

#include "support/store_samples.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <string_view>

namespace norva::fuzz {

/// A store made of any bytes: up to 3 lines of up to 7 locations, up to 4 channels of any type and display.
class CSampleOfBytes {
public:
    explicit CSampleOfBytes(std::string_view bytes) : m_bytes(bytes) {
        m_isPlain = Number(4) != 0;
        int locations = 0;
        for (int lines = 1 + Number(3); lines > 0; --lines) {
            sample.lines.push_back({m_isPlain ? "L" + std::to_string(Number(256)) : Text(Number(8)), Number(8)});
            if (m_isPlain) sample.lines.back().locations += 1;
            locations += static_cast<int>(sample.lines.back().locations);
        }
        for (int channels = 1 + Number(4); channels > 0; --channels) AddChannel(locations);
    }

    /// No name holds anything that a format cannot carry, and every line has locations.
    bool IsPlain() const { return m_isPlain; }

    test::StoreSample sample;

private:
    int Number(int below) {
        if (m_bytes.empty()) return 0;
        int const byte = static_cast<unsigned char>(m_bytes.front());
        m_bytes.remove_prefix(1);
        return byte % below;
    }

    std::string Text(int length) {
        std::string text(m_bytes.substr(0, static_cast<std::size_t>(length)));
        m_bytes.remove_prefix(text.size());
        return text;
    }

    template <typename Value>
    Value Raw() {
        std::string bytes = Text(sizeof(Value));
        bytes.resize(sizeof(Value), '\0');
        Value value;
        std::memcpy(&value, bytes.data(), sizeof value);
        return value;
    }

    void AddChannel(int locations) {
        NorvaChannelStruct channel;
        channel.name = m_isPlain ? "C" + std::to_string(sample.channels.size()) : Text(Number(80));
        channel.units = m_isPlain ? "" : Text(Number(8));
        channel.dataType = Number(6);
        bool const isArray = channel.dataType == DataType::kText || Number(8) == 7;
        channel.recordType = isArray ? 1 : 0;
        channel.arraySize = isArray ? 1 + Number(9) : 1;
        channel.displayFormat = Number(6) - 1;
        channel.decimalPlaces = Number(12) - 1;
        channel.templateFormat = Number(9) - 1;
        test::CPackedValues values;
        for (int n = locations * channel.arraySize; n > 0; --n) {
            switch (channel.dataType) {
                case DataType::kFloat:
                    values.Add(Raw<float>());
                    break;
                case DataType::kDouble:
                    // Few random bits make a number of a size that a survey has.
                    values.Add(Number(2) == 0 ? Raw<double>() : static_cast<double>(Raw<std::int32_t>()) / 1000);
                    break;
                case DataType::kText:
                    values.Add(static_cast<char>(Number(256)));
                    break;
                case DataType::kShort:
                    values.Add(Raw<std::int16_t>());
                    break;
                default:
                    values.Add(Raw<std::int32_t>());
            }
        }
        sample.channels.push_back({channel, values.bytes});
    }

    std::string_view m_bytes;
    bool m_isPlain = false;
};

}  // namespace norva::fuzz
