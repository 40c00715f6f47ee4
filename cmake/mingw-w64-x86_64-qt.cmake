# Cross-compiling Qt itself (scripts/windows-qt.sh) for 64-bit Windows with
# Debian's MinGW-w64. Unlike the project's own toolchain file, the runtime is
# not linked in statically: Qt's DLLs and rm8config.exe share one C++ runtime
# (libstdc++-6.dll and its two companions ship beside them).
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64-x86_64-compilers.cmake)
