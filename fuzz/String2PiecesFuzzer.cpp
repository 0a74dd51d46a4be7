// String2Pieces on any text under any code: no crash, no read past the text, and the piece text
// of what was read reads back to the same pieces.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "FuzzCheck.h"
#include "qvox/price/Helper.h"

using qvox::fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const char code = static_cast<char>(data[0]);
    // The text as a caller hands it over: terminated, in a buffer of exactly its size.
    const std::size_t length = size - 1;
    auto text = std::make_unique<char[]>(length + 1);
    if (length > 0) std::memcpy(text.get(), data + 1, length);
    text[length] = '\0';

    const qvox::LONG pieces = qvox::Helper::String2Pieces(code, text.get());

    // Piece texts written by Pieces2String are at most 13 characters.
    auto written = std::make_unique<char[]>(14);
    qvox::Helper::Pieces2String(code, pieces, written.get(), 0);
    Require(std::strlen(written.get()) <= 13);
    qvox::Helper::Pieces2String(code, pieces, written.get(), 1);
    Require(std::strlen(written.get()) <= 13);

    // Fraction codes read their own text back; x writes one digit more than it reads, so it is
    // stable from the second round on. Factor codes scale twice by design and are not inverse.
    const char lower = code >= 'A' && code <= 'Z' ? static_cast<char>(code - 'A' + 'a') : code;
    if (lower >= 'f' && lower <= 'z') {
        const qvox::LONG again = qvox::Helper::String2Pieces(code, written.get());
        if (lower == 'x') {
            qvox::Helper::Pieces2String(code, again, written.get(), 0);
            Require(qvox::Helper::String2Pieces(code, written.get()) == again);
        } else {
            Require(again == pieces);
        }
    }
    auto decimal = std::make_unique<char[]>(18);
    qvox::Helper::Pieces2DecimalString(code, pieces, decimal.get(), 1);
    Require(std::strlen(decimal.get()) <= 17);
    return 0;
}
