#pragma once

#include "exchange/column_files.h"
#include "exchange/value_tally.h"
#include "formats/records/binary_record_reader.h"
#include "norva/file_util.h"
#include "platform/files.h"

#include <cstdint>
#include <string>
#include <vector>

namespace norva {

/// Turns a file of fixed-length binary records, laid out as a person says in a dialog, into the lines and channels of
/// a store.
class CBinaryXYZImport {
public:
    void SetInputFileName(std::string path) { m_inputPath = std::move(path); }
    /// `store` is open for writing and is closed on success; `owner` gets the notices (may be null). 1, or 0 when
    /// the import was cancelled or failed: the store is then left open and without its values.
    int Import(CNorvaFileUtil& store, CWindow* owner);

    /// Lines that a store takes from here at most: their names are kept in memory.
    static constexpr std::int64_t kMostLines = 16'000'000;

private:
    /// Percentages of the work for the owner window.
    class CNotices;

    bool OpenInput();
    bool AskSettings();
    bool IsRoom(CNorvaFileUtil const& store) const;
    bool Describe(CNorvaFileUtil& store) const;
    bool ImportData(CNorvaFileUtil& store, CWindow* owner);
    bool ReadRecords(CColumnFiles& columns, CNotices& notices);
    bool ConvertBlock(CBinaryRecordReader const& reader, char const* block, std::size_t records, CColumnFiles& columns);
    float FiducialOf(std::int64_t record) const;
    bool WriteFiducial(CNorvaFileUtil& store) const;
    bool WriteChannels(CColumnFiles& columns, CNorvaFileUtil& store, CNotices& notices) const;
    void Report() const;
    std::vector<ReportChannel> ReportChannels() const;

    std::string m_inputPath;
    CFile m_file;
    std::uint64_t m_length = 0;  ///< of the file
    std::uint64_t m_bytesRead = 0;
    std::int64_t m_records = 0;
    std::int64_t m_pointsPerLine = 0;
    std::vector<BinaryChannelDef> m_channels;
    struct Values {
        ValueTally tally;
        std::uint64_t present = 0;  ///< in the file
    };
    std::vector<Values> m_values;  ///< one a channel
    bool m_addFiducial = true;
    int m_frequency = 1;
};

}  // namespace norva
