#include "common/unpacking.h"
#include "common/command_error.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>
#include <vector>

using namespace norva;

namespace {

std::string Gzipped(std::string const& text) {
    test::CTemporaryFolder const folder;
    gzFile const file = gzopen((folder / "x").c_str(), "wb");
    gzwrite(file, text.data(), static_cast<unsigned>(text.size()));
    gzclose(file);
    return test::ReadWholeFile(folder / "x");
}

std::string Bytes(std::uint64_t number, int width) {
    std::string bytes;
    for (; width-- > 0; number >>= 8) bytes += static_cast<char>(number & 0xFF);
    return bytes;
}

std::string Deflated(std::string const& text) {
    z_stream stream{};
    deflateInit2(&stream, 9, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    std::string out(text.size() + 100, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

struct ZipFile {
    std::string name;
    std::string text;
    bool isDeflated = true;
    unsigned flags = 0;
};

std::string Zipped(std::vector<ZipFile> const& files) {
    std::string bytes;
    std::string list;
    for (ZipFile const& file : files) {
        std::string const packed = file.isDeflated ? Deflated(file.text) : file.text;
        auto const crc = crc32(crc32(0, nullptr, 0), reinterpret_cast<Bytef const*>(file.text.data()),
                               static_cast<uInt>(file.text.size()));
        std::string const common = Bytes(20, 2) + Bytes(file.flags, 2) + Bytes(file.isDeflated ? 8 : 0, 2) +
                                   Bytes(0, 4) + Bytes(crc, 4) + Bytes(packed.size(), 4) + Bytes(file.text.size(), 4) +
                                   Bytes(file.name.size(), 2) + Bytes(0, 2);
        list += "PK\x01\x02" + Bytes(20, 2) + common + Bytes(0, 10) + Bytes(bytes.size(), 4) + file.name;
        bytes += "PK\x03\x04" + common + file.name + packed;
    }
    std::string const end = "PK\x05\x06" + Bytes(0, 4) + Bytes(files.size(), 2) + Bytes(files.size(), 2) +
                            Bytes(list.size(), 4) + Bytes(bytes.size(), 4) + Bytes(0, 2);
    return bytes + list + end;
}

}  // namespace

TEST(Unpacking, GivesTheOneFileOrSaysWhyNot) {
    std::string const text = "A,B\n1,2.5\n3,4.5\n" + std::string(300'000, '5') + "\n";
    std::string const gzip = Gzipped(text);
    std::string const zip = Zipped({{"folder/", "", false}, {"folder/inner.csv", text}, {"__MACOSX/._inner.csv", "x"}});
    std::string wrongSum = zip;
    wrongSum[zip.rfind("PK\x01\x02", zip.rfind("folder/inner.csv")) + 16] ^= 1;
    struct Case {
        char const* what;
        std::string name;
        std::string bytes;
        std::string gives;  ///< the name inside; or empty
        std::string said;
        std::uint64_t most = kMostUnpackedBytes;
    };
    Case const cases[] = {
        {"gzip", "a.csv.gz", gzip, "a.csv", ""},
        {"gzip by another name", "a.dat", gzip, "a.dat", ""},
        {"gzip of two parts and zeros", "a.gz",
         Gzipped(text.substr(0, 5)) + Gzipped(text.substr(5)) + std::string(9, '\0'), "a", ""},
        {"zip", "a.zip", zip, "inner.csv", ""},
        {"zip that stores", "a.zip", Zipped({{"inner.csv", text, false}}), "inner.csv", ""},
        {"zip that leads out", "a.zip", Zipped({{"../../inner.csv", text}}), "inner.csv", ""},
        {"cut gzip", "a.gz", gzip.substr(0, gzip.size() / 2), "", "cut short"},
        {"altered gzip", "a.gz", gzip.substr(0, gzip.size() - 6) + "xxxxxx", "", "damaged"},
        {"cut zip", "a.zip", zip.substr(0, zip.size() - 30), "", "damaged"},
        {"two files", "a.zip", Zipped({{"a", text}, {"b", text}}), "", "ZIP archive of 2 files"},
        {"no file", "a.zip", Zipped({{"folder/", "", false}}), "", "ZIP archive of 0 files"},
        {"encrypted", "a.zip", Zipped({{"a", text, true, 1}}), "", "encrypted"},
        {"more than the bound", "a.gz", gzip, "", "more than 1000 bytes", 1000},
        {"wrong checksum", "a.zip", wrongSum, "", "damaged"},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.what);
        test::CTemporaryFolder const from;
        test::CTemporaryFolder const to;
        test::WriteWholeFile(from / c.name, c.bytes);
        EXPECT_TRUE(IsPacked(from / c.name));
        std::string said;
        try {
            std::string const made = Unpack(from / c.name, to.Path(), c.most);
            EXPECT_EQ(made, to / c.gives);
            EXPECT_TRUE(test::ReadWholeFile(made) == text);
        } catch (CommandError const& error) {
            said = error.what();
            EXPECT_TRUE(std::filesystem::is_empty(to.Path()));
        }
        EXPECT_EQ(said.empty(), c.said.empty()) << said;
        EXPECT_NE(said.find(c.said), std::string::npos) << said;
    }
}
