// Notes: free text annotations made of one or more formatted texts. A flag
// note (a balloon with text) and a notes-on-annotation item are notes with
// a flag set; all of them report type() PMINote.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <xch_api/xch_api_pmi_annotation.h>

namespace xch {

// JSON: the annotation keys (xch_api_pmi_annotation.h), then "texts"
// (array of ExcPMINote::Text objects), "is_flag_note", "is_noa".
class XCH_API ExcPMINote : public ExcPMIAnnotation {
public:
    // One run of text with its font and colour.
    //
    // JSON: "label", "font_name", "font_type", "fixed_pitch", "height",
    // "bold", "italic", "underline", "strike_through", "overline", "ratio",
    // "slant", "color" ([red, green, blue, alpha]). "color" is read
    // strictly: components are taken in order from the array's start and
    // reading stops at the first element that is not a JSON double (an
    // integer literal such as 1 stops it); components not reached keep
    // their values. An unknown "font_type" string reads as IGES1001.
    class XCH_API Text : public IJsonObject {
    public:
        enum EFontType : std::int32_t {
            Simplex = 0,    // "simplex"
            Din = 1,        // "din"
            Military = 2,   // "military"
            ISO = 3,        // "ISO"
            LightLine = 4,  // "light_line"
            Century = 5,    // "century"
            IGES1001 = 6,   // "IGES_1001"
            IGES1002 = 7,   // "IGES_1002"
            IGES1003 = 8    // "IGES_1003"
        };

        Text();
        explicit Text(const std::wstring& label);
        Text(const Text&);
        Text& operator=(const Text&);
        ~Text() override;

        // The text itself.
        const std::wstring& label() const { return m_label; }
        void setLabel(const std::wstring& label) { m_label = label; }
        const std::wstring& fontName() const { return m_fontName; }
        void setFontName(const std::wstring& fontName) { m_fontName = fontName; }
        EFontType fontType() const { return m_fontType; }
        void setFontType(EFontType fontType) { m_fontType = fontType; }
        bool fixedPitch() const { return m_fixedPitch; }
        void setFixedPitch(bool fixedPitch) { m_fixedPitch = fixedPitch; }
        double height() const { return m_height; }
        void setHeight(double height) { m_height = height; }
        bool bold() const { return m_bold; }
        void setBold(bool bold) { m_bold = bold; }
        bool italic() const { return m_italic; }
        void setItalic(bool italic) { m_italic = italic; }
        bool underline() const { return m_underline; }
        void setUnderline(bool underline) { m_underline = underline; }
        bool strikeThrough() const { return m_strikeThrough; }
        void setStrikeThrough(bool strikeThrough) { m_strikeThrough = strikeThrough; }
        bool overline() const { return m_overline; }
        void setOverline(bool overline) { m_overline = overline; }
        // Width ratio of the characters.
        double ratio() const { return m_ratio; }
        void setRatio(double ratio) { m_ratio = ratio; }
        double slant() const { return m_slant; }
        void setSlant(double slant) { m_slant = slant; }
        // The colour, opaque white (1, 1, 1, 1) by default.
        void getRGBA(double& red, double& green, double& blue, double& alpha) const;
        void setRGBA(double red, double green, double blue, double alpha);

        void readObject(const JsonValue& value) override;
        void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

        template <class Io, class Self>
        static void members(Io& io, Self& self);

    private:
        std::wstring m_label;
        std::wstring m_fontName;
        EFontType m_fontType = Simplex;
        bool m_fixedPitch = false;
        double m_height = 0.0;
        bool m_bold = false;
        bool m_italic = false;
        bool m_underline = false;
        bool m_strikeThrough = false;
        bool m_overline = false;
        double m_ratio = 0.0;
        double m_slant = 0.0;
        std::array<double, 4> m_rgba{1.0, 1.0, 1.0, 1.0};
    };

    using TextList = std::vector<std::shared_ptr<Text>>;

    ExcPMINote();
    ExcPMINote(const ExcPMINote&);
    ExcPMINote& operator=(const ExcPMINote&);
    ~ExcPMINote() override;

    // PMINote, also for flag notes and notes-on-annotation.
    EPMIAnnotationType type() const override { return PMINote; }

    // The adders skip a null text with the warning "ExcPMINote: attempt to
    // add null text."; setTexts takes the list as given.
    const TextList& texts() const { return m_texts; }
    void addText(const std::shared_ptr<Text>& text);
    void addTexts(const TextList& texts);
    void setTexts(const TextList& texts) { m_texts = texts; }
    bool isFlagNote() const { return m_isFlagNote; }
    void setFlagNote(bool isFlagNote) { m_isFlagNote = isFlagNote; }
    // A notes-on-annotation item.
    bool isNOA() const { return m_isNOA; }
    void setNOA(bool isNOA) { m_isNOA = isNOA; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    TextList m_texts;
    bool m_isFlagNote = false;
    bool m_isNOA = false;
};

template <> XCH_API const EnumTable<ExcPMINote::Text::EFontType>& enumTable<ExcPMINote::Text::EFontType>();

} // namespace xch
