# Installing and the Debian package. The programs live in their program folder,
# lib/brenlow, with the template workbooks under its Databases folder (the programs
# find them beside themselves), and are linked from bin; the reference data in
# share/brenlow/data; the desktop entry and icon of tarrow.
include(GNUInstallDirs)
set(_program_dir lib/brenlow)
install(TARGETS brenlow RUNTIME DESTINATION ${_program_dir})
install(CODE "file(MAKE_DIRECTORY \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/bin)
  file(CREATE_LINK ../${_program_dir}/brenlow \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/bin/brenlow SYMBOLIC)")
if(TARGET tarrow)
  install(TARGETS tarrow RUNTIME DESTINATION ${_program_dir})
  install(CODE "file(CREATE_LINK ../${_program_dir}/tarrow \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/bin/tarrow SYMBOLIC)")
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/tarrow.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/tarrow.svg
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
endif()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/ DESTINATION ${CMAKE_INSTALL_DATADIR}/brenlow/data
        FILES_MATCHING PATTERN "*.csv" PATTERN "*.md")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brenlow)
set(CPACK_PACKAGE_VENDOR "Tarrow")
set(CPACK_PACKAGE_CONTACT "Brenlow developers <brenlow@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Fixed assets and final accounts for Indian businesses (brenlow, tarrow)")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)  # brenlow_<version>_amd64.deb
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
include(CPack)
