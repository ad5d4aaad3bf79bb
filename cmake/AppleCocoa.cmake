# kr_cocoa: what Objective-C++ sources need to compile and link against macOS's own frameworks, on a Mac or with
# cmake/macos-cross.cmake elsewhere.
add_library(kr_cocoa INTERFACE)
target_compile_options(kr_cocoa INTERFACE "$<$<COMPILE_LANGUAGE:OBJCXX>:-fblocks;-fobjc-exceptions>")
foreach(framework Cocoa Carbon Security CoreServices ApplicationServices CoreAudio AudioToolbox IOKit)
  target_link_libraries(kr_cocoa INTERFACE "-framework ${framework}")
endforeach()
target_link_libraries(kr_cocoa INTERFACE objc)
