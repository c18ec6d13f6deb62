#include "formats/column_text/text_import_run.h"
#include "platform/files.h"

#include <cerrno>
#include <filesystem>

namespace norva::test {

namespace {

constexpr char const* kUtf16 = R"(\nIt is UTF-16 text; save it as UTF-8 or ASCII text first.)";

/// Imports what stands in the folder, which ends with one message: `message`, the path and `rest`. What stood in the
/// folder, an older store too, is to be as it was.
void ExpectRefused(CTextImportRun& import, std::string const& message, std::string const& rest = "") {
    import.answers = R"(, {"message": ")" + message + "{dir}/in.xyz" + rest + R"(", "answer": "ok"})";
    WriteWholeFile(import.folder / "out.nvt", "older");
    std::size_t const count = import.folder.Count();
    EXPECT_EQ(import.Run().value, 0) << message;
    EXPECT_EQ(ReadWholeFile(import.folder / "out.nvt"), "older") << message;
    EXPECT_EQ(import.folder.Count(), count) << message;
}

}  // namespace

TEST(BadInput, RefusedFilesLeaveNothing) {
    std::string wide = "1 2\n";
    for (int i = 0; i < 40'000; ++i) wide += "1 ";
    char const* const noText = "There is no text in the file : ";
    char const* const noRows = "There are no data rows in the file : ";
    std::tuple<std::string, bool, char const*, char const*> const cases[] = {
        {"", false, noText, ""},
        {" \n\t\r\n\n", false, noText, ""},
        {"\xFF\xFE"
         "1",
         false, "Couldn't read the file : ", kUtf16},
        {"\xFE\xFF", false, "Couldn't read the file : ", kUtf16},
        {wide, false, "Couldn't read the file : ", R"(\nRow 2 has more than 32767 columns.)"},
        {"/ only\n\\ comments", true, noRows, ""},
        {"LINE 5\n", true, noRows, ""}};
    for (auto const& [text, opensDialog, message, rest] : cases) {
        CTextImportRun import;
        import.opensDialog = opensDialog;
        WriteWholeFile(import.folder / "in.xyz", text);
        ExpectRefused(import, message, rest);
    }
    for (bool const isFolder : {false, true}) {
        CTextImportRun import;
        import.opensDialog = false;
        if (isFolder) std::filesystem::create_directory(import.folder / "in.xyz");
        ExpectRefused(import, "Couldn't open the file : ");
    }
}

TEST(BadInput, LongLinesAndOneLineAreRead) {
    for (std::string const& text : {std::string("1 2 3"), "1 2" + std::string(3'000'000, ' ') + "3\n",
                                    "1 2 " + std::string(3'000'000, '3') + "\n"}) {
        CTextImportRun import;
        EXPECT_EQ(import.Run(text).value, 1) << text.size();
        EXPECT_EQ(import.Values(0), "1") << text.size();
    }
}

TEST(BadInput, CancelLeavesNothing) {
    CTextImportRun import;
    std::string const format = R"({"dialog": 4063, "do": [{"click": 1}]}, )";
    std::string const input = format + R"({"open": "{dir}/in.xyz"}, )";
    std::pair<std::string, std::size_t> const cases[] = {
        {R"({"dialog": 4063, "do": [{"close": true}]})", 0},
        {format + R"({"open": null})", 0},
        {input + R"({"save": null})", 0},
        {input + R"({"save": "{dir}/out.nvt"}, {"dialog": 4003, "do": [{"click": 2}]})", 2},  // opened and closed
    };
    WriteWholeFile(import.folder / "in.xyz", "1 2 3\n");
    WriteWholeFile(import.folder / "out.nvt", "older");
    for (auto const& [answers, storeCalls] : cases) {
        PlayRun const run =
            Play(R"({"operation": "import", "answers": [)" + answers + "]}", {{"dir", import.folder.Path()}});
        EXPECT_EQ(run.failure, "");
        EXPECT_EQ(run.value, 0) << answers;
        EXPECT_EQ(run.Events("store").size(), storeCalls) << answers;
        EXPECT_EQ(ReadWholeFile(import.folder / "out.nvt"), "older");
        EXPECT_EQ(import.folder.Count(), 2U);
    }
}

TEST(BadInput, FailuresOfTheSystemEndTheImport) {
    // Which call fails, on a file of that name, after how many that go well; the message, none where it is silent.
    std::tuple<FaultPoint, char const*, int, int, char const*> const cases[] = {
        {FaultPoint::Open, "in.xyz", 0, EACCES, "Couldn't open the file : "},
        {FaultPoint::Read, "in.xyz", 1, EIO, "Couldn't read the file : "},
        {FaultPoint::Read, "in.xyz", 3, EIO, "Couldn't read the file : "},
        {FaultPoint::Read, "in.xyz", 6, EIO, "Couldn't read the file : "},
        {FaultPoint::Open, "in.1", 0, ENOSPC, nullptr},
        {FaultPoint::Write, "in.1", 0, ENOSPC, "Couldn't write the file : "},
        {FaultPoint::Write, "in.1", 1, ENOSPC, "Couldn't write the file : "}};
    std::string text;
    for (int i = 0; i < 100'000; ++i) text += "1 2 3\n";
    for (auto const& [failing, name, skipped, error, message] : cases) {
        SCOPED_TRACE(std::string(name) + " " + std::to_string(skipped));
        CTemporaryFolder const folder;
        WriteWholeFile(folder / "in.xyz", text);
        WriteWholeFile(folder / "out.nvt", "older");
        int left = skipped;
        SetFaultHook([&, point = failing, file = name, number = error](FaultPoint at, std::string const& path) {
            return at == point && path.ends_with(file) && left-- <= 0 ? number : 0;
        });
        PlayRun const run = Play(R"({"operation": "import", "answers": [{"open": "{dir}/in.xyz"},
                                     {"save": "{dir}/out.nvt"}]})",
                                 {{"dir", folder.Path()}}, {.defaults = true});
        SetFaultHook(nullptr);
        EXPECT_EQ(run.value, 0);
        auto const messages = run.Texts("message");
        ASSERT_EQ(messages.size(), message == nullptr ? 0U : 1U);
        EXPECT_TRUE(message == nullptr || messages[0].starts_with(message)) << messages[0];
        EXPECT_EQ(ReadWholeFile(folder / "out.nvt"), "older");
        EXPECT_EQ(folder.Count(), 2U);
    }
}

}  // namespace norva::test
