# The Debian package: what `cmake --install` installs here, and `cpack --config build/release/CPackConfig.cmake` packs.
# The bundle goes where GNUstep's system applications are; beside it stand what the desktop and polkit know it by.
set(packaging "${CMAKE_SOURCE_DIR}/packaging/debian")
set(application com.velmora.installer)
set(applications lib/GNUstep/Applications)
set(bundle "${applications}/VelmoraInstaller.app")
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

install(DIRECTORY "${CMAKE_BINARY_DIR}/VelmoraInstaller.app" DESTINATION "${applications}" USE_SOURCE_PERMISSIONS)
configure_file("${packaging}/velmora-installer.in" "${CMAKE_BINARY_DIR}/packaging/velmora-installer" @ONLY)
install(PROGRAMS "${CMAKE_BINARY_DIR}/packaging/velmora-installer" DESTINATION bin)

install(FILES "${packaging}/${application}.desktop" DESTINATION share/applications)
install(FILES "${packaging}/${application}.metainfo.xml" DESTINATION share/metainfo)
install(FILES "${CMAKE_SOURCE_DIR}/resources/icon.svg" DESTINATION share/icons/hicolor/scalable/apps
  RENAME ${application}.svg)
foreach(pixels 32 64 128 256)
  install(FILES "${CMAKE_BINARY_DIR}/resources/AppIcon-${pixels}.png"
    DESTINATION "share/icons/hicolor/${pixels}x${pixels}/apps" RENAME ${application}.png)
endforeach()
# The prefix is known when the package is made.
install(CODE "set(TOOL \"\${CMAKE_INSTALL_PREFIX}/${bundle}/Contents/Resources/train\")
configure_file(\"${CMAKE_SOURCE_DIR}/resources/${application}.policy.in\"
  \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/share/polkit-1/actions/${application}.policy\" @ONLY)")
install(FILES "${packaging}/velmora-installer.1" DESTINATION share/man/man1)
install(FILES "${packaging}/copyright" "${packaging}/changelog" DESTINATION share/doc/velmora-installer)
install(FILES "${packaging}/lintian-overrides" DESTINATION share/lintian/overrides RENAME velmora-installer)
install(CODE "set(root \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}\")
execute_process(COMMAND gzip -9nf \"\${root}/share/man/man1/velmora-installer.1\"
  \"\${root}/share/doc/velmora-installer/changelog\" COMMAND_ERROR_IS_FATAL ANY)
if(CMAKE_INSTALL_DO_STRIP)
  execute_process(COMMAND find \"\${root}/${bundle}\" -type f -perm -u+x -exec \"${CMAKE_STRIP}\" --strip-unneeded
    --remove-section=.comment --remove-section=.note {} +
    COMMAND_ERROR_IS_FATAL ANY)
endif()")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmora-installer)
set(CPACK_PACKAGE_VENDOR Velmora)
set(CPACK_PACKAGE_CONTACT "Velmora <support@velmora.example>")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "installer of one application product")
set(CPACK_PACKAGE_DESCRIPTION [[
Asks running copies of a product to quit, chooses the destination, moves the
old copy to the Trash, copies the product so that it is never half there,
registers it and starts it, and logs every step.
.
Products start it with arguments that describe the installation.]])
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://www.velmora.example")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What is not linked: the drawing of windows, their font, and what installations need of the system.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-inter, gnustep-back0.29-cairo")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "desktop-file-utils, libpulse0, libsndfile1, pkexec, polkitd, xkb-data")
# The fonts of languages that the other one has no letters of.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "fonts-dejavu-core, fonts-noto-cjk")
# Packs what has been built; the tests need not be.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)
include(CPack)
