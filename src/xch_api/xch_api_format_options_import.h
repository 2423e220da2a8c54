// Import option sets: one class per source format in xch::imp.
//
// The import sets carry no switches of their own yet: each is the base
// object {"operation_type": "import", "format_type": "<format>"}, so that a
// job names its source format and IFormatOptions::readOptions can make the
// matching class. All of them are instances of one template,
// imp::Options<F>, under the names below; a format gains switches by
// becoming a class of its own with a members list, as the export sets do.
#pragma once

#include <xch_api/xch_api_format_options.h>

namespace xch {
namespace imp {

// The options of importing format F: only the two base keys, read and
// written by IFormatOptions (a non-object value logs "FormatOptions object
// should have a JSON object type.").
template <EFormatType F>
class Options : public FormatOptions {
public:
    EFormatType formatType() const override { return F; }
};

using OptionsParasolid = Options<FormatParasolid>;
using OptionsCatiaV5 = Options<FormatCatiaV5>;
using OptionsCatiaV5Drawing = Options<FormatCatiaV5Drawing>;
using OptionsCatiaV4 = Options<FormatCatiaV4>;
using OptionsIGES = Options<FormatIGES>;
using OptionsSTEP = Options<FormatSTEP>;
using OptionsCreo = Options<FormatCreo>;
using OptionsNX = Options<FormatNX>;
using OptionsSolidWorks = Options<FormatSolidWorks>;
using OptionsSolidWorksDrawing = Options<FormatSolidWorksDrawing>;
using OptionsSolidEdge = Options<FormatSolidEdge>;
using OptionsJT = Options<FormatJT>;
using OptionsInventor = Options<FormatInventor>;
using Options3DXML = Options<Format3DXML>;
using OptionsXCGM = Options<FormatXCGM>;

} // namespace imp
} // namespace xch
