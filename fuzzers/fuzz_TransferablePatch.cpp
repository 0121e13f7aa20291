#include "Diagnostics.h"
#include "TransferablePatch.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto payload = TransferablePatch::decode(
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    if (payload && TransferablePatch::decode(payload->encode()) != payload) {
        Diagnostics::fatalStop("a payload comes back changed");
    }
    return 0;
}
