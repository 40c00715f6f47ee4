# What a Qt program of the windows build needs beside it to start: Qt's DLLs,
# the MinGW C++ runtime they share with it, and the plugins (the Windows
# platform and style, the offscreen platform for the tests). They are copied
# next to rm8config.exe, where Windows looks for a program's DLLs first and
# Qt for its plugins, so the build folder runs as the installed program does.
set(_rm8_runtime_dir ${PROJECT_BINARY_DIR}/src)
set(_rm8_gcc_dir /usr/lib/gcc/x86_64-w64-mingw32/12-posix)
set(_rm8_runtime_files
  ${_rm8_gcc_dir}/libstdc++-6.dll
  ${_rm8_gcc_dir}/libgcc_s_seh-1.dll
  /usr/x86_64-w64-mingw32/lib/libwinpthread-1.dll)
file(GLOB _rm8_qt_dlls ${RM8_QT_WINDOWS_PREFIX}/bin/Qt6*.dll)
list(APPEND _rm8_runtime_files ${_rm8_qt_dlls})

set(_rm8_copy_commands)
foreach(file IN LISTS _rm8_runtime_files)
  list(APPEND _rm8_copy_commands COMMAND ${CMAKE_COMMAND} -E copy_if_different ${file} ${_rm8_runtime_dir})
endforeach()
foreach(kind platforms styles imageformats)
  if(IS_DIRECTORY ${RM8_QT_WINDOWS_PREFIX}/plugins/${kind})
    list(APPEND _rm8_copy_commands
      COMMAND ${CMAKE_COMMAND} -E copy_directory ${RM8_QT_WINDOWS_PREFIX}/plugins/${kind} ${_rm8_runtime_dir}/${kind})
  endif()
endforeach()
if(EXISTS ${RM8_QT_WINDOWS_PREFIX}/translations/qtbase_cs.qm)
  list(APPEND _rm8_copy_commands COMMAND ${CMAKE_COMMAND} -E make_directory ${_rm8_runtime_dir}/translations
       COMMAND ${CMAKE_COMMAND} -E copy_if_different ${RM8_QT_WINDOWS_PREFIX}/translations/qtbase_cs.qm
               ${_rm8_runtime_dir}/translations)
endif()
# Qt would look for its translations beside the folder above its DLLs; the
# program's folder is its whole installation.
file(WRITE ${_rm8_runtime_dir}/qt.conf "[Paths]\nPrefix=.\n")
add_custom_target(rm8_windows_runtime ALL ${_rm8_copy_commands}
  COMMENT "Qt and the MinGW runtime beside rm8config.exe" VERBATIM)

# Qt's DLLs use the shared C++ runtime; a program on Qt shares it, so that one
# heap and one set of exceptions cross between them. Its output goes to the
# runtime folder above.
function(rm8_use_windows_runtime target)
  set_target_properties(${target} PROPERTIES RM8_SHARED_RUNTIME ON RUNTIME_OUTPUT_DIRECTORY ${_rm8_runtime_dir})
  add_dependencies(${target} rm8_windows_runtime)
endfunction()
