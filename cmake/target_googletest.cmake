# GoogleTest built for the target from the sources Debian ships with
# libgtest-dev; its build gives the GTest:: names that find_package(GTest)
# gives on the host.
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
