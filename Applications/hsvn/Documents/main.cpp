// Writes the documents that are made from the tables of subcommands and options: the manual page and the completions.

#include "Completions.h"
#include "ManualPage.h"

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

namespace {

void write(const std::filesystem::path& path, const std::string& text)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file{path, std::ios::binary};
    file << text;
    file.close();
    if (!file) {
        throw std::runtime_error("Can't write '" + path.string() + "'");
    }
}

} // namespace

int main(int count, char** words)
{
    if (count != 2) {
        std::cerr << "usage: hsvn_documents FOLDER\n";
        return EXIT_FAILURE;
    }
    try {
        const std::filesystem::path folder = words[1];
        write(folder / "man1/hsvn.1", manualPage());
        write(folder / "bash/hsvn", bashCompletion());
        write(folder / "zsh/_hsvn", zshCompletion());
        return EXIT_SUCCESS;
    } catch (const std::exception& exception) {
        std::cerr << "hsvn_documents: " << exception.what() << '\n';
        return EXIT_FAILURE;
    }
}
