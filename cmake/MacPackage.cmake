# Installing and packing on a Mac.
#
#   cmake --install build/macos --prefix DIR      DIR/VelmoraInstaller.app
#   cpack --config build/macos/CPackConfig.cmake  a disk image with the product of KR_PRODUCT, which holds the installer
#
# Both are signed with the identity of KR_SIGN_IDENTITY, and the image is notarised with KR_NOTARY_PROFILE.
set(sample "${CMAKE_BINARY_DIR}/samples/1.0/Velmora Notes.app")
set(KR_PRODUCT "${sample}" CACHE PATH "The product that the disk image is made for")
set(KR_PRODUCT_ENTITLEMENTS "" CACHE FILEPATH "The entitlements to sign the product with; empty: it keeps its own")
set(KR_SIGN_IDENTITY "" CACHE STRING "The identity to sign with, as codesign takes it; empty: nothing is signed")
set(KR_NOTARY_PROFILE "" CACHE STRING "The keychain profile for notarytool; empty: nothing is notarised")

set(entitlements "${KR_PRODUCT_ENTITLEMENTS}")
if(NOT entitlements AND KR_PRODUCT STREQUAL sample)
  set(entitlements "${CMAKE_SOURCE_DIR}/samples/notes/Notes.entitlements")
endif()
set(installer "${CMAKE_BINARY_DIR}/VelmoraInstaller.app")

# kr_install_tool(COMPONENT FOLDER_ARGUMENT TOOL ARGUMENTS...): runs the tool, with the variables for signing, when the
# component is installed. Its last argument is FOLDER_ARGUMENT below the folder that is installed into.
function(kr_install_tool component folder_argument tool)
  set(words)
  set(command "${CMAKE_COMMAND}" -E env "KR_SIGN_IDENTITY=${KR_SIGN_IDENTITY}" "KR_NOTARY_PROFILE=${KR_NOTARY_PROFILE}"
    "KR_PRODUCT_ENTITLEMENTS=${entitlements}" "${CMAKE_SOURCE_DIR}/tools/${tool}")
  foreach(word IN LISTS command ARGN)
    string(APPEND words " [[${word}]]")
  endforeach()
  install(CODE "execute_process(COMMAND${words} \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}${folder_argument}\"
    COMMAND_ERROR_IS_FATAL ANY)" COMPONENT ${component} ${exclude})
endfunction()

install(DIRECTORY "${installer}" DESTINATION . USE_SOURCE_PERMISSIONS COMPONENT installer)
kr_install_tool(installer /VelmoraInstaller.app sign-macos)
# What the image holds is no part of an installation.
set(exclude EXCLUDE_FROM_ALL)
kr_install_tool(image / stage-image "${installer}" "${KR_PRODUCT}")

get_filename_component(product "${KR_PRODUCT}" NAME_WLE)
set(CPACK_GENERATOR DragNDrop)
set(CPACK_PACKAGE_NAME "${product}")
set(CPACK_PACKAGE_VENDOR "Velmora")
# The installer takes no folder for a place to install to that lies on a volume with "-Install" in its name.
string(REPLACE " " "-" CPACK_PACKAGE_FILE_NAME "${product}-Install")
set(CPACK_DMG_VOLUME_NAME "${CPACK_PACKAGE_FILE_NAME}")
set(CPACK_DMG_FORMAT UDZO)
# Where the product goes is the installer's business.
set(CPACK_DMG_DISABLE_APPLICATIONS_SYMLINK ON)
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY OFF)
set(CPACK_INSTALL_CMAKE_PROJECTS "${CMAKE_BINARY_DIR};${PROJECT_NAME};image;/")
configure_file("${CMAKE_CURRENT_LIST_DIR}/sign-image.cmake.in" "${CMAKE_BINARY_DIR}/sign-image.cmake" @ONLY)
set(CPACK_POST_BUILD_SCRIPTS "${CMAKE_BINARY_DIR}/sign-image.cmake")
include(CPack)
