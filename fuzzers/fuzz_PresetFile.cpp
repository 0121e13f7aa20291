#include "Diagnostics.h"
#include "PatchName.h"
#include "PatchWriter.h"
#include "PresetFileChecker.h"

#include <cstdint>

namespace {

void require(bool condition, const char *what)
{
    if (!condition) {
        Diagnostics::fatalStop(what);
    }
}

/// What a user IR is after an export as number `index`.
SUserIR renumbered(SUserIR userIR, qsizetype index)
{
    if (userIR.size == 0) {
        return {};
    }
    for (qsizetype i = 0; i < qMin(SUserIR::numberSize, userIR.data.size()); ++i) {
        userIR.data[i] = static_cast<char>((index >> (8 * i)) & 0xFF);
    }
    return userIR;
}

void requireWritable(const SPresetFile &file)
{
    const auto assembled = SPresetFile::fromRecords(file.headerDesc, file.patches, file.userIRs);
    require(bool(assembled), "what was read is not assembled");
    const auto bytes = PatchWriter::encodePatches(*assembled);
    require(bool(bytes), "what was assembled is not written");

    SPresetFile expected = *assembled;
    for (qsizetype i = 0; i < expected.patches.size(); ++i) {
        const SPatch &patch = file.patches.at(i);
        require(patch.name.toUtf8().size() <= PatchName::fieldSize, "a name from a file does not fit its field");
        expected.patches[i].pos = static_cast<quint16>(i);
        expected.userIRs[i] = renumbered(file.userIRs.at(i), i);
        require(expected.patches.at(i).simpleHash() == patch.simpleHash(), "the export changes a patch's hash");
        require(expected.userIRs.at(i).simpleHash() == file.userIRs.at(i).simpleHash(),
            "the export changes a user IR's hash");
    }
    expected.checksum = PatchWriter::calcChecksum(QByteArrayView(*bytes).chopped(2));
    const auto again = SPresetFile::fromData(*bytes);
    require(bool(again), "what was written is not readable");
    require(*again == expected, "what was written reads differently");
    require(PresetFileChecker::check(*bytes).roundTrip, "an export is not written again with the same bytes");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    int lines = 0;
    const auto previous = Diagnostics::setSink([&lines](const QString &) { ++lines; });
    const PresetFileReport report = PresetFileChecker::check(
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    require(report.file.has_value() == (lines == 0), "a refusal without a line, or a line without a refusal");
    if (report.file) {
        require(report.roundTrip || !report.findings.isEmpty(), "the round trip fails and the checker finds nothing");
        requireWritable(*report.file);
    }
    Diagnostics::setSink(previous);
    return 0;
}
