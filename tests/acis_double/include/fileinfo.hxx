// TEST DOUBLE of the ACIS geometry kernel (see acis.hxx): FileInfo, the
// header information that every saved file carries.
#pragma once

#include <string>

#include "acis.hxx"

class ACIS_DOUBLE_API FileInfo {
public:
    FileInfo();
    const char* product_id() const { return m_productId.c_str(); }
    void set_product_id(const char* id);
    double units() const { return m_units; }
    void set_units(double units) { m_units = units; }
    void reset();

private:
    std::string m_productId;
    double m_units = 1.0;
};

// Masks of api_set_file_info: which fields to set.
enum { FileId = 0x1, FileUnits = 0x2 };
