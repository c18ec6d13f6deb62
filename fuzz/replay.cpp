#include "fuzz_folder.h"

#include <filesystem>
#include <iostream>

extern "C" int LLVMFuzzerTestOneInput(unsigned char const* data, std::size_t size);

/// Runs every file named, and every file below a folder named, through the target once.
int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    std::size_t count = 0;
    auto const run = [&count](fs::path const& path) {
        std::string const bytes = norva::test::ReadWholeFile(path.string());
        LLVMFuzzerTestOneInput(reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size());
        ++count;
    };
    // Targets may change the current folder.
    std::vector<fs::path> paths;
    for (int i = 1; i < argc; ++i) paths.push_back(fs::absolute(argv[i]));
    for (fs::path const& path : paths) {
        if (!fs::is_directory(path)) {
            run(path);
            continue;
        }
        for (fs::directory_entry const& entry : fs::recursive_directory_iterator(path)) {
            if (entry.is_regular_file()) run(entry.path());
        }
    }
    std::cout << count << " inputs replayed\n";
    return count > 0 ? 0 : 1;
}
