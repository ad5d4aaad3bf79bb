# Sounds are made from their description at build time.
find_program(KR_PERL perl REQUIRED)

# kr_make_sounds(LIST): the application's sounds; their paths are appended to LIST.
function(kr_make_sounds list)
  set(sounds "${CMAKE_CURRENT_BINARY_DIR}/Done.wav" "${CMAKE_CURRENT_BINARY_DIR}/SoundOfSilence.wav")
  add_custom_command(OUTPUT ${sounds}
    COMMAND "${KR_PERL}" "${CMAKE_SOURCE_DIR}/tools/make-sounds" "${CMAKE_CURRENT_BINARY_DIR}"
    DEPENDS "${CMAKE_SOURCE_DIR}/tools/make-sounds" VERBATIM)
  set(${list} ${${list}} ${sounds} PARENT_SCOPE)
endfunction()
