#include "inspection/column_looks.h"

#include <array>
#include <map>
#include <string>
#include <unordered_set>

namespace norva {

namespace {

struct Tally {
    std::array<std::size_t, kCellKinds> kinds{};
    std::map<std::string, std::size_t> suffixes;  ///< of texts that begin with a number
    std::size_t cells = 0;
    std::size_t length = 0;
    std::size_t withBlanks = 0;
    std::size_t withDigits = 0;
    std::size_t quoted = 0;

    void Add(CellPart const& part, CellRules const& rules) {
        CellRead read;
        ReadCell(part.text, rules, CellKind::Number, {}, read);
        ++kinds[static_cast<std::size_t>(read.kind)];
        if (read.kind == CellKind::Text && ScanNumberText(part.text, rules.marks, read.number)) {
            std::string_view const rest = part.text.substr(read.number.length);
            if (IsNumberSuffix(rest)) ++suffixes[std::string(rest)];
        }
        if (part.text.empty()) return;
        ++cells;
        length += part.text.size();
        if (part.text.find(' ') != std::string_view::npos) ++withBlanks;
        if (part.text.find_first_of("0123456789") != std::string_view::npos) ++withDigits;
        if (part.isQuoted) ++quoted;
    }

    ColumnLook Look() const {
        ColumnLook look;
        std::size_t present = 0;
        for (std::size_t kind = 1; kind < kinds.size(); ++kind) present += kinds[kind];
        if (cells > 0) {
            look.usualLength = static_cast<int>(length / cells);
            look.hasBlanks = withBlanks * 2 > cells;
            look.hasDigits = withDigits * 2 > cells;
            look.isQuoted = quoted * 2 > cells;
        }
        look.kind = ColumnLook::Kind::Empty;
        if (present == 0) return look;
        look.kind = ColumnLook::Kind::Text;
        for (int kind = static_cast<int>(CellKind::Number); kind < kCellKinds; ++kind) {
            if (kinds[static_cast<std::size_t>(kind)] * 5 >= present * 4)
                look.kind = LookOf(static_cast<CellKind>(kind));
        }
        if (look.kind != ColumnLook::Kind::Text) return look;
        std::size_t const numbers = kinds[static_cast<std::size_t>(CellKind::Number)];
        for (auto const& [suffix, count] : suffixes) {
            if (count * 2 <= present || (count + numbers) * 5 < present * 4) continue;
            look.kind = ColumnLook::Kind::Number;
            look.suffix = suffix;
        }
        return look;
    }
};

}  // namespace

std::vector<ColumnLook> FindColumnLooks(std::vector<std::string_view> const& lines, SplitRule const& rule,
                                        CellRules const& cells, std::size_t width, bool& quotesEveryRow) {
    std::vector<CellPart> parts;
    std::vector<std::string_view> rows;
    std::unordered_set<std::string_view> words;
    for (std::string_view const line : lines) {
        // Names that come again further down, where two files were put together, say nothing of the cells.
        bool const isWords = line.find_first_of("0123456789") == std::string_view::npos;
        if (isWords && !words.insert(line).second) continue;
        if (!SplitLine(line, rule, parts) && parts.size() == width) rows.push_back(line);
    }
    std::vector<Tally> tallies(width);
    std::size_t quoting = 0;
    std::size_t const first = rows.size() / 2;
    for (std::size_t i = first; i < rows.size(); ++i) {
        SplitLine(rows[i], rule, parts);
        bool isQuoting = false;
        for (std::size_t c = 0; c < width; ++c) {
            tallies[c].Add(parts[c], cells);
            isQuoting = isQuoting || parts[c].isQuoted;
        }
        if (isQuoting) ++quoting;
    }
    quotesEveryRow = rule.quote != '\0' && rows.size() >= 3 && quoting * 20 > (rows.size() - first) * 19;
    std::vector<ColumnLook> looks;
    for (Tally const& tally : tallies) looks.push_back(tally.Look());
    return looks;
}

}  // namespace norva
