#include "HSVNRepositoryChanges.h"

#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/RevisionNumber.h"
#include "Internal/Text.h"

namespace {

constexpr const char* className = "HSVNRepositoryChanges";

/// The frame of one of the operations, with what Subversion needs to know of the new revision.
class Change
{
  public:
    Change(const HSVNContextRef& context, const char* operation, const std::vector<HSVNArgument>& arguments,
           const HSVNRevisionWishes& wishes)
        : _operation{context, className, operation, arguments}, _wishes{wishes}
    {
    }

    HSVNOperation& operation() { return _operation; }

    /// The revision properties; null for none.
    apr_hash_t* properties() const
    {
        if (_wishes.properties.empty()) {
            return nullptr;
        }
        auto* const hash = _operation->apr_hash_make(_operation.pool());
        for (const auto& [name, value] : _wishes.properties) {
            auto* const record =
                static_cast<svn_string_t*>(_operation->apr_palloc(_operation.pool(), sizeof(svn_string_t)));
            record->data = value.data(); // the wishes outlive the call
            record->len = value.size();
            _operation->apr_hash_set(hash, _operation.cString(name), APR_HASH_KEY_STRING, record);
        }
        return hash;
    }

    static svn_error_t* received(const svn_commit_info_t* info, void* baton, apr_pool_t* /*pool*/)
    {
        auto& change = *static_cast<Change*>(baton);
        return HSVNGuardCallback(*change._operation.context(), [&]() -> svn_error_t* {
            change._committed = HSVNRevisionNumberFromSubversion(info->revision);
            if (change._wishes.receiver) {
                change._wishes.receiver({change._committed, HSVNTextOrNil(info->date), HSVNTextOrNil(info->author),
                                         HSVNTextOrNil(info->post_commit_err)});
            }
            return nullptr;
        });
    }

    void check(svn_error_t* error) { _operation.check(error, _committed); }

  private:
    HSVNOperation _operation;
    const HSVNRevisionWishes& _wishes;
    HSVNRevisionNumber _committed = HSVNInvalidRevision;
};

} // namespace

void HSVNCommitItems(const std::vector<std::string>& targets, const HSVNItemCommitOptions& options,
                     const HSVNRevisionWishes& wishes, const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    Change change{
        context, "commitItems:withOptions:wishes:withContext:", {{"targets", targets}, {"context", context}}, wishes};
    auto& operation = change.operation();
    const auto function = operation.extension(&HSVNBundleExtensions::client_commit);
    change.check(function(HSVNChangedArray(operation, targets), HSVNDepthForSubversion(options.depth),
                          options.keepLocks, options.keepChangelists, options.includeExternals,
                          HSVNFilterArray(operation, options.changelists), change.properties(), Change::received,
                          &change, operation.ctx(), operation.pool()));
}

void HSVNImportItem(const std::string& path, const std::string& url, const HSVNItemImportOptions& options,
                    const HSVNRevisionWishes& wishes, const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    Change change{context,
                  "importItem:url:withOptions:wishes:withContext:",
                  {{"path", path}, {"url", url}, {"context", context}},
                  wishes};
    auto& operation = change.operation();
    const auto function = operation.extension(&HSVNBundleExtensions::client_import);
    change.check(function(operation.changed(path), operation.cString(url), HSVNDepthForSubversion(options.depth),
                          !options.matchIgnorePatterns, !options.automaticProperties, options.ignoreUnknownKinds,
                          change.properties(), Change::received, &change, operation.ctx(), operation.pool()));
}

void HSVNMakeFolders(const std::vector<std::string>& targets, bool makeParents, const HSVNRevisionWishes& wishes,
                     const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    Change change{
        context, "makeFolders:makeParents:wishes:withContext:", {{"targets", targets}, {"context", context}}, wishes};
    auto& operation = change.operation();
    const auto function = operation.extension(&HSVNBundleExtensions::client_mkdir);
    change.check(function(HSVNChangedArray(operation, targets), makeParents, change.properties(), Change::received,
                          &change, operation.ctx(), operation.pool()));
}

void HSVNDeleteItems(const std::vector<std::string>& targets, const HSVNItemDeleteOptions& options,
                     const HSVNRevisionWishes& wishes, const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    Change change{
        context, "deleteItems:withOptions:wishes:withContext:", {{"targets", targets}, {"context", context}}, wishes};
    auto& operation = change.operation();
    const auto function = operation.extension(&HSVNBundleExtensions::client_delete);
    change.check(function(HSVNChangedArray(operation, targets), options.force, options.keepLocal, change.properties(),
                          Change::received, &change, operation.ctx(), operation.pool()));
}

void HSVNCopyItems(const std::vector<HSVNCopySource>& sources, const std::string& destination,
                   const HSVNItemCopyOptions& options, const HSVNRevisionWishes& wishes, const HSVNContextRef& context)
{
    std::vector<std::pair<std::string, HSVNRevisionSpecRef>> named;
    for (const auto& source : sources) {
        HSVNAssertParameter(source.revision != nullptr, "revision != nil");
        named.emplace_back(source.target, source.revision);
    }
    HSVNAssertParameter(!sources.empty(), "[sources count] > 0");
    HSVNAssertParameter(context != nullptr, "context != nil");
    Change change{context,
                  "copyItems:destination:withOptions:wishes:withContext:",
                  {{"sources", named}, {"destination", destination}, {"context", context}},
                  wishes};
    auto& operation = change.operation();
    const auto function = operation.extension(&HSVNBundleExtensions::client_copy);
    auto* const records = operation->apr_array_make(operation.pool(), static_cast<int>(sources.size()),
                                                    sizeof(HSVNBundleExtensions::CopySource));
    for (const auto& source : sources) {
        auto* const record = static_cast<HSVNBundleExtensions::CopySource*>(operation->apr_array_push(records));
        *record = {operation.changed(source.target), source.revision->operativeRevision()->SVNRevision(),
                   source.revision->pegRevision()->SVNRevision()};
    }
    change.check(function(records, operation.changed(destination), options.asChild, options.makeParents,
                          options.ignoreExternals, options.pinExternals, change.properties(), Change::received, &change,
                          operation.ctx(), operation.pool()));
}

void HSVNMoveItems(const std::vector<std::string>& sources, const std::string& destination,
                   const HSVNItemMoveOptions& options, const HSVNRevisionWishes& wishes, const HSVNContextRef& context)
{
    HSVNAssertParameter(!sources.empty(), "[sources count] > 0");
    HSVNAssertParameter(context != nullptr, "context != nil");
    Change change{context,
                  "moveItems:destination:withOptions:wishes:withContext:",
                  {{"sources", sources}, {"destination", destination}, {"context", context}},
                  wishes};
    auto& operation = change.operation();
    const auto function = operation.extension(&HSVNBundleExtensions::client_move);
    change.check(function(HSVNChangedArray(operation, sources), operation.changed(destination), options.asChild,
                          options.makeParents, options.allowMixedRevisions, change.properties(), Change::received,
                          &change, operation.ctx(), operation.pool()));
}
