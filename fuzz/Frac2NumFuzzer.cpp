// Frac2Num on any text, and the fraction and display writers on whatever it reads: no crash, no
// read past the text, and the writers stay inside the room their callers give them.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "FuzzCheck.h"
#include "qvox/price/Helper.h"
#include "qvox/price/PriceText.h"

using qvox::fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const char code = static_cast<char>(data[0]);
    const qvox::CString text(std::string(reinterpret_cast<const char*>(data + 1), size - 1));

    const double value = qvox::Helper::Frac2Num(text);

    const qvox::CString fraction = qvox::Helper::Num2Frac(value, code, data[0] & 1);
    (void)qvox::Helper::Frac2Num(fraction);

    // GetText and GetFractionNumber promise at most 30 bytes with the terminator.
    auto out = std::make_unique<char[]>(30);
    qvox::GetText(value, code, out.get());
    Require(std::strlen(out.get()) < 30);
    qvox::GetFractionNumber(value, static_cast<int>(size % 9) - 1, out.get());
    Require(std::strlen(out.get()) < 30);
    return 0;
}
