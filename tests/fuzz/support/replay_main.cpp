// Runs a fuzz target over the files that are named, or that stand in the directories that are named: what a
// compiler without a fuzzer of its own can do with a corpus.
#include "support/fuzz.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> filesAt(const fs::path &path)
{
    if (!fs::is_directory(path))
        return {path};
    std::vector<fs::path> files;
    for (const fs::directory_entry &entry : fs::directory_iterator{path})
        files.push_back(entry.path());
    std::ranges::sort(files);
    return files;
}

void replay(const fs::path &path)
{
    std::ifstream file{path, std::ios::binary};
    const std::vector<char> bytes{std::istreambuf_iterator<char>{file}, {}};
    std::fprintf(stderr, "%s\n", path.filename().c_str()); // of the last one, when the program ends here
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
}

} // namespace

int main(int argc, char **argv)
{
    LLVMFuzzerInitialize(&argc, &argv);
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const fs::path &path : filesAt(argv[i])) {
            replay(path);
            ++count;
        }
    }
    std::printf("%zu inputs\n", count);
    return count == 0 ? 1 : 0;
}
