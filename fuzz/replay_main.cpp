// Runs a fuzz target over the files and directories named on the command
// line (directories: every regular file in them, in name order; absent
// paths are skipped), the way libFuzzer would run them, without libFuzzer.
// Prints the number of inputs; fails when there were none.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fs = std::filesystem;

static void runFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::vector<std::uint8_t> input(bytes.begin(), bytes.end()); // exactly sized, as libFuzzer does
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

int main(int argc, char** argv) {
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        fs::path path(argv[i]);
        if (fs::is_directory(path)) {
            std::vector<fs::path> files;
            for (const auto& entry : fs::directory_iterator(path))
                if (entry.is_regular_file()) files.push_back(entry.path());
            std::sort(files.begin(), files.end());
            for (const fs::path& file : files) {
                runFile(file);
                ++count;
            }
        } else if (fs::is_regular_file(path)) {
            runFile(path);
            ++count;
        } else {
            // A target may have no regression inputs yet.
            std::printf("skipped (absent): %s\n", argv[i]);
        }
    }
    std::printf("%zu inputs replayed\n", count);
    return count > 0 ? 0 : 1;
}
