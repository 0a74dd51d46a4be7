// Reading an order from property objects built from the input: values of any type under any
// number, nested objects and collections that may point back at themselves or at each other.
// The read raises only _com_error, the graph it leaves is well formed, and writing it out and
// reading it back gives an equal order.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "FuzzCheck.h"
#include "qvox/order/COrderBarProperties.h"
#include "qvox/platform/PlatformObjects.h"

using namespace qvox;
using qvox::fuzz::Require;

namespace {

class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}
    bool Empty() const { return m_at >= m_size; }
    std::uint8_t Byte() { return m_at < m_size ? m_data[m_at++] : 0; }
    std::uint32_t Word() {
        std::uint32_t word = 0;
        for (int i = 0; i < 4; ++i)
            word = (word << 8) | Byte();
        return word;
    }

  private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_at = 0;
};

// Numbers near the order's and legs' properties, and a few beyond them.
int NumberOf(std::uint8_t byte) {
    return byte < 200 ? byte % 96 : 1000 + byte;
}

_variant_t ValueOf(Input& in, const std::vector<IMVPropertiesPtr>& pool) {
    const std::uint8_t kind = in.Byte();
    const std::uint32_t word = in.Word();
    switch (kind % 12) {
        case 0:
            return _variant_t();
        case 1:
            return _variant_t(static_cast<SHORT>(word));
        case 2:
            return _variant_t(static_cast<std::int32_t>(word));
        case 3: {
            double d = 0;
            const std::uint64_t bits = (static_cast<std::uint64_t>(word) << 32) | in.Word();
            std::memcpy(&d, &bits, sizeof(d));
            return _variant_t(d);
        }
        case 4: {
            std::string text;
            for (std::uint32_t n = word % 12; n > 0; --n)
                text.push_back(static_cast<char>(in.Byte()));
            return _variant_t(CString(text));
        }
        case 5:
            return _variant_t((word & 1) != 0);
        case 6:
            return _variant_t(word);
        case 7:
            return _variant_t(static_cast<std::int32_t>(word), VT_INT);
        case 8:
            return _variant_t(static_cast<char>(word));
        case 9:
            return _variant_t(static_cast<IDispatch*>(pool[word % pool.size()].GetInterfacePtr()));
        default: {
            // A collection of objects of the pool, any of them, any number of times.
            const IMVCollectionPtr collection = CMVCollection::Create();
            for (std::uint32_t n = word % 5; n > 0; --n) {
                const std::uint8_t pick = in.Byte();
                collection->Add(pick == 255 ? nullptr : pool[pick % pool.size()].GetInterfacePtr());
            }
            return _variant_t(static_cast<IUnknown*>(collection.GetInterfacePtr()));
        }
    }
}

// Links agree both ways and every record is reached once.
void RequireWellFormed(const COrderBarProperties& root) {
    std::vector<const COrderBarProperties*> pending{&root};
    std::size_t seen = 0;
    while (!pending.empty()) {
        const COrderBarProperties* order = pending.back();
        pending.pop_back();
        Require(++seen < 1000000);
        if (const COrderBarProperties* next = order->GetOCANext()) {
            Require(next->GetOCAPrevious() == order);
            Require(next->GetOSOParent() == order->GetOSOParent());
            pending.push_back(next);
        }
        for (ULONG i = 0; i < order->GetOSOChildCount(); ++i) {
            const COrderBarProperties* child = order->GetOSOChild(i);
            Require(child != nullptr && child->GetOSOParent() == order);
            Require(child->GetOCAPrevious() == nullptr);
            pending.push_back(child);
        }
    }
}

// Two property objects hold the same keys in the same order with the same plain values (doubles
// bit for bit, so that a NaN equals itself); nested objects are compared by presence only.
bool SameProperties(IMVProperties* a, IMVProperties* b) {
    LONG countA = 0;
    LONG countB = 0;
    a->GetCount(&countA);
    b->GetCount(&countB);
    if (countA != countB) return false;
    for (LONG i = 0; i < countA; ++i) {
        _variant_t keyA, keyB, valueA, valueB;
        a->GetKeyAt(i, &keyA);
        b->GetKeyAt(i, &keyB);
        if (keyA.lVal != keyB.lVal) return false;
        GetPropertyByNumber(a, keyA.lVal, &valueA);
        GetPropertyByNumber(b, keyB.lVal, &valueB);
        if (valueA.vt != valueB.vt) return false;
        switch (valueA.vt) {
            case VT_BSTR:
                if (BstrView(valueA.bstrVal) != BstrView(valueB.bstrVal)) return false;
                break;
            case VT_DISPATCH:
            case VT_UNKNOWN:
                break;
            default:
                if (std::memcmp(&valueA.llVal, &valueB.llVal, sizeof(valueA.llVal)) != 0)
                    return false;
        }
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input in(data, size);
    std::vector<IMVPropertiesPtr> pool;
    for (int n = 1 + in.Byte() % 6; n > 0; --n)
        pool.push_back(CMVProperties::Create());
    while (!in.Empty()) {
        IMVProperties* object = pool[in.Byte() % pool.size()];
        const int number = NumberOf(in.Byte());
        SetPropertyByNumber(object, number, ValueOf(in, pool));
    }

    COrderBarProperties order;
    bool read = true;
    try {
        order.SetOrderProperties(IDispatchPtr(pool[0]));
    } catch (const _com_error&) {
        read = false;
    }
    RequireWellFormed(order);
    if (read) {
        const IMVPropertiesPtr written(order.GetOrderProperties());
        COrderBarProperties again;
        again.SetOrderProperties(IDispatchPtr(written));
        RequireWellFormed(again);
        Require(SameProperties(written, IMVPropertiesPtr(again.GetOrderProperties())));
        Require(again.GetOSOChildCount() == order.GetOSOChildCount());
    }

    // Objects that hold each other are a cycle of references: empty them so that they go.
    for (const IMVPropertiesPtr& object : pool) {
        LONG count = 0;
        object->GetCount(&count);
        for (LONG i = 0; i < count; ++i) {
            _variant_t key;
            object->GetKeyAt(i, &key);
            object->SetValue(key, _variant_t());
        }
    }
    return 0;
}
