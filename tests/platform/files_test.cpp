#include "platform/files.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

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
    CFile made;
    ASSERT_TRUE(made.Open(folder / "file", Mode::CreateReadWrite));
    CFile file = std::move(made);
    ASSERT_TRUE(file.Write("0123456789", 10) && file.Seek(2) && file.Write("ab", 2));
    char text[20];
    std::size_t got = 0;
    EXPECT_TRUE(file.Read(text, sizeof text, got));
    EXPECT_EQ(std::string_view(text, got), "456789");
    EXPECT_TRUE(file.ReadAt(8, text, 4, got));
    EXPECT_EQ(std::string_view(text, got), "89");
    EXPECT_FALSE(file.Seek(~0ULL) || file.ReadAt(~0ULL - 1, text, 4, got));
    EXPECT_EQ(file.Error(), EINVAL);
    std::uint64_t size = 0;
    EXPECT_TRUE(file.Size(size) && file.Error() == 0);
    EXPECT_EQ(size, 10U);
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
