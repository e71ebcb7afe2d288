# How Quenlin is installed, and the Debian package (cpack in a build folder of the release preset).
include(GNUInstallDirs)

# The id's one home is platform/appid.h.
file(STRINGS ${CMAKE_SOURCE_DIR}/platform/appid.h line REGEX "kApplicationId = ")
string(REGEX REPLACE ".*\"(.+)\".*" "\\1" QUENLIN_ID "${line}")

set(desktop ${CMAKE_SOURCE_DIR}/assets/desktop)
set(made ${CMAKE_BINARY_DIR}/desktop)
configure_file(${desktop}/quenlin.desktop.in ${made}/${QUENLIN_ID}.desktop @ONLY)
configure_file(${desktop}/add.desktop.in ${made}/${QUENLIN_ID}.Add.desktop @ONLY)
configure_file(${desktop}/metainfo.xml.in ${made}/${QUENLIN_ID}.metainfo.xml @ONLY)
configure_file(${desktop}/mime.xml.in ${made}/${QUENLIN_ID}.xml @ONLY)
configure_file(${desktop}/quenlin.1.in ${made}/quenlin.1 @ONLY)
configure_file(${desktop}/changelog.in ${made}/changelog @ONLY)
find_program(GZIP_PROGRAM gzip REQUIRED)
execute_process(COMMAND ${GZIP_PROGRAM} -9nkf ${made}/quenlin.1 ${made}/changelog
  COMMAND_ERROR_IS_FATAL ANY)

install(TARGETS quenlin RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
if(QUENLIN_WINDOWS)
  # Where app/windowlibrary.cpp looks for it, from the program's folder on.
  install(TARGETS quenlin_window_library LIBRARY DESTINATION lib/quenlin)
endif()
install(DIRECTORY ${CMAKE_SOURCE_DIR}/assets/shipped/ DESTINATION ${CMAKE_INSTALL_DATADIR}/quenlin)
# The catalogue as the build makes it. The one beside the program in the build tree is in use there.
install(FILES ${QUENLIN_SHIPPED_CATALOGUE} DESTINATION ${CMAKE_INSTALL_DATADIR}/quenlin)
install(FILES ${made}/quenlin.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${CMAKE_SOURCE_DIR}/assets/desktop/copyright ${made}/changelog.gz
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/quenlin)
install(FILES ${made}/${QUENLIN_ID}.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
install(FILES ${made}/${QUENLIN_ID}.Add.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
if(QUENLIN_WINDOWS)
  install(FILES ${made}/${QUENLIN_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES ${made}/${QUENLIN_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
endif()
set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
install(FILES ${CMAKE_SOURCE_DIR}/assets/pictures/app.svg
  DESTINATION ${icons}/scalable/apps RENAME ${QUENLIN_ID}.svg)
foreach(size 16 24 32 48 64 128 256)
  install(FILES ${CMAKE_SOURCE_DIR}/assets/pictures/app-${size}.png
    DESTINATION ${icons}/${size}x${size}/apps RENAME ${QUENLIN_ID}.png)
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quenlin)
set(CPACK_PACKAGE_VENDOR "The Quenlin developers")
set(CPACK_PACKAGE_CONTACT "The Quenlin developers <support@quenlin.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "organiser for a personal collection of MP3 files")
set(CPACK_PACKAGE_DESCRIPTION "Quenlin walks a folder of MP3 files, reads their tags and keeps a catalogue
that can be browsed by field, searched and edited. It works in a window and
from a terminal.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://quenlin.example/")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Loaded while the program runs (platform/web), so the program file does not name it.
if(QUENLIN_WEB)
  set(CPACK_DEBIAN_PACKAGE_DEPENDS "libcurl4 (>= 7.85) | libcurl4t64")
endif()
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "audacious, audacious-plugins, hicolor-icon-theme, shared-mime-info, xdg-utils, qt6-wayland, qt6-translations-l10n")
include(CPack)
