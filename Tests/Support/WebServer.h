#pragma once

#include "LoopbackServer.h"
#include "TestRepository.h"

#include <memory>
#include <string>

/// A real httpd with mod_dav_svn over one repository, on loopback ports: with and without TLS, and with TLS for those
/// who show a certificate. Nobody reads or writes without a password.
///
/// The users, the realm and the rules of paths are those of `SvnServer`. The server runs as another user when the tests
/// run as root, so the repository is filled through it. Ended with the object.
class WebServer
{
  public:
    enum class Access
    {
        plain,
        encrypted,
        certified
    };

    WebServer();

    /// The repository's root, such as "http://127.0.0.1:40123/repository".
    std::string url(Access access) const;
    /// A file beside the repository, which the server cannot reach unless it is told to.
    std::string beside(const std::string& name) const { return _folder / name; }
    /// The repository's own folder.
    std::string repository() const { return beside("served/repository"); }
    /// The authority that signed the server's certificate.
    std::string authority() const { return beside("authority.pem"); }
    /// A certificate that the server knows as a client's, as PKCS #12; the passphrase is "certsecret", or none.
    std::string clientCertificate(bool hasPassphrase) const
    {
        return beside(hasPassphrase ? "secret.p12" : "open.p12");
    }

  private:
    std::vector<std::string> command(std::uint16_t port);
    void writeCertificates() const;

    TemporaryFolder _folder;
    std::uint16_t _encryptedPort = 0;
    std::uint16_t _certifiedPort = 0;
    std::unique_ptr<LoopbackServer> _server;
};
