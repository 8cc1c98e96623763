#include "TestRepository.h"

#include "Command.h"
#include "SvnDaemon.h"

TestRepository::TestRepository(bool isServed) : _url{"file://" + path()}
{
    mustRun({"svnadmin", "create", path()});
    if (isServed) {
        writeFile(path() + "/conf/svnserve.conf", "[general]\nanon-access = write\n");
        const auto served = _folder.path().parent_path();
        static const SvnDaemon daemon{served};
        _url = daemon.url() + path().substr(served.string().size());
    }
}

void TestRepository::put(const std::string& item, const std::string& bytes) const
{
    const std::string source = _folder / "put";
    writeFile(source, bytes);
    change({"put", source, item});
}

void TestRepository::makeFolder(const std::string& item) const { change({"mkdir", item}); }

void TestRepository::change(const std::vector<std::string>& actions) const
{
    std::vector<std::string> command{"svnmucc", "--non-interactive", "-U", url(), "-m", "prepared"};
    command.insert(command.end(), actions.begin(), actions.end());
    mustRun(command);
}

std::string TestRepository::checkOut(std::string_view name, const std::string& item) const
{
    std::string folder = beside(name);
    mustRun({"svn", "checkout", "--quiet", "--non-interactive", item.empty() ? url() : url(item), folder});
    return folder;
}

int TestRepository::youngest() const { return std::stoi(mustRun({"svnlook", "youngest", path()})); }

std::string TestRepository::contents(const std::string& item) const
{
    return mustRun({"svnlook", "cat", path(), item});
}

std::string TestRepository::logMessage(int revision) const
{
    return mustRun({"svnlook", "propget", "--revprop", "-r", std::to_string(revision), path(), "svn:log"});
}
