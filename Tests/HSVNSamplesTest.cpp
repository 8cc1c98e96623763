#include "HSVNBundleLoader.h"
#include "HSVNDate.h"
#include "HSVNItemInfo.h"
#include "HSVNItemProperties.h"
#include "HSVNLogItem.h"
#include "HSVNLogPathChange.h"
#include "HSVNNode.h"
#include "HSVNTreeDiff.h"
#include "LoadedBundle.h"
#include "ReadingClient.h"
#include "ReasonOf.h"
#include "SampleWorkingCopy.h"
#include "XMLEntries.h"

#include <algorithm>
#include <filesystem>
#include <fmt/format.h>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

// What a line tells of the sample that its own client made is what that client told. Status is `SampleScan`'s. Items
// are asked for one by one: older lines end a search where a directory is missing.

namespace {

namespace files = std::filesystem;

using Texts = std::multiset<std::string>;

struct Sample
{
    const SampleWorkingCopy& place;
    HSVNClient& client;
    std::string line;

    std::string below(const std::string& path) const
    {
        const std::string root = place.path();
        return path.size() <= root.size() ? "." : path.substr(root.size() + 1);
    }
    /// A URL as it was where the sample was made.
    std::string former(const std::string& url) const
    {
        const std::string now = "file://" + place.path("repo");
        return url.starts_with(now) ? "file:///srv/hsvn-samples/" + line + "/repo" + url.substr(now.size()) : url;
    }
    std::vector<XMLEntry> entries(const std::string& file, const std::string& element = "entry") const
    {
        std::string xml = place.expected(file);
        if (element != "entry") {
            for (std::size_t found = 0; (found = xml.find(element, found)) != std::string::npos;) {
                xml.replace(found, element.size(), "entry");
            }
        }
        auto entries = XMLEntry::entriesIn(xml);
        // Older lines lose what they knew of it together with the directory.
        std::erase_if(entries, [&](const auto& entry) {
            return line != "1.14" && entry.text("@path").starts_with("missing-dir");
        });
        return entries;
    }
};

std::string textOf(HSVNNodeKind kind)
{
    return kind == HSVNNodeKindDirectory ? "dir" : kind == HSVNNodeKindFile ? "file" : "other";
}

std::string textOf(HSVNSchedule schedule)
{
    const std::map<HSVNSchedule, const char*> names{{HSVNScheduleNormal, "normal"},
                                                    {HSVNScheduleAdd, "add"},
                                                    {HSVNScheduleDelete, "delete"},
                                                    {HSVNScheduleReplace, "replace"}};
    return names.at(schedule);
}

std::string numberOf(HSVNRevisionNumber revision) { return revision < 0 ? "" : std::to_string(revision); }

std::string joined(const std::vector<std::string>& parts)
{
    std::string text;
    for (const auto& part : parts) {
        text += part + " | ";
    }
    return text;
}

std::string textOf(const std::optional<HSVNDate>& date)
{
    return date ? fmt::format("{}.{:06}Z", date->ISO8601StringValue(), date->microsecondsSince1970() % 1'000'000) : "";
}

/// Newer clients write words where there is no revision.
std::string textOf(const XMLEntry& entry, const std::string& key)
{
    const std::string text = entry.text(key);
    return key == "@revision" && text.find_first_not_of("0123456789") != std::string::npos ? "" : text;
}

Texts told(const std::vector<XMLEntry>& entries, const std::vector<std::string>& keys)
{
    Texts texts;
    for (const auto& entry : entries) {
        std::vector<std::string> parts;
        for (const auto& key : keys) {
            parts.push_back(textOf(entry, key));
        }
        texts.insert(joined(parts));
    }
    return texts;
}

struct Comparison
{
    const char* name;
    std::function<Texts(const Sample&)> expected;
    std::function<Texts(const Sample&)> read;
    bool endsAtMissingFolder = false; ///< on lines before 1.7, as their own clients do
};

const Comparison comparisons[] = {
    {"info",
     [](const Sample& sample) {
         return told(sample.entries("info.xml"), {"@path", "@kind", "@revision", "url", "wc-info/schedule",
                                                  "commit@revision", "commit/author", "commit/date"});
     },
     [](const Sample& sample) {
         Texts texts;
         for (const auto& entry : sample.entries("info.xml")) {
             const auto path = sample.place.path("wc/" + entry.text("@path"));
             const auto item = sample.client.info(path).at(0);
             texts.insert(joined({sample.below(item.target), textOf(item.kind), numberOf(item.revision),
                                  sample.former(item.url.value_or("")), textOf(item.workingCopy->schedule),
                                  numberOf(item.lastChangedRevision), item.lastChangedAuthor.value_or(""),
                                  textOf(item.lastChangedDate)}));
         }
         return texts;
     }},
    {"list",
     [](const Sample& sample) {
         return told(sample.entries("ls.xml"),
                     {"name", "@kind", "size", "commit@revision", "commit/author", "commit/date"});
     },
     [](const Sample& sample) {
         Texts texts;
         for (const auto& node : sample.client.list("file://" + sample.place.path("repo"), HSVNRevisionSpec::HEAD(),
                                                    {.depth = HSVNDepthInfinity}))
         {
             if (node->name().value_or("") == ".") {
                 continue;
             }
             texts.insert(joined({node->name().value_or(""), node->isDirectory() ? "dir" : "file",
                                  !node->isDirectory() ? std::to_string(node->size()) : "", numberOf(node->revision()),
                                  node->author().value_or(""), textOf(node->exactDate())}));
         }
         return texts;
     }},
    {"log",
     [](const Sample& sample) {
         return told(sample.entries("log.xml", "logentry"), {"@revision", "author", "date", "msg"});
     },
     [](const Sample& sample) {
         Texts texts;
         for (const auto& item : sample.client.log("file://" + sample.place.path("repo"))) {
             if (item->revision() == 0) {
                 continue; // nobody's
             }
             texts.insert(joined({numberOf(item->revision()), item->author().value_or(""), textOf(item->exactDate()),
                                  item->message().value_or("")}));
         }
         return texts;
     }},
    {"properties",
     [](const Sample& sample) {
         std::istringstream lines{sample.place.expected("proplist.txt")};
         Texts texts;
         std::string item;
         for (std::string line; std::getline(lines, line);) {
             constexpr std::string_view heading = "Properties on '";
             if (line.starts_with(heading)) {
                 item = line.substr(heading.size(), line.rfind('\'') - heading.size());
             } else if (line.starts_with("  ") && !line.starts_with("   ")) {
                 texts.insert(joined({item, line.substr(2, line.find(" : ") - 2)}));
             }
         }
         return texts;
     },
     [](const Sample& sample) {
         Texts texts;
         for (const auto& entry : sample.entries("info.xml")) {
             if (entry.text("wc-info/schedule") == "delete") {
                 continue; // whose properties newer lines no longer tell
             }
             for (const auto& item : sample.client.properties(sample.place.path("wc/" + entry.text("@path")))) {
                 for (const auto& [name, value] : item.properties) {
                     texts.insert(joined({sample.below(item.path), name}));
                 }
             }
         }
         return texts;
     }},
    {"differences",
     [](const Sample& sample) {
         std::istringstream lines{sample.place.expected("diff.txt")};
         std::set<std::string> items; // an item with properties has two headings on older lines
         for (std::string line; std::getline(lines, line);) {
             for (const std::string_view heading : {"Index: ", "Property changes on: "}) {
                 if (line.starts_with(heading)) {
                     items.insert(line.substr(heading.size()));
                 }
             }
         }
         return Texts{items.begin(), items.end()};
     },
     [](const Sample& sample) {
         std::set<std::string> items;
         for (const auto& item :
              sample.client.treeDiff(sample.place.path(), {HSVNRevision::BASE(), HSVNRevision::WORKING()})->items())
         {
             items.insert(sample.below(item.path()));
         }
         return Texts{items.begin(), items.end()};
     },
     true},
};

void expectEqual(const Texts& read, const Texts& expected)
{
    Texts missing;
    Texts unexpected;
    std::ranges::set_difference(expected, read, std::inserter(missing, missing.end()));
    std::ranges::set_difference(read, expected, std::inserter(unexpected, unexpected.end()));
    EXPECT_THAT(missing, testing::IsEmpty());
    EXPECT_THAT(unexpected, testing::IsEmpty());
}

} // namespace

TEST(Samples, AreReadByEachLineAsThatLineTold)
{
    for (const auto& folder : builtBundles()) {
        const auto name = files::path{folder}.stem().string();
        const std::string line = name.substr(name.find('-') + 1);
        if (!files::exists(HSVN_TEST_SAMPLES "/" + line + ".tar.gz")) {
            continue;
        }
        SCOPED_TRACE(folder);
        const SampleWorkingCopy place{line};
        place.relocate();
        HSVNBundleLoader loader;
        const ReadingClient reading{loader.loadBundleAtPath(folder)};
        const Sample sample{place, *reading.client, line};
        for (const auto& comparison : comparisons) {
            SCOPED_TRACE(comparison.name);
            if (comparison.endsAtMissingFolder && line != "1.14") {
                EXPECT_THAT(reasonOf<HSVNException>([&] { comparison.read(sample); }),
                            testing::HasSubstr("missing-dir' is missing"));
                continue;
            }
            const Texts expected = comparison.expected(sample);
            EXPECT_GT(expected.size(), 4U);
            try {
                expectEqual(comparison.read(sample), expected);
            } catch (const HSVNPlatformException& exception) {
                ADD_FAILURE() << exception.reason();
            }
        }
    }
}
