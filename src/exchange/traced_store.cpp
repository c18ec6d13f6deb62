#include "norva/traced_store.h"

#include <cstdint>

namespace norva {

namespace {

using Arguments = std::vector<CTrace::Argument>;

long long Whole(long long number) {
    return number;
}

CTrace::Argument ValueArgument(int dataType, void const* value) {
    switch (dataType) {
        case DataType::kFloat:
            return double{*static_cast<float const*>(value)};
        case DataType::kDouble:
            return *static_cast<double const*>(value);
        case DataType::kText:
            return std::string(1, *static_cast<char const*>(value));
        case DataType::kShort:
            return Whole(*static_cast<std::int16_t const*>(value));
        case DataType::kInt:
        case DataType::kLong:
            return Whole(*static_cast<std::int32_t const*>(value));
        default:
            return std::string();  // of an unknown type nothing is known, its width neither
    }
}

}  // namespace

int CTracedStore::SetFileName(std::string const& path, EETFileMode mode, CWindow* owner) {
    int const result = CNorvaFileUtil::SetFileName(path, mode, owner);
    if (m_trace != nullptr) m_trace->StoreCall("SetFileName", {path, Whole(mode)}, result);
    return result;
}

int CTracedStore::CloseCurFile() {
    int const result = CNorvaFileUtil::CloseCurFile();
    if (m_trace != nullptr) m_trace->StoreCall("CloseCurFile", {}, result);
    return result;
}

int CTracedStore::AddProfileToStructure(std::string const& name, long locationCount) {
    int const result = CNorvaFileUtil::AddProfileToStructure(name, locationCount);
    if (m_trace != nullptr) m_trace->StoreCall("AddProfileToStructure", {name, Whole(locationCount)}, result);
    return result;
}

int CTracedStore::AddChannelToStructure(std::string const& name, std::string const& units, int dataType, int recordType,
                                        int arraySize, int reserved, int displayFormat, int decimals,
                                        int templateFormat) {
    int const result = CNorvaFileUtil::AddChannelToStructure(name, units, dataType, recordType, arraySize, reserved,
                                                             displayFormat, decimals, templateFormat);
    if (m_trace != nullptr) {
        Arguments arguments{name, units};
        for (int number : {dataType, recordType, arraySize, reserved, displayFormat, decimals, templateFormat}) {
            arguments.emplace_back(Whole(number));
        }
        m_trace->StoreCall("AddChannelToStructure", arguments, result);
    }
    return result;
}

int CTracedStore::AddChannelToStructure(NorvaChannelStruct const& channel) {
    int const result = CNorvaFileUtil::AddChannelToStructure(channel);
    if (m_trace != nullptr) {
        Arguments arguments{channel.name, channel.units};
        for (int number : {channel.dataType, channel.recordType, channel.reserved1, channel.arraySize,
                           channel.displayFormat, channel.decimalPlaces, channel.templateFormat, channel.reserved2}) {
            arguments.emplace_back(Whole(number));
        }
        m_trace->StoreCall("AddChannelToStructure", arguments, result);
    }
    return result;
}

int CTracedStore::SaveProfileStructure() {
    int const result = CNorvaFileUtil::SaveProfileStructure();
    if (m_trace != nullptr) m_trace->StoreCall("SaveProfileStructure", {}, result);
    return result;
}

int CTracedStore::SaveChannelStructure() {
    int const result = CNorvaFileUtil::SaveChannelStructure();
    if (m_trace != nullptr) m_trace->StoreCall("SaveChannelStructure", {}, result);
    return result;
}

int CTracedStore::StartWriteData() {
    int const result = CNorvaFileUtil::StartWriteData();
    if (m_trace != nullptr) m_trace->StoreCall("StartWriteData", {}, result);
    return result;
}

int CTracedStore::WriteHuge(void const* buffer, std::size_t byteCount) {
    int const result = CNorvaFileUtil::WriteHuge(buffer, byteCount);
    if (m_trace != nullptr) m_trace->StoreWriteHuge(buffer, byteCount, result);
    return result;
}

int CTracedStore::SaveData(int dataType, void const* value) {
    int const result = CNorvaFileUtil::SaveData(dataType, value);
    if (m_trace != nullptr) {
        m_trace->StoreCall("SaveData", {Whole(dataType), ValueArgument(dataType, value)}, result);
    }
    return result;
}

int CTracedStore::EndWriteData() {
    int const result = CNorvaFileUtil::EndWriteData();
    if (m_trace != nullptr) m_trace->StoreCall("EndWriteData", {}, result);
    return result;
}

int CTracedStore::SortByChannel(CWindow* owner, int channel, int first, int second, int third, int fourth) {
    int const result = CNorvaFileUtil::SortByChannel(owner, channel, first, second, third, fourth);
    if (m_trace != nullptr) {
        m_trace->StoreCall("SortByChannel", {Whole(channel), Whole(first), Whole(second), Whole(third), Whole(fourth)},
                           result);
    }
    return result;
}

}  // namespace norva
