# Installation in the standard places, and the Debian package through CPack
# (`make package` / `cmake --build build --target package`).
include(GNUInstallDirs)

set(KORVANEL_ICON_SIZES 16 32 48 64 128 256)
set(KORVANEL_DOC_DIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/korvanel)

install(TARGETS korvanel RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${PROJECT_SOURCE_DIR}/resources/desktop/korvanel.desktop
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/applications)
install(FILES ${PROJECT_SOURCE_DIR}/resources/desktop/korvanel.xml
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/mime/packages)
foreach(size ${KORVANEL_ICON_SIZES})
  install(FILES ${PROJECT_SOURCE_DIR}/resources/icons/korvanel_${size}.png
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/icons/hicolor/${size}x${size}/apps
          RENAME korvanel.png)
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/resources/icons/korvanel.svg
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/icons/hicolor/scalable/apps)
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${KORVANEL_DOC_DIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/ DESTINATION ${KORVANEL_DOC_DIR}/examples
        USE_SOURCE_PERMISSIONS PATTERN CMakeLists.txt EXCLUDE)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME korvanel)
set(CPACK_PACKAGE_VENDOR "Korvanel")
set(CPACK_PACKAGE_CONTACT "Korvanel maintainers <korvanel@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "viewer, comparer and batch processor for raw image dumps")
set(CPACK_PACKAGE_DESCRIPTION
    "Korvanel shows headerless raw image dumps (YUV, RGB, grey; planar or interleaved; 8 to 32 bits) side by side, reads out and finds pixel values, filters, converts and evaluates per-pixel expressions, and runs the same commands from the command line without a window.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The library packages come from the binary's own links.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-image-formats-plugins, fonts-liberation2, xdg-utils")
# Debian's triggers in shared-mime-info, desktop-file-utils and
# hicolor-icon-theme refresh their caches; no maintainer scripts needed.
include(CPack)
