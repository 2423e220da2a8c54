// TEST DOUBLE of the ACIS geometry kernel: not ACIS, not derived from it.
//
// This folder is a small stand-in, written for xch_api's tests, for the part
// of the kernel's API that the ACIS binding (src/xch_api_acis) uses. It is
// built only with -DXCH_ACIS_TEST_DOUBLE=ON and never installed. Names and
// call shapes follow the kernel's public API as far as the binding needs
// them; the file format it writes is its own (see savres.hxx).
//
// This header: basic types and the export macro of the stand-in library.
#pragma once

#include <cstddef>

#if defined(_WIN32)
#  if defined(ACIS_TEST_DOUBLE_BUILDING)
#    define ACIS_DOUBLE_API __declspec(dllexport)
#  else
#    define ACIS_DOUBLE_API __declspec(dllimport)
#  endif
#else
#  define ACIS_DOUBLE_API __attribute__((visibility("default")))
#endif

typedef int logical;
#ifndef TRUE
#  define TRUE 1
#endif
#ifndef FALSE
#  define FALSE 0
#endif

// Error numbers of outcomes and exceptions.
typedef int err_mess_type;

// Byte offsets in a BinaryFile.
typedef long FilePosition;

class ENTITY;
class ENTITY_LIST;
class ATTRIB;
class BODY;
class FileInterface;
class BinaryFile;
class FileInfo;
class AcisOptions; // options of an API call; the stand-in takes none
class pointer_map; // the kernel's copy map; unused by the stand-in

// Why entities are scanned or fixed up.
enum SCAN_TYPE { SCAN_UNKNOWN, SCAN_SAVE, SCAN_RESTORE, SCAN_COPY, SCAN_DELETE, SCAN_DISCARD };

// Token pasting that expands its arguments first (THIS() and friends).
#define ACIS_DOUBLE_CAT_(a, b) a##b
#define ACIS_DOUBLE_CAT(a, b) ACIS_DOUBLE_CAT_(a, b)
