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
