#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include "Internal/Subversion.h"

#include <algorithm>
#include <span>
#include <svn_ra_svn.h>

// A server of svn:// lists the ways to log in. Any that is not a word is taken for the address of one.

struct svn_ra_svn__session_baton_t; // NOLINT(readability-identifier-naming)
struct svn_ra_svn__item_t;          // NOLINT(readability-identifier-naming)

/// A list of items as they came. Subversion's own, but in no header of the installed; so is an item.
struct svn_ra_svn__list_t // NOLINT(readability-identifier-naming)
{
    svn_ra_svn__item_t* items;
    int nelts;
};

struct svn_ra_svn__item_t // NOLINT(readability-identifier-naming)
{
    svn_ra_svn_item_kind_t kind;
    union
    {
        apr_uint64_t number;
        svn_string_t text;
        svn_ra_svn__list_t list;
    } u;
};

extern "C" svn_error_t* svn_ra_svn__do_cyrus_auth(svn_ra_svn__session_baton_t* session,
                                                  const svn_ra_svn__list_t* mechanisms, const char* realm,
                                                  apr_pool_t* pool);

HSVN_STAND_IN(svn_error_t*, svn_ra_svn__do_cyrus_auth)
(svn_ra_svn__session_baton_t* session, const svn_ra_svn__list_t* mechanisms, const char* realm, apr_pool_t* pool)
{
    const std::span items{mechanisms->items, static_cast<std::size_t>(std::max(mechanisms->nelts, 0))};
    const auto isWord = [](const svn_ra_svn__item_t& item) { return item.kind == SVN_RA_SVN_WORD; };
    if (!std::ranges::all_of(items, isWord)) {
        return svn_error_create(SVN_ERR_RA_SVN_MALFORMED_DATA, nullptr,
                                "The server's answer is malformed: it lists ways to log in that have no name");
    }
    return HSVN_BEHIND(svn_ra_svn__do_cyrus_auth)(session, mechanisms, realm, pool);
}

#endif
