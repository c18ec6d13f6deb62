#pragma once

#include "formats/column_text/column_guess.h"
#include "formats/column_text/header_labels.h"
#include "norva/dialog.h"
#include "norva/values.h"

#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// "Import: Set Channels" (template 4003): how a text file's columns are to be read.
///
/// The setters come first, then Prepare(), then DoModal(). "Continue" leaves the settings in the list given to
/// SetColumnSettings; without such a list the dialog closes as if cancelled.
class CAsciiImportDlg : public CDialog {
public:
    CAsciiImportDlg();

    void SetColumnSettings(std::vector<NorvaChannelStruct>* columns) { m_columns = columns; }
    /// The first lines of the file that are not empty.
    void SetPreviewLines(std::vector<std::string> lines) { m_lines = std::move(lines); }
    void SetCsv(int csv) { m_csv = csv; }
    void SetGravityMeterMode(int mode) { m_gravityMeterMode = mode; }
    /// `layout` 1 without coordinates, 2 with; `headerText` holds the labels of the fields, separated by spaces.
    void SetSeaSpy(int layout, std::string headerText);

    /// Finds the header lines and guesses the columns.
    void Prepare();

    /// Column whose values name the survey lines; -1 for none.
    int LabelColumn() const { return m_labelColumn; }
    /// Preview lines that are left out at the start of the file.
    int SkipCount() const { return m_skipCount; }

protected:
    void OnInitDialog() override;
    void OnEvent(DialogEvent const& event) override;

private:
    bool IsSeaSpy() const { return m_seaSpyLayout > 0; }
    std::size_t ColumnCount() const { return m_labels.size(); }

    void SplitPreview();
    void ResetLabels(std::size_t count);
    void Guess();
    void ApplyClasses();
    void SplitLabels();
    void PresetSeaSpy();
    void FillTemplates();

    void ChangeSkip(int count);
    void Relabel(int headerLine);
    void ChooseType(int radio);
    void ChooseText(std::size_t column);
    void ChooseNumberFormat(std::size_t column);
    /// Makes the column a date or time; the index of the template that its first value fits, or -1.
    int ChooseTemplate(std::size_t column, int displayFormat);
    void ChooseGeographic(std::size_t column);
    void MarkLineLabel(bool marks);
    void SetTextSize(std::string const& text);
    void SetDelimiters();

    void ShowHeader();
    void ShowPreview();
    void ShowLabels();
    /// Shows the settings of the selected column.
    void ShowColumn();
    bool IsAllowed(int radio) const;

    /// Settings of the column selected in the preview; null for none.
    NorvaChannelStruct* SelectedColumn();

    std::vector<NorvaChannelStruct>* m_columns = nullptr;
    std::vector<std::string> m_lines;
    int m_csv = 0;
    int m_gravityMeterMode = 0;
    int m_seaSpyLayout = -1;
    std::string m_seaSpyHeader;

    int m_skipCount = 0;
    int m_headerCount = 0;  ///< preview lines shown as file header
    int m_firstSkip = 0;    ///< first number of the "Skip first" box
    int m_labelColumn = -1;
    bool m_isEdited = false;
    TokenRows m_rows;  ///< preview lines from the skip count on
    std::vector<std::string> m_labels;
    std::vector<ColumnClass> m_classes;
    HeaderDelimiters m_delimiters;
    std::vector<std::string> m_dateTemplates;
    std::vector<int> m_dateCodes;
    std::vector<std::string> m_timeTemplates;
    std::vector<int> m_timeCodes;
};

}  // namespace norva
