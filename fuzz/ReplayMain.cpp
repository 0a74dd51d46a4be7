// Runs a fuzz target over files and folders of inputs, for builds without libFuzzer.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void RunFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    const std::vector<char> bytes((std::istreambuf_iterator<char>(in)),
                                  std::istreambuf_iterator<char>());
    // An exact-size heap copy, so that a read past the input is caught by the sanitizers.
    std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.empty() ? nullptr : input.data(), input.size());
}

}  // namespace

int main(int argc, char** argv) {
    int runs = 0;
    for (int i = 1; i < argc; ++i) {
        const std::filesystem::path path(argv[i]);
        if (std::filesystem::is_directory(path)) {
            for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
                if (!entry.is_regular_file()) continue;
                RunFile(entry.path());
                ++runs;
            }
        } else {
            RunFile(path);
            ++runs;
        }
    }
    std::printf("replayed %d inputs\n", runs);
    return runs > 0 ? 0 : 1;
}
