#include "WebServer.h"

#include "SvnServer.h"

#include <unistd.h>

namespace {

/// Who the server is when root starts it.
constexpr const char* serversUser = "www-data";

std::string modules()
{
    std::string lines;
    for (const std::string name : {"mpm_event", "authn_core", "authn_file", "auth_basic", "authz_core", "authz_user",
                                   "dav", "dav_svn", "authz_svn", "ssl"})
    {
        lines += "LoadModule " + name + "_module /usr/lib/apache2/modules/mod_" + name + ".so\n";
    }
    return lines;
}

/// The passwords of `SvnServer`, as the server wants them.
std::string passwords()
{
    std::string lines;
    for (const std::string name : {"harry", "sally"}) {
        lines += name + ':' + mustRun({"openssl", "passwd", "-apr1", name + "ssecret"});
    }
    return lines;
}

} // namespace

WebServer::WebServer()
{
    writeCertificates();
    writeFile(beside("passwords"), passwords());
    writeFile(beside("rules"), SvnServer::pathRules());
    std::filesystem::create_directory(beside("served"));
    mustRun({"svnadmin", "create", beside("served/repository")});
    if (geteuid() == 0) {
        mustRun({"chown", "-R", std::string{serversUser} + ':', beside("served")});
        mustRun({"chmod", "a+rx", beside("")});
    }
    _server = std::make_unique<LoopbackServer>([&](std::uint16_t port) { return command(port); });
}

std::string WebServer::url(Access access) const
{
    const std::uint16_t port = access == Access::plain       ? _server->port()
                               : access == Access::encrypted ? _encryptedPort
                                                             : _certifiedPort;
    return (access == Access::plain ? "http" : "https") + ("://127.0.0.1:" + std::to_string(port)) + "/repository";
}

std::vector<std::string> WebServer::command(std::uint16_t port)
{
    _encryptedPort = freeLoopbackPort();
    do {
        _certifiedPort = freeLoopbackPort();
    } while (_certifiedPort == _encryptedPort);
    const auto encrypted = [&](std::uint16_t encryptedPort, const std::string& clients) {
        const std::string address = "127.0.0.1:" + std::to_string(encryptedPort);
        return "Listen " + address + "\n<VirtualHost " + address + ">\nSSLEngine on\nSSLCertificateFile " +
               beside("server.pem") + "\nSSLCertificateKeyFile " + beside("server.key") + '\n' + clients +
               "</VirtualHost>\n";
    };
    std::string text = "ServerRoot " + beside("served") + "\nDefaultRuntimeDir " + beside("served") + "\nPidFile " +
                       beside("served/process") + "\nErrorLog " + beside("served/log") +
                       "\nServerName 127.0.0.1\nStartServers 1\nListen 127.0.0.1:" + std::to_string(port) + '\n';
    text += modules();
    if (geteuid() == 0) {
        text += std::string{"User "} + serversUser + "\nGroup " + serversUser + '\n';
    }
    text += "<Location /repository>\nDAV svn\nSVNPath " + beside("served/repository") +
            "\nAuthType Basic\nAuthName \"" + SvnServer::realm() + "\"\nAuthUserFile " + beside("passwords") +
            "\nAuthzSVNAccessFile " + beside("rules") + "\nRequire valid-user\n</Location>\n";
    text += encrypted(_encryptedPort, "");
    text += encrypted(_certifiedPort, "SSLVerifyClient require\nSSLCACertificateFile " + authority() + '\n');
    writeFile(beside("configuration"), text);
    // Not in one process, which would become another user's and outlive tests that are killed.
    return {"/usr/sbin/apache2", "-DFOREGROUND", "-f", beside("configuration")};
}

void WebServer::writeCertificates() const
{
    const auto run = [](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "openssl");
        mustRun(arguments);
    };
    // Keys of elliptic curves are made at once.
    const std::vector<std::string> newKey{"-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes"};
    const auto request = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "req");
        arguments.insert(arguments.end(), newKey.begin(), newKey.end());
        run(arguments);
    };
    request({"-x509", "-days", "2", "-subj", "/CN=Test Authority", "-keyout", beside("authority.key"), "-out",
             authority()});
    writeFile(beside("names"), "subjectAltName=IP:127.0.0.1");
    for (const std::string name : {"server", "client"}) {
        request({"-subj", name == "server" ? "/CN=127.0.0.1" : "/CN=harry", "-keyout", beside(name + ".key"), "-out",
                 beside(name + ".request")});
        run({"x509", "-req", "-days", "2", "-in", beside(name + ".request"), "-CA", authority(), "-CAkey",
             beside("authority.key"), "-set_serial", name == "server" ? "1" : "2", "-extfile", beside("names"), "-out",
             beside(name + ".pem")});
    }
    for (const bool hasPassphrase : {false, true}) {
        run({"pkcs12", "-export", "-inkey", beside("client.key"), "-in", beside("client.pem"), "-passout",
             hasPassphrase ? "pass:certsecret" : "pass:", "-out", clientCertificate(hasPassphrase)});
    }
}
