#include "HSVNExternalDefinition.h"

#include <fmt/format.h>
#include <utility>

HSVNExternalDefinition::HSVNExternalDefinition() : HSVNExternalDefinition({}, nullptr, {}) {}

HSVNExternalDefinition::HSVNExternalDefinition(std::string sourceDirectory, const HSVNRevisionSpecRef& sourceRevision,
                                               std::string targetDirectory)
    : _sourceDirectory{std::move(sourceDirectory)},
      _sourceRevision{(sourceRevision ? sourceRevision : HSVNRevisionSpec::UNSPECIFIED())->mutableCopy()},
      _targetDirectory{std::move(targetDirectory)}
{
}

HSVNExternalDefinition::HSVNExternalDefinition(HSVNCoder* decoder)
    : _sourceDirectory{HSVNRequireKeyedUnarchiver(decoder)->decodeRequiredString("sourceDirectory")},
      _sourceRevision{decoder->decodeRequiredObject<HSVNRevisionSpec>("sourceRevision")->mutableCopy()},
      _targetDirectory{decoder->decodeRequiredString("targetDirectory")}
{
}

void HSVNExternalDefinition::setSourceRevision(HSVNMutableRevisionSpecRef revision)
{
    _sourceRevision = revision ? std::move(revision) : HSVNRevisionSpec::UNSPECIFIED()->mutableCopy();
}

bool HSVNExternalDefinition::isEqualToDefinition(const HSVNExternalDefinition& other) const
{
    return _sourceDirectory == other._sourceDirectory && *_sourceRevision == *other._sourceRevision &&
           _targetDirectory == other._targetDirectory;
}

std::size_t HSVNExternalDefinition::hash() const
{
    const std::hash<std::string> hashText;
    return hashText(_sourceDirectory) ^ (hashText(_targetDirectory) << 1) ^ _sourceRevision->hash();
}

HSVNExternalDefinitionRef HSVNExternalDefinition::copy() const
{
    return std::make_shared<HSVNExternalDefinition>(_sourceDirectory, _sourceRevision, _targetDirectory);
}

std::string HSVNExternalDefinition::description() const
{
    return fmt::format("{{ {} sourceDirectory: {}, sourceRevision: {}, targetDirectory: {} }}", objectDescription(),
                       _sourceDirectory, _sourceRevision->description(), _targetDirectory);
}

void HSVNExternalDefinition::encodeWithCoder(HSVNCoder* encoder) const
{
    HSVNRequireKeyedArchiver(encoder);
    encoder->encodeString(_sourceDirectory, "sourceDirectory");
    encoder->encodeObject(_sourceRevision, "sourceRevision");
    encoder->encodeString(_targetDirectory, "targetDirectory");
}
