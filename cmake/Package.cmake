# `cpack` makes a Debian package of what `cmake --install` gives.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ${PROJECT_NAME})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "virtual phone for the camera platform-information plug-in")
set(CPACK_PACKAGE_DESCRIPTION
    "zvcam boots virtual phones with the plug-in that tells a camera stack which
modules, calibration and metadata its phone has, and explains what was
published and why. It checks, mends and makes module memories and calibration
files. Programs that boot phones find libraries and a CMake package.")
set(CPACK_PACKAGE_CONTACT "Local build <root@localhost>" CACHE STRING "Maintainer of the Debian package")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/triggers)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/DebianLayout.cmake)
include(CPack)
