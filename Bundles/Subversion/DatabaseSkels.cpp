#include "DatabaseSkels.h"

#include "ItemsOnDisk.h"
#include "RelativePaths.h"
#include "StandIns.h"

#ifdef HSVN_GUARDS_DATABASES

#include <algorithm>
#include <array>

/// An atom or a list of them. Subversion's own, but in no header of the installed.
struct svn_skel_t // NOLINT(readability-identifier-naming)
{
    svn_boolean_t is_atom;
    const char* data;
    apr_size_t len;
    svn_skel_t* children;
    svn_skel_t* next;
};

extern "C" svn_skel_t* svn_skel__parse(const char* data, apr_size_t length, apr_pool_t* pool);

namespace HSVNAdapter {
namespace {

constexpr std::size_t deepest = 1000;

/// What a skeleton is made of, for as long as it is looked at.
class Skeleton
{
  public:
    explicit Skeleton(std::string_view text)
        : _pool{svn_pool_create(nullptr)}, _top{svn_skel__parse(text.data(), text.size(), _pool)}
    {
    }
    ~Skeleton() { svn_pool_destroy(_pool); }
    Skeleton(const Skeleton&) = delete;
    Skeleton& operator=(const Skeleton&) = delete;

    /// Null when there is none.
    const svn_skel_t* top() const { return _top; }
    apr_pool_t* pool() const { return _pool; }

  private:
    apr_pool_t* _pool;
    const svn_skel_t* _top;
};

bool isList(const svn_skel_t* skeleton) { return skeleton != nullptr && !skeleton->is_atom; }

bool isAtom(const svn_skel_t* skeleton) { return skeleton != nullptr && skeleton->is_atom; }

std::string_view textOf(const svn_skel_t* atom) { return {atom->data, atom->len}; }

/// A list's member; null when it has fewer, or is no list.
const svn_skel_t* member(const svn_skel_t* list, std::size_t index)
{
    const auto* found = isList(list) ? list->children : nullptr;
    for (; found != nullptr && index > 0; --index) {
        found = found->next;
    }
    return found;
}

template <class Condition>
bool allFrom(const svn_skel_t* first, Condition condition)
{
    for (const auto* each = first; each != nullptr; each = each->next) {
        if (!condition(each)) {
            return false;
        }
    }
    return true;
}

bool isPathOrList(const svn_skel_t* skeleton) { return isList(skeleton) || isRelativePath(textOf(skeleton)); }

/// Where in a repository a side of a conflict comes from.
bool isOrigin(const svn_skel_t* origin)
{
    const auto* const source = member(origin, 0);
    if (!isAtom(source) || textOf(source) != "subversion") {
        return true; // of no kind that Subversion knows
    }
    const auto* const root = member(origin, 1);
    const auto* const path = member(origin, 3);
    const auto* const revision = member(origin, 4);
    if (!isAtom(root) || !isAtom(path) || !isAtom(revision) || !isAtom(member(origin, 5))) {
        return false;
    }
    return isRepositoryRoot(textOf(root)) && isRelativePath(textOf(path)) &&
           textOf(revision).find_first_not_of("0123456789") == std::string_view::npos;
}

/// What a conflict has of one kind: its name, its marker files, and what belongs to the kind.
bool isKindOfConflict(const svn_skel_t* conflict)
{
    const auto* const name = member(conflict, 0);
    const auto* const markers = member(conflict, 1);
    if (!isAtom(name) || !isList(markers) || !allFrom(markers->children, isPathOrList)) {
        return false;
    }
    const auto kind = textOf(name);
    if (kind == "text") {
        return member(markers, 2) != nullptr;
    }
    if (kind == "prop") {
        return isList(member(conflict, 2)) && allFrom(member(conflict, 2)->children, isAtom) &&
               member(conflict, 5) != nullptr;
    }
    return kind != "tree" ||
           (isAtom(member(conflict, 2)) && isAtom(member(conflict, 3)) &&
            allFrom(member(conflict, 4), [](const auto* path) { return isAtom(path) && isPathOrList(path); }));
}

struct KindOfWork
{
    std::string_view name;
    std::size_t arguments; // that are always there
    bool writes = true;    // files, which it must not below links
};

constexpr std::array<KindOfWork, 13> kindsOfWork{{{"base-remove", 2},
                                                  {"file-commit", 1},
                                                  {"file-install", 3},
                                                  {"file-remove", 1},
                                                  {"file-move", 2},
                                                  {"file-translate", 3},
                                                  {"sync-file-flags", 1, false},
                                                  {"prej-install", 1},
                                                  {"dir-remove", 1},
                                                  {"dir-install", 1},
                                                  {"record-fileinfo", 1, false},
                                                  {"tmp-set-text-conflict-markers", 4, false},
                                                  {"tmp-set-property-conflict-marker", 2, false}}};

} // namespace

bool isRepositoryRoot(std::string_view text)
{
    apr_pool_t* const pool = svn_pool_create(nullptr);
    const std::string url{text};
    const bool isOne = svn_path_is_url(url.c_str()) && svn_uri_is_canonical(url.c_str(), pool);
    svn_pool_destroy(pool);
    return isOne;
}

bool isNestedTooDeeply(std::string_view skeleton)
{
    if (skeleton.size() <= deepest) {
        return false;
    }
    std::size_t depth = 0;
    for (std::size_t offset = 0; offset < skeleton.size() && depth <= deepest;) {
        const char first = skeleton[offset];
        if (first < '0' || first > '9') {
            depth += first == '(' ? 1 : 0;
            depth -= first == ')' && depth > 0 ? 1 : 0;
            ++offset;
            continue;
        }
        // An atom that begins with its length, and may hold brackets.
        std::size_t length = 0;
        for (; offset < skeleton.size() && skeleton[offset] >= '0' && skeleton[offset] <= '9'; ++offset) {
            length = std::min(10 * length + static_cast<std::size_t>(skeleton[offset] - '0'), skeleton.size());
        }
        offset += 1 + length;
    }
    return depth > deepest;
}

bool isConflict(std::string_view skeleton)
{
    const Skeleton conflict{skeleton};
    const auto* const reason = member(conflict.top(), 0);
    const auto* const kinds = member(conflict.top(), 1);
    const auto* const origins = member(reason, 1);
    return isList(reason) && isList(kinds) && allFrom(kinds->children, isKindOfConflict) &&
           (reason->children == nullptr ||
            (isAtom(reason->children) && isList(origins) && allFrom(origins->children, isOrigin)));
}

bool isPieceOfWork(std::string_view skeleton, const std::string& root)
{
    const Skeleton work{skeleton};
    const auto* const name = member(work.top(), 0);
    if (!isAtom(name)) {
        return false;
    }
    const auto* const kind = std::ranges::find(kindsOfWork, textOf(name), &KindOfWork::name);
    const auto isSound = [&](const auto* path) {
        return isPathOrList(path) &&
               (isList(path) || !kind->writes || !leadsThroughLink(textOf(path), root, work.pool()));
    };
    return kind == kindsOfWork.end() ||
           (isAtom(member(work.top(), 1)) && member(work.top(), kind->arguments) != nullptr &&
            allFrom(member(work.top(), 1), isSound));
}

} // namespace HSVNAdapter

#endif
