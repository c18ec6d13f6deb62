#pragma once

#include "norva/status.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The fields of a survey's data file as a definition file beside it (ASEG-GDF2, ".dfn") gives them.
namespace norva {

struct DefinedField {
    std::string name;  ///< elements of an array are numbered from 1: "Window_1"
    std::string unit;
    std::optional<double> null;
    bool isText = false;

    bool operator==(DefinedField const&) const = default;
};

struct Definition {
    std::string path;                  ///< empty: there is none
    std::vector<DefinedField> fields;  ///< of a data record, arrays as their elements
};

/// The definition file of the same name as the data file; an empty definition when there is none. Fails when it cannot
/// be read.
Status FindDefinition(std::string const& dataPath, Definition& definition);
/// The fields of one line of such a file: "DEFN 3 ST=RECD,RT=; MAG:F10.2:UNIT=nT,NULL=-999.99". None for a record of
/// another type, such as comments.
std::vector<DefinedField> ReadDefinitionLine(std::string_view line);

}  // namespace norva
