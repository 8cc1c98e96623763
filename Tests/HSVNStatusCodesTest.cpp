#include "HSVNStatusCodes.h"
#include "Internal/Subversion.h"

#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>

// Subversion's own table of its codes.
struct err_defn // NOLINT(readability-identifier-naming): Subversion's
{
    int number;
    const char* name;
    const char* text;
};
#define SVN_ERROR_BUILD_ARRAY
#undef SVN_ERROR_START
#undef SVN_ERRDEF
#undef SVN_ERROR_END
#include <svn_error_codes.h>

namespace {

TEST(StatusCodes, AreThoseOfSubversion)
{
    std::map<std::string, int> subversions;
    for (const err_defn* row = error_table; row->name; ++row) {
        subversions[row->name] = row->number;
    }
    std::ifstream header{HSVN_TEST_SAMPLES "/../../Source/HSVNStatusCodes.h"};
    const std::regex row{R"(\w+ = (\d+),? +///< (SVN_ERR_\w+))"};
    int codes = 0;
    for (std::string line; std::getline(header, line);) {
        if (std::smatch match; std::regex_search(line, match, row)) {
            EXPECT_EQ(std::stoi(match[1]), subversions[match[2]]) << line;
            ++codes;
        }
    }
    EXPECT_GT(codes, 80);
}

} // namespace
