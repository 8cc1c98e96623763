#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"

#include <cstdint>
#include <memory>
#include <string>

struct apr_hash_t;

/// Choices for creating a repository.
class HSVN_EXPORT HSVNRepositoryOptions : public HSVNOptionsOf<HSVNRepositoryOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNRepositoryOptions";

    /// How many lines back from the newest the format stays readable: 1 for those before 1.6, 2 before 1.5, 3 before
    /// 1.4; any other value asks for the newest format. Initially `2`: the format of 1.4, without merge tracking.
    std::int32_t compatibility() const { return _compatibility; }
    void setCompatibility(std::int32_t compatibility) { _compatibility = compatibility; }

    /// Writes the choices into the configuration hash of the new file system, through the current bundle.
    ///
    /// @param configuration  an APR hash of C strings; keys and values written are static texts
    /// Stands for apr_hash_set.
    virtual void addHSVNOptionsTo(apr_hash_t* configuration) const;

    std::string description() const override;

  private:
    std::int32_t _compatibility = 2;
};

using HSVNRepositoryOptionsRef = std::shared_ptr<const HSVNRepositoryOptions>;

/// Choices for creating a repository that keeps its data in plain files ("fsfs").
class HSVN_EXPORT HSVNFileSystemOptions : public HSVNOptionsOf<HSVNFileSystemOptions, HSVNRepositoryOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNFileSystemOptions";
};

using HSVNFileSystemOptionsRef = std::shared_ptr<const HSVNFileSystemOptions>;

/// Choices for creating a repository that keeps its data in Berkeley DB ("bdb").
class HSVN_EXPORT HSVNBerkeleyDBOptions : public HSVNOptionsOf<HSVNBerkeleyDBOptions, HSVNRepositoryOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNBerkeleyDBOptions";

    /// Write every transaction through to disk. Initially `true`.
    bool syncAtTransactionCommit() const { return _syncAtTransactionCommit; }
    void setSyncAtTransactionCommit(bool sync) { _syncAtTransactionCommit = sync; }
    /// Remove log files that are no longer needed. Initially `true`.
    bool automaticLogFileRemoval() const { return _automaticLogFileRemoval; }
    void setAutomaticLogFileRemoval(bool removal) { _automaticLogFileRemoval = removal; }

    void addHSVNOptionsTo(apr_hash_t* configuration) const override;
    std::string description() const override;

  private:
    bool _syncAtTransactionCommit = true;
    bool _automaticLogFileRemoval = true;
};

using HSVNBerkeleyDBOptionsRef = std::shared_ptr<const HSVNBerkeleyDBOptions>;
