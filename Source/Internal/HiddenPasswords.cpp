#include "Internal/HiddenPasswords.h"

std::string HSVNWithHiddenPasswords(std::string_view text)
{
    constexpr std::string_view beforeAuthority = "://";
    std::string result;
    for (std::size_t found = text.find(beforeAuthority); found != std::string_view::npos;
         found = text.find(beforeAuthority))
    {
        result += text.substr(0, found + beforeAuthority.size());
        text.remove_prefix(found + beforeAuthority.size());
        const std::string_view authority = text.substr(0, text.find_first_of("/?#\\\"<> \t\r\n"));
        const std::size_t host = authority.rfind('@');
        const std::size_t password = authority.substr(0, host == std::string_view::npos ? 0 : host).find(':');
        if (password != std::string_view::npos) {
            result.append(text.substr(0, password + 1)).append("***");
            text.remove_prefix(host);
        }
    }
    return result += text;
}
