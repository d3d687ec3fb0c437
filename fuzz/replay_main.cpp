// fuzz_HARNESS FILE-OR-FOLDER..., where it is built without libFuzzer: runs the harness on each file, and on each
// file of a folder. A finding ends the process as it ended the fuzzer; otherwise the status is 0.

#include "fuzz/harness.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <span>
#include <string>

static void replay(const std::string &name)
{
    std::ifstream file(name, std::ios::binary);
    fuzz::require(file.is_open(), name.c_str());
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    std::fprintf(stderr, "%s\n", name.c_str());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
}

static void add_files(const std::filesystem::path &path, std::set<std::string> &files)
{
    // Absolute, because a harness goes to a folder of its own.
    const std::filesystem::path absolute = std::filesystem::absolute(path);
    if (!std::filesystem::is_directory(absolute)) {
        files.insert(absolute);
        return;
    }
    for (const auto &entry : std::filesystem::recursive_directory_iterator(absolute)) {
        if (entry.is_regular_file()) {
            files.insert(entry.path());
        }
    }
}

int main(int argc, char **argv)
{
    std::set<std::string> files;
    for (const char *argument : std::span(argv, static_cast<std::size_t>(argc)).subspan(1)) {
        add_files(argument, files);
    }
    fuzz::require(!files.empty(), "files to replay");
    for (const std::string &name : files) {
        replay(name);
    }
    return 0;
}
