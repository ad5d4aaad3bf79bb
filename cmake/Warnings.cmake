# kr_options: language level, warnings and sanitizers that every target of the project is built with.
add_library(kr_options INTERFACE)
target_include_directories(kr_options INTERFACE "${CMAKE_SOURCE_DIR}")
target_compile_options(kr_options INTERFACE
  -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Wimplicit-fallthrough -Wunreachable-code
  $<$<BOOL:${KR_WARNINGS_AS_ERRORS}>:-Werror>
  # The sender of an action cannot be left unnamed.
  $<$<COMPILE_LANGUAGE:OBJCXX>:-Wno-unused-parameter>
  # A method that a class does not have shows at run time only, as "unrecognized selector".
  $<$<COMPILE_LANGUAGE:OBJCXX>:-Werror=objc-method-access>)
if(KR_SANITIZE)
  target_compile_options(kr_options INTERFACE -fsanitize=${KR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(kr_options INTERFACE -fsanitize=${KR_SANITIZE})
endif()
if(KR_FUZZ)
  # Tells the fuzzers which branches an input takes.
  target_compile_options(kr_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
