#include "norva/status.h"

#include "platform/last_error.h"

#include <utility>

namespace norva {

Status Status::Failure(std::string what, std::string path, std::string reason) {
    Status status;
    status.m_kind = Kind::Failed;
    status.m_what = std::move(what);
    status.m_path = std::move(path);
    status.m_reason = std::move(reason);
    return status;
}

Status Status::FileFailure(std::string_view act, std::string path, int error) {
    return Failure("Couldn't " + std::string(act) + " the file", std::move(path), SystemErrorText(error));
}

Status Status::Cancelled() {
    Status status = Failure("Cancelled");
    status.m_kind = Kind::Cancelled;
    status.m_isSilent = true;
    return status;
}

Status Status::At(std::string place) && {
    m_place = std::move(place);
    return std::move(*this);
}

Status Status::Silent() && {
    m_isSilent = true;
    return std::move(*this);
}

std::string Status::Text() const {
    std::string text = m_what;
    if (!m_path.empty()) text += " : " + m_path;
    if (!m_place.empty()) text += ", " + m_place;
    if (!m_reason.empty()) text += "\n" + m_reason;
    return text;
}

}  // namespace norva
