#pragma once

#include "VelgorPatch.h"

#include <QUuid>

/// A place in the unit's list: three numbers a bank, both counted from 1.
struct BankNumber {
    static constexpr qsizetype numbersPerBank = 3;

    QUuid id = QUuid::createUuid();
    int bank = 0;
    int number = 0;

    /// The place of a slot, counted from 0. Makes an id, which takes longer than all the rest.
    [[nodiscard]] static BankNumber ofSlot(qsizetype slot);
    /// The slot at this place, counted from 0.
    [[nodiscard]] qsizetype slot() const { return (bank - 1) * numbersPerBank + number - 1; }
};

/// One slot of the list being composed.
struct VelgorContentPatch {
    explicit VelgorContentPatch(const VelgorPatch &slotPatch);

    QUuid id = QUuid::createUuid(); ///< identity of the slot, not of the patch
    int bank = 0; ///< 0 until the list is renumbered
    int number = 0;
    VelgorPatch patch;

    /// Takes the bank and number of a slot, counted from 0. False when it had them.
    bool standAt(qsizetype slot);
};

/// Every member is, so that lists move slots as plain bytes.
Q_DECLARE_TYPEINFO(VelgorContentPatch, Q_RELOCATABLE_TYPE);
