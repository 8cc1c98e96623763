#pragma once

#include "SvnDaemon.h"
#include "TestRepository.h"

#include <string>

/// A real svnserve on a free loopback port over one repository: nobody reads or writes without a password.
///
/// Two users: "harry" with the password "harryssecret" and "sally" with "sallyssecret". Ended with the object.
class SvnServer
{
  public:
    SvnServer();

    const TestRepository& repository() const { return _repository; }
    /// The repository's root, such as "svn://127.0.0.1:40123".
    const std::string& url() const { return _daemon.url(); }
    std::string url(const std::string& item) const { return url() + '/' + item; }
    /// The realm that credentials are asked for, without the server's part.
    static const char* realm() { return "Test Realm"; }

  private:
    TestRepository _repository;
    SvnDaemon _daemon{_repository.path()};
};
