#pragma once

// Subversion's and APR's headers in one place, for their record types. The library is compiled against the newest line,
// a bundle against its own; what an older line lacks is declared here, so that the entry-point table reads the same.

#include <apr_file_io.h>
#include <apr_hash.h>
#include <apr_pools.h>
#include <apr_strings.h>
#include <apr_tables.h>
#include <apr_time.h>
#include <svn_auth.h>
#include <svn_client.h>
#include <svn_config.h>
#include <svn_diff.h>
#include <svn_error.h>
#include <svn_error_codes.h>
#include <svn_io.h>
#include <svn_opt.h>
#include <svn_path.h>
#include <svn_pools.h>
#include <svn_repos.h>
#include <svn_string.h>
#include <svn_time.h>
#include <svn_types.h>
#include <svn_version.h>
#include <svn_wc.h>

#if SVN_VER_MAJOR == 1 && SVN_VER_MINOR < 5
/// Depth of an operation or a working-copy folder; Subversion has it from 1.5 on.
enum svn_depth_t : int
{
    svn_depth_unknown = -2,
    svn_depth_exclude = -1,
    svn_depth_empty = 0,
    svn_depth_files = 1,
    svn_depth_immediates = 2,
    svn_depth_infinity = 3
};

/// One parsed externals definition; Subversion has it from 1.5 on.
struct svn_wc_external_item2_t
{
    const char* target_dir;
    const char* url;
    svn_opt_revision_t revision;
    svn_opt_revision_t peg_revision;
};
#endif
