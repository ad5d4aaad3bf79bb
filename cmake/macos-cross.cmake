# Builds for macOS with clang and lld on another system, against a macOS SDK laid out in the usual way
# (usr/include, usr/lib, System/Library/Frameworks):
#
#   cmake --preset macos-cross -DKR_MACOS_SDK=DIR [-DKR_MACOS_ARCHITECTURE=arm64]
#
# KR_MACOS_SDK may also stand in the environment.
set(CMAKE_SYSTEM_NAME Darwin)
set(KR_MACOS_ARCHITECTURE x86_64 CACHE STRING "The processor to build for: x86_64 or arm64")
set(CMAKE_SYSTEM_PROCESSOR "${KR_MACOS_ARCHITECTURE}")

set(KR_MACOS_SDK "$ENV{KR_MACOS_SDK}" CACHE PATH "The macOS SDK to build against")
if(NOT IS_DIRECTORY "${KR_MACOS_SDK}/System/Library/Frameworks/Cocoa.framework")
  message(FATAL_ERROR "KR_MACOS_SDK (\"${KR_MACOS_SDK}\") is no macOS SDK: give one with -DKR_MACOS_SDK=DIR")
endif()
# Configuration checks run CMake again, with this file but without the cache.
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KR_MACOS_SDK KR_MACOS_ARCHITECTURE)

set(CMAKE_OSX_SYSROOT "${KR_MACOS_SDK}")
# No Mac with the other processor has an older system than 11.
if(KR_MACOS_ARCHITECTURE STREQUAL "arm64")
  set(CMAKE_OSX_DEPLOYMENT_TARGET 11.0)
else()
  set(CMAKE_OSX_DEPLOYMENT_TARGET 10.13)
endif()

# The newest version is no better than the tested one: the project pins it.
set(tools clang++ ld64.lld llvm-ar llvm-ranlib llvm-nm llvm-objdump llvm-strip llvm-install-name-tool llvm-otool)
foreach(tool ${tools})
  string(MAKE_C_IDENTIFIER "KR_${tool}" variable)
  find_program(${variable} NAMES ${tool}-16 ${tool} REQUIRED)
endforeach()
foreach(language CXX OBJCXX)
  set(CMAKE_${language}_COMPILER "${KR_clang__}")
  set(CMAKE_${language}_COMPILER_TARGET "${KR_MACOS_ARCHITECTURE}-apple-macos${CMAKE_OSX_DEPLOYMENT_TARGET}")
endforeach()
# CMake would look for the names that these tools have on a Mac, and stops without install_name_tool.
set(CMAKE_AR "${KR_llvm_ar}")
set(CMAKE_RANLIB "${KR_llvm_ranlib}")
set(CMAKE_NM "${KR_llvm_nm}")
set(CMAKE_OBJDUMP "${KR_llvm_objdump}")
set(CMAKE_STRIP "${KR_llvm_strip}")
set(CMAKE_INSTALL_NAME_TOOL "${KR_llvm_install_name_tool}")
set(CMAKE_OTOOL "${KR_llvm_otool}")

# The C++ library's headers are those of the SDK, whatever this system has installed beside the compiler. CMake hands
# the same flags to the linking command, which has no use for them.
set(flags "--start-no-unused-arguments -stdlib=libc++ -nostdinc++ -isystem ${KR_MACOS_SDK}/usr/include/c++/v1 \
--end-no-unused-arguments")
set(CMAKE_CXX_FLAGS_INIT "${flags}")
set(CMAKE_OBJCXX_FLAGS_INIT "${flags}")

# An SDK may come without the stubs of the C and C++ libraries. Their names are then looked up when the program starts;
# tools/check-macos holds that list to names that macOS has.
set(flags "-fuse-ld=lld --ld-path=${KR_ld64_lld}")
if(NOT EXISTS "${KR_MACOS_SDK}/usr/lib/libSystem.tbd")
  string(APPEND flags " -nostdlib -Wl,-undefined,dynamic_lookup")
endif()
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "${flags}")
endforeach()

# Programs of this system are used to build; libraries and packages of this system must not get into the product.
set(CMAKE_FIND_ROOT_PATH "${KR_MACOS_SDK}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
