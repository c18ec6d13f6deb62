#include "exchange/export_run.h"
#include "norva/exchange.h"
#include "store/value_rules.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <charconv>
#include <cmath>
#include <sstream>

namespace norva {
namespace {

using namespace test;

/// A survey of numbers in the sizes and formats that stores have: coordinates, fields, times of no-data, noise.
StoreSample AnyNumbers() {
    StoreSample sample;
    long locations = 0;
    for (int line = *rc::gen::inRange(1, 4); line > 0; --line) {
        sample.lines.push_back({"L" + std::to_string(line), *rc::gen::inRange(1, 12)});
        locations += sample.lines.back().locations;
    }
    for (int channel = *rc::gen::inRange(1, 5); channel > 0; --channel) {
        int const type = *rc::gen::element(0, 1, 2, 3, 5);
        int const format = *rc::gen::element(int{DisplayFormat::kUnset}, int{DisplayFormat::kFixed},
                                             int{DisplayFormat::kFixed}, int{DisplayFormat::kExponent});
        CPackedValues values;
        for (long n = 0; n < locations; ++n) {
            auto const bits = *rc::gen::arbitrary<std::int64_t>();
            double const number =
                static_cast<double>(bits >> *rc::gen::inRange(12, 62)) / std::pow(10.0, *rc::gen::inRange(0, 7));
            if (type == DataType::kFloat) values.Add(bits % 9 == 0 ? kNoDataFloat : static_cast<float>(number));
            if (type == DataType::kDouble) values.Add(bits % 9 == 0 ? kNoDataDouble : number);
            if (type == DataType::kInt || type == DataType::kLong) values.Add(static_cast<std::int32_t>(bits));
            if (type == DataType::kShort) values.Add(static_cast<std::int16_t>(bits));
        }
        sample.channels.push_back(
            {{"C" + std::to_string(channel), "", type, 0, 0, 1, format, *rc::gen::inRange(-1, 9), -1, 0},
             values.bytes});
    }
    return sample;
}

/// Whether a cell says the n-th packed value, by reading it in the plainest way.
bool Says(std::string const& cell, SampleChannel const& channel, std::size_t n) {
    int const type = channel.description.dataType;
    char const* const value = channel.values.data() + n * ValueWidth(type);
    char const* const end = cell.data() + cell.size();
    auto const reads = [&](auto stored, auto missing) {
        auto number = stored;
        if (stored == missing) return cell == "*";
        return std::from_chars(cell.data(), end, number).ptr == end && number == stored;
    };
    switch (type) {
        case DataType::kFloat:
            return reads(LoadFloat(value), kNoDataFloat);
        case DataType::kDouble:
            return reads(LoadDouble(value), kNoDataDouble);
        case DataType::kShort:
            return reads(static_cast<std::int16_t>(LoadLittle16(value)), kNoDataShort);
        default:
            return reads(static_cast<std::int32_t>(LoadLittle32(value)), kNoDataLong);
    }
}

TEST(ExportReadBack, EveryNumberOfAnXyzFileIsTheStoresOrIsCounted) {
    EXPECT_TRUE(rc::check([] {
        CTemporaryFolder folder;
        StoreSample const sample = AnyNumbers();
        RC_ASSERT(WriteStore(folder / "s.nvt", sample, {}));
        for (bool const fullDigits : {false, true}) {
            ExportRequest request;
            request.storePath = folder / "s.nvt";
            request.outputPath = folder / "out.xyz";
            request.settings.fullDigits = fullDigits;
            request.replace = true;
            ExportResult result;
            RC_ASSERT(ExportStore(request, result).IsGood());
            std::vector<std::uint64_t> different(sample.channels.size());
            std::istringstream file(ReadWholeFile(request.outputPath));
            std::size_t n = 0;
            for (std::string row; std::getline(file, row);) {
                if (row.starts_with("/") || row.starts_with("LINE")) continue;
                std::istringstream cells(row);
                for (std::size_t c = 0; c < sample.channels.size(); ++c) {
                    std::string cell;
                    RC_ASSERT(static_cast<bool>(cells >> cell));
                    if (!Says(cell, sample.channels[c], n)) ++different[c];
                }
                ++n;
            }
            RC_ASSERT(n == result.report.locations);
            for (std::size_t c = 0; c < different.size(); ++c) {
                ExportReportChannel const& told = result.report.channels[c];
                RC_ASSERT(told.fewerDigits + told.exponents == different[c]);
                RC_ASSERT(!fullDigits || different[c] == 0U);
            }
        }
    }));
}

}  // namespace
}  // namespace norva
