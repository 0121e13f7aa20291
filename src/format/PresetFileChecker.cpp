#include "PresetFileChecker.h"

#include "PatchName.h"
#include "PatchWriter.h"
#include "Utf8Text.h"

#include <algorithm>

namespace {

constexpr qint64 headerSizeOffset = 4;
constexpr qint64 patchPositionOffset = 9;
constexpr qint64 patchNameOffset = 12;

} // namespace

PresetFileReport PresetFileChecker::check(const QByteArray &data)
{
    PresetFileReport report;
    const Result<SPresetFile> file = SPresetFile::fromData(data);
    if (!file) {
        report.problem = file.problem();
        return report;
    }
    report.file = *file;
    PresetFileChecker checker(data, *report.file);
    checker.checkAll();
    report.findings = checker.m_findings;

    const auto assembled = SPresetFile::fromRecords(file->headerDesc, file->patches, file->userIRs);
    const auto written = assembled ? PatchWriter::encodePatches(*assembled) : assembled.problem();
    report.roundTrip = written && *written == data;
    return report;
}

PresetFileChecker::PresetFileChecker(const QByteArray &data, const SPresetFile &file)
    : m_data(data)
    , m_file(file)
{
}

void PresetFileChecker::checkAll()
{
    qint64 offset = m_file.headerDesc.length + SHeaderPatchDesc::encodedLength * m_file.patches.size();
    for (qsizetype i = 0; i < m_file.patches.size(); ++i) {
        checkDescriptor(i, offset);
        checkPatch(i, offset);
        offset += m_file.patches.at(i).length;
        checkUserIR(i, offset);
        offset += m_file.userIRs.at(i).length;
    }
    checkHeader(offset);
    checkTail(offset);
}

void PresetFileChecker::checkHeader(qint64 endOfBlocks)
{
    const qint64 expected = endOfBlocks - SHeaderDesc::uncountedSize;
    if (m_file.headerDesc.size != expected) {
        report("header-size",
            tr("the header gives a size of %1 bytes, the blocks take %2").arg(m_file.headerDesc.size).arg(expected),
            headerSizeOffset);
    }
}

void PresetFileChecker::checkDescriptor(qsizetype index, qint64 blockOffset)
{
    const SHeaderPatchDesc &descriptor = m_file.headerPatchDescs.at(index);
    const qint64 place = m_file.headerDesc.length + SHeaderPatchDesc::encodedLength * index;
    if (descriptor.offset != blockOffset) {
        report("descriptor-offset",
            tr("patch %1: the descriptor gives offset %2, the block stands at %3")
                .arg(index)
                .arg(descriptor.offset)
                .arg(blockOffset),
            place);
    }
    const qint64 size = m_file.patches.at(index).length + m_file.userIRs.at(index).length;
    if (descriptor.size != size) {
        report("descriptor-size",
            tr("patch %1: the descriptor gives %2 bytes, the blocks take %3").arg(index).arg(descriptor.size).arg(size),
            place + 4);
    }
}

void PresetFileChecker::checkPatch(qsizetype index, qint64 blockOffset)
{
    const SPatch &patch = m_file.patches.at(index);
    if (patch.mrap != m_file.patches.first().mrap) {
        report("patch-tag", tr("patch %1: the tag differs from the first patch's").arg(index), blockOffset);
    }
    if (patch.pos != index) {
        report("position", tr("patch %1: the stored position is %2").arg(index).arg(patch.pos),
            blockOffset + patchPositionOffset);
    }
    checkName(index, blockOffset + patchNameOffset);
}

void PresetFileChecker::checkName(qsizetype index, qint64 fieldOffset)
{
    const QByteArrayView field = QByteArrayView(m_data).sliced(fieldOffset, PatchName::fieldSize);
    const auto end = std::find(field.begin(), field.end(), '\0');
    if (std::any_of(end, field.end(), [](char byte) { return byte != '\0'; })) {
        report("name", tr("patch %1: the name goes on after a zero byte").arg(index), fieldOffset);
    } else if (!Utf8Text::decode(field.first(end - field.begin()))) {
        report("name", tr("patch %1: the name is not valid UTF-8").arg(index), fieldOffset);
    }
}

void PresetFileChecker::checkUserIR(qsizetype index, qint64 blockOffset)
{
    const SUserIR &userIR = m_file.userIRs.at(index);
    if (userIR.length == 0) {
        return;
    }
    if (!m_firstWithUserIR) {
        m_firstWithUserIR = index;
    }
    if (userIR.risu != m_file.userIRs.at(*m_firstWithUserIR).risu) {
        report("user-ir-tag", tr("patch %1: the tag of its user IR differs from the first user IR's").arg(index),
            blockOffset);
    }
    if (userIR.data.size() < SUserIR::numberSize) {
        report("user-ir-size",
            tr("patch %1: a user IR of %2 bytes has no room for its number").arg(index).arg(userIR.data.size()),
            blockOffset + 4);
    } else if (userIR.getFirstUInt32() != static_cast<quint64>(index)) {
        report("user-ir-number", tr("patch %1: the user-IR number is %2").arg(index).arg(userIR.getFirstUInt32()),
            blockOffset + SUserIR::sizeFieldEnd);
    }
}

void PresetFileChecker::checkTail(qint64 tailOffset)
{
    const quint16 computed = PatchWriter::calcChecksum(QByteArrayView(m_data).first(tailOffset + 1));
    if (m_file.checksum != computed) {
        report("checksum", tr("the stored checksum is %1, the bytes give %2").arg(m_file.checksum).arg(computed),
            tailOffset + 1);
    }
    const qint64 end = tailOffset + SPresetFile::tailLength;
    if (m_data.size() > end) {
        report("trailing-bytes", tr("bytes after the end of the file: %1").arg(m_data.size() - end), end);
    }
}

void PresetFileChecker::report(const char *code, const QString &message, qint64 offset)
{
    m_findings.append({.code = QString::fromLatin1(code), .message = message, .offset = offset});
}
