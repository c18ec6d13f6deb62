#pragma once

#include "formats/column_text/row_converter.h"
#include "norva/converters.h"
#include "norva/file_description.h"
#include "norva/file_util.h"
#include "platform/line_reader.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

class CAsciiImportDlg;
class CColumnFiles;
class CProgressDlg;
class CProgressReporter;

/// A survey line as a text file gives it.
struct ProfileRecord {
    std::string name;
    long rowCount = 0;
};

/// A line of the preview and the file offset just after it.
struct PreviewLine {
    std::string text;
    std::uint64_t offset = 0;
};

/// Imports delimited column text, one reading a line, into a store; a second run imports SeaSPY logs.
///
/// Results are 1 for success and 0 for failure or cancellation. One object serves one import: LoadFileInfo, then
/// ImportAsciiFile; or LoadSeaSPYFileInfo, then ImportSeaSPYFile.
class CAsciiFileImport {
public:
    CAsciiFileImport() = default;
    CAsciiFileImport(CAsciiFileImport const&) = delete;
    CAsciiFileImport& operator=(CAsciiFileImport const&) = delete;

    /// 1: values are separated by commas and tabs and may hold spaces.
    void SetCsv(int csv) { m_csv = csv; }
    /// 1: "-" in a header line counts as a space when the columns are relabelled from it.
    void SetGravityMeterMode(int mode) { m_gravityMeterMode = mode; }

    /// Opens the file and reads the preview.
    int LoadFileInfo(std::string const& path);
    /// Asks for the settings of the columns and writes the file into the store, which is open for writing.
    int ImportAsciiFile(CNorvaFileUtil* store);

    /// After LoadFileInfo, instead of an import: the columns as they are guessed, the lines by their markers.
    int Describe(FileDescription& description);
    /// Instead of LoadSeaSPYFileInfo and an import. Asks nothing.
    int DescribeSeaSPY(std::string const& path, FileDescription& description);

    /// Opens the file named to LoadFileInfo; shows why it cannot.
    int OpenFile();
    void CloseFile();
    void ReadPreviewLines();
    std::vector<PreviewLine> const& Preview() const { return m_preview; }

    /// Rows that begin before the end of preview line `count` are left out. 0, or a count that is not below the
    /// number of preview lines, leaves none out.
    void SetSkipCount(int count);

    /// The profile name that a marker line gives; empty for none.
    static std::string GetLineName(std::string_view markerLine);
    /// Finds the profiles by marker and comment lines.
    void GetProfilesByMarker();
    /// Finds the profiles by the changes of a column's value. A row without that column belongs to the profile
    /// around it, so that the profiles' rows add up to the rows of the file.
    void GetProfilesByLabel(int labelColumn);
    /// An empty name and 0 for an index outside the list.
    void GetProfileRecord(int index, std::string& name, long& rowCount) const;
    int ProfileCount() const { return static_cast<int>(m_profiles.size()); }

    /// Opens the file, decides its layout and asks whether interpolated coordinates are wanted.
    int LoadSeaSPYFileInfo(std::string const& path);
    int ImportSeaSPYFile(CNorvaFileUtil* store);
    /// Sets the layout by the first record; 0 when there is none or it has no sensor readings.
    int CheckSeaSPYHeader();
    void ReadSeaSPYPreview();
    /// A record as plain fields, by the layout.
    std::string CleanSeaSPYLine(std::string_view record) const;
    /// "07.123" (year, day of the year) as a decimal year.
    static double GetSeaSPYDate(std::string_view field);
    /// "12:30:15.5", at fixed positions, as hours.
    static double GetSeaSPYTime(std::string_view field);

private:
    bool CheckPreview() const;
    void ShowReadError() const;
    /// The columns that the dialog, not prepared yet, would show.
    FileDescription::Table DescribeColumns(CAsciiImportDlg& dialog);

    // The steps of a run that both formats share.
    void PrepareDialog(CAsciiImportDlg& dialog);
    void DescribeChannels(CNorvaFileUtil& store);
    bool StartWriting(CProgressDlg& window, CNorvaFileUtil& store) const;
    bool CreateColumnFiles(CColumnFiles& files) const;
    std::uint64_t CountSkippedLines();
    bool ConvertRows(CProgressReporter& progress, CColumnFiles& files);
    bool ConvertRecords(CProgressReporter& progress, CColumnFiles& files);
    bool PassSucceeded(CColumnFiles const& files) const;
    bool HandOverColumns(CProgressReporter& progress, CColumnFiles& files, CNorvaFileUtil& store) const;
    int FinishStore(CNorvaFileUtil& store);

    int m_csv = 0;
    int m_gravityMeterMode = 0;
    int m_labelColumn = -1;
    int m_seaSpyLayout = -1;  ///< 1 without coordinates, 2 with
    long m_seaSpyRecordCount = 0;
    int m_interpolatedCoordinates = 0;

    CLineReader m_file;
    std::string m_path;
    std::uint64_t m_dataStart = 0;
    std::vector<ProfileRecord> m_profiles;
    std::vector<NorvaChannelStruct> m_columns;
    std::vector<PreviewLine> m_preview;
    CNorvaDateTime m_dateTime;
    CNorvaGeographic m_geographic;
};

}  // namespace norva
