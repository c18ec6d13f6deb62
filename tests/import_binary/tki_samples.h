#pragma once

#include "norva/file_util.h"
#include "norva/tki_file_read.h"

#include <cstring>
#include <string>
#include <vector>

namespace norva::test {

/// What is protected is open.
class CTkiProbe : public CTkiFileRead {
public:
    using CTkiFileRead::CTkiFileRead;

    using CTkiFileRead::Channels;
    using CTkiFileRead::ConvertByte;
    using CTkiFileRead::ConvertByteToDouble;
    using CTkiFileRead::ConvertByteToFloat;
    using CTkiFileRead::ConvertByteToInt;
    using CTkiFileRead::ConvertByteToLong;
    using CTkiFileRead::GetCharacter;
    using CTkiFileRead::GetMaxInterpRecords;
    using CTkiFileRead::GetNorvaChannels;
    using CTkiFileRead::GetProfiles;
    using CTkiFileRead::GetTkiDataChannels;
    using CTkiFileRead::Profiles;
    using CTkiFileRead::ReadContents;
    using CTkiFileRead::RecordCount;
    using CTkiFileRead::RecordLength;
};

/// The text of one value: its type and its bytes in full.
inline std::string ValueText(int dataType, void const* value) {
    double number = 0;
    std::int32_t integer = 0;
    if (dataType == DataType::kDouble) {
        std::memcpy(&number, value, sizeof number);
        char text[40];
        std::snprintf(text, sizeof text, "%a", number);
        return text;
    }
    if (dataType == DataType::kText) return std::string("'") + *static_cast<char const*>(value);
    std::memcpy(&integer, value, sizeof integer);
    return std::to_string(integer);
}

/// Writes down what it is told; keeps nothing.
class CNotedStore : public CNorvaFileUtil {
public:
    std::vector<std::string> notes;
    std::string refused;      ///< the call that fails
    std::size_t limit = ~0U;  ///< values that it takes

    int AddProfileToStructure(std::string const& name, long locations) override {
        return Note("profile " + name + " " + std::to_string(locations));
    }
    int AddChannelToStructure(std::string const& name, std::string const& units, int dataType, int recordType,
                              int arraySize, int reserved, int displayFormat, int decimals,
                              int templateFormat) override {
        std::string note = "channel " + name + " " + units;
        for (int number : {dataType, recordType, arraySize, reserved, displayFormat, decimals, templateFormat}) {
            note += " " + std::to_string(number);
        }
        return Note(note);
    }
    int SaveProfileStructure() override { return Note("SaveProfileStructure"); }
    int SaveChannelStructure() override { return Note("SaveChannelStructure"); }
    int StartWriteData() override { return Note("StartWriteData"); }
    int SaveData(int dataType, void const* value) override {
        if (m_values++ == limit) return 0;
        return Note(ValueText(dataType, value));
    }
    int EndWriteData() override { return Note("EndWriteData"); }
    int CloseCurFile() override { return Note("CloseCurFile"); }

private:
    int Note(std::string note) {
        notes.push_back(std::move(note));
        return notes.back() == refused ? 0 : 1;
    }

    std::size_t m_values = 0;
};

}  // namespace norva::test
