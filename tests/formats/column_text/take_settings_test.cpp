#include "formats/column_text/ascii_import_dlg.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <functional>

namespace norva::test {

namespace {

char const* const kSurvey =
    "/ X:m Y:m Date Time Mag:nT Note\n"
    "/ second\n"
    "1.5 12 2007/01/02 12:30:15.5 10.25 ok\n"
    "2.5 *  2007/01/03 12:30:16.5 1.5 basalt\n";

}  // namespace

// A template's settings reach the dialog as a person's acts: those acts give the same settings in another dialog.
TEST(TakeSettings, ActsLeadToTheSettingsAndCanBeRecorded) {
    std::pair<char const*, std::function<void(CColumnTextDraft&)>> const cases[] = {
        {"nothing", [](CColumnTextDraft&) {}},
        {"rows", [](CColumnTextDraft& draft) { static_cast<void>(draft.SetSkip(3)); }},
        {"label", [](CColumnTextDraft& draft) { draft.SetLabelColumn(1); }},
        {"types",
         [](CColumnTextDraft& draft) {
             static_cast<void>(draft.SetType(0, ColumnType::Text));
             static_cast<void>(draft.SetType(1, ColumnType::Skipped));
             static_cast<void>(draft.SetType(2, ColumnType::Text));
             static_cast<void>(draft.SetType(4, ColumnType::Double));
             static_cast<void>(draft.SetTextSize(0, 20));
         }},
        {"templates",
         [](CColumnTextDraft& draft) {
             static_cast<void>(draft.SetTemplate(2, DateTemplates().codes.back()));
             static_cast<void>(draft.SetTemplate(3, TimeTemplates().codes.front()));
         }},
        {"names",
         [](CColumnTextDraft& draft) {
             draft.SetName(4, "Field, total");
             draft.SetUnits(4, "");
             draft.SetUnits(0, "ft");
         }},
    };
    CTemporaryFolder const folder;
    WriteWholeFile(folder / "s.xyz", kSurvey);
    TextPreview preview;
    ASSERT_TRUE(ReadTextPreview(folder / "s.xyz", "ASCII XYZ", preview));
    for (auto const& [what, change] : cases) {
        SCOPED_TRACE(what);
        CColumnTextDraft wanted(preview);
        change(wanted);
        CColumnTextDraft first(preview);
        CAsciiImportDlg dialog(first);
        dialog.Open();
        std::vector<DialogEvent> acts;
        Status const status =
            dialog.TakeSettings(wanted.Settings(), [&acts](DialogEvent const& event) { acts.push_back(event); });
        EXPECT_TRUE(status) << status.Text();
        EXPECT_EQ(first.Settings(), wanted.Settings());
        CColumnTextDraft second(preview);
        CAsciiImportDlg replayed(second);
        replayed.Open();
        std::string why;
        for (DialogEvent const& act : acts) EXPECT_TRUE(replayed.Perform(act, why)) << why;
        EXPECT_EQ(second.Settings(), wanted.Settings());
        EXPECT_EQ(acts.empty(), wanted.Settings() == CColumnTextDraft(preview).Settings());
    }
}

TEST(TakeSettings, OfAnotherTableAreRefusedAndChangeNothing) {
    CTemporaryFolder const folder;
    WriteWholeFile(folder / "s.xyz", kSurvey);
    TextPreview preview;
    ASSERT_TRUE(ReadTextPreview(folder / "s.xyz", "ASCII XYZ", preview));
    CColumnTextDraft draft(preview);
    CAsciiImportDlg dialog(draft);
    dialog.Open();
    ColumnTextSettings settings = draft.Settings();
    settings.columns.pop_back();
    EXPECT_FALSE(dialog.TakeSettings(settings, nullptr));
    settings.skip = 40;
    EXPECT_FALSE(dialog.TakeSettings(settings, nullptr));
    EXPECT_EQ(draft.Settings(), CColumnTextDraft(preview).Settings());
}

}  // namespace norva::test
