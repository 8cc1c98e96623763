#include "TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

TemporaryFolder::TemporaryFolder()
{
    std::string name = (std::filesystem::canonical(std::filesystem::temp_directory_path()) / "hsvn-XXXXXX").string();
    if (!mkdtemp(name.data())) {
        throw std::system_error(errno, std::generic_category(), name);
    }
    _path = name;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
}

void writeFile(const std::filesystem::path& file, std::string_view bytes)
{
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream{file, std::ios::binary};
    if (!stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush()) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

std::string readFile(const std::filesystem::path& file)
{
    std::ifstream stream{file, std::ios::binary};
    if (!stream) {
        throw std::runtime_error("cannot read " + file.string());
    }
    return {std::istreambuf_iterator<char>{stream}, {}};
}
