# Cross-compiling for 64-bit Windows with Debian's MinGW-w64 (the posix
# thread model, which std::thread and std::mutex need). The programs and tests
# run here under Wine, so ctest can run the unit tests as they are built.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# A technician's laptop has no MinGW runtime DLLs: programs link them in
# (-static, added per target by the project, since the programs on Qt share
# Qt's runtime DLLs instead).

find_program(RM8_WINE wine REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${RM8_WINE})
