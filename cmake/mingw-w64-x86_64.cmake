# Cross-compiling for 64-bit Windows with Debian's MinGW-w64 (the posix
# thread model, which std::thread and std::mutex need). The programs and tests
# run here under Wine, so ctest can run the unit tests as they are built.
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64-x86_64-compilers.cmake)

# A technician's laptop has no MinGW runtime DLLs: programs link them in
# (-static, added per target by the project, since the programs on Qt share
# Qt's runtime DLLs instead).

find_program(RM8_WINE wine REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${RM8_WINE})
