#include "Arguments.h"
#include "CommandHandlers.h"
#include "Diagnostics.h"
#include "DiskFiles.h"
#include "Output.h"
#include "PatchFileHandler.h"
#include "PatchWriter.h"
#include "TextTable.h"
#include "VelgorContent.h"

#include <QCoreApplication>

#include <nlohmann/json.hpp>

namespace {

/// The context of this file's texts.
struct ListFileCommands {
    Q_DECLARE_TR_FUNCTIONS(ListFileCommands)
};

/// The checksum that the file should have: over everything up to its tail byte, as it stands.
quint16 computedChecksum(const QByteArray &bytes, const SPresetFile &file)
{
    qint64 end = SHeaderDesc::encodedLength + SHeaderPatchDesc::encodedLength * file.patches.size() + 1;
    for (qsizetype i = 0; i < file.patches.size(); ++i) {
        end += file.patches.at(i).length + file.userIRs.at(i).length;
    }
    return PatchWriter::calcChecksum(QByteArrayView(bytes).first(end));
}

nlohmann::ordered_json patchJson(const SPresetFile &file, const VelgorContentPatch &slot, qsizetype index)
{
    const SPatch &record = file.patches.at(index);
    const SUserIR &userIR = file.userIRs.at(index);
    nlohmann::ordered_json json;
    json["index"] = index;
    json["bank"] = slot.bank;
    json["number"] = slot.number;
    json["name"] = Output::jsonText(slot.patch.name);
    json["id"] = std::to_string(slot.patch.id());
    json["version"] = Output::jsonText(slot.patch.version);
    json["hasUserIR"] = slot.patch.hasUserIR;
    json["pos"] = record.pos;
    json["dataSize"] = record.data.size();
    json["userIRSize"] = userIR.size;
    json["userIRNumber"] = nullptr;
    if (slot.patch.hasUserIR) {
        json["userIRNumber"] = userIR.getFirstUInt32();
    }
    return json;
}

void printJson(const QString &path, const QByteArray &bytes, const SPresetFile &file, const VelgorContent &content)
{
    const quint16 computed = computedChecksum(bytes, file);
    nlohmann::ordered_json json;
    json["file"] = Output::jsonText(path);
    json["count"] = file.patches.size();
    json["version"] = Output::jsonText(content.velgorContentPatchList().first().patch.version);
    json["tailBit"] = file.tailBit;
    json["checksum"] = {{"stored", file.checksum}, {"computed", computed}, {"valid", file.checksum == computed}};
    json["patches"] = nlohmann::ordered_json::array();
    for (qsizetype i = 0; i < file.patches.size(); ++i) {
        json["patches"].push_back(patchJson(file, content.velgorContentPatchList().at(i), i));
    }
    Output::printJson(json);
}

void printTable(const SPresetFile &file, const VelgorContent &content)
{
    TextTable table({ListFileCommands::tr("Slot"), ListFileCommands::tr("Name"), ListFileCommands::tr("User IR"),
        ListFileCommands::tr("Version"), ListFileCommands::tr("Bytes"), ListFileCommands::tr("Id")});
    for (qsizetype i = 0; i < file.patches.size(); ++i) {
        const VelgorContentPatch &slot = content.velgorContentPatchList().at(i);
        table.addRow({QStringLiteral("%1.%2").arg(slot.bank).arg(slot.number), slot.patch.name,
            slot.patch.hasUserIR ? ListFileCommands::tr("user IR") : QString(), slot.patch.version,
            QString::number(file.patches.at(i).data.size()), QString::number(slot.patch.id())});
    }
    Output::print(table.text());
}

} // namespace

int CommandHandlers::listFile(const Arguments &arguments)
{
    const QString path = arguments.positional().first();
    const FileReadResult read = DiskFiles().read(path);
    if (!read.bytes) {
        return Output::fail(QStringLiteral("%1: %2").arg(path, read.error));
    }
    const std::optional<SPresetFile> file = SPresetFile::fromData(*read.bytes);
    if (!file) {
        return Output::fail(
            ListFileCommands::tr("%1: not a complete preset file (%2)").arg(path, Diagnostics::lastLine()));
    }
    VelgorContent content;
    content.populate(*file);
    if (arguments.has(QStringLiteral("json"))) {
        printJson(path, *read.bytes, *file, content);
    } else {
        printTable(*file, content);
    }
    return Done;
}

int CommandHandlers::copyFile(const Arguments &arguments)
{
    const std::optional<QString> output = arguments.value(QStringLiteral("output"));
    if (!output) {
        return Output::fail(ListFileCommands::tr("copy needs -o FILE"));
    }
    DiskFiles files;
    PatchFileHandler handler(files);
    const std::optional<SPresetFile> file = handler.read(arguments.positional().first());
    if (!file) {
        return Output::fail(handler.problem());
    }
    VelgorContent content;
    content.populate(*file);
    return handler.exportTo(content, *output) ? Done : Output::fail(handler.problem());
}
