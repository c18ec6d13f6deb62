#include "import_text/text_import_run.h"
#include "platform/files.h"

#include <cerrno>
#include <filesystem>

namespace norva::test {

namespace {

/// Makes the file layer fail until the end of its scope.
class CFault {
public:
    explicit CFault(FaultHook hook) { SetFaultHook(std::move(hook)); }
    CFault(CFault const&) = delete;
    CFault& operator=(CFault const&) = delete;
    ~CFault() { SetFaultHook(nullptr); }
};

/// Stops an import by a message, and says whether the folder kept what stood there: the input and an older store.
void ExpectRefused(CTextImportRun& import, std::string const& message) {
    std::string const text = message + import.folder.Path() + "/" + import.fileName;
    WriteWholeFile(import.folder / "out.nvt", "older");
    std::size_t const count = import.folder.Count();
    EXPECT_EQ(import.Run().value, 0) << message;
    auto const messages = import.run.Texts("message");
    ASSERT_EQ(messages.size(), 1U) << message;
    EXPECT_EQ(messages[0].substr(0, text.size()), text);
    EXPECT_EQ(ReadWholeFile(import.folder / "out.nvt"), "older") << message;
    EXPECT_EQ(import.folder.Count(), count) << message;
}

}  // namespace

TEST(BadInput, FilesThatCannotBeReadAreRefusedBeforeTheDialog) {
    struct {
        char const* what;
        char const* text;  ///< null: no such file
        char const* message;
    } const cases[] = {
        {"missing", nullptr, "Couldn't open the file : "},
        {"empty", "", "There is no text in the file : "},
        {"blank", " \n\t\r\n\n", "There is no text in the file : "},
        {"UTF-16, little-endian",
         "\xFF\xFE"
         "1",
         "Couldn't read the file : "},
        {"UTF-16, big-endian", "\xFE\xFF", "Couldn't read the file : "},
    };
    for (auto const& test : cases) {
        SCOPED_TRACE(test.what);
        CTextImportRun import;
        import.opensDialog = false;
        import.answers = R"(, {"message": ")" + std::string(test.message) + "{dir}/in.xyz";
        if (std::string_view(test.what).starts_with("UTF")) {
            import.answers += R"(\nIt is UTF-16 text; save it as UTF-8 or ASCII text first.)";
        }
        import.answers += R"(", "answer": "ok"})";
        if (test.text != nullptr) WriteWholeFile(import.folder / "in.xyz", test.text);
        ExpectRefused(import, test.message);
    }
    CTextImportRun import;
    import.opensDialog = false;
    import.answers = R"(, {"message": "Couldn't open the file : {dir}/in.xyz", "answer": "ok"})";
    std::filesystem::create_directory(import.folder / "in.xyz");
    ExpectRefused(import, "Couldn't open the file : ");
}

TEST(BadInput, TooManyColumnsAreRefused) {
    std::string row;
    for (int i = 0; i < 40'000; ++i) row += "1 ";
    CTextImportRun import;
    import.opensDialog = false;
    import.answers =
        R"(, {"message": "Couldn't read the file : {dir}/in.xyz\nA line of it has more than 32767 columns.", "answer": "ok"})";
    WriteWholeFile(import.folder / "in.xyz", "1 2\n" + row + "\n");
    ExpectRefused(import, "Couldn't read the file : ");
}

TEST(BadInput, FilesWithoutRowsAreRefusedAfterTheDialog) {
    for (char const* const text : {"/ only\n\\ comments", "LINE 5\n", "/"}) {
        SCOPED_TRACE(text);
        CTextImportRun import;
        import.answers = R"(, {"message": "There are no data rows in the file : {dir}/in.xyz", "answer": "ok"})";
        WriteWholeFile(import.folder / "in.xyz", text);
        ExpectRefused(import, "There are no data rows in the file : ");
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
    char const* const noFile = R"({"operation": "import", "answers": [{"dialog": 4063, "do": [{"click": 1}]},
                                   {"open": null}]})";
    char const* const noStore = R"({"operation": "import", "answers": [{"dialog": 4063, "do": [{"click": 1}]},
                                    {"open": "{dir}/in.xyz"}, {"save": null}]})";
    char const* const noFormat = R"({"operation": "import", "answers": [{"dialog": 4063, "do": [{"close": true}]}]})";
    CTextImportRun import;
    for (char const* const script : {noFormat, noFile, noStore}) {
        PlayRun const run = Play(script, {{"dir", import.folder.Path()}});
        EXPECT_EQ(run.failure, "");
        EXPECT_EQ(run.value, 0) << script;
        EXPECT_TRUE(run.Events("store").empty()) << script;
    }
    WriteWholeFile(import.folder / "out.nvt", "older");
    import.actions = R"({"click": 2})";
    EXPECT_EQ(import.Run("1 2 3\n").value, 0);
    EXPECT_EQ(import.run.Events("store").size(), 2U);  // SetFileName and CloseCurFile
    EXPECT_EQ(ReadWholeFile(import.folder / "out.nvt"), "older");
    EXPECT_EQ(import.folder.Count(), 2U);
}

TEST(BadInput, FailuresOfTheSystemEndTheImport) {
    struct {
        FaultPoint point;
        char const* path;  ///< part of the name of the file that fails
        int skipped;       ///< calls that go well before
        int error;
        char const* message;  ///< null: none is shown
        bool opensDialog;
    } const cases[] = {
        {FaultPoint::Open, "in.xyz", 0, EACCES, "Couldn't open the file : ", false},
        {FaultPoint::Read, "in.xyz", 0, EIO, "Couldn't read the file : ", false},
        {FaultPoint::Read, "in.xyz", 3, EIO, "Couldn't read the file : ", true},
        {FaultPoint::Read, "in.xyz", 6, EIO, "Couldn't read the file : ", true},
        {FaultPoint::Open, "in.1", 0, ENOSPC, nullptr, true},
        {FaultPoint::Write, "in.1", 0, ENOSPC, "Couldn't write the file : ", true},
        {FaultPoint::Write, "in.1", 1, ENOSPC, "Couldn't write the file : ", true},
    };
    std::string text;
    for (int i = 0; i < 100'000; ++i) text += "1 2 3\n";
    for (auto const& test : cases) {
        SCOPED_TRACE(std::string(test.path) + " " + std::to_string(test.skipped));
        CTextImportRun import;
        WriteWholeFile(import.folder / "in.xyz", text);
        WriteWholeFile(import.folder / "out.nvt", "older");
        int calls = 0;
        CFault const fault([&](FaultPoint point, std::string const& path) {
            return point == test.point && path.ends_with(test.path) && calls++ >= test.skipped ? test.error : 0;
        });
        import.opensDialog = test.opensDialog;
        PlayRun const run = Play(R"({"operation": "import", "answers": [{"open": "{dir}/in.xyz"},
                                     {"save": "{dir}/out.nvt"}]})",
                                 {{"dir", import.folder.Path()}}, {.defaults = true});
        EXPECT_EQ(run.value, 0);
        auto const messages = run.Texts("message");
        ASSERT_EQ(messages.size(), test.message == nullptr ? 0U : 1U);
        if (test.message != nullptr) {
            EXPECT_TRUE(messages[0].starts_with(test.message)) << messages[0];
        }
        EXPECT_EQ(run.Events("dialog").size(), test.opensDialog ? 2U : 1U);
        EXPECT_EQ(ReadWholeFile(import.folder / "out.nvt"), "older");
        EXPECT_EQ(import.folder.Count(), 2U);
    }
}

}  // namespace norva::test
