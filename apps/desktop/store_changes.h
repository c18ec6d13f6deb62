#pragma once

#include <map>
#include <memory>
#include <vector>

namespace norva {

/// What a person changed in a store and has not saved: whole states of the lines concerned, shared between the steps
/// of undo, so that a step costs no more than the line that it touched.
struct StoreChanges {
    using Marks = std::vector<bool>;  ///< a location a bit; true: deleted

    std::map<int, std::shared_ptr<Marks const>> marks;
    std::map<int, int> flags;  ///< of lines; 0: shown

    bool IsEmpty() const { return marks.empty() && flags.empty(); }
    /// The marks of a line when they were changed, else null.
    Marks const* MarksOf(int line) const {
        auto const found = marks.find(line);
        return found == marks.end() ? nullptr : found->second.get();
    }
};

}  // namespace norva
