#pragma once

#include "exchange/import_format.h"
#include "formats/column_text/profile_detection.h"
#include "norva/column_text.h"
#include "norva/converters.h"
#include "platform/line_reader.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

class CColumnFiles;
class CProgressWindow;
class CRowConverter;
class CRowReport;

/// Imports delimited column text, one reading a line, into a store. One object serves one import.
class CAsciiFileImport {
public:
    explicit CAsciiFileImport(ImportJob& job);
    CAsciiFileImport(CAsciiFileImport const&) = delete;
    CAsciiFileImport& operator=(CAsciiFileImport const&) = delete;

    /// The text is the job's input, or what that was converted to.
    Status Run(std::string const& textPath);

private:
    Status ReadHead(std::string const& textPath);
    /// The settings of the job, checked, or those that the dialog opens with.
    Status TakeSettings(CColumnTextDraft& draft) const;
    Status FindProfiles(CProgressWindow& window);
    Status ConvertRows(CProgressWindow& window, CColumnFiles& files);
    /// Counts the lines that the pass over the data leaves out at the start of the file, and notes what they hide.
    std::uint64_t ReadSkippedLines(CRowConverter const& converter, CRowReport& report);
    void NoteMarker(std::string_view marker, CRowReport& report) const;

    ImportJob& m_job;
    CLineReader m_file;
    TextPreview m_preview;
    ColumnTextSettings m_settings;
    std::uint64_t m_dataStart = 0;
    std::vector<ReportLine> m_profiles;
    CNorvaDateTime m_dateTime;
    CNorvaGeographic m_geographic;
};

}  // namespace norva
