# Cross build for 64-bit Windows with Debian's MinGW-w64 compiler
# (g++-mingw-w64-x86-64, libz-mingw-w64-dev); programs run through Wine
# (wine64), so that ctest runs the Windows test suites on Linux.
#
#   cmake --preset windows-cross      (or -DCMAKE_TOOLCHAIN_FILE=<this file>)
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(XCH_MINGW_TRIPLET x86_64-w64-mingw32)

# The "posix" thread model: the library uses std::mutex, which the "win32"
# flavour of this compiler generation does not provide.
find_program(CMAKE_C_COMPILER NAMES ${XCH_MINGW_TRIPLET}-gcc-posix ${XCH_MINGW_TRIPLET}-gcc REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES ${XCH_MINGW_TRIPLET}-g++-posix ${XCH_MINGW_TRIPLET}-g++ REQUIRED)
find_program(CMAKE_RC_COMPILER NAMES ${XCH_MINGW_TRIPLET}-windres)

# Look for libraries and headers (zlib) in the MinGW sysroot only; build
# tools come from the host. RapidJSON and Boost are header-only and are
# added separately (cmake/XchDependencies.cmake), never all of /usr/include.
set(CMAKE_FIND_ROOT_PATH /usr/${XCH_MINGW_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Windows programs built here run through Wine: ctest, add_test and
# try_run use it. Debian installs the loader outside PATH.
find_program(XCH_WINE64 NAMES wine64 PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
if(XCH_WINE64)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${XCH_WINE64})
endif()
