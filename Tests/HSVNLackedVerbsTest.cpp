// Verbs that lines before 1.7 or 1.8 have no functions for.

#include "AlteredBundle.h"
#include "BranchedWorkingCopyTest.h"
#include "HSVN.h"
#include "ReasonOf.h"
#include <functional>
#include <utility>

namespace {

class LackedVerbs : public BranchedWorkingCopyTest
{
  protected:
    void SetUp() override
    {
        client = clientWithoutExtensions(GetParam());
        client->setDelegate(delegate);
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Lines, LackedVerbs, recordedLines(), lineName);

TEST_P(LackedVerbs, AreRefusedByName)
{
    const std::pair<const char*, std::function<void()>> calls[] = {
        {"patch", [this] { client->patch(item("changes.patch"), root); }},
        {"mergingSummary", [this] { client->mergingSummary(branch(), HSVNTarget{root}); }},
        {"mergedRevisions", [this] { client->mergedRevisions(branch(), HSVNTarget{root}); }},
        {"layout", [this] { client->layout(root); }},
        {"setProperty", [this] { client->setProperty(branch(), 1, "color", "red"); }},
        {"storedCredentials", [this] { client->storedCredentials(); }},
        {"removeStoredCredentials", [this] { client->removeStoredCredentials([](const auto&) { return false; }); }},
    };
    for (const auto& [verb, call] : calls) {
        EXPECT_EQ(reasonOf<HSVNUnsupportedFeatureException>(call),
                  "[HSVNContext " + std::string{verb} + "] is not offered by the bundle of Subversion " + GetParam());
    }
}
