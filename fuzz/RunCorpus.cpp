#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::uint8_t> contents(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Runs the target on `input` and on what is left of it when it is cut short, where most faults of a decoder show.
void run(const std::vector<std::uint8_t>& input) {
    constexpr std::size_t cuts = 200; // of a long input, evenly spread
    const std::size_t step = input.size() / cuts + 1;
    for (std::size_t size = 0; size < input.size(); size += step) {
        // A copy of just this size: the sanitizers see who reads over its end.
        const std::vector<std::uint8_t> beginning(input.begin(), input.begin() + static_cast<std::ptrdiff_t>(size));
        LLVMFuzzerTestOneInput(beginning.data(), beginning.size());
    }
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

/// Runs the target on every file of `folder`; how many there were.
int runAll(const std::filesystem::path& folder) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (!entry.is_regular_file())
            continue;
        run(contents(entry.path()));
        ++count;
    }
    return count;
}

} // namespace

/// Stands in for the fuzzer where there is none: goes through the folders of inputs it is given. A folder without
/// inputs is a failure, or a corpus that was lost would look like one that passes.
int main(int argc, char** argv) try {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FOLDER...\n", argv[0]);
        return 2;
    }
    for (int i = 1; i < argc; ++i) {
        const int count = runAll(argv[i]);
        std::printf("%s: %d inputs\n", argv[i], count);
        if (count == 0)
            return 1;
    }
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
