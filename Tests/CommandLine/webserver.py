"""A web server with Subversion behind it, for the command lines."""

import contextlib
import os
import pwd
import socket
import subprocess
import time

MODULES = "/usr/lib/apache2/modules"
RULES = "[/]\n* = rw\n"
# Who the server is when root starts it.
USER = "www-data"

CONFIGURATION = """\
ServerRoot {folder}
DefaultRuntimeDir {folder}
PidFile {folder}/process
ErrorLog {folder}/log
ServerName 127.0.0.1
Listen 127.0.0.1:{port}
{user}
{modules}
# A process for each connection: the repository is replaced between two programs.
StartServers 2
MaxConnectionsPerChild 1
KeepAliveTimeout 2
{tls}
RedirectMatch permanent ^/moved/(.*) http://127.0.0.1:{port}/repository/$1
RedirectMatch permanent ^/round http://127.0.0.1:{port}/round
<Location /repository>
    DAV svn
    SVNPath {repository}
    AuthType Basic
    AuthName "Web Realm"
    AuthUserFile {folder}/passwords
    AuthzSVNAccessFile {folder}/rules
    Require valid-user
</Location>
"""

TLS = """\
SSLEngine on
SSLCertificateFile {folder}/server.pem
SSLCertificateKeyFile {folder}/server.key
SSLVerifyClient require
SSLCACertificateFile {folder}/server.pem
"""


def hand_over(repository):
    """Makes a repository the server's own; the folders above it can be passed."""
    if os.geteuid() == 0:
        make_passable(repository)
        give(repository, USER)


def make_passable(path):
    """Lets every user through the folders above."""
    above = os.path.dirname(path)
    while above != "/":
        if os.stat(above).st_mode & 0o11 != 0o11:
            os.chmod(above, 0o755)
        above = os.path.dirname(above)


def give(path, user):
    """Makes a user the owner of a file, or of a folder and of all that is in it."""
    if isinstance(user, str):
        user = pwd.getpwnam(user).pw_uid
    inside = [os.path.join(base, name) for base, folders, names in os.walk(path) for name in folders + names]
    for each in [path, *inside]:
        os.lchown(each, user, user)


def wait_for(port):
    """Returns when somebody listens on the port, or after some seconds."""
    for _ in range(200):
        with socket.socket() as probe:
            if probe.connect_ex(("127.0.0.1", port)) == 0:
                return
        time.sleep(0.05)


def write_certificates(folder, passphrase):
    """A server's and a user's certificate in one: `server.pem`, and `client.p12` with the passphrase."""
    key, certificate = (os.path.join(folder, name) for name in ("server.key", "server.pem"))
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-subj", "/CN=127.0.0.1", "-days", "2",
                    "-addext", "subjectAltName=IP:127.0.0.1", "-keyout", key, "-out", certificate], check=True,
                   capture_output=True)
    subprocess.run(["openssl", "pkcs12", "-export", "-inkey", key, "-in", certificate, "-passout",
                    "pass:" + passphrase, "-out", os.path.join(folder, "client.p12")], check=True)


@contextlib.contextmanager
def running(folder, repository, port, password, with_certificates=False, rules=RULES):
    """A server of the repository at `/repository` until the end; its only user is harry.

    It keeps its files in the folder, which is there already, and so are its certificates.
    """
    crypted = subprocess.run(["openssl", "passwd", "-apr1", password], check=True, capture_output=True,
                             text=True).stdout
    modules = ["mpm_prefork", "alias", "authn_core", "authn_file", "auth_basic", "authz_core", "authz_user", "dav",
               "dav_svn", "authz_svn", *(["ssl"] if with_certificates else [])]
    texts = {"passwords": "harry:" + crypted,
             "rules": rules,
             "configuration": CONFIGURATION.format(
                 folder=folder, port=port, repository=repository,
                 user=f"User {USER}\nGroup {USER}" if os.geteuid() == 0 else "",
                 modules="\n".join(f"LoadModule {name}_module {MODULES}/mod_{name}.so" for name in modules),
                 tls=TLS.format(folder=folder) if with_certificates else "")}
    for name, text in texts.items():
        with open(os.path.join(folder, name), "w", encoding="ascii") as file:
            file.write(text)
    hand_over(repository)
    if os.geteuid() == 0:
        make_passable(os.path.join(folder, "rules"))
    # It ends its whole group of processes when it ends.
    server = subprocess.Popen(["/usr/sbin/apache2", "-DFOREGROUND", "-f", os.path.join(folder, "configuration")],
                              start_new_session=True)
    try:
        wait_for(port)
        yield
    finally:
        server.terminate()
        server.wait()
