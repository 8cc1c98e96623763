#include "LineEnds.h"

#include <cstring>

#include <svn_props.h>
#include <svn_subst.h>

namespace HSVNAdapter {

svn_error_t* endLines(const svn_string_t** value, const char* propertyName, apr_pool_t* pool)
{
    // A value with a zero byte is no text: it stays whole.
    if (*value == nullptr || !svn_prop_needs_translation(propertyName) || std::strlen((*value)->data) != (*value)->len)
    {
        return SVN_NO_ERROR;
    }
    const char* text = nullptr;
    SVN_ERR(svn_subst_translate_cstring2((*value)->data, &text, "\n", FALSE, nullptr, FALSE, pool));
    *value = svn_string_create(text, pool);
    return SVN_NO_ERROR;
}

} // namespace HSVNAdapter
