#include "norva/column_text.h"
#include "norva/file_description.h"
#include "norva/import_export.h"
#include "norva/scripted_toolkit.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace norva::test {

namespace {

CColumnTextDraft DraftOf(std::string const& text, char const* fileName = "in.xyz") {
    CTemporaryFolder const folder;
    WriteWholeFile(folder / fileName, text);
    TextPreview preview;
    EXPECT_TRUE(ReadTextPreview(folder / fileName, "", preview)) << text;
    return CColumnTextDraft(std::move(preview));
}

}  // namespace

TEST(ColumnTextDraft, SaysWhyAChangeCannotBe) {
    std::string const text = "remark: made on Monday\n\n/ East North Mag\n10 20 30\nTie 19010\n5 6 7\n";
    using Change = Status (*)(CColumnTextDraft & draft);
    std::pair<Change, char const*> const cases[] = {
        {[](CColumnTextDraft& draft) { return draft.TakeHeaderLine(1, draft.UsualDelimiters()); },
         "Line 3 has 3 names, the data 4 columns; the first row is \"remark: made on Monday\"."},
        {[](CColumnTextDraft& draft) {
             static_cast<void>(draft.SetSkip(3));
             return draft.TakeHeaderLine(2, draft.UsualDelimiters());
         },
         "Line 4 has 3 names, the data 2 columns; the first row is \"Tie 19010\"."},
        {[](CColumnTextDraft& draft) {
             static_cast<void>(draft.SetSkip(4));
             return draft.TakeHeaderLine(2, draft.UsualDelimiters());
         },
         "Line 4 is made of numbers: \"10 20 30\"."},
        {[](CColumnTextDraft& draft) { return draft.TakeHeaderLine(5, draft.UsualDelimiters()); },
         "There is no line 6 among the first 5 lines with text."},
        {[](CColumnTextDraft& draft) { return draft.SetSkip(5); }, "5 lines cannot be skipped: 0 to 4 can."},
        {[](CColumnTextDraft& draft) { return draft.SetTextSize(0, 0); },
         "Column 1 (\"Ch1\"): a text has 1 character at least."},
        {[](CColumnTextDraft& draft) { return draft.SetTemplate(1, 2); },
         "Column 2 (\"Ch2\"): a template goes with the types date and time."},
        {[](CColumnTextDraft& draft) {
             static_cast<void>(draft.SetType(1, ColumnType::Time));
             return draft.SetTemplate(1, 7);
         },
         "Column 2 (\"Ch2\"): there is no template 7 of a time."},
    };
    for (auto const& [change, reason] : cases) {
        CColumnTextDraft draft = DraftOf(text);
        Status const status = change(draft);
        EXPECT_FALSE(status) << reason;
        EXPECT_EQ(status.Reason(), reason);
    }
}

TEST(ColumnTextDraft, PreviewsEveryFormatThatIsText) {
    // First title or the reason, number of columns.
    std::tuple<char const*, char const*, int> const cases[] = {
        {"survey.xyz", "Ch1", 10},
        {"survey.csv", "Ch1", 11},
        {"seaspy.mag", "Date", 16},
        {"ipr12.dmp", "Ch1", 29},
        {"tracks.gpx", "Ch1", 5},
        {"survey.gbn", "A file of the format Geosoft GBN is no column text.", 0},
        {"none", "No such file or directory", 0}};
    for (auto const& [sample, first, columns] : cases) {
        TextPreview preview;
        Status const status = ReadTextPreview(NORVA_SAMPLES "/" + std::string(sample), "", preview);
        EXPECT_EQ(status.IsGood(), columns > 0) << sample << status.Text();
        if (!status) {
            EXPECT_EQ(status.Reason(), first) << sample;
            continue;
        }
        EXPECT_EQ(preview.path, NORVA_SAMPLES "/" + std::string(sample));
        CColumnTextDraft const draft(std::move(preview));
        EXPECT_EQ(draft.ColumnCount(), columns) << sample;
        EXPECT_EQ(draft.Titles().front(), first) << sample;
    }
}

TEST(ColumnTextDraft, DescribingATextShowsNothing) {
    class CNothingShown : public CScriptedToolkit {
    public:
        CNothingShown() : CScriptedToolkit({}, true, nullptr) {}
        MessageAnswer ShowMessage(MessageRequest const& request) override {
            ADD_FAILURE() << request.text;
            return MessageAnswer::Ok;
        }
        int RunModal(CDialog& dialog) override {
            ADD_FAILURE() << dialog.Title();
            return kButtonCancel;
        }
        void WindowCreated(CModelessDialog& window) override { ADD_FAILURE() << window.Title(); }
    };
    std::pair<char const*, std::string> const cases[] = {
        {"1 2 3\n", ""},
        {" \n", "There is no text in the file"},
        {"\xFF\xFE", "It is UTF-16 text"},
    };
    for (char const* const format : {"ASCII XYZ", "SeaSPY(Marine Magnetics)"}) {
        for (auto const& [text, reason] : cases) {
            CTemporaryFolder const folder;
            WriteWholeFile(folder / "in.xyz", text);
            CNothingShown toolkit;
            CToolkitScope const scope(toolkit);
            FileDescription description;
            bool const isText = std::string_view(format) == "ASCII XYZ";
            EXPECT_EQ(DescribeFile(folder / "in.xyz", {format, {}}, description), isText && reason.empty() ? 1 : 0);
            if (isText) {
                EXPECT_NE(GetLastErrorText().find(reason), std::string::npos) << GetLastErrorText();
            }
        }
    }
}

}  // namespace norva::test
