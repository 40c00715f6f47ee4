# The Qt that scripts/windows-qt.sh cross-built for MinGW-w64, for the
# window's targets of the windows preset. RM8_BUILD_GUI=AUTO builds them when
# that Qt is there and says in one line why not when it is not.
#
# Where it looks: RM8_QT_WINDOWS_DIR (cache or environment), else the
# script's default under ~/.cache/rm8config. A Qt counts only once the script
# has finished it (its .complete mark).
set(RM8_QT_WINDOWS_DIR "$ENV{RM8_QT_WINDOWS_DIR}" CACHE PATH "Qt cross-built by scripts/windows-qt.sh")

set(_rm8_qt_dir "${RM8_QT_WINDOWS_DIR}")
if(NOT _rm8_qt_dir)
  file(GLOB _rm8_qt_candidates "$ENV{HOME}/.cache/rm8config/qt-*-mingw64/.complete")
  if(_rm8_qt_candidates)
    list(SORT _rm8_qt_candidates)
    list(GET _rm8_qt_candidates -1 _rm8_qt_mark)
    get_filename_component(_rm8_qt_dir "${_rm8_qt_mark}" DIRECTORY)
  endif()
endif()

if(_rm8_qt_dir AND EXISTS "${_rm8_qt_dir}/.complete")
  set(RM8_QT_WINDOWS_FOUND ON)
  message(STATUS "Qt for Windows: ${_rm8_qt_dir}")
  # Qt's packages for the target come from the cache, its code generators
  # (moc, rcc, uic) from the host's Qt of the same version.
  list(APPEND CMAKE_FIND_ROOT_PATH "${_rm8_qt_dir}")
  list(APPEND CMAKE_PREFIX_PATH "${_rm8_qt_dir}")
  set(QT_HOST_PATH /usr CACHE PATH "")
  set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake CACHE PATH "")
  set(RM8_QT_WINDOWS_PREFIX "${_rm8_qt_dir}")
else()
  set(RM8_QT_WINDOWS_FOUND OFF)
endif()

if(RM8_BUILD_GUI STREQUAL "AUTO")
  if(RM8_QT_WINDOWS_FOUND)
    set(RM8_BUILD_GUI ON)
  else()
    message(STATUS "rm8config.exe skipped: no Qt for Windows (make it with scripts/windows-qt.sh)")
    set(RM8_BUILD_GUI OFF)
  endif()
endif()
