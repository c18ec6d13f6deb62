#pragma once

#include "norva/api.h"
#include "norva/values.h"

#include <string>
#include <string_view>
#include <vector>

/// Text to value and back for dates, times and geographic coordinates; the tokenizer; the host's helpers.
namespace norva {

/// Dates are decimal years (year + day of the year / days in the year, the day counted from 1); times are hours.
/// Reading a text that does not fit gives the no-data value 1.0e30 and the result 0.
class NORVA_API CNorvaDateTime {
public:
    int GetDoubleDate(std::string_view text, int templateFormat, double& value) const;
    /// `decimals` is how many digits of the second follow its "."; the text decides, the number is not needed.
    int GetDoubleTime(std::string_view text, int templateFormat, int decimals, double& value) const;
    /// Replaces `text`. No allocation once `text` has grown.
    int GetStringDate(double value, int templateFormat, std::string& text) const;
    int GetStringTime(double value, int templateFormat, int decimals, std::string& text) const;
    /// Year, month (1 to 12) and day of a date; 0 for what is no date.
    int GetDateParts(double value, int& year, int& month, int& day) const;
    /// The other way; the no-data value and the result 0 when there is no such day.
    int GetDoubleDate(int year, int month, int day, double& value) const;
    /// Templates in the order of their codes.
    void GetImportDateTemplate(std::vector<std::string>& names, std::vector<int>& codes) const;
    void GetImportTimeTemplate(std::vector<std::string>& names, std::vector<int>& codes) const;
};

/// Coordinates are decimal degrees, negative for south and west. Template 0 is "dd.mm.ss.sss".
class NORVA_API CNorvaGeographic {
public:
    /// `decimals` receives the number of digits of the fraction of a second.
    int GetDoubleData(std::string_view text, int templateFormat, double& value, int& decimals) const;
    int GetString(double value, int templateFormat, int decimals, std::string& text) const;
};

/// Helpers that the host's toolkit gives.
class NORVA_API CUAC {
public:
    static bool IsVistaOrLater();
    /// A private folder of this thread below the temporary directory, ending in a separator; created when first
    /// asked for, removed when the thread ends. 0 when it cannot be had.
    static int GetUserNorvaToolTempDirectory(std::string& directory);
    /// Save dialog. Sets `path` and `extension` (without its dot) when the user confirmed.
    static int BrowseFileToSaveGetExt(unsigned flags, std::string const& filter, std::string& path,
                                      std::string const& initialName, std::string& extension);
};

/// Splits at every character of `delimiters`; adjacent delimiters give no empty token. Replaces `tokens`; the views
/// last as long as `text`.
NORVA_API void GetTokens(std::string_view text, std::vector<std::string_view>& tokens, std::string_view delimiters);

}  // namespace norva
