// The library from end to end: a repository, two working copies, a commit, an update, a conflict and its
// resolution. With a URL as argument, checks that URL out instead.

#include <HSVN/HSVN.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

namespace {

/// Prints what happens and answers the questions that Subversion asks on the way.
struct Narrator
{
    std::string message; // of the next commit

    void notify(HSVNContext& /*context*/, const HSVNNotificationRef& notification)
    {
        std::cout << "  " << HSVNTextOfNotifyAction(notification->action());
        if (notification->path()) {
            std::cout << "  " << *notification->path();
        }
        if (notification->revision() != HSVNInvalidRevision) {
            std::cout << "  r" << notification->revision();
        }
        if (notification->contentState() == HSVNNotifyStateConflicted) {
            std::cout << "  (" << HSVNTextOfNotifyState(notification->contentState()) << ')';
        }
        std::cout << '\n';
    }

    bool promptForLogMessage(HSVNContext& /*context*/, std::string& text, const std::vector<HSVNCommitItemRef>& items)
    {
        std::cout << "  (log message for " << items.size() << " items: " << message << ")\n";
        text = message;
        return true;
    }
};

void write(const HSVNPathRef& path, const std::string& text) { std::ofstream{path->string()} << text; }

void chapter(const std::string& title) { std::cout << "\n" << title << '\n'; }

HSVNDirectoryRef checkOut(const HSVNURLRef& url, const HSVNLocalPathRef& path, const HSVNClientRef& client)
{
    return HSVNDirectory::checkoutDirectoryAtURL(url, path, HSVNCheckOutOptions::defaults(), client);
}

HSVNRevisionNumber commit(const HSVNPathRef& path, const std::string& message, Narrator& narrator,
                          const HSVNClientRef& client)
{
    narrator.message = message;
    return HSVNNode::commitChangesToNodes({path}, HSVNCommitOptions::defaults(), client);
}

void update(const HSVNPathRef& path, const HSVNClientRef& client)
{
    HSVNNode::updateNodes({path}, HSVNRevision::HEAD(), HSVNUpdateOptions::defaults(), client);
}

/// Lists a repository folder and everything below it.
void list(const HSVNPathRef& url, const HSVNClientRef& client, const std::string& indent = "  ")
{
    std::vector<HSVNNodeRef> children;
    HSVNDirectory::directoryAtPath(url, HSVNRevisionSpec::HEAD(), &children, client);
    for (const auto& child : children) {
        std::cout << indent << child->name().value_or("") << (child->isDirectory() ? "/" : "") << "  r"
                  << child->revision() << '\n';
        if (child->isDirectory()) {
            list(child->path(), client, indent + "  ");
        }
    }
}

void run(const HSVNLocalPathRef& folder, Narrator& narrator, const HSVNClientRef& client)
{
    chapter("A repository, and a working copy of it");
    const auto repositoryPath = folder->pathByAddingComponent("repository");
    const auto repository = HSVNRepository::createRepositoryAtPath(
        std::static_pointer_cast<const HSVNLocalPath>(repositoryPath), HSVNFileSystemOptions::defaults());
    const auto url = repository->path()->URL();
    const auto first = HSVNLocalPath::pathWithString(folder->string() + "/first");
    checkOut(url, first, client);

    chapter("A small tree is added and committed");
    const auto source = first->pathByAddingComponent("source");
    std::filesystem::create_directory(source->string());
    write(first->pathByAddingComponent("README"), "Notes on the project.\n");
    write(source->pathByAddingComponent("main.c"), "int main(void) { return 0; }\n");
    HSVNNode::add(first, client);
    commit(first, "Begin the project", narrator, client);

    chapter("A second working copy changes a file");
    const auto second = HSVNLocalPath::pathWithString(folder->string() + "/second");
    checkOut(url, second, client);
    write(second->pathByAddingComponent("README"), "Notes on the project, by the second user.\n");
    commit(second, "Say who writes", narrator, client);

    chapter("The first one is brought up to date");
    update(first, client);

    chapter("Both change the same line: a conflict");
    write(second->pathByAddingComponent("README"), "The second user's notes.\n");
    commit(second, "Shorten the notes", narrator, client);
    const auto readme = first->pathByAddingComponent("README");
    write(readme, "The first user's notes.\n");
    update(first, client);
    try {
        commit(first, "Try to commit a conflict", narrator, client);
    } catch (const HSVNMergeConflictException& exception) {
        std::cout << "  refused: " << exception.fullMessage() << '\n';
    }

    chapter("The conflict is resolved and committed");
    write(readme, "Both users' notes.\n");
    HSVNNode::resolveNodeAtPath(readme, HSVNResolveOptions::defaults(), client);
    commit(first, "Agree on the notes", narrator, client);

    chapter("What is in the repository");
    list(url, client);
}

} // namespace

int main(int argc, char** argv)
try {
    HSVNInitialize();
    const auto narrator = std::make_shared<HSVNClientDelegateFor<Narrator>>();
    const auto client = HSVNClient::clientWithDelegate(narrator);
    std::cout << "Subversion line " << *client->bundleVersion() << '\n';

    std::string pattern = (std::filesystem::temp_directory_path() / "hsvn-demo-XXXXXX").string();
    if (!mkdtemp(pattern.data())) {
        std::cerr << "cannot make a folder below " << std::filesystem::temp_directory_path() << '\n';
        return 1;
    }
    const auto folder = HSVNLocalPath::pathWithString(pattern);
    if (argc > 1) {
        const auto url = HSVNURL::URLWithString(argv[1]);
        const auto target = HSVNLocalPath::pathWithString(pattern + "/" + url->denormalizedLastComponent());
        chapter("Checking out " + url->string());
        checkOut(url, target, client);
        std::cout << "The working copy is at " << target->string() << '\n';
        return 0;
    }
    run(folder, *narrator, client);
    std::filesystem::remove_all(pattern);
    return 0;
} catch (const HSVNPlatformException& exception) {
    std::cerr << exception.fullMessage() << '\n';
    return 1;
} catch (const std::exception& exception) {
    std::cerr << exception.what() << '\n';
    return 1;
}
