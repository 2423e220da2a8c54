# Dependencies come from the installed Debian packages; nothing is downloaded.
#
# Native builds find RapidJSON and Boost through their package configuration.
# Cross builds (MinGW-w64) must not see all of /usr/include, which holds Linux
# libc headers: the header-only libraries are exposed through a directory of
# symbolic links that holds nothing else.
if(CMAKE_CROSSCOMPILING)
  set(XCH_HEADER_ONLY_DIR ${CMAKE_BINARY_DIR}/header-only-deps)
  file(MAKE_DIRECTORY ${XCH_HEADER_ONLY_DIR})
  foreach(dep rapidjson boost)
    if(NOT EXISTS ${XCH_HEADER_ONLY_DIR}/${dep})
      file(CREATE_LINK /usr/include/${dep} ${XCH_HEADER_ONLY_DIR}/${dep} SYMBOLIC)
    endif()
  endforeach()
  set(XCH_RAPIDJSON_INCLUDE_DIR ${XCH_HEADER_ONLY_DIR} CACHE PATH "" FORCE)
  add_library(xch::boost_headers INTERFACE IMPORTED)
  set_target_properties(xch::boost_headers PROPERTIES
    INTERFACE_INCLUDE_DIRECTORIES ${XCH_HEADER_ONLY_DIR})
else()
  find_package(RapidJSON CONFIG QUIET)
  find_package(Boost 1.74 REQUIRED)
  add_library(xch::boost_headers INTERFACE IMPORTED)
  target_link_libraries(xch::boost_headers INTERFACE Boost::headers)
  find_package(Threads REQUIRED)
endif()
include(${CMAKE_CURRENT_LIST_DIR}/XchRapidJson.cmake)
find_package(ZLIB REQUIRED)

# libdeflate (optional, Debian libdeflate-dev): the compressor's fast
# whole-buffer deflate and inflate; without it zlib does everything. The
# MinGW sysroot has no build of it, so Windows builds use zlib.
option(XCH_WITH_LIBDEFLATE "Use libdeflate for compression when it is installed" ON)
if(XCH_WITH_LIBDEFLATE AND NOT TARGET xch::libdeflate)
  find_path(XCH_LIBDEFLATE_INCLUDE_DIR libdeflate.h)
  find_library(XCH_LIBDEFLATE_LIBRARY NAMES deflate libdeflate)
  if(XCH_LIBDEFLATE_INCLUDE_DIR AND XCH_LIBDEFLATE_LIBRARY)
    add_library(xch::libdeflate UNKNOWN IMPORTED)
    set_target_properties(xch::libdeflate PROPERTIES
      IMPORTED_LOCATION ${XCH_LIBDEFLATE_LIBRARY}
      INTERFACE_INCLUDE_DIRECTORIES ${XCH_LIBDEFLATE_INCLUDE_DIR}
      INTERFACE_COMPILE_DEFINITIONS XCH_HAVE_LIBDEFLATE)
    message(STATUS "libdeflate: ${XCH_LIBDEFLATE_LIBRARY}")
  else()
    message(STATUS "libdeflate: not found, compression uses zlib alone")
  endif()
endif()
