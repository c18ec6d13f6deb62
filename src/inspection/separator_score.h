#pragma once

#include "inspection/line_split.h"
#include "inspection/sample.h"

#include <string>
#include <vector>

/// Which character separates the cells, which marks begin comments, which character quotes: by how well the lines of
/// the sample read with each.
namespace norva {

struct SeparatorScore {
    char separator = '\0';
    double score = 0;
    std::size_t parts = 0;  ///< of most rows
    std::size_t rows = 0;   ///< that have so many
};

struct SeparatorChoice {
    std::vector<SeparatorScore> scores;  ///< of all candidates, in their order
    std::size_t best = 0;
    std::size_t voters = 0;  ///< lines that may be rows
    /// Null when nothing comes near.
    SeparatorScore const* Rival() const;
    SeparatorScore const& Best() const { return scores[best]; }
};

struct QuoteChoice {
    char quote = '\0';
    bool backslash = false;
    std::size_t cells = 0;  ///< that are quoted
};

/// "semicolon", "blanks".
std::string_view SeparatorName(char separator);

/// `doubtful` gets the marks that begin too many lines to be comments.
std::vector<std::string> FindCommentMarks(Sample const& sample, std::vector<std::string>& doubtful);
QuoteChoice FindQuote(Sample const& sample);
SeparatorChoice ScoreSeparators(std::vector<std::string_view> const& voters, QuoteChoice const& quote);

}  // namespace norva
