#include "formats/cg3/cg3_dump_layout.h"

#include "norva/converters.h"
#include "platform/text.h"

#include <algorithm>

namespace norva {

namespace {

constexpr CDelimiters kHeaderDelimiters{" \t\n"};

/// Where a scan stands within a block.
enum class Place { BeforeHeader, Header, Titles, Data };

/// Kinds of lines in the order of their parts.
enum Part { kBefore, kDashes, kHeaders, kTitles, kWithoutReadings };
constexpr char const* kPartNames[] = {"before the first block", "lines of dashes", "block headers", "column titles",
                                      "in blocks without readings"};

/// Finds the blocks in one reading of the file.
class CBlockScan {
public:
    explicit CBlockScan(CG3DumpLayout& layout) : m_layout(layout) {
        for (char const* const name : kPartNames) m_layout.parts.push_back({name});
    }

    /// `end` is the offset after the line.
    void Line(std::string_view line, std::uint64_t end) {
        bool const isDash = IsCG3DashLine(line);
        std::uint64_t const bytes = end - m_end;
        m_end = end;
        ++m_layout.lineCount;
        switch (m_place) {
            case Place::BeforeHeader:
                Count(isDash ? kDashes : kBefore, 1, bytes);
                if (isDash) StartHeader();
                break;
            case Place::Header:
                Count(isDash ? kDashes : kHeaders, 1, bytes);
                if (isDash) {
                    m_place = Place::Titles;
                    m_dataStart = end;
                } else {
                    CollectFromHeader(line);
                }
                break;
            case Place::Titles:
                Count(kTitles, 1, bytes);
                m_titlesAreDash = isDash;
                m_linesRead = m_dataLines = 0;
                m_dataBytes = 0;
                m_titleLine = m_layout.lineCount;
                m_place = Place::Data;
                break;
            case Place::Data:
                if (isDash) {
                    Count(kDashes, 1, bytes);
                    EndBlock(end);
                } else {
                    ++m_linesRead;
                    m_dataBytes += bytes;
                    std::string_view const text = Trim(line);
                    if (!text.empty() && text.front() != 'A') ++m_dataLines;
                }
                break;
        }
    }

    /// The file ends.
    void End() {
        if (m_place == Place::Data) AddProfile();
    }

private:
    void Count(Part part, std::uint64_t lines, std::uint64_t bytes) {
        m_layout.parts[part].count += lines;
        m_layout.parts[part].bytes += bytes;
    }

    void StartHeader() {
        m_place = Place::Header;
        m_hasName = m_hasDate = false;
    }

    void EndBlock(std::uint64_t end) {
        AddProfile();
        StartHeader();
        // A block without any line after its titles leaves them to the next one; a dash line in their place has
        // then opened that one's header, and the present dash line closes it.
        if (m_linesRead == 0 && m_titlesAreDash) {
            m_place = Place::Titles;
            m_dataStart = end;
        }
    }

    void AddProfile() {
        if (m_dataLines == 0) return Count(kWithoutReadings, static_cast<std::uint64_t>(m_linesRead), m_dataBytes);
        std::string name = m_layout.lineNames.empty() ? "LINE" + std::to_string(m_layout.profiles.size() + 1)
                                                      : m_layout.lineNames.back();
        m_layout.profiles.push_back({std::move(name), m_dataLines, m_dataStart, m_titleLine});
    }

    void CollectFromHeader(std::string_view line) {
        ToUpper(line, m_upper);
        if (!Contains(m_upper, "LINE:") || !Contains(m_upper, "DATE:")) return;
        if (!m_hasName) m_hasName = Collect(line, "LINE:", m_layout.lineNames);
        if (!m_hasDate) m_hasDate = Collect(line, "DATE:", m_layout.dates);
    }

    /// Adds the token after the first `keyword` that has at least two tokens after it.
    bool Collect(std::string_view line, std::string_view keyword, std::vector<std::string>& values) {
        GetTokens(m_upper, m_upperTokens, kHeaderDelimiters);
        GetTokens(line, m_tokens, kHeaderDelimiters);
        for (std::size_t i = 0; i + 2 < m_upperTokens.size(); ++i) {
            if (m_upperTokens[i] != keyword) continue;
            values.emplace_back(m_tokens[i + 1]);
            return true;
        }
        return false;
    }

    CG3DumpLayout& m_layout;
    Place m_place = Place::BeforeHeader;
    bool m_hasName = false;
    bool m_hasDate = false;
    bool m_titlesAreDash = false;
    long m_linesRead = 0;
    long m_dataLines = 0;
    std::uint64_t m_dataBytes = 0;
    std::uint64_t m_dataStart = 0;
    std::uint64_t m_titleLine = 0;
    std::uint64_t m_end = 0;  ///< of the line before
    std::string m_upper;
    std::vector<std::string_view> m_upperTokens;
    std::vector<std::string_view> m_tokens;
};

void SplitTitles(std::string_view line, std::vector<std::string>& titles) {
    std::vector<std::string_view> tokens;
    GetTokens(line, tokens, kHeaderDelimiters);
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        std::string title(tokens[i]);
        bool const isPrefix = title == "#" || ToUpper(title) == "TILT";
        if (isPrefix && i + 2 < tokens.size()) title.append(" ").append(tokens[++i]);
        titles.push_back(std::move(title));
    }
}

/// Reads the titles of the first block that has a "STATION" column, and whether A-lines follow the data lines.
void ReadTitles(CLineReader& file, CG3DumpLayout& layout) {
    std::string_view line;
    int dashLines = 0;
    while (dashLines < 2 && file.Next(line)) dashLines += IsCG3DashLine(line) ? 1 : 0;
    std::string upper;
    while (file.Next(line)) {
        ToUpper(line, upper);
        if (!Contains(upper, "STATION")) continue;
        SplitTitles(line, layout.titles);
        layout.valueCount = layout.titles.size();
        layout.hasALines = file.Next(line) && file.Next(line) && TrimLeft(line).starts_with('A');
        if (layout.hasALines) layout.titles.emplace_back(kCG3HeightTitle);
        return;
    }
}

}  // namespace

bool IsCG3DashLine(std::string_view line) {
    // Of seven dashes in a row, one stands at every seventh place: a line without any is passed in a few looks.
    constexpr std::size_t dashes = 7;
    for (std::size_t at = dashes - 1; at < line.size(); at += dashes) {
        if (line[at] != '-') continue;
        std::size_t const first = line.find_last_not_of('-', at) + 1;
        std::size_t const end = std::min(line.find_first_not_of('-', at), line.size());
        if (end - first >= dashes) return true;
    }
    return false;
}

bool ReadCG3DumpLayout(CLineReader& file, CG3DumpLayout& layout) {
    layout = CG3DumpLayout();
    if (!file.Rewind()) return false;
    CBlockScan scan(layout);
    std::string_view line;
    while (file.Next(line)) scan.Line(line, file.Offset());
    scan.End();
    layout.byteCount = file.Offset();
    if (file.Error() != 0 || !file.Rewind()) return false;
    ReadTitles(file, layout);
    return file.Error() == 0;
}

Status ReadCG3DumpLayout(std::string const& path, CG3DumpLayout& layout) {
    CLineReader file;
    if (!file.Open(path) || !ReadCG3DumpLayout(file, layout)) return Status::FileFailure("read", path, file.Error());
    if (!layout.titles.empty()) return {};
    return Status::Failure("Couldn't read the file", path,
                           "No line of column titles (STATION) follows two lines of dashes.");
}

}  // namespace norva
