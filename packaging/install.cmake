# What `cmake --install` puts in place, and the Debian package CPack makes of it.
include(GNUInstallDirs)

foreach(program rm8config rm8ctl rm8sim)
  if(TARGET ${program})
    install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  endif()
endforeach()
if(TARGET rm8config)
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/rm8config.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/rm8config.svg
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
  # The *.eep type the desktop entry opens; the system's MIME database
  # takes it in through its package trigger.
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/rm8config-mime.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages
          RENAME rm8config.xml)
endif()

set(CPACK_PACKAGE_NAME "rm8config")
set(CPACK_PACKAGE_VENDOR "RM8 config team")
set(CPACK_PACKAGE_CONTACT "RM8 config team <rm8config@example.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Configuration tool for RM8 family GSM remote-control stations")
set(CPACK_PACKAGE_DESCRIPTION
    "Edits a station's whole configuration, writes it into the station over a serial cable, reads it back and keeps it as a settings file (*.eep). Includes rm8ctl (command line) and rm8sim (a simulated station on a pseudo-terminal).")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_GENERATOR "DEB")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION "electronics")
# The Qt libraries the programs link, the platform plugins a window needs,
# and a sans with the metrics of the report's printer font and Czech letters.
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "libqt6core6 (>= 6.2), libqt6gui6 (>= 6.2), libqt6widgets6 (>= 6.2), libqt6serialport6 (>= 6.2), libqt6printsupport6 (>= 6.2), qt6-qpa-plugins, fonts-liberation2, libstdc++6 (>= 12)")
include(CPack)
