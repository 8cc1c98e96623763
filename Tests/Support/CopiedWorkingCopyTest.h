#pragma once

#include "Command.h"
#include "TestRepository.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <string>

/// A suite makes its repository and the working copy "wc" once; each case has a copy of that.
class CopiedWorkingCopyTest : public testing::Test
{
  protected:
    static void TearDownTestSuite() { repository.reset(); }

    /// A new copy in place of the last one.
    ///
    /// @param besides  what the cases leave beside it: endings of its path
    static std::string freshCopy(std::initializer_list<const char*> besides)
    {
        std::string root = repository->beside("copy");
        std::filesystem::remove_all(root);
        for (const char* const ending : besides) {
            std::filesystem::remove_all(root + ending);
        }
        mustRun({"cp", "-a", repository->beside("wc"), root});
        return root;
    }

    /// No work is left in a working copy.
    static void expectWhole(const std::string& root)
    {
        EXPECT_EQ(mustRun({"sqlite3", root + "/.svn/wc.db",
                           "SELECT * FROM wc_lock; SELECT * FROM work_queue; PRAGMA integrity_check"}),
                  "ok\n");
    }

    static inline std::unique_ptr<TestRepository> repository;
};
