# Installation: the package tree, the headers, find_package(HSVN) and pkg-config.

include(CMakePackageConfigHelpers)

install(TARGETS HSVN EXPORT HSVNTargets
        LIBRARY DESTINATION ${HSVN_PACKAGE_VERSION_FOLDER}
        PUBLIC_HEADER DESTINATION include/HSVN)
install(EXPORT HSVNTargets NAMESPACE HSVN:: DESTINATION lib/cmake/HSVN)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/HSVNConfig.cmake @ONLY CONTENT
"include(\"\${CMAKE_CURRENT_LIST_DIR}/HSVNTargets.cmake\")
# The package has no components: whoever requires one is to hear of it.
foreach(component IN LISTS HSVN_FIND_COMPONENTS)
  if(HSVN_FIND_REQUIRED_\${component})
    set(HSVN_FOUND FALSE)
    set(HSVN_NOT_FOUND_MESSAGE \"HSVN has no component \${component}\")
  endif()
endforeach()
")
write_basic_package_version_file(${PROJECT_BINARY_DIR}/HSVNConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/HSVNConfig.cmake ${PROJECT_BINARY_DIR}/HSVNConfigVersion.cmake
        DESTINATION lib/cmake/HSVN)

file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/hsvn.pc @ONLY CONTENT
"prefix=\${pcfiledir}/../..
libdir=\${prefix}/@HSVN_PACKAGE_VERSION_FOLDER@
includedir=\${prefix}/include

Name: HSVN
Description: @PROJECT_DESCRIPTION@
Version: @PROJECT_VERSION@
Cflags: -I\${includedir}
Libs: -L\${libdir} -Wl,-rpath,\${libdir} -lHSVN
")
install(FILES ${PROJECT_BINARY_DIR}/hsvn.pc DESTINATION lib/pkgconfig)
