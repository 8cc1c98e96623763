#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNObject.h"
#include "HSVNRepositoryOptions.h"

#include <memory>
#include <string>

struct svn_repos_t;

class HSVNPool;

/// A repository in a local folder: created, opened and deleted with the loader's default bundle, without a client
/// context. Used by one thread at a time; it may be released on any.
class HSVN_EXPORT HSVNRepository : public HSVNObject
{
  public:
    /// Neither opens nor creates anything. Needs a current bundle, which the object's pool is made by.
    ///
    /// @param thePath  the repository's folder; not nil ("thePath != nil")
    explicit HSVNRepository(HSVNLocalPathRef thePath);
    /// Closes the repository through the bundle that opened it, whatever bundle is current.
    ~HSVNRepository() override;
    HSVNRepository(const HSVNRepository&) = delete;
    HSVNRepository& operator=(const HSVNRepository&) = delete;

    /// Opens a repository.
    ///
    /// @param path  its folder; not nil ("path != nil")
    /// @throws HSVNNotRepositoryException when there is none; HSVNException for every Subversion error
    /// Stands for svn_repos_open.
    static HSVNRepositoryRef repositoryAtPath(const HSVNLocalPathRef& path);

    /// Creates a repository, in plain files for HSVNFileSystemOptions, in Berkeley DB for HSVNBerkeleyDBOptions.
    ///
    /// With the options' initial compatibility the repository has the format of 1.4, which has no merge tracking: a
    /// merge then records no `svn:mergeinfo`, and a merge without a range of revisions is refused. For the bundle's
    /// newest format set a `compatibility` of 0, or call `HSVNCreateRepository`, whose default that is.
    ///
    /// @param path     a folder that is missing or empty, whose parent exists; not nil ("path != nil")
    /// @param options  not nil ("options != nil")
    /// @return the new repository, open
    /// @throws HSVNInvalidArgumentException "Unrecognized repository options type" for other options;
    ///         HSVNException for every Subversion error
    /// Stands for svn_repos_create.
    static HSVNRepositoryRef createRepositoryAtPath(const HSVNLocalPathRef& path,
                                                    const HSVNRepositoryOptionsRef& options);
    /// Creates a repository of type "fsfs"; arguments not nil ("localPath != nil", "options != nil").
    static HSVNRepositoryRef createFileSystemRepositoryAtPath(const HSVNLocalPathRef& localPath,
                                                              const HSVNFileSystemOptionsRef& options);
    /// Creates a repository of type "bdb"; arguments not nil ("localPath != nil", "options != nil").
    ///
    /// @throws HSVNBerkeleyDBException when the bundle's Subversion is built without Berkeley DB
    static HSVNRepositoryRef createBerkeleyDBRepositoryAtPath(const HSVNLocalPathRef& localPath,
                                                              const HSVNBerkeleyDBOptionsRef& options);
    /// Creates a repository of a file system type.
    ///
    /// @param type  Subversion's name of the type; not null ("type != nil"); the others not nil ("path != nil",
    ///              "options != nil")
    /// @throws HSVNUnsupportedFeatureException for a type that the bundle's Subversion does not know
    static HSVNRepositoryRef createRepositoryOfType(const char* type, const HSVNLocalPathRef& path,
                                                    const HSVNRepositoryOptionsRef& options);

    /// Removes the repository from the disk with everything in it.
    ///
    /// @throws HSVNNotRepositoryException when there is none; HSVNException for every Subversion error
    /// Stands for svn_repos_delete.
    void deleteRepository();

    /// The repository's folder.
    const HSVNLocalPathRef& path() const { return _path; }

    std::string className() const override { return "HSVNRepository"; }

  private:
    HSVNLocalPathRef _path;
    std::unique_ptr<HSVNPool> _pool; // a top-level pool
    svn_repos_t* _repos = nullptr;   // lives in the pool
};
