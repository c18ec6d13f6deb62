#include "formats/column_text/column_text_format.h"
#include "formats/column_text/set_channels_template.h"
#include "formats/column_text/xyz_export_type.h"
#include "formats/gbn/gbn_export_type.h"
#include "formats/gbn/gbn_format.h"
#include "formats/gbn/gbn_import_template.h"
#include "formats/native/native_export_type.h"
#include "formats/worksheet/worksheet_export_type.h"
#include "harness.h"
#include "sample_of_bytes.h"
#include "store/value_rules.h"
#include "support/store_text.h"

#include <cmath>

using namespace norva;

namespace {

constexpr char const* kSource = "source.nvt";

/// Writes the store of the bytes and exports it to `output`; false when it is refused.
bool WriteAndExport(fuzz::CSampleOfBytes const& source, ExportType const& type, std::string const& output) {
    CNorvaFileUtil store;
    if (!test::WriteSample(store, fuzz::Folder() / kSource, source.sample)) {
        store.CloseCurFile();
        fuzz::CleanUp({});
        return false;
    }
    if (fuzz::Export(type, kSource, output)) return true;
    if (source.IsPlain()) fuzz::Broken("a plain store is not exported");
    fuzz::CleanUp({kSource});
    return false;
}

double AsNumber(int dataType, char const* bytes) {
    auto const as = [bytes](auto value) {
        std::memcpy(&value, bytes, sizeof value);
        return value;
    };
    if (dataType == DataType::kFloat) return as(0.0F) == kNoDataFloat ? kNoDataDouble : as(0.0F);
    if (dataType == DataType::kDouble) return as(0.0);
    if (dataType == DataType::kShort) return as(std::int16_t{}) == kNoDataShort ? kNoDataDouble : as(std::int16_t{});
    return as(std::int32_t{}) == kNoDataLong ? kNoDataDouble : as(std::int32_t{});
}

/// Law: the imported store has the lines and channels of the source, and each value is the source's, no-data, or what
/// `isLike` takes for it.
template <typename IsLike>
void ExpectLike(test::StoreSample const& source, IsLike isLike) {
    CNorvaFileUtil store;
    if (store.SetFileName(fuzz::kStoreName, kReopenStore, nullptr) == 0) fuzz::Broken("the store does not open");
    test::StoreSample const read = test::ReadSample(store);
    if (read.lines.size() != source.lines.size()) fuzz::Broken("lines lost");
    std::size_t locations = 0;
    for (std::size_t line = 0; line < read.lines.size(); ++line) {
        locations += static_cast<std::size_t>(read.lines[line].locations);
        if (read.lines[line].locations != source.lines[line].locations) fuzz::Broken("locations lost");
    }
    if (read.channels.size() != source.channels.size()) fuzz::Broken("channels lost");
    for (std::size_t c = 0; c < read.channels.size(); ++c) {
        NorvaChannelStruct const& from = source.channels[c].description;
        NorvaChannelStruct const& to = read.channels[c].description;
        if (from.dataType == DataType::kText || to.dataType == DataType::kText) continue;
        // Of an array its first element.
        std::string const& before = source.channels[c].values;
        std::string const& after = read.channels[c].values;
        for (std::size_t at = 0; at < locations; ++at) {
            double const was = AsNumber(from.dataType, before.data() + at * (before.size() / locations));
            double const is = AsNumber(to.dataType, after.data() + at * (after.size() / locations));
            bool const isSame = was == is || is == kNoDataDouble || !std::isfinite(was) || isLike(from, was, is);
            if (!isSame) fuzz::Broken(test::NumberText(was) + " became " + test::NumberText(is));
        }
    }
}

/// Every column as a double.
ScriptAnswer Doubles(std::size_t columns) {
    std::vector<ScriptAction> actions;
    for (std::size_t column = 0; column < columns; ++column) {
        actions.push_back(fuzz::SelectColumn(ids::SetChannels::kPreview, static_cast<int>(column)));
        actions.push_back(fuzz::Click(ids::SetChannels::kDouble));
    }
    actions.push_back(fuzz::Click(kButtonOk));
    return fuzz::DialogAnswer(4003, actions);
}

bool HasText(test::StoreSample const& sample) {
    return std::ranges::any_of(sample.channels,
                               [](auto const& c) { return c.description.dataType == DataType::kText; });
}

}  // namespace

NORVA_FUZZ_TARGET(round_trip_xyz) {
    fuzz::CSampleOfBytes const source(bytes);
    if (!WriteAndExport(source, kXyzExport, "out.xyz")) return;
    std::string const text = test::ReadWholeFile("out.xyz");
    bool const isPlain = source.IsPlain() && !HasText(source.sample);
    fuzz::CleanUp({kSource, "out.xyz"});
    bool const isImported = fuzz::Import(
        {.format = kAsciiXyzFormat, .fileName = "in.xyz", .answers = {Doubles(source.sample.channels.size())}}, text);
    if (!isImported && isPlain) fuzz::Broken("what was exported is not imported");
    if (!isImported) return;
    if (isPlain) {
        ExpectLike(source.sample, [](NorvaChannelStruct const& channel, double was, double is) {
            if (channel.displayFormat > DisplayFormat::kFixed) return true;  // not written as a plain number
            bool const isSet = channel.displayFormat == DisplayFormat::kFixed && channel.decimalPlaces >= 0;
            double const step = std::pow(10.0, isSet ? -channel.decimalPlaces : -6);
            return std::abs(was - is) <= step * 0.5000001 + std::abs(was) * 1e-6;
        });
    }
    fuzz::CleanUp({fuzz::kStoreName});
}

NORVA_FUZZ_TARGET(round_trip_gbn) {
    fuzz::CSampleOfBytes const source(bytes);
    if (!WriteAndExport(source, kGbnExport, "out.gbn")) return;
    std::string const file = test::ReadWholeFile("out.gbn");
    fuzz::CleanUp({kSource, "out.gbn"});
    ScriptAnswer const contents =
        fuzz::DialogAnswer(4059, {fuzz::Click(ids::GbnImport::kFiducial), fuzz::Click(kButtonOk)});
    bool const isImported = fuzz::Import({.format = kGbnFormat, .fileName = "in.gbn", .answers = {contents}}, file);
    if (!isImported && source.IsPlain()) fuzz::Broken("what was exported is not imported");
    if (!isImported) return;
    if (source.IsPlain()) ExpectLike(source.sample, [](auto const&, double, double) { return false; });
    fuzz::CleanUp({fuzz::kStoreName});
}

NORVA_FUZZ_TARGET(round_trip_native) {
    fuzz::CSampleOfBytes const source(bytes);
    if (!WriteAndExport(source, kNativeExport, fuzz::kStoreName)) return;
    bool const isOpen = fuzz::ReadWholeStore(fuzz::Folder() / fuzz::kStoreName);
    if (source.IsPlain() && !isOpen) fuzz::Broken("what was exported does not open");
    if (source.IsPlain()) {
        ExpectLike(source.sample, [](auto const&, double, double) { return false; });
    }
    fuzz::CleanUp({kSource, fuzz::kStoreName});
}

/// Law: records fill the file from the first to the last; below the header, one row a line and a location.
NORVA_FUZZ_TARGET(write_spreadsheet) {
    fuzz::CSampleOfBytes const source(bytes);
    if (!WriteAndExport(source, kWorksheetExport, "out.xls")) return;
    std::string const file = test::ReadWholeFile("out.xls");
    auto const word = [&file](std::size_t at) {
        return static_cast<unsigned>(static_cast<unsigned char>(file[at])) +
               256U * static_cast<unsigned char>(file[at + 1]);
    };
    long locations = 0;
    for (auto const& line : source.sample.lines) locations += line.locations;
    std::size_t at = 0;
    unsigned kind = 0, rows = 0;
    while (at + 4 <= file.size() && kind != 10) {
        kind = word(at);
        if (at == 0 && kind != 9) fuzz::Broken("no record begins the file");
        bool const isCell = kind == 3 || kind == 4;
        if (isCell && at + 6 <= file.size()) rows = std::max(rows, word(at + 4) + 1);
        at += 4 + word(at + 2);
    }
    if (at != file.size() || kind != 10) fuzz::Broken("records do not fill the file");
    std::size_t const expected = 1 + source.sample.lines.size() + static_cast<std::size_t>(locations);
    if (source.IsPlain() && rows != expected) fuzz::Broken("rows lost");
    fuzz::CleanUp({kSource, "out.xls"});
}
