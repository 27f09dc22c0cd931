# What the Debian package installs, and how CPack makes it.
#
#   /usr/lib/dpm-companion/   the program's folder: dpm-companion, dpm-cli, dpm-emulator and
#                             the data files the build puts beside them
#   /usr/bin/dpm-companion    the launcher, which runs the program in a folder of the user's
#   /usr/bin/dpm-cli          the same launcher, for dpm-cli
#   /usr/bin/dpm-emulator     the emulator, which needs no folder
#   the desktop entry and its icon
set(DPM_INSTALL_FOLDER lib/dpm-companion)

install(TARGETS dpm-companion dpm-cli dpm-emulator RUNTIME DESTINATION ${DPM_INSTALL_FOLDER})
install(CODE "set(DPM_PROGRAM_DIR \"${DPM_PROGRAM_DIR}\")\nset(DPM_INSTALL_FOLDER \"${DPM_INSTALL_FOLDER}\")")
install(SCRIPT ${CMAKE_CURRENT_LIST_DIR}/program_data.cmake)

install(PROGRAMS ${CMAKE_CURRENT_LIST_DIR}/dpm-companion-launcher DESTINATION bin RENAME dpm-companion)
set(DPM_LINKS_DIR ${CMAKE_BINARY_DIR}/packaging/bin)
file(MAKE_DIRECTORY ${DPM_LINKS_DIR})
file(CREATE_LINK dpm-companion ${DPM_LINKS_DIR}/dpm-cli SYMBOLIC)
file(CREATE_LINK ../${DPM_INSTALL_FOLDER}/dpm-emulator ${DPM_LINKS_DIR}/dpm-emulator SYMBOLIC)
install(FILES ${DPM_LINKS_DIR}/dpm-cli ${DPM_LINKS_DIR}/dpm-emulator DESTINATION bin)

install(FILES ${CMAKE_CURRENT_LIST_DIR}/dpm-companion.desktop DESTINATION share/applications)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/dpm-companion.svg DESTINATION share/icons/hicolor/scalable/apps)
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION share/doc/dpm-companion)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME dpm-companion)
set(CPACK_PACKAGE_VENDOR "DPM Companion")
set(CPACK_PACKAGE_CONTACT "DPM Companion developers <dpm-companion@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Desktop companion for digital panel meters")
set(CPACK_PACKAGE_DESCRIPTION
    "Fetches a digital panel meter's setup over a serial line, edits it on three setup pages and as the meter's "
    "front-panel menu, keeps it in setup files and writes it back; sends commands, captures readings and "
    "decodes a load cell's data sheet. Includes dpm-cli for scripts and dpm-emulator, a meter on a "
    "pseudo-terminal.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The Qt libraries the programs link come from dpkg-shlibdeps; the platform plugin that
# shows windows is loaded at run time, so it is named here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins")
set(CPACK_OUTPUT_FILE_PREFIX ${CMAKE_BINARY_DIR}/package)
include(CPack)
