#include "Diagnostics.h"
#include "LibraryJson.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace {

void require(bool condition, const char *what)
{
    if (!condition) {
        Diagnostics::fatalStop(what);
    }
}

bool isIdentical(const VelgorPatch &a, const VelgorPatch &b)
{
    // Equality of dates takes 0 and -0 for one.
    const auto bits = [](const VelgorPatch &patch) { return std::bit_cast<quint64>(patch.date.seconds); };
    return a == b && a.id() == b.id() && a.empty == b.empty && bits(a) == bits(b);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto library = LibraryJson::decode(
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    if (library) {
        const QByteArray text = LibraryJson::encode(*library);
        const auto again = LibraryJson::decode(text);
        require(again.has_value(), "what was written is not readable");
        require(again->defaultPatch == library->defaultPatch, "the default patch changed");
        require(std::equal(library->patches.begin(), library->patches.end(), again->patches.begin(),
                    again->patches.end(), isIdentical),
            "a patch changed");
        require(LibraryJson::encode(*again) == text, "the same library is written differently");
    }
    return 0;
}
