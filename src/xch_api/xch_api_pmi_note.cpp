// PMI notes and their texts.
#include <xch_api/xch_api_pmi_note.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

template <>
const EnumTable<ExcPMINote::Text::EFontType>& enumTable<ExcPMINote::Text::EFontType>() {
    using T = ExcPMINote::Text;
    static const EnumTable<T::EFontType> table{
        {T::Simplex, L"simplex"},
        {T::Din, L"din"},
        {T::Military, L"military"},
        {T::ISO, L"ISO"},
        {T::LightLine, L"light_line"},
        {T::Century, L"century"},
        {T::IGES1001, L"IGES_1001"},
        {T::IGES1002, L"IGES_1002"},
        {T::IGES1003, L"IGES_1003"},
    };
    return table;
}

// ---- ExcPMINote::Text ------------------------------------------------------------------------

ExcPMINote::Text::Text() = default;
ExcPMINote::Text::Text(const std::wstring& label) : m_label(label) {}
ExcPMINote::Text::Text(const Text&) = default;
ExcPMINote::Text& ExcPMINote::Text::operator=(const Text&) = default;
ExcPMINote::Text::~Text() = default;

void ExcPMINote::Text::getRGBA(double& red, double& green, double& blue, double& alpha) const {
    red = m_rgba[0];
    green = m_rgba[1];
    blue = m_rgba[2];
    alpha = m_rgba[3];
}

void ExcPMINote::Text::setRGBA(double red, double green, double blue, double alpha) {
    m_rgba = {red, green, blue, alpha};
}

template <class Io, class Self>
void ExcPMINote::Text::members(Io& io, Self& self) {
    io(L"label", self.m_label);
    io(L"font_name", self.m_fontName);
    io(L"font_type", self.m_fontType);
    io(L"fixed_pitch", self.m_fixedPitch);
    io(L"height", self.m_height, json::anyNumber);
    io(L"bold", self.m_bold);
    io(L"italic", self.m_italic);
    io(L"underline", self.m_underline);
    io(L"strike_through", self.m_strikeThrough);
    io(L"overline", self.m_overline);
    io(L"ratio", self.m_ratio, json::anyNumber);
    io(L"slant", self.m_slant, json::anyNumber);
    io(L"color", self.m_rgba, json::leadingDoubles);
}

XCH_JSON_IO(ExcPMINote::Text)

// ---- ExcPMINote ------------------------------------------------------------------------------

ExcPMINote::ExcPMINote() = default;
ExcPMINote::ExcPMINote(const ExcPMINote&) = default;
ExcPMINote& ExcPMINote::operator=(const ExcPMINote&) = default;
ExcPMINote::~ExcPMINote() = default;

void ExcPMINote::addText(const std::shared_ptr<Text>& text) {
    json::appendNonNull(m_texts, text, "ExcPMINote: attempt to add null text.");
}

void ExcPMINote::addTexts(const TextList& texts) {
    for (const auto& text : texts) addText(text);
}

template <class Io, class Self>
void ExcPMINote::members(Io& io, Self& self) {
    io(L"texts", self.m_texts, json::objectsOnly);
    io(L"is_flag_note", self.m_isFlagNote);
    io(L"is_noa", self.m_isNOA);
}

XCH_JSON_IO_DERIVED(ExcPMINote, ExcPMIAnnotation)

} // namespace xch
