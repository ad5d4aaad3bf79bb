# kr_cocoa: what Objective-C++ sources need to compile and link against macOS's own frameworks, on a Mac or with
# cmake/macos-cross.cmake elsewhere.
add_library(kr_cocoa INTERFACE)
target_compile_options(kr_cocoa INTERFACE "$<$<COMPILE_LANGUAGE:OBJCXX>:-fblocks;-fobjc-exceptions>")
foreach(framework Cocoa Carbon Security CoreServices ApplicationServices CoreAudio AudioToolbox IOKit)
  target_link_libraries(kr_cocoa INTERFACE "-framework ${framework}")
endforeach()
target_link_libraries(kr_cocoa INTERFACE objc)
# What the oldest system lacks may be called only where its presence has been asked for.
target_compile_options(kr_cocoa INTERFACE $<$<COMPILE_LANGUAGE:CXX,OBJCXX>:-Wunguarded-availability>)

# The analyser sees what the compiler does not: objects that are released too often or never, null where there must be an
# object. It runs with every compilation of an Objective-C++ source; kr_analyze(TARGET) has it run on a target's C++ too.
option(KR_ANALYZE "Run clang's analyser on the sources as they are compiled" OFF)
if(KR_ANALYZE)
  find_program(KR_CLANG_TIDY NAMES clang-tidy-16 clang-tidy REQUIRED)
  # An instance variable that only a category uses counts as unused there.
  set(KR_ANALYZER "${KR_CLANG_TIDY};--quiet;--warnings-as-errors=*"
    "--checks=-*,clang-analyzer-*,-clang-analyzer-osx.cocoa.UnusedIvars")
  set(CMAKE_OBJCXX_CLANG_TIDY "${KR_ANALYZER}")
endif()
function(kr_analyze target)
  if(KR_ANALYZE)
    set_target_properties(${target} PROPERTIES CXX_CLANG_TIDY "${KR_ANALYZER}")
  endif()
endfunction()

# kr_whole: every static library of the project, all of its objects, as one image. A program takes of a library only what
# it uses; here nothing that cannot be linked stays unseen. Only for checking, where no product is made.
function(kr_static_libraries result directory)
  set(found)
  get_property(targets DIRECTORY "${directory}" PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target ${targets})
    get_target_property(type ${target} TYPE)
    if(type STREQUAL STATIC_LIBRARY)
      list(APPEND found ${target})
    endif()
  endforeach()
  get_property(folders DIRECTORY "${directory}" PROPERTY SUBDIRECTORIES)
  foreach(folder ${folders})
    kr_static_libraries(inside "${folder}")
    list(APPEND found ${inside})
  endforeach()
  set(${result} "${found}" PARENT_SCOPE)
endfunction()

function(kr_add_whole_image)
  kr_static_libraries(libraries "${CMAKE_SOURCE_DIR}")
  add_library(kr_whole SHARED)
  foreach(library ${libraries})
    target_sources(kr_whole PRIVATE $<TARGET_OBJECTS:${library}>)
  endforeach()
  target_link_libraries(kr_whole PRIVATE kr_cocoa)
  set_target_properties(kr_whole PROPERTIES LINKER_LANGUAGE CXX)
endfunction()

if(CMAKE_CROSSCOMPILING)
  # Must not build: tools/check-macos sees by it that the compiler and the analyser find what they are there for.
  add_library(kr_mistakes OBJECT EXCLUDE_FROM_ALL
    "${CMAKE_SOURCE_DIR}/tools/macos-mistakes/Ownership.mm" "${CMAKE_SOURCE_DIR}/tools/macos-mistakes/Newer.mm")
  target_link_libraries(kr_mistakes PRIVATE kr_options kr_cocoa)
  cmake_language(DEFER DIRECTORY "${CMAKE_SOURCE_DIR}" CALL kr_add_whole_image)
endif()
