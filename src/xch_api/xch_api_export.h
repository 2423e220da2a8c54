// Export macro of the xch_api shared library.
//
// Every public class and function carries XCH_API. The library itself is
// built with XCH_API_BUILDING defined (dllexport on Windows, default
// visibility elsewhere, where everything else is hidden); users get
// dllimport on Windows.
#pragma once

#if defined(_WIN32)
#  if defined(XCH_API_BUILDING)
#    define XCH_API __declspec(dllexport)
#  else
#    define XCH_API __declspec(dllimport)
#  endif
#else
#  define XCH_API __attribute__((visibility("default")))
#endif

// The full signature of the enclosing function, for trace lines.
#if defined(_MSC_VER)
#  define XCH_FUNCSIG __FUNCSIG__
#else
#  define XCH_FUNCSIG __PRETTY_FUNCTION__
#endif
