#pragma once

#include "inspection/definition_file.h"
#include "inspection/file_pass.h"
#include "inspection/header_search.h"
#include "inspection/separator_score.h"
#include "norva/inspection.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace norva {

/// One way to read a text file, and what came of it.
struct FileReading {
    TextReading reading;
    std::vector<ColumnLook> looks;
    HeaderChoice header;
    SeparatorChoice separators;
    bool isDefined = false;                 ///< the definition file names the columns
    std::vector<std::string> otherMarkers;  ///< words that are taken to start a line, though nobody told of them
    std::unique_ptr<CFilePass> pass;

    /// Cells that agree as they stand. Words alone agree easily: a text in sentences is a table of them.
    double Worth() const;
    /// More than a fifth of the lines agree with the table in no reading.
    bool SuitsBadly() const;
};

/// What is seen of the file however it is read.
struct FileSigns {
    std::vector<std::string> doubtfulMarks;  ///< comment marks that begin so many lines that they are none
    CellSeen noUtf8;                         ///< first byte that is no UTF-8
    std::uint64_t nulLine = 0;               ///< first line with a NUL byte; 0: none
    Definition definition;                   ///< of a file beside it, where there is one
    bool isSecondLook = false;               ///< the reading was found in a second pass
};

}  // namespace norva
