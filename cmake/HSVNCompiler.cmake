# Compiler settings shared by every target of the project.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
endif()

find_program(HSVN_CCACHE_PROGRAM ccache)
if(HSVN_CCACHE AND HSVN_CCACHE_PROGRAM)
  # Without this leave ccache passes what uses a precompiled header on to the compiler, every time.
  set(CMAKE_C_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${HSVN_CCACHE_PROGRAM})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_C_COMPILER_LAUNCHER})
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fpch-preprocess>) # lets ccache see the header behind the precompiled one
  endif()
endif()

# The presets make errors of them; a build of another kind is not stopped by what a newer compiler warns of.
add_library(hsvn_warnings INTERFACE)
target_compile_options(hsvn_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)

if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # Sources that are compiled together look like headers to it, of which alone it is to warn.
  target_compile_options(hsvn_warnings INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-subobject-linkage>)
endif()

if(HSVN_SANITIZE)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # Instrumented code confuses this analysis of g++ 12, which then warns of the standard library's own headers.
    target_compile_options(hsvn_warnings INTERFACE -Wno-maybe-uninitialized)
  endif()
  add_compile_options(-fsanitize=${HSVN_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${HSVN_SANITIZE})
endif()

# hsvn_export_only(target map) lets nothing leave a shared library or module but what a linker's version script names. Not
# under sanitizers, which tell classes by where their names are: a template's classes of two libraries must be one there.
function(hsvn_export_only target map)
  if(HSVN_SANITIZE)
    return()
  endif()
  target_link_options(${target} PRIVATE -Wl,--version-script=${map})
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${map})
endfunction()
