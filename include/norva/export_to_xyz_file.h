#pragma once

#include "norva/api.h"
#include "norva/exporter_base.h"
#include "norva/file_util.h"

#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// Writes chosen lines and channels of a store as XYZ text: a header line of column labels, then one row per location,
/// the columns right-justified in fields of 20 characters.
class NORVA_API CExportToXYZFile : public CExporterBase {
public:
    CExportToXYZFile(CNorvaFileUtil* store, std::string outputFile, CWindow* owner);
    virtual ~CExportToXYZFile();

    // These only record their arguments; lines and channels are chosen in the dialog.
    void SetInputEETFile(std::string inputFile);
    void SetInputEETFile(std::string inputFile, int channelCount, int const* channels);
    void SetChannelIndex(int channelCount, int const* channels);
    void SetOutputXYZFile(std::string outputFile, int option);

    /// 1 when the file was written; 0 when the dialog was cancelled or the file could not be written.
    int ExportToXYZFile();
    /// The same as the library's table of types asks for it: the job says who chooses.
    Status Run(ExportJob& job);

protected:
    /// Also finds out whether some channel has units.
    void FillChannelArray(std::vector<std::string>& names);
    /// Blanks, ".", ":" and line breaks of a line name become "_".
    std::string AdjustProfileName(std::string_view name) const;
    /// Column label of a full channel name, with or without its units, blanks as "_".
    std::string AdjustChannelName(std::string_view fullName) const;
    /// `text` right-justified, or centred, in `width` characters; a longer text whole.
    std::string RFormatString(std::string_view text, int width) const;
    std::string MFormatString(std::string_view text, int width) const;

private:
    class RowsToText;
    std::string HeaderLine(ExportJob& job) const;
    Status WriteLines(ExportJob& job);

    std::string m_inputFile;
    int m_option = 0;
    int m_exportUnits = 0;
    int m_channelCount = 0;
    int const* m_channels = nullptr;
};

}  // namespace norva
