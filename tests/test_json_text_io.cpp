#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <limits>
#include <random>
#include <sstream>
#include <streambuf>
#include <vector>

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_json_binary_io.h>
#include <xch_api/xch_api_json_text_io.h>
#include <xch_api/xch_api_limits.h>

#include "support/hex.h"
#include "support/log_capture.h"
#include "support/random_json.h"
#include "support/test_types.h"

using xch::JsonDocument;
using xch::JsonTextIO;

namespace {

JsonDocument parse(const std::wstring& text, JsonDocument doc = JsonDocument()) {
    std::wistringstream in(text);
    JsonTextIO::read(in, doc);
    return doc;
}

std::wstring render(const JsonDocument& doc, bool pretty) {
    std::wostringstream out;
    JsonTextIO::write(out, doc, pretty);
    return out.str();
}

// rapidjson's own writers, as the reference for the text form. Returns
// false when rapidjson refuses the document.
bool rapidjsonText(const xch::JsonValue& value, bool pretty, std::wstring& text) {
    rapidjson::GenericStringBuffer<xch::JsonEncoding> buffer;
    bool ok;
    if (pretty) {
        rapidjson::PrettyWriter<decltype(buffer), xch::JsonEncoding, xch::JsonEncoding> writer(buffer);
        writer.SetIndent(L' ', 2);
        writer.SetFormatOptions(rapidjson::kFormatSingleLineArray);
        ok = value.Accept(writer);
    } else {
        rapidjson::Writer<decltype(buffer), xch::JsonEncoding, xch::JsonEncoding> writer(buffer);
        ok = value.Accept(writer);
    }
    text.assign(buffer.GetString(), buffer.GetSize() / sizeof(wchar_t));
    return ok;
}

// The tree exactly: number forms, bits of doubles, every code unit.
std::string exactly(const xch::JsonValue& value) {
    JsonDocument doc;
    doc.CopyFrom(value, doc.GetAllocator());
    std::string bytes;
    xch::JsonBinaryIO::write(bytes, doc);
    return xch_test::toHex(bytes);
}

bool holdsInfinity(const xch::JsonValue& v) {
    if (v.IsDouble()) return std::isinf(v.GetDouble());
    if (v.IsArray())
        for (const auto& e : v.GetArray())
            if (holdsInfinity(e)) return true;
    if (v.IsObject())
        for (const auto& m : v.GetObject())
            if (holdsInfinity(m.value)) return true;
    return false;
}

// Parses `text` with JsonTextIO::read and with rapidjson's reader (full
// precision) and expects the same tree or the same error at the same
// offset. Returns false where the two are known to differ on purpose
// (rapidjson reads numbers beyond the double range as infinity, and asserts
// on an escaped lone low surrogate where wchar_t is 16 bits).
bool expectSameParse(const std::wstring& text) {
    JsonDocument reference;
    try {
        reference.Parse<rapidjson::kParseFullPrecisionFlag>(text.c_str());
    } catch (const xch::JsonAssertion&) {
        return false;
    }
    if (!reference.HasParseError() && holdsInfinity(reference)) return false;
    JsonDocument doc = parse(text);
    EXPECT_EQ(doc.GetParseError(), reference.GetParseError()) << text;
    EXPECT_EQ(doc.GetErrorOffset(), reference.GetErrorOffset()) << text;
    if (!reference.HasParseError()) EXPECT_EQ(exactly(doc), exactly(reference)) << text;
    else EXPECT_TRUE(doc.IsNull()) << text;
    return true;
}

} // namespace

TEST(JsonTextIO, ReaderAcceptsOneRootAmidWhitespaceOnly) {
    EXPECT_EQ(parse(L" \t\r\n ").GetParseError(), rapidjson::kParseErrorDocumentEmpty);
    EXPECT_EQ(parse(L"{}{}").GetParseError(), rapidjson::kParseErrorDocumentRootNotSingular);
    EXPECT_TRUE(parse(L"\r\n\t {}\n\n").IsObject());
    // Default flags: no trailing commas, NaN or comments.
    for (const wchar_t* bad : {L"{\"a\":1,}", L"[NaN]", L"{} // note"}) EXPECT_TRUE(parse(bad).HasParseError());
    // A failed parse leaves no stale root in a used document.
    JsonDocument used = parse(L"{\"a\":1}");
    EXPECT_FALSE(parse(L"{\"a\":", std::move(used)).IsObject());
}

TEST(JsonTextIO, PrettyAndCompactForms) {
    JsonDocument doc = parse(L"{\"a\":[1,2.5,-3],\"b\":{\"c\":\"x\",\"d\":true},\"e\":null}");
    EXPECT_EQ(render(doc, false), L"{\"a\":[1,2.5,-3],\"b\":{\"c\":\"x\",\"d\":true},\"e\":null}");
    EXPECT_EQ(render(doc, true),
              L"{\n  \"a\": [1, 2.5, -3],\n  \"b\": {\n    \"c\": \"x\",\n    \"d\": true\n  },\n  \"e\": null\n}");
}

TEST(JsonTextIO, DoublesAndCharactersBeyondTheBasicPlaneSurvive) {
    JsonDocument doc = parse(L"[1.0,0.1,1e-6,0.3333333333333333,-2.5e300,5e-324,\"\\ud83d\\ude00 \U0001F600 \u00e9\"]");
    std::wstring text = render(doc, false);
    EXPECT_EQ(text.substr(0, 18), L"[1.0,0.1,0.000001,");
    JsonDocument back = parse(text);
    for (rapidjson::SizeType i = 0; i < 6; ++i) EXPECT_EQ(back[i].GetDouble(), doc[i].GetDouble());
    EXPECT_EQ(std::wstring(back[6].GetString(), back[6].GetStringLength()), L"\U0001F600 \U0001F600 \u00e9");
}

TEST(JsonTextIO, DeepNestingAndBadNumbersFailCleanly) {
    xch_test::LogCapture log(2);
    // A million open brackets end in a parse error, not a stack overflow.
    EXPECT_TRUE(parse(std::wstring(1000000, L'[')).HasParseError());
    EXPECT_EQ(log.messages(2).size(), 1u);
    // Brackets inside strings do not count; moderate nesting is fine.
    EXPECT_FALSE(parse(L"[\"" + std::wstring(5000, L'[') + L"\\\"{\"]").HasParseError());
    EXPECT_FALSE(parse(std::wstring(200, L'[') + std::wstring(200, L']')).HasParseError());

    // Writing a document built deeper than the limit, or a NaN, throws.
    JsonDocument deep;
    xch::JsonValue* v = &deep.SetArray();
    for (int i = 0; i < 100000; ++i) {
        v->PushBack(xch::JsonValue(rapidjson::kArrayType), deep.GetAllocator());
        v = &(*v)[0];
    }
    JsonDocument nan;
    nan.SetArray().PushBack(std::numeric_limits<double>::quiet_NaN(), nan.GetAllocator());
    // The NaN comes after a long valid prefix: nothing of it may reach the
    // stream, which may be a pipe carrying the next message.
    JsonDocument late;
    late.SetArray();
    for (int i = 0; i < 10000; ++i) late.PushBack(xch::JsonValue(L"ok", late.GetAllocator()), late.GetAllocator());
    late.PushBack(std::numeric_limits<double>::infinity(), late.GetAllocator());
    for (const JsonDocument* doc : {&deep, &nan, &late}) {
        for (bool pretty : {true, false}) {
            std::wostringstream out;
            out << L"previous;";
            try {
                JsonTextIO::write(out, *doc, pretty);
                ADD_FAILURE() << "written";
            } catch (const std::runtime_error& e) {
                EXPECT_STREQ(e.what(), "Cannot write object into json document");
            }
            EXPECT_EQ(out.str(), L"previous;");
        }
    }
}

// What the writer refuses, it refuses before writing anything: nesting
// beyond the limit (by one level, in objects or arrays) and a NaN or an
// infinity wherever it sits. Everything else is written as rapidjson
// writes it.
TEST(JsonTextIO, WriterRefusesExactlyWhatItCannotWrite) {
    const std::size_t limit = xch::limits::kMaxJsonDepth;
    for (double leaf : {0.5, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                        -std::numeric_limits<double>::infinity()}) {
        for (std::size_t levels : {std::size_t(0), std::size_t(1), std::size_t(2), limit, limit + 1}) {
            for (int firstKind : {0, 1}) { // the leaf's container an object or an array
                // `levels` containers, objects and arrays in turn, around the
                // leaf, each with a finite number beside it.
                JsonDocument doc;
                auto& a = doc.GetAllocator();
                xch::JsonValue inner(leaf);
                for (std::size_t i = 0; i < levels; ++i) {
                    xch::JsonValue outer;
                    if ((i + firstKind) % 2 == 0) {
                        outer.SetObject().AddMember(L"n", 2.5, a).AddMember(L"v", inner, a);
                    } else {
                        outer.SetArray().PushBack(7, a).PushBack(inner, a);
                    }
                    inner = outer;
                }
                static_cast<xch::JsonValue&>(doc).Swap(inner);
                const bool writable = std::isfinite(leaf) && levels <= limit;
                for (bool pretty : {false, true}) {
                    std::wostringstream out;
                    out << L"previous;";
                    bool written = true;
                    try {
                        JsonTextIO::write(out, doc, pretty);
                    } catch (const std::runtime_error&) {
                        written = false;
                    }
                    const auto where = ::testing::Message() << "leaf " << leaf << " levels " << levels << " first "
                                                            << firstKind << " pretty " << pretty;
                    ASSERT_EQ(written, writable) << where;
                    std::wstring expected;
                    if (writable) {
                        ASSERT_TRUE(rapidjsonText(doc, pretty, expected)) << where;
                    }
                    EXPECT_EQ(out.str(), L"previous;" + expected) << where;
                }
            }
        }
    }
}

TEST(JsonTextIO, EveryFiniteDoubleReadsBackBitExact) {
    std::mt19937_64 rng(20261123);
    JsonDocument doc;
    doc.SetArray();
    std::vector<double> values = {-957.9515431665459, 5e-324, -2.2250738585072014e-308, 1.7976931348623157e308,
                                  0.1, 1.0 / 3.0, -0.0, 9007199254740993.0, 123456789012345680.0};
    while (values.size() < 100000) {
        // Random bit patterns cover every exponent; a third are "ordinary"
        // values with many digits, the kind that suffered most.
        std::uint64_t bits = rng();
        double d;
        std::memcpy(&d, &bits, sizeof d);
        if (values.size() % 3 == 0) d = std::ldexp(static_cast<double>(bits >> 11), -40) - 1000.0;
        if (std::isfinite(d)) values.push_back(d);
    }
    for (double d : values) doc.PushBack(d, doc.GetAllocator());
    JsonDocument back = parse(render(doc, false));
    ASSERT_TRUE(back.IsArray());
    ASSERT_EQ(back.Size(), values.size());
    std::size_t wrong = 0;
    for (rapidjson::SizeType i = 0; i < back.Size(); ++i) {
        const double d = back[i].GetDouble();
        if (std::memcmp(&d, &values[i], sizeof d) != 0 && ++wrong < 5)
            ADD_FAILURE() << "wrote " << values[i] << " read " << d;
    }
    EXPECT_EQ(wrong, 0u);
}

TEST(JsonTextIO, NumbersBeyondTheRangeOfADoubleAreRefused) {
    const std::wstring digits400(400, L'9');
    for (const std::wstring& text : {std::wstring(L"[21e308]"), std::wstring(L"[-1e400]"), std::wstring(L"1.8e308"),
                                     std::wstring(L"{\"a\":[1,0.00002e313]}"), L"[" + digits400 + L"]",
                                     L"[0." + digits400 + L"e309]"}) {
        JsonDocument doc = parse(text);
        EXPECT_EQ(doc.GetParseError(), rapidjson::kParseErrorNumberTooBig) << text;
        EXPECT_FALSE(doc.IsArray() || doc.IsObject() || doc.IsNumber());
    }
    EXPECT_EQ(parse(L"[21e308]").GetErrorOffset(), 1u);
    // The largest double, digits inside strings, and values too small for a
    // double (zero of their sign) are accepted.
    JsonDocument ok = parse(L"[1.7976931348623157e308,\"21e308\",1e-400,-1e-400,2.4703282292062328e-324]");
    ASSERT_TRUE(ok.IsArray()) << ok.GetParseError();
    EXPECT_EQ(ok[0].GetDouble(), std::numeric_limits<double>::max());
    EXPECT_EQ(ok[2].GetDouble(), 0.0);
    EXPECT_TRUE(std::signbit(ok[3].GetDouble()));
    EXPECT_EQ(ok[4].GetDouble(), 5e-324);

    // A stream-level reader turns the refusal into its described error.
    xch::ExchangeObjectWrapper wrapper;
    std::wistringstream in(L"{\"exchange_object_name\":\"exc_progress\",\"exchange_object_data\":{\"progress\":21e308}}");
    try {
        wrapper.readObject(in);
        ADD_FAILURE() << "accepted";
    } catch (const std::invalid_argument& e) {
        EXPECT_STREQ(e.what(), "ExchangeObjectWrapper::readObject: invalid json document");
    }
}

TEST(JsonTextIO, WriteToFileUsesTheNarrowCodePage) {
    xch_test::TestRecord record;
    record.label = L"plain \u4e2d";
    std::string path = xch_test::tempPath("record.json");
    JsonTextIO::writeToFile(record, std::wstring(path.begin(), path.end()));
    std::ifstream in(path, std::ios::binary); // the bytes as written
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    in.close();
    std::remove(path.c_str());
    // Pretty form in a text-mode file (CRLF line ends on Windows); the
    // character outside the code page became its default character.
#ifdef _WIN32
    EXPECT_EQ(bytes.substr(0, 17), "{\r\n  \"count\": -1,");
#else
    EXPECT_EQ(bytes.substr(0, 16), "{\n  \"count\": -1,");
#endif
    EXPECT_NE(bytes.find("\"label\": \"plain ?\""), std::string::npos) << bytes;
}

// The writer produces rapidjson's text character for character, lone
// surrogates and all.
TEST(JsonTextIO, WriterMatchesRapidjsonCharacterForCharacter) {
    std::mt19937_64 rng(7);
    for (int round = 0; round < 400; ++round) {
        JsonDocument doc;
        xch_test::randomJsonDocument(rng, doc);
        for (bool pretty : {false, true}) {
            std::wstring expected;
            const bool ok = rapidjsonText(doc, pretty, expected);
            std::wostringstream out;
            ASSERT_TRUE(ok);
            JsonTextIO::write(out, doc, pretty);
            ASSERT_EQ(out.str(), expected);
        }
    }
}

// The reader builds rapidjson's tree (with exact doubles), number forms
// included, from compact and pretty text, escapes and number notations.
TEST(JsonTextIO, ReaderMatchesRapidjsonOnValidText) {
    for (const wchar_t* text :
         {L"[0,-0,-0.0,0.0,1E+2,1e-2,-1.5E-300,0.1e1,123.456e-7,1e22,1e23,9007199254740993,0.1000000000000000055511151231257827021181583404541015625]",
          L"[4294967295,4294967296,-2147483648,-2147483649,9223372036854775807,-9223372036854775808,-9223372036854775809,"
          L"18446744073709551615,18446744073709551616,123456789012345678901234567890,1e-400,2.2250738585072011e-308]",
          L"{\"a\\\"b\":\"\\u00e9\\u20AC\\ud83d\\ude00 \\/\\b\\f\\n\\r\\t\\\\\", \"\" : [ ] , \"\\u0000\":{ }}",
          L" \t\r\n[ true ,false\n,null ] \r\n"}) {
        EXPECT_TRUE(expectSameParse(text)) << text;
    }
    std::mt19937_64 rng(11);
    xch_test::RandomJsonOptions options;
    options.invalidCharacters = false;
    for (int round = 0; round < 400; ++round) {
        JsonDocument doc;
        xch_test::randomJsonDocument(rng, doc, 8, options);
        for (bool pretty : {false, true}) {
            std::wstring text;
            ASSERT_TRUE(rapidjsonText(doc, pretty, text));
            ASSERT_TRUE(expectSameParse(text));
            EXPECT_EQ(exactly(parse(text)), exactly(doc)); // and the tree that was written
        }
    }
}

// Broken text fails with rapidjson's error code at rapidjson's offset and
// leaves a null root; so does every one-character change of valid text
// that breaks it.
TEST(JsonTextIO, ReaderReportsRapidjsonsErrors) {
    for (const wchar_t* text :
         {L"", L"  ", L"{}{}", L"[1,]", L"{\"a\":1,}", L"{\"a\" 1}", L"{1:2}", L"[1 2]", L"{\"a\":1 \"b\":2}", L"nul",
          L"tru", L"fals", L"[-]", L"[-a]", L"[01]", L"[1.]", L"[1.e5]", L"[1e]", L"[1e+]", L"[.5]", L"[+1]", L"\"abc",
          L"\"a\\x\"", L"\"\\u12\"", L"\"\\ud800\"", L"\"\\ud800\\u0041\"", L"\"\\ud800\\uzzzz\"", L"\"\x01\"",
          L"[NaN]", L"[Infinity]", L"{\"a\":[1,{\"b\":}]}", L"[1e999]", L"[-1e309]", L"[\"x\"\x00]", L"\x00{}"}) {
        EXPECT_TRUE(expectSameParse(text)) << text;
    }
    std::mt19937_64 rng(13);
    xch_test::RandomJsonOptions options;
    options.invalidCharacters = false;
    options.maxDepth = 3;
    const std::wstring alphabet = L"{}[],:\"\\ue.-+01aE \n";
    int compared = 0;
    for (int round = 0; round < 300; ++round) {
        JsonDocument doc;
        xch_test::randomJsonDocument(rng, doc, 3, options);
        std::wstring text;
        ASSERT_TRUE(rapidjsonText(doc, rng() % 2 == 0, text));
        for (int change = 0; change < 10; ++change) {
            std::wstring broken = text;
            const std::size_t at = rng() % (broken.size() + 1);
            const wchar_t c = alphabet[rng() % alphabet.size()];
            switch (rng() % 3) {
            case 0: broken.insert(at, 1, c); break;
            case 1: if (at < broken.size()) broken.erase(at, 1); break;
            default: if (at < broken.size()) broken[at] = c;
            }
            compared += expectSameParse(broken);
        }
    }
    EXPECT_GT(compared, 2900);
}

namespace {

// A wide input stream over `text` that hands it out `step` characters at a
// time, as a pipe or a socket does, with a given answer to "how much is
// there" (in_avail) once what it handed out is used up.
class Trickle : public std::wstreambuf {
public:
    enum class Hint { None, Eof, Exact, Less, More };

    Trickle(const std::wstring& text, std::size_t step, Hint hint, bool shortReads)
        : m_text(text), m_step(step), m_hint(hint), m_shortReads(shortReads) {}

private:
    std::size_t left() const { return m_text.size() - m_pos; }

    int_type underflow() override {
        if (!left()) return traits_type::eof();
        const std::size_t n = std::min(m_step, left());
        wchar_t* p = &m_text[m_pos];
        setg(p, p, p + n);
        m_pos += n;
        return traits_type::to_int_type(*p);
    }

    std::streamsize showmanyc() override {
        switch (m_hint) {
        case Hint::None: return 0;
        case Hint::Eof: return left() ? 0 : -1;
        case Hint::Exact: return static_cast<std::streamsize>(left());
        case Hint::Less: return static_cast<std::streamsize>(left() / 2);
        case Hint::More: return static_cast<std::streamsize>(2 * left() + 3);
        }
        return 0;
    }

    // Short reads: at most what one underflow gives, not the full request.
    std::streamsize xsgetn(wchar_t* s, std::streamsize n) override {
        if (!m_shortReads) return std::wstreambuf::xsgetn(s, n);
        if (gptr() == egptr() && traits_type::eq_int_type(underflow(), traits_type::eof())) return 0;
        const std::streamsize k = std::min<std::streamsize>(n, egptr() - gptr());
        std::copy(gptr(), gptr() + k, s);
        gbump(static_cast<int>(k));
        return k;
    }

    std::wstring m_text;
    std::size_t m_pos = 0;
    std::size_t m_step;
    Hint m_hint;
    bool m_shortReads;
};

} // namespace

// However a stream hands out its text (a few characters at a time, short
// reads, no or wrong size hints), the reader sees the whole of it: the
// same tree, or the same error at the same offset, as from a string stream.
TEST(JsonTextIO, ReaderTakesTheWholeStreamHoweverItArrives) {
    std::vector<std::wstring> texts = {L"", L"  ", L"0", L"-12.5e-3", L"\"\\ud83d\\ude00\\u00e9 \\\"x\\\\\"", L"true",
                                       L"[1,2", L"{\"a\":[null,false,1e999]}", L"[1] 2",
                                       std::wstring(L"[\"x\"]\0[junk after the end]", 26)};
    std::mt19937_64 rng(29);
    xch_test::RandomJsonOptions options;
    options.maxDepth = 3;
    for (int round = 0; round < 6; ++round) {
        JsonDocument doc;
        xch_test::randomJsonDocument(rng, doc, 3, options);
        std::wstring text;
        ASSERT_TRUE(rapidjsonText(doc, round % 2 == 1, text));
        texts.push_back(text);
        texts.push_back(text.substr(0, text.size() - 1 - rng() % (text.size() / 2))); // cut short
    }
    for (const std::wstring& text : texts) {
        const JsonDocument expected = parse(text);
        for (std::size_t step : {std::size_t(1), std::size_t(2), std::size_t(3), std::size_t(7), std::size_t(64),
                                 std::size_t(5000), text.size() + 1}) {
            for (auto hint : {Trickle::Hint::None, Trickle::Hint::Eof, Trickle::Hint::Exact, Trickle::Hint::Less,
                              Trickle::Hint::More}) {
                for (bool shortReads : {false, true}) {
                    Trickle source(text, step, hint, shortReads);
                    std::wistream in(&source);
                    JsonDocument doc;
                    JsonTextIO::read(in, doc);
                    const auto where = ::testing::Message() << "step " << step << " hint " << static_cast<int>(hint)
                                                            << " short " << shortReads << ": " << text.substr(0, 60);
                    ASSERT_EQ(doc.GetParseError(), expected.GetParseError()) << where;
                    ASSERT_EQ(doc.GetErrorOffset(), expected.GetErrorOffset()) << where;
                    ASSERT_EQ(exactly(doc), exactly(expected)) << where;
                }
            }
        }
    }
}
