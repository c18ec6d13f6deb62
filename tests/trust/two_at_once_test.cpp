#include "operations.h"
#include "platform/files.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <set>
#include <thread>

namespace norva {
namespace {

using namespace test;

/// Holds two threads back, where each has made its files and where each has filled them, until both are there.
class CMeetings {
public:
    CMeetings() {
        SetFaultHook([this](FaultPoint point, std::string const& path) {
            if (point == FaultPoint::Open && path.ends_with("GPX_temp.xyz")) Meet(0);
            if (point == FaultPoint::Open && path.ends_with(".1")) Meet(1);
            if (point == FaultPoint::Read && path.ends_with(".0")) Meet(2);
            return 0;
        });
    }
    CMeetings(CMeetings const&) = delete;
    CMeetings& operator=(CMeetings const&) = delete;
    ~CMeetings() { SetFaultHook({}); }

private:
    void Meet(std::size_t where) {
        std::unique_lock lock(m_mutex);
        m_met[where].insert(std::this_thread::get_id());
        m_changed.notify_all();
        m_changed.wait_for(lock, std::chrono::seconds(5), [&] { return m_met[where].size() == 2; });
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::array<std::set<std::thread::id>, 3> m_met;
};

/// Imports a file of a folder into the store of that name there; what was written, or why nothing was.
std::string Import(std::string const& folder, int row, std::string const& input, std::string const& store,
                   std::string const& dialog) {
    std::string script = ImportScript(row, input, dialog);
    script.replace(script.find("out.nvt"), 7, store);
    CScriptedToolkit toolkit(ParseScript(script, {{"dir", folder}}).answers, true, nullptr);
    CToolkitScope const scope(toolkit);
    CNorvaFileUtil util;
    std::string made;
    bool const done = Import_Data_File(&util, made, nullptr, 1) != 0;
    return done ? ReadWholeFile(folder + "/" + store) : GetLastErrorText();
}

std::string Rows(int seed) {
    std::string text;
    for (int row = 0; row < 12'000; ++row) {
        text += std::to_string(row * 7 + seed) + " " + std::to_string((row * 31 + seed) % 1000) + ".25\n";
    }
    return text;
}

std::string Track(int seed) {
    std::string text = "<gpx><trk><name>T</name><trkseg>\n";
    for (int point = 0; point < 3'000; ++point) {
        std::string const minutes = std::to_string(10'000 + (point * 13 + seed) % 60'000);
        text += "<trkpt lat=\"45." + minutes + "\" lon=\"-75." + minutes + "\">\n<ele>" + std::to_string(seed) +
                "</ele>\n<time>2024-01-31T10:00:00Z</time>\n</trkpt>\n";
    }
    return text + "</trkseg></trk></gpx>\n";
}

std::string Records(int seed) {
    std::string bytes;
    for (int n = 0; n < 60'000; ++n) bytes += static_cast<char>(n * seed + n / 256);
    return bytes;
}

TEST(TwoAtOnce, ImportsOfTheSameNameDoNotMix) {
    struct Case {
        int row;
        char const* first;
        char const* second;
        std::string (*bytes)(int seed);
        char const* dialog;
    };
    char const* const layout = R"(, {"dialog": 4004, "do": [{"set": 5002, "to": "3"}, {"click": 5003}, {"click": 5005},
                                  {"click": 5008}, {"click": 5014}, {"click": 5016}, {"click": 1}]})";
    // Names that differ in their extension alone have column files of the same names.
    for (Case const& one : {Case{0, "a/in.xyz", "b/in.xyz", Rows, ""}, Case{10, "a/in.gpx", "b/in.gpx", Track, ""},
                            Case{3, "a/in.bin", "a/in.dat", Records, layout}}) {
        SCOPED_TRACE(one.first);
        CTemporaryFolder const folder;
        for (char const* const name : {"a", "b"}) std::filesystem::create_directory(folder / name);
        WriteWholeFile(folder / one.first, one.bytes(1));
        WriteWholeFile(folder / one.second, one.bytes(2));
        std::string const alone[] = {Import(folder.Path(), one.row, one.first, "a/1.nvt", one.dialog),
                                     Import(folder.Path(), one.row, one.second, "b/2.nvt", one.dialog)};
        ASSERT_TRUE(alone[0].starts_with("PROFILES") && alone[1].starts_with("PROFILES")) << alone[0] << alone[1];
        CMeetings const meetings;
        std::string together[2];
        std::thread other([&] { together[1] = Import(folder.Path(), one.row, one.second, "b/2.nvt", one.dialog); });
        together[0] = Import(folder.Path(), one.row, one.first, "a/1.nvt", one.dialog);
        other.join();
        EXPECT_TRUE(together[0] == alone[0]) << together[0].substr(0, 200);
        EXPECT_TRUE(together[1] == alone[1]) << together[1].substr(0, 200);
        std::size_t files = 0;
        for (char const* const name : {"a", "b"}) {
            for (auto const& entry : std::filesystem::directory_iterator(folder / name))
                files += entry.exists() ? 1 : 0;
        }
        EXPECT_EQ(files, 4U) << "two files and their stores";
    }
}

StoreSample Version(std::int32_t version) {
    CPackedValues values;
    for (int n = 0; n < 20'000; ++n) values.Add(version);
    StoreSample sample;
    sample.lines = {{"L", 20'000}};
    sample.channels = {{{"Version", "", DataType::kLong, 0, 0, 1, 0, 0, -1, 0}, values.bytes}};
    return sample;
}

/// While one thread replaces a store by its next version, a reader has one version from its first value to its last,
/// and never an older one than before.
TEST(TwoAtOnce, AReaderHasOneVersionOfAStoreThatIsReplaced) {
    constexpr std::int32_t kVersions = 60;
    CTemporaryFolder const folder;
    std::string const path = folder / "a.nvt";
    CNorvaFileUtil writer;
    ASSERT_TRUE(WriteSample(writer, path, Version(0)));
    std::atomic<bool> isWritten = true;
    std::atomic<bool> isDone = false;
    std::thread replacing([&] {
        CNorvaFileUtil store;
        for (std::int32_t version = 1; version <= kVersions; ++version) {
            if (!WriteSample(store, path, Version(version))) isWritten = false;
        }
        isDone = true;
    });
    std::int32_t last = 0;
    int reads = 0;
    for (bool goesOn = true; goesOn; ++reads) {
        goesOn = !isDone;
        CNorvaFileUtil store;
        bool const isOpen = store.SetFileName(path, kReopenStore, nullptr) != 0;
        EXPECT_TRUE(isOpen) << GetLastErrorText();
        if (!isOpen) break;
        float single = 0;
        double number = 0;
        int integer = 0, dataType = 0, first = -1;
        long longInteger = 0;
        std::string text;
        int others = 0;
        for (long location = 0; location < 20'000; location += 7) {
            if (store.GetData(0, 0, location, single, number, integer, longInteger, text, dataType) == 0) ++others;
            if (location == 0) first = integer;
            others += integer != first ? 1 : 0;
        }
        EXPECT_EQ(others, 0) << "version " << first;
        EXPECT_EQ(store.VerifyData(), 1) << "version " << first;
        EXPECT_GE(first, last);
        last = first;
    }
    replacing.join();
    EXPECT_TRUE(isWritten);
    EXPECT_EQ(last, kVersions);
    EXPECT_GT(reads, 1);
}

/// Marks belong to the store that was read: they are not put into another one that took its place meanwhile.
TEST(TwoAtOnce, MarksAndSortsAreNotPutIntoAnotherStore) {
    CTemporaryFolder const folder;
    std::string const path = folder / "a.nvt";
    for (bool const sorts : {false, true}) {
        CNorvaFileUtil store, other;
        ASSERT_TRUE(WriteSample(other, path, Version(1)));
        ASSERT_EQ(store.SetFileName(path, kReopenStore, nullptr), 1);
        ASSERT_EQ(store.MarkLocToDelete(0, 5, 1), 1);
        ASSERT_TRUE(WriteSample(other, path, Version(2)));
        std::string const replaced = ReadWholeFile(path);
        if (sorts) {
            EXPECT_EQ(store.SortByChannel(nullptr, 0, 1, -1, 1, -1), 0);
        }
        EXPECT_EQ(store.CloseCurFile(), 0);
        EXPECT_TRUE(ReadWholeFile(path) == replaced);
        EXPECT_EQ(folder.Count(), 1U);
    }
}

}  // namespace
}  // namespace norva
