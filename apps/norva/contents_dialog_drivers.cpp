#include "common/command_error.h"
#include "dialog_drivers.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <numeric>

namespace norva {

namespace {

struct RecordFormat {
    std::uintmax_t width;
    char const* readRadio;
    char const* writeRadio;
};

std::map<std::string, RecordFormat> const kRecordFormats = {
    {"int32", {4, "32-bit integer (signed)", "Long Integer (4 bytes)"}},
    {"int16", {2, "16-bit integer (signed)", "Short Integer (2 bytes)"}},
    {"double", {8, "64-bit float", "Float point (double precision)"}},
    {"float", {4, "32-bit float", "Float point (single precision)"}},
};

std::vector<std::string> ColumnOf(CControl const& report, std::string const& title) {
    auto const found = std::find(report.columns.begin(), report.columns.end(), title);
    auto const index = static_cast<std::size_t>(found - report.columns.begin());
    std::vector<std::string> texts;
    for (auto const& row : report.rows) texts.push_back(index < row.size() ? row[index] : std::string());
    return texts;
}

int ColumnIndex(CControl const& report, std::string const& title) {
    auto const found = std::find(report.columns.begin(), report.columns.end(), title);
    return static_cast<int>(found - report.columns.begin());
}

/// Leaves only the named rows of a report ticked.
void TickOnly(CDialogHand& hand, std::string const& report, std::vector<std::string> const& wanted,
              std::string const& what) {
    if (wanted.empty()) return;
    std::vector<std::string> const names = ColumnOf(hand.Control(report), "Name");
    std::vector<bool> keep(names.size(), false);
    for (std::string const& name : wanted) keep[static_cast<std::size_t>(FindNamed(names, name, 1, what))] = true;
    for (std::size_t i = 0; i < keep.size(); ++i) hand.Tick(report, static_cast<int>(i), keep[i]);
}

/// Moves the wanted entries of a list, counted from `first`, by a button that takes what is highlighted.
void MoveEntries(CDialogHand& hand, int list, int button, std::vector<std::string> const& wanted, int first,
                 std::string const& what) {
    std::vector<std::string> const names = hand.Control(list).items;
    std::vector<int> left(names.size());
    std::iota(left.begin(), left.end(), 0);
    for (std::string const& name : wanted) {
        auto const row = std::find(left.begin(), left.end(), FindNamed(names, name, first, what));
        if (row == left.end()) throw CommandError(what + " '" + name + "' is named twice");
        hand.SelectRow(list, static_cast<int>(row - left.begin()));
        hand.Click(button);
        left.erase(row);
    }
}

}  // namespace

void ChooseGbnContents(CDialogHand& hand, ImportOptions const& options) {
    TickOnly(hand, "Channels:", options.keepChannels, "channel");
    TickOnly(hand, "Lines:", options.keepLines, "line");
    std::map<std::string, char const*> const radios = {
        {"float", "Float point (single precision)"},
        {"short", "Short Integer (2 bytes)"},
        {"double", "Float point (double precision)"},
        {"long", "Long Integer (4 bytes)"},
        {"text", "General Text"},
    };
    for (ColumnOption const& option : options.columns) {
        CControl const& channels = hand.Control("Channels:");
        int const row = FindNamed(ColumnOf(channels, "Name"), option.column, 1, "channel");
        if (!option.type.empty()) {
            auto const radio = radios.find(option.type);
            if (radio == radios.end()) throw CommandError("a GBN channel cannot be made '" + option.type + "'");
            hand.SelectRow("Channels:", row);
            hand.Click(radio->second);
            hand.Click("Set for Selected");
        }
        if (option.units) hand.EditCell("Channels:", row, ColumnIndex(channels, "Units"), *option.units);
        if (option.name) hand.EditCell("Channels:", row, ColumnIndex(channels, "Name"), *option.name);
    }
    hand.Check("Import Fiducial as a separate channel", options.fiducial);
    hand.Click(kButtonOk);
}

void SetRecordLayout(CDialogHand& hand, ImportOptions const& options, std::string const& inputPath) {
    if (options.record.empty()) {
        throw CommandError("a file of binary records needs --record, for example --record \"X:double,Mag:float\"",
                           kExitUsage);
    }
    std::uintmax_t size = 0;
    for (RecordField const& field : options.record) size += kRecordFormats.at(field.readFormat).width;
    std::error_code error;
    std::uintmax_t const length = std::filesystem::file_size(inputPath, error);
    if (!error && size != 0 && length % size != 0 && !options.records) {
        throw CommandError(std::to_string(length) + " bytes are no whole number of records of " + std::to_string(size) +
                           " bytes (" + std::to_string(length / size) + " records and " +
                           std::to_string(length % size) + " bytes more); give --records to import it all the same");
    }
    hand.Set("Number of Channels in a record:", std::to_string(options.record.size()));
    hand.Click("Set");
    std::string const list = "Channels:";
    for (std::size_t i = 0; i < options.record.size(); ++i) {
        RecordField const& field = options.record[i];
        int const row = static_cast<int>(i);
        RecordFormat const& read = kRecordFormats.at(field.readFormat);
        hand.SelectRow(list, row);
        hand.Click(read.readRadio);
        if (!field.writeFormat.empty()) hand.Click(kRecordFormats.at(field.writeFormat).writeRadio);
        hand.Click("Set for Selected");
        CControl const& report = hand.Control(list);
        hand.EditCell(list, row, ColumnIndex(report, "Name"), field.name);
        if (!field.units.empty()) hand.EditCell(list, row, ColumnIndex(report, "Units"), field.units);
    }
    if (options.records) hand.Set("Total Records in File:", std::to_string(*options.records));
    // Unless told otherwise all records are one line, those that the file does not hold included.
    std::optional<long> const points = options.pointsPerLine ? options.pointsPerLine : options.records;
    if (points) hand.Set("Split into lines at (points)", std::to_string(*points));
    if (options.frequency) hand.Set("Sampling Frequency (Hz):", std::to_string(*options.frequency));
    hand.Check("Add Fiducial Channel", options.fiducial);
    hand.Click(kButtonOk);
}

void ChooseDumpColumns(CDialogHand& hand, ImportOptions const& options) {
    // Controls of "Scintrex CG3 Dump Import".
    constexpr int kInFile = 4074;
    constexpr int kToImport = 4075;
    constexpr int kAdd = 4077;
    constexpr int kRemove = 4078;
    if (!options.dumpColumns.empty()) {
        while (hand.Control(kToImport).RowCount() > 0) {
            hand.SelectRow(kToImport, 0);
            hand.Click(kRemove);
        }
        MoveEntries(hand, kInFile, kAdd, options.dumpColumns, 1, "column");
    }
    if (!options.dateFormat.empty()) {
        hand.Choose(4080, FindNamed(hand.Control(4080).items, options.dateFormat, 0, "date format"));
    }
    if (!options.timeFormat.empty()) {
        hand.Choose(4081, FindNamed(hand.Control(4081).items, options.timeFormat, 0, "time format"));
    }
    if (options.sortByTime) hand.Check(4082, *options.sortByTime);
    hand.Click(4079);
}

void ChooseExport(CDialogHand& hand, ExportOptions const& options) {
    // Controls of "Export": the existing list, the button that moves one entry, the one that moves all.
    auto const choose = [&hand](int existing, int one, int all, std::vector<std::string> const& wanted,
                                std::string const& what) {
        if (wanted.empty()) {
            hand.Click(all);
        } else {
            MoveEntries(hand, existing, one, wanted, 0, what);
        }
    };
    choose(4005, 4008, 4007, options.lines, "line");
    choose(4001, 4012, 4011, options.channels, "channel");
    hand.Click(options.labelAsChannel ? 4015 : 4016);
    if (hand.Control(4046).enabled) hand.Check(4046, options.pointId);
    if (hand.Control(4091).enabled) hand.Check(4091, options.units);
    hand.Click(kButtonOk);
}

}  // namespace norva
