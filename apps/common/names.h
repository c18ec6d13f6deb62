#pragma once

#include <string>
#include <string_view>
#include <vector>

/// What a person named on a command line, found among what there is.
namespace norva {

bool EqualIgnoringCase(std::string_view first, std::string_view second);

/// Places of all entries with a name, else of the names that differ from it in case only, else of the entry with that
/// number, counted from `first`. Throws CommandError naming `what` ("line", "channel") when there is none.
std::vector<int> FindAllNamed(std::vector<std::string> const& names, std::string const& wanted, int first,
                              std::string const& what);
/// The same for one entry: throws CommandError with the numbers when several have the name.
int FindNamed(std::vector<std::string> const& names, std::string const& wanted, int first, std::string const& what);
/// Places of the wanted entries in the order wanted, those of one name together; all when none is wanted. Throws
/// CommandError for one that is wanted twice.
std::vector<int> FindListed(std::vector<std::string> const& names, std::vector<std::string> const& wanted, int first,
                            std::string const& what);

/// The known word that a mistyped one is closest to; empty when none is close.
std::string ClosestWord(std::string_view mistyped, std::vector<std::string> const& known);

/// Words separated by ", "; the rest is left out of a long list.
std::string ListOf(std::vector<std::string> const& words);

}  // namespace norva
