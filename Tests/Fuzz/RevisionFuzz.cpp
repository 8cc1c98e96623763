#include "FuzzInput.h"

// Revisions as a user writes them, with the peg revisions of targets; two lines make a range.
HSVN_FUZZ_TARGET
{
    const auto& client = FuzzLibrary::shared().client();
    FuzzInput input{data, size};
    const std::string first = input.line();
    const std::string second = input.rest();
    for (std::uint32_t behavior = 1; behavior <= HSVNRevisionAllowsAll; behavior = 2 * behavior + 1) {
        passes([&] { HSVNRevision::revisionFromString(first, behavior); });
    }
    passes([&] { HSVNArguments::parse(first, client); });
    passes([&] { HSVNArguments::parseRevisions(first, client); });
    passes([&] {
        const auto from = HSVNRevision::revisionFromString(first);
        const auto to = HSVNRevision::revisionFromString(second);
        if (!from || !to) {
            return;
        }
        const auto spec = HSVNRevisionSpec::revisionWithRevision(from, to);
        spec->description();
        require(spec->isEqual(spec->copy()), "a copy is equal");
        from->compare(to);
        const auto range = HSVNRevisionRange::from(from, to);
        range->description();
        range->containsRevision(to);
    });
    return 0;
}
