#include "platform/files.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

namespace norva {
namespace {

using test::CTemporaryFolder;
using test::ReadWholeFile;
using test::WriteWholeFile;
using InPlace = CReplacementFile::InPlace;

/// 0, or why it failed.
int Replace(std::string const& path, std::string_view text, InPlace inPlace = InPlace::Allowed) {
    CReplacementFile file;
    bool const done = file.Open(path, inPlace) && file.Write(text) && file.Commit();
    EXPECT_EQ(done, file.Error() == 0);
    return file.Error();
}

/// Runs `work` as a user whom permissions hold back, in a process of its own; what it returns is 0 to 255.
template <typename Work>
int AsOrdinaryUser(Work work) {
    pid_t const child = fork();
    if (child == 0) {
        bool const ordinary = geteuid() != 0 || (setgid(65534) == 0 && setuid(65534) == 0);
        _exit(ordinary ? work() : 255);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(ReplacementFile, TakesItsPlaceAtTheEnd) {
    CTemporaryFolder const folder;
    std::string const path = folder / std::string(255, 'n');
    WriteWholeFile(path, "older");
    chmod(path.c_str(), 0640);
    CReplacementFile file;
    std::string expected;
    ASSERT_TRUE(file.Open(path)) << file.Error();
    for (unsigned const size : {0U, 1U, 262'143U, 1U, 262'144U, 3U, 262'141U, 262'145U, 1'000'000U, 7U}) {
        ASSERT_TRUE(file.Write(std::string(size, static_cast<char>('a' + expected.size() % 26))));
        expected.append(size, static_cast<char>('a' + expected.size() % 26));
    }
    EXPECT_EQ(file.Written(), expected.size());
    EXPECT_EQ(ReadWholeFile(path), "older");
    EXPECT_TRUE(file.Commit());
    EXPECT_TRUE(ReadWholeFile(path) == expected);
    EXPECT_EQ(static_cast<int>(std::filesystem::status(path).permissions()), 0640);
    EXPECT_FALSE(file.Commit()) << "there is nothing more to commit";
    {
        CReplacementFile forgotten;
        ASSERT_TRUE(forgotten.Open(path) && forgotten.Write("new"));
    }
    EXPECT_TRUE(ReadWholeFile(path) == expected);
    mode_t const mask = umask(027);
    EXPECT_EQ(Replace(folder / "fresh", "x"), 0);
    umask(mask);
    EXPECT_EQ(static_cast<int>(std::filesystem::status(folder / "fresh").permissions()), 0640);
    EXPECT_EQ(folder.Count(), 2U);
}

TEST(ReplacementFile, AFailureAtAnyCallKeepsTheOlderFile) {
    CTemporaryFolder const folder;
    std::string const path = folder / "file";
    WriteWholeFile(path, "older");
    std::string const text(600'000, 'n');
    int failed = 0;
    for (int error = EIO; error != 0; ++failed) {
        int calls = 0;
        SetFaultHook([&](FaultPoint point, std::string const& name) {
            return name.starts_with(path + "/") || (point != FaultPoint::Remove && calls++ == failed) ? EIO : 0;
        });
        error = Replace(path, text);
        SetFaultHook({});
        EXPECT_TRUE(ReadWholeFile(path) == (error == 0 ? text : "older")) << "call " << failed;
        EXPECT_EQ(folder.Count(), 1U) << "call " << failed;
        ASSERT_LT(failed, 20);
    }
    EXPECT_GE(failed, 5) << "open, write, sync, rename";
}

TEST(ReplacementFile, LeavesLinksAndRefusesFolders) {
    CTemporaryFolder const folder;
    std::filesystem::create_directory(folder / "sub");
    WriteWholeFile(folder / "sub/file", "older");
    std::filesystem::create_symlink("sub/file", folder / "link");
    std::filesystem::create_symlink(folder / "link", folder / "chain");
    std::filesystem::create_symlink("sub/none", folder / "dangling");
    std::filesystem::create_symlink("loop", folder / "loop");
    EXPECT_EQ(Replace(folder / "chain", "new"), 0);
    EXPECT_EQ(Replace(folder / "dangling", "new too"), 0);
    EXPECT_EQ(ReadWholeFile(folder / "sub/file"), "new");
    EXPECT_EQ(ReadWholeFile(folder / "sub/none"), "new too");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "chain") && std::filesystem::is_symlink(folder / "dangling"));
    EXPECT_EQ(Replace(folder / "loop", "x"), ELOOP);
    EXPECT_EQ(Replace(folder / "sub", "x"), EISDIR);
    EXPECT_EQ(Replace(folder / "none/file", "x"), ENOENT);
    EXPECT_EQ(Replace("", "x"), ENOENT);
    EXPECT_EQ(folder.Count(), 5U);
}

TEST(ReplacementFile, WritesDevicesAndPipesInPlace) {
    EXPECT_EQ(Replace("/dev/null", "x", InPlace::Never), 0);
    EXPECT_EQ(Replace("/dev/full", "x"), ENOSPC);
    EXPECT_EQ(Replace("/dev/full", std::string(300'000, 'x')), ENOSPC);

    // A pipe takes what it has room for, and a timer interrupts the writer.
    CTemporaryFolder const folder;
    std::string const pipe = folder / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::string text;
    while (text.size() < 1'000'000) text += std::to_string(text.size());
    pid_t const reader = fork();
    if (reader == 0) _exit(ReadWholeFile(pipe) == text ? 0 : 1);
    struct sigaction before {};
    struct sigaction interrupt {};
    interrupt.sa_handler = [](int) {};
    sigaction(SIGALRM, &interrupt, &before);
    itimerval timer{{0, 200}, {0, 200}};
    setitimer(ITIMER_REAL, &timer, nullptr);
    EXPECT_EQ(Replace(pipe, text), 0);
    timer = {};
    setitimer(ITIMER_REAL, &timer, nullptr);
    sigaction(SIGALRM, &before, nullptr);
    int status = 0;
    EXPECT_EQ(waitpid(reader, &status, 0), reader);
    EXPECT_EQ(status, 0);
}

TEST(ReplacementFile, KeepsToPermissions) {
    struct Case {
        mode_t folderMode, fileMode;
        InPlace inPlace;
        int error;
    };
    for (Case const& c : {Case{0777, 0666, InPlace::Never, 0}, Case{0555, 0666, InPlace::Allowed, 0},
                          Case{0555, 0666, InPlace::Never, EACCES}, Case{0777, 0444, InPlace::Allowed, EACCES},
                          Case{01777, 0666, InPlace::Allowed, 0}, Case{01777, 0666, InPlace::Never, EPERM}}) {
        if (c.folderMode == 01777 && geteuid() != 0) continue;  // files of another user are root's to make
        CTemporaryFolder const folder;
        std::string const path = folder / "file";
        WriteWholeFile(path, "older");
        chmod(path.c_str(), c.fileMode);
        chmod(folder.Path().c_str(), c.folderMode);
        EXPECT_EQ(AsOrdinaryUser([&] { return Replace(path, "new", c.inPlace); }), c.error) << c.folderMode;
        EXPECT_EQ(ReadWholeFile(path), c.error == 0 ? "new" : "older") << c.folderMode;
        EXPECT_EQ(folder.Count(), 1U) << c.folderMode;
        chmod(folder.Path().c_str(), 0777);
    }
}

TEST(ReplacementFile, IsEmptyWhenItWasGivenUpInPlace) {
    CTemporaryFolder const folder;
    std::string const path = folder / "file";
    WriteWholeFile(path, "older");
    SetFaultHook([&](FaultPoint point, std::string const& name) {
        return point == FaultPoint::Open && name != path ? EROFS : 0;
    });
    CReplacementFile file;
    ASSERT_TRUE(file.Open(path));
    EXPECT_TRUE(file.TemporaryPath().empty());
    EXPECT_TRUE(file.Write(std::string(300'000, 'x')));
    file.Abandon();
    SetFaultHook({});
    EXPECT_TRUE(std::filesystem::is_empty(path)) << "half a file would pass for a whole one";
}

}  // namespace
}  // namespace norva
