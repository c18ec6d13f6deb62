#pragma once

#include "formats/records/binary_record.h"
#include "norva/dialog.h"

#include <cstdint>
#include <string>
#include <vector>

namespace norva {

/// "Binary File Import" (template 4004): the channels of a record, how many records, how they are cut into lines.
class CBinaryImportDlg : public CDialog {
public:
    /// `channels` is emptied when the dialog opens and filled by it; `fileLength` is in bytes.
    CBinaryImportDlg(std::string const& inputPath, std::vector<BinaryChannelDef>& channels, std::uint64_t fileLength);

    // What the person left with "Continue".
    std::int64_t TotalRecords() const;
    std::int64_t PointsPerLine() const;
    bool AddFiducial() const;
    int Frequency() const;  ///< samples a second
    /// The file is a whole number of records.
    bool LengthFits() const { return m_lengthFits; }

    /// Rows that "Set" makes at most.
    static constexpr int kMostChannels = 10000;

protected:
    void OnInitDialog() override;
    void OnEvent(DialogEvent const& event) override;

private:
    void OnClick(int control);
    void SetChannelCount();
    void SetFormatsOfSelected();
    void WriteBack(DialogEvent const& event);
    void FillList();
    void RefreshState();
    bool IsReady() const;
    /// Shows what is wrong with the settings, if something is.
    bool CheckSettings() const;

    std::vector<BinaryChannelDef>& m_channels;
    std::uint64_t m_fileLength;
    bool m_lengthFits = false;
};

}  // namespace norva
