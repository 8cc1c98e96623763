# The package tree: the same shape below the build folder as below the installation prefix, so that a program
# runs unchanged from either.
#
#   lib/HSVN/Versions/A/libHSVN.so         the library
#   lib/HSVN/Versions/A/Resources/         scripts and tables
#   lib/HSVN/Versions/A/Subversion/        the version bundles
#   lib/HSVN/Versions/A/Unicode.bundle/    what the library asks of ICU

set(HSVN_PACKAGE lib/HSVN)
set(HSVN_PACKAGE_VERSION_FOLDER ${HSVN_PACKAGE}/Versions/A)
set(HSVN_BUILD_PACKAGE ${PROJECT_BINARY_DIR}/${HSVN_PACKAGE_VERSION_FOLDER})
set(HSVN_BUILD_BUNDLES ${HSVN_BUILD_PACKAGE}/Subversion)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
