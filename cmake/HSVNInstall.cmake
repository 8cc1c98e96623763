# Installation: the package tree, the headers, find_package(HSVN) and pkg-config.

include(CMakePackageConfigHelpers)

install(TARGETS HSVN EXPORT HSVNTargets
        LIBRARY DESTINATION ${HSVN_PACKAGE_VERSION_FOLDER}
        PUBLIC_HEADER DESTINATION include/HSVN)
install(EXPORT HSVNTargets NAMESPACE HSVN:: DESTINATION lib/cmake/HSVN)
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/HSVNConfig.cmake @ONLY CONTENT
"include(\"\${CMAKE_CURRENT_LIST_DIR}/HSVNTargets.cmake\")
")
write_basic_package_version_file(${CMAKE_BINARY_DIR}/HSVNConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/HSVNConfig.cmake ${CMAKE_BINARY_DIR}/HSVNConfigVersion.cmake
        DESTINATION lib/cmake/HSVN)

file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/hsvn.pc @ONLY CONTENT
"prefix=\${pcfiledir}/../..
libdir=\${prefix}/@HSVN_PACKAGE_VERSION_FOLDER@
includedir=\${prefix}/include

Name: HSVN
Description: @PROJECT_DESCRIPTION@
Version: @PROJECT_VERSION@
Cflags: -I\${includedir}
Libs: -L\${libdir} -Wl,-rpath,\${libdir} -lHSVN
")
install(FILES ${CMAKE_BINARY_DIR}/hsvn.pc DESTINATION lib/pkgconfig)
