#include "FuzzInput.h"

// The files of the older formats' administrative directories: the first line says which are there, the rest is in them.
HSVN_FUZZ_TARGET
{
    const auto& library = FuzzLibrary::shared();
    static const auto folder = library.directory() / "old";
    std::filesystem::create_directories(folder / ".svn");
    FuzzInput input{data, size};
    const auto choice = input.byte();
    const std::string bytes = input.rest();
    // Subversion itself ends the process for a format of the time when there was to be a database, but is none.
    if (const int format = std::atoi(bytes.c_str()); format > 12 && format < 30) {
        return 0;
    }
    for (const auto& [bit, name] : {std::pair{1U, "entries"}, std::pair{2U, "format"}, std::pair{4U, "wc.db"}}) {
        if (choice & bit) {
            FuzzLibrary::write(folder / ".svn" / name, bytes);
        } else {
            std::filesystem::remove(folder / ".svn" / name);
        }
    }
    const auto path = HSVNLocalPath::pathWithString(folder.string());
    const auto client = std::make_shared<HSVNClient>(HSVNBundleLoader::sharedInstance().newestBundle(), nullptr);
    passes([&] { HSVNDirectory::formatVersionForWorkingCopyAtPath(path); });
    passes([&] { HSVNDirectory::versionForWorkingCopyAtPath(path); });
    passes([&] { HSVNDirectory::statusForNodesInDirectoryAtPath(path, HSVNStatusOptions::defaults(), client); });
    passes([&] { client->upgrade(path); });
    return 0;
}
