#include "FileBeginnings.h"
#include "ItemsOnDisk.h"
#include "RelativePaths.h"
#include "StandIns.h"

#ifdef HSVN_GUARDS_ENTRIES

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>
#include <svn_wc.h>
#include <svn_xml.h>

// A working copy may come from anyone. Lines before 1.7 take the names in a directory's list of entries for those of
// items in it, and end the process for one that is none, and for an item that is neither a file nor a directory once
// they write the list; what a clean-up is to do they read from files of commands, and do it wherever these say. Both
// are looked at before they are read.

// Subversion's own, but in no header of the installed.
extern "C" {
svn_error_t* svn_wc__open_adm_file(apr_file_t** file, const char* directory, const char* name, apr_int32_t flags,
                                   apr_pool_t* pool);
svn_error_t* svn_wc__open_adm_stream(svn_stream_t** stream, const char* directory, const char* name,
                                     apr_pool_t* resultPool, apr_pool_t* scratchPool);
}

namespace {

using HSVNAdapter::isRelativePath;

/// The attributes of an entry that name it and the files of its conflicts; they are fields of the newer lists as well.
constexpr std::array<const char*, 5> namesOfEntry{"name", "prejfile", "conflict-old", "conflict-new", "conflict-wrk"};
constexpr std::array<std::size_t, 5> fieldsOfNames{0, 15, 16, 17, 18};
constexpr std::size_t fieldOfKind = 1;
/// Those of a command that name files, relative to the directory.
constexpr std::array<const char*, 4> namesOfCommand{"name", "dest", "arg1", "arg2"};

bool isName(std::string_view text) { return isRelativePath(text) && text.find('/') == std::string_view::npos; }

/// A field with its escapes, such as "\x2f", resolved.
std::string decoded(std::string_view field)
{
    constexpr std::size_t length = 4;
    std::string text;
    while (!field.empty()) {
        unsigned value = 0;
        const bool isEscape =
            field.size() >= length && field.starts_with("\\x") &&
            std::from_chars(field.data() + 2, field.data() + length, value, 16).ptr == field.data() + length;
        text += isEscape ? static_cast<char>(value) : field.front();
        field.remove_prefix(isEscape ? length : 1);
    }
    return text;
}

/// Whether a list of entries, a field in a line, has sound names alone, each with a kind. The first line is the list's
/// format.
bool areEntries(std::string_view list)
{
    const auto nextLine = [&list] {
        const auto line = list.substr(0, list.find('\n'));
        list.remove_prefix(std::min(line.size() + 1, list.size()));
        return line;
    };
    nextLine();
    for (std::size_t field = 0; !list.empty(); ++field) {
        const auto line = nextLine();
        if (line.starts_with('\f')) {
            field = SIZE_MAX; // the next entry begins at 0
        } else if (std::ranges::find(fieldsOfNames, field) != fieldsOfNames.end() && !isName(decoded(line))) {
            return false;
        } else if (field == fieldOfKind && line.empty()) {
            return false;
        }
    }
    return true;
}

/// Looks at the elements of a file.
struct Elements
{
    const char* directory;
    bool areCommands;
    apr_pool_t* pool;
    bool areSound = true;
};

void lookAtElement(void* baton, const char* name, const char** attributes)
{
    auto& elements = *static_cast<Elements*>(baton);
    const auto isInside = [&](const char* path) {
        return isRelativePath(path) && !HSVNAdapter::leadsThroughLink(path, elements.directory, elements.pool);
    };
    const auto isSound = [&](const char* attribute) {
        const char* const value = svn_xml_get_attr_value(attribute, attributes);
        return value == nullptr || (elements.areCommands ? isInside(value) : isName(value));
    };
    const bool lacksKind = !elements.areCommands && std::string_view{name} == "entry" &&
                           svn_xml_get_attr_value("kind", attributes) == nullptr;
    elements.areSound = elements.areSound && !lacksKind &&
                        (elements.areCommands ? std::ranges::all_of(namesOfCommand, isSound)
                                              : std::ranges::all_of(namesOfEntry, isSound));
}

/// Whatever else is wrong with the elements is Subversion's to tell.
bool areSound(Elements elements, const std::string& text)
{
    svn_xml_parser_t* const parser = svn_xml_make_parser(&elements, lookAtElement, nullptr, nullptr, elements.pool);
    constexpr std::string_view root = "<commands>"; // they have none of their own
    svn_error_t* error = elements.areCommands ? svn_xml_parse(parser, root.data(), root.size(), FALSE) : SVN_NO_ERROR;
    if (error == nullptr) {
        error = svn_xml_parse(parser, text.data(), text.size(), FALSE);
    }
    if (error == nullptr) {
        svn_xml_free_parser(parser); // after a failure it is freed
    }
    svn_error_clear(error);
    return elements.areSound;
}

/// Refuses a file of a directory's administrative area that names what lies elsewhere.
svn_error_t* check(const char* directory, std::string_view name, apr_pool_t* pool)
{
    const bool areCommands = name.starts_with("log");
    if (!areCommands && name != "entries") {
        return SVN_NO_ERROR;
    }
    try {
        const std::string place = *directory == '\0' ? "." : directory;
        const std::string path = place + '/' + svn_wc_get_adm_dir(pool) + '/' + std::string{name};
        std::error_code none;
        const auto size = std::filesystem::file_size(path, none);
        const std::string text = none ? std::string{} : HSVNAdapter::beginningOf(path, size);
        const bool isList = !areCommands && !text.starts_with('<');
        return (isList ? areEntries(text) : areSound({place.c_str(), areCommands, pool}, text))
                   ? SVN_NO_ERROR
                   : svn_error_createf(SVN_ERR_WC_CORRUPT, nullptr,
                                       "'%s' names what does not lie in its directory, or no kind", path.c_str());
    } catch (const std::exception&) { // it must not pass through Subversion
        return svn_error_create(APR_ENOMEM, nullptr, nullptr);
    }
}

} // namespace

#if HSVN_LINE_MINOR >= 6
HSVN_STAND_IN(svn_error_t*, svn_wc__open_adm_stream)
(svn_stream_t** stream, const char* directory, const char* name, apr_pool_t* resultPool, apr_pool_t* scratchPool)
{
    SVN_ERR(check(directory, name, scratchPool));
    return HSVN_BEHIND(svn_wc__open_adm_stream)(stream, directory, name, resultPool, scratchPool);
}
#else
HSVN_STAND_IN(svn_error_t*, svn_wc__open_adm_file)
(apr_file_t** file, const char* directory, const char* name, apr_int32_t flags, apr_pool_t* pool)
{
    if ((flags & APR_WRITE) == 0) {
        SVN_ERR(check(directory, name, pool));
    }
    return HSVN_BEHIND(svn_wc__open_adm_file)(file, directory, name, flags, pool);
}
#endif

#endif
