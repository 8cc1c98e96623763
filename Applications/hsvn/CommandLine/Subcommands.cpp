#include "CommandLine/Subcommands.h"

#include <algorithm>
#include <array>

bool Subcommand::accepts(OptionId option) const
{
    const auto global = isAdministrative ? std::span<const OptionId>{} : globalOptions();
    return option == OptionId::Help || std::find(options.begin(), options.end(), option) != options.end() ||
           std::find(global.begin(), global.end(), option) != global.end();
}

const char* Subcommand::descriptionOf(const Option& option) const
{
    const auto own = std::find_if(descriptions.begin(), descriptions.end(),
                                  [&](const auto& description) { return description.first == option.id; });
    return own == descriptions.end() ? option.description : own->second;
}

std::string Subcommand::heading() const
{
    std::string text = name;
    for (const char* const alias : aliases) {
        text += text.size() == std::string_view{name}.size() ? " (" : ", ";
        text += alias;
    }
    return aliases.empty() ? text : text + ")";
}

std::span<const Subcommand* const> subcommands()
{
    static const std::array all{
        &addSubcommand(),        &authSubcommand(),     &blameSubcommand(),   &catSubcommand(),
        &changelistSubcommand(), &checkoutSubcommand(), &cleanupSubcommand(), &commitSubcommand(),
        &copySubcommand(),       &createSubcommand(),   &deleteSubcommand(),  &diffSubcommand(),
        &exportSubcommand(),     &helpSubcommand(),     &importSubcommand(),  &infoSubcommand(),
        &listSubcommand(),       &lockSubcommand(),     &logSubcommand(),     &mergeSubcommand(),
        &mergeinfoSubcommand(),  &mkdirSubcommand(),    &moveSubcommand(),    &patchSubcommand(),
        &propdelSubcommand(),    &propeditSubcommand(), &propgetSubcommand(), &proplistSubcommand(),
        &propsetSubcommand(),    &relocateSubcommand(), &resolveSubcommand(), &resolvedSubcommand(),
        &revertSubcommand(),     &statusSubcommand(),   &switchSubcommand(),  &unlockSubcommand(),
        &updateSubcommand(),     &upgradeSubcommand()};
    return all;
}

std::vector<const char*> subcommandNames()
{
    std::vector<const char*> names;
    for (const Subcommand* const subcommand : subcommands()) {
        names.push_back(subcommand->name);
    }
    return names;
}

const Subcommand* subcommandNamed(std::string_view name)
{
    for (const Subcommand* const candidate : subcommands()) {
        const auto& aliases = candidate->aliases;
        if (name == candidate->name || std::find(aliases.begin(), aliases.end(), name) != aliases.end()) {
            return candidate;
        }
    }
    return nullptr;
}
