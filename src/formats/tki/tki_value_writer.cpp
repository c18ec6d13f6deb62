#include "formats/tki/tki_value_writer.h"

#include "exchange/progress_dlg.h"
#include "formats/tki/tki_types.h"
#include "norva/values.h"
#include "platform/text.h"
#include "store/value_rules.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

namespace norva {

CTkiValueWriter::CTkiValueWriter(CNorvaFileUtil& store, CProgressReporter& progress, int locations)
    : m_store(store), m_progress(progress), m_locations(locations) {
    m_percents.reserve(static_cast<std::size_t>(locations));
    for (int j = 1; j <= locations; ++j) m_percents.push_back(static_cast<signed char>(100LL * j / locations));
}

inline void CTkiValueWriter::Tell(int location) {
    m_progress.ChannelPercent(m_percents[static_cast<std::size_t>(location)]);
}

/// Samples, with straight lines between them.
class CTkiValueWriter::CSamples {
public:
    CSamples(CTkiValueWriter& writer, TkiChannelDesc const& channel, TkiElement element)
        : m_writer(writer),
          m_element(element),
          m_size(static_cast<std::size_t>(channel.elementSize)),
          m_count(channel.count),
          m_scale(channel.scale),
          m_offset(channel.offset) {}

    bool Record(char const* record, char const* next) const {
        int const spacing = m_writer.m_locations / m_count;
        int location = 0;
        double sample = Value(record);
        for (int i = 1; i <= m_count; ++i) {
            double const following = Value(i < m_count ? record + static_cast<std::size_t>(i) * m_size : next);
            m_writer.Tell(location++);
            Count(sample);
            if (!Save(sample)) return false;
            for (int step = 1; step < spacing; ++step) {
                m_writer.Tell(location++);
                if (!Save(sample + (following - sample) / spacing * step)) return false;
            }
            sample = following;
        }
        return true;
    }
    bool Closing(char const* record) const {
        Count(Value(record));
        return Save(Value(record));
    }

private:
    void Count(double sample) const {
        if (IsNoData(sample)) {
            ++m_writer.m_tally.noData;
        } else {
            TallyRange(sample, m_writer.m_tally);
        }
    }
    double Value(char const* bytes) const { return LoadTkiNumber(m_element, bytes) * m_scale + m_offset; }
    bool Save(double value) const { return m_writer.m_store.SaveData(DataType::kDouble, &value) != 0; }

    CTkiValueWriter& m_writer;
    TkiElement m_element;
    std::size_t m_size;
    int m_count;
    double m_scale;
    double m_offset;
};

/// An array stands in the first location of its record; the elements of the others are -1.
class CTkiValueWriter::CArray {
public:
    CArray(CTkiValueWriter& writer, TkiChannelDesc const& channel, TkiElement element)
        : m_writer(writer), m_channel(channel), m_element(element) {}

    bool Record(char const* record, char const* /*next*/) const {
        m_writer.Tell(0);
        if (!Closing(record)) return false;
        for (int location = 1; location < m_writer.m_locations; ++location) {
            m_writer.Tell(location);
            for (int i = 0; i < m_channel.count; ++i) {
                if (!Save(-1)) return false;
            }
        }
        return true;
    }
    bool Closing(char const* record) const {
        // One location is one finding, however many of its elements do not fit.
        std::uint64_t const before = m_writer.m_tally.outOfRange;
        for (int i = 0; i < m_channel.count; ++i, record += m_channel.elementSize) {
            double const value = LoadTkiNumber(m_element, record) * m_channel.scale + m_channel.offset;
            std::int32_t const stored = TruncateToInt32(value);
            if (!TallyLoss(value, stored, m_writer.m_tally)) TallyRange(stored, m_writer.m_tally);
            if (!Save(stored)) return false;
        }
        m_writer.m_tally.outOfRange = std::min(m_writer.m_tally.outOfRange, before + 1);
        return true;
    }

private:
    bool Save(std::int32_t value) const { return m_writer.m_store.SaveData(DataType::kLong, &value) != 0; }

    CTkiValueWriter& m_writer;
    TkiChannelDesc const& m_channel;
    TkiElement m_element;
};

/// A text stands in every location of its record.
class CTkiValueWriter::CText {
public:
    CText(CTkiValueWriter& writer, TkiChannelDesc const& channel)
        : m_writer(writer), m_width(static_cast<std::size_t>(channel.count)) {}

    bool Record(char const* record, char const* /*next*/) {
        Take(record);
        for (int location = 0; location < m_writer.m_locations; ++location) {
            m_writer.Tell(location);
            if (!Save()) return false;
        }
        return true;
    }
    bool Closing(char const* record) {
        Take(record);
        return Save();
    }

private:
    void Take(char const* record) {
        m_text = Trim(std::string_view(record, m_width));
        m_text.resize(m_width, ' ');
    }
    bool Save() const {
        return std::ranges::all_of(m_text, [this](char const& character) {
            return m_writer.m_store.SaveData(DataType::kText, &character) != 0;
        });
    }

    CTkiValueWriter& m_writer;
    std::size_t m_width;
    std::string m_text;
};

template <typename Values>
bool CTkiValueWriter::WriteProfiles(Values values, CTkiColumnReader& reader,
                                    std::vector<std::uint64_t> const& profiles) {
    for (std::uint64_t const records : profiles) {
        char const* record = reader.Next();
        for (std::uint64_t i = 1; i < records && record != nullptr; ++i) {
            char const* const next = reader.Next();
            if (next == nullptr || !values.Record(record, next)) return false;
            record = next;
        }
        if (record == nullptr || !values.Closing(record)) return false;
    }
    return true;
}

/// For a channel that the store does not keep.
void CTkiValueWriter::PassProfiles(std::vector<std::uint64_t> const& profiles) {
    for (std::uint64_t const records : profiles) {
        for (std::uint64_t i = 1; i < records; ++i) {
            for (int location = 0; location < m_locations; ++location) Tell(location);
        }
    }
}

bool CTkiValueWriter::Write(TkiChannelDesc const& channel, CTkiColumnReader& reader,
                            std::vector<std::uint64_t> const& profiles, ReportChannel& report) {
    TkiType const* const type = FindTkiType(channel.type);
    m_tally = {};
    bool isWritten = true;
    if (type->IsScalar()) {
        isWritten = WriteProfiles(CSamples(*this, channel, type->element), reader, profiles);
        // A line's last record has one location, and so keeps its first sample alone.
        report.dropped.count = profiles.size() * static_cast<std::uint64_t>(channel.count - 1);
    } else if (type->IsIntegerArray()) {
        isWritten = WriteProfiles(CArray(*this, channel, type->element), reader, profiles);
        // Between the records there is no array.
        for (std::uint64_t const records : profiles) {
            report.missing.count += (records - 1) * static_cast<std::uint64_t>(m_locations - 1);
        }
    } else if (type->IsText()) {
        isWritten = WriteProfiles(CText(*this, channel), reader, profiles);
    } else {
        PassProfiles(profiles);
    }
    m_tally.Fill(report);
    return isWritten;
}

}  // namespace norva
