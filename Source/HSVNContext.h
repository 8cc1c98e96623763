#pragma once

#include "HSVNBundle.h"
#include "HSVNExport.h"
#include "HSVNObject.h"
#include "HSVNVersion.h"

#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

struct apr_pool_t;
struct svn_client_ctx_t;
class HSVNNotification;
class HSVNPool;

/// Names in Subversion's run-time configuration.
inline constexpr const char* HSVNConfigCategoryConfig = "config";
inline constexpr const char* HSVNConfigCategoryServers = "servers";
inline constexpr const char* HSVNConfigSectionGroups = "groups";
inline constexpr const char* HSVNConfigSectionGlobal = "global";
inline constexpr const char* HSVNConfigSectionAuth = "auth";
inline constexpr const char* HSVNConfigSectionGeneral = "general";
inline constexpr const char* HSVNConfigSectionHelpers = "helpers";
inline constexpr const char* HSVNConfigSectionMiscellany = "miscellany";
inline constexpr const char* HSVNConfigSectionTunnels = "tunnels";
inline constexpr const char* HSVNConfigSectionAutoProps = "auto-props";
inline constexpr const char* HSVNConfigOptionGlobalIgnores = "global-ignores";

/// Binds one version bundle to one Subversion client context and the pool that owns it.
///
/// Every operation is handed a context. A context serves one thread at a time; different contexts run on different
/// threads freely. `bundle`, `bundleVersion` and their setters are guarded by the context's own lock.
class HSVN_EXPORT HSVNContext : public HSVNObject
{
  public:
    /// A context of the loader's default bundle (the newest loaded).
    HSVNContext();
    /// A context of the given bundle; nil means the loader's default bundle, or none when no bundle is loaded.
    ///
    /// @throws HSVNException when the Subversion client context cannot be made (svn_client_create_context)
    explicit HSVNContext(const HSVNBundleRef& bundle);
    ~HSVNContext() override;
    HSVNContext(const HSVNContext&) = delete;
    HSVNContext& operator=(const HSVNContext&) = delete;

    std::string className() const override { return "HSVNContext"; }
    /// "%@ (%@)" of the default object description and the bundle version ("(null)" without a bundle).
    std::string description() const override;

    /// The Subversion line in use; nil when there is none.
    HSVNBundleRef bundle() const;
    /// Changes the line: tears the old pool and client context down and makes new ones; nil leaves none.
    virtual void setBundle(const HSVNBundleRef& bundle);
    /// The version under which the loader keeps the bundle; nil without a bundle.
    std::optional<HSVNVersion> bundleVersion() const;
    /// Changes the version alone, not the bundle; nil is none.
    void setBundleVersion(const std::optional<HSVNVersion>& version);

    /// The context's top-level pool, owned by the context; null without a bundle.
    apr_pool_t* pool() const;
    /// The Subversion client context, which lives in the pool; null without a bundle.
    svn_client_ctx_t* ctx() const { return _ctx; }

    /// One configuration option, UTF-8; the default when the category is missing or the option is not set.
    ///
    /// Stands for svn_config_get.
    std::optional<std::string> optionForName(const std::string& name, const std::string& category,
                                             const std::string& section,
                                             const std::optional<std::string>& defaultValue) const;
    /// Changes an option of this context in memory; configuration files are never written.
    ///
    /// @throws HSVNException "Couldn't find configuration category '%@'"
    /// Stands for svn_config_set.
    void setOption(const std::string& value, const std::string& name, const std::string& category,
                   const std::string& section);
    /// All options of a section by name; empty when the category is missing.
    ///
    /// Stands for svn_config_enumerate.
    std::map<std::string, std::string> optionsForCategory(const std::string& category,
                                                          const std::string& section) const;

    /// The global ignore patterns as one text, Subversion's default list when the configuration has none.
    std::optional<std::string> globalIgnoreString() const;
    /// That text split into patterns at line ends and tabs only: blanks do not separate here.
    std::vector<std::string> globalIgnoreList() const;

    /// Hands a notification on; a plain context drops it.
    ///
    /// @throws an assertion "Invalid parameter not satisfying: notification != nil"
    virtual void notify(const std::shared_ptr<const HSVNNotification>& notification);

    /// Keeps an exception that a callback must not throw through Subversion; the first one kept stays.
    void keepException(std::exception_ptr exception) noexcept;
    /// Takes the kept exception away; null when there is none.
    std::exception_ptr takeKeptException() noexcept;
    /// Whether an exception is kept, so that the running operation is to be stopped.
    bool hasKeptException() const noexcept { return _keptException != nullptr; }

  protected:
    /// Chooses the constructor of that sense.
    struct WithoutBundle
    {
    };
    /// A context without a bundle, for subclasses whose own `setBundle` does more.
    explicit HSVNContext(WithoutBundle);

    /// Makes pool and client context with the bundle; `setBundle` calls it.
    void setupContext();
    /// Destroys pool and client context with the bundle that made them.
    void cleanupContext();
    /// Guards bundle and bundle version.
    std::recursive_mutex& lock() const { return _lock; }

  private:
    mutable std::recursive_mutex _lock;
    HSVNBundleRef _bundle;
    std::optional<HSVNVersion> _bundleVersion;
    std::unique_ptr<HSVNPool> _pool; // owns what _ctx points to
    svn_client_ctx_t* _ctx = nullptr;
    std::exception_ptr _keptException;
};

using HSVNContextRef = std::shared_ptr<HSVNContext>;
