#include "HSVNAddOptions.h"
#include "HSVNClient.h"
#include "HSVNCommitOptions.h"
#include "HSVNLocalPath.h"
#include "HSVNNode.h"
#include "HSVNResolveOptions.h"
#include "HSVNRevertOptions.h"
#include "HSVNRevision.h"
#include "HSVNUpdateOptions.h"
#include "RecordingDelegate.h"
#include "TestBundles.h"
#include "TestRepository.h"

#include <atomic>
#include <cstdlib>
#include <exception>
#include <functional>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

/// How many operations each thread runs; the sanitizer runs ask for a thousand.
int operationCount()
{
    const char* text = std::getenv("HSVN_THREAD_OPERATIONS");
    return text ? std::max(1, std::atoi(text)) : 24;
}

/// One application's life with a working copy of its own: on its own thread, through its own client and line.
class Worker
{
  public:
    explicit Worker(HSVNVersion line) : _line{std::move(line)} {}

    /// Starts the thread; its operations begin together with the other's.
    void start(int count)
    {
        _thread = std::jthread{[this, count] {
            try {
                work(count);
            } catch (...) {
                _failure = std::current_exception();
            }
        }};
    }

    void finish()
    {
        _thread.join();
        if (_failure) {
            std::rethrow_exception(_failure);
        }
    }

    const TestRepository& repository() const { return _repository; }
    int commits() const { return _commits; }

  private:
    using Operation = void (Worker::*)();

    void work(int count)
    {
        constexpr Operation operations[] = {&Worker::addFile, &Worker::commit, &Worker::changeAndRevert,
                                            &Worker::update,  &Worker::change, &Worker::commit,
                                            &Worker::resolve};
        _client = std::make_shared<HSVNClient>(bundleOfLine(_line), _delegate);
        for (int step = 0; step < count; ++step) {
            (this->*operations[static_cast<std::size_t>(step) % std::size(operations)])();
        }
    }

    std::string file() const { return _workingCopy + "/file" + std::to_string(_files) + ".txt"; }
    HSVNPathRef path(const std::string& text) const { return HSVNLocalPath::pathWithString(text); }

    void addFile()
    {
        ++_files;
        writeFile(file(), "one\n");
        HSVNNode::add(path(file()), _client);
    }
    void change()
    {
        writeFile(file(), "changed\n");
        HSVNNode::resolveNodeAtPath(path(file()), HSVNResolveOptions::defaults(), _client);
    }
    void changeAndRevert()
    {
        writeFile(file(), "to be lost\n");
        HSVNNode::revertNodes({path(file())}, HSVNRevertOptions::defaults(), _client);
        EXPECT_EQ(readFile(file()), "one\n");
    }
    void commit()
    {
        EXPECT_EQ(HSVNNode::commitChangesToNodes({path(_workingCopy)}, HSVNCommitOptions::defaults(), _client),
                  ++_commits);
    }
    void update()
    {
        const auto revisions =
            HSVNNode::updateNodes({path(_workingCopy)}, HSVNRevision::HEAD(), HSVNUpdateOptions::defaults(), _client);
        EXPECT_EQ(revisions, std::vector<HSVNRevisionNumber>{_commits});
    }
    void resolve() { HSVNNode::resolveNodeAtPath(path(_workingCopy), HSVNResolveOptions::defaults(), _client); }

    HSVNVersion _line;
    TestRepository _repository;
    std::string _workingCopy = _repository.checkOut();
    std::shared_ptr<RecordingDelegate> _delegate = std::make_shared<RecordingDelegate>();
    HSVNClientRef _client;
    std::exception_ptr _failure;
    int _files = 0;
    int _commits = 0;
    std::jthread _thread; // ends before what it works on
};

} // namespace

TEST(Threads, TwoClientsWorkOnTwoLinesAtOnce)
{
    Worker newest{installedLine()};
    Worker older{HSVNVersion::version1_6()};
    const int count = operationCount();
    newest.start(count);
    older.start(count);
    newest.finish();
    older.finish();
    EXPECT_GT(newest.commits(), 0);
    EXPECT_EQ(newest.repository().youngest(), newest.commits());
    EXPECT_EQ(older.repository().youngest(), older.commits());
}

TEST(Threads, OneThreadAlternatesBetweenTwoLines)
{
    const TestRepository repository;
    const std::string workingCopy = repository.checkOut();
    const auto delegate = std::make_shared<RecordingDelegate>();
    for (int revision = 1; revision <= 6; ++revision) {
        const auto line = revision % 2 == 0 ? installedLine() : HSVNVersion::version1_6();
        const auto client = std::make_shared<HSVNClient>(bundleOfLine(line), delegate);
        const std::string file = workingCopy + "/file" + std::to_string(revision);
        writeFile(file, "one\n");
        HSVNNode::add(HSVNLocalPath::pathWithString(file), client);
        EXPECT_EQ(HSVNNode::commitChangesToNodes({HSVNLocalPath::pathWithString(workingCopy)},
                                                 HSVNCommitOptions::defaults(), client),
                  revision);
    }
}

TEST(Threads, SixOnOneClientAreServedOrRefused)
{
    const TestRepository repository;
    const std::string workingCopy = repository.checkOut();
    const auto delegate = std::make_shared<RecordingDelegate>();
    const auto client = HSVNClient::clientWithDelegate(delegate);
    std::atomic<int> served = 0;
    std::atomic<int> refused = 0;
    std::vector<std::jthread> threads;
    for (int number = 0; number < 6; ++number) {
        threads.emplace_back([&] {
            for (int step = 0; step < operationCount(); ++step) {
                try {
                    HSVNNode::updateNodes({HSVNLocalPath::pathWithString(workingCopy)}, HSVNRevision::HEAD(),
                                          HSVNUpdateOptions::defaults(), client);
                    ++served;
                } catch (const HSVNGenericException&) {
                    ++refused;
                }
            }
        });
    }
    threads.clear();
    EXPECT_EQ(served + refused, 6 * operationCount());
    EXPECT_GT(served, 0);
}
