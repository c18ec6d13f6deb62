#pragma once

#include "exchange/column_files.h"
#include "formats/gbn/gbn_columns.h"
#include "formats/gbn/gbn_contents.h"
#include "formats/gbn/gbn_fiducial_file.h"
#include "norva/file_util.h"
#include "platform/files.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace norva {

class CProgressReporter;

/// Imports a GBN file: reads it whole, asks what of it to take, and hands that to the store.
class CGbnImport {
public:
    void SetInputFile(std::string path) { m_inputPath = std::move(path); }

    /// Imports into `store`, which is open for writing. 1 when all is written and the store is closed; 0 when the
    /// user cancelled or something failed: the store is then left to the caller.
    int Import(CNorvaFileUtil* store);

private:
    bool OpenInput();
    bool Scan();
    bool AskForContents();
    /// Writes the temporary files and describes lines and channels to the store.
    bool Prepare();
    bool WriteTemporaryFiles();
    bool Describe();
    /// Hands the values to the store, channel by channel, line by line.
    bool WriteData();
    void MakeRoomForLines();
    bool WriteFiducials();
    bool WriteChannel(std::size_t channel, CProgressReporter& progress);
    /// Hands in the report of the import.
    void Report() const;
    ReportChannel ReportOf(std::size_t channel, std::uint64_t locations) const;

    std::string m_inputPath;
    int m_addFiducial = 1;
    CNorvaFileUtil* m_store = nullptr;
    CFile m_input;
    std::uint64_t m_length = 0;
    GbnContents m_contents;
    std::vector<GbnColumnTally> m_tallies;  ///< one a channel
    ValueTally m_fiducialTally;
    CColumnFiles m_columns;
    GbnFiducialFile m_fiducials;
    GbnBytes m_lineValues;  ///< room for the values of one channel in any line
};

}  // namespace norva
