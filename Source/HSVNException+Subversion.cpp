#include "HSVNException.h"
#include "Internal/Characters.h"
#include "Internal/Pool.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <utf8.h>

namespace {

/// The class that is named so in what an exception can be made of.
template <class Concrete>
const HSVNExceptionClass* registeredClassOf()
{
    static const HSVNExceptionClass* const found = HSVNExceptionClass::named(Concrete::staticClassName);
    return found;
}

/// Bytes that are no text by their numbers, as Subversion's programs show them.
std::string legible(std::string_view bytes)
{
    std::string text;
    while (!bytes.empty()) {
        const auto size = std::min(utf8::find_invalid(bytes), bytes.size());
        text += bytes.substr(0, size);
        if (size < bytes.size()) {
            text += fmt::format("?\\{:02X}", static_cast<unsigned char>(bytes[size]));
        }
        bytes.remove_prefix(std::min(size + 1, bytes.size()));
    }
    return text;
}

std::string messageOf(const svn_error_t* error)
{
    HSVNAssertParameter(error != nullptr, "error != NULL");
    std::array<char, 1024> buffer{};
    const char* const message = HSVNCurrentEntryPoints().err_best_message(error, buffer.data(), buffer.size());
    return legible(message ? message : "");
}

/// The status map's answer for `HSVNException`, the receiver itself for any other class.
const HSVNExceptionClass* classForStatus(const HSVNExceptionClass& receiver, std::int32_t status)
{
    return &receiver == registeredClassOf<HSVNException>() ? HSVNException::mapClassToAPRStatus(status) : &receiver;
}

/// Releases a Subversion error when the scope ends, if asked to.
class ErrorScope
{
  public:
    ErrorScope(svn_error_t* error, bool clear) : _error{clear ? error : nullptr} {}
    ~ErrorScope()
    {
        if (_error) {
            _entryPoints.error_clear(_error);
        }
    }
    ErrorScope(const ErrorScope&) = delete;
    ErrorScope& operator=(const ErrorScope&) = delete;

  private:
    const HSVNBundleEntryPoints& _entryPoints = HSVNCurrentEntryPoints();
    svn_error_t* _error;
};

} // namespace

// Braces: the message is asked for first.
HSVNException::HSVNException(const svn_error_t* error) : HSVNException{messageOf(error), dictionaryForError(error)} {}

HSVNExceptionRef HSVNException::exceptionWithError(svn_error_t* error, bool clear)
{
    return exceptionWithError(error, clear, *registeredClassOf<HSVNException>());
}

HSVNExceptionRef HSVNException::exceptionWithError(svn_error_t* error) { return exceptionWithError(error, true); }

HSVNExceptionRef HSVNException::exceptionWithError(svn_error_t* error, bool clear, const HSVNExceptionClass& receiver)
{
    HSVNAssertParameter(error != nullptr, "error != NULL");
    const ErrorScope scope{error, clear};
    const HSVNExceptionClass* chosen = nullptr;
    for (const svn_error_t* link = error; link && !chosen; link = link->child) {
        chosen = classForStatus(receiver, link->apr_err);
    }
    if (!chosen) {
        chosen = registeredClassOf<HSVNException>();
    } else if (chosen == registeredClassOf<HSVNCommunicationException>()) {
        chosen = classForCommunicationError(error);
    }
    return chosen->make(messageOf(error), dictionaryForError(error));
}

HSVNUserInfo HSVNException::dictionaryForError(const svn_error_t* error)
{
    HSVNAssertParameter(error != nullptr, "error != nil");
    HSVNUserInfo userInfo{{HSVNExceptionMessageKey, messageOf(error)},
                          {HSVNExceptionStatusKey, std::int64_t{error->apr_err}}};
    if (error->file) {
        userInfo.emplace(HSVNExceptionFileNameKey, HSVNText::decoded(error->file));
        userInfo.emplace(HSVNExceptionLineNumberKey, std::int64_t{error->line});
    }
    if (error->child) {
        userInfo.emplace(HSVNExceptionCauseKey, std::make_shared<const HSVNUserInfo>(dictionaryForError(error->child)));
    }
    return userInfo;
}

const HSVNExceptionClass* HSVNException::classForCommunicationError(const svn_error_t* error)
{
    const std::string_view message = error && error->message ? error->message : "";
    const bool isRefusal = HSVNText::containsIgnoringCase(message, "401 Authorization Required") ||
                           HSVNText::containsIgnoringCase(message, "403 Forbidden");
    return isRefusal ? registeredClassOf<HSVNAuthorizationException>()
                     : registeredClassOf<HSVNCommunicationException>();
}
