# The ACIS SDK at XCH_ACIS_ROOT as the imported target xch::acis: headers
# in <root>/include, the kernel library (SpaACIS) in <root>/lib or the
# SDK's platform folder (override with XCH_ACIS_LIBRARY).
if(NOT TARGET xch::acis)
  find_path(XCH_ACIS_INCLUDE_DIR kernapi.hxx
    PATHS ${XCH_ACIS_ROOT} PATH_SUFFIXES include NO_DEFAULT_PATH)
  find_library(XCH_ACIS_LIBRARY NAMES SpaACIS SpaACISd
    PATHS ${XCH_ACIS_ROOT}
    PATH_SUFFIXES lib lib64 win_b64/code/lib win_b64/code/bin linux_a64/code/lib linux_a64/code/bin
    NO_DEFAULT_PATH)
  if(NOT XCH_ACIS_INCLUDE_DIR OR NOT XCH_ACIS_LIBRARY)
    message(FATAL_ERROR "XCH_ACIS_ROOT=${XCH_ACIS_ROOT}: no ACIS SDK there (kernapi.hxx: "
      "${XCH_ACIS_INCLUDE_DIR}, SpaACIS: ${XCH_ACIS_LIBRARY})")
  endif()
  add_library(xch::acis UNKNOWN IMPORTED)
  set_target_properties(xch::acis PROPERTIES
    IMPORTED_LOCATION ${XCH_ACIS_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${XCH_ACIS_INCLUDE_DIR})
endif()
