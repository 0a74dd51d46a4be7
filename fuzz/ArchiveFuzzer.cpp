// Validated texts read from any bytes: the archive reader either yields values or raises its
// exception, never reads past the input, and what it read stores and reads back the same.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "FuzzCheck.h"
#include "qvox/order/ValidString.h"
#include "qvox/platform/CArchive.h"

using qvox::fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    qvox::CMemFile in(std::vector<qvox::BYTE>(data, data + size));
    qvox::CArchive reader(&in, qvox::CArchive::load);
    std::vector<qvox::ValidString> values;
    try {
        while (values.size() < 64) {
            qvox::ValidString value;
            reader >> value;
            values.push_back(value);
        }
    } catch (const qvox::CArchiveException& e) {
        Require(e.m_cause == qvox::CArchiveException::endOfFile);
    }

    qvox::CMemFile out;
    {
        qvox::CArchive writer(&out, qvox::CArchive::store);
        for (const qvox::ValidString& value : values)
            writer << value;
    }
    out.SeekToBegin();
    qvox::CArchive back(&out, qvox::CArchive::load);
    for (const qvox::ValidString& value : values) {
        qvox::ValidString read;
        back >> read;
        Require(read == value && read.GetText() == value.GetText());
    }
    return 0;
}
