#include "AlteredBundle.h"
#include "HSVNException.h"
#include "HSVNStandardStreams.h"
#include "Internal/Pool.h"
#include "ReasonOf.h"
#include "TemporaryFolder.h"

#include <functional>
#include <gtest/gtest.h>
#include <sstream>

namespace {

void* lastBaton = nullptr;

/// The newest line, which tells the baton of the last stream that was made.
HSVNBundleRef batonTellingBundle()
{
    return std::make_shared<AlteredBundle>([](HSVNBundleEntryPoints& table) {
        table.stream_create = [](void* baton, apr_pool_t* pool) {
            lastBaton = baton;
            return AlteredBundle::original().stream_create(baton, pool);
        };
    });
}

/// Answers every read and write with one outcome.
struct AnsweringStream : HSVNInputStream, HSVNOutputStream
{
    explicit AnsweringStream(std::function<std::int64_t()> answered) : answer{std::move(answered)} {}
    std::int64_t read(char*, std::size_t) override { return answer(); }
    std::int64_t write(const char*, std::size_t) override { return answer(); }
    std::string className() const override { return "Answering"; }

    std::function<std::int64_t()> answer;
};

/// The message of an error, which is cleared.
std::string messageOf(svn_error_t* error)
{
    return reasonOf<HSVNException>([&] {
        if (error) {
            HSVNException::exceptionWithError(error)->raise();
        }
    });
}

const std::string someBytes{"one\0two\r\nthree", 14};

std::string allBytes(HSVNInputStream& stream)
{
    std::string bytes;
    char buffer[5];
    for (std::int64_t count = 0; (count = stream.read(buffer, sizeof buffer)) > 0;) {
        bytes.append(buffer, static_cast<std::size_t>(count));
    }
    return bytes;
}

std::int64_t writeSomeBytes(HSVNOutputStream& stream) { return stream.write(someBytes.data(), someBytes.size()); }

} // namespace

TEST(StreamAdapters, ReportTheCountOrTheFailureOfThePlatformStream)
{
    const HSVNBundleScope bundle{batonTellingBundle()};
    const HSVNPool pool;
    const std::string success = "(nothing was thrown)";
    struct Case
    {
        std::function<std::int64_t()> answer;
        std::size_t length;
        std::string readMessage, writeMessage;
    };
    const std::string readFailure = "Unable to read data from input stream";
    const std::string writeFailure = "Unable to write data to output stream";
    for (const auto& [answer, expected, readMessage, writeMessage] :
         {Case{[] { return 0; }, 0, success, success}, Case{[] { return 4; }, 4, success, success},
          Case{[] { return -1; }, 10, readFailure, writeFailure},
          Case{[] { return 11; }, 10, readFailure, writeFailure}, // more than the buffer has room for
          Case{[]() -> std::int64_t { throw std::runtime_error("broken"); }, 10, readFailure, writeFailure}})
    {
        const auto stream = std::make_shared<AnsweringStream>(answer);
        char buffer[10] = {};
        std::size_t length = sizeof buffer;
        auto* adapted = HSVNAdaptInputStream(stream, pool);
        EXPECT_EQ(messageOf(HSVNAdaptStreamRead(lastBaton, buffer, &length)), readMessage);
        EXPECT_EQ(length, expected);
        EXPECT_EQ(HSVNCurrentEntryPoints().stream_close(adapted), nullptr);
        length = sizeof buffer;
        adapted = HSVNAdaptOutputStream(stream, pool);
        auto* error = HSVNAdaptStreamWrite(lastBaton, buffer, &length);
        EXPECT_EQ(error ? error->apr_err : 20014, 20014);
        EXPECT_EQ(messageOf(error), writeMessage);
        EXPECT_EQ(length, expected);
        EXPECT_EQ(HSVNCurrentEntryPoints().stream_close(adapted), nullptr);
    }
}

TEST(StreamAdapters, KeepThePlatformStreamUntilSubversionClosesThem)
{
    const HSVNBundleScope bundle{batonTellingBundle()};
    const HSVNPool pool;
    auto stream = std::make_shared<HSVNMemoryOutputStream>();
    const std::weak_ptr<HSVNMemoryOutputStream> watched = stream;
    EXPECT_THROW(HSVNAdaptOutputStream(stream, nullptr), HSVNAssertionException);
    auto* adapted = HSVNAdaptOutputStream(std::exchange(stream, nullptr), pool);
    std::size_t length = 3;
    ASSERT_EQ(HSVNAdaptStreamWrite(lastBaton, "abc", &length), nullptr);
    ASSERT_FALSE(watched.expired());
    EXPECT_EQ(watched.lock()->bytes(), "abc");
    for (int closings = 0; closings < 2; ++closings) {
        EXPECT_EQ(HSVNCurrentEntryPoints().stream_close(adapted), nullptr);
        EXPECT_TRUE(watched.expired());
    }
    for (void* const baton : {lastBaton, static_cast<void*>(nullptr)}) {
        EXPECT_EQ(HSVNAdaptStreamClose(baton), nullptr);
        EXPECT_NE(messageOf(HSVNAdaptStreamWrite(baton, "abc", &length)), "(nothing was thrown)");
    }
}

TEST(StandardStreams, GiveBackTheBytesThatWereWritten)
{
    const TemporaryFolder folder;
    HSVNFileOutputStream file{folder / "bytes"};
    HSVNMemoryOutputStream memory;
    std::stringstream text;
    HSVNStandardOutputStream standard{text};
    for (HSVNOutputStream* output : std::initializer_list<HSVNOutputStream*>{&file, &memory, &standard}) {
        EXPECT_EQ(writeSomeBytes(*output), 14) << output->className();
        EXPECT_EQ(writeSomeBytes(*output), 14) << output->className();
    }
    file.close();
    EXPECT_EQ(writeSomeBytes(file), -1);
    const auto twice = someBytes + someBytes;
    HSVNFileInputStream fileInput{folder / "bytes"};
    HSVNMemoryInputStream memoryInput{memory.takeBytes()};
    HSVNStandardInputStream standardInput{text};
    for (HSVNInputStream* input : std::initializer_list<HSVNInputStream*>{&fileInput, &memoryInput, &standardInput}) {
        EXPECT_EQ(allBytes(*input), twice) << input->className();
        EXPECT_EQ(allBytes(*input), "") << "the end stays the end";
    }
    EXPECT_EQ(memory.bytes(), "");
}

TEST(StandardStreams, TellFailures)
{
    const TemporaryFolder folder;
    EXPECT_EQ(reasonOf<HSVNException>([&] { HSVNFileInputStream{folder / "missing"}; }),
              "Can't open '" + (folder / "missing") + "': No such file or directory");
    EXPECT_THROW(HSVNFileOutputStream{folder / "missing/file"}, HSVNException);
    HSVNFileInputStream directory{folder.path().string()};
    char byte = 0;
    EXPECT_EQ(directory.read(&byte, 1), -1);
    HSVNFileOutputStream full{"/dev/full"};
    EXPECT_EQ(writeSomeBytes(full), -1);
    std::stringstream broken;
    broken.setstate(std::ios::badbit);
    HSVNStandardOutputStream standard{broken};
    EXPECT_EQ(writeSomeBytes(standard), -1);
}
