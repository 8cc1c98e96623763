#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNPath.h"
#include "HSVNRevisionSpec.h"

#include <concepts>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// What an operation works on: a local path, absolute or relative to the current directory ("" is that directory), or a
/// URL. A plain value.
class HSVN_EXPORT HSVNTarget
{
  public:
    /// An item's place; not nil ("path != nil").
    template <std::derived_from<HSVNPath> Path>
    HSVNTarget(const std::shared_ptr<const Path>& path) // NOLINT(google-explicit-constructor)
        : HSVNTarget{static_cast<const HSVNPath*>(path.get())}
    {
    }
    /// A text, UTF-8: a URL where it begins with a scheme and "://", else a local path, whose "~" is a home directory
    /// as `HSVNLocalPath` has it. An "@" is part of the name; a peg revision is an argument of its own.
    ///
    /// @throws HSVNInvalidArgumentException for a text that is not UTF-8 or has a NUL in it
    HSVNTarget(const std::string& text); // NOLINT(google-explicit-constructor)
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

    std::string _text;
};

/// The targets of an operation, in order: one, several in braces, or a vector of what a target is made from.
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
    template <class Value>
    requires(std::convertible_to<const Value&, HSVNTarget>)
        HSVNTargets(const std::vector<Value>& targets) // NOLINT(google-explicit-constructor)
    {
        _texts.reserve(targets.size());
        for (const auto& target : targets) {
            _texts.push_back(HSVNTarget{target}.text());
        }
    }
    /// Targets as `HSVNArguments` made them.
    static HSVNTargets verbatim(std::vector<std::string> texts);

    /// The paths and URLs.
    const std::vector<std::string>& texts() const { return _texts; }
    bool empty() const { return _texts.empty(); }

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
