#include "Commands/DiffProgram.h"

#include "CommandLine/TextFiles.h"

void chooseDiffProgram(Session& session, HSVNDiffChoices& choices)
{
    const Options& options = session.options;
    choices.command = options.diffCommand;
    choices.program = options.diffCommand    ? HSVNDiffProgram::External
                      : options.internalDiff ? HSVNDiffProgram::Internal
                                             : HSVNDiffProgram::Configured;
    auto arguments = options.extensions;
    if (!arguments && choices.program != HSVNDiffProgram::Configured) {
        arguments = session.client()->optionForName("diff-extensions", HSVNConfigCategoryConfig,
                                                    HSVNConfigSectionHelpers, std::nullopt);
    }
    if (arguments) {
        choices.arguments = split(*arguments, " \t\n\r");
    }
}
