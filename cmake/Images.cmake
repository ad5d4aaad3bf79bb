# Images are drawn from their sources at build time.
find_program(KR_RSVG_CONVERT rsvg-convert REQUIRED)

# kr_draw(LIST SVG NAME PIXELS): the square image NAME.png; its path is appended to LIST.
function(kr_draw list svg name pixels)
  set(png "${CMAKE_CURRENT_BINARY_DIR}/${name}.png")
  add_custom_command(OUTPUT "${png}"
    COMMAND "${KR_RSVG_CONVERT}" --width ${pixels} --height ${pixels} --output "${png}" "${svg}"
    DEPENDS "${svg}" VERBATIM)
  set(${list} ${${list}} "${png}" PARENT_SCOPE)
endfunction()

# kr_draw_icon(LIST SVG NAME): the icon file NAME.icns, which both systems read; its path is appended to LIST.
function(kr_draw_icon list svg name)
  set(sizes)
  set(widths 32 64 128 256 512)
  if(APPLE)
    # GNUstep decodes every size at each start, and shows none as large.
    list(APPEND widths 1024)
  endif()
  foreach(pixels IN LISTS widths)
    kr_draw(sizes "${svg}" ${name}-${pixels} ${pixels})
  endforeach()
  set(icon "${CMAKE_CURRENT_BINARY_DIR}/${name}.icns")
  add_custom_command(OUTPUT "${icon}"
    COMMAND "${CMAKE_SOURCE_DIR}/tools/make-icns" "${icon}" ${sizes}
    DEPENDS ${sizes} "${CMAKE_SOURCE_DIR}/tools/make-icns" VERBATIM)
  set(${list} ${${list}} "${icon}" PARENT_SCOPE)
endfunction()
