# The Open CASCADE translator worker (translators/occt), built only where
# Open CASCADE's CMake package is installed (Debian libocct-*-dev); the
# core library never depends on it. Its package configuration also wants
# TBB (libtbb-dev).
find_package(OpenCASCADE CONFIG QUIET)
if(OpenCASCADE_FOUND)
  message(STATUS "Open CASCADE ${OpenCASCADE_VERSION}: building xch_occt_worker")
  add_subdirectory(${PROJECT_SOURCE_DIR}/translators/occt ${CMAKE_BINARY_DIR}/translators/occt)
else()
  message(STATUS "Open CASCADE not found: xch_occt_worker is not built")
endif()
