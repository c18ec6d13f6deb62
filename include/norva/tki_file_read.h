#pragma once

#include "norva/api.h"
#include "norva/file_util.h"
#include "norva/import_report.h"
#include "norva/status.h"
#include "norva/values.h"
#include "norva/window.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// A channel of a TKI file's records, as its descriptor line has it.
struct TkiChannelDesc {
    std::string name;
    int count = 0;  ///< samples in a record, elements of an array, or characters
    std::string type;
    float scale = 0;
    float offset = 0;
    std::string units;
    std::string rest;
    int elementSize = 0;  ///< bytes
    int line = 0;         ///< of the header, from 1

    /// Bytes in a record.
    std::uint64_t Size() const { return static_cast<std::uint64_t>(count) * static_cast<std::uint64_t>(elementSize); }
};

/// A survey line of a TKI file.
struct TkiProfile {
    std::string name;
    long locations = 0;
};

/// Reads a TKI file, which describes its records itself, into a store.
///
/// Every record becomes M locations, M being a common multiple of the samples that the channels have in a record;
/// values between samples are interpolated, across records but not across profiles.
class NORVA_API CTkiFileRead {
public:
    CTkiFileRead();
    CTkiFileRead(std::string tkiPath, std::string storePath);
    virtual ~CTkiFileRead();

    void SetTKIFileName(std::string path);
    void SetEETFileName(std::string path);
    /// Writes the whole file to `store`, which is open for writing, and closes it: 1, else 0.
    int LoadFile(CNorvaFileUtil* store, CWindow* window);
    /// What the last LoadFile made of the file, but for its path and the format's name; empty when it failed.
    ImportReport const& Report() const { return m_report; }

    static constexpr int kMostElements = 16'000'000;  ///< count of a channel
    static constexpr int kMostLocations = 1'000'000;  ///< M
    static constexpr int kMostChannels = 100'000;
    static constexpr int kMostProfiles = 16'000'000;

protected:
    /// All that LoadFile finds out before it writes: 1, or 0 when the file is none.
    int ReadContents();

    // The steps of LoadFile. Each empties the table that it fills.

    /// Number of channels; 0, with a message, for a descriptor that cannot be used.
    int GetTkiDataChannels();
    /// Locations of a record, M; 0, with a message, above kMostLocations.
    int GetMaxInterpRecords();
    /// Finds the header's end and the profiles: 1; 0 when the file cannot be read, its header has no end, or nothing
    /// comes after it.
    int GetProfiles();
    /// How the store describes a channel.
    NorvaChannelStruct GetNorvaChannels(int channel) const;
    int WriteToEETFile(CNorvaFileUtil* store, CWindow* window);
    int WriteData(CNorvaFileUtil* store, CWindow* window);

    // Values of a record: `length` bytes at `offset` of the buffer, little-endian, by type code.

    int ConvertByteToInt(char const* record, std::size_t offset, std::size_t length, std::string_view type) const;
    long ConvertByteToLong(char const* record, std::size_t offset, std::size_t length, std::string_view type) const;
    float ConvertByteToFloat(char const* record, std::size_t offset, std::size_t length, std::string_view type) const;
    double ConvertByteToDouble(char const* record, std::size_t offset, std::size_t length, std::string_view type) const;
    double ConvertByte(char const* record, std::size_t offset, std::size_t length, std::string_view type) const;
    std::string GetCharacter(char const* record, std::size_t offset, std::size_t length, std::string_view type) const;

    // What was found.

    std::vector<TkiChannelDesc> const& Channels() const { return m_channels; }
    std::vector<TkiProfile> const& Profiles() const { return m_profiles; }
    std::uint64_t HeaderLength() const { return m_headerLength; }  ///< bytes before the end mark
    std::uint64_t RecordLength() const { return m_recordLength; }
    std::uint64_t RecordCount() const { return m_recordCount; }
    int TextChannels() const { return m_textChannels; }
    int ArrayChannels() const { return m_arrayChannels; }
    int OtherChannels() const { return m_otherChannels; }

private:
    Status RequireRoom(CNorvaFileUtil const& store) const;
    ImportReport MakeReport();

    std::string m_tkiPath;
    std::string m_storePath;
    std::uint64_t m_headerLength = 0;
    std::uint64_t m_recordLength = 0;
    std::uint64_t m_recordCount = 0;
    std::uint64_t m_fileLength = 0;
    int m_interpolation = 0;
    int m_textChannels = 0;
    int m_arrayChannels = 0;
    int m_otherChannels = 0;
    std::vector<TkiChannelDesc> m_channels;
    std::vector<TkiProfile> m_profiles;
    std::vector<ReportChannel> m_reported;  ///< what became of the values, one per channel
    ImportReport m_report;
};

}  // namespace norva
