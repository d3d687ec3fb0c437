#pragma once

#include <filesystem>
#include <string>

namespace test
{

// An empty folder that is the working directory for as long as it lives. A forked process that exits
// leaves it alone.
class EmptyFolder
{
public:
    EmptyFolder();
    ~EmptyFolder();
    EmptyFolder(const EmptyFolder &) = delete;
    EmptyFolder &operator=(const EmptyFolder &) = delete;

    std::filesystem::path path;

private:
    std::filesystem::path before;
    int process;
};

void write_file(const std::string &name, const std::string &bytes);
// Fails the test where the file can't be read.
std::string read_file(const std::string &name);

} // namespace test
