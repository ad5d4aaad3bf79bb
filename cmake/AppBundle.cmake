# add_app_bundle(TARGET SOURCES ... INFO_PLIST FILE.in [NAME NAME] [FOLDER DIR] [LIBRARIES ...] [RESOURCES ...]): an
# application bundle NAME.app (TARGET.app) in DIR (the build folder). RESOURCES are files and folders that are copied into
# its resources under their own names; the target's property RESOURCES_FOLDER says where that is. In the layout that both
# systems read:
#
#   NAME.app/NAME                           the executable on GNUstep, where Contents/MacOS/NAME is a link to it
#   NAME.app/Contents/MacOS/NAME            the executable on macOS
#   NAME.app/Contents/Info.plist, PkgInfo
#   NAME.app/Contents/Resources/            on GNUstep also reached by NAME.app/Resources, and with a link to Info.plist
function(add_app_bundle target)
  cmake_parse_arguments(app "" "NAME;FOLDER;INFO_PLIST" "SOURCES;LIBRARIES;RESOURCES" ${ARGN})
  if(NOT app_NAME)
    set(app_NAME ${target})
  endif()
  if(NOT app_FOLDER)
    set(app_FOLDER "${CMAKE_BINARY_DIR}")
  endif()
  set(bundle "${app_FOLDER}/${app_NAME}.app")
  set(contents "${bundle}/Contents")

  add_executable(${target} ${app_SOURCES})
  target_link_libraries(${target} PRIVATE ${app_LIBRARIES})
  set_target_properties(${target} PROPERTIES OUTPUT_NAME "${app_NAME}" RESOURCES_FOLDER "${contents}/Resources")

  set(APP_NAME "${app_NAME}")
  configure_file("${app_INFO_PLIST}" "${contents}/Info.plist" @ONLY)
  file(READ "${contents}/Info.plist" information)
  string(REGEX MATCH "<key>CFBundleSignature</key>[ \t\r\n]*<string>(....)</string>" _ "${information}")
  file(WRITE "${contents}/PkgInfo" "APPL${CMAKE_MATCH_1}")
  file(MAKE_DIRECTORY "${contents}/Resources" "${contents}/MacOS")

  if(APPLE)
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${contents}/MacOS")
  else()
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${bundle}")
    file(CREATE_LINK "../../${app_NAME}" "${contents}/MacOS/${app_NAME}" SYMBOLIC)
    file(CREATE_LINK "Contents/Resources" "${bundle}/Resources" SYMBOLIC)
    file(CREATE_LINK "../Info.plist" "${contents}/Resources/Info.plist" SYMBOLIC)
  endif()

  set(copies)
  foreach(resource IN LISTS app_RESOURCES)
    get_filename_component(name "${resource}" NAME)
    set(copy "${contents}/Resources/${name}")
    if(IS_DIRECTORY "${resource}")
      file(GLOB_RECURSE files CONFIGURE_DEPENDS "${resource}/*")
      set(stamp "${CMAKE_CURRENT_BINARY_DIR}/${target}-${name}.stamp")
      add_custom_command(OUTPUT "${stamp}"
        COMMAND ${CMAKE_COMMAND} -E rm -rf "${copy}"
        COMMAND ${CMAKE_COMMAND} -E copy_directory "${resource}" "${copy}"
        COMMAND ${CMAKE_COMMAND} -E touch "${stamp}"
        DEPENDS ${files} VERBATIM)
      list(APPEND copies "${stamp}")
    else()
      add_custom_command(OUTPUT "${copy}"
        COMMAND ${CMAKE_COMMAND} -E copy "${resource}" "${copy}"
        DEPENDS "${resource}" VERBATIM)
      list(APPEND copies "${copy}")
    endif()
  endforeach()
  if(copies)
    add_custom_target(${target}_resources DEPENDS ${copies})
    add_dependencies(${target}_resources kr_images)
    add_dependencies(${target} ${target}_resources)
  endif()
endfunction()
