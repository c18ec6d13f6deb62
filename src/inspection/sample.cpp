#include "inspection/sample.h"

#include <algorithm>

namespace norva {

namespace {

constexpr std::size_t kHeadLines = 1500;
constexpr std::size_t kStretches = 20;
constexpr std::size_t kStretchLines = 60;
/// Lines of any length must not fill the memory.
constexpr std::size_t kMostBytes = 4 * 1024 * 1024;

}  // namespace

bool TakeSample(CSourceLines& source, Sample& sample) {
    sample = {};
    source.Rewind();
    std::string_view line;
    std::size_t bytes = 0;
    while (sample.lines.size() < kHeadLines && bytes < kMostBytes && source.Next(line)) {
        sample.lines.push_back({std::string(line), source.Number()});
        bytes += line.size();
    }
    sample.headLines = sample.lines.size();
    sample.isWhole = source.Offset() >= source.Length() && bytes < kMostBytes;
    if (source.HasFailed()) return false;
    if (sample.isWhole || !source.CanSeek()) return true;
    std::uint64_t const head = source.Offset();
    std::uint64_t read = head;
    for (std::size_t i = 0; i < kStretches; ++i) {
        std::uint64_t const at = head + (source.Length() - head) / kStretches * i;
        std::size_t const most = bytes + kMostBytes / kStretches;
        if (!source.SeekLineAfter(std::max(at, read))) break;
        for (std::size_t n = 0; n < kStretchLines && bytes < most && source.Next(line); ++n) {
            sample.lines.push_back({std::string(line), 0});
            bytes += line.size();
        }
        read = source.Offset();
    }
    return !source.HasFailed();
}

}  // namespace norva
