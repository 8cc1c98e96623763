#include "Internal/Diff.h"

#include "Internal/Browsing.h"
#include "Internal/ContentsStream.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/RecursionFlag.h"

#include <apr_file_io.h>

namespace {

/// What takes a text; nil stands for the process's own stream.
class Output
{
  public:
    Output(HSVNOperation& operation, const HSVNContentsReceiver& receiver)
        : _stream{operation, receiver}, _isChosen{receiver != nullptr}
    {
    }
    svn_stream_t* streamOrNull() const { return _isChosen ? static_cast<svn_stream_t*>(_stream) : nullptr; }

  private:
    HSVNContentsStream _stream;
    bool _isChosen;
};

} // namespace

HSVNDiffEnds HSVNEndsOf(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second)
{
    return {HSVNRevisionOfTarget(first.target, *first.revision->operativeRevision()),
            HSVNRevisionOfTarget(second.target, *second.revision->operativeRevision())};
}

HSVNDiffEnds HSVNEndsOf(const HSVNDiffRevisions& revisions)
{
    HSVNAssertParameter(revisions.first != nullptr && revisions.second != nullptr, "revision != nil");
    return {revisions.first->SVNRevision(), revisions.second->SVNRevision()};
}

HSVNDifferenceFunctions::Comparing HSVNRecordOfChoices(const HSVNOperation& operation, const HSVNDiffChoices& choices)
{
    const bool isAtLeast1_5 = operation.isAtLeast(HSVNVersion::version1_5());
    operation.refuse(!isAtLeast1_5 && !choices.changelists.empty(), "changelists");
    operation.refuse(!isAtLeast1_5 && !HSVNIsDepthOf1_4(choices.depth), "depth");
    operation.refuse(!isAtLeast1_5 && choices.relativeTo.has_value(), "relativeTo");
    const bool isConfigured = choices.program == HSVNDiffProgram::Configured && !choices.arguments;
    const auto arguments = choices.arguments.value_or(std::vector<std::string>{});
    return {.depth = HSVNDepthForSubversion(choices.depth),
            .ignoreAncestry = choices.ignoreAncestry,
            .omitAdded = choices.omitAdded,
            .omitDeleted = choices.omitDeleted,
            .copiesAsAdds = choices.copiesAsAdds,
            .ignoreContentType = choices.ignoreContentType,
            .ignoreProperties = choices.ignoreProperties,
            .propertiesOnly = choices.propertiesOnly,
            .gitFormat = choices.gitFormat,
            .arguments = isConfigured ? nullptr : HSVNTextArray(operation, arguments),
            .changelists = HSVNFilterArray(operation, choices.changelists),
            .headerEncoding = nullptr,
            .relativeTo = choices.relativeTo ? operation.cString(choices.relativeTo->text()) : nullptr};
}

namespace {

/// The choices of a text, of which older lines have fewer.
HSVNDifferenceFunctions::Comparing recordOfText(const HSVNOperation& operation, const HSVNDiffChoices& choices)
{
    const bool isAtLeast1_7 = operation.isAtLeast({1, 7});
    operation.refuse(!isAtLeast1_7 && choices.copiesAsAdds, "copiesAsAdds");
    operation.refuse(!isAtLeast1_7 && choices.gitFormat, "gitFormat");
    const bool isAtLeast1_8 = operation.isAtLeast({1, 8});
    operation.refuse(!isAtLeast1_8 && choices.omitAdded, "omitAdded");
    operation.refuse(!isAtLeast1_8 && choices.ignoreProperties, "ignoreProperties");
    operation.refuse(!isAtLeast1_8 && choices.propertiesOnly, "propertiesOnly");
    return HSVNRecordOfChoices(operation, choices);
}

} // namespace

void HSVNWriteDiff(HSVNOperation& operation, const HSVNTargetInRevision& first, const HSVNTargetInRevision& second,
                   const HSVNDiffChoices& choices, const HSVNDiffOutput& output)
{
    const auto ends = HSVNEndsOf(first, second);
    auto record = recordOfText(operation, choices);
    record.headerEncoding = output.headerEncoding;
    const Output out{operation, output.text};
    const Output err{operation, output.errors};
    operation.call(&HSVNDifferenceFunctions::client_diff, out.streamOrNull(), err.streamOrNull(),
                   operation.cString(first.target.text()), &ends.first, operation.cString(second.target.text()),
                   &ends.second, &record, operation.ctx(), operation.pool());
}

void HSVNWriteDiff(HSVNOperation& operation, const HSVNTargetInRevision& target, const HSVNDiffRevisions& revisions,
                   const HSVNDiffChoices& choices, const HSVNDiffOutput& output)
{
    const auto peg = HSVNRevisionOfTarget(target.target, *target.revision->pegRevision());
    const auto ends = HSVNEndsOf(revisions);
    auto record = recordOfText(operation, choices);
    record.headerEncoding = output.headerEncoding;
    const Output out{operation, output.text};
    const Output err{operation, output.errors};
    operation.call(&HSVNDifferenceFunctions::client_diff_peg, out.streamOrNull(), err.streamOrNull(),
                   operation.cString(target.target.text()), &peg, &ends.first, &ends.second, &record, operation.ctx(),
                   operation.pool());
}

void HSVNWriteOlderDiff(HSVNOperation& operation, const HSVNTargetInRevision& target,
                        const HSVNDiffRevisions& revisions, const HSVNDiffChoices& choices, const std::string& file)
{
    operation.refuse(!choices.changelists.empty(), "changelists");
    operation.refuse(choices.omitAdded, "omitAdded");
    operation.refuse(choices.copiesAsAdds, "copiesAsAdds");
    operation.refuse(choices.ignoreProperties, "ignoreProperties");
    operation.refuse(choices.propertiesOnly, "propertiesOnly");
    operation.refuse(choices.relativeTo.has_value(), "relativeTo");
    const auto peg = HSVNRevisionOfTarget(target.target, *target.revision->pegRevision());
    const auto ends = HSVNEndsOf(revisions);
    const auto recurses = HSVNRecursionFlag(operation, choices.depth);
    apr_file_t* out = nullptr;
    operation.check(operation->io_file_open(&out, operation.cString(file), APR_WRITE | APR_BINARY, APR_OS_DEFAULT,
                                            operation.pool()));
    operation.check(operation->client_diff_peg3(
        HSVNTextArray(operation, choices.arguments.value_or(std::vector<std::string>{})),
        operation.cString(target.target.text()), &peg, &ends.first, &ends.second, recurses, choices.ignoreAncestry,
        choices.omitDeleted, choices.ignoreContentType, "UTF-8", out, out, operation.ctx(), operation.pool()));
    operation.check(operation->io_file_close(out, operation.pool()));
}
