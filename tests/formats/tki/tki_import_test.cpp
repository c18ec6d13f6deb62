#include "formats/tki/tki_column_reader.h"
#include "formats/tki/tki_probe.h"
#include "norva/import_export.h"
#include "platform/files.h"
#include "platform/last_error.h"
#include "support/findings.h"
#include "support/play.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cerrno>
#include <cmath>

namespace norva::test {
namespace {

/// Without blanks at its ends.
std::string Bare(std::string const& text) {
    std::size_t const first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// What a store holds of the records, location by location, the slow and plain way.
StoreSample Expected(CTkiProbe& file, std::vector<std::string> const& records) {
    int const m = file.GetMaxInterpRecords();
    std::vector<std::string> lines(records.size());
    std::size_t offset = 0;
    for (TkiChannelDesc const& c : file.Channels()) {
        bool const isLine = c.name == "Line" || c.name == "line";
        for (std::size_t r = 0; r < records.size() && isLine; ++r) lines[r] = Bare(records[r].substr(offset, c.Size()));
        if (isLine) break;
        offset += c.Size();
    }
    StoreSample sample;
    auto const isFirst = [&](std::size_t r) { return r == 0 || lines[r] != lines[r - 1]; };
    for (std::size_t r = 0; r < records.size(); ++r) {
        if (isFirst(r)) sample.lines.push_back({lines[r], 1 - m});
        sample.lines.back().locations += m;
    }
    offset = 0;
    for (TkiChannelDesc const& c : file.Channels()) {
        bool const isText = c.type == "as";
        bool const isArray = c.type.ends_with("*");
        auto const value = [&](std::size_t record, int i) {
            auto const size = static_cast<std::size_t>(c.elementSize);
            std::size_t const at = offset + static_cast<std::size_t>(i) * size;
            return file.ConvertByte(records[record].data(), at, size, c.type) * static_cast<double>(c.scale) +
                   static_cast<double>(c.offset);
        };
        CPackedValues values;
        for (std::size_t r = 0; r < records.size(); ++r) {
            int const locations = r + 1 == records.size() || isFirst(r + 1) ? 1 : m;
            for (int j = 0; j < locations; ++j) {
                if (isText) values.Text(Bare(records[r].substr(offset, c.Size())), c.Size());
                for (int i = 0; i < c.count && isArray; ++i) {
                    double const whole = std::trunc(value(r, i));
                    bool const fits = whole >= -2147483648.0 && whole <= 2147483647.0;
                    values.Add(j > 0 ? -1 : fits ? static_cast<std::int32_t>(whole) : INT32_MIN);
                }
                if (isText || isArray) continue;
                int const s = m / c.count;
                double const a = value(r, j / s);
                double const b = j % s == 0 ? a : j / s + 1 < c.count ? value(r, j / s + 1) : value(r + 1, 0);
                values.Add(j % s == 0 ? a : a + (b - a) / s * (j % s));
            }
        }
        offset += c.Size();
        if (c.type == "fl*" || c.type == "db*" || c.type == "as*") continue;
        int const type = isText ? DataType::kText : isArray ? DataType::kLong : DataType::kDouble;
        bool const isRecord = isText || isArray;
        sample.channels.push_back(
            {{c.name, c.units, type, isRecord ? 1 : 0, 0, isRecord ? c.count : 1, -1, -1, -1, 0}, values.bytes});
    }
    return sample;
}

std::vector<std::string> Cut(std::string const& bytes, std::size_t length) {
    std::vector<std::string> records;
    for (std::size_t at = 0; bytes.size() - at >= length; at += length) records.push_back(bytes.substr(at, length));
    return records;
}

/// What LoadFile makes of in.p01 in the folder; nothing when it fails.
StoreSample Load(CTemporaryFolder const& folder) {
    CNorvaFileUtil store;
    store.SetFileName(folder / "out.nvt", kCreateStore, nullptr);
    bool const isLoaded = CTkiFileRead(folder / "in.p01", folder / "out.nvt").LoadFile(&store, nullptr) == 1;
    store.CloseCurFile();
    bool const isOpen = isLoaded && store.SetFileName(folder / "out.nvt", kReopenStore, nullptr) == 1;
    return isOpen ? ReadSample(store) : StoreSample();
}

TEST(TkiImport, AgreesWithThePlainCalculation) {
    CTemporaryFolder const folder;
    EXPECT_TRUE(rc::check([&] {
        std::string header = "BEGIN\n";
        int const total = *rc::gen::inRange(1, 6);
        for (int i = 0; i < total; ++i) {
            header += *rc::gen::element<std::string>("a,", "b,", "Line,", "line2,", "line,") +
                      std::to_string(*rc::gen::inRange(1, 5)) +
                      *rc::gen::element<std::string>(",by", ",si", ",in", ",wd", ",li", ",fl", ",db", ",as", ",by*",
                                                     ",si*", ",in*", ",wd*", ",li*", ",fl*", ",db*", ",as*") +
                      *rc::gen::element<std::string>(",1,0,u,\n", ",-0.5,-2.75,u,\n", ",,10,u,\n", ",1e9,,u,\n");
        }
        header += "END\n\x1A";
        WriteWholeFile(folder / "in.p01", header);
        CTkiProbe probe(folder / "in.p01", "");
        RC_ASSERT(probe.GetTkiDataChannels() == total);
        std::size_t length = 0;
        for (TkiChannelDesc const& channel : probe.Channels()) length += channel.Size();
        // Few different bytes, so that lines and infinities come about.
        std::string const bytes = *rc::gen::container<std::string>(*rc::gen::inRange<std::size_t>(length, 8 * length),
                                                                   rc::gen::element('A', ' ', '\x80', '\x7F', '\xF0'));
        std::vector<std::string> const records = Cut(bytes, length);
        WriteWholeFile(folder / "in.p01", header + bytes);
        RC_ASSERT(Load(folder) == Expected(probe, records));

        CFile file;
        RC_ASSERT(file.Open(folder / "in.p01", CFile::Mode::Read));
        CTkiColumnReader reader(file, {header.size(), length, records.size()}, probe.Channels(),
                                {*rc::gen::inRange<std::size_t>(1, 100), *rc::gen::inRange<std::size_t>(1, 60)});
        std::size_t offset = 0;
        for (std::size_t c = 0; c < probe.Channels().size(); offset += probe.Channels()[c++].Size()) {
            RC_ASSERT(reader.Select(c));
            std::size_t const size = probe.Channels()[c].Size();
            char const* before = nullptr;
            for (std::size_t r = 0; r < records.size(); ++r) {
                char const* const value = reader.Next();
                RC_ASSERT(value != nullptr);
                RC_ASSERT(std::string(value, size) == records[r].substr(offset, size));
                if (r > 0) RC_ASSERT(std::string(before, size) == records[r - 1].substr(offset, size));
                before = value;
            }
            RC_ASSERT(reader.Next() == nullptr);
        }
    }));
}

/// Records of 20 bytes: a text, two samples, one sample, two arrays; the lines A, A, B, B, B.
std::string const kHeader =
    "BEGIN\r\nline,2,as,,,,\r\nvlf,2,in,0.5,10,pct,\r\nmag,1,db,1,0,nT,\r\n"
    "raw,2,by*,2,1,,\r\nlost,1,fl*,2,1,,\r\nEND\r\n\x1A";
std::string SampleRecords() {
    CPackedValues values;
    for (int n = 0; n < 5; ++n) {
        values.Text(n < 2 ? " A" : "B", 2).Add(static_cast<std::int16_t>(4 * n)).Add(static_cast<std::int16_t>(-n));
        values.Add(n * n + 0.5).Add(static_cast<unsigned char>(n)).Add(static_cast<unsigned char>(127)).Add(0.5F);
    }
    return values.bytes;
}

TEST(TkiImport, TracesItsCalls) {
    CTemporaryFolder const folder;
    WriteWholeFile(folder / "data.p01", kHeader + SampleRecords() + "partial");
    PlayRun const run = Play(R"j({"operation": "import", "level": 1, "answers": [
                                     {"dialog": 4063, "do": [{"double": "Formats", "row": 9}]},
                                     {"open": "{dir}/data.p01"}, {"save": "{dir}/out.nvt"}]})j",
                             {{"dir", folder.Path()}});
    EXPECT_EQ(run.failure, "");
    EXPECT_EQ(run.value, 1);
    ExpectGolden(run, NORVA_TEST_DATA "/tki.jsonl", {{"dir", folder.Path()}});
    EXPECT_EQ(FindingsOfLastImport(kHeader.size() + 107),
              "8 losses; vlf: dropped 2; raw: missing 3; left out 5; cut 1");
}

TEST(TkiImport, TakesTheWholeRecordsOfAFileCutAnywhere) {
    CTemporaryFolder const folder;
    std::string const full = kHeader + SampleRecords();
    for (std::size_t length = 0; length < full.size(); ++length) {
        WriteWholeFile(folder / "in.p01", full.substr(0, length));
        CTkiProbe probe(folder / "in.p01", "");
        probe.GetTkiDataChannels();
        std::size_t const records = length < kHeader.size() ? 0 : (length - kHeader.size()) / 20;
        auto const cut = Cut(SampleRecords().substr(0, records * 20), 20);
        EXPECT_TRUE(Load(folder) == (records > 0 ? Expected(probe, cut) : StoreSample())) << length;
        probe.GetMaxInterpRecords();
        EXPECT_EQ(probe.GetProfiles(), length > kHeader.size() ? 1 : 0) << length;
    }
}

/// Refuses one of its calls.
class CRefusingStore : public CNorvaFileUtil {
public:
    int refused = 0;
    int SaveProfileStructure() override { return refused == 1 ? 0 : CNorvaFileUtil::SaveProfileStructure(); }
    int SaveChannelStructure() override { return refused == 2 ? 0 : CNorvaFileUtil::SaveChannelStructure(); }
    int StartWriteData() override { return refused == 3 ? 0 : CNorvaFileUtil::StartWriteData(); }
    int EndWriteData() override { return refused == 4 ? 0 : CNorvaFileUtil::EndWriteData(); }
    int SaveData(int type, void const* value) override {
        return refused == 10 + type ? 0 : CNorvaFileUtil::SaveData(type, value);
    }
};

TEST(TkiImport, EndsWhenSomethingFails) {
    CTemporaryFolder const folder;
    auto const load = [&folder](CRefusingStore& store) {
        store.SetFileName(folder / "out.nvt", kCreateStore, nullptr);
        EXPECT_EQ(CTkiFileRead(folder / "in.p01", folder / "out.nvt").LoadFile(&store, nullptr), 0) << store.refused;
        store.CloseCurFile();
        EXPECT_EQ(folder.Count(), 1U) << store.refused;
    };
    WriteWholeFile(folder / "in.p01", kHeader + SampleRecords());
    for (int const refused : {1, 2, 3, 4, 11, 13, 14}) {
        CRefusingStore store;
        store.refused = refused;
        load(store);
    }
    CRefusingStore store;
    for (int good = 0; good < 4; ++good) {
        int reads = 0;
        SetFaultHook(
            [&](FaultPoint point, auto const&) { return point == FaultPoint::Read && ++reads > good ? EIO : 0; });
        load(store);
        SetFaultHook({});
    }
    WriteWholeFile(folder / "in.p01", "BEGIN\na,1000000,by,\nb,1000000,by*,\nEND\x1A" + std::string(6'000'000, 'x'));
    ClearLastErrorText();
    load(store);
    EXPECT_NE(GetLastErrorText().find("/\n8000020000008 bytes are needed, "), std::string::npos);
}

}  // namespace
}  // namespace norva::test
