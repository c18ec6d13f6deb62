#include "common/names.h"

#include "common/command_error.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <numeric>

namespace norva {

namespace {

template <typename Matches>
std::vector<int> PlacesWhere(std::vector<std::string> const& names, Matches matches) {
    std::vector<int> places;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (matches(names[i])) places.push_back(static_cast<int>(i));
    }
    return places;
}

/// Letters to insert, drop, change or exchange with their neighbour to make one word of the other.
std::size_t EditDistance(std::string_view a, std::string_view b) {
    std::vector<std::vector<std::size_t>> cost(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) cost[i][0] = i;
    std::iota(cost[0].begin(), cost[0].end(), 0U);
    for (std::size_t i = 1; i <= a.size(); ++i) {
        for (std::size_t j = 1; j <= b.size(); ++j) {
            std::size_t const change = cost[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            cost[i][j] = std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1, change});
            bool const isSwapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (isSwapped) cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
        }
    }
    return cost[a.size()][b.size()];
}

}  // namespace

bool EqualIgnoringCase(std::string_view first, std::string_view second) {
    return std::equal(first.begin(), first.end(), second.begin(), second.end(), [](char a, char b) {
        return std::toupper(static_cast<unsigned char>(a)) == std::toupper(static_cast<unsigned char>(b));
    });
}

std::vector<int> FindAllNamed(std::vector<std::string> const& names, std::string const& wanted, int first,
                              std::string const& what) {
    std::vector<int> found = PlacesWhere(names, [&](std::string const& name) { return name == wanted; });
    if (found.empty()) {
        found = PlacesWhere(names, [&](std::string const& name) { return EqualIgnoringCase(name, wanted); });
    }
    if (!found.empty()) return found;
    int number = 0;
    auto const [end, error] = std::from_chars(wanted.data(), wanted.data() + wanted.size(), number);
    if (error == std::errc{} && end == wanted.data() + wanted.size() && number >= first &&
        number - first < static_cast<int>(names.size())) {
        return {number - first};
    }
    std::string const numbers = names.empty() ? "" : "; numbers count from " + std::to_string(first);
    throw CommandError("there is no " + what + " '" + wanted + "' (there are: " + ListOf(names) + numbers + ")");
}

int FindNamed(std::vector<std::string> const& names, std::string const& wanted, int first, std::string const& what) {
    std::vector<int> const found = FindAllNamed(names, wanted, first, what);
    if (found.size() == 1) return found.front();
    std::vector<std::string> numbers;
    for (int const place : found) numbers.push_back(std::to_string(place + first));
    throw CommandError("there are " + std::to_string(found.size()) + " " + what + "s '" + wanted +
                       "'; give the number, counted from " + std::to_string(first) + ": " + ListOf(numbers));
}

std::vector<int> FindListed(std::vector<std::string> const& names, std::vector<std::string> const& wanted, int first,
                            std::string const& what) {
    std::vector<int> chosen;
    if (wanted.empty()) {
        chosen.resize(names.size());
        std::iota(chosen.begin(), chosen.end(), 0);
    }
    std::vector<bool> isTaken(names.size(), false);
    for (std::string const& name : wanted) {
        for (int const place : FindAllNamed(names, name, first, what)) {
            if (isTaken[static_cast<std::size_t>(place)]) throw CommandError(what + " '" + name + "' is named twice");
            isTaken[static_cast<std::size_t>(place)] = true;
            chosen.push_back(place);
        }
    }
    return chosen;
}

std::string ClosestWord(std::string_view mistyped, std::vector<std::string> const& known) {
    std::string closest;
    std::size_t best = std::max<std::size_t>(1, mistyped.size() / 3) + 1;
    for (std::string const& word : known) {
        std::size_t const distance = EditDistance(mistyped, word);
        if (distance >= best) continue;
        best = distance;
        closest = word;
    }
    return closest;
}

std::string ListOf(std::vector<std::string> const& words) {
    std::string text;
    for (std::string const& word : words) {
        if (text.size() > 200) return text + ", ...";
        text += (text.empty() ? "" : ", ") + word;
    }
    return text;
}

}  // namespace norva
