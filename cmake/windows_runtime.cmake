# What a Qt program of the windows build needs beside it to start: Qt's DLLs,
# the MinGW C++ runtime they share with it, and the plugins (the Windows
# platform and style, the offscreen platform for the tests). They are copied
# next to rm8config.exe, where Windows looks for a program's DLLs first, in
# the installed program's layout, so the build folder runs as installed.
set(_rm8_runtime_dir ${PROJECT_BINARY_DIR}/src)
# The compiler knows where its runtime DLLs are.
set(_rm8_runtime_files)
foreach(dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll}
                  OUTPUT_VARIABLE _rm8_dll OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT IS_ABSOLUTE "${_rm8_dll}" OR NOT EXISTS "${_rm8_dll}")
    message(FATAL_ERROR "${CMAKE_CXX_COMPILER} does not know where ${dll} is")
  endif()
  list(APPEND _rm8_runtime_files ${_rm8_dll})
endforeach()
file(GLOB _rm8_qt_dlls ${RM8_QT_WINDOWS_PREFIX}/bin/Qt6*.dll)
list(APPEND _rm8_runtime_files ${_rm8_qt_dlls})

set(_rm8_copy_commands)
foreach(file IN LISTS _rm8_runtime_files)
  list(APPEND _rm8_copy_commands COMMAND ${CMAKE_COMMAND} -E copy_if_different ${file} ${_rm8_runtime_dir})
endforeach()
foreach(kind platforms styles imageformats)
  if(IS_DIRECTORY ${RM8_QT_WINDOWS_PREFIX}/plugins/${kind})
    list(APPEND _rm8_copy_commands
      COMMAND ${CMAKE_COMMAND} -E copy_directory ${RM8_QT_WINDOWS_PREFIX}/plugins/${kind} ${_rm8_runtime_dir}/plugins/${kind})
  endif()
endforeach()
if(EXISTS ${RM8_QT_WINDOWS_PREFIX}/translations/qtbase_cs.qm)
  list(APPEND _rm8_copy_commands COMMAND ${CMAKE_COMMAND} -E make_directory ${_rm8_runtime_dir}/translations
       COMMAND ${CMAKE_COMMAND} -E copy_if_different ${RM8_QT_WINDOWS_PREFIX}/translations/qtbase_cs.qm
               ${_rm8_runtime_dir}/translations)
endif()
# The layout of the installed program (scripts/windows-package.sh): Qt would
# otherwise guess its folders from where its Core DLL lies.
file(WRITE ${_rm8_runtime_dir}/qt.conf "[Paths]\nPrefix = .\nPlugins = plugins\nTranslations = translations\n")
add_custom_target(rm8_windows_runtime ALL ${_rm8_copy_commands}
  COMMENT "Qt and the MinGW runtime beside rm8config.exe" VERBATIM)

# Qt's DLLs use the shared C++ runtime; a program on Qt shares it, so that one
# heap and one set of exceptions cross between them. Its output goes to the
# runtime folder above.
function(rm8_use_windows_runtime target)
  set_target_properties(${target} PROPERTIES RM8_SHARED_RUNTIME ON RUNTIME_OUTPUT_DIRECTORY ${_rm8_runtime_dir})
  add_dependencies(${target} rm8_windows_runtime)
endfunction()
