#pragma once

#include "norva/api.h"

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace norva {

/// What a file of another format holds, as far as it tells without being imported.
struct FileDescription {
    using Value = std::variant<std::int64_t, double, std::string>;

    struct Table {
        std::string name;  ///< what its rows are: "lines", "channels"
        std::vector<std::string> columns;
        std::vector<std::vector<Value>> rows;
    };

    std::string format;  ///< label in the format list
    std::vector<std::pair<std::string, Value>> facts;
    std::vector<Table> tables;
    std::string problem;  ///< what is wrong with a file that can be described all the same; else empty

    void AddFact(std::string name, Value value) { facts.emplace_back(std::move(name), std::move(value)); }
    void AddCount(std::string name, std::uint64_t count) { AddFact(std::move(name), static_cast<std::int64_t>(count)); }
};

/// What a file of fixed-length records does not say of itself: one field of its record.
struct DescribedField {
    std::string name;
    std::string format;  ///< "int16", "int32", "float" or "double"
    std::string units;
};

struct DescriptionSettings {
    std::string format;                  ///< label in the format list; empty: recognised
    std::vector<DescribedField> record;  ///< of fixed-length records
};

/// Describes a file without importing it, in memory that its values do not fill. Shows nothing. 0, with the reason in
/// GetLastErrorText(), when it cannot be read or is not of its format.
NORVA_API int DescribeFile(std::string const& path, DescriptionSettings const& settings, FileDescription& description);

}  // namespace norva
