# kr_cocoa: what Objective-C++ sources need to compile and link against GNUstep's Foundation and AppKit.
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

# GCC's Objective-C headers; clang does not look there by itself.
file(GLOB KR_OBJC_INCLUDE_DIRS /usr/lib/gcc/x86_64-linux-gnu/*/include/objc)
if(NOT KR_OBJC_INCLUDE_DIRS)
  message(FATAL_ERROR "The Objective-C headers (objc/objc.h) are missing: install libobjc-12-dev")
endif()
list(GET KR_OBJC_INCLUDE_DIRS -1 KR_OBJC_INCLUDE_DIR)
get_filename_component(KR_OBJC_INCLUDE_DIR "${KR_OBJC_INCLUDE_DIR}" DIRECTORY)

# GNUstep's headers ask for <objc/blocks_runtime.h> when blocks are on, which is not packaged.
file(WRITE "${CMAKE_BINARY_DIR}/gnustep-shim/objc/blocks_runtime.h" "#include <Block.h>\n")
# Only the objc folder of GCC's headers is wanted: the rest belongs to another compiler.
file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/gnustep-objc")
file(CREATE_LINK "${KR_OBJC_INCLUDE_DIR}/objc" "${CMAKE_BINARY_DIR}/gnustep-objc/objc" SYMBOLIC)

add_library(kr_cocoa INTERFACE)
target_include_directories(kr_cocoa SYSTEM INTERFACE
  $<$<COMPILE_LANGUAGE:OBJCXX>:${CMAKE_BINARY_DIR}/gnustep-shim>
  $<$<COMPILE_LANGUAGE:OBJCXX>:${CMAKE_BINARY_DIR}/gnustep-objc>
  $<$<COMPILE_LANGUAGE:OBJCXX>:/usr/include/GNUstep>)
target_compile_options(kr_cocoa INTERFACE
  "$<$<COMPILE_LANGUAGE:OBJCXX>:SHELL:-fobjc-runtime=gcc -fblocks -fexceptions -fobjc-exceptions \
-D_NATIVE_OBJC_EXCEPTIONS -DGNUSTEP -DGNUSTEP_BASE_LIBRARY=1 -DGNU_GUI_LIBRARY=1 -DGNU_RUNTIME=1 \
-fconstant-string-class=NSConstantString>")
target_link_libraries(kr_cocoa INTERFACE gnustep-gui gnustep-base objc BlocksRuntime Threads::Threads)
