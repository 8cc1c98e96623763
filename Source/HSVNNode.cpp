#include "HSVNNode.h"

#include "HSVNLocalPath.h"
#include "HSVNLock.h"
#include "HSVNPath.h"
#include "HSVNPlatformException.h"
#include "HSVNStatus.h"
#include "HSVNURL.h"
#include "Internal/CompactDate.h"
#include "Internal/FurtherKeys.h"
#include "Internal/PathText.h"
#include "Internal/RevisionNumber.h"
#include "Internal/SharedText.h"
#include "Internal/Subversion.h"
#include "Internal/Text.h"
#include "Internal/TrustedText.h"

#include <filesystem>
#include <system_error>

// A scan keeps one node per item: see Documentation/Memory.md before a field is added.
static_assert(sizeof(void*) != 8 || sizeof(HSVNNode) <= 136);

struct HSVNNode::Rare
{
    HSVNLockRef lock;
    std::optional<std::string> externalParentURL;
    std::optional<std::string> externalTarget;
};

namespace {

template <class Value>
HSVNComparisonResult ordered(const Value& a, const Value& b)
{
    return a < b ? HSVNOrderedAscending : b < a ? HSVNOrderedDescending : HSVNOrderedSame;
}

} // namespace

HSVNNode::HSVNNode() = default;
HSVNNode::HSVNNode(const HSVNNode& other) = default;
HSVNNode::~HSVNNode() = default;

// NOLINTNEXTLINE(performance-unnecessary-value-param): the path is asked for its parent while it is handed on
HSVNNode::HSVNNode(std::optional<std::string> name, HSVNPathRef path, HSVNURLRef url, const svn_dirent_t* dirent,
                   const svn_lock_t* lock)
    : HSVNNode(std::move(name), path, std::move(url), dirent, lock, path ? path->parent() : nullptr,
               dirent ? HSVNMakeSharedText(HSVNTextOrNil(dirent->last_author)) : nullptr)
{
}

HSVNNode::HSVNNode(std::optional<std::string> name, HSVNPathRef path, HSVNURLRef url, const svn_dirent_t* dirent,
                   const svn_lock_t* lock, HSVNPathRef location, HSVNSharedText author)
    : _path{std::move(path)}, _location{std::move(location)}, _author{std::move(author)}, _url{std::move(url)}
{
    HSVNAssertParameter(dirent != nullptr, "dirent != NULL");
    setName(std::move(name));
    if (lock) {
        setLock(std::make_shared<HSVNLock>(lock));
    }
    if (dirent->size < 0) {
        setSizeUnknown();
    } else {
        setSize(static_cast<std::uint64_t>(dirent->size));
    }
    _revision = HSVNRevisionNumberFromSubversion(dirent->created_rev);
    setExactDate(HSVNDateOrNil(dirent->time));
    _hasProperties = dirent->has_props != 0;
}

HSVNNodeRef HSVNNode::copy() const
{
    auto node = std::make_shared<HSVNNode>(*this);
    node->unshareStatus();
    return node;
}

void HSVNNode::unshareStatus() { _status = _status ? _status->copy() : nullptr; }

std::optional<std::string> HSVNNode::name() const
{
    return _nameIsLastComponent ? std::optional{_path->denormalizedLastComponent()} : HSVNTextValue(_name);
}

void HSVNNode::setName(std::optional<std::string> name)
{
    _nameIsLastComponent = name && _path && *name == _path->denormalizedLastComponent();
    _name = _nameIsLastComponent ? nullptr : HSVNMakeSharedText(std::move(name));
}

void HSVNNode::setNameFromPath()
{
    _nameIsLastComponent = _path != nullptr;
    _name = nullptr;
}

void HSVNNode::setPath(HSVNPathRef path)
{
    auto keptName = name();
    URL(); // of the old path
    _path = std::move(path);
    setName(std::move(keptName));
}

std::optional<std::string> HSVNNode::author() const { return HSVNTextValue(_author); }
void HSVNNode::setAuthor(std::optional<std::string> author) { _author = HSVNMakeSharedText(std::move(author)); }

void HSVNNode::setSize(std::uint64_t size)
{
    _size = size;
    _sizeIsUnknown = false;
}

void HSVNNode::setSizeUnknown()
{
    _size = 0;
    _sizeIsUnknown = true;
}

std::optional<HSVNDate> HSVNNode::date() const
{
    return _tellsSeconds ? HSVNCompactDate::seconds(_date) : HSVNCompactDate::value(_date);
}

std::optional<HSVNDate> HSVNNode::exactDate() const { return HSVNCompactDate::value(_date); }

void HSVNNode::setDate(const std::optional<HSVNDate>& date)
{
    _date = HSVNCompactDate::of(date);
    _tellsSeconds = false;
}

void HSVNNode::setExactDate(const std::optional<HSVNDate>& date)
{
    _date = HSVNCompactDate::of(date);
    _tellsSeconds = true;
}

// The URL

HSVNNode::URLBelow::URLBelow(HSVNURLRef url) : _url{std::move(url)} {}

HSVNNode::URLBelow::URLBelow(const URLBelow& other)
{
    const bool isDirectory = other.takeDirectory();
    _url = other._url;
    if (isDirectory) {
        other.leave(State::Directory);
        _state = State::Directory;
    }
}

HSVNNode::URLBelow::~URLBelow() = default;

void HSVNNode::URLBelow::set(HSVNURLRef url)
{
    _url = std::move(url);
    _state = State::Made;
}

void HSVNNode::URLBelow::setDirectory(HSVNURLRef directory)
{
    _url = std::move(directory);
    _state = State::Directory;
}

void HSVNNode::URLBelow::make(const HSVNNode& node) const
{
    if (!takeDirectory()) {
        return;
    }
    try {
        HSVNAssertParameter(node._path != nullptr, "path != nil");
        std::string text = _url->string();
        text.append(1, '/').append(HSVNPathText::percentEncoded(HSVNPathText::lastComponent(node._path->string())));
        _url = HSVNURLOfTrustedText(std::move(text));
    } catch (...) {
        leave(State::Directory);
        throw;
    }
    leave(State::Made);
}

/// Keeps other threads from a URL that is still the directory's; false when it is made.
bool HSVNNode::URLBelow::takeDirectory() const
{
    for (;;) {
        State state = State::Directory;
        if (_state.compare_exchange_strong(state, State::Busy, std::memory_order_acquire)) {
            return true;
        }
        if (state == State::Made) {
            return false;
        }
        _state.wait(State::Busy, std::memory_order_acquire);
    }
}

void HSVNNode::URLBelow::leave(State state) const
{
    _state.store(state, std::memory_order_release);
    _state.notify_all();
}

// Fields stored apart

const HSVNLockRef& HSVNNode::lock() const { return _rare.get(&Rare::lock); }
void HSVNNode::setLock(HSVNLockRef lock) { _rare.set(&Rare::lock, std::move(lock)); }
std::optional<std::string> HSVNNode::externalParentURL() const { return _rare.get(&Rare::externalParentURL); }
std::optional<std::string> HSVNNode::externalTarget() const { return _rare.get(&Rare::externalTarget); }

void HSVNNode::setExternal(std::optional<std::string> parentURL, std::optional<std::string> target)
{
    _rare.set(&Rare::externalParentURL, std::move(parentURL));
    _rare.set(&Rare::externalTarget, std::move(target));
}

HSVNComparisonResult HSVNNode::compare(const HSVNNode* other) const
{
    if (!other) {
        return HSVNOrderedDescending;
    }
    if (isDirectory() != other->isDirectory()) {
        return isDirectory() ? HSVNOrderedAscending : HSVNOrderedDescending;
    }
    if (const auto order = _path ? _path->compare(other->_path) : HSVNOrderedSame; order != HSVNOrderedSame) {
        return order;
    }
    if (const auto order = ordered(_revision, other->_revision); order != HSVNOrderedSame) {
        return order;
    }
    if (const auto order = ordered(date(), other->date()); order != HSVNOrderedSame) {
        return order;
    }
    if (const auto order = ordered(_size, other->_size); order != HSVNOrderedSame) {
        return order;
    }
    return compareStatus(*other);
}

HSVNComparisonResult HSVNNode::compareStatus(const HSVNNode& other) const
{
    if (!_status || !other._status) {
        // Also when neither has one: nodes that no scan made never compare equal.
        return _status ? HSVNOrderedAscending : HSVNOrderedDescending;
    }
    const auto order = ordered(_status->lastChangedRevision(), other._status->lastChangedRevision());
    return order != HSVNOrderedSame ? order : ordered(_status->textStatus(), other._status->textStatus());
}

// Archive

void HSVNNode::encodeWithCoder(HSVNCoder* encoder) const
{
    HSVNRequireKeyedArchiver(encoder);
    encoder->encodeString(name(), "name");
    encoder->encodeObject(_path, "path");
    encoder->encodeObject(_location, "location");
    encoder->encodeObject(URL(), "url");
    encoder->encodeUnsigned(_size, "size");
    encoder->encodeInteger(_revision, "revision");
    encoder->encodeDate(date(), "date");
    encoder->encodeString(author(), "author");
    encoder->encodeObject(lock(), "lock");
    encoder->encodeBool(_hasProperties, "hasProperties");
    encoder->encodeObject(_status, "status");
    if (exactDate() != date()) {
        encoder->encodeDate(exactDate(), "exactDate");
    }
    if (_sizeIsUnknown) {
        encoder->encodeBool(true, "sizeIsUnknown");
    }
    HSVNEncodeFurther(*encoder, externalParentURL(), "externalParentURL");
    HSVNEncodeFurther(*encoder, externalTarget(), "externalTarget");
}

HSVNNode::HSVNNode(HSVNCoder* decoder)
{
    HSVNRequireKeyedUnarchiver(decoder);
    _path = decoder->decodeObject<HSVNPath>("path");
    setName(decoder->decodeString("name"));
    _location = decoder->decodeObject<HSVNPath>("location");
    setURL(decoder->decodeObject<HSVNURL>("url"));
    _size = decoder->decodeUnsigned("size");
    _sizeIsUnknown = decoder->decodeBool("sizeIsUnknown");
    _revision = decoder->decodeInt32("revision");
    if (decoder->containsValueForKey("exactDate")) {
        setExactDate(decoder->decodeDate("exactDate"));
    } else {
        setDate(decoder->decodeDate("date"));
    }
    setAuthor(decoder->decodeString("author"));
    setLock(decoder->decodeObject<HSVNLock>("lock"));
    setExternal(decoder->decodeString("externalParentURL"), decoder->decodeString("externalTarget"));
    _hasProperties = decoder->decodeBool("hasProperties");
    _status = decoder->decodeObject<HSVNStatus>("status");
}

// Working-copy status

bool HSVNNode::canBeAdded() const
{
    if (!_status) {
        return false;
    }
    if (!_status->isVersioned()) {
        return true;
    }
    std::error_code error;
    return _status->schedule() == HSVNScheduleDelete && !isDirectory() && _path &&
           std::filesystem::exists(_path->string(), error);
}

bool HSVNNode::hasNewerRevisionInRepository() const
{
    const auto tellsChange = [](HSVNStatusKind kind) {
        return kind != HSVNStatusKindNone && kind != HSVNStatusKindNormal;
    };
    return _status &&
           (tellsChange(_status->repositoryTextStatus()) || tellsChange(_status->repositoryPropertyStatus()));
}

HSVNLockStatus HSVNNode::lockStatus() const
{
    const HSVNLockRef repositoryLock = _status ? _status->repositoryLock() : nullptr;
    if (repositoryLock) {
        if (!lock()) {
            return HSVNLockStatusLockedElsewhere;
        }
        return lock()->isEqualToLock(repositoryLock) ? HSVNLockStatusLockedHere : HSVNLockStatusStolen;
    }
    if (!lock()) {
        return HSVNLockStatusNone;
    }
    const bool repositoryAsked = _status && _status->repositoryTextStatus() != HSVNStatusKindNone;
    return repositoryAsked ? HSVNLockStatusBroken : HSVNLockStatusLockedLocally;
}
