#pragma once

#include "formats/gpx/gpx_source.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// Lays the text of a GPX file out one element per line, so that a reader of lines understands every way of writing
/// it: no line breaks between elements, one attribute a line, content on lines of its own, empty elements.
///
/// A line is a start tag (its ">" may be missing), an end tag, or an element with its text ("<ele>12.5</ele>").
/// Comments, declarations and text between elements are left out; prefixes of element names are dropped; numeric
/// character references stand as the characters they mean, CDATA as plain text. Broken text is taken as far as it goes:
/// a tag that another one interrupts ends there. A line may hold line breaks, which separate its parts like blanks.
class CGpxLayout {
public:
    /// A tag, or an element with its text, longer than `bufferSize` is cut there.
    explicit CGpxLayout(std::size_t bufferSize = 1024 * 1024);

    /// False with Error() set.
    bool Open(std::string const& path);
    void Close() { m_source.Close(); }
    bool Rewind();
    int Error() const { return m_source.Error(); }
    std::uint64_t BytesRead() const { return m_source.BytesRead(); }
    bool Size(std::uint64_t& size) { return m_source.Size(size); }

    /// The next line; false at the end of the file or after a read error (Error() is then not 0). The view lasts until
    /// the next call.
    bool Next(std::string_view& line);
    /// Whether that line was longer than the buffer, so that its end is not there.
    bool IsCut() const { return m_isCut; }

private:
    enum class Markup { None, Comment, CharacterData, Instruction, Declaration, StartTag, EndTag };

    struct Tag {
        std::size_t length = 0;      ///< characters up to and with its ">"
        std::size_t textLength = 0;  ///< characters before its ">" or "/>"
        std::size_t nameLength = 0;  ///< of the element's name, prefix included
        bool complete = false;       ///< it has its ">"
        bool empty = false;          ///< it ends in "/>"
        bool prefixed = false;       ///< the name has a prefix
        bool loose = false;          ///< a blank stands beside a "=" outside quotes
    };

    std::string_view View() const { return {m_buffer.data() + m_begin, m_end - m_begin}; }
    void Take(std::size_t count) { m_begin += count; }
    /// Lengthens the view; false at the end of the file or when the buffer is full.
    bool More();
    void Reset();

    /// What the "<" at `offset` begins. Where the buffer ends too early to tell, the answer is None.
    Markup MarkupAt(std::size_t offset);
    /// Offset of the next "<" from `offset` on that begins markup; with None, how far the text goes until the file or
    /// a full buffer ends.
    std::size_t FindMarkup(std::size_t offset, Markup& markup);
    Tag ScanTag(std::size_t offset);
    Tag ScanTagEnd(std::size_t offset);

    void SkipBlanks();
    void SkipLongTag();
    void SkipPast(std::string_view terminator);
    void SkipDeclaration();
    void SkipText();
    std::string_view TakeTextLine();
    std::string_view TakeEndTag();
    std::string_view TakeElement();
    std::string_view TakeElementText(Tag const& tag);
    /// Where the element ends that the view begins with, if the buffer holds it whole and nothing but text stands
    /// between its tags; else 0.
    std::size_t PlainElementEnd(Tag const& tag) const;
    /// For an element whose text is interrupted, at `offset`, by a comment or a CDATA section.
    std::string_view TakeMixedText(Tag const& tag, std::size_t offset);
    /// Appends to m_text as far as the length of a line goes.
    void AppendText(std::string_view text);
    void AppendCharacterData();
    /// The final form of a line that begins with `tag` and ends with an end tag of `endTagLength` (0: none).
    std::string_view Finish(std::string_view line, Tag const& tag, std::size_t endTagLength);

    CGpxSource m_source;
    std::vector<char> m_buffer;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    bool m_sourceEnded = false;
    bool m_sawTag = false;
    bool m_insideLongTag = false;
    bool m_isCut = false;
    std::string m_endTag;    ///< of an empty element, to be given next
    std::string m_text;      ///< an element that is put together from pieces
    std::string m_finished;  ///< the line given last, where it differs from the file's text
};

}  // namespace norva
