# hsvn_add_bundle(TARGET NAME ...) makes one version bundle from the adapter's sources.
#
#   FOLDER dir             where NAME.bundle is made
#   INCLUDE dir            folder of the Subversion line's headers (svn_client.h ...)
#   LIBRARIES lib...       what the line's client needs at link time
#   SOURCES file...        sources; the adapter's own when not given
#   VERSION text           CFBundleVersion; read from the line's svn_version.h when not given
#   FORMAT number          highest working-copy format served; derived from the version when not given

set(HSVN_ADAPTER_FOLDER ${CMAKE_CURRENT_SOURCE_DIR}/Bundles/Subversion)
# What the adapter needs of the installed Subversion. For each symbol the loader searches the libraries in this order, then
# those that they need in turn: first come the ones that have what is looked for most.
set(HSVN_SUBVERSION_LIBRARIES svn_subr-1 apr-1 sqlite3 svn_client-1 svn_wc-1 svn_ra-1 svn_repos-1 svn_fs-1 svn_delta-1
                              svn_diff-1)

# Libraries that Subversion needs only indirectly, and that the loader would search last for symbols which are mostly
# their own. Linked before the others they save a fifth of the time that it takes to load a bundle.
function(hsvn_libraries_to_search_first result)
  find_library(HSVN_SUBVERSION_CLIENT svn_client-1)
  execute_process(COMMAND ldd ${HSVN_SUBVERSION_CLIENT} OUTPUT_VARIABLE needed ERROR_QUIET)
  set(libraries "")
  foreach(name crypto db ssl)
    if(needed MATCHES "=> ([^ \n]*/lib${name}[-.0-9]*\\.so[.0-9]*)")
      list(APPEND libraries ${CMAKE_MATCH_1})
    endif()
  endforeach()
  if(libraries)
    set(${result} -Wl,--push-state,--no-as-needed ${libraries} -Wl,--pop-state PARENT_SCOPE)
  endif()
endfunction()

# Settings for targets that hold adapter sources compiled against the headers in `include_folder` and linked with the
# libraries that follow.
function(hsvn_adapter_settings target include_folder)
  # The headers of the bundle's own line come first: the adapter is compiled against them.
  target_include_directories(${target} SYSTEM BEFORE PRIVATE ${include_folder})
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/Source ${HSVN_ADAPTER_FOLDER})
  target_link_libraries(${target} PRIVATE hsvn_warnings PkgConfig::APR Threads::Threads)
  # The bundles exist to serve the older functions of every line.
  # A source that does not see HSVN_LINE_MINOR would take it for 0.
  target_compile_options(${target} PRIVATE -Wno-deprecated-declarations -Wundef)
  # From 1.7 on the adapter looks at what is read from working-copy databases, and from 1.9 on it reads them itself. It
  # must do so with the SQLite that the line uses: two copies of SQLite in one process take each other's file locks away.
  hsvn_subversion_version(${include_folder} version)
  set(is_static OFF)
  if("-Wl,--start-group" IN_LIST ARGN)
    set(is_static ON)
  endif()
  if(version VERSION_LESS 1.7)
    target_compile_definitions(${target} PRIVATE HSVN_GUARDS_ENTRIES)
  elseif("sqlite3" IN_LIST ARGN)
    target_compile_definitions(${target} PRIVATE HSVN_GUARDS_DATABASES)
    if(version VERSION_GREATER_EQUAL 1.9)
      target_compile_definitions(${target} PRIVATE HSVN_FAST_STATUS)
    endif()
    if(version VERSION_GREATER_EQUAL 1.14 AND NOT is_static)
      target_compile_definitions(${target} PRIVATE HSVN_STANDS_IN_FRONT)
    endif()
  endif()
  # Functions that stand in front of the libraries' own are found by the loader, or made so by the linker.
  if(is_static)
    target_compile_definitions(${target} PRIVATE HSVN_LINKED_STATICALLY)
  else()
    target_link_libraries(${target} PRIVATE ${CMAKE_DL_LIBS})
  endif()
endfunction()

# Adds a bundle of static libraries whose calls to what the adapter has functions of its own in front of lead there: to
# each function __wrap_X in the objects.
function(hsvn_add_static_module target objects)
  set(wrapped ${CMAKE_CURRENT_BINARY_DIR}/${target}.wrapped)
  add_custom_command(OUTPUT ${wrapped} DEPENDS ${objects} $<TARGET_OBJECTS:${objects}> VERBATIM
                     COMMAND sh -c "${CMAKE_NM} --defined-only $<JOIN:$<TARGET_OBJECTS:${objects}>, > | \
sed -n 's/.* T __wrap_/--wrap=/p' > ${wrapped}")
  add_custom_target(${target}_wrapped DEPENDS ${wrapped})
  add_library(${target} MODULE $<TARGET_OBJECTS:${objects}>)
  add_dependencies(${target} ${target}_wrapped)
  target_link_options(${target} PRIVATE -Wl,@${wrapped})
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX LINK_DEPENDS ${wrapped})
endfunction()

function(hsvn_subversion_version include_folder result)
  file(STRINGS ${include_folder}/svn_version.h lines REGEX "#define SVN_VER_(MAJOR|MINOR|PATCH) +[0-9]+")
  foreach(line IN LISTS lines)
    string(REGEX MATCH "SVN_VER_(MAJOR|MINOR|PATCH) +([0-9]+)" _ ${line})
    set(part_${CMAKE_MATCH_1} ${CMAKE_MATCH_2})
  endforeach()
  set(${result} ${part_MAJOR}.${part_MINOR}.${part_PATCH} PARENT_SCOPE)
endfunction()

function(hsvn_working_copy_format version result)
  string(REGEX MATCH "^1\\.([0-9]+)" _ ${version})
  set(minor ${CMAKE_MATCH_1})
  if(minor LESS 4)
    set(format 4)
  elseif(minor EQUAL 4)
    set(format 8)
  elseif(minor EQUAL 5)
    set(format 9)
  elseif(minor EQUAL 6)
    set(format 10)
  elseif(minor EQUAL 7)
    set(format 29)
  elseif(minor LESS 15)
    set(format 31)
  else()
    set(format 32)
  endif()
  set(${result} ${format} PARENT_SCOPE)
endfunction()

function(hsvn_add_bundle target name)
  cmake_parse_arguments(arg "" "FOLDER;INCLUDE;VERSION;FORMAT" "LIBRARIES;SOURCES" ${ARGN})
  if(NOT arg_SOURCES)
    file(GLOB arg_SOURCES CONFIGURE_DEPENDS ${HSVN_ADAPTER_FOLDER}/*.cpp)
  endif()
  if(NOT arg_VERSION)
    hsvn_subversion_version(${arg_INCLUDE} arg_VERSION)
  endif()
  if(NOT arg_FORMAT)
    hsvn_working_copy_format(${arg_VERSION} arg_FORMAT)
  endif()
  set(folder ${arg_FOLDER}/${name}.bundle)
  if("-Wl,--start-group" IN_LIST arg_LIBRARIES)
    add_library(${target}_objects OBJECT ${arg_SOURCES})
    hsvn_adapter_settings(${target}_objects ${arg_INCLUDE} ${arg_LIBRARIES})
    hsvn_add_static_module(${target} ${target}_objects)
  else()
    add_library(${target} MODULE ${arg_SOURCES})
  endif()
  hsvn_adapter_settings(${target} ${arg_INCLUDE} ${arg_LIBRARIES})
  target_link_libraries(${target} PRIVATE ${arg_LIBRARIES})
  # Static archives stay private to the bundle, and its code stays loaded: Subversion registers clean-ups
  # that run as late as process exit. What the bundle itself calls is bound when it is opened.
  target_link_options(${target} PRIVATE -Wl,--exclude-libs,ALL -Wl,-z,nodelete,-z,now)
  # Clang's sanitizers are in the program that loads the bundle.
  if(NOT (HSVN_SANITIZE AND CMAKE_CXX_COMPILER_ID MATCHES Clang))
    target_link_options(${target} PRIVATE -Wl,--no-undefined)
  endif()
  hsvn_export_only(${target} ${PROJECT_SOURCE_DIR}/cmake/HSVNBundle.map)
  set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME HSVNBundle SUFFIX ".so"
                                             LIBRARY_OUTPUT_DIRECTORY ${folder})
  if(HSVN_SANITIZE)
    set_property(TARGET ${target} PROPERTY LINK_OPTIONS -Wl,--exclude-libs,ALL -Wl,-z,nodelete,-z,now)
  endif()
  file(CONFIGURE OUTPUT ${folder}/Info.json @ONLY CONTENT
"{
  \"CFBundleVersion\": \"@arg_VERSION@\",
  \"HSVNWorkingCopyFormatVersion\": @arg_FORMAT@,
  \"CFBundleExecutable\": \"HSVNBundle.so\"
}
")
endfunction()
