// Saved order defaults from any bytes: each input byte run becomes a value of some type and
// size in an in-memory settings store, and loading the defaults must take only well-formed
// values and never read past them.
//
// Input: for each of the six values in turn, one byte of type (its low 3 bits), one byte of size,
// then that many bytes of data; the input may end anywhere.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "FuzzCheck.h"
#include "qvox/order/COrderBarProperties.h"
#include "qvox/platform/Platform.h"
#include "qvox/platform/Registry.h"

using qvox::fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const char* const kNames[] = {"DefDuration", "QtyType", "DefQty",
                                         "QtyDollar",   "DefType", "DefRoute"};
    qvox::ScopedPlatformServices services(
        {nullptr, nullptr, nullptr,
         std::make_shared<qvox::FixedPlatformDirectories>("/nonexistent", "Software\\Fuzz"),
         qvox::SqliteRegistryStore::InMemory()});
    qvox::HKEY key = nullptr;
    Require(qvox::RegCreateKeyExA(
                qvox::HKEY_CURRENT_USER, "Software\\Fuzz\\Order Entry\\EquitiesSettings", 0,
                nullptr, 0, qvox::KEY_ALL_ACCESS, nullptr, &key, nullptr) == qvox::ERROR_SUCCESS);
    std::size_t at = 0;
    for (const char* name : kNames) {
        if (size - at < 2) break;
        const qvox::DWORD type = data[at] & 7u;
        const std::size_t length = std::min<std::size_t>(data[at + 1], size - at - 2);
        at += 2;
        // An exact-size copy, so that a read past the value is caught.
        std::unique_ptr<qvox::BYTE[]> value(new qvox::BYTE[length == 0 ? 1 : length]);
        if (length > 0) std::memcpy(value.get(), data + at, length);
        at += length;
        qvox::RegSetValueExA(key, name, 0, type, value.get(), static_cast<qvox::DWORD>(length));
    }
    qvox::RegCloseKey(key);

    qvox::COrderBarProperties order;
    order.LoadEquitiesDefaults(true);
    for (const qvox::ValidString* text : {&order.m_Duration, &order.m_OrderType, &order.m_Route}) {
        Require(text->IsValid() && text->GetText().GetLength() < 100);
    }
    Require(order.m_Quantity.valid && order.m_QuantityType.valid);
    return 0;
}
