#include "formats/column_text/profile_detection.h"

#include "exchange/progress_dlg.h"
#include "formats/column_text/text_line.h"
#include "platform/text.h"

#include <algorithm>

namespace norva {

namespace {

constexpr CDelimiters kLabelDelimiters{" ,\t\n"};
constexpr CDelimiters kNameDelimiters{" ,\t\n:"};

std::string AutomaticName(int number) {
    return "LINE" + std::to_string(number);
}

/// Whether `text`, upper-cased, is `upper`.
bool IsUpperCaseOf(std::string_view upper, std::string_view text) {
    return std::equal(upper.begin(), upper.end(), text.begin(), text.end(), [](char a, char b) {
        return a == (b >= 'a' && b <= 'z' ? static_cast<char>(b - ('a' - 'A')) : b);
    });
}

/// Adds a profile that ends where `file` stands. Where they are many, the list is made as long as the file so far lets
/// expect: one that doubles would leave its former halves as holes in the memory.
void Append(std::vector<ReportLine>& profiles, std::string const& name, std::uint64_t rows, CLineReader const& file) {
    constexpr std::size_t kMany = 4096;
    constexpr double kMostExpected = 4e6;
    if (profiles.size() == kMany) {
        auto const read = static_cast<double>(std::max<std::uint64_t>(file.Offset(), 1));
        auto const expected = 1.1 * static_cast<double>(kMany) * static_cast<double>(file.Length()) / read;
        profiles.reserve(static_cast<std::size_t>(std::min(expected, kMostExpected)));
    }
    profiles.push_back({name, rows});
}

}  // namespace

std::string GetLineName(std::string_view markerLine) {
    std::string text = ToUpper(markerLine);
    std::replace(text.begin(), text.end(), '-', ' ');
    std::vector<std::string_view> tokens;
    GetTokens(text, tokens, kNameDelimiters);
    if (tokens.size() == 1 && tokens[0].size() != 4) return std::string(tokens[0]);
    if (tokens.size() == 2) return std::string(tokens[1]);
    return {};
}

std::vector<ReportLine> FindProfilesByMarker(CLineReader& file, std::uint64_t dataStart, CScanProgress* progress) {
    std::vector<ReportLine> profiles;
    file.Rewind();
    std::string pendingName;
    std::uint64_t rowCount = 0;
    bool atBoundary = true;
    int automaticNumber = 1;
    std::uint64_t lineOffset = 0;

    auto const append = [&] {
        Append(profiles, pendingName.empty() ? AutomaticName(automaticNumber++) : pendingName, rowCount, file);
    };

    std::string_view line;
    for (; file.Next(line); lineOffset = file.Offset()) {
        if (progress != nullptr) progress->At(file.Offset());
        LineKind const kind = ClassifyLine(line);
        if (kind == LineKind::Empty) continue;
        if (kind == LineKind::Data) {
            atBoundary = false;
            if (lineOffset >= dataStart) ++rowCount;
        } else {
            if (!atBoundary && rowCount > 0) append();
            rowCount = 0;
            if (kind == LineKind::Marker || HoldsLineWord(line)) {
                std::string name = GetLineName(line);
                if (!name.empty()) pendingName = std::move(name);
            }
            atBoundary = true;
        }
    }
    if (!atBoundary) append();
    return profiles;
}

std::vector<ReportLine> FindProfilesByLabel(CLineReader& file, std::uint64_t dataStart, int labelColumn,
                                            CScanProgress* progress) {
    std::vector<ReportLine> profiles;
    file.Rewind();
    std::string currentLabel;
    std::uint64_t rowCount = 0;
    std::uint64_t lineOffset = 0;

    std::string_view line;
    for (; file.Next(line); lineOffset = file.Offset()) {
        if (progress != nullptr) progress->At(file.Offset());
        if (ClassifyLine(line) != LineKind::Data) continue;
        bool const counts = lineOffset >= dataStart;

        std::string_view label = "*";
        CTokenCursor cursor(line, kLabelDelimiters);
        for (int i = 0; i <= labelColumn; ++i) {
            if (!cursor.Next(label)) {
                label = "*";
                break;
            }
        }
        bool const continues = label == "*" || IsUpperCaseOf(currentLabel, label);
        if (!continues && !currentLabel.empty() && rowCount > 0) {
            Append(profiles, currentLabel, rowCount, file);
            ToUpper(label, currentLabel);
            rowCount = 1;
        } else if (counts) {
            ++rowCount;
            if (!continues) ToUpper(label, currentLabel);
        }
    }
    if (rowCount > 0) Append(profiles, currentLabel, rowCount, file);
    return profiles;
}

}  // namespace norva
