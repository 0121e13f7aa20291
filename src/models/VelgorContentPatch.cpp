#include "VelgorContentPatch.h"

#include <utility>

namespace {

int bankOf(qsizetype slot)
{
    return static_cast<int>(slot / BankNumber::numbersPerBank) + 1;
}

int numberOf(qsizetype slot)
{
    return static_cast<int>(slot % BankNumber::numbersPerBank) + 1;
}

} // namespace

BankNumber BankNumber::ofSlot(qsizetype slot)
{
    BankNumber place;
    place.bank = bankOf(slot);
    place.number = numberOf(slot);
    return place;
}

VelgorContentPatch::VelgorContentPatch(const VelgorPatch &slotPatch)
    : patch(slotPatch)
{
}

bool VelgorContentPatch::standAt(qsizetype slot)
{
    const int formerBank = std::exchange(bank, bankOf(slot));
    const int formerNumber = std::exchange(number, numberOf(slot));
    return bank != formerBank || number != formerNumber;
}
