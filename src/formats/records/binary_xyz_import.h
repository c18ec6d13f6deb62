#pragma once

#include "exchange/column_files.h"
#include "exchange/import_format.h"
#include "exchange/value_tally.h"
#include "formats/records/binary_record_reader.h"
#include "norva/file_util.h"
#include "platform/files.h"

#include <cstdint>
#include <vector>

namespace norva {

/// Turns a file of fixed-length binary records into the lines and channels of a store.
class CBinaryXYZImport {
public:
    explicit CBinaryXYZImport(ImportJob& job) : m_job(job), m_store(*job.store) {}

    /// The store is open for writing and is closed on success; after a failure it is left open and without its values.
    Status Import();

    /// Lines that a store takes from here at most: their names are kept in memory.
    static constexpr std::int64_t kMostLines = 16'000'000;

private:
    /// Percentages of the work for the owner window.
    class CNotices;

    Status OpenInput();
    Status ObtainSettings();
    Status RequireRoom() const;
    Status Describe();
    Status ImportData();
    Status ReadRecords(CColumnFiles& columns, CNotices& notices);
    bool ConvertBlock(CBinaryRecordReader const& reader, char const* block, std::size_t records, CColumnFiles& columns);
    float FiducialOf(std::int64_t record) const;
    Status WriteFiducial();
    Status WriteChannels(CColumnFiles& columns, CNotices& notices);
    ImportReport Report() const;
    std::vector<ReportChannel> ReportChannels() const;
    std::int64_t Records() const { return *m_settings.records; }
    std::int64_t PointsPerLine() const { return *m_settings.pointsPerLine; }

    ImportJob& m_job;
    CNorvaFileUtil& m_store;
    RecordSettings m_settings;
    CFile m_file;
    std::uint64_t m_length = 0;  ///< of the file
    std::uint64_t m_bytesRead = 0;
    struct Values {
        ValueTally tally;
        std::uint64_t present = 0;  ///< in the file
    };
    std::vector<Values> m_values;  ///< one per channel
};

}  // namespace norva
