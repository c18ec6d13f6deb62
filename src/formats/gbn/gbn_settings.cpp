#include "formats/gbn/gbn_settings.h"

#include "store/value_rules.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace norva {

namespace {

constexpr int kTypes[] = {DataType::kFloat, DataType::kDouble, DataType::kLong, DataType::kText, DataType::kShort};

/// The element of that number in a list that is sorted by number, made if there is none.
template <typename Element>
Element& ElementOf(std::vector<Element>& elements, int number) {
    auto const at = std::ranges::lower_bound(elements, number, {}, &Element::number);
    if (at != elements.end() && at->number == number) return *at;
    auto const place = at - elements.begin();
    elements.emplace_back().number = number;
    std::rotate(elements.begin() + place, elements.end() - 1, elements.end());
    return elements[static_cast<std::size_t>(place)];
}

/// Makes the settings' choice in one file.
class CChoice {
public:
    CChoice(std::string const& path, GbnContents& contents) : m_path(path), m_contents(contents) {}

    Status Apply(GbnSettings const& settings) {
        if (Status status = Select(settings.channels, m_contents.channels, "channel"); !status) return status;
        if (Status status = Select(settings.lines, m_contents.lines, "line"); !status) return status;
        for (GbnSettings::Channel const& change : settings.changes) {
            if (Status status = Change(change); !status) return status;
        }
        for (GbnSettings::Line const& line : settings.lineNames) {
            if (Status status = Require(line.number, m_contents.lines.size(), "line"); !status) return status;
            m_contents.lines[static_cast<std::size_t>(line.number)].name = line.name;
        }
        auto const nameless = std::ranges::find_if(
            m_contents.channels, [](GbnChannelEntry const& entry) { return entry.description.name.empty(); });
        if (nameless == m_contents.channels.end()) return {};
        return Fail("Channel " + std::to_string(nameless - m_contents.channels.begin() + 1) + " has no name.");
    }

private:
    Status Fail(std::string reason) const {
        return Status::Failure("Couldn't import the file", m_path, std::move(reason));
    }

    Status Require(int number, std::size_t count, std::string const& what) const {
        if (number >= 0 && static_cast<std::size_t>(number) < count) return {};
        return Fail("There is no " + what + " at place " + std::to_string(number) + "; the file has " +
                    std::to_string(count) + ", counted from 0.");
    }

    template <typename Entry>
    Status Select(std::optional<std::vector<int>> const& chosen, std::vector<Entry>& entries,
                  std::string const& what) const {
        if (entries.empty()) return Fail("The file holds no " + what + ".");
        if (!chosen) return {};
        if (chosen->empty()) return Fail("At least one " + what + " has to be chosen.");
        for (Entry& entry : entries) entry.selected = 0;
        for (int const number : *chosen) {
            if (Status status = Require(number, entries.size(), what); !status) return status;
            entries[static_cast<std::size_t>(number)].selected = 1;
        }
        return {};
    }

    Status Change(GbnSettings::Channel const& change) {
        if (Status status = Require(change.number, m_contents.channels.size(), "channel"); !status) return status;
        NorvaChannelStruct& channel = m_contents.channels[static_cast<std::size_t>(change.number)].description;
        if (change.name) channel.name = *change.name;
        if (change.units) channel.units = *change.units;
        if (!change.dataType) return {};
        channel.dataType = *change.dataType;
        if (std::ranges::find(kTypes, channel.dataType) != std::end(kTypes)) return {};
        return Fail("Channel \"" + channel.name + "\": its data type is " + std::to_string(channel.dataType) +
                    ", which is neither float, double, long, text nor short.");
    }

    std::string const& m_path;
    GbnContents& m_contents;
};

}  // namespace

GbnSettings::Channel& ChangeOf(GbnSettings& settings, int channel) {
    return ElementOf(settings.changes, channel);
}

void RenameLine(GbnSettings& settings, int line, std::string name) {
    ElementOf(settings.lineNames, line).name = std::move(name);
}

Status ApplyGbnSettings(GbnSettings const& settings, std::string const& path, GbnContents& contents) {
    return CChoice(path, contents).Apply(settings);
}

}  // namespace norva
