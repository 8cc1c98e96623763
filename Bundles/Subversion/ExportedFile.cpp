#include "ExportedFile.h"

#include <cstring>
#include <string_view>

#include <svn_md5.h>
#include <svn_props.h>
#include <svn_ra.h>
#include <svn_subst.h>

namespace HSVNAdapter {

ExportedFile* ExportedFile::make(ExportedTree& tree, const char* path, const char* relativePath, apr_pool_t* pool)
{
    return new (apr_palloc(pool, sizeof(ExportedFile))) ExportedFile{tree, path, relativePath, pool};
}

svn_error_t* ExportedFile::setProperty(const char* name, const svn_string_t* value)
{
    if (value == nullptr) {
        return SVN_NO_ERROR;
    }
    const std::string_view property = name;
    const char* const text = apr_pstrdup(_pool, value->data);
    if (property == SVN_PROP_EOL_STYLE) {
        _eolStyle = text;
    } else if (property == SVN_PROP_KEYWORDS && !_tree.choices.ignoreKeywords) {
        _keywords = text;
    } else if (property == SVN_PROP_EXECUTABLE) {
        _isExecutable = true;
    } else if (property == SVN_PROP_SPECIAL) {
        _isSpecial = true;
    } else if (property == SVN_PROP_ENTRY_COMMITTED_REV) {
        _revision = text;
    } else if (property == SVN_PROP_ENTRY_LAST_AUTHOR) {
        _author = text;
    } else if (property == SVN_PROP_ENTRY_COMMITTED_DATE) {
        return svn_time_from_cstring(&_date, text, _pool);
    }
    return SVN_NO_ERROR;
}

apr_status_t ExportedFile::removeTemporary(void* file)
{
    const auto& self = *static_cast<ExportedFile*>(file);
    svn_error_clear(svn_io_remove_file(self._temporary, self._pool));
    return APR_SUCCESS;
}

svn_error_t* ExportedFile::openTemporary()
{
    if (_temporary != nullptr) {
        return svn_error_createf(SVN_ERR_INCOMPLETE_DATA, nullptr, "The server sends the text of '%s' twice", _path);
    }
    const char* const folder = svn_path_dirname(_path, _pool);
#if HSVN_LINE_MINOR >= 6
    SVN_ERR(svn_stream_open_unique(&_stream, &_temporary, folder, svn_io_file_del_none, _pool, _pool));
#else
    apr_file_t* file = nullptr;
    SVN_ERR(svn_io_open_unique_file2(&file, &_temporary, pathBelow(folder, "svn", _pool), ".tmp", svn_io_file_del_none,
                                     _pool));
    _stream = svn_stream_from_aprfile2(file, FALSE, _pool);
#endif
    apr_pool_pre_cleanup_register(_pool, this, removeTemporary);
    return SVN_NO_ERROR;
}

svn_error_t* ExportedFile::openStream(svn_stream_t** stream)
{
    SVN_ERR(openTemporary());
    *stream = _stream;
    _isComplete = true;
    return SVN_NO_ERROR;
}

svn_error_t* ExportedFile::takeWindow(svn_txdelta_window_t* window, void* baton)
{
    auto& self = *static_cast<ExportedFile*>(baton);
    SVN_ERR(self._apply(window, self._applyBaton));
    self._isComplete = window == nullptr;
    return SVN_NO_ERROR;
}

svn_error_t* ExportedFile::openDelta(svn_txdelta_window_handler_t* handler, void** baton, apr_pool_t* pool)
{
    SVN_ERR(openTemporary());
    svn_txdelta_apply(svn_stream_empty(pool), _stream, _digest.data(), nullptr, pool, &_apply, &_applyBaton);
    *handler = takeWindow;
    *baton = this;
    return SVN_NO_ERROR;
}

svn_error_t* ExportedFile::checkText(const char* checksum, apr_pool_t* pool) const
{
    if (!_isComplete) {
        return svn_error_createf(SVN_ERR_INCOMPLETE_DATA, nullptr, "The server sends the text of '%s' in part only",
                                 _path);
    }
    const char* const actual = svn_md5_digest_to_cstring(_digest.data(), pool);
    if (checksum != nullptr && actual != nullptr && std::strcmp(checksum, actual) != 0) {
        return svn_error_createf(SVN_ERR_CHECKSUM_MISMATCH, nullptr,
                                 "Checksum mismatch for '%s':\n   expected:  %s\n     actual:  %s\n", _path, checksum,
                                 actual);
    }
    return SVN_NO_ERROR;
}

svn_error_t* ExportedFile::endOfLine(const char** mark) const
{
    svn_subst_eol_style_t style = svn_subst_eol_style_none;
    svn_subst_eol_style_from_value(&style, mark, _eolStyle);
    const char* const wanted = _tree.choices.nativeEOL;
    if (style == svn_subst_eol_style_native && wanted != nullptr) {
        svn_subst_eol_style_from_value(&style, mark, wanted);
        if (style != svn_subst_eol_style_fixed) {
            return svn_error_createf(SVN_ERR_IO_UNKNOWN_EOL, nullptr, "'%s' is not a valid EOL value", wanted);
        }
    }
    return SVN_NO_ERROR;
}

svn_error_t* ExportedFile::keywords(apr_hash_t** values, apr_pool_t* pool) const
{
    if (_keywords == nullptr) {
        return SVN_NO_ERROR;
    }
    const char* const url =
        *_relativePath == '\0' ? _tree.url : svn_path_url_add_component(_tree.url, _relativePath, pool);
#if HSVN_LINE_MINOR >= 8
    return svn_subst_build_keywords3(values, _keywords, _revision, url, _tree.rootURL, _date, _author, pool);
#else
    return svn_subst_build_keywords2(values, _keywords, _revision, url, _date, _author, pool);
#endif
}

svn_error_t* ExportedFile::translate(apr_pool_t* pool) const
{
    const char* mark = nullptr;
    if (_eolStyle != nullptr) {
        SVN_ERR(endOfLine(&mark));
    }
    apr_hash_t* values = nullptr;
    SVN_ERR(keywords(&values, pool));
    SVN_ERR(
        svn_subst_copy_and_translate3(_temporary, _path, mark, _eolStyle != nullptr, values, TRUE, _isSpecial, pool));
    return svn_io_remove_file(_temporary, pool);
}

svn_error_t* ExportedFile::place(apr_pool_t* pool)
{
    if (_eolStyle != nullptr || _keywords != nullptr || _isSpecial) {
        SVN_ERR(translate(pool));
    } else {
        SVN_ERR(svn_io_file_rename(_temporary, _path, pool));
    }
    apr_pool_cleanup_kill(_pool, this, removeTemporary);
    if (_isSpecial) {
        const char* absolute = nullptr;
        SVN_ERR(svn_path_get_absolute(&absolute, _path, pool));
        _tree.links->insert(absolute);
    }
    return SVN_NO_ERROR;
}

svn_error_t* ExportedFile::install(const char* checksum, apr_pool_t* pool)
{
    if (_temporary == nullptr) {
        return SVN_NO_ERROR;
    }
    SVN_ERR(checkText(checksum, pool));
    SVN_ERR(place(pool));
    if (_isExecutable) {
        SVN_ERR(svn_io_set_file_executable(_path, TRUE, FALSE, pool));
    }
    if (_date != 0 && !_isSpecial) {
        SVN_ERR(svn_io_set_file_affected_time(_date, _path, pool));
    }
    notifyExported(_tree.ctx, _path, svn_node_file, pool);
    return SVN_NO_ERROR;
}

namespace {

/// A file on top of a folder goes into it; what is there already is refused.
svn_error_t* settleTarget(ExportedTree* tree, const char* name, apr_pool_t* pool)
{
    svn_node_kind_t kind = svn_node_none;
    SVN_ERR(svn_io_check_resolved_path(*tree->target == '\0' ? "." : tree->target, &kind, pool));
    if (kind == svn_node_dir) {
        tree->target = pathBelow(tree->target, name, pool);
    }
    SVN_ERR(svn_io_check_path(tree->target, &kind, pool));
    if ((kind == svn_node_file || kind == svn_node_unknown) && !tree->choices.overwrite) {
        return svn_error_createf(SVN_ERR_ILLEGAL_TARGET, nullptr,
                                 "Destination file '%s' exists, and will not be overwritten unless forced",
                                 svn_path_local_style(tree->target, pool));
    }
    if (kind == svn_node_dir) {
        return svn_error_createf(SVN_ERR_ILLEGAL_TARGET, nullptr,
                                 "Destination '%s' exists. Cannot overwrite directory with non-directory",
                                 svn_path_local_style(tree->target, pool));
    }
    return SVN_NO_ERROR;
}

} // namespace

svn_error_t* exportFile(svn_ra_session_t* session, const char* name, svn_revnum_t revision, ExportedTree* tree,
                        apr_pool_t* pool)
{
    SVN_ERR(settleTarget(tree, name, pool));
    ExportedFile* const file = ExportedFile::make(*tree, tree->target, "", pool);
    apr_hash_t* properties = nullptr;
    SVN_ERR(svn_ra_get_file(session, "", revision, nullptr, nullptr, &properties, pool));
    for (apr_hash_index_t* index = apr_hash_first(pool, properties); index != nullptr; index = apr_hash_next(index)) {
        const void* property = nullptr;
        void* value = nullptr;
        apr_hash_this(index, &property, nullptr, &value);
        SVN_ERR(file->setProperty(static_cast<const char*>(property), static_cast<svn_string_t*>(value)));
    }
    svn_stream_t* stream = nullptr;
    SVN_ERR(file->openStream(&stream));
    SVN_ERR(svn_ra_get_file(session, "", revision, stream, nullptr, nullptr, pool));
    SVN_ERR(svn_stream_close(stream));
    return file->install(nullptr, pool);
}

} // namespace HSVNAdapter
