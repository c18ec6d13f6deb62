#include "platform/system.h"

#include "norva/converters.h"
#include "norva/import_export.h"
#include "platform/files.h"
#include "platform/last_error.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <thread>

namespace norva {
namespace {

using test::CTemporaryFolder;
using test::ReadWholeFile;
using test::WriteWholeFile;

constexpr char const* kViewerKey = "CLSID/{ADB880A6-D8FF-11CF-9377-00AA003B7A11}/InprocServer32";

void WriteRegistry(CTemporaryFolder const& folder, std::string const& key, std::string_view value) {
    std::filesystem::create_directories(folder / key);
    WriteWholeFile(folder / (key + "/default"), value);
}

/// Runs `work` in a process of its own, which ends as programs do; whether it said so.
template <typename Work>
bool InAProcess(Work work) {
    pid_t const child = fork();
    if (child == 0) std::exit(work() ? 0 : 1);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(LastError, KeepsTheFirstReasonOfAThread) {
    ClearLastErrorText();
    SetLastErrorText("first");
    SetLastErrorText("second");
    std::thread([] { EXPECT_EQ(GetLastErrorText(), ""); }).join();
    EXPECT_EQ(GetLastErrorText(), "first");
    ClearLastErrorText();
    EXPECT_EQ(SystemErrorText(ENOSPC), "No space left on device");
    EXPECT_EQ(SystemErrorText(12345), "Unknown error 12345");
}

TEST(Registry, ReadsDefaultValues) {
    CTemporaryFolder const folder;
    setenv("NORVA_REGISTRY", folder.Path().c_str(), 1);
    WriteRegistry(folder, "A/b c", " value \r\n");
    WriteWholeFile(folder / "default", "root");
    EXPECT_EQ(ReadRegistryDefault("A\\b c"), "value");
    EXPECT_EQ(ReadRegistryDefault(""), "root");
    for (char const* const none : {"A", "none", "A\\..\\A\\b c", "A/b c", "\\A\\b c", "A\\\\b c"}) {
        EXPECT_EQ(ReadRegistryDefault(none), "") << none;
    }
    unsetenv("NORVA_REGISTRY");
}

TEST(HelpViewer, ShowsTopicsOrStaysOff) {
    CTemporaryFolder const folder;
    setenv("NORVA_REGISTRY", folder.Path().c_str(), 1);
    setenv("NORVA_TEST_VIEWER_LOG", (folder / "log").c_str(), 1);
    EXPECT_TRUE(InAProcess([&] {
        bool const before = ShowInHelpViewer("one");
        WriteRegistry(folder, kViewerKey, NORVA_TEST_VIEWER);
        return !before && !ShowInHelpViewer("two");
    }));
    EXPECT_FALSE(std::filesystem::exists(folder / "log"));
    EXPECT_TRUE(InAProcess([&] {
        bool const before = ShowInHelpViewer("a.chm::/html/x.htm");
        RemoveFile(folder / kViewerKey + "/default");
        return before && ShowInHelpViewer("b");
    }));
    EXPECT_EQ(ReadWholeFile(folder / "log"), "0 a.chm::/html/x.htm\n0 b\n");
    // A library that is loaded already answers to its own name, which is that of the default viewer.
    for (bool const hasKey : {false, true}) {
        if (hasKey) WriteRegistry(folder, kViewerKey, folder / "none.so");
        EXPECT_TRUE(InAProcess([&] {
            return dlopen(NORVA_TEST_VIEWER, RTLD_NOW) != nullptr && ShowInHelpViewer("default");
        })) << hasKey;
    }
    EXPECT_EQ(LoadEntryPoint(NORVA_TEST_VIEWER, "NoSuchFunction"), nullptr);
    EXPECT_EQ(LoadEntryPoint(folder / "none.so", "HtmlHelp14"), nullptr);
    unsetenv("NORVA_REGISTRY");
}

TEST(TemporaryFolder, IsEachThreadsOwnAndGoneAtTheEnd) {
    CTemporaryFolder const base;
    bool const passed = InAProcess([&] {
        setenv("TMPDIR", base.Path().c_str(), 1);
        std::string first;
        std::string second;
        std::thread other([&] { CUAC::GetUserNorvaToolTempDirectory(second); });
        bool good = CUAC::GetUserNorvaToolTempDirectory(first) == 1;
        other.join();
        good = good && first != second && !IsFolder(second);
        struct stat status {};
        good = good && first.starts_with(base.Path() + "/") && first.ends_with('/') &&
               stat(first.c_str(), &status) == 0 && (status.st_mode & 0777) == 0700;
        WriteWholeFile(first + "left.0", "x");
        // A child ends without taking its parent's folder along, and has one of its own.
        good = good && InAProcess([&] { return CUAC::GetUserNorvaToolTempDirectory(second) == 1 && second != first; });
        good = good && std::filesystem::exists(first + "left.0") && base.Count() == 1;
        std::filesystem::remove_all(first);
        return good && CUAC::GetUserNorvaToolTempDirectory(first) == 1 && IsFolder(first);
    });
    EXPECT_TRUE(passed);
    EXPECT_EQ(base.Count(), 0U);
}

TEST(TemporaryFolder, TellsWhyItCannotBeHad) {
    EXPECT_TRUE(InAProcess([] {
        setenv("TMPDIR", "/none/such", 1);
        ClearLastErrorText();
        std::string folder;
        return CUAC::GetUserNorvaToolTempDirectory(folder) == 0 && folder.empty() &&
               GetLastErrorText().starts_with("Couldn't create the temporary folder : /none/such/") &&
               GetLastErrorText().ends_with("No such file or directory");
    }));
}

}  // namespace
}  // namespace norva
