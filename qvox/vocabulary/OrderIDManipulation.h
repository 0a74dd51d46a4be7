// Identifiers of the orders this client makes before the server has seen them. A local order
// identifier is an unsigned 32-bit number, 0 meaning "none yet"; as text it is ten digits. A
// client order identifier is a prefix character, a tag of up to nine characters and the ten
// digits of the local identifier, so its last ten characters always are that identifier.
#pragma once

#include "qvox/platform/CString.h"
#include "qvox/platform/WinTypes.h"

namespace qvox {

// The first 32 bits of a new random UUID. May be 0 (one time in 2^32), which callers that
// format identifiers replace by another.
DWORD CreateLocalOrderID();

class OrderIDManipulation {
  public:
    OrderIDManipulation() = delete;

    static DWORD CreateLocalOrderID();
    // Prefix character (the low byte of prefix), the tag cut to nine characters, and the local
    // identifier as ten digits; a localID of 0 is replaced by a new one. A prefix whose low byte
    // is 0 writes no character, so the text never holds a NUL. A null tag counts as "".
    static CString FormatClientOrderID(SHORT prefix, const char* tag, ULONG localID);
    // Ten digits, zero-padded; 0 is replaced by a new identifier.
    static CString FormatLocalOrderID(ULONG localID);
    // For a length above 10, the text from position length - 10 to its terminator (the last ten
    // characters when length is the text's own; "" when that position lies past the
    // terminator); otherwise the whole text. A length of -1 (0xFFFFFFFF) means the text's own.
    // Null is "".
    static CString ClientToLocalOrderID(const char* id, ULONG length);
    static CString ClientToLocalOrderID(const CString& id);
    // Groups of four characters joined by "-", counted from the end: "12-3456-7890". The first
    // length characters, -1 meaning the text's own, never past the terminator; the empty text
    // gives "".
    static CString FormatOrderID(const char* id, ULONG length);
    static CString FormatOrderID(const CString& id);
};

}  // namespace qvox
