#include "HSVNRevisionSpec.h"

#include "Internal/Everlasting.h"

#include <fmt/format.h>

namespace {

/// Precondition of the decoding constructor, which quotes the archiver where other classes quote the unarchiver: kept
/// so, since applications know the text.
HSVNCoder* requireKeyedDecoder(HSVNCoder* decoder)
{
    HSVNAssertParameter(decoder != nullptr, "decoder != nil");
    HSVNRequireKeyedArchiver(decoder);
    return decoder;
}

/// One set of the symbolic revisions for the process.
struct SharedSpecs
{
    HSVNRevisionSpecRef head = made(HSVNRevision::HEAD());
    HSVNRevisionSpecRef working = made(HSVNRevision::WORKING());
    HSVNRevisionSpecRef base = made(HSVNRevision::BASE());
    HSVNRevisionSpecRef previous = made(HSVNRevision::PREVIOUS());
    HSVNRevisionSpecRef committed = made(HSVNRevision::COMMITTED());
    HSVNRevisionSpecRef unspecified = made(HSVNRevision::UNSPECIFIED());
    HSVNRevisionSpecRef mine = made(HSVNRevision::MINE());

    static HSVNRevisionSpecRef made(const HSVNRevisionRef& revision)
    {
        return std::make_shared<HSVNRevisionSpec>(revision);
    }
};

const SharedSpecs& sharedSpecs()
{
    static const HSVNEverlasting<SharedSpecs> shared;
    return *shared;
}

} // namespace

HSVNRevisionSpec::HSVNRevisionSpec(HSVNRevisionRef theOperativeRevision)
    : HSVNRevisionSpec{std::move(theOperativeRevision), HSVNRevision::UNSPECIFIED()}
{
}

HSVNRevisionSpec::HSVNRevisionSpec(HSVNRevisionRef theOperativeRevision, HSVNRevisionRef thePegRevision)
    : _operativeRevision{std::move(theOperativeRevision)}, _pegRevision{std::move(thePegRevision)}
{
    HSVNAssertParameter(_operativeRevision != nullptr, "theOperativeRevision != nil");
    HSVNAssertParameter(_pegRevision != nullptr, "thePegRevision != nil");
}

HSVNRevisionSpec::HSVNRevisionSpec(HSVNCoder* decoder)
    : _operativeRevision{requireKeyedDecoder(decoder)->decodeRequiredObject<const HSVNRevision>("operativeRevision")},
      _pegRevision{decoder->decodeRequiredObject<const HSVNRevision>("pegRevision")}
{
}

const HSVNRevisionSpecRef& HSVNRevisionSpec::HEAD() { return sharedSpecs().head; }
const HSVNRevisionSpecRef& HSVNRevisionSpec::WORKING() { return sharedSpecs().working; }
const HSVNRevisionSpecRef& HSVNRevisionSpec::BASE() { return sharedSpecs().base; }
const HSVNRevisionSpecRef& HSVNRevisionSpec::PREVIOUS() { return sharedSpecs().previous; }
const HSVNRevisionSpecRef& HSVNRevisionSpec::COMMITTED() { return sharedSpecs().committed; }
const HSVNRevisionSpecRef& HSVNRevisionSpec::UNSPECIFIED() { return sharedSpecs().unspecified; }
const HSVNRevisionSpecRef& HSVNRevisionSpec::MINE() { return sharedSpecs().mine; }

const HSVNRevisionRef& HSVNRevisionSpec::keyRevision() const
{
    return *_operativeRevision == *HSVNRevision::UNSPECIFIED() ? _pegRevision : _operativeRevision;
}

HSVNRevisionSpecRef HSVNRevisionSpec::copy() const
{
    return std::make_shared<HSVNRevisionSpec>(_operativeRevision, _pegRevision);
}

HSVNMutableRevisionSpecRef HSVNRevisionSpec::mutableCopy() const
{
    return std::make_shared<HSVNMutableRevisionSpec>(_operativeRevision, _pegRevision);
}

std::string HSVNRevisionSpec::description() const
{
    return fmt::format("{}@{}", _operativeRevision->description(), _pegRevision->description());
}

void HSVNRevisionSpec::encodeWithCoder(HSVNCoder* encoder) const
{
    HSVNRequireKeyedArchiver(encoder);
    encoder->encodeObject(_operativeRevision, "operativeRevision");
    encoder->encodeObject(_pegRevision, "pegRevision");
}

bool operator==(const HSVNRevisionSpec& a, const HSVNRevisionSpec& b)
{
    return *a._operativeRevision == *b._operativeRevision && *a._pegRevision == *b._pegRevision;
}

void HSVNRevisionSpec::assignOperativeRevision(const HSVNRevisionRef& revision)
{
    _operativeRevision = revision ? revision : HSVNRevision::UNSPECIFIED();
}

void HSVNRevisionSpec::assignPegRevision(const HSVNRevisionRef& revision)
{
    _pegRevision = revision ? revision : HSVNRevision::UNSPECIFIED();
}
