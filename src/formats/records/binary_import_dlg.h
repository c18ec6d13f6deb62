#pragma once

#include "norva/dialog.h"
#include "norva/settings.h"

#include <cstdint>
#include <string>

namespace norva {

/// "Binary File Import" (template 4004): the channels of a record, how many records, how they are cut into lines.
class CBinaryImportDlg : public CDialog {
public:
    /// `settings` are edited in place and complete after "Continue"; they start without channels. `fileLength` is in
    /// bytes.
    CBinaryImportDlg(std::string const& inputPath, RecordSettings& settings, std::uint64_t fileLength);

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
    /// Takes over what is typed, which nothing tells of.
    void TakeNumbers();
    /// Shows what is wrong with the settings, if something is.
    bool CheckSettings();

    RecordSettings& m_settings;
    std::uint64_t m_fileLength;
};

}  // namespace norva
