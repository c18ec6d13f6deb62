#include "inspection/definition_file.h"

#include "platform/files.h"
#include "platform/line_reader.h"
#include "platform/numbers.h"
#include "platform/paths.h"
#include "platform/text.h"

#include <algorithm>

namespace norva {

namespace {

/// More elements than any table has columns make a file of no use.
constexpr std::size_t kMostFields = 32767;
constexpr std::size_t kLongestLine = std::size_t{1} << 20;

/// What stands before the mark, which it leaves with the mark; all of it where there is none.
std::string_view TakeUntil(std::string_view& text, char mark) {
    std::size_t const at = std::min(text.find(mark), text.size());
    std::string_view const part = Trim(text.substr(0, at));
    text.remove_prefix(std::min(at + 1, text.size()));
    return part;
}

/// "5F8.2" is five numbers of eight characters.
bool ReadFormat(std::string_view format, std::size_t& count, bool& isText) {
    count = 0;
    std::size_t at = 0;
    for (; at < format.size() && IsDigit(format[at]); ++at) {
        count = std::min(count * 10 + static_cast<std::size_t>(format[at] - '0'), kMostFields + 1);
    }
    count = at == 0 ? 1 : count;
    if (at == format.size()) return false;
    auto const kind = static_cast<char>(format[at] & ~0x20);
    isText = kind == 'A';
    return count > 0 && count <= kMostFields && std::string_view("IFEDA").find(kind) != std::string_view::npos;
}

void TakeAttributes(std::string_view text, DefinedField& field) {
    while (!text.empty()) {
        std::string_view part = TakeUntil(text, ',');
        std::string const key = ToUpper(TakeUntil(part, '='));
        if (key == "UNIT" || key == "UNITS") field.unit = Trim(part);
        if (key == "NULL" && !part.empty()) field.null = ReadNumber(std::string(Trim(part)));
    }
}

}  // namespace

std::vector<DefinedField> ReadDefinitionLine(std::string_view line) {
    std::vector<DefinedField> fields;
    line = Trim(line);
    if (!ToUpper(std::string(line.substr(0, 4))).starts_with("DEFN")) return fields;
    std::string_view const record = TakeUntil(line, ';');
    // "RT=" without a type is the record of the data.
    std::string const upper = ToUpper(std::string(record));
    std::size_t const type = upper.find("RT=");
    if (type != std::string::npos && !Trim(std::string_view(upper).substr(type + 3)).empty()) return fields;
    while (!line.empty()) {
        std::string_view definition = TakeUntil(line, ';');
        DefinedField field;
        field.name = TakeUntil(definition, ':');
        std::size_t count = 0;
        if (!ReadFormat(TakeUntil(definition, ':'), count, field.isText)) continue;
        std::replace(field.name.begin(), field.name.end(), ' ', '_');
        TakeAttributes(definition, field);
        bool const isRecordType = ToUpper(field.name) == "RT" && field.isText;
        if (isRecordType || field.name.empty() || fields.size() + count > kMostFields) continue;
        std::string const name = field.name;
        for (std::size_t i = 1; i <= count; ++i) {
            if (count > 1) field.name = name + "_" + std::to_string(i);
            fields.push_back(field);
        }
    }
    return fields;
}

Status FindDefinition(std::string const& dataPath, Definition& definition) {
    definition = {};
    std::size_t const dot = dataPath.find_last_of("./");
    if (dot == std::string::npos || dataPath[dot] != '.') return {};
    for (char const* const extension : {".dfn", ".DFN"}) {
        std::string const path = dataPath.substr(0, dot) + extension;
        if (path == dataPath || !FileExists(path)) continue;
        CLineReader file;
        file.LimitLines(kLongestLine);
        if (!file.Open(path)) return Status::FileFailure("open", path, file.Error());
        definition.path = path;
        std::string_view line;
        while (file.Next(line)) {
            std::vector<DefinedField> const fields = ReadDefinitionLine(line);
            if (definition.fields.size() + fields.size() > kMostFields) break;
            definition.fields.insert(definition.fields.end(), fields.begin(), fields.end());
        }
        return file.Error() == 0 ? Status() : Status::FileFailure("read", path, file.Error());
    }
    return {};
}

}  // namespace norva
