#include "SvnServer.h"

SvnServer::SvnServer()
{
    const std::string configuration = _repository.path() + "/conf/";
    writeFile(configuration + "svnserve.conf", std::string{"[general]\nanon-access = none\nauth-access = write\n"
                                                           "password-db = passwd\nauthz-db = authz\nrealm = "} +
                                                   realm() + "\n");
    writeFile(configuration + "authz", pathRules());
    writeFile(configuration + "passwd", "[users]\nharry = harryssecret\nsally = sallyssecret\n");
}
