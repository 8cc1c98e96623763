#include "CommandLine/Session.h"

#include "CommandLine/ConfigurationNames.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/TextFiles.h"
#include "Output/Display.h"
#include "Output/ErrorOutput.h"
#include "Output/OperationListener.h"
#include "Output/Output.h"
#include "Output/Pager.h"
#include "Output/Progress.h"
#include "Output/Words.h"

#include <algorithm>
#include <cerrno>
#include <fmt/format.h>

namespace {

/// The first line of standard input.
std::string passwordFromInput()
{
    const std::string input = NativeText::toUTF8(contentsOfFile("-"));
    return input.substr(0, input.find_first_of("\n\r"));
}

/// Whether it is the system that keeps the configuration area from being used.
bool isRefusedBySystem(const HSVNException& exception)
{
    return exception.status() == EACCES || exception.status() == ENOTDIR;
}

/// Keeps other programs from the working copies' databases where the configuration names Subversion's command line, or
/// this program, among the clients that do.
void lockExclusively(HSVNClient& client)
{
    constexpr const char* section = "working-copy";
    const auto names = split(
        client.optionForName("exclusive-locking-clients", HSVNConfigCategoryConfig, section, "").value_or(""), " ,");
    if (std::ranges::any_of(names, [](const auto& name) { return name == "svn" || name == "hsvn"; })) {
        client.setOption("true", "exclusive-locking", HSVNConfigCategoryConfig, section);
    }
}

} // namespace

void Session::loadBundles()
{
    if (!_bundlesAreLoaded) {
        auto& loader = HSVNBundleLoader::sharedInstance();
        loader.loadBundlesInDirectoryAtPath(HSVNBundleLoader::defaultBundleDirectory());
        if (!loader.defaultBundle()) {
            fail(UnsupportedFeature,
                 fmt::format("There is no bundle of Subversion in '{}'", HSVNBundleLoader::defaultBundleDirectory()));
        }
        _bundlesAreLoaded = true;
    }
}

HSVNContextRef Session::context()
{
    if (_client) {
        return _client;
    }
    if (!_context) {
        loadBundles();
        _context = std::make_shared<HSVNContext>();
    }
    return _context;
}

bool Session::isConfigured(const std::string& option, bool otherwise)
{
    const auto value =
        client()->optionForName(option, HSVNConfigCategoryConfig, HSVNConfigSectionMiscellany, std::nullopt);
    if (!value) {
        return otherwise;
    }
    if (!isTrueWord(*value) && !isFalseWord(*value)) {
        fail(BadConfigurationValue, fmt::format("Config error: invalid boolean value '{}' for '[{}] {}'", *value,
                                                HSVNConfigSectionMiscellany, option));
    }
    return isTrueWord(*value);
}

const HSVNClientRef& Session::client()
{
    if (_client) {
        return _client;
    }
    loadBundles();
    if (!_delegate) {
        const bool isQuiet = options.quiet || options.xml || options.json;
        _delegate = isQuiet ? HSVNClientDelegateRef{std::make_shared<HSVNClientDelegateFor<QuietListener>>()}
                            : std::make_shared<HSVNClientDelegateFor<OperationListener>>();
    }
    auto client = HSVNClient::clientForSettings(_delegate);
    HSVNClientSettings settings = options.client;
    if (options.passwordFromInput) {
        settings.password = passwordFromInput();
    }
    if (options.autoProperties || options.noAutoProperties) {
        settings.options.push_back({HSVNConfigCategoryConfig, HSVNConfigSectionMiscellany, "enable-auto-props",
                                    options.autoProperties ? "yes" : "no"});
    }
    if (options.mergeCommand) {
        settings.options.push_back(
            {HSVNConfigCategoryConfig, HSVNConfigSectionHelpers, "diff3-cmd", *options.mergeCommand});
    }
    settings.prompts = options.nonInteractive ? HSVNPrompts::Nobody : HSVNPrompts::Terminal;
    settings.beforePrompt = Output::makeWayForQuestion;
    try {
        client->applySettings(settings);
        lockExclusively(*client);
    } catch (const HSVNException& refused) {
        if (!isRefusedBySystem(refused)) {
            throw;
        }
        printWarning(refused); // it works without a configuration
    }
    warnOfUnknownFiles();
    if (Display::isShown() && !options.quiet) {
        Progress::setWanted(true);
        _transfer.emplace(client,
                          [](std::int64_t bytes, std::optional<std::int64_t>) { Progress::setTransferred(bytes); });
    }
    _client = std::move(client);
    return _client;
}

void Session::ensureConfigurationArea()
{
    try {
        loadBundles();
        HSVNClient::clientForSettings(_delegate)->applySettings(
            {.configurationDirectory = options.client.configurationDirectory});
    } catch (const HSVNException&) { // NOLINT(bugprone-empty-catch)
        // What goes wrong beside it is what the user is told.
    }
}

void Session::pageOutput() const
{
    if (!options.noPager) {
        Pager::use();
    }
}

void Session::setDelegate(HSVNClientDelegateRef delegate)
{
    _delegate = std::move(delegate);
    if (_client) {
        _client->setDelegate(_delegate);
    }
}

void Session::addConfigurationOption(Options& into, HSVNConfigurationOption option)
{
    if (checkConfigurationNames(option)) {
        into.client.options.push_back(std::move(option));
    } else {
        ++_unknownFiles;
    }
}

void Session::warnOfUnknownFiles()
{
    for (; _unknownFiles > 0; --_unknownFiles) {
        warnOfUnknownFile();
    }
}
