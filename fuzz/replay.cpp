// Runs a fuzzer over the files of the folders in its arguments, without a fuzzing library, so that
// any compiler's build tests the inputs that found a fault. Fails if there is no file.
#include "fuzz/FuzzTarget.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

int main(int argc, char *argv[])
{
    int files = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto &entry : std::filesystem::directory_iterator(argv[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
            if (!file) {
                std::fprintf(stderr, "cannot read %s\n", entry.path().c_str());
                return 1;
            }
            // If the process ends here, the last name printed is that of the input at fault.
            std::printf("%s\n", entry.path().c_str());
            std::fflush(stdout);
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()),
                                   bytes.size());
            ++files;
        }
    }
    return files > 0 ? 0 : 1;
}
