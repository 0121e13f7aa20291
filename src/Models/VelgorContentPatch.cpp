#include "VelgorContentPatch.h"

BankNumber BankNumber::ofSlot(qsizetype slot)
{
    BankNumber place;
    place.bank = static_cast<int>(slot / numbersPerBank) + 1;
    place.number = static_cast<int>(slot % numbersPerBank) + 1;
    return place;
}

VelgorContentPatch::VelgorContentPatch(const VelgorPatch &slotPatch)
    : patch(slotPatch)
{
}
