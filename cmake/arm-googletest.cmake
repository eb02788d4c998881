# GoogleTest from Debian's sources, for a build whose target has no package of it. Included by project(), so that it is
# built with its own warnings; find_package(GTest) then finds its targets there already.
set(INSTALL_GTEST OFF)
set(BUILD_GMOCK OFF)
add_subdirectory(/usr/src/googletest googletest EXCLUDE_FROM_ALL)
file(WRITE ${CMAKE_FIND_PACKAGE_REDIRECTS_DIR}/gtest-config.cmake "# Its targets are part of this build.\n")
