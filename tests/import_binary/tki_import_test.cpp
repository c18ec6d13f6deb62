#include "import_binary/tki_column_reader.h"
#include "import_binary/tki_samples.h"
#include "norva/import_export.h"
#include "platform/files.h"
#include "platform/last_error.h"
#include "support/play.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cerrno>
#include <cmath>
#include <map>

namespace norva::test {
namespace {

struct Channel {
    std::string name;
    int count;
    std::string type;
    double scale;
    double offset;
};

std::map<std::string, std::size_t> const kSizes{{"by", 1}, {"si", 1}, {"in", 2}, {"wd", 2},
                                                {"li", 4}, {"fl", 4}, {"db", 8}, {"as", 1}};

std::size_t SizeOf(Channel const& channel) {
    return static_cast<std::size_t>(channel.count) * kSizes.at(channel.type.substr(0, 2));
}

std::string HeaderOf(std::vector<Channel> const& channels) {
    std::string header = "BEGIN\r\n";
    for (Channel const& c : channels) {
        char text[100];
        std::snprintf(text, sizeof text, "%s,%d,%s,%g,%g,u,\r\n", c.name.c_str(), c.count, c.type.c_str(), c.scale,
                      c.offset);
        header += text;
    }
    return header + "END\r\n\x1A";
}

template <typename Number>
double As(char const* bytes) {
    Number number;
    std::memcpy(&number, bytes, sizeof number);
    return static_cast<double>(number);
}

double Sample(Channel const& channel, std::string const& record, std::size_t offset, int index) {
    std::string const type = channel.type.substr(0, 2);
    char const* const bytes = record.data() + offset + static_cast<std::size_t>(index) * kSizes.at(type);
    double const raw = type == "by"   ? As<unsigned char>(bytes)
                       : type == "si" ? As<signed char>(bytes)
                       : type == "in" ? As<std::int16_t>(bytes)
                       : type == "wd" ? As<std::uint16_t>(bytes)
                       : type == "li" ? As<std::int32_t>(bytes)
                       : type == "fl" ? As<float>(bytes)
                                      : As<double>(bytes);
    return raw * static_cast<double>(static_cast<float>(channel.scale)) +
           static_cast<double>(static_cast<float>(channel.offset));
}

std::string Trimmed(std::string const& text) {
    std::size_t const first = text.find_first_not_of(" \t");
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// What the store is told of these records, location by location, the slow and plain way.
std::vector<std::string> Expected(std::vector<Channel> const& channels, std::vector<std::string> const& records,
                                  int locations) {
    std::size_t offset = 0;
    std::vector<std::string> lines(records.size());
    for (Channel const& c : channels) {
        if (c.name == "Line" || c.name == "line") {
            for (std::size_t r = 0; r < records.size(); ++r) lines[r] = Trimmed(records[r].substr(offset, SizeOf(c)));
            break;
        }
        offset += SizeOf(c);
    }
    std::vector<std::string> notes;
    for (std::size_t r = 0, n = 1; r < records.size(); ++r, ++n) {
        if (r + 1 < records.size() && lines[r + 1] == lines[r]) continue;
        notes.push_back("profile " + lines[r] + " " +
                        std::to_string((n - 1) * static_cast<std::size_t>(locations) + 1));
        n = 0;
    }
    notes.push_back("SaveProfileStructure");
    for (Channel const& c : channels) {
        bool const isArray = c.type.ends_with("*");
        bool const isText = c.type == "as";
        bool const isLost = c.type == "fl*" || c.type == "db*" || c.type == "as*";
        notes.push_back("channel " + c.name + " u " +
                        (isLost    ? "-1"
                         : isText  ? "4"
                         : isArray ? "3"
                                   : "1") +
                        (isText || isArray ? " 1 " + std::to_string(c.count) : " 0 1") + " 0 -1 -1 -1");
    }
    notes.insert(notes.end(), {"SaveChannelStructure", "StartWriteData"});
    offset = 0;
    for (Channel const& c : channels) {
        for (std::size_t r = 0; r < records.size(); ++r) {
            bool const isClosing = r + 1 == records.size() || lines[r + 1] != lines[r];
            for (int j = 0; j < (isClosing ? 1 : locations); ++j) {
                if (c.type == "fl*" || c.type == "db*" || c.type == "as*") continue;
                if (c.type == "as") {
                    std::string text = Trimmed(records[r].substr(offset, SizeOf(c)));
                    text.resize(SizeOf(c), ' ');
                    for (char const letter : text) notes.push_back(ValueText(DataType::kText, &letter));
                } else if (c.type.ends_with("*")) {
                    for (int i = 0; i < c.count; ++i) {
                        double const value = std::trunc(Sample(c, records[r], offset, i));
                        bool const fits = value >= -2147483648.0 && value <= 2147483647.0;
                        std::int32_t const element = j > 0 ? -1 : fits ? static_cast<std::int32_t>(value) : INT32_MIN;
                        notes.push_back(ValueText(DataType::kLong, &element));
                    }
                } else {
                    int const spacing = locations / c.count;
                    int const q = j / spacing;
                    int const step = j % spacing;
                    double value = Sample(c, records[r], offset, q);
                    if (step > 0) {
                        double const next = q + 1 < c.count ? Sample(c, records[r], offset, q + 1)
                                                            : Sample(c, records[r + 1], offset, 0);
                        value = value + (next - value) / spacing * step;
                    }
                    notes.push_back(ValueText(DataType::kDouble, &value));
                }
            }
        }
        offset += SizeOf(c);
    }
    notes.insert(notes.end(), {"EndWriteData", "CloseCurFile"});
    return notes;
}

std::vector<std::string> Cut(std::string const& bytes, std::size_t length) {
    std::vector<std::string> records;
    for (std::size_t at = 0; bytes.size() - at >= length; at += length) records.push_back(bytes.substr(at, length));
    return records;
}

TEST(TkiImport, AgreesWithThePlainCalculation) {
    CTemporaryFolder const folder;
    std::string const path = folder / "in.p01";
    EXPECT_TRUE(rc::check([&] {
        std::vector<Channel> channels;
        std::size_t length = 0;
        int samples[2] = {1, *rc::gen::inRange(1, 5)};
        int const total = *rc::gen::inRange(1, 6);
        for (int i = 0; i < total; ++i) {
            Channel c{*rc::gen::element<std::string>("a", "b", "Line", "line2", "line"), 0,
                      *rc::gen::element<std::string>("by", "si", "in", "wd", "li", "fl", "db", "as", "by*", "si*",
                                                     "in*", "wd*", "li*", "fl*", "db*", "as*"),
                      *rc::gen::element(1.0, -0.5, 0.0, 1e9), *rc::gen::element(0.0, 10.0, -2.75)};
            bool const isScalar = c.type.size() == 2 && c.type != "as";
            c.count = isScalar ? *rc::gen::elementOf(std::vector<int>{1, samples[1]}) : *rc::gen::inRange(1, 4);
            if (isScalar) samples[0] = std::max(samples[0], c.count);
            length += SizeOf(c);
            channels.push_back(std::move(c));
        }
        // Few different bytes, so that lines and infinities come about.
        std::string const bytes = *rc::gen::container<std::string>(*rc::gen::inRange<std::size_t>(length, 8 * length),
                                                                   rc::gen::element('A', ' ', '\x80', '\x7F', '\xF0'));
        std::vector<std::string> const records = Cut(bytes, length);
        WriteWholeFile(path, HeaderOf(channels) + bytes);

        CNotedStore store;
        RC_ASSERT(CTkiFileRead(path, "").LoadFile(&store, nullptr) == 1);
        RC_ASSERT(store.notes == Expected(channels, records, samples[0]));

        CTkiProbe probe(path, "");
        probe.GetTkiDataChannels();
        CFile file;
        RC_ASSERT(file.Open(path, CFile::Mode::Read));
        CTkiColumnReader reader(file, {HeaderOf(channels).size(), length, records.size()}, probe.Channels(),
                                {*rc::gen::inRange<std::size_t>(1, 100), *rc::gen::inRange<std::size_t>(1, 60)});
        std::size_t offset = 0;
        for (std::size_t c = 0; c < channels.size(); offset += SizeOf(channels[c++])) {
            RC_ASSERT(reader.Select(c));
            char const* before = nullptr;
            for (std::size_t r = 0; r < records.size(); ++r) {
                char const* const value = reader.Next();
                RC_ASSERT(value != nullptr);
                std::size_t const size = SizeOf(channels[c]);
                RC_ASSERT(std::string(value, size) == records[r].substr(offset, size));
                if (before != nullptr) RC_ASSERT(std::string(before, size) == records[r - 1].substr(offset, size));
                before = value;
            }
            RC_ASSERT(reader.Next() == nullptr);
        }
    }));
}

/// A text, two samples, one sample and an array; the lines A, A, B, B, B.
std::vector<Channel> const kChannels{
    {"line", 2, "as", 0, 0}, {"vlf", 2, "in", 0.5, 10}, {"mag", 1, "db", 1, 0}, {"raw", 2, "by*", 2, 1}};
std::string SampleRecords() {
    CPackedValues values;
    for (int n = 0; n < 5; ++n) {
        values.Text(n < 2 ? " A" : "B", 2).Add(static_cast<std::int16_t>(4 * n)).Add(static_cast<std::int16_t>(-n));
        values.Add(n * n + 0.5).Add(static_cast<unsigned char>(n)).Add(static_cast<unsigned char>(127));
    }
    return values.bytes;
}

TEST(TkiImport, TracesItsCalls) {
    CTemporaryFolder const folder;
    WriteWholeFile(folder / "data.p01", HeaderOf(kChannels) + SampleRecords() + "partial");
    PlayRun const run = Play(R"j({"operation": "import", "level": 1, "answers": [
                                     {"dialog": 4063, "do": [{"double": "Formats", "row": 9}]},
                                     {"open": "{dir}/data.p01"}, {"save": "{dir}/out.nvt"}]})j",
                             {{"dir", folder.Path()}});
    EXPECT_EQ(run.failure, "");
    EXPECT_EQ(run.value, 1);
    ExpectGolden(run, NORVA_TEST_DATA "/import_binary/tki.jsonl", {{"dir", folder.Path()}});
    CNorvaFileUtil store;
    ASSERT_EQ(store.SetFileName(folder / "out.nvt", kReopenStore, nullptr), 1);
    std::vector<double> mag(5);
    ASSERT_EQ(store.ReadColumn(2, 1, 0, 5, mag.data()), 1);
    EXPECT_EQ(mag, (std::vector<double>{4.5, 7, 9.5, 13, 16.5}));
}

TEST(TkiImport, TakesTheWholeRecordsOfAFileCutAnywhere) {
    CTemporaryFolder const folder;
    std::string const header = HeaderOf(kChannels);
    std::string const full = header + SampleRecords();
    for (std::size_t length = 0; length < full.size(); ++length) {
        WriteWholeFile(folder / "in.p01", full.substr(0, length));
        CNotedStore store;
        int const result = CTkiFileRead(folder / "in.p01", "").LoadFile(&store, nullptr);
        std::size_t const records = length < header.size() ? 0 : (length - header.size()) / 16;
        ASSERT_EQ(result, records > 0 ? 1 : 0) << length;
        CTkiProbe probe(folder / "in.p01", "");
        probe.GetTkiDataChannels();
        probe.GetMaxInterpRecords();
        EXPECT_EQ(probe.GetProfiles(), length > header.size() ? 1 : 0) << length;
        if (records == 0) {
            EXPECT_TRUE(store.notes.empty()) << length;
        } else {
            EXPECT_EQ(store.notes, Expected(kChannels, Cut(SampleRecords().substr(0, records * 16), 16), 2)) << length;
        }
    }
}

TEST(TkiImport, EndsWhenSomethingFails) {
    struct Case {
        char const* what;
        std::string refused;
        std::size_t limit;
        int reads;         ///< that succeed
        std::string last;  ///< note
    };
    std::size_t const all = ~0U;
    for (Case const& c : std::vector<Case>{
             {"profiles", "SaveProfileStructure", all, 99, "SaveProfileStructure"},
             {"channels", "SaveChannelStructure", all, 99, "SaveChannelStructure"},
             {"start", "StartWriteData", all, 99, "StartWriteData"},
             {"first value", "", 0, 99, "StartWriteData"},
             {"a later value", "", 3, 99, "'A"},
             {"end", "EndWriteData", all, 99, "EndWriteData"},
             {"close", "CloseCurFile", all, 99, "CloseCurFile"},
             {"header", "", all, 0, ""},
             {"header end", "", all, 1, ""},
             {"lines", "", all, 2, ""},
             {"records", "", all, 3, "StartWriteData"},
         }) {
        CTemporaryFolder const folder;
        WriteWholeFile(folder / "in.p01", HeaderOf(kChannels) + SampleRecords());
        CNotedStore store;
        store.refused = c.refused;
        store.limit = c.limit;
        int reads = 0;
        SetFaultHook([&](FaultPoint point, std::string const&) {
            return point == FaultPoint::Read && ++reads > c.reads ? EIO : 0;
        });
        EXPECT_EQ(CTkiFileRead(folder / "in.p01", "").LoadFile(&store, nullptr), 0) << c.what;
        SetFaultHook({});
        EXPECT_EQ(store.notes.empty() ? "" : store.notes.back(), c.last) << c.what;
    }
    CNotedStore store;
    EXPECT_EQ(CTkiFileRead().LoadFile(&store, nullptr), 0);
    EXPECT_EQ(CTkiFileRead("/none.p01", "").LoadFile(&store, nullptr), 0);
    EXPECT_TRUE(store.notes.empty());
}

TEST(TkiImport, RefusesWhatTheDiskDoesNotTake) {
    CTemporaryFolder const folder;
    std::vector<Channel> const wide{{"a", 1'000'000, "by", 1, 0}, {"b", 1'000'000, "by*", 1, 0}};
    WriteWholeFile(folder / "in.p01", HeaderOf(wide) + std::string(6'000'000, 'x'));
    CNotedStore store;
    ClearLastErrorText();
    EXPECT_EQ(CTkiFileRead(folder / "in.p01", folder / "out.nvt").LoadFile(&store, nullptr), 0);
    EXPECT_TRUE(GetLastErrorText().starts_with("Not enough free space on the disk : " + folder.Path() +
                                               "/\n"
                                               "8000020000008 bytes are needed, "))
        << GetLastErrorText();
    EXPECT_TRUE(store.notes.empty());
}

}  // namespace
}  // namespace norva::test
