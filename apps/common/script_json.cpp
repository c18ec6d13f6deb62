#include "common/script_json.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <initializer_list>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace norva {

namespace {

using Json = nlohmann::json;
using Settings = std::map<std::string, std::string>;

/// More than any script needs, and few enough to walk by recursion.
constexpr int kMostDepth = 16;

/// Where in the script something stands: "answers[2].do[0]".
struct Place {
    std::string path;

    Place Key(std::string_view key) const { return {path.empty() ? std::string(key) : path + "." + std::string(key)}; }
    Place At(std::size_t index) const { return {path + "[" + std::to_string(index) + "]"}; }
};

[[noreturn]] void Reject(Place const& place, std::string const& what) {
    throw std::runtime_error(place.path.empty() ? what : place.path + ": " + what);
}

std::string Printed(Json const& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void Replace(std::string& text, Settings const& settings) {
    std::string out;
    std::size_t from = 0;
    for (std::size_t open = text.find('{'); open != std::string::npos; open = text.find('{', from)) {
        std::size_t const close = text.find('}', open);
        if (close == std::string::npos) break;
        auto const setting = settings.find(text.substr(open + 1, close - open - 1));
        bool const known = setting != settings.end();
        out.append(text, from, open - from);
        out += known ? setting->second : "{";
        from = known ? close + 1 : open + 1;
    }
    out.append(text, from);
    text = std::move(out);
}

void ReplaceAll(Json& value, Settings const& settings, int depth = 0) {
    if (depth > kMostDepth) Reject({}, "is nested more than " + std::to_string(kMostDepth) + " deep");
    if (value.is_string()) {
        Replace(value.get_ref<std::string&>(), settings);
    } else if (value.is_structured()) {
        for (Json& child : value) ReplaceAll(child, settings, depth + 1);
    }
}

std::string FullName(std::string const& path) {
    return path.empty() ? path : std::filesystem::absolute(path).string();
}

/// An object whose keys are all used up one by one.
class Fields {
public:
    Fields(Json const& object, Place place) : m_object(object), m_place(std::move(place)) {
        if (!object.is_object()) Reject(m_place, "must be an object, is " + Printed(object));
    }

    bool Has(char const* key) const { return m_object.contains(key); }
    Place At(char const* key) const { return m_place.Key(key); }
    Place const& Where() const { return m_place; }

    /// Every key must be one of these.
    void Allow(std::initializer_list<std::string_view> keys) const {
        for (auto const& item : m_object.items()) {
            bool known = false;
            for (std::string_view key : keys) known = known || key == item.key();
            if (!known) Reject(m_place, "unknown key \"" + item.key() + "\"");
        }
    }

    Json const& Get(char const* key) const {
        auto const found = m_object.find(key);
        if (found == m_object.end()) Reject(m_place, "\"" + std::string(key) + "\" is missing");
        return *found;
    }

    std::string Text(char const* key) const {
        Json const& value = Get(key);
        if (!value.is_string()) Reject(At(key), "must be a text, is " + Printed(value));
        return value.get<std::string>();
    }

    std::string OneOf(char const* key, std::initializer_list<std::string_view> words) const {
        std::string text = Text(key);
        std::string list;
        for (std::string_view word : words) {
            if (text == word) return text;
            list += (list.empty() ? "\"" : ", \"") + std::string(word) + "\"";
        }
        Reject(At(key), "must be one of " + list + ", is " + Printed(text));
    }

    bool Flag(char const* key) const {
        Json const& value = Get(key);
        if (!value.is_boolean()) Reject(At(key), "must be true or false, is " + Printed(value));
        return value.get<bool>();
    }

    int Integer(char const* key) const;
    Json const& Array(char const* key) const {
        Json const& value = Get(key);
        if (!value.is_array()) Reject(At(key), "must be an array, is " + Printed(value));
        return value;
    }

private:
    Json const& m_object;
    Place m_place;
};

int IntegerOf(Json const& value, Place const& place) {
    bool const fits = value.is_number_unsigned()
                          ? value.get<std::uint64_t>() <= static_cast<std::uint64_t>(std::numeric_limits<int>::max())
                          : value.is_number_integer() && value.get<std::int64_t>() >= std::numeric_limits<int>::min();
    if (!fits) Reject(place, "must be a whole number of at most 32 bits, is " + Printed(value));
    return value.get<int>();
}

int Fields::Integer(char const* key) const {
    return IntegerOf(Get(key), At(key));
}

ControlName ControlOf(Fields const& fields, char const* key) {
    if (fields.Get(key).is_string()) return fields.Text(key);
    if (fields.Get(key).is_number()) return fields.Integer(key);
    Reject(fields.At(key), "must be a control's number or label, is " + Printed(fields.Get(key)));
}

void ParseSet(Fields const& fields, ScriptAction& action) {
    fields.Allow({"set", "to"});
    action.kind = ScriptAction::Kind::Set;
    Json const& value = fields.Get("to");
    if (value.is_boolean()) {
        action.value = value.get<bool>();
    } else if (value.is_number()) {
        action.value = fields.Integer("to");
    } else if (value.is_string()) {
        action.value = fields.Text("to");
    } else {
        Reject(fields.At("to"), "must be a text, a whole number, true or false, is " + Printed(value));
    }
}

void ParseSelect(Fields const& fields, ScriptAction& action) {
    if (fields.Has("rows")) {
        fields.Allow({"select", "rows"});
        action.kind = ScriptAction::Kind::SelectRows;
        Json const& rows = fields.Array("rows");
        for (std::size_t i = 0; i < rows.size(); ++i) {
            action.rows.push_back(IntegerOf(rows[i], fields.At("rows").At(i)));
        }
        if (rows.empty()) Reject(fields.At("rows"), "must name a row at least");
    } else if (fields.Has("column")) {
        fields.Allow({"select", "column"});
        action.kind = ScriptAction::Kind::SelectColumn;
        action.column = fields.Integer("column");
    } else {
        if (!fields.Has("row")) Reject(fields.Where(), "\"row\", \"rows\" or \"column\" is missing");
        fields.Allow({"select", "row", "with"});
        action.kind = ScriptAction::Kind::SelectRow;
        action.row = fields.Integer("row");
        if (fields.Has("with")) {
            action.modifier = fields.OneOf("with", {"shift", "ctrl"}) == "shift" ? DialogEvent::Modifier::Shift
                                                                                 : DialogEvent::Modifier::Ctrl;
        }
    }
}

/// The one of `keys` that says what an object is.
std::string_view Subject(Fields const& fields, char const* what, std::initializer_list<char const*> keys) {
    char const* found = nullptr;
    std::string list;
    for (char const* key : keys) {
        list += std::string(list.empty() ? "\"" : ", \"") + key + "\"";
        if (!fields.Has(key)) continue;
        if (found != nullptr) {
            Reject(fields.Where(), std::string("has both \"") + found + "\" and \"" + key + "\"");
        }
        found = key;
    }
    if (found == nullptr) Reject(fields.Where(), std::string("is no ") + what + ": it has none of " + list);
    return found;
}

ScriptAction ParseAction(Json const& json, Place const& place) {
    Fields const fields(json, place);
    ScriptAction action;
    action.source = Printed(json);
    std::string_view const subject =
        Subject(fields, "action", {"click", "set", "select", "double", "edit", "tick", "close"});
    if (subject == "close") {
        fields.Allow({"close"});
        if (!fields.Flag("close")) Reject(fields.At("close"), "must be true");
        action.kind = ScriptAction::Kind::Close;
        return action;
    }
    action.control = ControlOf(fields, subject.data());
    if (subject == "click") {
        fields.Allow({"click"});
        action.kind = ScriptAction::Kind::Click;
    } else if (subject == "set") {
        ParseSet(fields, action);
    } else if (subject == "select") {
        ParseSelect(fields, action);
    } else if (subject == "double") {
        fields.Allow({"double", "row"});
        action.kind = ScriptAction::Kind::DoubleClick;
        action.row = fields.Integer("row");
    } else if (subject == "edit") {
        fields.Allow({"edit", "row", "column", "to"});
        action.kind = ScriptAction::Kind::EditCell;
        action.row = fields.Integer("row");
        action.column = fields.Integer("column");
        action.value = fields.Text("to");
    } else {
        fields.Allow({"tick", "row", "on"});
        action.kind = ScriptAction::Kind::Tick;
        action.row = fields.Integer("row");
        action.on = fields.Flag("on");
    }
    return action;
}

std::optional<std::string> PathOf(Fields const& fields, char const* key) {
    if (fields.Get(key).is_null()) return std::nullopt;
    return FullName(fields.Text(key));
}

ScriptAnswer ParseAnswer(Json const& json, Place const& place) {
    Fields const fields(json, place);
    ScriptAnswer answer;
    answer.source = Printed(json);
    std::string_view const subject = Subject(fields, "answer", {"dialog", "message", "open", "save"});
    if (subject == "dialog") {
        fields.Allow({"dialog", "do"});
        answer.kind = ScriptAnswer::Kind::Dialog;
        answer.dialog = fields.Integer("dialog");
        Json const& actions = fields.Array("do");
        for (std::size_t i = 0; i < actions.size(); ++i) {
            answer.actions.push_back(ParseAction(actions[i], fields.At("do").At(i)));
        }
    } else if (subject == "message") {
        fields.Allow({"message", "answer"});
        answer.kind = ScriptAnswer::Kind::Message;
        answer.text = fields.Text("message");
        std::string const word = fields.OneOf("answer", {"ok", "yes", "no"});
        answer.answer = word == "ok" ? MessageAnswer::Ok : word == "yes" ? MessageAnswer::Yes : MessageAnswer::No;
    } else if (subject == "open") {
        fields.Allow({"open"});
        answer.kind = ScriptAnswer::Kind::Open;
        answer.path = PathOf(fields, "open");
    } else {
        fields.Allow({"save", "extension"});
        answer.kind = ScriptAnswer::Kind::Save;
        answer.path = PathOf(fields, "save");
        if (fields.Has("extension")) answer.extension = fields.Text("extension");
    }
    return answer;
}

}  // namespace

Script ParseScript(std::string const& text, std::map<std::string, std::string> const& settings) {
    Json json;
    try {
        json = Json::parse(text);
    } catch (Json::exception const& error) {  // numbers too large for a double, too
        throw std::runtime_error(std::string("is no JSON: ") + error.what());
    }
    ReplaceAll(json, settings);
    Fields const fields(json, {});
    fields.Allow({"operation", "level", "store", "name", "answers"});
    Script script;
    script.isImport = fields.OneOf("operation", {"import", "export"}) == "import";
    if (fields.Has("level")) script.level = fields.Integer("level");
    // An export has nothing to do without a store; an import only proposes its name.
    if (fields.Has("store") || !script.isImport) script.store = FullName(fields.Text("store"));
    if (fields.Has("name")) script.name = FullName(fields.Text("name"));
    if (fields.Has("answers")) {
        Json const& answers = fields.Array("answers");
        for (std::size_t i = 0; i < answers.size(); ++i) {
            script.answers.push_back(ParseAnswer(answers[i], fields.At("answers").At(i)));
        }
    }
    return script;
}

}  // namespace norva
