#include "HSVNInitialize.h"
#include "TemporaryFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>

namespace {

/// What every test finds: a home of its own, so that nobody's Subversion configuration or stored passwords are read or
/// changed, and a UTF-8 locale, whatever the machine's.
class TestEnvironment : public testing::Environment
{
  public:
    void SetUp() override
    {
        // A death test's fresh process stays in the home that the tests gave it.
        if (getenv("HSVN_TEST_HOME") == nullptr) {
            setenv("HSVN_TEST_HOME", _home.emplace().path().c_str(), 1);
        }
        setenv("HOME", getenv("HSVN_TEST_HOME"), 1);
        setenv("LC_ALL", "C.UTF-8", 1);
        for (const char* variable : {"LANGUAGE", "XDG_CONFIG_HOME", "SVN_EDITOR", "GNUPGHOME", "GPG_AGENT_INFO"}) {
            unsetenv(variable);
        }
        // A test that needs a fresh process starts the library there itself.
        if (GTEST_FLAG_GET(internal_run_death_test).empty()) {
            HSVNInitialize();
        }
    }

    void TearDown() override { _home.reset(); }

  private:
    std::optional<TemporaryFolder> _home;
};

[[maybe_unused]] const testing::Environment* const environment = testing::AddGlobalTestEnvironment(
    new TestEnvironment); // NOLINT(cppcoreguidelines-owning-memory): gtest's to delete

} // namespace
