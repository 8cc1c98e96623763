#include "CommandLine/CommandLineParser.h"
#include "CommandLine/Errors.h"
#include "CommandLine/Session.h"
#include "CommandLine/TextFiles.h"
#include "FuzzInput.h"

#include <getopt.h>
#include <vector>

// The words of hsvn's command line, one a line.
HSVN_FUZZ_TARGET
{
    FuzzLibrary::shared();
    FuzzInput input{data, size};
    std::vector<std::string> texts{"hsvn"};
    while (!input.isEmpty()) {
        texts.push_back(input.line().c_str()); // no word has a NUL
    }
    std::vector<char*> words;
    for (auto& text : texts) {
        words.push_back(text.data());
    }
    words.push_back(nullptr);
    optind = 0; // getopt_long has no memory of the last run
    Session session;
    passes([&] {
        try {
            parseCommandLine(static_cast<int>(texts.size()), words.data(), session);
        } catch (const UsageError&) {
            return;
        }
    });
    passes([&] { numberOf(texts.back()); });
    passes([&] { withUnixLineEnds(texts.back()); });
    return 0;
}
