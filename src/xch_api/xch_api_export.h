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

// On the definition of an explicit instantiation of an exported template
// (declared extern with XCH_API in its header): MSVC wants the attribute
// repeated there; GCC takes it from the declaration and warns when it is
// repeated.
#if defined(_MSC_VER)
#  define XCH_API_INSTANTIATION XCH_API
#else
#  define XCH_API_INSTANTIATION
#endif
