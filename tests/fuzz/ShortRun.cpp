// Drives a fuzz target without a fuzzer: over its seeds, and over as many damaged copies of them as asked
// for. fuzz-NAME COPIES SEED-FOLDER...

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Files of a folder in an order that does not depend on the machine.
std::vector<Bytes> Seeds(int count, char** folders) {
    std::vector<std::filesystem::path> paths;
    for (int i = 0; i < count; ++i)
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folders[i]))
            if (entry.is_regular_file()) paths.push_back(entry.path());
    std::ranges::sort(paths);
    std::vector<Bytes> seeds;
    for (const auto& path : paths) seeds.push_back(ReadFile(path));
    return seeds;
}

/// A copy with some bytes changed, or a part left out, repeated, or taken from another seed.
Bytes Damaged(const std::vector<Bytes>& seeds, std::mt19937& random) {
    const auto below = [&](std::size_t bound) { return bound ? random() % bound : 0; };
    Bytes copy = seeds[below(seeds.size())];
    for (std::size_t turn = 1 + below(4); turn > 0; --turn) {
        const std::size_t from = below(copy.size()),
                          length = below(std::min<std::size_t>(copy.size() - from, 64));
        const auto first = copy.begin() + static_cast<std::ptrdiff_t>(from);
        switch (below(5)) {
            case 0:
                for (std::size_t i = 0; i < 1 + length / 8 && from + i < copy.size(); ++i)
                    copy[from + i] = static_cast<std::uint8_t>(random());
                break;
            case 1:
                if (from < copy.size()) copy[from] ^= static_cast<std::uint8_t>(1U << below(8));
                break;
            case 2:
                copy.erase(first, first + static_cast<std::ptrdiff_t>(length));
                break;
            case 3: {
                const Bytes part(first, first + static_cast<std::ptrdiff_t>(length));
                copy.insert(copy.begin() + static_cast<std::ptrdiff_t>(below(copy.size() + 1)), part.begin(),
                            part.end());
                break;
            }
            default: {
                const Bytes& other = seeds[below(seeds.size())];
                const std::size_t begin = below(other.size()), end = std::min(other.size(), begin + 64);
                copy.insert(first, other.begin() + static_cast<std::ptrdiff_t>(begin),
                            other.begin() + static_cast<std::ptrdiff_t>(end));
            }
        }
    }
    return copy;
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 3) {
        std::fprintf(stderr, "usage: %s COPIES SEED-FOLDER...\n", arguments[0]);
        return 2;
    }
    const std::vector<Bytes> seeds = Seeds(count - 2, arguments + 2);
    if (seeds.empty()) {
        std::fprintf(stderr, "no seeds\n");
        return 2;
    }
    for (const Bytes& seed : seeds) LLVMFuzzerTestOneInput(seed.data(), seed.size());
    std::mt19937 random(4711);
    for (long copies = std::atol(arguments[1]); copies > 0; --copies) {
        const Bytes copy = Damaged(seeds, random);
        LLVMFuzzerTestOneInput(copy.data(), copy.size());
    }
    std::printf("%zu seeds\n", seeds.size());
}
