#pragma once

#include "SvnDaemon.h"
#include "TestRepository.h"

#include <string>

/// A real svnserve on a free loopback port over one repository: nobody reads or writes without a password.
///
/// Two users: "harry" with the password "harryssecret" and "sally" with "sallyssecret". Sally sees nothing of a folder
/// "secret" and changes nothing in a folder "readonly". Ended with the object.
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
    /// Who may do what where, as Subversion's servers read it.
    static const char* pathRules() { return "[/]\n* = rw\n[/secret]\nsally =\n[/readonly]\nsally = r\n"; }

  private:
    TestRepository _repository;
    SvnDaemon _daemon{_repository.path()};
};
