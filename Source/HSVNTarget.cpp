#include "HSVNTarget.h"

#include "HSVNLocalPath.h"
#include "HSVNPlatformException.h"

namespace {

const std::string& textOf(const HSVNPath* path)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    return path->string();
}

const char* notNull(const char* text)
{
    HSVNAssertParameter(text != nullptr, "text != NULL");
    return text;
}

} // namespace

HSVNTarget::HSVNTarget(const HSVNPath* path) : _text{textOf(path)} {}

HSVNTarget::HSVNTarget(const std::string& text) : _text{text}
{
    if (!text.empty() && !isURL()) {
        _text = HSVNLocalPath{text}.string();
    }
}

HSVNTarget::HSVNTarget(std::string_view text) : HSVNTarget{std::string{text}} {}

HSVNTarget::HSVNTarget(const char* text) : HSVNTarget{std::string{notNull(text)}} {}

std::string HSVNTarget::textOfFile(const std::string& name) { return name.starts_with('~') ? "./" + name : name; }

HSVNTarget HSVNTarget::verbatim(std::string text)
{
    HSVNTarget target;
    target._text = std::move(text);
    return target;
}

bool HSVNTarget::isURL() const
{
    const auto end = _text.find("://");
    constexpr std::string_view ofSchemes = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+-.";
    return end != std::string::npos && end > 0 && _text.find_first_not_of(ofSchemes) == end;
}

HSVNTargets::HSVNTargets(std::initializer_list<HSVNTarget> targets)
{
    _texts.reserve(targets.size());
    for (const auto& target : targets) {
        _texts.push_back(target.text());
    }
}

std::vector<HSVNTargetInRevision> HSVNTargets::inPresentState() const
{
    std::vector<HSVNTargetInRevision> targets;
    targets.reserve(_texts.size());
    for (const auto& text : _texts) {
        targets.emplace_back(HSVNTarget::verbatim(text));
    }
    return targets;
}

HSVNTargets HSVNTargets::verbatim(std::vector<std::string> texts)
{
    HSVNTargets targets;
    targets._texts = std::move(texts);
    return targets;
}

HSVNTargetInRevision::HSVNTargetInRevision(HSVNTarget item, HSVNRevisionSpecRef theRevision)
    : target{std::move(item)}, revision{std::move(theRevision)}
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
}

HSVNTargetInRevision::HSVNTargetInRevision(HSVNTarget item, const HSVNRevisionRef& operativeRevision)
    : HSVNTargetInRevision{std::move(item),
                           operativeRevision ? HSVNRevisionSpec::revisionWithRevision(operativeRevision) : nullptr}
{
}

HSVNRevisionSpecRef HSVNRevisionArgument::specOf(const HSVNRevisionRef& operativeRevision)
{
    return operativeRevision ? HSVNRevisionSpec::revisionWithRevision(operativeRevision) : nullptr;
}
