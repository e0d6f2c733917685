// Runs each given file, and each file of a given folder, through a fuzz target: the seeds as a test, or a finding
// again. usage: fuzz_TARGET PATH...
#include "fuzz/Fuzz.h"

#include <iterator>
#include <vector>

namespace
{
void Replay(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    Require(!file.bad(), "the file can be read");
    std::fprintf(stderr, "%s\n", path.string().c_str());
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}
} // namespace

int main(int count, char** ppArguments)
{
    int replayed = 0;
    for (const std::filesystem::path path : std::vector<char*>(ppArguments + 1, ppArguments + count))
    {
        if (!std::filesystem::is_directory(path))
        {
            Replay(path);
            ++replayed;
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(path))
        {
            Replay(entry.path());
            ++replayed;
        }
    }
    std::fprintf(stderr, "%d files replayed\n", replayed);
    return replayed == 0 ? 1 : 0;
}
