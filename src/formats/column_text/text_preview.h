#pragma once

#include "norva/column_text.h"
#include "platform/line_reader.h"
#include "platform/tokens.h"

#include <string>

namespace norva {

/// Opens a text. Fails for UTF-16, too.
Status OpenText(CLineReader& file, std::string const& path);
/// Reads the first lines with text from the file's beginning. A read error is CheckPreview's to tell.
void ReadPreviewLines(CLineReader& file, TextPreview& preview);
/// Whether the preview was read, holds text, and no row of it has too many columns.
Status CheckPreview(CLineReader const& file, TextPreview const& preview);

/// A preview that knows its file, but has no lines yet.
TextPreview StartPreview(std::string const& path);
/// The preview of a file of column text.
Status PreviewTextFile(std::string const& path, TextPreview& preview);

/// Characters that separate the values of a row.
CDelimiters const& RowDelimiters(bool isCsv);
/// Where the data begin when that many preview lines are skipped. 0, or a count that is not below their number, skips
/// none.
std::uint64_t DataStart(TextPreview const& preview, int skip);

}  // namespace norva
