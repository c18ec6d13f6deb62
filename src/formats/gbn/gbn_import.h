#pragma once

#include "exchange/column_files.h"
#include "exchange/import_format.h"
#include "formats/gbn/gbn_columns.h"
#include "formats/gbn/gbn_contents.h"
#include "formats/gbn/gbn_fiducial_file.h"
#include "norva/file_util.h"
#include "platform/files.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace norva {

class CProgressReporter;

/// Imports a GBN file: reads it whole, asks what of it to take, and hands that to the store.
class CGbnImport {
public:
    explicit CGbnImport(ImportJob& job) : m_job(job), m_store(*job.store), m_inputPath(job.inputPath) {}

    /// Imports into the store, which is open for writing; written and closed after a success.
    Status Import();

private:
    Status OpenInput();
    Status Scan();
    Status ObtainSettings();
    /// Writes the temporary files and describes lines and channels to the store.
    Status Prepare();
    Status WriteTemporaryFiles();
    Status Describe();
    /// Hands the values to the store, channel by channel, line by line.
    Status WriteData();
    void MakeRoomForLines();
    Status WriteFiducials();
    Status WriteChannel(std::size_t channel, CProgressReporter& progress);
    ImportReport Report() const;
    ReportChannel ReportOf(std::size_t channel, std::uint64_t locations) const;

    ImportJob& m_job;
    CNorvaFileUtil& m_store;
    std::string const& m_inputPath;
    GbnSettings m_settings;
    CFile m_input;
    std::uint64_t m_length = 0;
    GbnContents m_contents;
    std::vector<GbnColumnTally> m_tallies;  ///< one per channel
    ValueTally m_fiducialTally;
    CColumnFiles m_columns;
    GbnFiducialFile m_fiducials;
    GbnBytes m_lineValues;  ///< room for the values of one channel in any line
};

}  // namespace norva
