#include "fuzz/fuzz_target.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

// Runs a fuzz target on every file of a folder, for compilers without a fuzzer. Fails when there is none.
int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    int n_replayed = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<char> bytes(std::istreambuf_iterator<char>(file), {});
        const std::vector<unsigned char> input(bytes.begin(), bytes.end());
        LLVMFuzzerTestOneInput(input.data(), input.size());
        ++n_replayed;
    }
    std::printf("%d inputs\n", n_replayed);
    return n_replayed > 0 ? 0 : 1;
}
