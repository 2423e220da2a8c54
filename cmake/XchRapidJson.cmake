# Defines the interface target xch::rapidjson (header-only RapidJSON).
# Shared by the build and by the installed package configuration.
if(NOT TARGET xch::rapidjson)
  find_path(XCH_RAPIDJSON_INCLUDE_DIR rapidjson/document.h
    HINTS ${RAPIDJSON_INCLUDE_DIRS} ${XCH_HEADER_ONLY_DIR})
  if(NOT XCH_RAPIDJSON_INCLUDE_DIR)
    message(FATAL_ERROR "RapidJSON headers not found (Debian: rapidjson-dev)")
  endif()
  add_library(xch::rapidjson INTERFACE IMPORTED)
  set_target_properties(xch::rapidjson PROPERTIES
    INTERFACE_INCLUDE_DIRECTORIES "${XCH_RAPIDJSON_INCLUDE_DIR}")
endif()
