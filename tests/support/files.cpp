#include "tests/support/files.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include <unistd.h>

namespace test
{

EmptyFolder::EmptyFolder() : before(std::filesystem::current_path()), process(getpid())
{
    std::string name = std::filesystem::temp_directory_path() / "velmorant-XXXXXX";
    path = mkdtemp(name.data());
    std::filesystem::current_path(path);
}

EmptyFolder::~EmptyFolder()
{
    if (getpid() != process) {
        return;
    }
    std::filesystem::current_path(before);
    std::filesystem::remove_all(path);
}

void write_file(const std::string &name, const std::string &bytes)
{
    std::ofstream(name, std::ios::binary) << bytes;
}

std::string read_file(const std::string &name)
{
    const std::ifstream file(name, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << name;
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

} // namespace test
