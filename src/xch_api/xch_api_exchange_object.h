// The exchange object model.
//
// An exchange object writes itself into a JSON value and reads itself back
// (IJsonObject). Top-level objects (IExchangeObject) are also known by a
// registered type name, so that a receiver that reads only the name from a
// stream can make an empty object of the right class; large ones travel as
// binary JSON in shared memory and are loaded on demand.
//
// A concrete top-level class derives from ExchangeObjectImpl<Self> (which
// supplies name() and clone()), defines
//     static const std::wstring& objName();
// and registers one prototype in the library with
//     static StaticExchangeObject<Self> prototype;
#pragma once

#include <map>
#include <memory>
#include <string>

#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>

namespace xch {

class XCH_API IExchangeObject : public IJsonObject {
public:
    IExchangeObject();
    IExchangeObject(const IExchangeObject& other);
    IExchangeObject(IExchangeObject&& other) noexcept;
    IExchangeObject& operator=(const IExchangeObject& other);
    IExchangeObject& operator=(IExchangeObject&& other) noexcept;
    ~IExchangeObject() override;

    // The registered type name (the class's objName()).
    virtual const std::wstring& name() const = 0;
    // A new, independent copy; nested lists share their elements.
    virtual std::shared_ptr<IExchangeObject> clone() const = 0;
    // Whether the object travels as binary JSON in shared memory.
    virtual bool binary() const;
    // Whether that binary form is gzip-compressed.
    virtual bool compress() const;
    virtual bool isLoaded() const;
    // Fetches and reads the body from the shared-memory buffer named by
    // source(): decompresses a zlib or gzip stream, decodes the binary
    // JSON and calls readObject. Does nothing when already loaded, when the
    // source is empty or when the object is not binary. Exceptions
    // propagate and leave the object not loaded.
    //
    // The buffer is left in place (another reader, a clone or a retry may
    // still load it), unless releaseAfterLoad() is set: then a successful
    // load removes it. A failed load never removes it, so that a corrupt
    // body can be inspected.
    virtual void load();

    // Whether a successful load() removes the shared-memory buffer it read
    // (default false). Copied with the object: with it set, only the first
    // of an object and its clones to load finds the buffer.
    bool releaseAfterLoad() const { return m_releaseAfterLoad; }
    void setReleaseAfterLoad(bool release) { m_releaseAfterLoad = release; }

    // The UUID text of the shared-memory buffer holding the body.
    const std::wstring& source() const { return m_source; }
    void setSource(const std::wstring& source);

    // A new random (version 4) UUID in its 36-character lower-case form.
    static std::wstring generateUUID();

protected:
    std::wstring m_source;
    bool m_loaded = false;
    bool m_releaseAfterLoad = false;
};

// Supplies name() and clone() for a concrete top-level class `Self`
// deriving (directly or through `Base`) from IExchangeObject.
template <class Self, class Base = IExchangeObject>
class ExchangeObjectImpl : public Base {
public:
    using Base::Base;
    const std::wstring& name() const override { return Self::objName(); }
    std::shared_ptr<IExchangeObject> clone() const override {
        return std::make_shared<Self>(static_cast<const Self&>(*this));
    }
};

// The registry of prototypes by type name. Filled while the library loads
// (static initialisation) and read-only afterwards: get() is safe from
// any thread, add() and remove() are not.
class XCH_API ExchangeObjectRegistry {
public:
    static ExchangeObjectRegistry& instance();

    // Registers `object` under its name(); a later registration replaces
    // an earlier one. Null is ignored.
    void add(IExchangeObject* object);
    // Removes the entry of `object`'s name. Null is ignored.
    void remove(IExchangeObject* object);
    // A fresh clone of the prototype registered under exactly `typeName`,
    // or an empty pointer.
    std::shared_ptr<IExchangeObject> get(const std::wstring& typeName) const;

    ExchangeObjectRegistry();
    ExchangeObjectRegistry(const ExchangeObjectRegistry&);
    ExchangeObjectRegistry& operator=(const ExchangeObjectRegistry&);
    ~ExchangeObjectRegistry();

private:
    std::map<std::wstring, IExchangeObject*> m_prototypes;
};

// The registered prototype of T: registers itself on construction and
// removes its entry on destruction.
template <class T>
class StaticExchangeObject : public T {
public:
    StaticExchangeObject() : T() { ExchangeObjectRegistry::instance().add(this); }
    StaticExchangeObject(const StaticExchangeObject& other) : T(static_cast<const T&>(other)) {}
    StaticExchangeObject& operator=(const StaticExchangeObject& other) {
        T::operator=(static_cast<const T&>(other));
        return *this;
    }
    ~StaticExchangeObject() override { ExchangeObjectRegistry::instance().remove(this); }
};

} // namespace xch
