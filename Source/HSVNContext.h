#pragma once

#include "HSVNBundle.h"
#include "HSVNExport.h"
#include "HSVNObject.h"
#include "HSVNVersion.h"

#include <atomic>
#include <cstdint>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

struct apr_pool_t;
struct svn_client_ctx_t;
class HSVNNotification;
class HSVNPool;
class HSVNTransferObserver;

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
/// threads freely. An operation, an option's reading or change or a change of the bundle on one thread while a call of
/// another thread is under way throws `HSVNGenericException`, which names both threads, at once; calls from the
/// callbacks of a call, on its own thread, pass. `bundle`, `bundleVersion` and `setBundleVersion` are guarded by the
/// context's own lock and may be called on any thread at any time.
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
    /// Changes the line: tears the old pool and client context down and makes new ones; nil leaves none. When the new
    /// ones cannot be made, the context is left without a bundle.
    ///
    /// @throws HSVNException when the new line cannot be set up
    /// @throws HSVNGenericException while a call on the context is under way, also from that call's callbacks
    virtual void setBundle(const HSVNBundleRef& bundle);
    /// The version under which the loader keeps the bundle; nil without a bundle.
    std::optional<HSVNVersion> bundleVersion() const;
    /// Changes the version alone, not the bundle; nil is none.
    void setBundleVersion(const std::optional<HSVNVersion>& version);

    /// The context's top-level pool, owned by the context; null without a bundle.
    apr_pool_t* pool() const;
    /// The Subversion client context, which lives in the pool; null without a bundle.
    svn_client_ctx_t* ctx() const { return _ctx; }

    /// Closes the databases of all working copies that the context keeps open, so that their drive can be unmounted or
    /// their folder goes for good when it is removed. Operations open them again when they need them.
    ///
    /// A context keeps the database of every working copy open that it has worked on, which makes the next call on it
    /// several times as fast. Other programs need not be waited for: when one of them removes, replaces or restores a
    /// working copy, or checks one out below another, the next operation sees that by itself. With a line before 1.7,
    /// which keeps nothing open, this does nothing.
    ///
    /// @throws HSVNGenericException while a call on the context is under way, also from that call's callbacks
    void closeWorkingCopies();

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

    /// What `setBundle` does, once no call is under way.
    void changeBundle(const HSVNBundleRef& bundle);
    /// Makes pool and client context with the bundle; `setBundle` calls it.
    void setupContext();
    /// Destroys pool and client context with the bundle that made them.
    void cleanupContext();
    /// Makes the context ready for an operation that no other call lies around.
    virtual void beginOperation();
    /// Guards bundle and bundle version.
    std::recursive_mutex& lock() const { return _lock; }

  private:
    friend class HSVNContextUse;
    friend class HSVNOperation;
    friend class HSVNTransferObserver;
    friend struct HSVNTransferCallback;

    mutable std::atomic<std::thread::id> _user; // the thread whose call is under way; none when there is no call
    mutable std::recursive_mutex _lock;
    HSVNBundleRef _bundle;
    std::optional<HSVNVersion> _bundleVersion;
    std::unique_ptr<HSVNPool> _pool; // owns what _ctx points to
    svn_client_ctx_t* _ctx = nullptr;
    const HSVNTransferObserver* _transferObserver = nullptr;
    std::int64_t _countedBytes = 0;   // as Subversion last counted them
    std::int64_t _operationBytes = 0; // of these, the outermost operation's
    std::exception_ptr _keptException;
};

using HSVNContextRef = std::shared_ptr<HSVNContext>;
