#include "norva/file_util.h"
#include "norva/import_export.h"
#include "store/store_checksum.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>

namespace norva {
namespace {

using test::CTemporaryFolder;
using test::ReadWholeFile;
using test::WriteWholeFile;

constexpr std::size_t kTrailer = 58;

void PutLittle(std::string& bytes, std::size_t at, std::uint64_t value, std::size_t width) {
    for (; width > 0; --width, value >>= 8) bytes[at++] = static_cast<char>(value & 0xFF);
}

/// Makes the checksum of the text sections and the table fit again, so that what was changed is what gets refused.
std::string Sealed(std::string bytes) {
    std::size_t const trailer = bytes.size() - kTrailer;
    std::uint64_t tableSize = 0;
    std::memcpy(&tableSize, bytes.data() + trailer + 16, sizeof tableSize);
    CStoreChecksum checksum;
    checksum.Add(bytes.data(), bytes.find("DATA START\n") + 11);
    checksum.Add(bytes.data() + trailer - tableSize, tableSize + 40);
    PutLittle(bytes, trailer + 40, checksum.Value(), 8);
    return bytes;
}

bool Opens(std::string const& path) {
    CNorvaFileUtil store;
    return store.SetFileName(path, kReopenStore, nullptr) != 0;
}

TEST(StoreRefusals, CallsThatDoNotAddUpAreRefusedAndLeaveNothing) {
    using Store = CNorvaFileUtil&;
    auto const describe = [](Store store, long locations, int dataType = DataType::kFloat, int arraySize = 1) {
        return store.AddProfileToStructure("L", locations) != 0 &&
               store.AddChannelToStructure("C", "", dataType, 1, arraySize, 0, 0, 0, 0) != 0;
    };
    auto const start = [](Store store) {
        return store.SaveProfileStructure() != 0 && store.SaveChannelStructure() != 0 && store.StartWriteData() != 0;
    };
    auto const write = [](Store store, std::size_t size) {
        return store.WriteHuge(std::string(size, 'x').data(), size) != 0;
    };
    float const single = 1;
    double const number = 1;
    struct Case {
        char const* reason;
        std::function<bool(Store)> calls;
    };
    std::vector<Case> const cases = {
        {"-1 locations", [&](Store s) { return describe(s, -1); }},
        {"more locations than a store can hold",
         [&](Store s) { return describe(s, 1L << 62) && describe(s, 1L << 62); }},
        {"more bytes than a file", [&](Store s) { return describe(s, 1L << 61, DataType::kDouble) && start(s); }},
        {"more bytes than a file",
         [&](Store s) { return describe(s, 1L << 40, DataType::kText, 1 << 30) && start(s); }},
        {"more bytes than a file", [&](Store s) { return s.AddProfileToStructure("L", 1L << 31) && start(s); }},
        {"unknown data type 6", [&](Store s) { return describe(s, 2, 6); }},
        {"unknown data type -2", [&](Store s) { return describe(s, 2, -2); }},
        {"array size 0", [&](Store s) { return describe(s, 2, DataType::kText, 0); }},
        {"more than 1 MB", [&](Store s) { return s.AddProfileToStructure(std::string(2'000'000, 'n'), 1) != 0; }},
        {"before its profiles and channels are saved", [&](Store s) { return s.StartWriteData() != 0; }},
        {"before its profiles and channels are saved",
         [&](Store s) { return describe(s, 2) && s.SaveProfileStructure() != 0 && s.StartWriteData() != 0; }},
        {"described after they were saved", [&](Store s) { return start(s) && describe(s, 2); }},
        {"started already", [&](Store s) { return describe(s, 2) && start(s) && s.StartWriteData() != 0; }},
        {"not started", [&](Store s) { return describe(s, 2) && write(s, 8); }},
        {"not started", [&](Store s) { return describe(s, 2) && s.EndWriteData() != 0; }},
        {"7 bytes of values were handed over, and its profiles and channels need 8",
         [&](Store s) { return describe(s, 2) && start(s) && write(s, 7) && s.EndWriteData() != 0; }},
        {"more bytes of values", [&](Store s) { return describe(s, 2) && start(s) && write(s, 9); }},
        {"more bytes of values",
         [&](Store s) {
             return describe(s, 1) && start(s) && s.SaveData(0, &single) != 0 && s.SaveData(0, &single) != 0;
         }},
        {"data type 1 was handed over for the channel \"C\"",
         [&](Store s) { return describe(s, 2) && start(s) && s.SaveData(1, &number) != 0; }},
        {"data type -1 was handed over",
         [&](Store s) { return describe(s, 4, DataType::kDouble, 9) && start(s) && s.SaveData(-1, &number) != 0; }},
        {"data type 9", [&](Store s) { return describe(s, 0) && start(s) && s.SaveData(9, &number) != 0; }}};
    CTemporaryFolder folder;
    ASSERT_TRUE(test::WriteSampleStore(folder / "a.nvt"));
    std::string const older = ReadWholeFile(folder / "a.nvt");
    for (auto const& [reason, calls] : cases) {
        {
            CNorvaFileUtil store;
            ASSERT_EQ(store.SetFileName(folder / "a.nvt", kCreateStore, nullptr), 1);
            EXPECT_FALSE(calls(store)) << reason;
            EXPECT_NE(store.LastStatus().Text().find(reason), std::string::npos) << store.LastStatus().Text();
            EXPECT_NE(GetLastErrorText().find(reason), std::string::npos) << GetLastErrorText();
            EXPECT_EQ(store.EndWriteData(), 0) << "a refused store must not be completed: " << reason;
            EXPECT_EQ(store.CloseCurFile(), 1);
        }
        EXPECT_EQ(ReadWholeFile(folder / "a.nvt"), older) << reason;
        EXPECT_EQ(folder.Count(), 1U) << reason;
    }
    CNorvaFileUtil store;
    EXPECT_EQ(store.SetFileName(folder.Path(), kCreateStore, nullptr), 0) << "a folder";
    {
        CNorvaFileUtil other;
        ASSERT_EQ(other.SetFileName(folder / "a.nvt", kReopenStore, nullptr), 1);
        std::vector<char> byte(1);
        EXPECT_EQ(other.ReadColumn(0, 0, 0, 1'000'000, byte.data()), 0);
        EXPECT_TRUE(other.LastStatus()) << "there are no such values, but nothing failed";
    }
    EXPECT_EQ(store.LastStatus().Path(), folder.Path()) << "another store's success is not this one's";
    EXPECT_EQ(store.SetFileName(folder / "none/a.nvt", kCreateStore, nullptr), 0);
    EXPECT_EQ(store.SetFileName("", kCreateStore, nullptr), 0);
    EXPECT_EQ(store.SetFileName("/dev/full", kCreateStore, nullptr), 0);
}

TEST(StoreRefusals, AStoreCutAnywhereIsRefused) {
    CTemporaryFolder folder;
    ASSERT_TRUE(test::WriteSampleStore(folder / "a.nvt"));
    std::string const whole = ReadWholeFile(folder / "a.nvt");
    std::size_t const withoutOwnSection = whole.find("DATA END\n") + 9;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        WriteWholeFile(folder / "b.nvt", whole.substr(0, size));
        EXPECT_EQ(Opens(folder / "b.nvt"), size == withoutOwnSection) << "cut to " << size;
    }
    WriteWholeFile(folder / "b.nvt", whole + "\n");
    EXPECT_FALSE(Opens(folder / "b.nvt")) << "with a line feed added";
}

TEST(StoreRefusals, AByteChangedAnywhereIsNoticed) {
    CTemporaryFolder folder;
    ASSERT_TRUE(test::WriteSampleStore(folder / "a.nvt"));
    CNorvaFileUtil store;
    store.SetFileName(folder / "a.nvt", kReopenStore, nullptr);
    store.MarkLocToDelete(0, 3, 1);
    ASSERT_EQ(store.CloseCurFile(), 1);
    std::string const whole = ReadWholeFile(folder / "a.nvt");
    std::size_t const valuesStart = whole.find("DATA START\n") + 11;
    std::size_t const valuesEnd = whole.find("DATA END\n");
    std::size_t const elementsStart = whole.find("STORE START\n") + 12;
    std::size_t const elementsEnd = elementsStart + std::size_t{8} * 3 * 4;
    for (std::size_t at = 0; at < whole.size(); ++at) {
        bool const isValue = (at >= valuesStart && at < valuesEnd) || (at >= elementsStart && at < elementsEnd);
        for (char change : {'\x01', '\x80'}) {
            std::string changed = whole;
            changed[at] = static_cast<char>(changed[at] ^ change);
            WriteWholeFile(folder / "b.nvt", changed);
            bool const isOpen = store.SetFileName(folder / "b.nvt", kReopenStore, nullptr) != 0;
            EXPECT_EQ(isOpen, isValue) << "byte " << at;
            EXPECT_EQ(store.VerifyData(), 0) << "byte " << at;
        }
    }
}

TEST(StoreRefusals, HostileCountsAreRefused) {
    struct Case {
        char const* profiles;
        char const* channels;
        char const* reason;
    };
    Case const cases[] = {
        {"L,2\n", "C,,0,1,0,0,2,-1\n", nullptr},
        {"L,2\n", "C,,1,2000000000,3,0,2,-1\n", nullptr},  // of an array, only the first elements are here
        {"", "", "do not end where"},
        {"L,3\n", "C,,0,1,0,0,2,-1\n", "cut short: its profiles and channels need 12 bytes"},
        {"L,1\n", "C,,0,1,0,0,2,-1\n", "do not end where"},
        {"L,-2\n", "C,,0,1,0,0,2,-1\n", "-2 locations"},
        {"L,+2\n", "C,,0,1,0,0,2,-1\n", "no number of locations"},
        {"L, 2\n", "C,,0,1,0,0,2,-1\n", "no number of locations"},
        {"L,2x\n", "C,,0,1,0,0,2,-1\n", "no number of locations"},
        {"L\n", "C,,0,1,0,0,2,-1\n", "no number of locations"},
        {"L,9223372036854775807\n", "C,,0,1,1,0,2,-1\n", "more bytes than a file"},
        {"L,9223372036854775807\nM,9223372036854775807\n", "", "more locations than a store"},
        {"L,99999999999999999999\n", "C,,0,1,0,0,2,-1\n", "no number of locations"},
        {"L,9000000000000000000\n", "", "more bytes than a file"},
        {"L,1000000000000\n", "C,,0,1,0,0,2,-1\n", "cut short"},
        {"L,4294967296\n", "C,,1,2147483647,4,0,2,-1\nD,,1,2147483647,4,0,2,-1\n", "more bytes than a file"},
        {"L,2\n", "C,,0,99999999999,0,0,2,-1\n", "six numbers"},
        {"L,2\n", "C,,0,0,0,0,2,-1\n", "array size 0"},
        {"L,2\n", "C,,0,1,-1,0,2,-1\n", "unknown data type -1"},
        {"L,2\n", "C,,0,1,7,0,2,-1\n", "unknown data type 7"},
        {"L,2\n", "C,0,1,0,0,2,-1\n", "no units"},
        {"L,2\n", "0,1,0,0,2,-1\n", "six numbers"},
        {"L,2\n", "CHANNELS END\nC,,0,1,0,0,2,-1\n", "where the values should start"},
        {"PROFILES END\nL,2\n", "", "list of channels is missing"}};
    CTemporaryFolder folder;
    for (auto const& [profiles, channels, reason] : cases) {
        std::string const text =
            std::string("PROFILES START\n") + profiles + "PROFILES END\nCHANNELS START\n" + channels;
        for (char const* end : {"CHANNELS END\nDATA START\n", "DATA START\n"}) {
            WriteWholeFile(folder / "b.nvt", text + end + "\1\2\3\4\5\6\7\7DATA END\n");
            EXPECT_EQ(Opens(folder / "b.nvt"), reason == nullptr) << text << end;
            if (reason != nullptr) {
                EXPECT_NE(GetLastErrorText().find(reason), std::string::npos) << text << GetLastErrorText();
            }
        }
    }
    for (char const* text : {"", "PROFILES START", "PROFILES START\r\nPROFILES END\r\n", "x,y\n1,2\n"}) {
        WriteWholeFile(folder / "b.nvt", text);
        EXPECT_FALSE(Opens(folder / "b.nvt")) << text;
    }
    WriteWholeFile(folder / "b.nvt", "PROFILES START\n" + std::string(5'000'000, 'x'));
    EXPECT_FALSE(Opens(folder / "b.nvt")) << "a line that does not end";
    EXPECT_FALSE(Opens(folder.Path())) << "a folder";
    EXPECT_FALSE(Opens(folder / "none.nvt"));
}

TEST(StoreRefusals, HostileOwnSectionsAreRefused) {
    CTemporaryFolder folder;
    ASSERT_TRUE(test::WriteSampleStore(folder / "a.nvt"));
    std::string const whole = ReadWholeFile(folder / "a.nvt");
    std::size_t const trailer = whole.size() - kTrailer;
    std::size_t const table = whole.rfind("\3\0\0\0L10", trailer - 1, 7);
    std::size_t const deleted = table + 4 + 3 + 4;
    struct Case {
        char const* what;
        std::size_t at;
        std::uint64_t value;
        std::size_t width;
        bool isFine;
    };
    for (auto const& [what, at, value, width, isFine] :
         std::vector<Case>{{"flag", table + 7, 0xFFFFFFFF, 4, true},
                           {"name longer than the file", table, 0xFFFFFFFF, 4, false},
                           {"name of 1 MB", table, 1 << 20, 4, false},
                           {"name one byte longer", table, 4, 4, false},
                           {"marks without bits", deleted, 1, 8, false},
                           {"more marks than locations", deleted, 6, 8, false},
                           {"2^63 marks", deleted, std::uint64_t{1} << 63, 8, false},
                           {"version 2", trailer, 2, 8, false},
                           {"no elements", trailer + 8, 0, 8, false},
                           {"2^64 - 1 elements", trailer + 8, ~std::uint64_t{0}, 8, false},
                           {"2^64 - 1 bytes of table", trailer + 16, ~std::uint64_t{0}, 8, false}}) {
        std::string changed = whole;
        PutLittle(changed, at, value, width);
        bool const canSeal = at < trailer;
        WriteWholeFile(folder / "b.nvt", canSeal ? Sealed(changed) : changed);
        EXPECT_EQ(Opens(folder / "b.nvt"), isFine) << what;
    }
    // One mark, in a bit beyond the five locations of the first line.
    std::string marked = whole;
    PutLittle(marked, deleted, 1, 8);
    marked.insert(deleted + 8, 1, '\x20');
    std::uint64_t size = 0;
    std::memcpy(&size, marked.data() + trailer + 1 + 16, sizeof size);
    PutLittle(marked, trailer + 1 + 16, size + 1, 8);
    WriteWholeFile(folder / "b.nvt", Sealed(marked));
    EXPECT_FALSE(Opens(folder / "b.nvt")) << "a mark beyond the end";
    marked[deleted + 8] = '\x10';
    WriteWholeFile(folder / "b.nvt", Sealed(marked));
    EXPECT_TRUE(Opens(folder / "b.nvt")) << GetLastErrorText();
}

}  // namespace
}  // namespace norva
