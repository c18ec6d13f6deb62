#include "platform/files.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <utility>

namespace norva {
namespace {

using test::CTemporaryFolder;
using test::ReadWholeFile;
using test::WriteWholeFile;
using Mode = CFile::Mode;

TEST(Files, OpensAsTheModeSays) {
    CTemporaryFolder const folder;
    std::string const path = folder / "file";
    std::string const pipe = folder / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    struct Case {
        std::string path;
        Mode mode;
        bool stands;  ///< a file of four bytes, before
        int error;
        std::string after;  ///< what it holds once "x" was written
    };
    for (auto const& [name, mode, stands, error, after] :
         std::vector<Case>{{path, Mode::Read, true, 0, "four"},
                           {path, Mode::Read, false, ENOENT, ""},
                           {folder.Path(), Mode::Read, false, EISDIR, ""},
                           {pipe, Mode::Read, false, ESPIPE, ""},
                           {"/dev/zero", Mode::Read, false, ESPIPE, ""},
                           {path, Mode::CreateReadWrite, true, 0, "x"},
                           {folder.Path(), Mode::CreateReadWrite, false, EISDIR, ""},
                           {path, Mode::CreateNew, false, 0, "x"},
                           {path, Mode::CreateNew, true, EEXIST, "four"},
                           {path + std::string("\0", 1), Mode::CreateNew, true, EINVAL, "four"},
                           {path, Mode::WriteInPlace, true, 0, "x"},
                           {path, Mode::Update, true, 0, "xour"},
                           {path, Mode::Update, false, ENOENT, ""},
                           {"/dev/null", Mode::Update, false, ESPIPE, ""}}) {
        SCOPED_TRACE(name + " in mode " + std::to_string(static_cast<int>(mode)));
        RemoveFile(path);
        if (stands) WriteWholeFile(path, "four");
        CFile file;
        EXPECT_EQ(file.Open(name, mode), error == 0);
        EXPECT_EQ(file.Error(), error);
        EXPECT_EQ(file.IsOpen() && file.Write("x", 1), error == 0 && mode != Mode::Read);
        EXPECT_TRUE(file.Close());
        EXPECT_EQ(ReadWholeFile(path), after);
    }
}

TEST(Files, ReadsAndWritesAtPlaces) {
    CTemporaryFolder const folder;
    CFile file;
    ASSERT_TRUE(file.Open(folder / "file", Mode::CreateReadWrite));
    ASSERT_TRUE(file.Write("0123456789", 10) && file.Seek(2) && file.Write("ab", 2));
    std::string text(20, '-');
    std::size_t got = 0;
    EXPECT_TRUE(file.Read(text.data(), text.size(), got));
    EXPECT_EQ(text.substr(0, got), "456789");
    EXPECT_TRUE(file.ReadAt(1, text.data(), 4, got));
    EXPECT_EQ(text.substr(0, got), "1ab4");
    EXPECT_TRUE(file.ReadAt(100, text.data(), 4, got));
    EXPECT_EQ(got, 0U);
    EXPECT_FALSE(file.Seek(~0ULL));
    EXPECT_FALSE(file.ReadAt(~0ULL - 1, text.data(), 4, got));
    EXPECT_EQ(file.Error(), EINVAL);
    CFile moved = std::move(file);
    std::uint64_t size = 0;
    EXPECT_TRUE(moved.Size(size));
    EXPECT_EQ(size, 10U);
    EXPECT_EQ(moved.Error(), 0);
    EXPECT_FALSE(file.IsOpen());  // NOLINT(bugprone-use-after-move): that is what is tried
}

TEST(Files, FailsWhereTheHookSays) {
    CTemporaryFolder const folder;
    std::string const path = folder / "file";
    for (FaultPoint const faulty : {FaultPoint::Open, FaultPoint::Write, FaultPoint::Sync, FaultPoint::Seek,
                                    FaultPoint::Read, FaultPoint::Remove}) {
        SetFaultHook(
            [&](FaultPoint point, std::string const& name) { return point == faulty && name == path ? EDQUOT : 0; });
        CFile file;
        char byte = 'x';
        std::size_t got = 0;
        bool const whole = file.Open(path, Mode::CreateReadWrite) && file.Write(&byte, 1) && file.Sync() &&
                           file.Seek(0) && file.Read(&byte, 1, got);
        EXPECT_EQ(file.Error(), faulty == FaultPoint::Remove ? 0 : EDQUOT);
        EXPECT_EQ(whole, faulty == FaultPoint::Remove);
        EXPECT_EQ(whole ? RemoveFile(path) : EDQUOT, EDQUOT);
        EXPECT_EQ(file.ReadAt(0, &byte, 1, got), faulty != FaultPoint::Read && faulty != FaultPoint::Open);
        SetFaultHook({});
    }
}

TEST(Files, TellsFilesApart) {
    CTemporaryFolder const folder;
    WriteWholeFile(folder / "a", "");
    WriteWholeFile(folder / "b", "");
    std::filesystem::create_symlink("a", folder / "link");
    EXPECT_TRUE(FileExists(folder.Path()) && IsFolder(folder.Path()) && !IsFolder(folder / "a"));
    EXPECT_TRUE(
        IsSameFile(folder / "a", folder / "../" + folder.Path().substr(folder.Path().rfind('/') + 1) + "/link"));
    EXPECT_FALSE(IsSameFile(folder / "a", folder / "b") || IsSameFile(folder / "none", folder / "none"));
    EXPECT_EQ(RemoveFile(folder.Path()), EISDIR);
    EXPECT_EQ(RemoveFile(folder / "link"), 0);
    EXPECT_EQ(RemoveFile(folder / "link"), ENOENT);
    EXPECT_TRUE(FileExists(folder / "a"));
}

}  // namespace
}  // namespace norva
