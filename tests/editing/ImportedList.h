#pragma once

#include "DeskFixture.h"

/// A desk before which a file with three patches lies.
namespace ImportedList {

inline const QString in = QStringLiteral("/lists/in.prst");
inline const QString out = QStringLiteral("/lists/out.prst");

inline QByteArray threePatches()
{
    return TestRecords::fileBytes(
        {TestRecords::patch(QStringLiteral("A"), 1), TestRecords::patch(QStringLiteral("B"), 2),
            TestRecords::patch(QStringLiteral("C"), 3)},
        {TestRecords::userIR(0), {}, TestRecords::userIR(2, 5)});
}

struct Desk : DeskFixture {
    Desk()
    {
        memory.files.insert(in, threePatches());
        dialogs.answer = in;
    }
    void exportTo(const QString &path)
    {
        dialogs.answer = path;
        QVERIFY(contentFiles.exportList());
    }
};

} // namespace ImportedList
