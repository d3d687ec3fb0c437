#pragma once

#include <filesystem>
#include <string>

namespace test
{

// An empty folder that is the working directory for as long as it lives.
class Empty_Folder
{
public:
    Empty_Folder();
    ~Empty_Folder();
    Empty_Folder(const Empty_Folder &) = delete;
    Empty_Folder &operator=(const Empty_Folder &) = delete;

    std::filesystem::path path;

private:
    std::filesystem::path before;
};

void write_file(const std::string &name, const std::string &bytes);
// Fails the test where the file can't be read.
std::string read_file(const std::string &name);

} // namespace test
