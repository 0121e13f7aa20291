#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace {

bool replay(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "Cannot read %s\n", path.string().c_str());
        return false;
    }
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    // Input of its exact size on the heap, so that a sanitizer sees a read beyond it.
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    std::printf("%s\n", path.string().c_str());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(input.data(), input.size());
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    bool allRead = argc > 1;
    for (const std::filesystem::path argument : std::vector<const char *>(argv + 1, argv + argc)) {
        if (!std::filesystem::is_directory(argument)) {
            allRead = replay(argument) && allRead;
            continue;
        }
        for (const auto &entry : std::filesystem::directory_iterator(argument)) {
            allRead = (!entry.is_regular_file() || replay(entry.path())) && allRead;
        }
    }
    return allRead ? 0 : 1;
}
