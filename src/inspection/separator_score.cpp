#include "inspection/separator_score.h"

#include "inspection/cell_kind.h"
#include "inspection/line_kind.h"
#include "platform/text.h"

#include <algorithm>
#include <map>

namespace norva {

namespace {

constexpr char kCandidates[] = {'\t', ';', '|', ',', ' '};

/// Words between tabs, semicolons and bars have blanks between them; between commas they may be prose.
bool HoldsOtherCandidate(std::string_view text, char separator) {
    return std::any_of(std::begin(kCandidates), std::end(kCandidates), [&](char candidate) {
        if (candidate == separator || (candidate == ' ' && separator != ',')) return false;
        return text.find(candidate) != std::string_view::npos;
    });
}

double CreditOf(CellPart const& part, char separator, CellRules const& rules) {
    if (part.isQuoted) return 1;
    CellRead read;
    ReadCell(part.text, rules, CellKind::Number, {}, read);
    if (read.kind != CellKind::Text) return 1;
    return HoldsOtherCandidate(part.text, separator) ? 0 : 0.5;
}

SeparatorScore ScoreOf(char separator, std::vector<std::string_view> const& voters, QuoteChoice const& quote) {
    struct Sum {
        double credit = 0;
        std::size_t rows = 0;
    };
    std::map<std::size_t, Sum> byParts;
    std::vector<CellPart> parts;
    SplitRule const rule{separator, quote.quote, quote.backslash};
    CellRules const rules{separator == ',' ? DecimalMarks::Point : DecimalMarks::Both, separator != ' '};
    for (std::string_view const line : voters) {
        SplitLine(line, rule, parts);
        if (parts.size() < 2) continue;
        double credit = 0;
        std::size_t filled = 0;
        for (CellPart const& part : parts) {
            if (part.text.empty() && !part.isQuoted) continue;
            ++filled;
            credit += CreditOf(part, separator, rules);
        }
        Sum& sum = byParts[parts.size()];
        ++sum.rows;
        double const mean = filled == 0 ? 0 : credit / static_cast<double>(filled);
        sum.credit += mean * mean;
    }
    SeparatorScore best{separator};
    for (auto const& [count, sum] : byParts) {
        double const finer = 1 - 1 / static_cast<double>(count);
        double const score = sum.credit * finer / static_cast<double>(voters.size());
        if (score > best.score) best = {separator, score, count, sum.rows};
    }
    return best;
}

}  // namespace

SeparatorScore const* SeparatorChoice::Rival() const {
    SeparatorScore const* rival = nullptr;
    for (SeparatorScore const& score : scores) {
        if (&score == &scores[best] || score.score == 0) continue;
        if (rival == nullptr || score.score > rival->score) rival = &score;
    }
    return rival;
}

std::string_view SeparatorName(char separator) {
    switch (separator) {
        case '\t':
            return "tab";
        case ';':
            return "semicolon";
        case '|':
            return "bar";
        case ',':
            return "comma";
        case ' ':
            return "blanks";
        default:
            return "none";
    }
}

std::vector<std::string> FindCommentMarks(Sample const& sample, std::vector<std::string>& doubtful) {
    std::vector<std::string> marks = {"/"};
    std::size_t lines = 0;
    std::size_t begins[3] = {};
    static constexpr std::string_view kMarks = "#%!";
    for (SampleLine const& line : sample.lines) {
        std::string_view const text = TrimLeft(line.text);
        if (text.empty()) continue;
        ++lines;
        std::size_t const mark = kMarks.find(text.front());
        // "#N/A" is a missing value.
        if (mark != std::string_view::npos && !text.starts_with("#N/A")) ++begins[mark];
    }
    for (std::size_t i = 0; i < kMarks.size(); ++i) {
        if (begins[i] == 0) continue;
        std::string mark(1, kMarks[i]);
        (begins[i] * 2 > lines ? doubtful : marks).push_back(std::move(mark));
    }
    return marks;
}

QuoteChoice FindQuote(Sample const& sample) {
    static constexpr std::string_view kSeparators = "\t;|, ";
    struct Count {
        char quote;
        std::size_t opens = 0;
        std::size_t closes = 0;
        std::size_t doubled = 0;
        std::size_t backslash = 0;
    };
    Count counts[2] = {{'"'}, {'\''}};
    for (SampleLine const& line : sample.lines) {
        std::string_view const text = line.text;
        for (Count& count : counts) {
            for (std::size_t at = text.find(count.quote); at != std::string_view::npos;
                 at = text.find(count.quote, at + 1)) {
                bool const atStart = at == 0 || kSeparators.find(text[at - 1]) != std::string_view::npos;
                bool const atEnd = at + 1 == text.size() || kSeparators.find(text[at + 1]) != std::string_view::npos;
                if (at > 0 && text[at - 1] == '\\') ++count.backslash;
                if (atStart && !atEnd) ++count.opens;
                if (atEnd && !atStart) ++count.closes;
                if (!atEnd && text[at + 1] == count.quote) {
                    if (atStart &&
                        (at + 2 == text.size() || kSeparators.find(text[at + 2]) != std::string_view::npos)) {
                        ++count.opens;
                        ++count.closes;
                    } else {
                        ++count.doubled;
                    }
                    ++at;
                }
            }
        }
    }
    Count const& usual = counts[0];
    Count const& single = counts[1];
    auto const fewer = [](Count const& count) { return std::min(count.opens, count.closes); };
    bool const isPaired = fewer(single) * 6 >= std::max(single.opens, single.closes) * 5;
    if (fewer(single) > 0 && isPaired && fewer(single) > 2 * fewer(usual)) {
        return {'\'', single.backslash > single.doubled, fewer(single)};
    }
    if (usual.opens + usual.closes == 0) return {};
    return {'"', usual.backslash > usual.doubled, fewer(usual)};
}

SeparatorChoice ScoreSeparators(std::vector<std::string_view> const& voters, QuoteChoice const& quote) {
    SeparatorChoice choice;
    choice.voters = voters.size();
    for (char const candidate : kCandidates) {
        choice.scores.push_back(voters.empty() ? SeparatorScore{candidate} : ScoreOf(candidate, voters, quote));
        if (choice.scores.back().score > choice.Best().score) choice.best = choice.scores.size() - 1;
    }
    return choice;
}

}  // namespace norva
