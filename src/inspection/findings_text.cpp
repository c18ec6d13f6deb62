#include "norva/inspection.h"

#include <algorithm>

namespace norva {

namespace {

constexpr std::size_t kSubjectWidth = 14;
constexpr std::size_t kChoiceWidth = 12;
constexpr std::size_t kShownLines = 20;

void AppendField(std::string& out, std::string_view text, std::size_t width) {
    out += text;
    out.append(text.size() < width ? width - text.size() : 2, ' ');
}

}  // namespace

std::size_t Inspection::Doubts() const {
    return static_cast<std::size_t>(
        std::count_if(findings.begin(), findings.end(), [](auto const& finding) { return finding.isDoubt; }));
}

std::string Inspection::Text() const {
    std::string text;
    for (InspectionFinding const& finding : findings) {
        AppendField(text, (finding.isDoubt ? "? " : "") + finding.subject, kSubjectWidth);
        AppendField(text, finding.choice, kChoiceWidth);
        text += finding.evidence;
        if (!finding.option.empty()) text += "    " + finding.option;
        text += '\n';
    }
    for (std::size_t i = 0; i < lines.size() && i < kShownLines; ++i) {
        InspectedLine const& line = lines[i];
        std::string subject = line.last > line.line
                                  ? "? lines " + std::to_string(line.line) + " to " + std::to_string(line.last)
                                  : "? line " + std::to_string(line.line);
        AppendField(text, subject, kSubjectWidth + kChoiceWidth);
        text += line.reason;
        if (line.what == InspectedLine::What::LeftOut || line.what == InspectedLine::What::OtherTable)
            text += "; not stored";
        text += '\n';
    }
    std::uint64_t const more = lines.size() > kShownLines ? lines.size() - kShownLines : 0;
    if (more > 0) text += "? and " + std::to_string(more) + " more lines that do not agree\n";
    return text;
}

}  // namespace norva
