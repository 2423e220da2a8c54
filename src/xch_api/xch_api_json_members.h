// Shared rules for reading and writing the members of model classes.
//
// A class lists its JSON keys once, in writing order, in a static template
//
//     template <class Io, class Self>
//     void ExcProgress::members(Io& io, Self& self) {
//         io(L"progress", self.m_progress);
//         io(L"progress_max", self.m_progressMax);
//         io(L"pulse", self.m_pulse);
//         io(L"stage", self.m_stage);
//     }
//
// and its readObject/writeObject run that list with json::Reader or
// json::Writer. The field's C++ type picks the rule (Codec<T>):
//   bool                    JSON true/false; read only from a boolean
//   int32/uint32/int64/uint64
//                           JSON number of that width; read only when the
//                           number fits the width exactly
//   double                  JSON double; read only from a double (an
//                           integer literal is not a double)
//   std::wstring            JSON string
//   enumeration             string from its EnumTable (fallback rules there)
//   IJsonObject subclass    its own writeObject/readObject
//   std::shared_ptr<T>      T's JSON; read into a new T when empty; a null
//                           pointer is written as JSON null
//   std::vector<T>          JSON array; reading appends to what is held
// A third argument names a rule for a key that does not follow its type's
// default (json::optional, json::anyNumber, or a class's own rule object
// with read/write members).
//
// Reading never throws: a missing key or a member of another JSON type
// leaves the field as it is.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include <logging/vx_link_logger.h>
#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>

namespace xch {
namespace json {

// ---- value codecs -------------------------------------------------------

template <class T, class Enable = void>
struct Codec;

template <>
struct Codec<bool> {
    static void write(JsonValue& v, JsonAllocator&, bool x) { v.SetBool(x); }
    static bool read(const JsonValue& v, bool& x) {
        if (!v.IsBool()) return false;
        x = v.GetBool();
        return true;
    }
};

template <>
struct Codec<std::int32_t> {
    static void write(JsonValue& v, JsonAllocator&, std::int32_t x) { v.SetInt(x); }
    static bool read(const JsonValue& v, std::int32_t& x) {
        if (!v.IsInt()) return false;
        x = v.GetInt();
        return true;
    }
};

template <>
struct Codec<std::uint32_t> {
    static void write(JsonValue& v, JsonAllocator&, std::uint32_t x) { v.SetUint(x); }
    static bool read(const JsonValue& v, std::uint32_t& x) {
        if (!v.IsUint()) return false;
        x = v.GetUint();
        return true;
    }
};

template <>
struct Codec<std::int64_t> {
    static void write(JsonValue& v, JsonAllocator&, std::int64_t x) { v.SetInt64(x); }
    static bool read(const JsonValue& v, std::int64_t& x) {
        if (!v.IsInt64()) return false;
        x = v.GetInt64();
        return true;
    }
};

template <>
struct Codec<std::uint64_t> {
    static void write(JsonValue& v, JsonAllocator&, std::uint64_t x) { v.SetUint64(x); }
    static bool read(const JsonValue& v, std::uint64_t& x) {
        if (!v.IsUint64()) return false;
        x = v.GetUint64();
        return true;
    }
};

template <>
struct Codec<double> {
    static void write(JsonValue& v, JsonAllocator&, double x) { v.SetDouble(x); }
    static bool read(const JsonValue& v, double& x) {
        if (!v.IsDouble()) return false;
        x = v.GetDouble();
        return true;
    }
};

template <>
struct Codec<std::wstring> {
    static void write(JsonValue& v, JsonAllocator& a, const std::wstring& x) {
        v.SetString(x.data(), static_cast<rapidjson::SizeType>(x.size()), a);
    }
    static bool read(const JsonValue& v, std::wstring& x) {
        if (!v.IsString()) return false;
        x.assign(v.GetString(), v.GetStringLength());
        return true;
    }
};

template <class E>
struct Codec<E, std::enable_if_t<std::is_enum_v<E>>> {
    static void write(JsonValue& v, JsonAllocator& a, E x) {
        Codec<std::wstring>::write(v, a, enumToString(x));
    }
    static bool read(const JsonValue& v, E& x) {
        if (!v.IsString()) return false;
        x = enumFromString<E>(std::wstring(v.GetString(), v.GetStringLength()));
        return true;
    }
};

template <class T>
struct Codec<T, std::enable_if_t<std::is_base_of_v<IJsonObject, T>>> {
    static void write(JsonValue& v, JsonAllocator& a, const T& x) { x.writeObject(v, a); }
    static bool read(const JsonValue& v, T& x) {
        x.readObject(v);
        return true;
    }
};

template <class T>
struct Codec<std::shared_ptr<T>> {
    static void write(JsonValue& v, JsonAllocator& a, const std::shared_ptr<T>& x) {
        if (x)
            Codec<T>::write(v, a, *x);
        else
            v.SetNull();
    }
    static bool read(const JsonValue& v, std::shared_ptr<T>& x) {
        if (!x)
            x = std::make_shared<T>();
        return Codec<T>::read(v, *x);
    }
};

template <class T>
struct Codec<std::vector<T>> {
    static void write(JsonValue& v, JsonAllocator& a, const std::vector<T>& x) {
        v.SetArray();
        v.Reserve(static_cast<rapidjson::SizeType>(x.size()), a);
        for (const T& element : x) {
            if constexpr (std::is_pointer_v<T> || IsSharedPtr<T>::value)
                if (!element) continue;
            JsonValue item;
            Codec<T>::write(item, a, element);
            v.PushBack(item, a);
        }
    }
    // Appends every element that its codec accepts.
    static bool read(const JsonValue& v, std::vector<T>& x) {
        if (!v.IsArray()) return false;
        for (const JsonValue& item : v.GetArray()) {
            T element{};
            if (Codec<T>::read(item, element))
                x.push_back(std::move(element));
        }
        return true;
    }

private:
    template <class U> struct IsSharedPtr : std::false_type {};
    template <class U> struct IsSharedPtr<std::shared_ptr<U>> : std::true_type {};
};

template <class T, class Cmp>
struct Codec<std::set<T, Cmp>> {
    static void write(JsonValue& v, JsonAllocator& a, const std::set<T, Cmp>& x) {
        v.SetArray();
        v.Reserve(static_cast<rapidjson::SizeType>(x.size()), a);
        for (const T& element : x) {
            JsonValue item;
            Codec<T>::write(item, a, element);
            v.PushBack(item, a);
        }
    }
    // Inserts every element that its codec accepts; an element equal to
    // one already held is dropped (the first one stays).
    static bool read(const JsonValue& v, std::set<T, Cmp>& x) {
        if (!v.IsArray()) return false;
        for (const JsonValue& item : v.GetArray()) {
            T element{};
            if (Codec<T>::read(item, element))
                x.insert(std::move(element));
        }
        return true;
    }
};

// ---- rules for keys that differ from their type's default ----------------

// Whether a field holds nothing worth writing for an optional key.
inline bool isUnset(const std::wstring& x) { return x.empty(); }
template <class T> bool isUnset(const std::vector<T>& x) { return x.empty(); }
template <class T> bool isUnset(const std::shared_ptr<T>& x) { return !x; }
template <class E, std::enable_if_t<std::is_enum_v<E>, int> = 0>
bool isUnset(E x) { return static_cast<std::underlying_type_t<E>>(x) == 0; }

// The key is written only when the field is set (non-empty).
struct Optional {
    template <class T>
    bool write(JsonValue& v, JsonAllocator& a, const T& x) const {
        if (isUnset(x)) return false;
        Codec<T>::write(v, a, x);
        return true;
    }
    template <class T>
    void read(const JsonValue& v, T& x) const { Codec<T>::read(v, x); }
};
constexpr Optional optional{};

// A double read from any JSON number (integer or double).
struct AnyNumber {
    bool write(JsonValue& v, JsonAllocator&, double x) const {
        v.SetDouble(x);
        return true;
    }
    // Whether the member was taken.
    bool read(const JsonValue& v, double& x) const {
        if (!v.IsNumber()) return false;
        x = v.GetDouble();
        return true;
    }
};
constexpr AnyNumber anyNumber{};

// A list of nested values held by value whose elements are read only when of
// the JSON kind `Kind` (others are skipped); reading appends.
template <rapidjson::Type Kind>
struct ElementsOfKind {
    template <class T>
    bool write(JsonValue& v, JsonAllocator& a, const std::vector<T>& x) const {
        Codec<std::vector<T>>::write(v, a, x);
        return true;
    }
    template <class T>
    void read(const JsonValue& v, std::vector<T>& x) const {
        if (!v.IsArray()) return;
        for (const JsonValue& item : v.GetArray()) {
            if (item.GetType() != Kind) continue;
            x.emplace_back();
            x.back().readObject(item);
        }
    }
};

// A list of nested objects whose non-object elements are skipped on reading.
struct ObjectsOnly : ElementsOfKind<rapidjson::kObjectType> {
    // Lists of nested objects held by value.
    using ElementsOfKind::read;
    using ElementsOfKind::write;
    template <class T>
    bool write(JsonValue& v, JsonAllocator& a, const std::vector<std::shared_ptr<T>>& x) const {
        Codec<std::vector<std::shared_ptr<T>>>::write(v, a, x);
        return true;
    }
    template <class T>
    void read(const JsonValue& v, std::vector<std::shared_ptr<T>>& x) const {
        if (!v.IsArray()) return;
        for (const JsonValue& item : v.GetArray()) {
            if (!item.IsObject()) continue;
            auto element = std::make_shared<T>();
            element->readObject(item);
            x.push_back(std::move(element));
        }
    }
};
constexpr ObjectsOnly objectsOnly{};

// A nested object held by pointer, read into a NEW object only when the
// member is of the JSON kind `Kind` (an object unless stated; anything else
// leaves the pointer as it is); an empty pointer is written as JSON null.
template <rapidjson::Type Kind = rapidjson::kObjectType>
struct NewOfKind {
    template <class T>
    bool write(JsonValue& v, JsonAllocator& a, const std::shared_ptr<T>& x) const {
        Codec<std::shared_ptr<T>>::write(v, a, x);
        return true;
    }
    template <class T>
    void read(const JsonValue& v, std::shared_ptr<T>& x) const {
        if (v.GetType() != Kind) return;
        auto object = std::make_shared<T>();
        object->readObject(v);
        x = std::move(object);
    }
};
using NewObject = NewOfKind<>;
constexpr NewObject newObject{};

// The key is written only when `when` holds; it is read whenever present.
template <class Rule>
struct WrittenIf {
    bool when;
    Rule rule;
    template <class T>
    bool write(JsonValue& v, JsonAllocator& a, const T& x) const {
        return when && rule.write(v, a, x);
    }
    template <class T>
    void read(const JsonValue& v, T& x) const { rule.read(v, x); }
};

// The plain rule of a field's type, for combining with others.
struct Plain {
    template <class T>
    bool write(JsonValue& v, JsonAllocator& a, const T& x) const {
        Codec<T>::write(v, a, x);
        return true;
    }
    // Whether the member was taken.
    template <class T>
    bool read(const JsonValue& v, T& x) const { return Codec<T>::read(v, x); }
};
constexpr Plain plain{};

template <class Rule = Plain>
WrittenIf<Rule> writtenIf(bool when, Rule rule = Rule{}) { return {when, rule}; }

// ---- rules of the mechanical data ----------------------------------------------
//
// Nested values of the mechanical model are taken only when the member has
// the JSON kind their class writes; anything else leaves the field as it
// is, silently (no "should have a JSON ... type." line for a mistyped key).

// A nested object of the array form whose pointer is made anew when the
// member is a JSON array (e.g. a list class written as a bare array).
constexpr NewOfKind<rapidjson::kArrayType> newArray{};

// A nested value held by value (vector, entity, colour, ...), read only when
// the member is of the JSON kind `Kind`.
template <rapidjson::Type Kind>
struct ValueOfKind {
    template <class T>
    bool write(JsonValue& v, JsonAllocator& a, const T& x) const {
        x.writeObject(v, a);
        return true;
    }
    template <class T>
    void read(const JsonValue& v, T& x) const {
        if (v.GetType() == Kind) x.readObject(v);
    }
};
// Vectors, points and matrices (array forms).
constexpr ValueOfKind<rapidjson::kArrayType> whenArray{};
// Entities, colours, transformations and other object forms.
constexpr ValueOfKind<rapidjson::kObjectType> whenObject{};

// A list of values of an array form (points, directions) whose non-array
// elements are skipped on reading; reading appends.
using ArraysOnly = ElementsOfKind<rapidjson::kArrayType>;
constexpr ArraysOnly arraysOnly{};

// ---- rules of the display model (numbers, fixed arrays, optional members) --

// An enumeration that travels as its number: written as a JSON integer,
// read from any int32 (a number outside the enumerators is kept as it is).
struct AsNumber {
    template <class E>
    bool write(JsonValue& v, JsonAllocator&, E x) const {
        static_assert(std::is_enum_v<E>, "json::asNumber is for enumerations");
        v.SetInt(static_cast<std::int32_t>(x));
        return true;
    }
    template <class E>
    void read(const JsonValue& v, E& x) const {
        if (v.IsInt()) x = static_cast<E>(v.GetInt());
    }
};
constexpr AsNumber asNumber{};

// N doubles as a JSON array of N doubles; read by position from any JSON
// number (integers included). Elements that are not numbers keep their
// value; elements beyond N are ignored; a non-array changes nothing.
struct Numbers {
    template <std::size_t N>
    bool write(JsonValue& v, JsonAllocator& a, const std::array<double, N>& x) const {
        v.SetArray();
        v.Reserve(static_cast<rapidjson::SizeType>(N), a);
        for (double d : x)
            v.PushBack(JsonValue(d), a);
        return true;
    }
    template <std::size_t N>
    void read(const JsonValue& v, std::array<double, N>& x) const {
        if (!v.IsArray()) return;
        for (rapidjson::SizeType i = 0; i < N && i < v.Size(); ++i)
            if (v[i].IsNumber()) x[i] = v[i].GetDouble();
    }
};
constexpr Numbers numbers{};

// N values of one type as a JSON array, each with its type's codec; read
// by position, an element its codec refuses keeping its value.
struct FixedArray {
    template <class T, std::size_t N>
    bool write(JsonValue& v, JsonAllocator& a, const std::array<T, N>& x) const {
        v.SetArray();
        v.Reserve(static_cast<rapidjson::SizeType>(N), a);
        for (const T& element : x) {
            JsonValue item;
            Codec<T>::write(item, a, element);
            v.PushBack(item, a);
        }
        return true;
    }
    template <class T, std::size_t N>
    void read(const JsonValue& v, std::array<T, N>& x) const {
        if (!v.IsArray()) return;
        for (rapidjson::SizeType i = 0; i < N && i < v.Size(); ++i)
            Codec<T>::read(v[i], x[i]);
    }
};
constexpr FixedArray fixedArray{};

// `rule`, except that the key is written only when the field is set
// (isUnset above): e.g. optionalWith(newObject) for a nested object held
// by pointer, optionalWith(objectsOnly) for a list written only when not
// empty.
template <class Rule>
struct OptionalWith {
    Rule rule;
    template <class T>
    bool write(JsonValue& v, JsonAllocator& a, const T& x) const {
        return !isUnset(x) && rule.write(v, a, x);
    }
    template <class T>
    void read(const JsonValue& v, T& x) const { rule.read(v, x); }
};
template <class Rule>
OptionalWith<Rule> optionalWith(Rule rule) { return {rule}; }

// A nested object whose "nothing set" form is JSON null (an unset colour,
// an empty clipping plane): null is read as "no change", quietly; any
// other value goes to the object's own reader (which logs what it refuses).
struct NullAsUnset {
    template <class T>
    bool write(JsonValue& v, JsonAllocator& a, const T& x) const {
        x.writeObject(v, a);
        return true;
    }
    template <class T>
    void read(const JsonValue& v, T& x) const {
        if (!v.IsNull()) x.readObject(v);
    }
};
constexpr NullAsUnset nullAsUnset{};

// A one-way key: read with `rule`, never written.
template <class Rule>
struct ReadOnly {
    Rule rule;
    template <class T>
    bool write(JsonValue&, JsonAllocator&, const T&) const { return false; }
    template <class T>
    void read(const JsonValue& v, T& x) const { rule.read(v, x); }
};
template <class Rule>
ReadOnly<Rule> readOnly(Rule rule) { return {rule}; }

// ---- rules of the PMI model ------------------------------------------------

// N doubles as a JSON array, read strictly in order from the first element:
// reading stops at the first element that is not a JSON double (an integer
// literal stops it too) or at the end of the array, and components not
// reached keep their values; elements beyond N are ignored. A non-array
// changes nothing. (E.g. the RGBA colour of a PMI text.)
struct LeadingDoubles {
    template <std::size_t N>
    bool write(JsonValue& v, JsonAllocator& a, const std::array<double, N>& x) const {
        return Numbers{}.write(v, a, x);
    }
    template <std::size_t N>
    void read(const JsonValue& v, std::array<double, N>& x) const {
        if (!v.IsArray()) return;
        for (rapidjson::SizeType i = 0; i < N && i < v.Size(); ++i) {
            if (!v[i].IsDouble()) return;
            x[i] = v[i].GetDouble();
        }
    }
};
constexpr LeadingDoubles leadingDoubles{};

// N values held in a std::array, written as a JSON array of N elements
// (each with `rule`) and read by position with `rule` (an element the rule
// refuses keeps its value). With a size message, an array whose size is
// not exactly N logs the message at warning level and changes nothing;
// without one, extra elements are ignored and missing ones keep their
// values. A non-array changes nothing, silently.
template <class Rule>
struct Positional {
    Rule rule;
    const char* sizeMessage;
    template <class T, std::size_t N>
    bool write(JsonValue& v, JsonAllocator& a, const std::array<T, N>& x) const {
        v.SetArray();
        v.Reserve(static_cast<rapidjson::SizeType>(N), a);
        for (const T& element : x) {
            JsonValue item;
            if (!rule.write(item, a, element)) item.SetNull();
            v.PushBack(item, a);
        }
        return true;
    }
    template <class T, std::size_t N>
    void read(const JsonValue& v, std::array<T, N>& x) const {
        if (!v.IsArray()) return;
        if (sizeMessage && v.Size() != N) {
            VX_LOG(vx_link::LevelWarning, sizeMessage);
            return;
        }
        for (rapidjson::SizeType i = 0; i < N && i < v.Size(); ++i)
            rule.read(v[i], x[i]);
    }
};
template <class Rule = Plain>
Positional<Rule> positional(Rule rule = Rule{}) { return {rule, nullptr}; }
template <class Rule = Plain>
Positional<Rule> exactSize(const char* sizeMessage, Rule rule = Rule{}) { return {rule, sizeMessage}; }

// A field that comes with a flag saying whether it was given: written with
// `rule` always; reading sets the flag to whether `rule` took the member,
// and a missing key clears it (see Reader: rules may handle absence).
template <class Rule, class Flag>
struct SetsFlag {
    Flag& flag;
    Rule rule;
    template <class T>
    bool write(JsonValue& v, JsonAllocator& a, const T& x) const { return rule.write(v, a, x); }
    template <class T>
    void read(const JsonValue& v, T& x) const { flag = rule.read(v, x); }
    template <class T>
    void absent(T&) const { flag = false; }
};
template <class Rule = Plain, class Flag>
SetsFlag<Rule, Flag> setsFlag(Flag& flag, Rule rule = Rule{}) { return {flag, rule}; }

// A list of nested objects held by shared_ptr whose elements, on reading,
// are handed to `add` (the owner's adder, so that the owner sees each one,
// e.g. to index it) instead of being appended directly: each object
// element gives a new object, read from it; other elements are skipped.
// Written like objectsOnly.
template <class Add>
struct ObjectsAddedBy {
    Add add;
    template <class T>
    bool write(JsonValue& v, JsonAllocator& a, const std::vector<std::shared_ptr<T>>& x) const {
        return ObjectsOnly{}.write(v, a, x);
    }
    template <class T>
    void read(const JsonValue& v, std::vector<std::shared_ptr<T>>&) const {
        if (!v.IsArray()) return;
        for (const JsonValue& item : v.GetArray()) {
            if (!item.IsObject()) continue;
            auto element = std::make_shared<T>();
            element->readObject(item);
            add(element);
        }
    }
};
template <class Add>
ObjectsAddedBy<Add> objectsAddedBy(Add add) { return {add}; }

// ---- the two visitors ----------------------------------------------------

// Reads the members of one JSON object into fields.
class Reader {
public:
    // Lets a members list tell the two visitors apart (a key written only
    // in some states is still read whenever present).
    static constexpr bool reading = true;

    explicit Reader(const JsonValue& object) : m_object(object) {}

    // The member `key`, or null when absent.
    const JsonValue* find(const wchar_t* key) const {
        if (!m_object.IsObject()) return nullptr;
        auto it = m_object.FindMember(key);
        return it == m_object.MemberEnd() ? nullptr : &it->value;
    }

    template <class T>
    void operator()(const wchar_t* key, T& field) {
        if (const JsonValue* member = find(key))
            Codec<T>::read(*member, field);
    }

    // A rule with an `absent(field)` member is told when the key is
    // missing (json::setsFlag clears its flag then).
    template <class T, class Rule>
    void operator()(const wchar_t* key, T& field, const Rule& rule) {
        if (const JsonValue* member = find(key))
            rule.read(*member, field);
        else
            whenAbsent(rule, field, 0);
    }

private:
    template <class Rule, class T>
    static auto whenAbsent(const Rule& rule, T& field, int) -> decltype(rule.absent(field), void()) {
        rule.absent(field);
    }
    template <class Rule, class T>
    static void whenAbsent(const Rule&, T&, long) {}

    const JsonValue& m_object;
};

// Appends members to a JSON object, in call order.
class Writer {
public:
    static constexpr bool reading = false;

    // `object` becomes an object if it is not one already (a derived class
    // appends to what its base wrote).
    Writer(JsonValue& object, JsonAllocator& allocator)
        : m_object(object), m_allocator(allocator) {
        if (!m_object.IsObject()) m_object.SetObject();
    }

    template <class T>
    void operator()(const wchar_t* key, const T& field) {
        JsonValue value;
        Codec<T>::write(value, m_allocator, field);
        add(key, value);
    }

    template <class T, class Rule>
    void operator()(const wchar_t* key, const T& field, const Rule& rule) {
        JsonValue value;
        if (rule.write(value, m_allocator, field))
            add(key, value);
    }

    // Adds `value` under `key` (the key is copied).
    void add(const wchar_t* key, JsonValue& value) {
        m_object.AddMember(JsonValue(key, m_allocator), value, m_allocator);
    }

private:
    JsonValue& m_object;
    JsonAllocator& m_allocator;
};

// ---- shape checks ----------------------------------------------------------

// Logs "<className> object should have a JSON object type." at error level
// and returns false when `value` is not an object.
XCH_API bool expectObject(const JsonValue& value, const char* className);

// Logs `message` at `level` and returns false when `value` is not an
// object (for classes whose refusal has its own text).
XCH_API bool expectObject(const JsonValue& value, int level, const char* message);

// Logs `message` at error level and returns false when `value` is not an
// array.
XCH_API bool expectArray(const JsonValue& value, const char* message);

// Reads `object` with its members list after the object shape check.
template <class T>
void readMembers(const JsonValue& value, const char* className, T& object) {
    if (!expectObject(value, className)) return;
    Reader reader(value);
    T::members(reader, object);
}

// Makes `value` an empty object and writes `object`'s members list into it.
template <class T>
void writeMembers(JsonValue& value, JsonAllocator& allocator, const T& object) {
    value.SetObject();
    Writer writer(value, allocator);
    T::members(writer, object);
}

} // namespace json
} // namespace xch

// ---- readObject/writeObject from a members list ------------------------------
//
// One line in a class's source file defines both functions from the class's
// members list, so that every class follows the same rules; the level-6
// trace line still carries each function's own signature.
//
//   XCH_JSON_IO(ExcEntity)
//       not an object: "ExcEntity object should have a JSON object type."
//       (level 2), nothing read; writing starts from an empty object
//   XCH_JSON_IO_DERIVED(ExcPMINote, ExcPMIAnnotation)
//       the same check with the derived class's name, then the base reads
//       (writes) its keys first and the class adds its own
//   XCH_JSON_IO_CHECKED(ExcMiscProperty, checkExpression)
//       a class whose shape check differs: `checkExpression` sees `value`
//       and is true when reading may go on (it logs what it refuses)
#define XCH_JSON_IO_CHECKED(Class, checkExpression)                           \
    void Class::readObject(const ::xch::JsonValue& value) {                   \
        VX_TRACE();                                                           \
        if (!(checkExpression)) return;                                       \
        ::xch::json::Reader reader_(value);                                   \
        Class::members(reader_, *this);                                       \
    }                                                                         \
    void Class::writeObject(::xch::JsonValue& value,                          \
                            ::xch::JsonAllocator& allocator) const {          \
        VX_TRACE();                                                           \
        ::xch::json::writeMembers(value, allocator, *this);                   \
    }

#define XCH_JSON_IO(Class) XCH_JSON_IO_CHECKED(Class, ::xch::json::expectObject(value, #Class))

#define XCH_JSON_IO_DERIVED(Class, Base) XCH_JSON_IO_DERIVED_AS(, Class, Base, #Class)

//   XCH_JSON_IO_DERIVED_AS(template <class T>, ExcMfgFeatureHoleType<T>,
//                          ExcMfgFeatureHole, "ExcMfgFeatureHoleType")
//       XCH_JSON_IO_DERIVED for a class template (the prefix goes before
//       each definition) or a class whose logged name differs
#define XCH_JSON_IO_DERIVED_AS(Prefix, Class, Base, name)                      \
    Prefix void Class::readObject(const ::xch::JsonValue& value) {            \
        VX_TRACE();                                                           \
        if (!::xch::json::expectObject(value, name)) return;                  \
        Base::readObject(value);                                              \
        ::xch::json::Reader reader_(value);                                   \
        Class::members(reader_, *this);                                       \
    }                                                                         \
    Prefix void Class::writeObject(::xch::JsonValue& value,                   \
                                   ::xch::JsonAllocator& allocator) const {   \
        VX_TRACE();                                                           \
        Base::writeObject(value, allocator);                                  \
        ::xch::json::Writer writer_(value, allocator);                        \
        Class::members(writer_, *this);                                       \
    }

//   XCH_JSON_IO_ARRAY(ExcEntityData, m_data, ::xch::json::objectsOnly)
//       a class whose JSON form is a bare array held in one field: a value
//       that is not an array logs "ExcEntityData object should have a JSON
//       array type." (level 2) and changes nothing; otherwise `rule` reads
//       the field from (writes it as) the value itself
#define XCH_JSON_IO_ARRAY(Class, field, rule)                                 \
    void Class::readObject(const ::xch::JsonValue& value) {                   \
        VX_TRACE();                                                           \
        if (!::xch::json::expectArray(value, #Class " object should have a JSON array type.")) \
            return;                                                           \
        (rule).read(value, field);                                            \
    }                                                                         \
    void Class::writeObject(::xch::JsonValue& value,                          \
                            ::xch::JsonAllocator& allocator) const {          \
        VX_TRACE();                                                           \
        (rule).write(value, allocator, field);                                \
    }

namespace xch {
namespace json {

// The adders of the model lists: appends `element` unless it is null; a
// null one is not appended and `nullMessage` is logged at warning level.
template <class T, class U>
bool appendNonNull(std::vector<std::shared_ptr<T>>& list, const std::shared_ptr<U>& element,
                   const char* nullMessage) {
    if (!element) {
        VX_LOG(vx_link::LevelWarning, nullMessage);
        return false;
    }
    list.push_back(element);
    return true;
}

} // namespace json
} // namespace xch
