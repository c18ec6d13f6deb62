#include "norva/scripted_toolkit.h"

#include <utility>

namespace norva {

namespace {

bool Fits(ScriptAnswer const& answer, ScriptAnswer::Kind kind, int dialog, std::string_view text) {
    if (answer.kind != kind) return false;
    if (kind == ScriptAnswer::Kind::Dialog) return answer.dialog == dialog;
    return kind != ScriptAnswer::Kind::Message || answer.text == text;
}

}  // namespace

CScriptPlayer::CScriptPlayer(std::vector<ScriptAnswer> answers, bool defaults)
    : m_answers(std::make_move_iterator(answers.begin()), std::make_move_iterator(answers.end())),
      m_defaults(defaults) {}

std::optional<ScriptAnswer> CScriptPlayer::Take(ScriptAnswer::Kind kind, int dialog, std::string_view text,
                                                std::string const& shown) {
    if (m_failed) return std::nullopt;
    if (!m_answers.empty() && Fits(m_answers.front(), kind, dialog, text)) {
        ScriptAnswer answer = std::move(m_answers.front());
        m_answers.pop_front();
        return answer;
    }
    if (!m_defaults) {
        Fail("shown: " + shown + "\nexpected: " +
             (m_answers.empty() ? "nothing more (the script has no answers left)" : m_answers.front().source));
    }
    return std::nullopt;
}

void CScriptPlayer::Fail(std::string message) {
    if (m_failed) return;
    m_failed = true;
    m_failure = std::move(message);
}

std::string CScriptPlayer::Failure() const {
    if (m_failed || m_answers.empty()) return m_failure;
    std::string left = "the operation has ended, and answers are left over:";
    for (ScriptAnswer const& answer : m_answers) left += "\n    " + answer.source;
    return left;
}

}  // namespace norva
