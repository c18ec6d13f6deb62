#include "formats/gpx/gpx_layout.h"

#include "formats/column_text/text_line.h"
#include "formats/gpx/gpx_markup.h"
#include "platform/text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace norva {

namespace {

constexpr std::size_t kSmallestBuffer = 64;
constexpr std::string_view kCommentStart = "<!--";
constexpr std::string_view kCharacterDataStart = "<![CDATA[";

bool IsBlankText(std::string_view text) {
    return std::all_of(text.begin(), text.end(), IsBlank);
}

bool IsNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' || static_cast<signed char>(c) < 0;
}

/// Elements that hold other elements and whose beginning and end a reader of lines has to see.
bool IsContainer(std::string_view name) {
    bool const mayBe = !name.empty() && (name[0] == 't' || name[0] == 'w' || name[0] == 'r');
    return mayBe && (name == "trkpt" || name == "wpt" || name == "rtept" || name == "trk" || name == "rte");
}

}  // namespace

CGpxLayout::CGpxLayout(std::size_t bufferSize) : m_buffer(std::max(bufferSize, kSmallestBuffer)) {}

bool CGpxLayout::Open(std::string const& path) {
    Reset();
    return m_source.Open(path);
}

bool CGpxLayout::Rewind() {
    Reset();
    return m_source.Rewind();
}

void CGpxLayout::Reset() {
    m_begin = m_end = 0;
    m_sourceEnded = m_sawTag = m_insideLongTag = false;
    m_endTag.clear();
}

bool CGpxLayout::Next(std::string_view& line) {
    m_isCut = false;
    if (!m_endTag.empty()) {
        m_finished.swap(m_endTag);
        m_endTag.clear();
        line = m_finished;
        return true;
    }
    if (m_insideLongTag) SkipLongTag();
    for (;;) {
        SkipBlanks();
        if (View().empty()) return false;
        switch (MarkupAt(0)) {
            case Markup::Comment:
                Take(kCommentStart.size());
                SkipPast("-->");
                break;
            case Markup::CharacterData:
                SkipPast("]]>");
                break;
            case Markup::Instruction:
                SkipPast("?>");
                break;
            case Markup::Declaration:
                SkipDeclaration();
                break;
            case Markup::StartTag:
                line = TakeElement();
                return true;
            case Markup::EndTag:
                line = TakeEndTag();
                return true;
            case Markup::None:
                if (m_sawTag) {
                    SkipText();
                    break;
                }
                // Nothing of a GPX file has shown yet; what this text is, its lines tell.
                line = TakeTextLine();
                return true;
        }
    }
}

bool CGpxLayout::More() {
    constexpr std::size_t leastRoom = 4;
    if (m_sourceEnded) return false;
    if (m_begin != 0) {
        std::memmove(m_buffer.data(), m_buffer.data() + m_begin, m_end - m_begin);
        m_end -= m_begin;
        m_begin = 0;
    }
    if (m_buffer.size() - m_end < leastRoom) return false;
    std::size_t const got = m_source.Read(m_buffer.data() + m_end, m_buffer.size() - m_end);
    m_end += got;
    m_sourceEnded = got == 0;
    return got != 0;
}

CGpxLayout::Markup CGpxLayout::MarkupAt(std::size_t offset) {
    while (View().size() < offset + kCharacterDataStart.size() && More()) continue;
    std::string_view const text = View().substr(offset);
    if (text.size() < 2 || text[0] != '<') return Markup::None;
    char const next = text[1];
    if (IsNameStart(next)) return Markup::StartTag;
    if (next == '/') return Markup::EndTag;
    if (next == '?') return Markup::Instruction;
    if (next != '!') return Markup::None;
    if (text.starts_with(kCommentStart)) return Markup::Comment;
    if (text.starts_with(kCharacterDataStart)) return Markup::CharacterData;
    return Markup::Declaration;
}

std::size_t CGpxLayout::FindMarkup(std::size_t offset, Markup& markup) {
    for (;;) {
        std::size_t const at = View().find('<', offset);
        if (at == std::string_view::npos) {
            offset = View().size();
            if (More()) continue;
            markup = Markup::None;
            return offset;
        }
        markup = MarkupAt(at);
        bool const canTell = m_sourceEnded || View().size() >= at + kCharacterDataStart.size();
        if (!canTell) markup = Markup::None;
        if (markup != Markup::None || !canTell) return at;
        offset = at + 1;
    }
}

CGpxLayout::Tag CGpxLayout::ScanTag(std::size_t offset) {
    Tag tag;
    std::string_view name = TagName(View().substr(offset));
    std::size_t const nameEnd = static_cast<std::size_t>(name.data() - View().data()) + name.size();
    if (nameEnd < View().size() && View()[nameEnd] == '>') {
        tag.length = nameEnd + 1 - offset;
        tag.textLength = tag.length - 1;
        tag.complete = true;
    } else {
        tag = ScanTagEnd(offset);
        name = TagName(View().substr(offset, tag.length));
    }
    tag.nameLength = name.size();
    tag.prefixed = name.find(':') != std::string_view::npos;
    return tag;
}

CGpxLayout::Tag CGpxLayout::ScanTagEnd(std::size_t offset) {
    static constexpr CDelimiters special{"<>\"'="};
    Tag tag;
    char quote = 0;
    std::size_t at = offset + 1;
    do {
        std::string_view const view = View();
        for (; at < view.size(); ++at) {
            char const c = view[at];
            if (!special.Has(c)) continue;
            // No "<" can stand in a tag, quoted or not: the tag is broken and the next one begins.
            if (c == '<') {
                tag.length = tag.textLength = at - offset;
                return tag;
            }
            if (quote != 0) {
                if (c == quote) quote = 0;
            } else if (c == '>') {
                tag.length = at + 1 - offset;
                tag.empty = view[at - 1] == '/';
                tag.textLength = at - offset - (tag.empty ? 1 : 0);
                tag.complete = true;
                return tag;
            } else if (c != '=') {
                quote = c;
            } else {
                if (at + 1 == view.size()) break;  // what follows decides
                if (IsBlank(view[at - 1]) || IsBlank(view[at + 1])) tag.loose = true;
            }
        }
    } while (More());
    tag.length = tag.textLength = View().size() - offset;
    return tag;
}

void CGpxLayout::SkipBlanks() {
    do {
        while (m_begin < m_end && IsBlank(m_buffer[m_begin])) ++m_begin;
    } while (m_begin == m_end && More());
}

void CGpxLayout::SkipLongTag() {
    m_insideLongTag = false;
    do {
        std::size_t const at = View().find_first_of("<>");
        if (at != std::string_view::npos) {
            Take(View()[at] == '>' ? at + 1 : at);
            return;
        }
        Take(View().size());
    } while (More());
}

void CGpxLayout::SkipPast(std::string_view terminator) {
    do {
        std::size_t const at = View().find(terminator);
        if (at != std::string_view::npos) {
            Take(at + terminator.size());
            return;
        }
        Take(View().size() - std::min(View().size(), terminator.size() - 1));
    } while (More());
    Take(View().size());
}

void CGpxLayout::SkipDeclaration() {
    int depth = 0;
    do {
        while (m_begin < m_end) {
            char const c = m_buffer[m_begin++];
            if (c == '<') ++depth;
            if (c == '>' && --depth == 0) return;
        }
    } while (More());
}

void CGpxLayout::SkipText() {
    Take(1);
    do {
        std::size_t const at = std::min(View().find('<'), View().size());
        Take(at);
    } while (View().empty() && More());
}

std::string_view CGpxLayout::TakeTextLine() {
    std::size_t at = 1;
    do {
        at = std::min(View().find_first_of("\r\n<", at), View().size());
    } while (at == View().size() && More());
    std::string_view const line = View().substr(0, at);
    Take(at);
    return line;
}

std::string_view CGpxLayout::TakeEndTag() {
    m_sawTag = true;
    Tag const tag = ScanTag(0);
    m_insideLongTag = m_isCut = !tag.complete && tag.length == View().size();
    std::string_view const line = Finish(View().substr(0, tag.length), tag, 0);
    Take(tag.length);
    return line;
}

std::string_view CGpxLayout::TakeElement() {
    m_sawTag = true;
    Tag const tag = ScanTag(0);
    std::string_view const name = WithoutPrefix(View().substr(1, tag.nameLength));
    if (tag.complete && !tag.empty && !IsContainer(name)) return TakeElementText(tag);
    if (tag.empty) m_endTag.assign("</").append(name).append(">");
    m_insideLongTag = m_isCut = !tag.complete && tag.length == View().size();
    std::string_view const line = Finish(View().substr(0, tag.textLength), tag, 0);
    Take(tag.length);
    return line;
}

std::string_view CGpxLayout::TakeElementText(Tag const& tag) {
    std::size_t const plainEnd = PlainElementEnd(tag);
    if (plainEnd != 0) {
        std::string_view const line = Finish(View().substr(0, plainEnd), tag, tag.nameLength + 3);
        Take(plainEnd);
        return line;
    }
    Markup markup = Markup::None;
    std::size_t const at = FindMarkup(tag.length, markup);
    if (markup == Markup::Comment || markup == Markup::CharacterData) return TakeMixedText(tag, at);

    m_isCut = markup == Markup::None && !m_sourceEnded;
    std::size_t length = at;
    std::size_t endLength = 0;
    bool const hasText = !IsBlankText(View().substr(tag.length, at - tag.length));
    if (markup == Markup::EndTag && hasText) {
        Tag const end = ScanTag(at);
        std::string_view const view = View();
        if (end.complete && view.substr(at + 2, end.nameLength) == view.substr(1, tag.nameLength)) {
            endLength = end.length;
        }
    } else if (markup != Markup::None) {
        length = tag.length;
    }
    std::string_view const line = Finish(View().substr(0, length + endLength), tag, endLength);
    Take(at + endLength);
    return line;
}

std::size_t CGpxLayout::PlainElementEnd(Tag const& tag) const {
    std::string_view const view = View();
    std::size_t const at = view.find('<', tag.length);
    if (at == std::string_view::npos || view.size() - at < tag.nameLength + 3) return 0;
    std::size_t const end = at + 2 + tag.nameLength;
    bool const matches = view[at + 1] == '/' && view[end] == '>' &&
                         view.substr(at + 2, tag.nameLength) == view.substr(1, tag.nameLength);
    return matches && !IsBlankText(view.substr(tag.length, at - tag.length)) ? end + 1 : 0;
}

std::string_view CGpxLayout::TakeMixedText(Tag const& tag, std::size_t offset) {
    m_text.assign(View().substr(0, offset));
    Take(offset);
    Markup markup = MarkupAt(0);
    for (;;) {
        if (markup == Markup::Comment) {
            Take(kCommentStart.size());
            SkipPast("-->");
        } else if (markup == Markup::CharacterData) {
            AppendCharacterData();
        } else {
            break;
        }
        // Plain text up to the next markup.
        do {
            std::size_t const at = FindMarkup(0, markup);
            AppendText(View().substr(0, at));
            Take(at);
        } while (markup == Markup::None && !(View().empty() && m_sourceEnded));
    }
    std::size_t endLength = 0;
    bool const hasText = !IsBlankText(std::string_view(m_text).substr(tag.length));
    if (markup == Markup::EndTag && hasText) {
        Tag const end = ScanTag(0);
        if (end.complete && View().substr(2, end.nameLength) == std::string_view(m_text).substr(1, tag.nameLength)) {
            endLength = end.length;
            m_text.append(View().substr(0, endLength));
            Take(endLength);
        }
    } else if (markup != Markup::None) {
        m_text.resize(tag.length);
    }
    return Finish(m_text, tag, endLength);
}

void CGpxLayout::AppendText(std::string_view text) {
    std::size_t const room = m_buffer.size() - std::min(m_buffer.size(), m_text.size());
    if (text.size() > room) m_isCut = true;
    m_text.append(text.substr(0, room));
}

void CGpxLayout::AppendCharacterData() {
    constexpr std::string_view terminator = "]]>";
    Take(kCharacterDataStart.size());
    for (;;) {
        std::size_t const at = View().find(terminator);
        bool const isWhole = at != std::string_view::npos;
        std::size_t const kept = std::min(View().size(), terminator.size() - 1);
        std::size_t const length = isWhole ? at : View().size() - (m_sourceEnded ? 0 : kept);
        for (char const c : View().substr(0, length)) {
            switch (c) {
                case '&':
                    AppendText("&amp;");
                    break;
                case '<':
                    AppendText("&lt;");
                    break;
                case '>':
                    AppendText("&gt;");
                    break;
                default:
                    AppendText({&c, 1});
            }
        }
        Take(isWhole ? length + terminator.size() : length);
        if (isWhole || m_sourceEnded) return;
        More();
    }
}

std::string_view CGpxLayout::Finish(std::string_view line, Tag const& tag, std::size_t endTagLength) {
    bool const hasReference = line.find('&') != std::string_view::npos && Contains(line, "&#");
    if (!tag.loose && !tag.prefixed && !hasReference) return line;
    std::size_t const textStart = std::min(tag.length, line.size());
    std::size_t const textEnd = line.size() - endTagLength;
    m_finished.clear();
    AppendTag(m_finished, line.substr(0, textStart), tag.loose);
    m_finished.append(line.substr(textStart, textEnd - textStart));
    AppendTag(m_finished, line.substr(textEnd), false);
    if (hasReference) DecodeNumericReferences(m_finished);
    return m_finished;
}

}  // namespace norva
