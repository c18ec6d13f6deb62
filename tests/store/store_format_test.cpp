#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace norva {
namespace {

using test::CTemporaryFolder;

std::string OutputOf(std::string const& command) {
    std::string output;
    std::FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return output;
    char buffer[4096];
    while (std::size_t const got = std::fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, got);
    pclose(pipe);
    return output;
}

/// The program of the format's page reads what the store writes.
TEST(StoreFormat, TheDocumentedReaderReadsAStore) {
    if (std::system("command -v python3 > /dev/null") != 0) GTEST_SKIP() << "no python3 here";
    std::string const page = test::ReadWholeFile(NORVA_DOCS "/store-format.md");
    std::size_t const start = page.find("```python\n");
    ASSERT_NE(start, std::string::npos);
    std::size_t const code = start + 10;
    CTemporaryFolder folder;
    test::WriteWholeFile(folder / "read.py", page.substr(code, page.find("```", code) - code));

    test::StoreSample sample = test::MakeStoreSample();
    sample.lines[0].name = "L10, north\nand south";
    CNorvaFileUtil store;
    ASSERT_TRUE(test::WriteSample(store, folder / "a.nvt", sample));
    EXPECT_EQ(OutputOf("python3 " + (folder / "read.py") + " " + (folder / "a.nvt") + " 2>&1"),
              "X,m [1000.0, 1e+30, 1000.5, 1000.75, 1001.0, 1001.25, 1001.5, 1001.75]\n"
              "Mag,nT [48000.5, 1.0000000150474662e+30, 47998.5, 47997.5, 47996.5, 47995.5, 47994.5, 47993.5]\n"
              "Fid, [0, 2147483647, 200, 300, 400, 500, 600, 700]\n"
              "Raw,mV [0, 32767, -2, -3, -4, -5, -6, -7]\n"
              "Station, [b'S0    ', b'*     ', b'S2    ', b'S3    ', b'S4    ', b'S5    ', b'S6    ', b'S7    ']\n"
              "Counts, [0, 2147483647, 2, 3, 4, 5, 6, 7]\n");
}

}  // namespace
}  // namespace norva
