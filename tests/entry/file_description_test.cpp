#include "norva/file_description.h"
#include "norva/import_export.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <locale>
#include <sstream>

namespace norva::test {

namespace {

std::ostream& operator<<(std::ostream& out, FileDescription::Value const& value) {
    std::visit([&out](auto const& held) { out << held; }, value);
    return out;
}

/// "FORMAT; fact=value; table: a|b, c|d; problem: ...", without the length of the file and the text it begins with.
std::string Text(FileDescription const& description) {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << description.format;
    for (auto const& [name, value] : description.facts) {
        if (name != "bytes") out << "; " << name << "=" << value;
    }
    for (FileDescription::Table const& table : description.tables) {
        if (table.name == "first lines") continue;
        out << "; " << table.name << ":";
        for (auto const& row : table.rows) {
            char const* separator = &row == &table.rows.front() ? " " : ", ";
            for (FileDescription::Value const& value : row) {
                out << separator << value;
                separator = "|";
            }
        }
    }
    if (!description.problem.empty()) out << "; problem: " << description.problem;
    return out.str();
}

std::string Sample(std::string const& name) {
    return ReadWholeFile(NORVA_SAMPLES "/" + name);
}

}  // namespace

TEST(FileDescription, SaysWhatAFileHoldsOrWhyItCannot) {
    CTemporaryFolder const folder;
    std::string const tki = "BEGIN\nline,2,as,,,\nmag,2,in,0.1,5,nT,more\nEND\n\x1A";
    struct Case {
        char const* name;
        std::string bytes;
        char const* says;  ///< the description, or the end of the error
        DescriptionSettings settings{};
    };
    for (Case const& c : std::vector<Case>{
             {"a.xyz", "/ X Y Z\nLINE 7\n9.12.01 2.25 wide\n3 4 5\n\n6 * 1\nLine: 8\n5 6 -1\n",
              "ASCII XYZ; rows=4; columns: Ch1|double, geographic, Ch2|float, Ch3|short; lines: 7|3, 8|1"},
             {"a.csv", "X,Remark,D\r\n1,a b,1/2/1\r\n2,longer one,*",
              "ASCII CSV; rows=2; columns: Ch1|short, Ch2|text of 10 characters, Ch3|double, date; lines: LINE1|2"},
             {"a.dmp", Sample("cg3.dmp"),
              "Scintrex CG3; readings=32; heights in A-lines=yes; columns: Station, Grav., SD., Tilt x, Tilt y, Temp., "
              "E.T.C., Dur, # Rej, Time, A:; lines: 100.|94/08/22|16, 150.|94/08/23|16"},
             {"a.dmp",
              "no dump",
              "No line of column titles (STATION) follows two lines of dashes.",
              {"Scintrex CG3", {}}},
             {"a.igs", Sample("ipr12.dmp"),
              "Scintrex IPR_12; station groups=8; readings=48; columns: Stn, C1, C2, I, T, Cyc, Vp, SP, M0, M1, M2, "
              "M3, "
              "M4, M5, M6, Ms, Tau, M7, M8, M9, M10, M11, M12, M13, RMS, Fit; lines: 100N|24, 150N|24"},
             {"a.mag", "log\n*07.123/12:30:15.5 F[1.5 2] R[3]\n *no record\n* LINE 1 F[\n",
              "SeaSPY(Marine Magnetics); records=1; lines that are no record=2; coordinates=no; columns: "
              "Ch1|double, date, Ch2|double, time, Ch3|float, Ch4|short, Ch5|short"},
             {"a.gpx",
              "<gpx><wpt lat='1' lon='2'><name>no</name></wpt><trk><name>A &amp; B</name><trkseg><trkpt lat='1' "
              "lon='2'/>"
              "<trkpt lat='1' lon='2'><name>no</name></trkpt></trkseg><trkseg/></trk><rte><rtept lat='1' lon='3'/>",
              "GPS Exchange Format(GPX); tracks=1; segments=2; routes=1; points=3; waypoints=1; "
              "lines: A &amp; B|track|2, |route|1"},
             {"a.gpx", "text", "it is not in the format GPS Exchange Format(GPX)", {"GPS Exchange Format(GPX)", {}}},
             {"a.gbn", Sample("survey.gbn"),
              "Geosoft GBN; locations=132; channels: X|double|, Y|double|, Mag|float|, Sat|short|, Note|text of 8 "
              "characters|; lines: 1:2000|40, 2:2010|44, 3:2020|48"},
             {"a.gbn", Sample("survey.gbn").substr(0, 500),
              "Geosoft GBN; locations=2; channels: X|double|, Y|double|, Mag|float|, Sat|short|, Note|text of 8 "
              "characters|; lines: 1:2000|2; problem: File ends inside the data block at byte 0x1C6; 2 of 40 values of "
              "channel X were read"},
             {"a.bin",
              std::string(23, '\1'),
              "Binary XYZ; record bytes=10; records=2; bytes after the last record=3; "
              "fields: T|double|s|0, N|int16||8; problem: The file is not a whole "
              "number of such records.",
              {"Binary XYZ", {{"T", "double", "s"}, {"N", "int16", ""}}}},
             {"a.bin", std::string(20, '\0'), "there is no format \"int64\"", {"Binary XYZ", {{"T", "int64", ""}}}},
             {"a.p1", tki + "L1\1\2\3\4L1\1\2\3\4L2\1\2\3\4cut",
              "Tarko; record bytes=6; locations of a record=2; header bytes=46; records=3; channels: line|2|as|0|0||, "
              "mag|2|in|0.1|5|nT|more; lines: L1|3, L2|1"},
             {"a.p1", tki,
              "Tarko; record bytes=6; locations of a record=2; channels: line|2|as|0|0||, "
              "mag|2|in|0.1|5|nT|more; problem: There is no record behind the end mark of the header, or "
              "no end mark."},
             {"a.p1", "BEGIN\nmag,0,in,,,\nEND\n\x1A", "the count is 0, not 1 to 16000000"},
             {"a.p1", "BEGIN\nEND\n\x1A", "The header holds no channel between BEGIN and END."},
             {"a.xyz", "", "the file is empty"},
             {"a.xyz", "1 2", "there is no format \"Z\"", {"Z", {}}},
             {"", "", "Is a directory"},
         }) {
        std::string const path = folder / c.name;
        WriteWholeFile(path, c.bytes);
        FileDescription description;
        int const done = DescribeFile(path, c.settings, description);
        std::string const said = done != 0 ? Text(description) : GetLastErrorText();
        EXPECT_TRUE(done != 0 ? said == c.says : said.ends_with(c.says))
            << c.name << ": " << said << "\nnot: " << c.says;
    }
}

}  // namespace norva::test
