#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNPath.h"
#include "HSVNRevisionSpec.h"

#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/// A class that names a file as `std::filesystem::path` does.
template <class File>
concept HSVNNativePath = std::same_as<decltype(std::declval<const File&>().native()), const std::string&>;

/// What an operation works on: a local path, absolute or relative to the current directory ("" is that directory), or a
/// URL. A plain value.
class HSVN_EXPORT HSVNTarget
{
  public:
    /// An item's place; not nil ("path != nil").
    template <std::derived_from<HSVNPath> Path>
    HSVNTarget(const std::shared_ptr<Path>& path) // NOLINT(google-explicit-constructor)
        : HSVNTarget{static_cast<const HSVNPath*>(path.get())}
    {
    }
    /// A file's place, such as a `std::filesystem::path`: a local path, in which a "~" is a name like any other.
    template <HSVNNativePath File>
    HSVNTarget(const File& file) // NOLINT(google-explicit-constructor)
        : HSVNTarget{textOfFile(file.native())}
    {
    }
    /// A text, UTF-8: a URL where it begins with a scheme and "://", else a local path, whose "~" is a home directory
    /// as `HSVNLocalPath` has it. An "@" is part of the name; a peg revision is an argument of its own.
    ///
    /// @throws HSVNInvalidArgumentException for a text that is not UTF-8 or has a NUL in it
    HSVNTarget(const std::string& text); // NOLINT(google-explicit-constructor)
    /// The same.
    HSVNTarget(std::string_view text); // NOLINT(google-explicit-constructor)
    /// The same; not null ("text != NULL").
    HSVNTarget(const char* text); // NOLINT(google-explicit-constructor)
    /// A target as `HSVNArguments` made it: taken as it stands, so that operations tell of it as it was typed.
    static HSVNTarget verbatim(std::string text);

    /// The path or the URL.
    const std::string& text() const { return _text; }
    /// Whether it is a URL.
    bool isURL() const;

    friend bool operator==(const HSVNTarget&, const HSVNTarget&) = default;

  private:
    explicit HSVNTarget(const HSVNPath* path);
    HSVNTarget() = default;

    static std::string textOfFile(const std::string& name);

    std::string _text;
};

struct HSVNTargetInRevision;

/// Several things that a target is made from, and nothing that is itself one.
template <class Range>
concept HSVNRangeOfTargets = !std::convertible_to<const Range&, HSVNTarget> &&
                             std::convertible_to<decltype(*std::begin(std::declval<const Range&>())), HSVNTarget>;

/// The targets of an operation, in order: one, several in braces, or a vector, a set or any other range of what a
/// target is made from.
class HSVN_EXPORT HSVNTargets
{
  public:
    HSVNTargets() = default;
    HSVNTargets(std::initializer_list<HSVNTarget> targets);
    template <class Value>
    requires(std::convertible_to<const Value&, HSVNTarget>)
        HSVNTargets(const Value& target) // NOLINT(google-explicit-constructor)
        : HSVNTargets{std::initializer_list<HSVNTarget>{HSVNTarget{target}}}
    {
    }
    template <HSVNRangeOfTargets Range>
    HSVNTargets(const Range& targets) // NOLINT(google-explicit-constructor)
    {
        for (const auto& target : targets) {
            _texts.push_back(HSVNTarget{target}.text());
        }
    }
    /// Targets as `HSVNArguments` made them.
    static HSVNTargets verbatim(std::vector<std::string> texts);

    /// The paths and URLs.
    const std::vector<std::string>& texts() const { return _texts; }
    bool empty() const { return _texts.empty(); }
    /// Each of them in its present state.
    std::vector<HSVNTargetInRevision> inPresentState() const;

  private:
    std::vector<std::string> _texts;
};

/// A target in a certain revision, such as what is copied or compared.
struct HSVN_EXPORT HSVNTargetInRevision
{
    /// In its present state: HEAD for a URL, what the working copy holds for a local path.
    template <class Value>
    requires(std::convertible_to<const Value&, HSVNTarget>)
        HSVNTargetInRevision(const Value& item) // NOLINT(google-explicit-constructor)
        : target{item}, revision{HSVNRevisionSpec::UNSPECIFIED()}
    {
    }
    /// @param theRevision  which item (peg) in which state (operative); not nil ("revision != nil")
    HSVNTargetInRevision(HSVNTarget item, HSVNRevisionSpecRef theRevision);
    /// The same with the operative revision alone.
    HSVNTargetInRevision(HSVNTarget item, const HSVNRevisionRef& operativeRevision);

    HSVNTarget target;
    HSVNRevisionSpecRef revision; ///< never nil
};

/// Which state of an item a verb works on, and which item that is: an `HSVNRevisionSpec`, or a revision alone, which is
/// then the operative one.
class HSVN_EXPORT HSVNRevisionArgument
{
  public:
    /// Written as "{}": unspecified, what the verb takes where no revision is given.
    HSVNRevisionArgument() : _spec{HSVNRevisionSpec::UNSPECIFIED()} {}
    /// Nil, which no verb takes ("revision != nil"), written out or as one of the pointers below.
    HSVNRevisionArgument(std::nullptr_t /*none*/) {} // NOLINT(google-explicit-constructor)
    template <std::derived_from<HSVNRevisionSpec> Spec>
    HSVNRevisionArgument(const std::shared_ptr<Spec>& spec) // NOLINT(google-explicit-constructor)
        : _spec{spec}
    {
    }
    template <std::derived_from<HSVNRevision> Revision>
    HSVNRevisionArgument(const std::shared_ptr<Revision>& operativeRevision) // NOLINT(google-explicit-constructor)
        : _spec{specOf(operativeRevision)}
    {
    }

    /// Both revisions; nil for nil.
    const HSVNRevisionSpecRef& spec() const { return _spec; }

  private:
    static HSVNRevisionSpecRef specOf(const HSVNRevisionRef& operativeRevision);

    HSVNRevisionSpecRef _spec;
};
