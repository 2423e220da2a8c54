// Export macro of the ACIS binding library (xch_api_acis). The library is
// built with XCH_API_ACIS_BUILDING defined; users get dllimport on Windows.
#pragma once

#if defined(_WIN32)
#  if defined(XCH_API_ACIS_BUILDING)
#    define XCH_ACIS_API __declspec(dllexport)
#  else
#    define XCH_ACIS_API __declspec(dllimport)
#  endif
#else
#  define XCH_ACIS_API __attribute__((visibility("default")))
#endif
